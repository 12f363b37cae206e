#include "position/move_writer.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace marlith {

namespace {

bool insideVector(long long i) {
    return i >= 0 && i < kSquareCount;
}

// The writer keeps two positions in one vector, one in each member of a
// square: slot 0 in the painted values, slot 1 in the wanted.
using Slot = int16_t Square::*;
Slot slotMember(int slot) {
    return slot == 0 ? &Square::painted : &Square::wanted;
}

// The board field of a history row: behind its piece counter, up to a blank.
QString boardOfRow(const QString& row) {
    const QString text = row.mid(row.indexOf(u')') + 1).trimmed();
    return text.left(text.indexOf(u' '));
}

// Letter k of list, upper-cased; empty past its end.
QString upperLetter(const QString& list, int k) {
    return k <= list.size() ? QString(list.at(k - 1).toUpper()) : QString();
}

// Where else the moving piece could have come from: the search of the reader
// walked from the target over the earlier position.
class TwinSearch {
  public:
    TwinSearch(const SquareVector& squareVector, Slot slot, long long cols, long long rows,
               long long target, long long source)
        : squareVector_(squareVector), slot_(slot), cols_(cols), rows_(rows),
          targetCol_(target % cols), targetRow_(target / cols),
          source_(source), piece_(squareVector[source].*slot) {}

    void ray(int dc, int dr) {
        for (long long k = 1; look(targetCol_ + k * dc, targetRow_ + k * dr); ++k) {
        }
    }
    void single(int dc, int dr) { look(targetCol_ + dc, targetRow_ + dr); }

    bool found = false;
    bool sameFile = false;
    bool sameRank = false;
    bool failed = false;

  private:
    // True when the ray goes on past this square.
    bool look(long long c, long long r) {
        if (failed || c < 0 || c >= cols_ || r < 0 || r >= rows_) return false;
        const long long i = r * cols_ + c;
        if (i == source_) return true;
        if (!insideVector(i)) {
            failed = true;
            return false;
        }
        const int p = squareVector_[i].*slot_;
        if (p <= 0) return true;
        if (p != piece_) return false;
        found = true;
        if ((i - source_) % cols_ == 0) sameFile = true;
        if (i / cols_ == source_ / cols_) sameRank = true;
        return true;
    }

    const SquareVector& squareVector_;
    Slot slot_;
    long long cols_;
    long long rows_;
    long long targetCol_;
    long long targetRow_;
    long long source_;
    int piece_;
};

void searchTwins(TwinSearch& search, QChar kind) {
    for (int s : {1, -1}) {
        if (kind == QLatin1Char('N')) {
            search.single(s, 2 * s);
            search.single(-s, 2 * s);
            search.single(2 * s, s);
            search.single(-2 * s, s);
            continue;
        }
        if (kind == QLatin1Char('B') || kind == QLatin1Char('Q')) {
            search.ray(s, s);
            search.ray(-s, s);
        }
        if (kind == QLatin1Char('R') || kind == QLatin1Char('Q')) {
            search.ray(0, s);
            search.ray(s, 0);
        }
    }
}

} // namespace

QString squareName(int square, int columns) {
    if (columns <= 0 || square < 0) return QString();
    return QChar(97 + square % columns) + QString::number(columns - square / columns);
}

void fenToSlot(int k, QString& t, SquareVector& squareVector, const Board& board,
               const QString& piecesList) {
    if (k != 0 && k != 1) return;
    const Slot slot = slotMember(k);
    t = dropCounterPrefix(t);
    long long i = 0;
    auto put = [&](int value) {
        if (!insideVector(i)) return false;
        squareVector[i++].*slot = static_cast<int16_t>(value);
        return true;
    };
    // The whole text is read: a side to move behind the board lands past its
    // last square, where nobody looks.
    for (const QChar ch : t) {
        if (ch >= QLatin1Char('1') && ch <= QLatin1Char('9')) {
            for (int n = ch.unicode() - '0'; n > 0; --n)
                if (!put(0)) return;
        } else if (const qsizetype at = piecesList.indexOf(ch); at >= 0) {
            if (at >= std::numeric_limits<int16_t>::max() || !put(static_cast<int>(at) + 1)) return;
        }
    }
    const long long last = static_cast<long long>(board.columns) * board.rows - 1;
    while (i <= last)
        if (!put(0)) return;
}

