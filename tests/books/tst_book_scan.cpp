#include "books/book_scan.h"
#include "support/book_records.h"
#include "support/file_bytes.h"

#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <functional>

using namespace marlith;
using testing::FileSizeLimit;
using testing::scanSummary;

namespace {

// A book written into a temporary folder and scanned into a work file there.
struct Book {
    QTemporaryDir dir;
    WorkFile work;

    Book() { work.open(dir.filePath("F1.tmp")); }
    QString write(const QByteArray& b) { return testing::writeBook(dir.filePath("book"), b); }
    BookScan fen(const QByteArray& t) { return scanFen(write(t), work, {}); }
    BookScan pbm(const QByteArray& b) { return scanPbm(write(b), work, 8, 8, "pPnNbBrRqQkK", {}); }
    QStringList records(const BookScan& s) { return testing::recordLines(work, s.recordCount); }
};

// `size` bytes of `value`, the lowest first.
QByteArray littleEndian(int value, int size) {
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes += char((value >> (8 * i)) & 0xFF);
    return bytes;
}

// An entry of the binary format: flags, moves, seven text pointers, the board.
QByteArray pbmEntry(int flags, int moves, const QList<int>& pointers, const QByteArray& board) {
    QByteArray entry = littleEndian(0, 2) + char(flags) + char(moves);
    for (const int p : pointers)
        entry += littleEndian(p, 4);
    return entry + board.leftJustified(64, ' ', true);
}

QByteArray pbmText(const QByteArray& text) {
    return littleEndian(int(text.size()), 2) + text;
}

} // namespace

