#include "position/move_reader.h"

#include <cstdint>
#include <limits>

namespace marlith {

namespace {

constexpr QChar kBlank = QLatin1Char(' ');

// Place of ch in list, counting from 1; 0 when absent, -1 when the place does
// not fit in a square of the vector.
int place(const QString& list, QChar ch) {
    const qsizetype at = list.indexOf(ch);
    if (at < 0) return 0;
    return at < std::numeric_limits<int16_t>::max() ? static_cast<int>(at) + 1 : -1;
}

bool insideVector(long long i) {
    return i >= 0 && i < kSquareCount;
}

bool isDigit(QChar ch) {
    return ch >= QLatin1Char('0') && ch <= QLatin1Char('9');
}

// A digit's value; any other sign is worth 0.
int digitValue(QChar ch) {
    return isDigit(ch) ? ch.unicode() - '0' : 0;
}

bool startsWithEither(const QString& word, const char* letterO, const char* digitO) {
    return word.startsWith(QLatin1String(letterO)) || word.startsWith(QLatin1String(digitO));
}

// Writes the four squares of a castling, in order. A square outside the
// vector stops the writing there, as any failure does.
bool castle(bool black, bool longSide, SquareVector& squareVector, const Board& board,
            const QString& englishNotation) {
    const long long cols = board.columns;
    const long long last = cols * board.rows - 1;
    const int king = place(englishNotation, QLatin1Char(black ? 'k' : 'K'));
    const int rook = place(englishNotation, QLatin1Char(black ? 'r' : 'R'));
    if (king < 0 || rook < 0) return false;

    long long squares[4];
    if (longSide && !black) {
        const long long row = last - cols;
        squares[0] = row + 1, squares[1] = row + 5, squares[2] = row + 3, squares[3] = row + 4;
    } else if (longSide) {
        squares[0] = 0, squares[1] = 4, squares[2] = 2, squares[3] = 3;
    } else if (!black) {
        squares[0] = last, squares[1] = last - 3, squares[2] = last - 1, squares[3] = last - 2;
    } else {
        squares[0] = cols - 1, squares[1] = cols - 4, squares[2] = cols - 2, squares[3] = cols - 3;
    }
    const int values[4] = {0, 0, king, rook};
    for (int n = 0; n < 4; ++n) {
        if (!insideVector(squares[n])) return false;
        squareVector[squares[n]][1] = static_cast<int16_t>(values[n]);
    }
    return true;
}

// The search for the piece that came to the target. Every test of a square
// goes through test(); the first piece that passes it is the source.
class SourceSearch {
  public:
    SourceSearch(const SquareVector& squareVector, const Board& board, long long target,
                 long long col, long long row, int piece, QChar file, QChar rank)
        : squareVector_(squareVector), cols_(board.columns), rows_(board.rows), target_(target),
          col_(col), row_(row), piece_(piece), file_(file), rank_(rank) {}

    // Walks outward from the target by (dc, dr) until the ray ends.
    void ray(int dc, int dr) {
        for (long long k = 1; test(col_ + k * dc, row_ + k * dr, k * (dc + dr * cols_)); ++k) {
        }
    }
    void single(int dc, int dr) { test(col_ + dc, row_ + dr, dc + dr * cols_); }

    long long source() const { return source_; }
    bool failed() const { return failed_; }

  private:
    // True when the ray goes on past this square.
    bool test(long long c, long long r, long long d) {
        if (source_ >= 0 || failed_) return false;
        if (c < 0 || c >= cols_ || r < 0 || r >= rows_) return false;
        const long long i = target_ + d;
        if (!insideVector(i)) {
            failed_ = true;
            return false;
        }
        const int p = squareVector_[i][1];
        if (p == 0) return true;
        if (p != piece_) return false;
        // A piece of the right kind on the wrong file or rank does not block.
        if (file_ != kBlank && file_.unicode() - 97 != c) return true;
        if (rank_ != kBlank && 8 - digitValue(rank_) != r) return true;
        source_ = i;
        return false;
    }