void writeMove(int v, QString& m, const SquareVector& squareVector, const Board& board,
               const Notation& notation) {
    m.clear();
    if (v != 0 && v != 1) return;
    const Slot earlierSlot = slotMember(v);
    const Slot laterSlot = slotMember(1 - v);
    const long long cols = board.columns;
    const long long rows = board.rows;
    const long long last = cols * rows - 1;
    if (cols <= 0) return;

    std::vector<long long> to;
    std::vector<long long> from;
    for (long long i = 0; i <= last; ++i) {
        if (!insideVector(i)) return;
        if (squareVector[i].*earlierSlot == squareVector[i].*laterSlot) continue;
        (squareVector[i].*laterSlot > 0 ? to : from).push_back(i);
    }

    // Two squares filled means castling, told apart by the corner the rook left.
    if (to.size() == 2) {
        for (long long square : from) {
            if (square == 0) m = QStringLiteral("O-O-O");
            if (square == (cols - 1) * rows) m = QStringLiteral("O-O-O");
            if (square == cols - 1) m = QStringLiteral("O-O");
            if (square == last) m = QStringLiteral("O-O");
        }
        return;
    }

    // With nothing changed, square 0 stands as both ends of the move.
    if (to.size() > 1 || from.size() > 2) return;
    const long long target = to.empty() ? 0 : to.front();
    const int moved = squareVector[target].*laterSlot;
    if (moved <= 0) return;
    QString letter = upperLetter(notation.piecesList, moved);
    QString kind = upperLetter(notation.englishNotation, moved);
    QString x = squareVector[target].*earlierSlot > 0 ? QStringLiteral("x") : QString();
    const QString targetName = squareName(static_cast<int>(target), static_cast<int>(cols));

    long long source = from.empty() ? 0 : from.front();
    if (from.size() == 2) {
        // En passant: the pawn taken stands on the target's file.
        x = QStringLiteral("x");
        source = (from[0] - target) % cols != 0 ? from[0] : from[1];
    }
    const QString sourceName = squareName(static_cast<int>(source), static_cast<int>(cols));

    QString promotion;
    const int earlier = squareVector[source].*earlierSlot;
    if (earlier != moved) {
        if (earlier <= 0) return;
        promotion = QLatin1Char('=') + letter;
        letter = upperLetter(notation.piecesList, earlier);
        kind = upperLetter(notation.englishNotation, earlier);
    }

    if (kind == QLatin1String("P")) {
        if (!x.isEmpty()) m = sourceName.left(1) + x;
        m += targetName + promotion;
    } else if (kind == QLatin1String("K")) {
        m = letter + x + targetName;
    } else if (kind == QLatin1String("N") || kind == QLatin1String("B") ||
               kind == QLatin1String("R") || kind == QLatin1String("Q")) {
        TwinSearch twins(squareVector, earlierSlot, cols, rows, target, source);
        searchTwins(twins, kind.at(0));
        if (twins.failed) return;
        // The file alone tells twins apart unless they share it.
        if (twins.found && !twins.sameFile && !twins.sameRank) twins.sameRank = true;
        QString disambiguator;
        if (twins.sameRank) disambiguator += sourceName.left(1);
        if (twins.sameFile) disambiguator += sourceName.right(1);
        m = letter + disambiguator + x + targetName;
    }
}

RowGame::RowGame(const QStringList& rows, const Board& board, const Notation& notation)
    : rows_(rows), board_(board), notation_(notation), first_(rows.value(0)) {
    fenToSlot(0, first_, squares_, board_, notation_.piecesList);
    const qsizetype blank = first_.indexOf(u' ');
    blackFirst_ = blank >= 0 && first_.mid(blank + 1, 1) == u"b";
}

QStringList withoutRepeatedBoards(const QStringList& rows, bool firstOnly) {
    QStringList kept;
    for (const QString& row : rows) {
        if (!kept.isEmpty() && (!firstOnly || kept.size() == 1) &&
            boardOfRow(row) == boardOfRow(kept.back()))
            continue;
        kept.append(row);
    }
    return kept;
}

QString RowGame::move(qsizetype i, bool& numbered) {
    QString row = rows_.value(i);
    fenToSlot(static_cast<int>(i % 2), row, squares_, board_, notation_.piecesList);
    const int from = static_cast<int>((i + 1) % 2);
    QString move;
    writeMove(from, move, squares_, board_, notation_);
    numbered = from == (blackFirst_ ? 1 : 0);
    return move;
}

} // namespace marlith
