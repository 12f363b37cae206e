#include "books/book_append.h"

#include "books/new_file.h"

#include "position/move_writer.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace marlith {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kTagNames[8] = {"Event", "Site", "White",  "Black",
                                      "ECO",   "Date", "Result", "Style"};
constexpr const char* kStandardStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 0";

void printLine(AddedGame& game, const QString& line) {
    game.bookLines.append(line);
}

// A blank line, then the tag lines, each also a header record.
void printTags(AddedGame& game, const GameTags& tags) {
    printLine(game, QString());
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].isEmpty()) continue;
        const QString line = u'[' + QLatin1String(kTagNames[i]) + QStringLiteral(" \"") + tags[i] +
                             QStringLiteral("\"]");
        printLine(game, line);
        game.records.append({kHeaderKind, line.toUtf8()});
    }
}

// Readers of game files refuse a FEN of fewer than six fields: the row's own
// fields where it has them, else White to move and "- - 0 1".
QString fullFen(const QString& row) {
    static const char* const kDefaults[6] = {"", "w", "-", "-", "0", "1"};
    QStringList fields = row.split(u' ', Qt::SkipEmptyParts).mid(0, 6);
    if (fields.size() > 1 && fields[1] != u"w" && fields[1] != u"b") fields[1] = u"w"_s;
    for (qsizetype i = fields.size(); i < 6; ++i)
        fields.append(QLatin1String(kDefaults[i]));
    return fields.join(u' ');
}

// The line end that the book's first line has: CR LF, CR or LF; LF for a book
// with no line end at all.
QByteArray lineEndOf(QIODevice& book) {
    // A first line longer than this is no line of a book.
    constexpr qint64 kHead = 64 * 1024;
    const QByteArray head = book.read(kHead + 1);
    for (qsizetype i = 0; i < std::min<qsizetype>(head.size(), kHead); ++i) {
        if (head[i] == '\n') return "\n";
        if (head[i] == '\r') return i + 1 < head.size() && head[i + 1] == '\n' ? "\r\n" : "\r";
    }
    return "\n";
}

} // namespace

AddedGame fenGame(const GameTags& tags, const QStringList& rows) {
    AddedGame game;
    printTags(game, tags);
    printLine(game, QString());
    for (const QString& row : withoutRepeatedBoards(rows, true)) {
        printLine(game, row);
        game.records.append({kPositionKind, row.toUtf8()});
    }
    return game;
}

AddedGame pgnGame(const GameTags& tags, const QStringList& allRows, const Board& board,
                  const Notation& notation) {
    AddedGame game;
    printTags(game, tags);
    // A board that didn't change is no move: left in, it would shift the
    // numbers of all the moves behind it to the other side.
    const QStringList rows = withoutRepeatedBoards(allRows);
    // Loading the first row drops its counter from it.
    RowGame play(rows, board, notation);
    const QString& first = play.first();
    QString moves = play.blackFirst() ? QStringLiteral("1...") : QString();
    int moveNumber = play.blackFirst() ? 1 : 0;
    if (first != QLatin1String(kStandardStart)) {
        printLine(game, QStringLiteral("[SetUp \"1\"]"));
        printLine(game, QStringLiteral("[FEN \"") + fullFen(first) + QStringLiteral("\"]"));
    }
    printLine(game, QString());
    game.records.append({kPositionKind, first.toUtf8()});
    for (qsizetype i = 1; i < rows.size(); ++i) {
        game.records.append({kPositionKind, rows[i].toUtf8()});
        bool numbered = false;
        const QString word = play.move(i, numbered);
        if (numbered) moves += QString::number(++moveNumber) + u'.';
        moves += word + u' ';
        if (moves.size() > 70) {
            printLine(game, moves);
            moves.clear();
        }
    }
    const QString& result = tags[6].isEmpty() ? QStringLiteral("*") : tags[6];
    printLine(game, moves + u' ' + result);
    return game;
}

namespace {

// Appends the bytes to the file, all of them or none: a write that fails
// (a full disk) is cut off again, so that the file is as it was. Empty, or
// why it failed.
QString appendWhole(const QString& path, const QByteArray& bytes) {
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0) return QString::fromLocal8Bit(std::strerror(errno));
    const off_t oldSize = ::lseek(fd, 0, SEEK_END);
    int failure = writeAll(fd, bytes);
    if (!failure && ::fsync(fd) != 0) failure = errno;
    QString why;
    if (failure) {
        why = QString::fromLocal8Bit(std::strerror(failure));
        if (oldSize < 0 || ::ftruncate(fd, oldSize) != 0)
            why += QStringLiteral("; the end of the book may hold part of the game");
    }
    ::close(fd);
    return why;
}

} // namespace

bool addGame(OpenBook& book, const QString& bookFile, const AddedGame& game, QString& error) {
    // A book deleted while open must not come back as a file of one game.
    const QFileInfo info(bookFile);
    if (!info.exists() || info.isDir()) {
        error =
            QStringLiteral("The book %1 is no longer there. The game was not added.").arg(bookFile);
        return false;
    }
    // The new game's number follows the whole book's last game.
    const int32_t gameNumber = static_cast<int32_t>(book.fullIndex.size()) + 1;
    if (gameNumber > kMaxGameNumber) {
        error = QStringLiteral("The book %1 holds %2 games, as many as can be shown. The game was "
                               "not added.")
                    .arg(bookFile)
                    .arg(kMaxGameNumber);
        return false;
    }
    QByteArray lineEnd = "\n";
    QByteArray bookText;
    {
        QFile reader(bookFile);
        if (reader.open(QIODevice::ReadOnly)) {
            lineEnd = lineEndOf(reader);
            // A last line with no end is ended first, so that the game still
            // opens with an empty line.
            char last = '\n';
            if (reader.size() > 0 && reader.seek(reader.size() - 1)) reader.getChar(&last);
            if (last != '\n' && last != '\r') bookText = lineEnd;
        }
    }
    for (const QString& line : game.bookLines)
        bookText += line.toUtf8() + lineEnd;

    if (const QString failure = appendWhole(bookFile, bookText); !failure.isEmpty()) {
        error = QStringLiteral("The book %1 can't be written: %2. The game was not added.")
                    .arg(bookFile, failure);
        return false;
    }

    // An empty book starts over at record 1.
    if (book.fullIndex.empty()) book.recordCount = 0;
    const int32_t firstRecord = book.recordCount + 1;
    bool ok = book.workFile.truncateTo(book.recordCount);
    for (const auto& [kind, text] : game.records)
        ok = ok && book.workFile.append(makeRecord(kind, gameNumber, text));
    ok = ok && book.workFile.append(endMark()) && book.workFile.flush();
    if (!ok) {
        // The book has the game; the next opening finds it.
        error = QStringLiteral("The game was added to %1, but it can be walked only after the "
                               "book is opened again.")
                    .arg(bookFile);
        return true;
    }
    book.recordCount = firstRecord - 1 + static_cast<int32_t>(game.records.size());
    book.gameIndex.push_back(firstRecord);
    book.fullIndex.push_back(firstRecord);
    // The list on show, narrowed or not, ends with the new game.
    book.gameCount = static_cast<int32_t>(book.gameIndex.size());
    return true;
}

} // namespace marlith
