#include "books/book_append.h"
#include "support/file_bytes.h"

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

    // A long game runs over several lines, each move written once.
    void aLongGameWritesEachMoveOnce() {
        const QStringList cycle{"k7/8/8/8/8/8/8/K7", "k7/8/8/8/8/8/8/1K6", "1k6/8/8/8/8/8/8/1K6",
                                "1k6/8/8/8/8/8/8/K7"};
        QStringList rows;
        QString moves;
        for (int i = 0; i <= 40; ++i)
            rows << cycle[i % 4];
        for (int n = 1; n <= 20; ++n)
            moves += QStringLiteral("%1.%2 ").arg(n).arg(n % 2 ? "Kb1 Kb8" : "Ka1 Ka8");
        const QStringList lines = pgnGame(tags("", ""), rows, kBoard, kNotation).bookLines;
        const QStringList moveLines = lines.mid(lines.lastIndexOf(QString()) + 1);
        QVERIFY(moveLines.size() >= 3);
        QCOMPARE(moveLines.join(u' ').simplified(), moves + u'*');
    }

    // A disk that fills up during the append leaves the book as it was; a
    // work file that fails keeps the game in the book and says so.
    void aFailedAppendLeavesTheBook() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("b.fen"));
        const QByteArray old = "[Event \"x\"]\n\nk7/8\n";
        testing::writeFile(path, old);
        OpenBook book;
        QString error;
        const std::string event(3000, 'E');
        {
            const testing::FileSizeLimit full(old.size() + 100);
            QVERIFY(!addGame(book, path, fenGame(tags(event.c_str(), ""), {"K7/8"}), error));
        }
        QCOMPARE(testing::readFile(path), old);
        QVERIFY(error.contains(u"not added") && !error.contains(u"part of the game"));
        // The book takes the game, the work file (never opened) can't.
        QVERIFY(addGame(book, path, fenGame(tags("", ""), {"K7/8"}), error));
        QCOMPARE(error, "The game was added to " + path +
                            ", but it can be walked only after the book is opened again.");
        testing::writeFile(path, "k7/8\r\n"); // the game takes the book's own line ends
        QVERIFY(addGame(book, path, fenGame(tags("", ""), {"K7/8"}), error));
        QCOMPARE(testing::readFile(path), "k7/8\r\n\r\n\r\nK7/8\r\n");
    }
};

QTEST_APPLESS_MAIN(TstBookAppend)
#include "tst_book_append.moc"
