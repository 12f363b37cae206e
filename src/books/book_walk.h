// Walking an open book: a game found through the index, its records read
// one by one from the work file. A step is one or two record reads.
#pragma once

#include "books/work_file.h"

#include <QByteArray>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace marlith {

// The book that is open, as the scan left it and the walk moves through it.
struct OpenBook {
    WorkFile workFile;
    int32_t gameCount = 0;
    int32_t recordCount = 0;
    GameIndex gameIndex; // the games on show: all, or those a search found
    GameIndex fullIndex; // the whole book's index, never narrowed
    QByteArray currentRecord = QByteArray(kRecordLength, ' ');
    int32_t currentRecordNumber = 0;

    bool isOpen() const { return workFile.isOpen(); }
};

// Loads the first record of the game at place n (from 1) of the index.
// False, with a blank current record, when there is none.
bool goToGame(OpenBook& book, int32_t n);

// One step forward within the game; `kind` gets the kind of the record
// behind the new one ('?' the end mark, '[' a header of the next game, 'E'
// a further position, 0 when none could be read).
bool nextRecord(OpenBook& book, char& kind);

// One step back within the game, onto position records only.
bool previousRecord(OpenBook& book);

// The move at which the scan cut the game that begins at record `first`, as
// the book wrote it ("2.Ke3"), or an empty text for a game read to its end.
// One record read: the game's last.
QByteArray cutMoveOfGame(OpenBook& book, int32_t first);

// The text of a record without its comment: a tag line stays whole, a
// position line is cut at its first ";" or "{".
QByteArray stripComment(const QByteArray& record);

// The position on show from a record: the board field, and the character
// behind its first blank (the side to move, if the record has one).
struct ShownPosition {
    QByteArray board;
    char side = 0;
};
ShownPosition positionOfRecord(const QByteArray& record);

// "White moves...", "Black moves..." or "Move Control:".
QString sideCaption(char side);

// A header line for the list: cut into lines of 33 characters, each further
// line behind a blank.
QStringList wrapHeader(const QString& line);

// The style that a [Style "..."] tag names, if the line is such a tag.
std::optional<QString> styleTag(const QString& line);

} // namespace marlith
