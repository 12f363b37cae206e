// Game books: tags, moves played on the board, FEN tags, comments and variations.
#include "books/book_scan.h"
#include "books/pgn_board.h"
#include "support/book_records.h"

#include <QTemporaryDir>
#include <QTest>

using namespace marlith;
using testing::scanSummary;

namespace {

const QByteArray kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
const QString kAfterE4 = QStringLiteral("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - - 0 0");
const QString kAfterE5 =
    QStringLiteral("rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w - - 0 0");

struct Pgn {
    QTemporaryDir dir;
    WorkFile work;
    BookScan scan;

    explicit Pgn(const QByteArray& text) {
        Style style;
        resetStyle(style);
        StylePgnBoard board(style);
        work.open(dir.filePath(QStringLiteral("F1.tmp")));
        const QString path = testing::writeBook(dir.filePath(QStringLiteral("b.pgn")), text);
        scan = scanPgn(path, work, board, kStart, {});
    }
    QStringList records() { return testing::recordLines(work, scan.recordCount); }
};

QString pos(int game, const QString& text = QString::fromLatin1(kStart)) {
    return QStringLiteral("E%1|").arg(game) + text;
}

} // namespace

class TstPgnScan : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void gamesWithTags() {
        // A tag block at the end is no game; its header records stay in the work file.
        Pgn p("[Event \"a\"]\r\n[Result \"1-0\"]\r\n\r\n1.e4 e5 1-0\r\n\r\n"
              "[Event \"b\"]\r\n\r\n1. e4 *\r\n\r\n[Event \"c\"]\r\n");
        QCOMPARE(scanSummary(p.scan), QStringLiteral("2 games, 9 records, index (1 6)"));
        QCOMPARE(p.records(), QStringList({"[1|[Event \"a\"]", "[1|[Result \"1-0\"]", pos(1),
                                           pos(1, kAfterE4), pos(1, kAfterE5), "[2|[Event \"b\"]",
                                           pos(2), pos(2, kAfterE4), "[3|[Event \"c\"]"}));
    }

    // Past the last game number the scan ends; the games before it stay.
    void theLastGameNumber() {
        const Pgn p(QByteArray("[E]\n\n").repeated(1'000'001));
        QCOMPARE(std::pair(p.scan.end, p.scan.gameCount), std::pair(ScanEnd::GameLimit, 999'999));
    }

    void fenTags() {
        const QString setUp = QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
        const QString pushed = QStringLiteral("4k3/8/8/8/4P3/8/8/4K3 b - - 0 0");
        const QByteArray fen = "[FEN \"" + setUp.toLatin1() + "\"]\n";
        // Without tags a blank line replays from the start in the same game; a blank line
        // behind the tag writes the setup.
        const std::pair<QByteArray, QStringList> cases[] = {
            {"1.e4 e5\n\n1.e4\n",
             {pos(1), pos(1, kAfterE4), pos(1, kAfterE5), pos(1), pos(1, kAfterE4)}},
            {"[Event \"x\"]\n" + fen + "\n1.e4\n",
             {"[1|[Event \"x\"]", pos(1, setUp), pos(1, pushed)}},
            {"[fen \"4k3/4p3/8/8/8/8/8/4K3 b - - 0 1\"]\n1...e5\n",
             {pos(1, QStringLiteral("4k3/8/8/4p3/8/8/8/4K3 w - - 0 0"))}},
            {"[FEN \"" + setUp.toLatin1() + "\n\n", {pos(1, setUp)}}, // an unclosed quote
            {"[FEN\"" + setUp.toLatin1() + "\"]\n\n", {pos(1, setUp)}}};
        for (const auto& [text, records] : cases)
            QCOMPARE(Pgn(text).records(), records);
    }

    void commentsAndVariationsAcrossLines() {
        QCOMPARE(Pgn("1.e4 {a (b\n c) d} e5 (1...c5 {e\n} 2.Nf3)\n2.Nf3 $1 Nc6\n").records(),
                 Pgn("1.e4 e5 2.Nf3 Nc6\n").records());
        Pgn p("1.e4 } } e5 {{ 2.Nf3\n\n[Event \"b\"]\n\n1.zz9 Qxx 1.e4\n");
        // Closing marks never let the depth fall below zero for long: e5 counts. No tag
        // stood in front of the first text, so later tags join the one game.
        QCOMPARE(p.records(), QStringList({pos(1), pos(1, kAfterE4), pos(1, kAfterE5),
                                           "[1|[Event \"b\"]", pos(1)}));
    }

    // A move no piece can make ends its game at the last position reached,
    // written once more with the move; the next game reads as ever, and a
    // word that names no square is passed over as before.
    void aMoveThatCantBePlayedCutsTheGame() {
        const QString afterD4 =
            QStringLiteral("rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b - - 0 0");
        Pgn p("[Event \"a\"]\n\n1.e4 e5 2.Ke3 Nc6 3.Nf3\n\n[Event \"b\"]\n\n1.d4 Qa5 2.c4\n\n"
              "[Event \"c\"]\n\n1.e4 e5 Resigns\n");
        QCOMPARE(p.records(),
                 QStringList({"[1|[Event \"a\"]", pos(1), pos(1, kAfterE4), pos(1, kAfterE5),
                              pos(1, kAfterE5 + " {cut at 2.Ke3}"), "[2|[Event \"b\"]", pos(2),
                              pos(2, afterD4), pos(2, afterD4 + " {cut at 1...Qa5}"),
                              "[3|[Event \"c\"]", pos(3), pos(3, kAfterE4), pos(3, kAfterE5)}));
    }
};

QTEST_MAIN(TstPgnScan)
#include "tst_pgn_scan.moc"
