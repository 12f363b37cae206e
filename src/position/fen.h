// The square vector and the program's FEN dialect, in both directions.
#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>

namespace marlith {

inline constexpr int kSquareCount = 401;

// One square of the board. Both members hold its piece as 0 (empty) or 1..L,
// the place in the pieces list; an edit on the board stores the piece's cell
// of the sheet instead, which is L + 1 higher on a dark square (sheetCell),
// and foldedContent reads either back. The board is up to 20 by 20 and the
// book scanners walk it for every move: two 16-bit values, no more.
struct Square {
    int16_t painted; // what the diagram shows; -1: nothing valid, so the next
                     // buildBoard paints the square whatever it holds
    int16_t wanted;  // what the square holds
    friend bool operator==(const Square&, const Square&) = default;
};
using SquareVector = std::array<Square, kSquareCount>;

struct Board {
    int rows = 8;
    int columns = 8;
    int squares() const;
};

// 0 or 1; the top left square has colour 0 and every row starts anew.
int16_t squareColor(int square, int columns);

// The cell of the piece sheet that shows content (0 empty, 1..L a piece) on
// a square of this colour (0 light, 1 dark): the sheet holds the light
// squares' L + 1 cells, then the dark squares'.
inline int sheetCell(int content, int colour, int piecesCount) {
    return content + (piecesCount + 1) * colour;
}

// The content a cell shows, whatever the square's colour; a value of the
// light half stays as it is.
inline int cellContent(int cell, int piecesCount) {
    return cell > piecesCount ? cell - (piecesCount + 1) : cell;
}

// The same with negatives (nothing valid) as empty: 0..L for any cell value.
inline int foldedContent(int value, int piecesCount) {
    const int content = cellContent(value, piecesCount);
    return content < 0 ? 0 : content;
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
qsizetype rowToFen(const Square* row, int columns, const QByteArray& piecesList, char* out);

void invalidatePainted(SquareVector& squareVector, const Board& board);

// Text of the board field with the counter prefix "(...)" dropped.
QString dropCounterPrefix(const QString& text);

struct PieceCount {
    int whites = 0;
    int blacks = 0;
    int neutrals = 0; // shown behind a "+" when there are any
};
QString counterText(const PieceCount& count);

// Reads the text into the wanted values and calls paint(cell, oneBasedSquare) for every
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
