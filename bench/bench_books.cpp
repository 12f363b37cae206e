// Books: the scan of a large book of real games against pgn-extract on the
// same file, its peak memory against the book's size, and the cost of one
// step forward in a small and a large book.
//
//   bench_books [book.pgn]          (default: the shared book of master games)
//   bench_books --scan book.pgn [work.tmp]   one scan in this process, for a
//                                            profiler; the work file is kept
//                                            when it is named
#include "books/book_scan.h"
#include "books/book_search.h"
#include "books/book_walk.h"
#include "books/pgn_board.h"
#include "styles/style.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace marlith;

namespace {

struct Run {
    double seconds = 0;
    long peakKb = 0; // the child's peak resident memory
    int32_t games = 0;
    int32_t records = 0;
    bool ok = false;
    bool exitedCleanly = false;
    double searchSeconds = 0; // a search of the whole book that reads every game
    int32_t found = 0;
};

// Runs `work` in a child process, so that its peak memory is its own.
template <typename Work> Run inChild(Work work) {
    int channel[2];
    Run run;
    if (pipe(channel) != 0) return run;
    const pid_t child = fork();
    if (child == 0) {
        close(channel[0]);
        Run result = work();
        [[maybe_unused]] const auto written = write(channel[1], &result, sizeof result);
        _exit(0);
    }
    close(channel[1]);
    [[maybe_unused]] const auto got = read(channel[0], &run, sizeof run);
    close(channel[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    run.peakKb = usage.ru_maxrss;
    run.exitedCleanly = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return run;
}

using Scanner = std::function<BookScan(WorkFile&)>;

// One scan in a child; with `search`, then a search that reads every game.
Run scanInChild(const QString& workPath, const Scanner& scanner, bool search) {
    return inChild([&] {
        Run run;
        WorkFile work;
        if (!work.open(workPath)) return run;
        QElapsedTimer clock;
        clock.start();
        const BookScan scan = scanner(work);
        run.seconds = clock.nsecsElapsed() / 1e9;
        if (search) {
            // A word in the headers and a piece on a square: every game is read.
            const Criteria criteria =
                parseCriteria(QStringLiteral("Kasparov"), {}, {}, {}, QStringLiteral("Ke1"), 8);
            clock.restart();
            run.found = static_cast<int32_t>(searchBook(work, scan.gameIndex, criteria).size());
            run.searchSeconds = clock.nsecsElapsed() / 1e9;
        }
        work.close();
        run.games = scan.gameCount;
        run.records = scan.recordCount;
        run.ok = scan.complete();
        return run;
    });
}

Scanner pgnScanner(const QString& book) {
    return [book](WorkFile& work) {
        Style style;
        resetStyle(style);
        StylePgnBoard board(style);
        return scanPgn(book, work, board, style.StartPos.toLatin1(), {});
    };
}

Run baselineInChild(const QString& book) {
    QElapsedTimer clock;
    clock.start();
    Run run = inChild([&] {
        const QByteArray path = book.toLocal8Bit();
        // Its running count goes nowhere, as ours does.
        if (FILE* quiet = std::freopen("/dev/null", "w", stderr)) (void)quiet;
        execl("/usr/games/pgn-extract", "pgn-extract", "-s", "-Wepd", "-o", "/dev/null",
              path.constData(), static_cast<char*>(nullptr));
        _exit(127);
        return Run{};
    });
    run.seconds = clock.nsecsElapsed() / 1e9;
    return run;
}

// The records of a scanned game book as books of the other formats: a FEN
// book of its tags and positions, an EPD book of its first 600,000 positions
// (each a game) with an operation each.
void writeTextBooks(const QString& workPath, int32_t records, const QString& fenPath,
                    const QString& epdPath) {
    QFile work(workPath);
    QFile fen(fenPath);
    QFile epd(epdPath);
    if (!work.open(QIODevice::ReadOnly) || !fen.open(QIODevice::WriteOnly) ||
        !epd.open(QIODevice::WriteOnly))
        return;
    QByteArray fenText;
    QByteArray epdText;
    int positions = 0;
    for (int32_t n = 0; n < records; ++n) {
        const Record record = parseRecord(work.read(kRecordLength));
        fenText += record.text + "\r\n";
        if (record.kind == kPositionKind && ++positions <= 600'000)
            epdText += record.text + " id \"game " + record.game.trimmed() + "\";\r\n";
        if (fenText.size() > (1 << 20)) {
            fen.write(fenText);
            epd.write(epdText);
            fenText.clear();
            epdText.clear();
        }
    }
    fen.write(fenText);
    epd.write(epdText);
}

// A problem book of the binary format at its largest: 65,536 entries, each
// with a stipulation, three of its seven texts and a board.
void writePbmBook(const QString& path) {
    constexpr int kEntries = 65'536;
    auto u16 = [](QByteArray& out, int value) {
        out += static_cast<char>(value & 0xFF);
        out += static_cast<char>((value >> 8) & 0xFF);
    };
    QByteArray bytes;
    u16(bytes, kEntries - 1);
    const int texts = 2 + kEntries * 96;
    const QByteArray names[3] = {"A. Composer", "Somewhere 1998", "1st Prize"};
    const int at[3] = {texts + 2, texts + 2 + 2 + 11, texts + 2 + 2 + 11 + 2 + 14};
    const char board[] = "&  ,  +  %%%%%   \"   $   !  ...  -  /  *      #";
    for (int e = 0; e < kEntries; ++e) {
        u16(bytes, 0);
        bytes += static_cast<char>(e % 4);
        bytes += static_cast<char>(2 + e % 3);
        const int pointers[7] = {at[0], at[1], texts, texts, at[2], texts, texts};
        for (const int p : pointers) {
            u16(bytes, p & 0xFFFF);
            u16(bytes, p >> 16);
        }
        bytes += QByteArray(board).leftJustified(64, ' ', true);
    }
    u16(bytes, 0); // the empty text
    for (const QByteArray& name : names) {
        u16(bytes, static_cast<int>(name.size()));
        bytes += name;
    }
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(bytes);
}

// A book of `games` games of one header and `positions` positions each.
void writeFenBook(const QString& path, int games, int positions) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return;
    for (int g = 1; g <= games; ++g) {
        file.write("[Event \"game " + QByteArray::number(g) + "\"]\r\n");
        for (int p = 0; p < positions; ++p)
            file.write("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1\r\n");
    }
}

// Nanoseconds of one step forward (and its record on show) spread over the
// whole book, over many steps.
double stepTime(const QString& folder, int games) {
    const QString path = folder + QStringLiteral("/steps.fen");
    writeFenBook(path, games, 10);
    OpenBook book;
    book.workFile.open(folder + QStringLiteral("/steps.tmp"));
    const BookScan scan = scanFen(path, book.workFile, {});
    book.gameCount = scan.gameCount;
    book.recordCount = scan.recordCount;
    book.gameIndex = scan.gameIndex;
    constexpr int kRounds = 20'000;
    QElapsedTimer clock;
    int64_t steps = 0;
    int64_t nanoseconds = 0;
    for (int round = 0; round < kRounds; ++round) {
        if (!goToGame(book, static_cast<int32_t>((round * 7919LL) % games + 1))) continue;
        char kind = 0;
        clock.start();
        while (nextRecord(book, kind)) {
            (void)positionOfRecord(book.currentRecord);
            ++steps;
        }
        nanoseconds += clock.nsecsElapsed();
    }
    return steps ? static_cast<double>(nanoseconds) / steps : 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if ((argc == 3 || argc == 4) && QByteArray(argv[1]) == "--scan") {
        QTemporaryDir folder;
        Style style;
        resetStyle(style);
        WorkFile work;
        work.open(argc == 4 ? QString::fromLocal8Bit(argv[3])
                            : folder.path() + QStringLiteral("/work.tmp"));
        StylePgnBoard board(style);
        const BookScan scan =
            scanPgn(QString::fromLocal8Bit(argv[2]), work, board, style.StartPos.toLatin1(), {});
        std::printf("%d games, %d records\n", scan.gameCount, scan.recordCount);
        return 0;
    }
    const QString book =
        argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(MARLITH_BENCH_BOOK);
    QTemporaryDir folder;
    const QString big = folder.path() + QStringLiteral("/big.pgn");
    constexpr int kCopies = 4;
    {
        QFile in(book);
        QFile out(big);
        if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly)) {
            std::printf("cannot read %s\n", qPrintable(book));
            return 1;
        }
        const QByteArray all = in.readAll();
        for (int i = 0; i < kCopies; ++i)
            out.write(all);
    }

    std::printf("%-34s %9s %10s %7s %8s %9s %10s %8s\n", "book scan", "games", "records", "MB",
                "seconds", "games/s", "records/s", "peak MB");
    auto row = [](const char* name, const QString& path, const Run& run) {
        const double mb = QFileInfo(path).size() / 1e6;
        std::printf("%-34s %9d %10d %7.1f %8.3f %9.0f %10.0f %8.1f\n", name, run.games, run.records,
                    mb, run.seconds, run.games / run.seconds, run.records / run.seconds,
                    run.peakKb / 1024.0);
    };
    const QString work = folder.path() + QStringLiteral("/work.tmp");
    const Run ours = scanInChild(work, pgnScanner(book), true);
    const Run baseline = baselineInChild(book);
    const Run oursBig = scanInChild(work, pgnScanner(big), true);
    const Run baselineBig = baselineInChild(big);
    if (!baseline.exitedCleanly || !baselineBig.exitedCleanly)
        std::printf("pgn-extract did not run (bash scripts/setup.sh installs it): "
                    "the baseline rows below mean nothing\n");
    Run named = baseline;
    named.games = ours.games;
    Run namedBig = baselineBig;
    namedBig.games = oursBig.games;
    row("Marlith scanPgn", book, ours);
    row("pgn-extract -s -Wepd (baseline)", book, named);
    row("Marlith scanPgn, book x4", big, oursBig);
    row("pgn-extract, book x4 (baseline)", big, namedBig);

    // The other formats, from the same games.
    const QString fen = folder.path() + QStringLiteral("/book.fen");
    const QString epd = folder.path() + QStringLiteral("/book.epd");
    const QString pbm = folder.path() + QStringLiteral("/book.pbm");
    {
        WorkFile keep;
        keep.open(work);
        pgnScanner(book)(keep);
        keep.close();
        writeTextBooks(work, ours.records, fen, epd);
        writePbmBook(pbm);
    }
    const Run fenRun = scanInChild(
        work, [&](WorkFile& file) { return scanFen(fen, file, {}); }, false);
    const Run epdRun = scanInChild(
        work, [&](WorkFile& file) { return scanEpd(epd, file, {}); }, false);
    const Run pbmRun = scanInChild(
        work,
        [&](WorkFile& file) {
            return scanPbm(pbm, file, 8, 8, QStringLiteral("pPnNbBrRqQkK"), {});
        },
        false);
    row("Marlith scanFen (same games)", fen, fenRun);
    row("Marlith scanEpd (same positions)", epd, epdRun);
    row("Marlith scanPbm (65,536 problems)", pbm, pbmRun);

    const bool complete = ours.ok && oursBig.ok && fenRun.ok && epdRun.ok && pbmRun.ok;
    std::printf("every scan complete: %s\n", complete ? "yes" : "NO");
    std::printf("MB/s: %.1f (Marlith), %.1f (baseline)\n",
                QFileInfo(book).size() / 1e6 / ours.seconds,
                QFileInfo(book).size() / 1e6 / baseline.seconds);
    std::printf("ratio baseline time / Marlith time: %.2f (book), %.2f (x4); above 1 is faster\n",
                baseline.seconds / ours.seconds, baselineBig.seconds / oursBig.seconds);
    const double pgnRate = ours.records / ours.seconds;
    std::printf("records/s against scanPgn's: %.2f (FEN), %.2f (EPD), %.2f (PBM)\n",
                fenRun.records / fenRun.seconds / pgnRate,
                epdRun.records / epdRun.seconds / pgnRate,
                pbmRun.records / pbmRun.seconds / pgnRate);
    std::printf("peak memory growth from book to x4: %.1f MB (index of x4: %.1f MB)\n",
                (oursBig.peakKb - ours.peakKb) / 1024.0, oursBig.games * 4.0 / 1e6);

    std::printf("search of every game (a word or a piece on a square): %.3f s for the book, "
                "%.3f s for x4 (%d and %d found); ratio search / scan time: %.2f, %.2f\n",
                ours.searchSeconds, oursBig.searchSeconds, ours.found, oursBig.found,
                ours.searchSeconds / ours.seconds, oursBig.searchSeconds / oursBig.seconds);

    const double small = stepTime(folder.path(), 10);
    const double large = stepTime(folder.path(), 100'000);
    std::printf("\none step forward: %.0f ns in a book of 10 games, %.0f ns in one of 100,000 "
                "games; ratio %.2f\n",
                small, large, large / small);
    return 0;
}
