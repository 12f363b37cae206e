// Game books: tags, move text played on the board, FEN tags, blank lines,
// comments and variations, and the line ends of any platform.
#include "books/book_scan.h"
#include "books/pgn_board.h"
#include "support/book_records.h"

#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

const QByteArray kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
const QString kAfterE4 = QStringLiteral("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - - 0 0");
const QString kAfterE5 =
    QStringLiteral("rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w - - 0 0");

struct Pgn {
    QTemporaryDir dir;
    WorkFile work;
    Style style;
    BookScan scan;
    QList<int32_t> progress;

    Pgn() { ResetStyle(style); }

    BookScan read(const QByteArray& text) {
        const QString path = dir.filePath(QStringLiteral("book.pgn"));
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) file.write(text);
        file.close();
        work.open(dir.filePath(QStringLiteral("F1.tmp")));
        StylePgnBoard board(style);
        scan =
            ScanPGN(path, work, board, kStart, [this](int32_t games) { progress.append(games); });
        return scan;
    }
    // The records as "kind game|text".
    QStringList records() { return testing::RecordLines(work, scan.recordCount); }
};

QString Start(int game) {
    return QStringLiteral("E%1|").arg(game) + QString::fromLatin1(kStart);
}
QString Pos(int game, const QString& text) {
    return QStringLiteral("E%1|").arg(game) + text;
}

QByteArray Index(std::initializer_list<int> records) {
    QByteArray index;
    for (int r : records)
        index += SixCharacters(r);
    return index;
}

} // namespace

