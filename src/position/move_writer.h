// Writing the move between two positions as algebraic text.
#pragma once

#include "position/fen.h"
#include "position/notation.h"

#include <QString>

namespace marlith {

// Loads the FEN text t into slot k (0 or 1) of squareVector, painting nothing. A
// counter prefix "(...)" is cut from t itself, as the caller reads t again.
void fenToSlot(int k, QString& t, SquareVector& squareVector, const Board& board,
               const QString& piecesList);

// The move from the position in slot v to the one in slot 1 - v, in the
// style's letters, into m; empty when none can be made out. Checks and pins
// are not looked at.
void writeMove(int v, QString& m, const SquareVector& squareVector, const Board& board,
               const Notation& notation);

// Square name: file letter, then the rank counted from the board's width.
QString squareName(int square, int columns);

} // namespace marlith
