#include "drawing/palette.h"

#include "drawing/pixel_copy.h"

#include <cmath>

namespace marlith {

int paletteRows(int piecesCount) {
    if (piecesCount <= 0) return 0;
    return piecesCount / kPaletteColumns + (piecesCount % kPaletteColumns != 0 ? 1 : 0);
}

QSize paletteSizeTwips(const Style& style) {
    const int rows = paletteRows(static_cast<int>(style.PiecesList.size()));
    const long long height =
        static_cast<long long>(rows - 1) * style.SqrVTab + style.SqrHeight + 60;
    const long long width = 5LL * style.SqrHTab + style.SqrWidth + 60;
    auto clamp = [](long long v) { return static_cast<int>(std::clamp<long long>(v, 0, 32767)); };
    return QSize(clamp(width), clamp(height));
}

void copyCell(const QImage& sheet, int sx, int sy, QImage& target, int tx, int ty,
              const Style& style) {
    copyPixels(sheet, QPoint(twipsToWholePixels(sx), twipsToWholePixels(sy)), target,
               QPoint(twipsToWholePixels(tx), twipsToWholePixels(ty)),
               QSize(twipsToWholePixels(style.SqrWidth), twipsToWholePixels(style.SqrHeight)));
}

QImage paletteImage(const QImage& sheet, const Style& style) {
    const QSize twips = paletteSizeTwips(style);
    QImage palette(twipsToWholePixels(twips.width()), twipsToWholePixels(twips.height()),
                   QImage::Format_RGB32);
    if (palette.isNull()) return palette;
    palette.fill(Qt::white);
    const int pieces = static_cast<int>(style.PiecesList.size());
    for (int k = 1; k <= pieces; ++k) {
        const long long sx = static_cast<long long>(k) * style.SqrHTab;
        const long long tx = static_cast<long long>((k - 1) % kPaletteColumns) * style.SqrHTab;
        const long long ty = static_cast<long long>((k - 1) / kPaletteColumns) * style.SqrVTab;
        if (sx > INT32_MAX || tx > INT32_MAX || ty > INT32_MAX) break;
        copyCell(sheet, static_cast<int>(sx), 0, palette, static_cast<int>(tx),
                 static_cast<int>(ty), style);
    }
    return palette;
}

QImage chosenPieceImage(const QImage& sheet, const Style& style, int chosenPiece) {
    if (chosenPiece < 0) return QImage();
    QImage selected(twipsToWholePixels(style.SqrWidth), twipsToWholePixels(style.SqrHeight),
                    QImage::Format_RGB32);
    if (selected.isNull()) return selected;
    const int cellsPerRow = static_cast<int>(style.PiecesList.size()) + 1;
    const long long sx = static_cast<long long>(chosenPiece % cellsPerRow) * style.SqrHTab;
    const long long sy = static_cast<long long>(chosenPiece / cellsPerRow) * style.SqrVTab;
    if (sx > INT32_MAX || sy > INT32_MAX) return QImage();
    copyCell(sheet, static_cast<int>(sx), static_cast<int>(sy), selected, 0, 0, style);
    return selected;
}

int paletteCell(double x, double y, const Style& style) {
    if (style.SqrHTab <= 0 || style.SqrVTab <= 0) return 0;
    const int pieces = static_cast<int>(style.PiecesList.size());
    // The rows of this test: L / 6 rounded, one more for a part row.
    const int rows = static_cast<int>(std::nearbyint(pieces / 6.0)) + (pieces % 6 != 0 ? 1 : 0);
    const double c = std::floor(x / style.SqrHTab);
    const double r = std::floor(y / style.SqrVTab);
    if (c < 0 || r < 0 || c >= kPaletteColumns || r >= rows) return 0;
    return static_cast<int>(c) + 1 + kPaletteColumns * static_cast<int>(r);
}

} // namespace marlith
