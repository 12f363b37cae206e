// `marlith solve` of a book of 40 problems, as the command runs it, with one
// Popeye at a time and with two: the times and their ratio, which is near 2
// on two free cores.
//
//   bench_solve [path of Popeye]   (default: the one the tests build)
#include "cli/solve.h"
#include "command_run.h"
#include "core/startup.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

using namespace marlith;

namespace {

// The start position as a series-mover in 5, which takes Popeye a fifth of
// a second or so.
constexpr int kProblems = 40;
constexpr char kProblem[] = "[Event \"Start, ser-#5\"]\n[Stipulation \"ser-#5\"]\n"
                            "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR\n";

} // namespace

int main(int argc, char* argv[]) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QString popeye =
        QCoreApplication::arguments().value(1, QStringLiteral(MARLITH_REAL_POPEYE));
    if (!QFileInfo(popeye).isExecutable()) {
        std::fprintf(stderr, "no Popeye at '%s'\n", qPrintable(popeye));
        return 1;
    }
    QTemporaryDir home;
    const CommandFolders folders{home.path() + u'/',
                                 shippedDataFolder(QCoreApplication::applicationDirPath())};
    if (!QFile::link(popeye, folders.program + QStringLiteral("py"))) return 1;
    const QString book = folders.program + QStringLiteral("problems.fen");
    QFile file(book);
    if (!file.open(QIODevice::WriteOnly)) return 1;
    for (int i = 0; i < kProblems; ++i)
        file.write(kProblem);
    file.close();

    std::printf("Solving %d problems (the start position, ser-#5), %d cores\n\n", kProblems,
                QThread::idealThreadCount());
    std::printf("%-8s %9s %11s %9s\n", "jobs", "seconds", "problems/s", "speed-up");
    double single = 0;
    for (const int jobs : {1, 2}) {
        CliOptions options;
        options.command = CliCommand::Solve;
        options.input = book;
        options.output = folders.program + QStringLiteral("results-%1.csv").arg(jobs);
        options.jobs = jobs;
        const auto [status, seconds] = timedCommand(
            [&](const CommandOutput& quiet) { return solveBook(options, folders, quiet); });
        if (status != 0) return status;
        if (jobs == 1) single = seconds;
        std::printf("%-8d %9.2f %11.1f %9.2f\n", jobs, seconds, kProblems / seconds,
                    single / seconds);
    }
    return 0;
}
