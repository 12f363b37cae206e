// The piece palette of the View window: every piece of the sheet, six to a
// row, on the background of square colour 0.
#pragma once

#include "styles/style.h"

#include <QImage>
#include <QSize>

namespace marlith {

inline constexpr int kPaletteColumns = 6;

// Rows of the palette for L pieces: L div 6, one more for a part row.
int paletteRows(int piecesCount);

// Size in twips of the palette picture: room for six columns always.
QSize paletteSizeTwips(const Style& style);

// The palette picture, each cell copied from the sheet's first row.
QImage paletteImage(const QImage& sheet, const Style& style);

// The chosen piece, one sheet cell in size; a null image when none is chosen.
QImage chosenPieceImage(const QImage& sheet, const Style& style, int chosenPiece);

// Palette cell (1 to 6 x rows) under a point in twips of the palette, or 0.
// A cell beyond the last piece is returned too: the caller refuses it.
int paletteCell(double x, double y, const Style& style);

// Copies a cell-sized rectangle of the sheet at (sx, sy) twips to (tx, ty)
// twips of the target, clipped to both pictures; what lies beyond the sheet
// is black.
void copyCell(const QImage& sheet, int sx, int sy, QImage& target, int tx, int ty,
              const Style& style);

} // namespace marlith
