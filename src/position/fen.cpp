#include "position/fen.h"

#include "styles/style.h"

#include <algorithm>
#include <cstring>

namespace marlith {

int Board::squares() const {
    return boardSquares(rows, columns);
}

int16_t squareColor(int square, int columns) {
    if (columns <= 0 || square < 0) return 0;
    return static_cast<int16_t>(((square % columns) + ((square / columns) % 2)) % 2);
}

namespace {

// The writer for both kinds of text, Unit being char or char16_t: letters
// holds the pieces' letters, the text has room for kMostPerSquare units a
// square. A run that passes 8 writes an "8" and starts anew, so its number is
// a single digit. `count` squares from `square` on: a full row ends with its
// run and "/", the part of a row that ends the board without its run.
template <typename Unit>
Unit* writeRow(const Square* square, int count, int columns, const Unit* letters, int pieces,
               Unit* w) {
    int run = 0;
    for (int col = 1; col <= count; ++col, ++square) {
        const int k = foldedContent(square->wanted, pieces);
        const bool rowEnd = col == columns;
        if (k >= 1 && k <= pieces) {
            // The digit is stored in any case and kept after a run: empty
            // and full squares follow each other without a pattern.
            *w = static_cast<Unit>('0' + run);
            w += run > 0;
            *w++ = letters[k - 1];
            run = 0;
        } else if (rowEnd) {
            *w++ = static_cast<Unit>('0' + run + 1);
        } else if (++run > 8) {
            *w++ = '8';
            run = 1;
        }
        if (rowEnd) *w++ = '/';
    }
    return w;
}

// Returns the length of the text.
template <typename Unit>
qsizetype writeFen(const SquareVector& squareVector, const Board& board, const Unit* letters,
                   int pieces, Unit* text) {
    const int squares = std::min(board.squares(), kSquareCount);
    // Without columns the squares run on as one row that never ends.
    const int step = board.columns > 0 ? board.columns : squares;
    Unit* w = text;
    for (int i = 0; i < squares; i += step)
        w = writeRow(squareVector.data() + i, std::min(step, squares - i), board.columns, letters,
                     pieces, w);
    if (w != text && w[-1] == '/') --w;
    return w - text;
}

} // namespace

QString squaresToFen(const SquareVector& squareVector, const Board& board,
                     const QString& piecesList) {
    char16_t text[kMostPerSquare * kSquareCount];
    const qsizetype size = writeFen(squareVector, board, QStringView(piecesList).utf16(),
                                    static_cast<int>(piecesList.size()), text);
    return size > 0 ? QString(reinterpret_cast<const QChar*>(text), size) : QString();
}

void squaresToFen(const SquareVector& squareVector, const Board& board,
                  const QByteArray& piecesList, QByteArray& out) {
    char text[kMostPerSquare * kSquareCount];
    const qsizetype size = writeFen(squareVector, board, piecesList.constData(),
                                    static_cast<int>(piecesList.size()), text);
    if (size == 0) {
        out.clear();
        return;
    }
    // Resizing keeps the caller's buffer, which has room after the first game.
    out.resize(size);
    std::memcpy(out.data(), text, static_cast<size_t>(size));
}

qsizetype rowToFen(const Square* row, int columns, const QByteArray& piecesList, char* out) {
    return writeRow(row, columns, columns, piecesList.constData(),
                    static_cast<int>(piecesList.size()), out) -
           out;
}

void invalidatePainted(SquareVector& squareVector, const Board& board) {
    const int last = std::min(board.squares(), kSquareCount - 1);
    for (int i = 0; i <= last; ++i)
        squareVector[i].painted = -1;
}

QString dropCounterPrefix(const QString& text) {
    const qsizetype close = text.indexOf(QLatin1Char(')'));
    return close < 0 ? text : text.mid(close + 1);
}

QString counterText(const PieceCount& count) {
    if (count.neutrals > 0)
        return QStringLiteral("(%1x%2+%3)").arg(count.whites).arg(count.blacks).arg(count.neutrals);
    return QStringLiteral("(%1x%2)").arg(count.whites).arg(count.blacks);
}

namespace {

// Position of ch in "123456789" followed by the pieces list, 1-based; 0 if absent.
int lookUp(QChar ch, const QString& piecesList) {
    if (ch >= QLatin1Char('1') && ch <= QLatin1Char('9')) return ch.unicode() - '0';
    const qsizetype at = piecesList.indexOf(ch);
    return at < 0 ? 0 : static_cast<int>(at) + 10;
}

} // namespace

bool buildBoard(const QString& text, SquareVector& squareVector, const Board& board,
                const QString& piecesList, const PaintSquare& paint, PieceCount* count) {
    const int squares = board.squares();
    const int pieces = static_cast<int>(piecesList.size());
    auto setAndPaint = [&](int i, int value) {
        squareVector[i].wanted = static_cast<int16_t>(value);
        if (squareVector[i].wanted == squareVector[i].painted || i >= squares) return;
        squareVector[i].painted = squareVector[i].wanted;
        if (paint)
            paint(sheetCell(squareVector[i].wanted, squareColor(i, board.columns), pieces), i + 1);
    };

    PieceCount counted;
    int i = 0;
    for (const QChar ch : dropCounterPrefix(text)) {
        const int k = lookUp(ch, piecesList);
        if (k >= 1 && k <= 9) {
            for (int n = 0; n < k; ++n) {
                if (i >= kSquareCount) return false;
                setAndPaint(i++, 0);
            }
        } else if (k > 9) {
            if (i >= kSquareCount) return false;
            setAndPaint(i++, k - 9);
            if (ch == ch.toUpper())
                ++counted.whites;
            else
                ++counted.blacks;
        }
    }
    for (; i < squares; ++i)
        setAndPaint(i, 0);
    if (count) *count = counted;
    return true;
}

QString fillRows(const QString& text, int columns, const QString& piecesList) {
    QString out;
    int count = 0;
    for (const QChar ch : dropCounterPrefix(text)) {
        if (ch >= QLatin1Char('1') && ch <= QLatin1Char('9')) {
            count += ch.unicode() - '0';
        } else if (ch == QLatin1Char('/')) {
            if (count == 0) {
                count = columns;
            } else if (count >= columns) {
                if (columns <= 0) return out; // no row length: the pass ends here
                count %= columns;
            }
            if (count > 0) {
                int need = columns - (count % columns);
                while (need > 9) {
                    out += QLatin1Char('9');
                    need -= 9;
                }
                out += QString::number(need);
                count = 0;
            }
        } else if (piecesList.contains(ch)) {
            ++count;
        }
        out += ch;
    }
    return out;
}

QString cutAfterLastPiece(const QString& text, const QString& piecesList) {
    for (qsizetype at = text.size() - 1; at >= 0; --at) {
        if (piecesList.contains(text.at(at))) return text.left(at + 1);
    }
    return QString();
}

RowCompletion completeRow(const QString& text, int caret, int columns, const QString& piecesList) {
    const int s = std::clamp(caret, 0, static_cast<int>(text.size()));
    QString typed = text;
    typed.insert(s, QLatin1Char('/'));
    RowCompletion result;
    result.text = fillRows(typed, columns, piecesList);
    result.caret = std::min(s + 2, static_cast<int>(result.text.size()));
    return result;
}

} // namespace marlith
