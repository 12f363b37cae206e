// Writing the move between two positions as algebraic text.
#pragma once

#include "position/fen.h"
#include "position/notation.h"

#include <QString>
#include <QStringList>

namespace marlith {

// Loads the FEN text t into slot k of squareVector (0: the painted values,
// 1: the wanted), painting nothing. A counter prefix "(...)" is cut from t
// itself, as the caller reads t again.
void fenToSlot(int k, QString& t, SquareVector& squareVector, const Board& board,
               const QString& piecesList);

// The move from the position in slot v to the one in slot 1 - v, in the
// style's letters, into m; empty when none can be made out. Checks and pins
// are not looked at.
void writeMove(int v, QString& m, const SquareVector& squareVector, const Board& board,
               const Notation& notation);

// Rows of position texts read as the positions of one game, on a board of
// their own: the first row is loaded at once (its counter dropped from it),
// and move(i) gives the move from row i - 1 to row i, for i from 1 up, in
// order.
class RowGame {
  public:
    RowGame(const QStringList& rows, const Board& board, const Notation& notation);
    const QString& first() const { return first_; }
    // The character behind the first row's first blank is "b".
    bool blackFirst() const { return blackFirst_; }
    // `numbered`: the move opens a new move number (White's, or Black's first).
    QString move(qsizetype i, bool& numbered);

  private:
    QStringList rows_;
    Board board_;
    Notation notation_;
    SquareVector squares_{};
    QString first_;
    bool blackFirst_ = false;
};

// The rows without those whose board field (behind a piece counter, up to a
// blank) repeats the row before: a position copied twice in a row is one
// position, and no move. With `firstOnly`, only the first row's repeats go.
QStringList withoutRepeatedBoards(const QStringList& rows, bool firstOnly = false);

// Square name: file letter, then the rank counted from the board's width.
QString squareName(int square, int columns);

} // namespace marlith
