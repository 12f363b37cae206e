#include "position/piece_listing.h"

#include "position/move_writer.h"
#include "styles/style_block.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace marlith {

namespace {

// A square goes directly behind the first occurrence of the name; a name not
// yet there starts a new item at the end.
void addSquare(QString& list, const QString& name, const QString& square, const QString& sep) {
    const qsizetype p = list.indexOf(name);
    if (p >= 0)
        list.insert(p + name.size(), square + sep);
    else
        list += QLatin1Char(' ') + name + square;
}

struct DictionaryEntry {
    int group = 1; // 1 white, 2 black, 3 neutral
    QString name;  // empty: the piece keeps its letter
};

// The first entry "&&" letter "=" of the dictionary, if there is one.
std::optional<DictionaryEntry> dictionaryEntry(const QString& dictionary, const QString& letter) {
    const QString key = QStringLiteral("&&") + letter + QLatin1Char('=');
    const qsizetype at = dictionary.indexOf(key);
    if (at < 0) return std::nullopt;
    DictionaryEntry entry;
    const qsizetype colourAt = at + key.size();
    const QChar colour = colourAt < dictionary.size() ? dictionary[colourAt] : QChar();
    if (colour == u'B' || colour == u'b')
        entry.group = 2;
    else if (colour == u'N' || colour == u'n')
        entry.group = 3;
    const qsizetype from = std::min(colourAt + 1, dictionary.size());
    const qsizetype end = dictionary.indexOf(QLatin1String("&&"), from);
    entry.name = trimSpaces(dictionary.mid(from, end < 0 ? -1 : end - from));
    return entry;
}

} // namespace

PieceCount countPieces(const SquareVector& squareVector, const Board& board,
                       const QString& piecesList, const QString& englishNotation,
                       const QString& dictionary) {
    PieceCount count;
    const int pieces = static_cast<int>(piecesList.size());
    // Each kind of piece is looked up once, not once a square.
    std::vector<int> sides(static_cast<size_t>(pieces) + 1, 0);
    for (int piece = 1; piece <= pieces; ++piece) {
        const QChar letter = piecesList[piece - 1];
        int side = letter == letter.toUpper() ? 1 : 2;
        if (piece <= englishNotation.size()) {
            const auto entry = dictionaryEntry(dictionary, englishNotation.mid(piece - 1, 1));
            if (entry && entry->group == 3) side = 3;
        }
        sides[static_cast<size_t>(piece)] = side;
    }
    const int squares = std::min(board.squares(), kSquareCount);
    for (int i = 0; i < squares; ++i) {
        const int piece = foldedContent(squareVector[static_cast<size_t>(i)].wanted, pieces);
        if (piece < 1 || piece > pieces) continue;
        const int side = sides[static_cast<size_t>(piece)];
        ++(side == 1 ? count.whites : side == 2 ? count.blacks : count.neutrals);
    }
    return count;
}

PieceLists listPieces(const SquareVector& squareVector, const Board& board,
                      const QString& piecesList, const QString& englishNotation,
                      const QString& dictionary, ListingMode mode) {
    PieceLists lists;
    const int pieces = static_cast<int>(piecesList.size());
    const int squares = std::min(board.squares(), kSquareCount);
    const QString sep = mode == ListingMode::Dictionary ? QString() : QStringLiteral(" ");
    const QString& letters = mode == ListingMode::PiecesList ? piecesList : englishNotation;
    for (int i = 0; i < squares; ++i) {
        const int piece = foldedContent(squareVector[static_cast<size_t>(i)].wanted, pieces);
        if (piece < 1) continue;
        // A piece beyond the letters it is listed by has no name to go under.
        if (piece > letters.size()) continue;
        QString name = letters.mid(piece - 1, 1);
        int group = 0;
        if (mode == ListingMode::Dictionary) {
            if (const auto entry = dictionaryEntry(dictionary, name)) {
                group = entry->group;
                // An entry without a name leaves the piece its letter.
                if (!entry->name.isEmpty()) name = entry->name;
            }
        }
        if (group == 0) group = name == name.toUpper() ? 1 : 2;
        name = name.toUpper();
        QString& list = group == 1 ? lists.white : group == 2 ? lists.black : lists.neutral;
        addSquare(list, name, squareName(i, board.columns), sep);
    }
    lists.white = trimSpaces(lists.white);
    lists.black = trimSpaces(lists.black);
    lists.neutral = trimSpaces(lists.neutral);
    return lists;
}

} // namespace marlith