class TstPgnScan : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void gamesWithTags() {
        Pgn p;
        p.read("[Event \"a\"]\r\n[Result \"1-0\"]\r\n\r\n1.e4 e5 1-0\r\n\r\n"
               "[Event \"b\"]\r\n\r\n1. e4 *\r\n");
        QCOMPARE(p.scan.gameCount, 2);
        QCOMPARE(p.records(),
                 QStringList({"[1|[Event \"a\"]", "[1|[Result \"1-0\"]", Start(1), Pos(1, kAfterE4),
                              Pos(1, kAfterE5), "[2|[Event \"b\"]", Start(2), Pos(2, kAfterE4)}));
        QCOMPARE(p.scan.gameIndex, Index({1, 6}));
        QCOMPARE(p.scan.fullIndex, p.scan.gameIndex);
        QVERIFY(p.scan.complete);
        QCOMPARE(*p.work.read(p.scan.recordCount + 1), EndMark());
    }

    void noTagsAtAllIsOneGame() {
        Pgn p;
        p.read("1.e4 e5\n\n1.e4\n");
        QCOMPARE(p.scan.gameCount, 1);
        // A blank line inside the text replays from the start, in the same game.
        QCOMPARE(p.records(), QStringList({Start(1), Pos(1, kAfterE4), Pos(1, kAfterE5), Start(1),
                                           Pos(1, kAfterE4)}));
    }

    void fenTags() {
        const QByteArray fen = "[FEN \"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1\"]\n";
        const QString setUp = QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
        const QString pushed = QStringLiteral("4k3/8/8/8/4P3/8/8/4K3 b - - 0 0");
        {
            // A blank line behind the tag writes the position; the moves
            // are played from it.
            Pgn p;
            p.read("[Event \"x\"]\n" + fen + "\n1.e4\n");
            QCOMPARE(p.records(), QStringList({"[1|[Event \"x\"]", Pos(1, setUp), Pos(1, pushed)}));
        }
        {
            // Moves directly behind the tag: no record of the start.
            Pgn p;
            p.read(fen + "1.e4\n");
            QCOMPARE(p.records(), QStringList({Pos(1, pushed)}));
        }
        {
            // A second blank line forgets the setup: the moves start afresh.
            Pgn p;
            p.read(fen + "\n\n1.e4\n");
            QCOMPARE(p.records(), QStringList({Pos(1, setUp), Start(1), Pos(1, kAfterE4)}));
        }
        {
            // Black to move in the tag.
            Pgn p;
            p.read("[fen \"4k3/4p3/8/8/8/8/8/4K3 b - - 0 1\"]\n1...e5\n");
            QCOMPARE(p.records(),
                     QStringList({Pos(1, QStringLiteral("4k3/8/8/4p3/8/8/8/4K3 w - - 0 0"))}));
        }
    }

    void tagBlockAtTheEndIsNoGame() {
        Pgn p;
        p.read("[Event \"a\"]\n\n1.e4\n\n[Event \"b\"]\n[Site \"c\"]\n");
        QCOMPARE(p.scan.gameCount, 1);
        QCOMPARE(p.scan.gameIndex, Index({1}));
        // Its header records stay in the work file.
        QCOMPARE(p.scan.recordCount, 5);
    }

    void commentsAndVariationsAcrossLines() {
        Pgn p;
        p.read("1.e4 {a comment (with\n a variation) that runs} e5 (1...c5 {inner\n} 2.Nf3)\n"
               "2.Nf3 $1 Nc6\n");
        const QStringList records = p.records();
        QCOMPARE(records.size(), 5);
        QCOMPARE(records.at(2), Pos(1, kAfterE5));
        QCOMPARE(records.at(4),
                 Pos(1, QStringLiteral(
                            "r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w - - 0 0")));
    }

    void unbalancedBracesAndNonsense() {
        Pgn p;
        p.read("1.e4 } } e5 {{ 2.Nf3\n\n[Event \"b\"]\n\n1.zz9 Qxx 1.e4\n");
        // Closing marks never let the depth fall below zero for long: e5 counts.
        QVERIFY(p.records().contains(Pos(1, kAfterE5)));
        // No tag stood in front of the first text, so the later tags join
        // the one game.
        QCOMPARE(p.scan.gameCount, 1);
        QVERIFY(p.scan.complete);
    }

    void lineEndsOfAnyPlatform() {
        const QByteArray crlf = "[Event \"a\"]\r\n\r\n1.e4 e5 2.Nf3\r\n\r\n[Event \"b\"]\r\n\r\n"
                                "1.d4 d5\r\n";
        QByteArray lf = crlf;
        lf.replace("\r\n", "\n");
        QByteArray cr = crlf;
        cr.replace("\r\n", "\r");
        Pgn a;
        a.read(crlf);
        const QStringList expected = a.records();
        QCOMPARE(expected.size(), 9);
        Pgn b;
        b.read(lf);
        QCOMPARE(b.records(), expected);
        Pgn c;
        c.read(cr);
        QCOMPARE(c.records(), expected);
    }

    void longLinesAndTheCount() {
        // One physical line of many games, LF only, far beyond 32,766 characters.
        QByteArray text;
        for (int g = 0; g < 120; ++g)
            text += "[Event \"" + QByteArray(200, 'x') + "\"]\n\n1.e4 e5 2.Nf3 Nc6 *\n\n";
        Pgn p;
        p.read(text);
        QCOMPARE(p.scan.gameCount, 120);
        QCOMPARE(p.scan.recordCount, 120 * 6);
        // The header record is cut at 124 characters.
        QCOMPARE(p.records().at(0).size(), 3 + 124);
        QCOMPARE(p.progress, QList<int32_t>({10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120}));
    }

    void emptyAndMissingBooks() {
        Pgn p;
        p.read("");
        QCOMPARE(p.scan.gameCount, 1);
        QCOMPARE(p.scan.recordCount, 0);
        QVERIFY(p.scan.gameIndex.isEmpty());

        Pgn q;
        q.work.open(q.dir.filePath(QStringLiteral("F1.tmp")));
        StylePgnBoard board(q.style);
        const BookScan missing =
            ScanPGN(q.dir.filePath(QStringLiteral("none.pgn")), q.work, board, kStart, {});
        QCOMPARE(missing.recordCount, 0);
        QVERIFY(missing.gameIndex.isEmpty());
        QVERIFY(!missing.complete);
    }
};

QTEST_MAIN(TstPgnScan)
#include "tst_pgn_scan.moc"
