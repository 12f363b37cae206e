#include "books/book_append.h"

#include "position/move_writer.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace marlith {

namespace {

constexpr const char* kTagNames[8] = {"Event", "Site", "White",  "Black",
                                      "ECO",   "Date", "Result", "Style"};
constexpr const char* kStandardStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 0";

void printLine(AddedGame& game, const QString& line) {
    game.bookText += line.toUtf8() + "\r\n";
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

} // namespace

AddedGame fenGame(const GameTags& tags, const QStringList& rows) {
    AddedGame game;
    printTags(game, tags);
    printLine(game, QString());
    for (const QString& row : rows) {
        printLine(game, row);
        game.records.append({kPositionKind, row.toUtf8()});
    }
    return game;
}

AddedGame pgnGame(const GameTags& tags, const QStringList& rows, const Board& board,
                  const Notation& notation) {
    AddedGame game;
    printTags(game, tags);
    // Loading the first row drops its counter from it.
    RowGame play(rows, board, notation);
    const QString& first = play.first();
    QString moves = play.blackFirst() ? QStringLiteral("1...") : QString();
    int moveNumber = play.blackFirst() ? 1 : 0;
    if (first != QLatin1String(kStandardStart)) {
        printLine(game, QStringLiteral("[SetUp \"1\"]"));
        printLine(game, QStringLiteral("[FEN \"") + first + QStringLiteral("\"]"));
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

bool addGame(OpenBook& book, const QString& bookFile, const AddedGame& game, QString& error) {
    // A book deleted while open must not come back as a file of one game.
    const QFileInfo info(bookFile);
    if (!info.exists() || info.isDir()) {
        error =
            QStringLiteral("The book %1 is no longer there. The game was not added.").arg(bookFile);
        return false;
    }
    if (book.gameCount >= kMaxGameNumber) {
        error = QStringLiteral("The book %1 holds %2 games, as many as can be shown. The game was "
                               "not added.")
                    .arg(bookFile)
                    .arg(kMaxGameNumber);
        return false;
    }
    QFile file(bookFile);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly)) {
        error = QStringLiteral("The book %1 can't be written: %2. The game was not added.")
                    .arg(bookFile, file.errorString());
        return false;
    }
    const qint64 oldSize = file.size();
    const bool written = file.write(game.bookText) == game.bookText.size() && file.flush() &&
                         ::fsync(file.handle()) == 0;
    if (!written) {
        // What went out of the game goes again; the old bytes were never touched.
        error = QStringLiteral("The book %1 can't be written: %2. The game was not added.")
                    .arg(bookFile, file.errorString());
        file.resize(oldSize);
        return false;
    }
    file.close();

    if (book.fullIndex.empty()) {
        book.recordCount = 0;
        book.gameCount = 0;
    }
    const int32_t firstRecord = book.recordCount + 1;
    const int32_t gameNumber = book.gameCount + 1;
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
    book.gameCount = gameNumber;
    book.recordCount = firstRecord - 1 + static_cast<int32_t>(game.records.size());
    book.gameIndex.push_back(firstRecord);
    book.fullIndex.push_back(firstRecord);
    return true;
}

} // namespace marlith
