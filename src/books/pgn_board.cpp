#include "books/pgn_board.h"

#include "position/move_reader.h"
#include "position/move_writer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace marlith {

StylePgnBoard::StylePgnBoard(const Style& style)
    : board_{style.BorderHeight, style.BorderWidth}, notation_(notationOf(style)),
      piecesLetters_(style.PiecesList.toLatin1()),
      singleByteLetters_(QString::fromLatin1(piecesLetters_) == style.PiecesList) {
    keepsRows_ = singleByteLetters_ && board_.rows > 0 && board_.columns > 0 &&
                 board_.squares() == board_.rows * board_.columns;
    if (keepsRows_) {
        // A row is read in whole chunks of eight, the last one too.
        rowTexts_.resize(static_cast<size_t>(board_.squares()) * kMostPerSquare + 8);
        rowLengths_.assign(static_cast<size_t>(board_.rows), 0);
    }
}

void StylePgnBoard::setUp(const QByteArray& fen) {
    QString text = QString::fromLatin1(fen);
    fenToSlot(1, text, squareVector_, board_, notation_.piecesList);
    std::fill(rowLengths_.begin(), rowLengths_.end(), 0);
}

MovePlay StylePgnBoard::play(QByteArrayView word, int side) {
    return playMoveWord(side, word, squareVector_, board_, notation_);
}

namespace {

// Rows are short: eight bytes at a time beats calls into the library.
constexpr int kChunk = 8;

bool sameSquares(const Square* a, const Square* b, int count) {
    const auto* x = reinterpret_cast<const unsigned char*>(a);
    const auto* y = reinterpret_cast<const unsigned char*>(b);
    const size_t bytes = sizeof(Square) * static_cast<size_t>(count);
    size_t at = 0;
    for (; at + kChunk <= bytes; at += kChunk) {
        uint64_t u = 0;
        uint64_t v = 0;
        std::memcpy(&u, x + at, kChunk);
        std::memcpy(&v, y + at, kChunk);
        if (u != v) return false;
    }
    for (; at < bytes; ++at)
        if (x[at] != y[at]) return false;
    return true;
}

} // namespace

void StylePgnBoard::boardText(QByteArray& out) {
    if (!keepsRows_) {
        if (singleByteLetters_)
            squaresToFen(squareVector_, board_, piecesLetters_, out);
        else
            out = squaresToFen(squareVector_, board_, notation_.piecesList).toUtf8();
        return;
    }
    const int columns = board_.columns;
    const size_t stride = static_cast<size_t>(columns) * kMostPerSquare;
    // Whole chunks are copied, so the text has room for one more behind it.
    char text[kMostPerSquare * kSquareCount + kChunk];
    char* to = text;
    for (int row = 0; row < board_.rows; ++row) {
        const size_t first = static_cast<size_t>(row) * static_cast<size_t>(columns);
        const Square* now = squareVector_.data() + first;
        Square* then = rowsWrittenFrom_.data() + first;
        int& length = rowLengths_[static_cast<size_t>(row)];
        char* rowText = rowTexts_.data() + static_cast<size_t>(row) * stride;
        if (length == 0 || !sameSquares(now, then, columns)) {
            length = static_cast<int>(rowToFen(now, columns, piecesLetters_, rowText));
            std::copy(now, now + columns, then);
        }
        for (int at = 0; at < length; at += kChunk) {
            uint64_t chunk = 0;
            std::memcpy(&chunk, rowText + at, kChunk);
            std::memcpy(to + at, &chunk, kChunk);
        }
        to += length;
    }
    // Without the "/" behind the last row.
    const qsizetype size = to - text - 1;
    out.resize(size);
    std::memcpy(out.data(), text, static_cast<size_t>(size));
}

} // namespace marlith
