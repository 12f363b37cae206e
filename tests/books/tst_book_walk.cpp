#include "books/book_scan.h"
#include "books/book_walk.h"
#include "support/book_records.h"

#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

// A FEN or EPD book scanned into a work file, ready to be walked.
struct Walk {
    QTemporaryDir dir;
    OpenBook book;
    char kind = 0;

    explicit Walk(const QByteArray& text, bool epd = false) {
        const QString path = testing::writeBook(dir.filePath(QStringLiteral("b")), text);
        book.workFile.open(dir.filePath(QStringLiteral("F1.tmp")));
        const BookScan scan =
            epd ? scanEpd(path, book.workFile, {}) : scanFen(path, book.workFile, {});
        book.gameCount = scan.gameCount;
        book.recordCount = scan.recordCount;
        book.gameIndex = book.fullIndex = scan.gameIndex;
    }
    QByteArray text() const { return stripComment(book.currentRecord); }
    // Steps forward: for each the kind of the record behind, "-" where it fails.
    QByteArray steps(int n) {
        QByteArray kinds;
        while (n-- > 0)
            kinds += nextRecord(book, kind) ? kind : '-';
        return kinds;
    }
};

const QByteArray kTwoGames =
    "[Event \"One\"]\nK1 w\nK2 b\nK3 w\n[Event \"Two\"]\n[Site \"x\"]\nk\n";

} // namespace

class TstBookWalk : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void stepsWithinAGame() {
        Walk w(kTwoGames);
        QVERIFY(goToGame(w.book, 1));
        QCOMPARE(w.text(), QByteArray("[Event \"One\"]"));
        QCOMPARE(w.steps(1), QByteArray("E"));
        QVERIFY(!previousRecord(w.book));        // never back onto a header
        QCOMPARE(w.steps(3), QByteArray("E[-")); // the next game's header, then the game ends
        QVERIFY(previousRecord(w.book));
        QCOMPARE(w.text(), QByteArray("K2 b"));
        QVERIFY(goToGame(w.book, 2));
        QCOMPARE(w.steps(3), QByteArray("E?-")); // the end mark behind the last game
        // An EPD game ends on its position with the next game's position behind.
        Walk epd("K w - - bm Ka2; id 1;\nk b - -\n", true);
        QVERIFY(goToGame(epd.book, 1));
        QCOMPARE(epd.steps(3), QByteArray("EE-"));
    }

    void boundsAreQuiet() {
        Walk w(kTwoGames);
        w.book.gameIndex.push_back(99); // behind the records
        QVERIFY(!goToGame(w.book, 0) && !goToGame(w.book, 3) && !goToGame(w.book, 4));
        Walk empty("");
        QVERIFY(!goToGame(empty.book, 1) && !previousRecord(empty.book) && empty.steps(1) == "-");
        // A work file that went away stops the walk.
        QVERIFY(goToGame(w.book, 1));
        w.book.workFile.close();
        QCOMPARE(w.steps(1), QByteArray("-"));
        QVERIFY(!goToGame(w.book, 1) && w.text().isEmpty());
        // The cut move is read from a game's last position, never from a header.
        Walk cut("K {cut at 2.Ke3}\n[E]\nk\n[Event \" {cut at 1.e4}\"]\n");
        QVERIFY(cutMoveOfGame(cut.book, 1) == "2.Ke3" && cutMoveOfGame(cut.book, 2).isEmpty());
    }

    // A position line is cut at its first ";" or "{", not trimmed again; a
    // tag line keeps what stands inside its brackets; header text from an
    // older system shows its accents; a header wraps behind 33 characters.
    void recordTexts() {
        const std::tuple<char, const char*, const char*> cases[] = {
            {'E', "8/8 w - - ; a comment", "8/8 w - - "},
            {'E', "8/8 {note} w", "8/8 "},
            {'[', "[Event \"a;b{c}\"] ; comment", "[Event \"a;b{c}\"] "}};
        for (const auto& [kind, text, shown] : cases)
            QCOMPARE(stripComment(makeRecord(kind, 1, text)), QByteArray(shown));
        QCOMPARE(recordText("[Event \"Caf\xC3\xA9\"]"), QStringLiteral("[Event \"Café\"]"));
        QCOMPARE(recordText("[Event \"Caf\xE9 \xA0\x80\"]"),
                 QStringLiteral("[Event \"Café \u00A0€\"]"));
        QCOMPARE(positionOfRecord(makeRecord('E', 1, "8/8/8 b KQkq - 0 1")).board, "8/8/8");
        const QString exact(33, QLatin1Char('a'));
        QCOMPARE(wrapHeader(exact + QLatin1Char('b')), QStringList({exact, QStringLiteral(" b")}));
        QCOMPARE(styleTag(QStringLiteral("[Style \"Wide\"]")).value_or("none"), QString("Wide"));
    }
};

QTEST_GUILESS_MAIN(TstBookWalk)
#include "tst_book_walk.moc"
