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

Run scanInChild(const QString& book, const QString& workPath) {
    return inChild([&] {
        Run run;
        Style style;
        resetStyle(style);
        WorkFile work;
        if (!work.open(workPath)) return run;
        StylePgnBoard board(style);
        QElapsedTimer clock;
        clock.start();
        const BookScan scan = scanPgn(book, work, board, style.StartPos.toLatin1(), {});
        run.seconds = clock.nsecsElapsed() / 1e9;
        // A word in the headers and a piece on a square: every game is read.
        const Criteria criteria =
            parseCriteria(QStringLiteral("Kasparov"), {}, {}, {}, QStringLiteral("Ke1"), 8);
        clock.restart();
        run.found = static_cast<int32_t>(searchBook(work, scan.fullIndex, criteria).size() / 6);
        run.searchSeconds = clock.nsecsElapsed() / 1e9;
        work.close();
        run.games = scan.gameCount;
        run.records = scan.recordCount;
        run.ok = scan.complete;
        return run;
    });
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

// Nanoseconds of one step forward (and its record on show) in the middle
// of the book, over many steps.
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
        if (!goToGame(book, (round * 7919) % games + 1)) continue;
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

    std::printf("%-34s %10s %8s %9s %9s %9s\n", "book scan", "games", "MB", "seconds", "games/s",
                "peak MB");
    auto row = [](const char* name, const QString& path, const Run& run) {
        const double mb = QFileInfo(path).size() / 1e6;
        std::printf("%-34s %10d %8.1f %9.3f %9.0f %9.1f\n", name, run.games, mb, run.seconds,
                    run.games / run.seconds, run.peakKb / 1024.0);
    };
    const QString work = folder.path() + QStringLiteral("/work.tmp");
    const Run ours = scanInChild(book, work);
    const Run baseline = baselineInChild(book);
    const Run oursBig = scanInChild(big, work);
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
    std::printf("records written: %d (book), %d (x4); scan complete: %s\n", ours.records,
                oursBig.records, ours.ok && oursBig.ok ? "yes" : "NO");
    std::printf("MB/s: %.1f (Marlith), %.1f (baseline)\n",
                QFileInfo(book).size() / 1e6 / ours.seconds,
                QFileInfo(book).size() / 1e6 / baseline.seconds);
    std::printf("ratio baseline time / Marlith time: %.2f (book), %.2f (x4); above 1 is faster\n",
                baseline.seconds / ours.seconds, baselineBig.seconds / oursBig.seconds);
    std::printf("peak memory growth from book to x4: %.1f MB (index text of x4: %.1f MB)\n",
                (oursBig.peakKb - ours.peakKb) / 1024.0,
                std::min<double>(oursBig.games, kIndexLimit / 6) * 6 / 1e6);

    std::printf("search of every game (a word or a piece on a square): %.3f s for the book, "
                "%.3f s for x4 (%d and %d found); ratio search / scan time: %.2f, %.2f\n",
                ours.searchSeconds, oursBig.searchSeconds, ours.found, oursBig.found,
                ours.searchSeconds / ours.seconds, oursBig.searchSeconds / oursBig.seconds);

    const double small = stepTime(folder.path(), 10);
    const double large = stepTime(folder.path(), 10'000);
    std::printf("\none step forward: %.0f ns in a book of 10 games, %.0f ns in one of 10,000 "
                "games; ratio %.2f\n",
                small, large, large / small);
    return 0;
}
