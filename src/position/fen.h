// The square vector and the program's FEN dialect, in both directions.
#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>

namespace marlith {

inline constexpr int kSquareCount = 401;

// Square i holds two slots: [1] the wanted content, [0] what is painted
// (-1: nothing valid, so the next buildBoard paints it whatever it holds).
using SquareSlots = std::array<int16_t, 2>;
using SquareVector = std::array<SquareSlots, kSquareCount>;

struct Board {
    int rows = 8;
    int columns = 8;
    int squares() const;
};

// 0 or 1; the top left square has colour 0 and every row starts anew.
int16_t squareColor(int square, int columns);

// Wanted content folded back from a sheet cell to 0..L; negatives are empty.
inline int foldedContent(int value, int piecesCount) {
    if (value > piecesCount) value -= piecesCount + 1;
    return value < 0 ? 0 : value;
}

QString squaresToFen(const SquareVector& squareVector, const Board& board,
                     const QString& piecesList);
// The same for a list of single-byte letters, into a buffer kept by the
// caller: the game scanner writes a position for every half-move.
void squaresToFen(const SquareVector& squareVector, const Board& board,
                  const QByteArray& piecesList, QByteArray& out);

// Each square adds at most its letter, the digit of the run before it and
// the "/" of its row.
inline constexpr int kMostPerSquare = 3;
// One full row in the same text, "/" behind it, into out, which has room for
// kMostPerSquare characters a square; the length. The game scanner writes
// again only the rows a move touched.
qsizetype rowToFen(const SquareSlots* row, int columns, const QByteArray& piecesList, char* out);

void invalidatePainted(SquareVector& squareVector, const Board& board);

// Text of the board field with the counter prefix "(...)" dropped.
QString dropCounterPrefix(const QString& text);

struct PieceCount {
    int whites = 0;
    int blacks = 0;
};
QString counterText(const PieceCount& count);

// Reads the text into the wanted slots and calls paint(cell, oneBasedSquare) for every
// square of the board whose wanted content differs from what is painted.
// Returns false when the text runs past the end of the vector: the rest is
// ignored and the counter is not to be shown.
using PaintSquare = std::function<void(int cell, int oneBasedSquare)>;
bool buildBoard(const QString& text, SquareVector& squareVector, const Board& board,
                const QString& piecesList, const PaintSquare& paint, PieceCount* count);

// Completes each row typed before a "/" with the digits that fill it.
QString fillRows(const QString& text, int columns, const QString& piecesList);

// The End key: the text up to and including its last piece, or "".
QString cutAfterLastPiece(const QString& text, const QString& piecesList);

// The "/" key at caret s: the new text and the new caret.
struct RowCompletion {
    QString text;
    int caret = 0;
};
RowCompletion completeRow(const QString& text, int caret, int columns, const QString& piecesList);

} // namespace marlith
