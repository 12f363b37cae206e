#include "books/book_scan.h"
#include "support/book_records.h"
#include "support/file_bytes.h"

#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <unistd.h>

using namespace marlith;
using testing::scanSummary;

namespace {

// A book written into a temporary folder and scanned into a work file there.
struct Book {
    QTemporaryDir dir;
    WorkFile work;

    Book() { work.open(dir.filePath("F1.tmp")); }
    QString write(const QByteArray& b) { return testing::writeBook(dir.filePath("book"), b); }
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
        // A restart drops what waits to be written; a cut keeps the records before it.
        QVERIFY(book.work.append(makeRecord('E', 1, "b")) && book.work.restart());
        QVERIFY(book.work.append(makeRecord('E', 1, "c")) &&
                book.work.append(makeRecord('E', 1, "d")));
        QVERIFY(book.work.truncateTo(1) && book.work.append(makeRecord('E', 2, "e")));
        QCOMPARE(testing::recordLines(book.work, 2), QStringList({"E1|c", "E2|e"}));
        QVERIFY(!book.work.read(3));
        // A CR LF split between two blocks is one line end; a CR at the end ends a line alone.
        const QByteArray first((1 << 18) - 1, 'a'); // the CR ends the first read
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
        // A full disk keeps the whole records; the next opening starts without its error.
        {
            const testing::FileSizeLimit full(3 * kRecordLength + 10);
            for (int i = 0; i < 200; ++i) // past what the file holds in its buffer
                book.work.append(makeRecord('E', 2, "f"));
            QVERIFY(!book.work.flush() && !book.work.errorString().isEmpty());
        }
        QVERIFY(book.work.append(makeRecord('E', 3, "g")) && book.work.flush());
        QCOMPARE(testing::recordLines(book.work, 4), QStringList({"E1|a", "E2|f", "E2|f", "E3|g"}));
        QVERIFY(book.work.open(book.dir.filePath("F3.tmp")) && book.work.errorString().isEmpty());
    }

    // Each book as its scan summary and its records; a damaged binary book
    // (a count, pointer or square the file can't hold) is refused whole.
    void books_data() {
        QTest::addColumn<char>("format");
        QTest::addColumn<QByteArray>("bytes"); // a null array: no file there
        QTest::addColumn<QString>("outcome");
        const auto row = [](const char* name, char format, const QByteArray& bytes,
                            const QString& outcome) {
            QTest::newRow(name) << format << bytes << outcome;
        };
        row("list before a header, skipped lines, headers at the end", 'f',
            "; a\r\nK7\r\nk7\r\n\r\n[Event \"Two\"]\n[Site \"x\"]\n* a\n{ b\n% c\n   1K6   \n"
            "[Event \"Headers alone\"]\n",
            "2 games, 6 records, index (1 3): E1|K7 / E1|k7 / [2|[Event \"Two\"] / "
            "[2|[Site \"x\"] / E2|1K6 / [3|[Event \"Headers alone\"]");
        row("missing book", 'f', {}, "1 games, 0 records, index (), cut short: ");
        row("a book of one byte", 'f', "K", "1 games, 1 records, index (1): E1|K");
        row("a NUL byte: no text", 'f', QByteArray("K7\n\0k7\n", 7), "not a book");
        row("one line of megabytes is cut", 'f', QByteArray(3 << 20, 'K'),
            "1 games, 1 records, index (1): E1|" + QString(kRecordTextLength, u'K'));
        // A line with fewer than four blanks; an empty operation ends the operations.
        row("EPD operations become headers", 'e',
            "a w KQkq - bm e4; id \"b;x\";\r\n; c\r\nb w -\r\nc b - - ;; id 3;\r\n",
            "3 games, 6 records, index (1 5 6): [1|[bm e4] / [1|[id \"b] / [1|[x\"] / "
            "E1|a w KQkq - bm e4; id \"b;x\"; / E2|b w - / E3|c b - - ;; id 3;");
        // Behind the two entries the texts: empty, White, Site.
        const int e = 2 + 2 * 96, w = e + 2, s = w + 13;
        const QByteArray board = QByteArray("&       %").leftJustified(63) + '*'; // K P k
        row("binary book", 'p',
            littleEndian(1, 2) + pbmEntry(1, 3, {w, s, e, e, e, e, e}, board) +
                pbmEntry(0, 2, {e, e, e, e, e, e, e}, {}) + pbmText("") + pbmText("A. Composer") +
                pbmText("Somewhere"),
            "2 games, 6 records, index (1 5): [1|[Event \"h#3\"] / [1|[White \"A. Composer\"] / "
            "[1|[Site \"Somewhere\"] / E1|K7/P7/8/8/8/8/8/7k / [2|[Event \"#2\"] / "
            "E2|8/8/8/8/8/8/8/8");
        const int one = 2 + 96; // the empty text behind one entry
        const auto entry = [one](int pointer, const QByteArray& board = {}) {
            return littleEndian(0, 2) +
                   pbmEntry(0, 2, {one, one, one, pointer, one, one, one}, board);
        };
        const QByteArray empty = pbmText("");
        const QString damaged = "not a book";
        row("three entries counted, one there", 'p', littleEndian(2, 2) + entry(one).mid(2) + empty,
            damaged);
        row("too short for its count", 'p', QByteArray("\x05", 1), damaged);
        row("pointer behind the end", 'p', entry(1 << 20) + empty, damaged);
        row("pointer onto the count", 'p', entry(0) + empty, damaged);
        row("length behind the end", 'p', entry(one + 1) + empty, damaged);
        row("text longer than the file", 'p', entry(one) + "\xff\x7f", damaged);
        row("square outside the code", 'p', entry(one, "x") + empty, damaged);
        row("texts inside the entry, nothing behind", 'p', // offset 2 holds a 0
            littleEndian(0, 2) + pbmEntry(0, 2, QList<int>(7, 2), {}),
            "1 games, 2 records, index (1): [1|[Event \"#2\"] / E1|8/8/8/8/8/8/8/8");
    }
    void books() {
        QFETCH(char, format);
        QFETCH(QByteArray, bytes);
        Book book;
        const QString path = bytes.isNull() ? book.dir.filePath("none") : book.write(bytes);
        const BookScan scan = format == 'e'   ? scanEpd(path, book.work, {})
                              : format == 'f' ? scanFen(path, book.work, {})
                                              : scanPbm(path, book.work, 8, 8, "pPnNbBrRqQkK", {});
        QTEST(
            scan.end == ScanEnd::NotABook
                ? QStringLiteral("not a book")
                : scanSummary(scan) + ": " +
                      testing::recordLines(book.work, scan.recordCount).join(QStringLiteral(" / ")),
            "outcome");
    }

