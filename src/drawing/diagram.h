// The picture of the diagram: the persistent image that diagramView shows, the
// piece sheet it is painted from, and the geometry between them.
#pragma once

#include "drawing/font_pieces.h"
#include "drawing/strokes.h"
#include "position/fen.h"
#include "styles/style.h"

#include <QFont>
#include <QImage>
#include <QRect>
#include <QSize>
#include <optional>
#include <vector>

class QPainter;

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

// Whether a painter draws at the picture's own pixels, where lines stay
// crisp and unsmoothed, rather than scaled to another size.
bool atOwnPixels(const QPainter& painter);

// Size in twips of the main window that holds a diagram of the style.
QSize mainWindowSize(const Style& style, bool bookPanelVisible);

// What a diagram shows besides its style's look: the squares as painted.
struct DiagramContent {
    const Style& style;
    const SquareVector& squares;
    Board board;
    int reversedBoard = 0;
};

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

    // Paints a stroke into the picture and keeps it for larger pictures.
    void addStroke(const Stroke& stroke);

    // The whole picture once more, in its own pixels, onto a painter of any
    // size or kind: what the screen shows, drawn as outlines where the style
    // has them (a font style's pieces, frame, coordinates, strokes) and its
    // bitmaps scaled smoothly. A transparent picture leaves out the
    // background colour.
    void paint(QPainter& painter, const DiagramContent& content, bool transparent) const;

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
    void loadPieces(const Style& style, const QString& programFolder);
    void paintBoardParts(QPainter& painter, const Style& style, int reversedBoard,
                         const QFont& font) const;
    void paintCell(QPainter& painter, int cell, int oneBasedSquare, const Style& style,
                   int reversedBoard) const;

    QImage image_;
    QImage pieceSheet_;
    QImage border_;
    std::optional<FontPieces> fontPieces_;
    QString fontPiecesOf_; // family and list the pieces were loaded for
    std::vector<Stroke> strokes_;
    QFont font_;
    QRect dirty_;
    long long copies_ = 0;
};

} // namespace marlith
