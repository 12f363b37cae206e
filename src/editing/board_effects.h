// The board turned, mirrored and shifted as a whole: a piece is only a
// number on a square, and no piece changes its colour.
#pragma once

#include "position/fen.h"

namespace marlith {

enum class BoardEffect {
    HorizontalMirror, // top and bottom change places
    DiagonalMirror,   // in the diagonal from bottom left to top right; square boards only
    Rotate,           // a quarter turn clockwise; square boards only
    Left,             // each row one square left; the first column falls off
    Right,
    Up,
    Down,
};

// Moves the wanted contents of the squares; what is painted stays as it was,
// so that the next build repaints what differs. A diagonal mirror or a
// rotation of a board that isn't square changes nothing.
void applyBoardEffect(SquareVector& squareVector, const Board& board, BoardEffect effect);

} // namespace marlith
