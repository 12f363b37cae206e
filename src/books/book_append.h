// A game added to an open .FEN or .PGN book: the lines that go to the end of
// the book file, and the same game in the work file and both indexes, so that
// it can be walked at once.
#pragma once

#include "books/book_walk.h"
#include "position/fen.h"
#include "position/notation.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <array>

namespace marlith {

// Event, Site, White, Black, ECO, Date, Result, Style; empty ones are left out.
using GameTags = std::array<QString, 8>;

struct AddedGame {
    QByteArray bookText;                        // appended to the book as it stands
    QList<std::pair<char, QByteArray>> records; // kind and text, for the work file
};

// The rows as positions of a .FEN book: the tag lines, then each row.
AddedGame fenGame(const GameTags& tags, const QStringList& rows);

// The rows as a .PGN game: the tag lines, the setup tags unless the first row
// is the standard start, and the moves between the rows with the result.
AddedGame pgnGame(const GameTags& tags, const QStringList& rows, const Board& board,
                  const Notation& notation);

// Appends the game to the book file and then to the work file and both
// indexes. The book file is only ever appended to: a book that is gone or
// can't be written is left alone, and a write that fails halfway is cut back
// to the book's old length. False, with the reason, when the book didn't grow.
bool addGame(OpenBook& book, const QString& bookFile, const AddedGame& game, QString& error);

} // namespace marlith
