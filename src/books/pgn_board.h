// The board of the game scanner in the current style: its size, its letters
// for the pieces, and which kind of piece each letter is.
#pragma once

#include "books/book_scan.h"
#include "position/fen.h"
#include "position/notation.h"

#include <vector>

namespace marlith {

class StylePgnBoard final : public PgnBoard {
  public:
    explicit StylePgnBoard(const Style& style);

    void setUp(const QByteArray& fen) override;
    MovePlay play(QByteArrayView word, int side) override;
    void boardText(QByteArray& out) override;

  private:
    Board board_;
    Notation notation_;
    QByteArray piecesLetters_; // the letters as single bytes, when they are
    bool singleByteLetters_ = false;
    SquareVector squareVector_{};
    // A half-move touches two to four squares: the text of each row is kept
    // with the squares it was written from, and only a changed row is written
    // again. Used when the letters are single bytes and the board fills its
    // rows.
    bool keepsRows_ = false;
    SquareVector rowsWrittenFrom_{};
    std::vector<char> rowTexts_;  // kMostPerSquare characters a square
    std::vector<int> rowLengths_; // 0: to be written
};

} // namespace marlith