class TstBookScan : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void workFileAndLineEnds() {
        Book book;
        QVERIFY(book.work.append(makeRecord('E', 1, "a")) && !book.work.append("short"));
        QVERIFY(book.work.read(1) && !book.work.read(0) && !book.work.read(2));
        // A CR LF split between two blocks is one line end; a CR at the end ends a line alone.
        const QByteArray first((1 << 16) - 1, 'a');
        QFile file(book.write(first + "\r\nb\rc\nd\r\n\r\ne\r"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        LineReader reader(file);
        QList<QByteArray> lines;
        QByteArrayView line;
        while (reader.next(line))
            lines << line.toByteArray();
        QVERIFY(!reader.error());
        QCOMPARE(lines, QList<QByteArray>({first, "b", "c", "d", "", "e"}));
        // A link under the work file's name is replaced, never written through.
        const QString victim = book.write("keep");
        QVERIFY(QFile::link(victim, book.dir.filePath("F2.tmp")));
        QVERIFY(book.work.open(book.dir.filePath("F2.tmp")) &&
                book.work.append(makeRecord('E', 1, "a")));
        QCOMPARE(testing::readFile(victim), "keep");
    }

    void fenBooks() {
        Book book;
        // A list before any header, skipped lines, and headers at the end opening no game.
        const BookScan scan =
            book.fen("; a\r\nK7\r\nk7\r\n\r\n[Event \"Two\"]\n[Site \"x\"]\n* a\n{ b\n"
                     "% c\n   1K6   \n[Event \"Headers alone\"]\n");
        QCOMPARE(scanSummary(scan), QStringLiteral("2 games, 6 records, index (1 3)"));
        QCOMPARE(book.records(scan),
                 QStringList({"E1|K7", "E1|k7", "[2|[Event \"Two\"]", "[2|[Site \"x\"]", "E2|1K6",
                              "[3|[Event \"Headers alone\"]"}));
    }

    void missingAndHugeBooks() {
        Book book;
        QCOMPARE(scanSummary(scanFen(book.dir.filePath(QStringLiteral("none")), book.work, {})),
                 QStringLiteral("1 games, 0 records, index (), cut short"));
        // A single line of megabytes is read whole and cut.
        QCOMPARE(book.records(book.fen(QByteArray(3 << 20, 'K'))),
                 QStringList({"E1|" + QString(kRecordTextLength, u'K')}));
    }

    void epdOperationsBecomeHeaders() {
        Book book;
        // A line with fewer than four blanks; an empty operation ends the operations.
        const BookScan scan = scanEpd(book.write("a w KQkq - bm e4; id \"b;x\";\r\n; c\r\n"
                                                 "b w -\r\nc b - - ;; id 3;\r\n"),
                                      book.work, {});
        QCOMPARE(scanSummary(scan), QStringLiteral("3 games, 6 records, index (1 5 6)"));
        QCOMPARE(book.records(scan), QStringList({"[1|[bm e4]", "[1|[id \"b]", "[1|[x\"]",
                                                  "E1|a w KQkq - bm e4; id \"b;x\";", "E2|b w -",
                                                  "E3|c b - - ;; id 3;"}));
    }

    // However a scan ends early, every game whose first record reached the
    // work file can be walked: a stop, a file-size limit, the last game number.
    void earlyEndsKeepWhatWasRead() {
        Book book;
        const QString games = book.write(QByteArray("[E]\nK\n").repeated(12'000));
        std::atomic<bool> stop{false};
        const ScanControl stopAt5000{[&stop](int32_t n) { stop = stop || n == 5'000; }, &stop};
        struct Case {
            std::function<BookScan()> scan;
            ScanEnd end;
            int32_t games;
            int32_t records;
        };
        const Case cases[] = {
            {[&] { return scanFen(games, book.work, stopAt5000); }, ScanEnd::Stopped, 5'000, 9'999},
            {[&] {
                 const FileSizeLimit full(1'000'000);
                 return scanFen(games, book.work, {});
             },
             ScanEnd::WriteFault, 3'788, 7'575},
            {[&] {
                 return scanEpd(book.write(QByteArray("K\n").repeated(1'000'001)), book.work, {});
             },
             ScanEnd::GameLimit, 999'999, 999'999}};
        for (const Case& c : cases) {
            const BookScan scan = c.scan();
            QCOMPARE(scan.end, c.end);
            QCOMPARE(scan.gameCount, c.games);
            QCOMPARE(scan.recordCount, c.records);
            QCOMPARE(scan.gameIndex.size(), size_t(c.games));
            QCOMPARE(parseRecord(*book.work.read(scan.gameIndex.back())).gameNumber(), c.games);
            QVERIFY(!book.work.read(c.records + 1));
        }
    }

    void pbmBooks() {
        Book book;
        // Two entries; behind them the texts: empty, White, Site.
        const int e = 2 + 2 * 96, w = e + 2, s = w + 13;
        const QByteArray board = QByteArray("&       %").leftJustified(63) + '*'; // K P k
        const BookScan scan =
            book.pbm(littleEndian(1, 2) + pbmEntry(1, 3, {w, s, e, e, e, e, e}, board) +
                     pbmEntry(0, 2, {e, e, e, e, e, e, e}, {}) + pbmText("") +
                     pbmText("A. Composer") + pbmText("Somewhere"));
        QCOMPARE(scanSummary(scan), QStringLiteral("2 games, 6 records, index (1 5)"));
        QCOMPARE(book.records(scan),
                 QStringList({"[1|[Event \"h#3\"]", "[1|[White \"A. Composer\"]",
                              "[1|[Site \"Somewhere\"]", "E1|K7/P7/8/8/8/8/8/7k",
                              "[2|[Event \"#2\"]", "E2|8/8/8/8/8/8/8/8"}));
        // Stipulations: bit 2 means nothing, bits from 6 on are ignored.
        QCOMPARE(stipulationText(8, 12), QByteArray("Sd#12"));
        QCOMPARE(stipulationText(32 + 16 + 8 + 1, 7), QByteArray("Max Sh=7"));
        QCOMPARE(stipulationText(64 + 128 + 4 + 2, 255), QByteArray("s#255"));
    }

    // A count, a pointer or a square that the file can't hold: the book is
    // refused whole, not shown as far as it went.
    void damagedPbmFilesAreRefused_data() {
        QTest::addColumn<QByteArray>("bytes");
        const int e = 2 + 96; // the empty text behind one entry
        const auto entry = [e](int pointer, const QByteArray& board = {}) {
            return littleEndian(0, 2) + pbmEntry(0, 2, {e, e, e, pointer, e, e, e}, board);
        };
        const QByteArray empty = pbmText("");
        QTest::newRow("three entries counted, one there")
            << littleEndian(2, 2) + entry(e).mid(2) + empty;
        QTest::newRow("too short for its count") << QByteArray("\x05", 1);
        QTest::newRow("pointer behind the end") << entry(1 << 20) + empty;
        QTest::newRow("pointer onto the count") << entry(0) + empty;
        QTest::newRow("length behind the end") << entry(e + 1) + empty;
        QTest::newRow("text longer than the file") << entry(e) + "\xff\x7f";
        QTest::newRow("square outside the code") << entry(e, "x") + empty;
    }
    void damagedPbmFilesAreRefused() {
        QFETCH(QByteArray, bytes);
        Book book;
        const BookScan scan = book.pbm(bytes);
        QCOMPARE(scan.end, ScanEnd::NotABook);
        QVERIFY(bookScanRefusal(QStringLiteral("b.PBM"), scan.end).contains(u"damaged"));
    }
};

QTEST_GUILESS_MAIN(TstBookScan)
#include "tst_book_scan.moc"