    const SquareVector& squareVector_;
    long long cols_;
    long long rows_;
    long long target_;
    long long col_;
    long long row_;
    int piece_;
    QChar file_;
    QChar rank_;
    long long source_ = -1;
    bool failed_ = false;
};

// The searches in their order, which is the tie-break between two pieces.
void searchInOrder(SourceSearch& search, QChar kind) {
    const QChar upper = kind.toUpper();
    if (upper == QLatin1Char('Q')) {
        for (int s : {1, -1}) {
            search.ray(s, s);
            search.ray(-s, s);
            search.ray(0, s);
            search.ray(s, 0);
        }
    } else if (upper == QLatin1Char('R')) {
        for (int s : {1, -1}) {
            search.ray(0, s);
            search.ray(s, 0);
        }
    } else if (upper == QLatin1Char('B')) {
        for (int s : {1, -1}) {
            search.ray(s, s);
            search.ray(-s, s);
        }
    } else if (upper == QLatin1Char('N')) {
        for (int s : {1, -1}) {
            search.single(s, 2 * s);
            search.single(-s, 2 * s);
            search.single(2 * s, s);
            search.single(-2 * s, s);
        }
    } else if (upper == QLatin1Char('K')) {
        for (int s : {1, -1}) {
            search.single(-s, s);
            search.single(0, s);
            search.single(s, s);
            search.single(s, 0);
        }
    } else if (kind == QLatin1Char('P')) {
        search.single(0, 1);
        search.single(0, 2);
        search.single(-1, 1);
        search.single(1, 1);
    } else if (kind == QLatin1Char('p')) {
        search.single(0, -1);
        search.single(0, -2);
        search.single(1, -1);
        search.single(-1, -1);
    }
}

} // namespace

void playMove(int side, QString& word, SquareVector& squareVector, const Board& board,
              const Notation& notation) {
    const bool black = side == 1;
    if (startsWithEither(word, "O-O-O", "0-0-0") || startsWithEither(word, "O-O", "0-0")) {
        const bool longSide = startsWithEither(word, "O-O-O", "0-0-0");
        if (!castle(black, longSide, squareVector, board, notation.englishNotation)) word.clear();
        return;
    }

    QString w = word;
    word.clear();

    // "e.p." has left "ep" in the word; it is no part of the move.
    for (qsizetype at = 0; at + 1 < w.size(); ++at) {
        const QChar a = w.at(at);
        const QChar b = w.at(at + 1);
        if ((a == QLatin1Char('e') || a == QLatin1Char('E')) &&
            (b == QLatin1Char('p') || b == QLatin1Char('P'))) {
            w.replace(at, 2, QStringLiteral("  "));
            break;
        }
    }
    static const QString kDropped = QStringLiteral("!?xX+#- ");
    w.removeIf([](QChar ch) { return kDropped.contains(ch); });

    // Promotion is read only as "=" and a letter at the end.
    QString promotion;
    const qsizetype equals = w.indexOf(QLatin1Char('='));
    if (equals >= 0) {
        if (w.size() < 2) return;
        promotion = w.mid(equals + 1, 1);
        w.chop(2);
    }

    QString pieceLetter;
    if (w.isEmpty()) return;
    if (w.at(0) == w.at(0).toUpper()) {
        pieceLetter = w.left(1);
        w.remove(0, 1);
    }
    if (black) {
        pieceLetter = pieceLetter.toLower();
        promotion = promotion.toLower();
    }

    // Ranks are counted for eight rows whatever the board's height.
    if (w.size() < 2) return;
    const long long row = 8 - digitValue(w.at(w.size() - 1));
    const long long col = static_cast<long long>(w.at(w.size() - 2).unicode()) - 97;
    w.chop(2);
    // Mask of file and rank: "a" is a file, "3" a rank, "e2" a file alone.
    QString mask = w.isEmpty() ? QStringLiteral("  ") : w;
    if (w.size() == 1 && isDigit(w.at(0)))
        mask.prepend(kBlank);
    else if (!w.isEmpty())
        mask.append(kBlank);
    const QChar file = mask.at(0);
    const QChar rank = mask.at(mask.size() - 1);

    if (pieceLetter.isEmpty()) pieceLetter = black ? QStringLiteral("p") : QStringLiteral("P");
    const int piece = place(notation.piecesList, pieceLetter.at(0));
    if (promotion.isEmpty()) promotion = pieceLetter;
    const int result = place(notation.piecesList, promotion.at(0));
    const long long target = row * board.columns + col;
    if (piece <= 0 || result < 0) return;
    const QChar kind =
        piece <= notation.englishNotation.size() ? notation.englishNotation.at(piece - 1) : QChar();

    SourceSearch search(squareVector, board, target, col, row, piece, file, rank);
    if (kind == QLatin1Char('P') || kind == QLatin1Char('p')) {
        // A pawn that takes onto an empty square takes en passant: the pawn
        // beside it goes before any source is looked for.
        if (mask != QLatin1String("  ")) {
            if (!insideVector(target)) return;
            if (squareVector[target][1] <= 0) {
                const long long taken =
                    target + (kind == QLatin1Char('P') ? 1 : -1) * board.columns;
                if (!insideVector(taken)) return;
                squareVector[taken][1] = 0;
            }
        }
    }
    searchInOrder(search, kind);
    if (search.failed() || search.source() < 0 || !insideVector(target)) return;
    squareVector[target][1] = static_cast<int16_t>(result);
    squareVector[search.source()][1] = 0;
    word = QStringLiteral("ok");
}

} // namespace marlith