    // However a scan ends early, every game whose first record reached the
    // work file can be walked: a stop, a file-size limit, the last game number.
    void earlyEndsKeepWhatWasRead() {
        Book book;
        const QString games = book.write(QByteArray("[E]\nK\n").repeated(12'000));
        const QString operations = testing::writeBook(
            book.dir.filePath("epd"), QByteArray("K w - - a;b;c;d;\n").repeated(12'000));
        const auto keeps = [&book](const BookScan& scan, ScanEnd end, int32_t count) {
            QCOMPARE(scan.end, end);
            QCOMPARE(scan.gameCount, count);
            QCOMPARE(scan.gameIndex.size(), size_t(count));
            QCOMPARE(parseRecord(*book.work.read(scan.gameIndex.back())).gameNumber(), count);
            QVERIFY(book.work.read(scan.recordCount) && !book.work.read(scan.recordCount + 1));
        };
        std::atomic<bool> stop{false};
        keeps(scanFen(games, book.work, {[&stop](int32_t n) { stop = stop || n == 5'000; }, &stop}),
              ScanEnd::Stopped, 5'000);
        {
            const testing::FileSizeLimit full(1'000'000);
            keeps(scanFen(games, book.work, {}), ScanEnd::WriteFault, 3'788);
            // The refused record is an operation: no game is counted behind it.
            int32_t told = 0;
            scanEpd(operations, book.work, {[&told](int32_t n) { told = n; }});
            QCOMPARE(told, 3'100);
        }
        keeps(scanEpd(book.write(QByteArray("K\n").repeated(1'000'001)), book.work, {}),
              ScanEnd::GameLimit, 999'999);
        QVERIFY(bookScanRefusal(QStringLiteral("b.PBM"), ScanEnd::NotABook).contains(u"damaged"));
        QCOMPARE(book.work.read(1)->front(), '?'); // the record's first byte is fixed
        ::close(0); // started without standard input, the book gets descriptor 0
        QCOMPARE(scanFen(book.write("K"), book.work, {}).end, ScanEnd::Complete);
    }

    // Bit 2 means nothing, bits from 6 on are ignored.
    void stipulations() {
        QCOMPARE(stipulationText(8, 12), QByteArray("Sd#12"));
        QCOMPARE(stipulationText(32 + 16 + 8 + 1, 7), QByteArray("Max Sh=7"));
        QCOMPARE(stipulationText(64 + 128 + 4 + 2, 255), QByteArray("s#255"));
    }
};

QTEST_GUILESS_MAIN(TstBookScan)
#include "tst_book_scan.moc"
