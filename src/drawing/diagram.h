// The picture of the diagram: the persistent image that diagramView shows, the
// piece sheet it is painted from, and the geometry between them.
#pragma once

#include "position/fen.h"
#include "styles/style.h"

#include <QFont>
#include <QImage>
#include <QRect>
#include <QSize>

namespace marlith {

// A path from a style: one without "/" lies in the program folder.
QString programPath(const QString& programFolder, const QString& path);

// Colour of the style files (red in the low byte) as a pixel value.
QRgb styleColor(int32_t color);

// Square on the screen for board square number `index` (from 0). A turned
// board shows square i at squares - 1 - i; the mapping is its own inverse.
int screenSquare(int index, int squares, int reversedBoard);

// Square of the screen under a point in twips, or -1. Each gap between two
// squares belongs half to each neighbour.
int squareAt(double x, double y, const Style& style);

// Size in twips of the main window that holds a diagram of the style.
QSize mainWindowSize(const Style& style, bool bookPanelVisible);

class Diagram {
  public:
    Diagram();

    struct Outcome {
        bool squareBoard = true; // rotation and diagonal mirror are offered
    };

    // Clears the image and draws the empty diagram of the style: border
    // picture, frame and coordinates; loads the style's sheet. Fills in the
    // derived sizes of the style and falls back to 8 by 8 beyond 400 squares.
    Outcome drawBoard(Style& style, int reversedBoard, const QString& programFolder);

    // Copies sheet cell cell onto square oneBasedSquare (counted from 1).
    void copyCellToSquare(int cell, int oneBasedSquare, const Style& style, int reversedBoard);

    // The built-in sheet in place of a loaded one.
    void useBuiltInSheet();
    // The picture made larger or smaller at once, without a new draw: what
    // lies inside stays, new area takes the colour.
    void resizeImage(QSize pixels, QRgb fill);

    const QImage& image() const { return image_; }
    QImage& image() { return image_; }
    const QImage& sheet() const { return pieceSheet_; }
    const QFont& font() const { return font_; }

    // Area changed since the last call, in pixels.
    QRect takeDirty();
    // Number of square copies so far; tells how much a buildBoard repainted.
    long long copies() const { return copies_; }

  private:
    void drawFrame(const Style& style);
    void drawCoordinates(const Style& style, int reversedBoard);

    QImage image_;
    QImage pieceSheet_;
    QFont font_;
    QRect dirty_;
    long long copies_ = 0;
};

} // namespace marlith
