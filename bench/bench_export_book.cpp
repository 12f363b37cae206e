// Export of a large book of real games, one diagram per game, as the command
// `marlith export` runs it: SVG and PNG at 400 pixels, diagrams per second.
// The scan alone is timed too, so that the drawing's share shows.
//
//   bench_export_book [--games N] [book.pgn]   (default: the shared book of
//                                               master games, all of it)
#include "books/scan_job.h"
#include "cli/commands.h"
#include "command_run.h"
#include "core/startup.h"
#include "drawing/font_pieces.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdio>

using namespace marlith;

namespace {

// The first `games` games of the book, cut where the next one's first tag stands.
QString firstGames(const QString& book, int games, const QString& folder) {
    QFile in(book);
    if (!in.open(QIODevice::ReadOnly)) return book;
    const QString cut = folder + QStringLiteral("/first.pgn");
    QFile out(cut);
    if (!out.open(QIODevice::WriteOnly)) return book;
    int seen = 0;
    bool inTags = false;
    while (!in.atEnd()) {
        const QByteArray line = in.readLine();
        const bool tag = line.startsWith('[');
        if (tag && !inTags && ++seen > games) break;
        inTags = tag;
        out.write(line);
    }
    return cut;
}

double scanSeconds(const QString& book, const QString& folder, const Style& style) {
    WorkFile work;
    work.open(folder + QStringLiteral("/scan.tmp"));
    QElapsedTimer clock;
    clock.start();
    bookScanner(book, style)(work, ScanControl{});
    return clock.nsecsElapsed() / 1e9;
}

} // namespace

int main(int argc, char* argv[]) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    int games = 0;
    if (arguments.size() >= 2 && arguments.first() == QLatin1String("--games")) {
        games = arguments.at(1).toInt();
        arguments = arguments.mid(2);
    }
    QString book = arguments.value(0, QStringLiteral(MARLITH_BENCH_BOOK));
    if (!QFile::exists(book)) {
        std::fprintf(stderr, "no book at %s\n", qPrintable(book));
        return 1;
    }
    QTemporaryDir home;
    const CommandFolders folders{home.path() + u'/',
                                 shippedDataFolder(QCoreApplication::applicationDirPath())};
    addPieceFont(folders.shipped);
    if (games > 0) book = firstGames(book, games, home.path());

    const LoadedStyle loaded = loadStyle(folders, {});
    std::printf("Export of %s, style %s\n\n", qPrintable(QDir::toNativeSeparators(book)),
                qPrintable(loaded.style.StyleName));
    std::printf("%-22s %9s %9s %12s\n", "run", "diagrams", "seconds", "diagrams/s");
    const double scan = scanSeconds(book, home.path(), loaded.style);
    std::printf("%-22s %9s %9.2f %12s\n", "scan alone", "-", scan, "-");

    for (const char* format : {"svg", "png"}) {
        CliOptions options;
        options.command = CliCommand::Export;
        options.input = book;
        options.output = home.path() + QStringLiteral("/out-") + QLatin1String(format);
        options.format = QLatin1String(format);
        options.width = 400;
        const auto [status, seconds] = timedCommand(
            [&](const CommandOutput& quiet) { return runCommand(options, folders, quiet); });
        QDir written(options.output);
        const auto count = written.entryList(QDir::Files).size();
        std::printf("%-22s %9lld %9.2f %12.0f\n",
                    qPrintable(QStringLiteral("%1 at 400 px").arg(QLatin1String(format))),
                    static_cast<long long>(count), seconds, count / seconds);
        std::printf("%-22s %9s %9s %12.0f\n", "  drawing alone", "", "",
                    count / std::max(1e-9, seconds - scan));
        if (status != 0) return status;
        written.removeRecursively(); // a full export of SVG takes gigabytes
    }
    return 0;
}
