#include "books/book_scan.h"
#include "support/book_records.h"

#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

// A book written into a temporary folder and scanned into a work file there.
struct Book {
    QTemporaryDir dir;
    WorkFile work;
    QList<int32_t> progress;

    QString write(const char* name, const QByteArray& bytes) {
        const QString path = dir.filePath(QLatin1String(name));
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) file.write(bytes);
        return path;
    }
    ScanProgress counter() {
        return [this](int32_t games) { progress.append(games); };
    }
    bool openWork() { return work.open(dir.filePath(QStringLiteral("F000001.tmp"))); }
    // The records as "kind game|text" for comparison.
    QStringList records(const BookScan& scan) {
        return testing::RecordLines(work, scan.recordCount);
    }
    bool endMarkBehind(const BookScan& scan) {
        const auto mark = work.read(scan.recordCount + 1);
        return mark && *mark == EndMark();
    }
};

QByteArray Index(std::initializer_list<int> records) {
    QByteArray index;
    for (int r : records)
        index += SixCharacters(r);
    return index;
}

QByteArray PbmEntry(int flags, int moves, const QList<int>& pointers, const QByteArray& board) {
    QByteArray entry(2, '\0');
    entry += char(flags);
    entry += char(moves);
    for (int t = 0; t < 7; ++t) {
        const int p = t < pointers.size() ? pointers[t] : 0;
        entry += char(p & 0xFF);
        entry += char((p >> 8) & 0xFF);
        entry += char((p >> 16) & 0xFF);
        entry += '\0';
    }
    entry += board.leftJustified(64, ' ', true);
    return entry;
}

QByteArray PbmText(const QByteArray& text) {
    QByteArray bytes;
    bytes += char(text.size() & 0xFF);
    bytes += char(text.size() >> 8);
    return bytes + text;
}

} // namespace

