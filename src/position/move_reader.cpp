#include "position/move_reader.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>

namespace marlith {

namespace {

constexpr char16_t kBlank = u' ';

enum class Outcome { NoMove, Moved, Castled, NoSource };

// Place of ch in list, counting from 1; 0 when absent, -1 when the place does
// not fit in a square of the vector.
int place(QStringView list, char16_t ch) {
    const char16_t* const units = list.utf16();
    for (qsizetype at = 0; at < list.size(); ++at) {
        if (units[at] == ch)
            return at < std::numeric_limits<int16_t>::max() ? static_cast<int>(at) + 1 : -1;
    }
    return 0;
}

bool insideVector(long long i) {
    return i >= 0 && i < kSquareCount;
}

// 0 <= x < size, in one comparison: a negative x turns into a huge unsigned one.
bool onBoard(long long x, long long size) {
    return static_cast<unsigned long long>(x) < static_cast<unsigned long long>(size);
}

bool isDigit(char16_t ch) {
    return ch >= u'0' && ch <= u'9';
}

// A digit's value; any other sign is worth 0.
int digitValue(char16_t ch) {
    return isDigit(ch) ? ch - u'0' : 0;
}

// QChar's upper case of one unit; ASCII, nearly every word, spares the tables.
char16_t upperOf(char16_t ch) {
    if (ch < 0x80) return ch >= u'a' && ch <= u'z' ? static_cast<char16_t>(ch - 32) : ch;
    return QChar(ch).toUpper().unicode();
}

// The first unit of QString::toLower() of the single unit ch. That is QChar's
// mapping but for U+0130, whose full lower case "i\u0307" QChar leaves alone.
char16_t lowerOf(char16_t ch) {
    if (ch < 0x80) return ch >= u'A' && ch <= u'Z' ? static_cast<char16_t>(ch + 32) : ch;
    return ch == u'\u0130' ? u'i' : QChar(ch).toLower().unicode();
}

template <typename Unit> bool startsWith(const Unit* word, qsizetype size, const char* prefix) {
    for (qsizetype n = 0; prefix[n] != '\0'; ++n) {
        if (n >= size || word[n] != static_cast<unsigned char>(prefix[n])) return false;
    }
    return true;
}

template <typename Unit>
bool startsWithEither(const Unit* word, qsizetype size, const char* letterO, const char* digitO) {
    return startsWith(word, size, letterO) || startsWith(word, size, digitO);
}

// Writes the four squares of a castling, in order. A square outside the
// vector stops the writing there, as any failure does.
bool castle(bool black, bool longSide, SquareVector& squareVector, const Board& board,
            const QString& englishNotation) {
    const long long cols = board.columns;
    const long long last = cols * board.rows - 1;
    const int king = place(englishNotation, black ? u'k' : u'K');
    const int rook = place(englishNotation, black ? u'r' : u'R');
    // Letters the notation doesn't have can't castle.
    if (king <= 0 || rook <= 0) return false;

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
    // A castling that can't be played leaves the board as it was.
    if (!std::all_of(std::begin(squares), std::end(squares), insideVector)) return false;
    const int values[4] = {0, 0, king, rook};
    for (int n = 0; n < 4; ++n)
        squareVector[squares[n]].wanted = static_cast<int16_t>(values[n]);
    return true;
}

// A piece that can come to the target: its square, column and row.
struct Candidate {
    long long square;
    long long col;
    long long row;
};

// Whether a piece is pinned: on a rank, file or diagonal through it, the
// first piece one way is a king of its side and the first piece the other
// way an enemy rook, bishop or queen that moves along that line. A piece
// that stays on the line, because the target lies between the two, is not.
// Move text names a pinned piece's twin without its file or rank, so the pin
// is what tells the two apart.
class PinCheck {
  public:
    PinCheck(const SquareVector& squareVector, const Board& board, const QString& englishNotation,
             bool white, long long target)
        : squareVector_(squareVector), cols_(std::max(board.columns, 0)),
          rows_(std::max(board.rows, 0)), english_(QStringView(englishNotation).utf16()),
          englishSize_(englishNotation.size()), target_(target), king_(white ? u'K' : u'k'),
          queen_(white ? u'q' : u'Q'), rook_(white ? u'r' : u'R'), bishop_(white ? u'b' : u'B') {}

