#include "position/fen.h"

#include "styles/style.h"

#include <algorithm>

namespace marlith {

int Board::squares() const {
    return boardSquares(rows, columns);
}

int16_t squareColor(int square, int columns) {
    if (columns <= 0 || square < 0) return 0;
    return static_cast<int16_t>(((square % columns) + ((square / columns) % 2)) % 2);
}

int foldedContent(int value, int piecesCount) {
    if (value > piecesCount) value -= piecesCount + 1;
    return value < 0 ? 0 : value;
}

namespace {

// One writer for both kinds of text: Text is QString or QByteArray, letter(k)
// gives the letter of piece k (from 0).
template <typename Text, typename Letter>
void writeFen(const SquareVector& squareVector, const Board& board, int pieces, Letter letter,
              Text& w) {
    const int squares = std::min(board.squares(), kSquareCount);
    int col = 0;
    int run = 0;
    auto number = [&w](int n) {
        // A run is at most a row long; rows may have up to 400 squares.
        if (n >= 100) w += static_cast<char>('0' + n / 100);
        if (n >= 10) w += static_cast<char>('0' + n / 10 % 10);
        w += static_cast<char>('0' + n % 10);
    };
    for (int i = 0; i < squares; ++i) {
        const int k = foldedContent(squareVector[i][1], pieces);
        if (k < 1 || k > pieces) {
            ++col;
            ++run;
            if (col == board.columns) {
                number(run);
                w += '/';
                run = 0;
                col = 0;
            }
            if (run > 8) {
                w += '8';
                run = 1;
            }
        } else {
            if (run > 0) {
                number(run);
                run = 0;
            }
            w += letter(k - 1);
            ++col;
            if (col == board.columns) {
                w += '/';
                col = 0;
            }
        }
    }
    if (w.endsWith('/')) w.chop(1);
}

} // namespace

QString squaresToFen(const SquareVector& squareVector, const Board& board,
                     const QString& piecesList) {
    QString w;
    writeFen(
        squareVector, board, static_cast<int>(piecesList.size()),
        [&piecesList](int k) { return piecesList.at(k); }, w);
    return w;
}

void squaresToFen(const SquareVector& squareVector, const Board& board,
                  const QByteArray& piecesList, QByteArray& out) {
    out.clear();
    writeFen(
        squareVector, board, static_cast<int>(piecesList.size()),
        [&piecesList](int k) { return piecesList.at(k); }, out);
}

void invalidatePainted(SquareVector& squareVector, const Board& board) {
    const int last = std::min(board.squares(), kSquareCount - 1);
    for (int i = 0; i <= last; ++i)
        squareVector[i][0] = -1;
}

QString dropCounterPrefix(const QString& text) {
    const qsizetype close = text.indexOf(QLatin1Char(')'));
    return close < 0 ? text : text.mid(close + 1);
}

QString counterText(const PieceCount& count) {
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
        squareVector[i][1] = static_cast<int16_t>(value);
        if (squareVector[i][1] == squareVector[i][0] || i >= squares) return;
        squareVector[i][0] = squareVector[i][1];
        if (paint) paint(squareVector[i][1] + (pieces + 1) * squareColor(i, board.columns), i + 1);
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
