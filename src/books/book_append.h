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
    QStringList bookLines;                      // for the book, each without its line end
    QList<std::pair<char, QByteArray>> records; // kind and text, for the work file
};

// The rows as positions of a .FEN book: the tag lines, then each row. A first
// row copied twice in a row is written once.
AddedGame fenGame(const GameTags& tags, const QStringList& rows);

// The rows as a .PGN game: the tag lines, the setup tags with a full FEN
// unless the first row is the standard start, and the moves between the rows
// with the result. A row that repeats the board before it is no move and is
// left out.
AddedGame pgnGame(const GameTags& tags, const QStringList& rows, const Board& board,
                  const Notation& notation);

// Appends the game to the book file, in the book's own line ends, and then to
// the work file and both indexes. The game is numbered after the whole book's
// last game, also while a search narrows the list on show. The book file is
// only ever appended to: a book that is gone or can't be written is left
// alone, and a write that fails halfway is cut back to the book's old length.
// False, with the reason, when the book didn't grow.
bool addGame(OpenBook& book, const QString& bookFile, const AddedGame& game, QString& error);

} // namespace marlith