    bool pinned(const Candidate& piece) const {
        static constexpr int kLines[4][2] = {{1, 0}, {0, 1}, {1, 1}, {1, -1}};
        for (const auto& [dc, dr] : kLines) {
            const char16_t ahead = firstKind(piece, dc, dr);
            const char16_t behind = firstKind(piece, -dc, -dr);
            const char16_t slider = dc != 0 && dr != 0 ? bishop_ : rook_;
            if ((ahead == king_ && (behind == slider || behind == queen_)) ||
                (behind == king_ && (ahead == slider || ahead == queen_)))
                return true;
        }
        return false;
    }

  private:
    // The kind of the first piece from the square outward; 0 at the board's
    // edge, at the target and for a letter of no known kind.
    char16_t firstKind(const Candidate& from, int dc, int dr) const {
        for (long long c = from.col + dc, r = from.row + dr; onBoard(c, cols_) && onBoard(r, rows_);
             c += dc, r += dr) {
            const long long i = r * cols_ + c;
            if (i == target_ || !insideVector(i)) return 0;
            const int value = squareVector_[i].wanted;
            if (value == 0) continue;
            return value > 0 && value <= englishSize_ ? english_[value - 1] : 0;
        }
        return 0;
    }

    const SquareVector& squareVector_;
    long long cols_;
    long long rows_;
    const char16_t* english_;
    qsizetype englishSize_;
    long long target_;
    char16_t king_;
    char16_t queen_;
    char16_t rook_;
    char16_t bishop_;
};

// The search for the piece that came to the target. Every test of a square
// goes through test(); each piece that passes it is a candidate, in the
// order of the tests. The first candidate that is not pinned is the source;
// when all are pinned, the first. A king can't be pinned: the first king
// found ends the search.
class SourceSearch {
  public:
    SourceSearch(const SquareVector& squareVector, const Board& board, long long target,
                 long long col, long long row, int piece, char16_t file, char16_t rank,
                 const PinCheck* pins)
        : squareVector_(squareVector), pins_(pins), cols_(std::max(board.columns, 0)),
          rows_(std::max(board.rows, 0)), target_(target), col_(col), row_(row), piece_(piece),
          file_(file), rank_(rank), mostCandidates_(pins != nullptr ? kMostCandidates : 1) {}

    // Walks outward from the target by (dc, dr) until the ray ends.
    void ray(int dc, int dr) {
        for (long long k = 1; test(col_ + k * dc, row_ + k * dr, k * (dc + dr * cols_)); ++k) {
        }
    }
    void single(int dc, int dr) { test(col_ + dc, row_ + dr, dc + dr * cols_); }

    // The source's square; -1 for none.
    long long source() const {
        if (count_ == 0) return -1;
        for (int n = 0; count_ > 1 && n < count_; ++n) {
            if (!pins_->pinned(candidates_[n])) return candidates_[n].square;
        }
        return candidates_[0].square;
    }

  private:
    // True when the ray goes on past this square.
    bool test(long long c, long long r, long long d) {
        if (failed_ || count_ == mostCandidates_) return false;
        if (!onBoard(c, cols_) || !onBoard(r, rows_)) return false;
        const long long i = target_ + d;
        if (!insideVector(i)) {
            failed_ = true;
            return false;
        }
        const int p = squareVector_[i].wanted;
        if (p == 0) return true;
        if (p != piece_) return false;
        // A piece of the right kind on the wrong file or rank does not block.
        if (file_ != kBlank && file_ - 97 != c) return true;
        if (rank_ != kBlank && 8 - digitValue(rank_) != r) return true;
        candidates_[count_++] = {i, c, r};
        return false;
    }

    // Each ray or single square gives at most one; no piece has more than eight.
    static constexpr int kMostCandidates = 8;

