// Reading one word of algebraic move text and playing it on the board.
#pragma once

#include "position/fen.h"
#include "position/notation.h"

#include <QByteArrayView>
#include <QString>

namespace marlith {

// Plays word as a move of side (0 White, 1 Black) on the wanted values of squareVector.
// On return word is empty when it is no move or no piece could make it, "ok"
// when a move was made, and as it came for castling. No rule of chess is
// checked: the first piece of the right kind that can reach the target moves,
// except that of two or more such pieces a pinned one gives way to the next.
void playMove(int side, QString& word, SquareVector& squareVector, const Board& board,
              const Notation& notation);

// The same for a word of Latin-1 text, as the game scanner reads it, without
// a string per move: true when the move or the castling was played, that is
// when the QString version would leave the word non-empty.
bool playMove(int side, QByteArrayView latin1Word, SquareVector& squareVector, const Board& board,
              const Notation& notation);

// What a word of move text did to the board.
enum class MovePlay {
    NotAMove, // no move at all: a result, a glyph, a mark, a letter of no piece
    Played,
    // A piece and a square such as Ke3, but no piece of that kind can come
    // there: the move text and the board part ways.
    NoSource,
};
MovePlay playMoveWord(int side, QByteArrayView latin1Word, SquareVector& squareVector,
                      const Board& board, const Notation& notation);

} // namespace marlith
