#include "styles/style.h"

#include <cmath>
#include <limits>

namespace marlith {

void resetStyle(Style& style) {
    Style fresh;
    fresh.StyleName = style.StyleName;
    fresh.PiecesList = QString::fromLatin1(kDefaultPiecesList);
    fresh.EnglishNotation = fresh.PiecesList;
    fresh.FontName = QStringLiteral("MS Sans Serif");
    fresh.FontPos = QStringLiteral("Left Up");
    fresh.StartPos = QString::fromLatin1(kDefaultStartPos);
    style = fresh;
}

double twipsToPixels(double twips) {
    return std::floor(twips / kTwipsPerPixel + 0.1);
}

int twipsToWholePixels(double twips) {
    const double pixels = twipsToPixels(twips);
    if (!(pixels > std::numeric_limits<int>::min() && pixels < std::numeric_limits<int>::max()))
        return 0;
    return static_cast<int>(pixels);
}

int boardSquares(int rows, int columns) {
    if (rows < 0 || columns < 0) return 64;
    const long long product = static_cast<long long>(rows) * columns;
    return product > 400 ? 64 : static_cast<int>(product);
}

} // namespace marlith
