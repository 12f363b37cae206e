#include "books/book_scan.h"
#include "books/book_walk.h"

#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

// A FEN book scanned into a work file, ready to be walked.
struct Walk {
    QTemporaryDir dir;
    OpenBook book;

    explicit Walk(const QByteArray& text, const char* name = "b.fen") {
        const QString path = dir.filePath(QLatin1String(name));
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) file.write(text);
        file.close();
        book.work.open(dir.filePath(QStringLiteral("F1.tmp")));
        const BookScan scan = QByteArray(name).endsWith(".epd") ? ScanEPD(path, book.work, {})
                                                                : ScanFEN(path, book.work, {});
        book.gameCount = scan.gameCount;
        book.recordCount = scan.recordCount;
        book.gameIndex = scan.gameIndex;
        book.fullIndex = scan.fullIndex;
    }
    QByteArray text() const { return DelComment(book.currentRecord); }
};

const QByteArray kTwoGames = "[Event \"One\"]\n"
                             "8/8/8/8/8/8/8/K7 w\n"
                             "8/8/8/8/8/8/8/1K6 b\n"
                             "8/8/8/8/8/8/8/2K5 w\n"
                             "[Event \"Two\"]\n"
                             "[Site \"There\"]\n"
                             "k7/8/8/8/8/8/8/8\n";

} // namespace

class TstBookWalk : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void stepsWithinAGame() {
        Walk w(kTwoGames);
        QVERIFY(GoToGame(w.book, 1));
        QCOMPARE(w.text(), QByteArray("[Event \"One\"]"));
        char kind = 0;
        QVERIFY(NextRecord(w.book, kind));
        QCOMPARE(kind, 'E');
        QCOMPARE(w.text(), QByteArray("8/8/8/8/8/8/8/K7 w"));
        QVERIFY(!PrevRecord(w.book)); // never back onto a header
        QVERIFY(NextRecord(w.book, kind));
        QVERIFY(NextRecord(w.book, kind));
        QCOMPARE(kind, '[');                // the next game's first header
        QVERIFY(!NextRecord(w.book, kind)); // the game ends
        QCOMPARE(w.text(), QByteArray("8/8/8/8/8/8/8/2K5 w"));
        QVERIFY(PrevRecord(w.book));
        QCOMPARE(w.text(), QByteArray("8/8/8/8/8/8/8/1K6 b"));

        QVERIFY(GoToGame(w.book, 2));
        QVERIFY(NextRecord(w.book, kind));
        QVERIFY(NextRecord(w.book, kind));
        QCOMPARE(kind, '?'); // the end mark behind the last game
        QVERIFY(!NextRecord(w.book, kind));
    }

    void boundsAreQuiet() {
        Walk w(kTwoGames);
        QVERIFY(!GoToGame(w.book, 3));
        QCOMPARE(w.book.currentRecord, QByteArray(kRecordLength, ' '));
        QVERIFY(!GoToGame(w.book, 0));
        QVERIFY(!GoToGame(w.book, -7));
        // An index entry that points behind the records.
        w.book.gameIndex += SixCharacters(99);
        QVERIFY(!GoToGame(w.book, 3));
        w.book.gameIndex += "  x!  ";
        QVERIFY(!GoToGame(w.book, 4));

        Walk empty("");
        QCOMPARE(empty.book.gameCount, 1);
        QVERIFY(!GoToGame(empty.book, 1));
        char kind = 'x';
        QVERIFY(!NextRecord(empty.book, kind));
        QCOMPARE(kind, char(0));
        QVERIFY(!PrevRecord(empty.book));
    }

    void aVanishedWorkFileStopsTheWalk() {
        Walk w(kTwoGames);
        QVERIFY(GoToGame(w.book, 1));
        w.book.work.close();
        char kind = 0;
        QVERIFY(!NextRecord(w.book, kind));
        QVERIFY(!GoToGame(w.book, 2));
    }

    void epdOperationsThenAPlainLine() {
        Walk w("8/8/8/8/8/8/8/K7 w - - bm Ka2; id 1;\n8/8/8/8/8/8/8/k7 b - -\n", "b.epd");
        QCOMPARE(w.book.gameCount, 2);
        QVERIFY(GoToGame(w.book, 1));
        char kind = 0;
        QVERIFY(NextRecord(w.book, kind));
        QVERIFY(NextRecord(w.book, kind));
        QCOMPARE(kind, 'E'); // the next game's position: buttons show, nothing to walk
        QVERIFY(!NextRecord(w.book, kind));
    }

    void commentsComeOff() {
        auto record = [](char kind, const QByteArray& text) { return MakeRecord(kind, 1, text); };
        QCOMPARE(DelComment(record('E', "8/8 w - - ; a comment")),
                 QByteArray("8/8 w - - ")); // cut, not trimmed again
        QCOMPARE(DelComment(record('E', "8/8 {note} w")), QByteArray("8/8 "));
        QCOMPARE(DelComment(record('[', "[Event \"a;b{c}\"] ; comment")),
                 QByteArray("[Event \"a;b{c}\"] "));
        QCOMPARE(DelComment(record('[', "[Event \"unclosed; x")),
                 QByteArray("[Event \"unclosed; x"));
        QCOMPARE(DelComment(QByteArray(kRecordLength, ' ')), QByteArray());
        QCOMPARE(DelComment("?E   1"), QByteArray());
    }

    void positionsOnShow() {
        ShownPosition shown = ShowRecord(MakeRecord('E', 1, "8/8/8 b KQkq - 0 1"));
        QCOMPARE(shown.board, QByteArray("8/8/8"));
        QCOMPARE(SideCaption(shown.side), QStringLiteral("Black moves..."));
        shown = ShowRecord(MakeRecord('E', 1, "8/8/8 W"));
        QCOMPARE(SideCaption(shown.side), QStringLiteral("White moves..."));
        shown = ShowRecord(MakeRecord('E', 1, "8/8/8"));
        QCOMPARE(shown.board, QByteArray("8/8/8"));
        QCOMPARE(SideCaption(shown.side), QStringLiteral("Move Control:"));
        shown = ShowRecord(QByteArray(kRecordLength, ' '));
        QVERIFY(shown.board.isEmpty());
        QCOMPARE(SideCaption(shown.side), QStringLiteral("Move Control:"));
    }

    void headerLinesAndStyleTags() {
        const QString exact(33, QLatin1Char('a'));
        QCOMPARE(WrapHeader(exact), QStringList({exact}));
        QCOMPARE(WrapHeader(exact + QLatin1Char('b')), QStringList({exact, QStringLiteral(" b")}));
        QCOMPARE(WrapHeader(QString(70, QLatin1Char('c'))).size(), 3);
        QCOMPARE(WrapHeader(QString()), QStringList({QString()}));
        QCOMPARE(StyleTag(QStringLiteral("[Style \"Wide\"]")),
                 std::optional<QString>(QStringLiteral("Wide")));
        QCOMPARE(StyleTag(QStringLiteral("[STYLE \"\"]")), std::optional<QString>(QString()));
        QCOMPARE(StyleTag(QStringLiteral("[style noquotes]")), std::optional<QString>(QString()));
        QVERIFY(!StyleTag(QStringLiteral("[Site \"Style\"]")));
    }
};

QTEST_GUILESS_MAIN(TstBookWalk)
#include "tst_book_walk.moc"
