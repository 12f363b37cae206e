#include "books/book_append.h"
#include "books/pgn_board.h"
#include "support/book_records.h"
#include "support/file_bytes.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

const Board kBoard{8, 8};
const Notation kNotation{QStringLiteral("pPnNbBrRqQkK"), QStringLiteral("pPnNbBrRqQkK")};

GameTags tags(const char* event, const char* result) {
    GameTags t;
    t[0] = QLatin1String(event);
    t[6] = QLatin1String(result);
    return t;
}

} // namespace

class TstBookAppend : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // The lines a game adds to a book, as the scanners read them.
    void linesOfTheGame() {
        const QStringList fromStart{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 0",
                                    "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - - 0 0",
                                    "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR"};
        const std::tuple<AddedGame, QString, int> cases[] = {
            {fenGame(tags("E", ""), {"k7/8 w", "(2x1)k7/8", "(2x1)K7/8"}),
             "|[Event \"E\"]||k7/8 w|(2x1)K7/8", 3},
            {fenGame(tags("", ""), {"k7/8"}), "||k7/8", 1},
            {pgnGame(tags("", "1-0"), fromStart, kBoard, kNotation),
             "|[Result \"1-0\"]||1.e4 e5  1-0", 4},
            // A doubled first row: Black's moves stay Black's.
            {pgnGame(tags("E", ""),
                     {"(1x1)k7/8/8/8/8/8/8/K7 b", "k7/8/8/8/8/8/8/K7", "8/k7/8/8/8/8/8/K7",
                      "8/k7/8/8/8/8/K7/8"},
                     kBoard, kNotation),
             "|[Event \"E\"]|[SetUp \"1\"]|[FEN \"k7/8/8/8/8/8/8/K7 b - - 0 1\"]||1...Ka7 2.Ka2  *",
             4},
            {pgnGame(tags("", ""), {"k7/8/8/8/8/8/8/K7 - Kq e3 4 9"}, kBoard, kNotation),
             "|[SetUp \"1\"]|[FEN \"k7/8/8/8/8/8/8/K7 w Kq e3 4 9\"]|| *", 1},
        };
        for (const auto& [game, lines, records] : cases) {
            QCOMPARE(game.bookLines.join(u'|'), lines);
            QCOMPARE(game.records.size(), records);
        }
    }

    // The game goes out in the book's own line ends, under a new number even
    // while a search shows one game less than the book, and the scanner and
    // pgn-extract read it back with its FEN.
    void appendedGameIsReadBack_data() {
        QTest::addColumn<QByteArray>("book");
        const QByteArray lf = "[Event \"A\"]\n\n1. d4 *\n\n[Event \"B\"]\n\n1. e4 *\n";
        QTest::newRow("LF") << lf;
        QTest::newRow("CR LF, last line open") << testing::crlf(lf).chopped(2);
    }
    void appendedGameIsReadBack() {
        QFETCH(QByteArray, book);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("b.pgn"));
        testing::writeFile(path, book);
        Style style;
        resetStyle(style);
        StylePgnBoard board(style);
        OpenBook open;
        const auto scan = [&] {
            open.workFile.open(dir.filePath(QStringLiteral("F1.tmp")));
            const BookScan read = scanPgn(path, open.workFile, board, "8/8", {});
            open.recordCount = read.recordCount;
            open.fullIndex = read.gameIndex;
            return testing::recordLines(open.workFile, open.recordCount);
        };
        scan();
        open.gameIndex = {open.fullIndex[0]}; // a search that shows one game of two
        open.gameCount = 1;
        QString error;
        QVERIFY(addGame(
            open, path,
            pgnGame(tags("C", ""), {"k7/8/8/8/8/8/8/K7 b", "8/k7/8/8/8/8/8/K7"}, kBoard, kNotation),
            error));
        QCOMPARE(open.gameCount, 2);
        QCOMPARE(testing::recordLines(open.workFile, open.recordCount).last(),
                 u"E3|8/k7/8/8/8/8/8/K7");
        const QByteArray end = book.contains('\r') ? "\r\n" : "\n";
        const QByteArray added =
            "|[Event \"C\"]|[SetUp \"1\"]|[FEN \"k7/8/8/8/8/8/8/K7 b - - 0 1\"]||1...Ka7  *|";
        QCOMPARE(testing::readFile(path),
                 book + (book.endsWith('\n') ? "" : end) + QByteArray(added).replace('|', end));
        const QStringList records = scan();
        QCOMPARE(records.filter(u"E3|k7/8/8/8/8/8/8/K7 b - - 0 1").size(), 1);
        QCOMPARE(records.last(), u"E3|8/k7/8/8/8/8/8/K7 w - - 0 0");
        QProcess reader;
        reader.start(QStringLiteral("/usr/games/pgn-extract"),
                     {QStringLiteral("-o/dev/null"), path});
        if (!reader.waitForFinished()) QSKIP("pgn-extract is not installed");
        QVERIFY(reader.readAllStandardError().contains("3 games matched out of 3"));
    }
};

QTEST_APPLESS_MAIN(TstBookAppend)
#include "tst_book_append.moc"
