#include "position/piece_listing.h"

#include "position/move_writer.h"
#include "styles/style_block.h"

#include <algorithm>

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

} // namespace

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
            const QString key = QStringLiteral("&&") + name + QLatin1Char('=');
            const qsizetype at = dictionary.indexOf(key);
            if (at >= 0) {
                const qsizetype colourAt = at + key.size();
                const QChar colour = colourAt < dictionary.size() ? dictionary[colourAt] : QChar();
                if (colour == u'B' || colour == u'b')
                    group = 2;
                else if (colour == u'N' || colour == u'n')
                    group = 3;
                else
                    group = 1;
                const qsizetype from = std::min(colourAt + 1, dictionary.size());
                const qsizetype end = dictionary.indexOf(QLatin1String("&&"), from);
                const QString found = trimSpaces(dictionary.mid(from, end < 0 ? -1 : end - from));
                // An entry without a name leaves the piece its letter.
                if (!found.isEmpty()) name = found;
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
