// The piece sheet that stands in the program until a style loads its own.
#pragma once

#include <QImage>

namespace marlith {

inline constexpr int kBuiltInCellPixels = 15;
inline constexpr int kBuiltInSheetWidth = 13 * kBuiltInCellPixels;

// 195 by 30 pixels: 13 cells (bare square, then "pPnNbBrRqQkK") on white in
// row 0 and on silver 192 in row 1.
QImage builtInSheet();

} // namespace marlith
