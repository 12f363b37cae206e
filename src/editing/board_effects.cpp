#include "editing/board_effects.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace marlith {

void applyBoardEffect(SquareVector& squareVector, const Board& board, BoardEffect effect) {
    const int h = board.rows;
    const int w = board.columns;
    const int squares = board.squares();
    // A board beyond the vector has fallen back to 8 by 8 in its drawing.
    if (h <= 0 || w <= 0 || squares != h * w) return;
    if ((effect == BoardEffect::DiagonalMirror || effect == BoardEffect::Rotate) && h != w) return;
    std::vector<int16_t> old;
    std::transform(squareVector.begin(), squareVector.begin() + squares, std::back_inserter(old),
                   [](const Square& square) { return square.wanted; });
    const auto at = [&](int r, int c) { return old[static_cast<size_t>(r * w + c)]; };
    for (int r = 0; r < h; ++r) {
        for (int c = 0; c < w; ++c) {
            int16_t value = 0;
            switch (effect) {
            case BoardEffect::HorizontalMirror:
                value = at(h - 1 - r, c);
                break;
            case BoardEffect::DiagonalMirror:
                value = at(w - 1 - c, w - 1 - r);
                break;
            case BoardEffect::Rotate:
                value = at(h - 1 - c, r);
                break;
            case BoardEffect::Left:
                value = c + 1 < w ? at(r, c + 1) : 0;
                break;
            case BoardEffect::Right:
                value = c > 0 ? at(r, c - 1) : 0;
                break;
            case BoardEffect::Up:
                value = r + 1 < h ? at(r + 1, c) : 0;
                break;
            case BoardEffect::Down:
                value = r > 0 ? at(r - 1, c) : 0;
                break;
            }
            squareVector[static_cast<size_t>(r * w + c)].wanted = value;
        }
    }
}

} // namespace marlith
