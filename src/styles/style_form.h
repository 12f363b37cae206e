// What the Style window shows of a style, and how its controls make a style
// again: the texts and switches of the window apart from the widgets.
#pragma once

#include "styles/style.h"

#include <QPoint>
#include <QSize>
#include <QString>
#include <cstdint>

namespace marlith {

// The controls of the Style window, as text where the user types, in pixels
// where the style holds twips.
struct StyleForm {
    QString styleName;
    QString piecesFile;
    QString piecesFont; // pieces from this font's chess signs instead of the sheet
    QString squareSize; // of a font style, which has no sheet to measure
    int32_t lightColor = 0;
    int32_t darkColor = 0;
    bool darkHatch = false;
    QString borderFile;
    QString piecesList;
    QString startPosition;
    QString englishNotation;
    QString popeyeDictionary;
    QString cellOverlapVertical;   // SqrHeight - SqrVTab
    QString cellOverlapHorizontal; // SqrWidth - SqrHTab
    QString squareSpaceVertical;
    QString squareSpaceHorizontal;
    bool copyCounter = false;

    QString boardRows;
    QString boardColumns;
    QString boardOffsetY;
    QString boardOffsetX;
    QString frameWidth;
    int32_t frameColor = 0;
    int32_t backColor = 0;
    QString pictureHeight;
    QString pictureWidth;

    bool showGrid = false;
    QString fontName;
    QString fontSize;
    QString gridOffsetY;
    QString gridOffsetX;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeout = false;
    bool caps = false;
    int32_t fontColor = 0;
    int verticalAlign = 0;   // 0 up, 1 middle, 2 down
    int horizontalAlign = 0; // 0 left, 1 center, 2 right
};

StyleForm formFromStyle(const Style& style);

// Stores the controls into the style. The square size comes from the piece
// sheet (its size in pixels): the sheet is as many cells wide as the pieces
// list has letters plus one, two cells high, neighbouring cells sharing the
// overlap. A font style takes it from its own box instead. Numbers are the leading numeric text of
// a box (none is 0), kept inside the range of their field, and the board never lies under the
// frame.
void storeForm(const StyleForm& form, QSize sheetPixels, Style& style);

// The number a box stands for: its leading numeric text rounded half to even,
// 0 when there is none, held to [low, high].
int formNumber(const QString& text, int low, int high);

// Where a board of `count` squares at `tab` twips apart lies centred in a
// border picture `pictureTwips` long; never before its edge.
int centredBase(int pictureTwips, int count, int tab);
// The board's base centred in a border picture of that size in twips: its
// columns across the width, its rows down the height.
QPoint centredBoardBase(QSize pictureTwips, const Style& style);

// "BOLD ITALIC ..." and "UP LEFT" as the switches give them.
QString fontStyleText(bool bold, bool italic, bool underline, bool strikeout, bool caps);
QString fontPosText(int verticalAlign, int horizontalAlign);

// The size bars stand for a length of the picture, base at their middle,
// one pixel a step.
inline constexpr int kSizeBarMaximum = 200;
int scrolledLength(int barValue, int baseTwips);

// The far edge that the grid offset boxes offer: the picture's length less
// the text and a margin, in pixels, never negative.
int farEdgeOffset(int pictureTwips, int textTwips, int marginTwips);

} // namespace marlith