class TstBookScan : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void recordsAndNumbers() {
        QCOMPARE(SixCharacters(1), QByteArray("     1"));
        QCOMPARE(SixCharacters(999999), QByteArray("999999"));
        QCOMPARE(SixCharacters(1234567), QByteArray("234567"));
        const QByteArray record = MakeRecord('E', 42, QByteArray(200, 'x'));
        QCOMPARE(record.size(), 132);
        QVERIFY(record.startsWith("?E    42xxx"));
        const Record parsed = ParseRecord(MakeRecord('[', 7, "[White \"A\"]"));
        QCOMPARE(parsed.kind, '[');
        QCOMPARE(parsed.gameNumber(), 7);
        QCOMPARE(parsed.text, QByteArray("[White \"A\"]"));
        QCOMPARE(ParseRecord(EndMark()).gameNumber(), 0);
        QCOMPARE(RecordText("Nimzowitsch \xc3\xa4"), QString::fromUtf8("Nimzowitsch \xc3\xa4"));
        QCOMPARE(RecordText("M\xfcller"), QString::fromLatin1("M\xfcller"));
    }

    void workFileReadsNothingOutside() {
        Book book;
        QVERIFY(book.openWork());
        QVERIFY(!book.work.read(1));
        QVERIFY(book.work.append(MakeRecord('E', 1, "a")));
        QVERIFY(book.work.read(1));
        QVERIFY(!book.work.read(0));
        QVERIFY(!book.work.read(2));
        QVERIFY(!book.work.read(-5));
        QVERIFY(!book.work.append("short"));
    }

    void linesEndAtCrLfCrOrLf() {
        Book book;
        // A CR LF pair split between two blocks is one line end.
        QByteArray text = QByteArray((1 << 16) - 1, 'a') + "\r\nb\rc\nd\r\n\r\ne";
        QFile file(book.write("lines.txt", text));
        QVERIFY(file.open(QIODevice::ReadOnly));
        LineReader reader(file);
        QList<QByteArray> lines;
        QByteArray line;
        while (reader.next(line))
            lines << line;
        QCOMPARE(lines.size(), 6);
        QCOMPARE(lines[0].size(), (1 << 16) - 1);
        QCOMPARE(lines.mid(1), QList<QByteArray>({"b", "c", "d", "", "e"}));
        QVERIFY(!reader.error());

        QFile tail(book.write("tail.txt", "x\r"));
        QVERIFY(tail.open(QIODevice::ReadOnly));
        LineReader last(tail);
        QVERIFY(last.next(line));
        QCOMPARE(line, QByteArray("x"));
        QVERIFY(!last.next(line));
        QCOMPARE(PrepareLine("  [Event \"x\"]  "), QByteArray("[Event \"x\"] "));
        QCOMPARE(PrepareLine(""), QByteArray(" "));
        QCOMPARE(PrepareLine("\tx"), QByteArray("\tx ")); // only blanks are trimmed
    }

    void fenBooks() {
        Book book;
        QVERIFY(book.openWork());
        const QString path = book.write("b.fen",
                                        "; a comment\r\n"
                                        "8/8/8/8/8/8/8/K7\r\n" // a list before any header
                                        "k7/8/8/8/8/8/8/8\r\n"
                                        "\r\n"
                                        "[Event \"Two\"]\n"
                                        "[Site \"x\"]\n"
                                        "* skipped\n"
                                        "{ skipped }\n"
                                        "% skipped\n"
                                        "   1K6/8/8/8/8/8/8/8   \n"
                                        "[Event \"Headers alone\"]\n");
        const BookScan scan = ScanFEN(path, book.work, book.counter());
        QVERIFY(scan.complete);
        QCOMPARE(scan.gameCount, 2);
        QCOMPARE(scan.recordCount, 6);
        QCOMPARE(scan.gameIndex, Index({1, 3}));
        QCOMPARE(scan.fullIndex, scan.gameIndex);
        QCOMPARE(book.records(scan),
                 QStringList({"E1|8/8/8/8/8/8/8/K7", "E1|k7/8/8/8/8/8/8/8", "[2|[Event \"Two\"]",
                              "[2|[Site \"x\"]", "E2|1K6/8/8/8/8/8/8/8",
                              "[3|[Event \"Headers alone\"]"}));
        QVERIFY(book.endMarkBehind(scan));
    }

    void emptyAndMissingBooks() {
        Book book;
        QVERIFY(book.openWork());
        BookScan scan = ScanFEN(book.write("e.fen", ""), book.work, {});
        QCOMPARE(scan.gameCount, 1);
        QCOMPARE(scan.recordCount, 0);
        QVERIFY(scan.gameIndex.isEmpty());
        scan = ScanEPD(book.write("e.epd", ""), book.work, {});
        QCOMPARE(scan.gameCount, 0);
        QCOMPARE(scan.recordCount, 0);
        scan = ScanFEN(book.dir.filePath(QStringLiteral("missing.fen")), book.work, {});
        QVERIFY(!scan.complete);
        QCOMPARE(scan.recordCount, 0);
        QVERIFY(scan.gameIndex.isEmpty());
        // Without a work file nothing is read.
        WorkFile closed;
        scan = ScanFEN(book.write("x.fen", "8/8/8/8/8/8/8/8\n"), closed, {});
        QCOMPARE(scan.recordCount, 0);
    }

    void longLinesAreCutInTheirRecords() {
        Book book;
        QVERIFY(book.openWork());
        const QByteArray longLine = "K7/8/8/8/8/8/8/8 " + QByteArray(300, 'z');
        const BookScan scan = ScanFEN(book.write("l.fen", longLine + "\n"), book.work, {});
        QCOMPARE(scan.recordCount, 1);
        QCOMPARE(ParseRecord(*book.work.read(1)).text, longLine.left(124));
        // A single line of megabytes is read whole and cut.
        const BookScan huge = ScanFEN(book.write("h.fen", QByteArray(3 << 20, 'K')), book.work, {});
        QCOMPARE(huge.recordCount, 1);
    }

    void epdOperationsBecomeHeaders() {
        Book book;
        QVERIFY(book.openWork());
        const QString path = book.write("b.epd",
                                        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - "
                                        "bm e4; id \"start;x\";\r\n"
                                        "; comment\r\n"
                                        "8/8/8/8/8/8/8/K7 w -\r\n" // fewer than four blanks
                                        "8/8/8/8/8/8/8/k7 b - - ;; id 3;\r\n"
                                        "8/8 w - - c0 " +
                                            QByteArray(200, 'y') + ";\r\n");
        const BookScan scan = ScanEPD(path, book.work, {});
        QCOMPARE(scan.gameCount, 4);
        QCOMPARE(scan.gameIndex, Index({1, 5, 6, 7}));
        const QStringList records = book.records(scan);
        QCOMPARE(records.mid(0, 4),
                 QStringList({"[1|[bm e4]", "[1|[id \"start]", "[1|[x\"]",
                              "E1|rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm e4; id "
                              "\"start;x\";"}));
        QCOMPARE(records[4], QStringLiteral("E2|8/8/8/8/8/8/8/K7 w -"));
        QCOMPARE(records[5], QStringLiteral("E3|8/8/8/8/8/8/8/k7 b - - ;; id 3;")); // empty first
        QCOMPARE(records[6].size(), 3 + 124); // an operation is cut by itself
        QCOMPARE(records.size(), 8);
    }

    void progressAndIndexLimit() {
        Book book;
        QVERIFY(book.openWork());
        QByteArray text;
        for (int g = 1; g <= 10'668; ++g)
            text += "[Event \"" + QByteArray::number(g) + "\"]\n8/8/8/8/8/8/8/8\n";
        const BookScan scan = ScanFEN(book.write("many.fen", text), book.work, book.counter());
        QCOMPARE(scan.gameCount, 10'668);
        QCOMPARE(scan.gameIndex.size(), 10'667 * 6); // the last game has no entry
        QCOMPARE(scan.gameIndex.right(6), SixCharacters(2 * 10'667 - 1));
        QCOMPARE(book.progress.size(), 106);
        QCOMPARE(book.progress.first(), 100);
    }

    void stipulations_data() {
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("moves");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("direct") << 0 << 2 << QByteArray("#2");
        QTest::newRow("help") << 1 << 3 << QByteArray("h#3");
        QTest::newRow("self") << 2 << 4 << QByteArray("s#4");
        QTest::newRow("reflex") << 3 << 5 << QByteArray("r#5");
        QTest::newRow("series direct") << 8 << 12 << QByteArray("Sd#12");
        QTest::newRow("max series help stalemate")
            << 32 + 16 + 8 + 1 << 7 << QByteArray("Max Sh=7");
        QTest::newRow("stalemate") << 16 << 1 << QByteArray("=1");
        QTest::newRow("bit 2 means nothing") << 4 << 2 << QByteArray("#2");
        QTest::newRow("high bits ignored") << 64 + 128 + 1 << 255 << QByteArray("h#255");
    }
    void stipulations() {
        QFETCH(int, flags);
        QFETCH(int, moves);
        QFETCH(QByteArray, text);
        QCOMPARE(Stipulation(flags, moves), text);
    }

    void pbmBooks() {
        Book book;
        QVERIFY(book.openWork());
        // Two entries; the texts lie behind them.
        const int textsAt = 2 + 2 * 96;
        const QByteArray white = PbmText("A. Composer");
        const QByteArray empty = PbmText("");
        const QByteArray site = PbmText("Somewhere");
        const int whiteAt = textsAt, emptyAt = whiteAt + white.size(),
                  siteAt = emptyAt + empty.size();
        QByteArray board(64, ' ');
        board[0] = '&';  // K
        board[63] = '*'; // k
        board[8] = '%';  // P
        QByteArray file("\x01\x00", 2);
        file +=
            PbmEntry(1, 3, {whiteAt, siteAt, emptyAt, emptyAt, emptyAt, emptyAt, emptyAt}, board);
        file += PbmEntry(0, 2, {emptyAt, emptyAt, emptyAt, emptyAt, emptyAt, emptyAt, emptyAt},
                         QByteArray(64, ' '));
        file += white + empty + site;
        const BookScan scan =
            ScanPBM(book.write("p.pbm", file), book.work, 8, 8, QStringLiteral("pPnNbBrRqQkK"), {});
        QVERIFY(scan.complete);
        QCOMPARE(scan.gameCount, 2);
        QCOMPARE(scan.gameIndex, Index({1, 5}));
        QCOMPARE(book.records(scan),
                 QStringList({"[1|[Event \"h#3\"]", "[1|[White \"A. Composer\"]",
                              "[1|[Site \"Somewhere\"]", "E1|K7/P7/8/8/8/8/8/7k",
                              "[2|[Event \"#2\"]", "E2|8/8/8/8/8/8/8/8"}));
    }

    void damagedPbmFilesKeepWhatWasRead() {
        Book book;
        QVERIFY(book.openWork());
        const QByteArray empty = PbmText("");
        const int emptyAt = 2 + 96;
        const QList<int> absent(7, emptyAt);
        const QByteArray good = PbmEntry(0, 2, absent, QByteArray(64, ' '));
        const QString pieces = QStringLiteral("pPnNbBrRqQkK");
        auto scanOf = [&](const QByteArray& bytes) {
            return ScanPBM(book.write("d.pbm", bytes), book.work, 8, 8, pieces, {});
        };
        // The count promises three entries; one is there.
        BookScan scan = scanOf(QByteArray("\x02\x00", 2) + good + empty);
        QVERIFY(!scan.complete);
        QCOMPARE(scan.gameCount, 3);
        QCOMPARE(scan.recordCount, 2);
        QCOMPARE(scan.gameIndex, Index({1, 3})); // the index covers the game begun
        // A text pointer behind the end, and one of 0.
        for (const int pointer : {1 << 20, 0, emptyAt + 1}) {
            QList<int> pointers = absent;
            pointers[3] = pointer;
            scan = scanOf(QByteArray("\x00\x00", 2) + PbmEntry(0, 2, pointers, {}) + empty);
            QVERIFY(!scan.complete);
            QCOMPARE(scan.recordCount, 1); // the Event record only
        }
        // A text longer than the file.
        scan = scanOf(QByteArray("\x00\x00", 2) + PbmEntry(0, 2, absent, {}) + "\xff\x7f");
        QVERIFY(!scan.complete);
        // A board byte outside the code.
        QByteArray board(64, ' ');
        board[5] = 'Z';
        scan = scanOf(QByteArray("\x00\x00", 2) + PbmEntry(0, 2, absent, board) + empty);
        QVERIFY(!scan.complete);
        QCOMPARE(scan.recordCount, 1);
        // A file too short for its count, or empty.
        QCOMPARE(scanOf(QByteArray("\x05", 1)).recordCount, 0);
        QCOMPARE(scanOf(QByteArray()).recordCount, 0);
    }
};

QTEST_GUILESS_MAIN(TstBookScan)
#include "tst_book_scan.moc"
