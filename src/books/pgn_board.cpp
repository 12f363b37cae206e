#include "books/pgn_board.h"

#include "position/move_reader.h"
#include "position/move_writer.h"

namespace marlith {

StylePgnBoard::StylePgnBoard(const Style& style)
    : board_{style.BorderHeight, style.BorderWidth}, notation_(notationOf(style)),
      piecesLetters_(style.PiecesList.toLatin1()),
      singleByteLetters_(QString::fromLatin1(piecesLetters_) == style.PiecesList) {}

void StylePgnBoard::setUp(const QByteArray& fen) {
    QString text = QString::fromLatin1(fen);
    fenToSlot(1, text, squareVector_, board_, notation_.piecesList);
}

bool StylePgnBoard::play(QByteArrayView word, int side) {
    return playMove(side, word, squareVector_, board_, notation_);
}

void StylePgnBoard::boardText(QByteArray& out) {
    if (singleByteLetters_)
        squaresToFen(squareVector_, board_, piecesLetters_, out);
    else
        out = squaresToFen(squareVector_, board_, notation_.piecesList).toUtf8();
}

} // namespace marlith