    const SquareVector& squareVector_;
    const PinCheck* pins_; // none for a king
    long long cols_;
    long long rows_;
    long long target_;
    long long col_;
    long long row_;
    int piece_;
    char16_t file_;
    char16_t rank_;
    int mostCandidates_;
    Candidate candidates_[kMostCandidates];
    int count_ = 0;
    bool failed_ = false;
};

// The searches in their order, which is the tie-break between two pieces.
void searchInOrder(SourceSearch& search, char16_t kind) {
    const char16_t upper = upperOf(kind);
    if (upper == u'Q') {
        for (int s : {1, -1}) {
            search.ray(s, s);
            search.ray(-s, s);
            search.ray(0, s);
            search.ray(s, 0);
        }
    } else if (upper == u'R') {
        for (int s : {1, -1}) {
            search.ray(0, s);
            search.ray(s, 0);
        }
    } else if (upper == u'B') {
        for (int s : {1, -1}) {
            search.ray(s, s);
            search.ray(-s, s);
        }
    } else if (upper == u'N') {
        for (int s : {1, -1}) {
            search.single(s, 2 * s);
            search.single(-s, 2 * s);
            search.single(2 * s, s);
            search.single(-2 * s, s);
        }
    } else if (upper == u'K') {
        for (int s : {1, -1}) {
            search.single(-s, s);
            search.single(0, s);
            search.single(s, s);
            search.single(s, 0);
        }
    } else if (kind == u'P') {
        search.single(0, 1);
        search.single(0, 2);
        search.single(-1, 1);
        search.single(1, 1);
    } else if (kind == u'p') {
        search.single(0, -1);
        search.single(0, -2);
        search.single(1, -1);
        search.single(-1, -1);
    }
}

// Plays the word w of size units, from which the signs that are no part of
// the move are gone. w is the caller's buffer, not const: GCC would take the
// unwritten rest of it for a read of uninitialised memory.
Outcome playCleanWord(bool black, char16_t* w, qsizetype size, SquareVector& squareVector,
                      const Board& board, const Notation& notation) {
    // Promotion is read only as "=" and a letter at the end.
    qsizetype end = size;
    char16_t promotion = 0;
    bool promotes = false;
    const char16_t* const equals = std::find(w, w + size, u'=');
    if (equals != w + size) {
        if (size < 2) return Outcome::NoMove;
        if (equals + 1 != w + size) {
            promotion = equals[1];
            promotes = true;
        }
        end -= 2;
    }

    if (end == 0) return Outcome::NoMove;
    qsizetype from = 0;
    char16_t pieceLetter = 0;
    bool lettered = false;
    if (w[0] == upperOf(w[0])) {
        pieceLetter = w[0];
        lettered = true;
        from = 1;
    }
    if (black) {
        if (lettered) pieceLetter = lowerOf(pieceLetter);
        if (promotes) promotion = lowerOf(promotion);
    }

    // Ranks are counted for eight rows whatever the board's height.
    if (end - from < 2) return Outcome::NoMove;
    const long long row = 8 - digitValue(w[end - 1]);
    const long long col = static_cast<long long>(w[end - 2]) - 97;
    end -= 2;
    // Mask of file and rank: "a" is a file, "3" a rank, "e2" a file alone.
    const qsizetype maskSize = end - from;
    char16_t file = kBlank;
    char16_t rank = kBlank;
    if (maskSize == 1 && isDigit(w[from]))
        rank = w[from];
    else if (maskSize > 0)
        file = w[from];

    if (!lettered) pieceLetter = black ? u'p' : u'P';
    const int piece = place(notation.piecesList, pieceLetter);
    if (!promotes) promotion = pieceLetter;
    const int result = place(notation.piecesList, promotion);
    const long long target = row * board.columns + col;
    if (piece <= 0 || result < 0) return Outcome::NoMove;
    const char16_t kind = piece <= notation.englishNotation.size()
                              ? notation.englishNotation.at(piece - 1).unicode()
                              : u'\0';

    const char16_t upper = upperOf(kind);
    const PinCheck pins(squareVector, board, notation.englishNotation, upper == kind, target);
    SourceSearch search(squareVector, board, target, col, row, piece, file, rank,
                        upper == u'K' ? nullptr : &pins);
    if (kind == u'P' || kind == u'p') {
        // A pawn that takes onto an empty square takes en passant: the pawn
        // beside it goes before any source is looked for.
        if (maskSize > 0) {
            if (!insideVector(target)) return Outcome::NoMove;
            if (squareVector[target].wanted <= 0) {
                const long long taken = target + (kind == u'P' ? 1 : -1) * board.columns;
                if (!insideVector(taken)) return Outcome::NoMove;
                squareVector[taken].wanted = 0;
            }
        }
    }
    searchInOrder(search, kind);
    const long long source = search.source();
    // No source: none found, or a square past the vector ended the search first.
    if (source < 0 || !insideVector(target)) {
        // A file letter and a rank digit name a square: the word is a move
        // that this board can't play.
        const bool namesSquare = w[end] >= u'a' && w[end] <= u'z' && isDigit(w[end + 1]);
        return namesSquare ? Outcome::NoSource : Outcome::NoMove;
    }
    squareVector[target].wanted = static_cast<int16_t>(result);
    squareVector[source].wanted = 0;
    return Outcome::Moved;
}

bool isDropped(char16_t ch) {
    switch (ch) {
    case u'!':
    case u'?':
    case u'x':
    case u'X':
    case u'+':
    case u'#':
    case u'-':
    case u' ':
        return true;
    default:
        return false;
    }
}

// Unit is char16_t for UTF-16 text, unsigned char for Latin-1 text.
template <typename Unit>
Outcome playWord(int side, const Unit* word, qsizetype size, SquareVector& squareVector,
                 const Board& board, const Notation& notation) {
    const bool black = side == 1;
    if (startsWithEither(word, size, "O-O-O", "0-0-0") ||
        startsWithEither(word, size, "O-O", "0-0")) {
        const bool longSide = startsWithEither(word, size, "O-O-O", "0-0-0");
        return castle(black, longSide, squareVector, board, notation.englishNotation)
                   ? Outcome::Castled
                   : Outcome::NoMove;
    }

    // "e.p." has left "ep" in the word; it is no part of the move.
    qsizetype passant = -1;
    for (qsizetype at = 0; at + 1 < size; ++at) {
        const Unit a = word[at];
        const Unit b = word[at + 1];
        if ((a == 'e' || a == 'E') && (b == 'p' || b == 'P')) {
            passant = at;
            break;
        }
    }
    // Only a word longer than any move takes the heap.
    char16_t shortWord[32];
    std::unique_ptr<char16_t[]> longWord;
    char16_t* const clean = size <= qsizetype(std::size(shortWord))
                                ? shortWord
                                : (longWord = std::make_unique<char16_t[]>(size)).get();
    qsizetype kept = 0;
    for (qsizetype at = 0; at < size; ++at) {
        if (passant >= 0 && (at == passant || at == passant + 1)) continue;
        const char16_t ch = word[at];
        if (!isDropped(ch)) clean[kept++] = ch;
    }
    return playCleanWord(black, clean, kept, squareVector, board, notation);
}

} // namespace

void playMove(int side, QString& word, SquareVector& squareVector, const Board& board,
              const Notation& notation) {
    const QStringView units(word);
    switch (playWord(side, units.utf16(), units.size(), squareVector, board, notation)) {
    case Outcome::NoMove:
    case Outcome::NoSource:
        word.clear();
        break;
    case Outcome::Moved:
        word = QStringLiteral("ok");
        break;
    case Outcome::Castled:
        break;
    }
}

bool playMove(int side, QByteArrayView latin1Word, SquareVector& squareVector, const Board& board,
              const Notation& notation) {
    return playMoveWord(side, latin1Word, squareVector, board, notation) == MovePlay::Played;
}

MovePlay playMoveWord(int side, QByteArrayView latin1Word, SquareVector& squareVector,
                      const Board& board, const Notation& notation) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(latin1Word.data());
    switch (playWord(side, bytes, latin1Word.size(), squareVector, board, notation)) {
    case Outcome::Moved:
    case Outcome::Castled:
        return MovePlay::Played;
    case Outcome::NoSource:
        return MovePlay::NoSource;
    case Outcome::NoMove:
        break;
    }
    return MovePlay::NotAMove;
}

} // namespace marlith
