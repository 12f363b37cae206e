#include "cli/solve.h"

#include "books/new_file.h"
#include "cli/solve_rules.h"
#include "engines/engine_files.h"
#include "engines/popeye.h"
#include "position/piece_listing.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <array>
#include <csignal>
#include <vector>

namespace marlith {

namespace {

// A signal handler may only set a flag, which the run reads between events;
// the handler can reach nothing else, hence file-wide.
volatile std::sig_atomic_t stopRequested = 0;

void onStopSignal(int) {
    stopRequested = 1;
}

// Ctrl+C, a scheduler's end of a job, and a closed terminal stop the run
// between rows; the former handlers come back with the run's end.
class StopSignals {
  public:
    StopSignals() {
        stopRequested = 0;
        struct sigaction action = {};
        action.sa_handler = onStopSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        for (size_t i = 0; i < kSignals.size(); ++i)
            ::sigaction(kSignals[i], &action, &former_[i]);
    }
    ~StopSignals() {
        for (size_t i = 0; i < kSignals.size(); ++i)
            ::sigaction(kSignals[i], &former_[i], nullptr);
    }
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    bool stopped() const { return stopRequested != 0; }

  private:
    static constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, 3> former_{};
};

// Where the rows go: a results file that a later run goes on with, or
// standard output.
class ResultsSink {
  public:
    explicit ResultsSink(const CommandOutput& out) : out_(out) {}
    // Opens the file, keeping its whole rows; "" or why it can't be used.
    QString open(const QString& path, EarlierResults& earlier) {
        if (path.isEmpty()) {
            out_.print(QString::fromLatin1(kResultsHeader));
            return {};
        }
        file_.setFileName(path);
        const QString shown = QDir::toNativeSeparators(path);
        // Unbuffered: each row leaves in one write, so a stop leaves whole rows.
        if (!file_.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
            return QStringLiteral("can't write %1").arg(shown);
        const std::optional<EarlierResults> read = readEarlierResults(file_.readAll());
        if (!read) return QStringLiteral("%1 isn't a results file of marlith solve").arg(shown);
        earlier = *read;
        if (!file_.resize(earlier.wholeBytes) || !file_.seek(earlier.wholeBytes))
            return QStringLiteral("can't write %1").arg(shown);
        if (earlier.wholeBytes == 0 && !write(kResultsHeader))
            return QStringLiteral("can't write %1").arg(shown);
        return {};
    }
    bool write(const QByteArray& row) {
        if (!file_.isOpen()) {
            out_.print(QString::fromUtf8(row));
            return true;
        }
        return file_.write(row) == row.size();
    }

  private:
    const CommandOutput& out_;
    QFile file_;
};

// One problem of the book, ready for Popeye or refused with the reason.
struct Problem {
    int32_t game = 0;
    QString name;
    QString stipulation;
    PopeyeFields fields;
    QString refusal;
};

struct SolveSetting {
    const Style& style;
    QString dictionary;
    std::optional<QString> stipulation;
    int maxTime; // seconds, as the command line gives them
    bool pbmBook;
};

Problem readProblem(OpenBook& book, int32_t place, const SolveSetting& setting) {
    Problem problem;
    QStringList headers;
    bool found = goToGame(book, place);
    problem.game = found ? parseRecord(book.currentRecord).gameNumber() : place;
    char kind = 0;
    while (found && book.currentRecord.at(1) != kPositionKind) {
        headers << recordText(stripComment(book.currentRecord));
        found = nextRecord(book, kind);
    }
    problem.name = headerValue(headers, QStringLiteral("Event"));
    problem.stipulation = problemStipulation(setting.stipulation, headers, setting.pbmBook);
    if (!found) {
        problem.refusal = QStringLiteral("the game has no position");
        return problem;
    }
    const Style& style = setting.style;
    const Board board{style.BorderHeight, style.BorderWidth};
    SquareVector squares{};
    buildBoard(QString::fromLatin1(positionOfRecord(book.currentRecord).board), squares, board,
               style.PiecesList, nullptr, nullptr);
    const PieceLists pieces = listPieces(squares, board, style.PiecesList, style.EnglishNotation,
                                         setting.dictionary, ListingMode::Dictionary);
    const StipulationFields split = splitStipulation(problem.stipulation, QString());
    PopeyeFields& fields = problem.fields;
    fields.stipulation = split.stipulation;
    fields.moves = split.moves;
    fields.options = QStringLiteral("MaxTime %1").arg(setting.maxTime);
    fields.whitePieces = pieces.white;
    fields.blackPieces = pieces.black;
    fields.neutralPieces = pieces.neutral;
    problem.refusal = split.warning.isEmpty() ? runWarning(fields) : split.warning;
    return problem;
}

QByteArray resultRow(const Problem& problem, const PopeyeAnswer& answer) {
    return csvRow({QString::number(problem.game), problem.name, problem.stipulation,
                   verdictText(answer), keysText(answer.keys), answer.seconds});
}

// The problems of the shard that the results don't hold yet, each solved by
// one of `jobs` Popeye processes; a row as each one ends.
class SolveRun {
  public:
    SolveRun(OpenBook& book, const SolveSetting& setting, const CliOptions& options,
             const QString& popeye, const ScratchWorkFile& scratch, ResultsSink& results,
             const EarlierResults& earlier, const CommandOutput& out)
        : book_(book), setting_(setting), shard_{options.shardIndex, options.shardCount},
          popeye_(popeye), scratch_(scratch), results_(results), earlier_(earlier), out_(out),
          slots_(static_cast<size_t>(options.jobs)) {
        const auto games = static_cast<int32_t>(book.gameIndex.size());
        const int32_t inShard =
            games >= shard_.index ? (games - shard_.index) / shard_.count + 1 : 0;
        total_ = std::max<int32_t>(0, inShard - static_cast<int32_t>(earlier.games.size()));
        // A problem that Popeye doesn't leave in a good while after its
        // limit is ended by force.
        hardLimitMs_ = (static_cast<qint64>(setting.maxTime) * 11 / 10 + 10) * 1000;
    }

    // 0, or kRunFailed when a stop, a Popeye that can't start or a results
    // file that takes no more rows ended the run.
    int run(const StopSignals& signals) {
        clock_.start();
        for (size_t i = 0; i < slots_.size(); ++i)
            startNext(i);
        if (anyBusy()) {
            QTimer watch;
            QObject::connect(&watch, &QTimer::timeout, &loop_, [this, &signals] {
                if (signals.stopped()) {
                    failure_ = QStringLiteral("stopped; the same command goes on where it stopped");
                    stopAll();
                    return;
                }
                for (Slot& slot : slots_)
                    if (slot.process && slot.clock.elapsed() > hardLimitMs_) {
                        slot.overTime = true;
                        slot.process->kill();
                    }
            });
            watch.start(100);
            loop_.exec();
        }
        if (out_.endProgress) out_.endProgress();
        if (failure_.isEmpty() && signals.stopped())
            failure_ = QStringLiteral("stopped; the same command goes on where it stopped");
        if (failure_.isEmpty()) return 0;
        out_.fail(failure_);
        return kRunFailed;
    }

  private:
    struct Slot {
        std::unique_ptr<QProcess> process;
        Problem problem;
        QElapsedTimer clock;
        bool overTime = false;
    };

    bool anyBusy() const {
        return std::any_of(slots_.begin(), slots_.end(),
                           [](const Slot& slot) { return slot.process != nullptr; });
    }

    // The next problem to solve: those without a Popeye run get their row
    // at once.
    std::optional<Problem> nextProblem() {
        const auto games = static_cast<int32_t>(book_.gameIndex.size());
        while (failure_.isEmpty() && ++place_ <= games) {
            if (!shard_.takes(place_)) continue;
            Problem problem = readProblem(book_, place_, setting_);
            if (earlier_.games.count(problem.game) != 0) continue;
            if (problem.refusal.isEmpty()) return problem;
            PopeyeAnswer refused;
            refused.verdict = Verdict::Error;
            refused.message = problem.refusal;
            addRow(problem, refused);
        }
        return std::nullopt;
    }

    void startNext(size_t index) {
        Slot& slot = slots_[index];
        slot.process.reset();
        const std::optional<Problem> problem = nextProblem();
        if (!problem) return;
        slot.problem = *problem;
        slot.overTime = false;
        // The files of each slot are used again by its next problem.
        const QString seed = scratch_.seed() + u's' + QString::number(index);
        const QString problemFile = problemPath(scratch_.folder(), seed);
        const QString protocol = protocolPath(scratch_.folder(), seed);
        QFile::remove(protocol); // Popeye appends to a protocol that is there
        if (!writeNewFile(problemFile, problemFileText(slot.problem.fields, protocol))) {
            failure_ = QStringLiteral("can't write a problem file in %1")
                           .arg(QDir::toNativeSeparators(scratch_.folder()));
            stopAll();
            return;
        }
        auto process = std::make_unique<QProcess>();
        process->setWorkingDirectory(scratch_.folder());
        process->setStandardInputFile(QProcess::nullDevice());
        QObject::connect(process.get(), &QProcess::finished, &loop_,
                         [this, index](int exitCode, QProcess::ExitStatus status) {
                             finished(index, exitCode, status);
                         });
        process->start(popeye_, popeyeArguments(slot.problem.fields, problemFile));
        if (!process->waitForStarted()) {
            failure_ = QStringLiteral("can't start %1: %2")
                           .arg(QDir::toNativeSeparators(popeye_), process->errorString());
            stopAll();
            return;
        }
        slot.clock.start();
        slot.process = std::move(process);
    }

    void finished(size_t index, int exitCode, QProcess::ExitStatus status) {
        Slot& slot = slots_[index];
        // Ctrl+C reaches Popeye too: what it says then is no verdict.
        if (!slot.process || !failure_.isEmpty() || stopRequested) return;
        ended_.clear(); // their signals are long over
        PopeyeAnswer answer =
            readPopeyeAnswer(QString::fromUtf8(slot.process->readAllStandardOutput()),
                             QString::fromUtf8(slot.process->readAllStandardError()));
        if (slot.overTime) {
            answer.verdict = Verdict::TimeLimit;
        } else if (answer.verdict != Verdict::Error &&
                   (status != QProcess::NormalExit || exitCode != 0)) {
            answer.verdict = Verdict::Error;
            answer.message = status == QProcess::NormalExit
                                 ? QStringLiteral("Popeye ended with status %1").arg(exitCode)
                                 : QStringLiteral("Popeye was ended by the system");
        }
        // The process object goes once its signal is over.
        ended_.push_back(std::move(slot.process));
        addRow(slot.problem, answer);
        startNext(index);
        if (!anyBusy()) loop_.quit();
    }

    void addRow(const Problem& problem, const PopeyeAnswer& answer) {
        if (!results_.write(resultRow(problem, answer))) {
            failure_ = QStringLiteral("can't write the results");
            stopAll();
            return;
        }
        ++done_;
        if (out_.progress) out_.progress(progressText(done_, total_, clock_.elapsed()));
    }

    void stopAll() {
        for (Slot& slot : slots_) {
            if (!slot.process) continue;
            slot.process->disconnect();
            slot.process->kill();
            slot.process->waitForFinished(5000);
            slot.process.reset();
        }
        loop_.quit();
    }

    OpenBook& book_;
    const SolveSetting& setting_;
    Shard shard_;
    QString popeye_;
    const ScratchWorkFile& scratch_;
    ResultsSink& results_;
    const EarlierResults& earlier_;
    const CommandOutput& out_;
    std::vector<Slot> slots_;
    std::vector<std::unique_ptr<QProcess>> ended_;
    QEventLoop loop_;
    QElapsedTimer clock_;
    int32_t place_ = 0;
    int32_t done_ = 0;
    int32_t total_ = 0;
    qint64 hardLimitMs_ = 0;
    QString failure_;
};

} // namespace

int solveBook(const CliOptions& options, const CommandFolders& folders, const CommandOutput& out) {
    const StopSignals signals;
    const LoadedStyle loaded = loadStyle(folders, options.style);
    if (!loaded.error.isEmpty()) {
        out.fail(loaded.error);
        return kBadArguments;
    }
    const QString popeye = findPopeye(folders.program);
    if (popeye.isEmpty()) {
        out.fail(QStringLiteral("Popeye isn't in the program folder %1: put py there")
                     .arg(QDir::toNativeSeparators(folders.program)));
        return kRunFailed;
    }
    if (const QString refusal = bookFileRefusal(options.input); !refusal.isEmpty()) {
        out.fail(refusal);
        return kRunFailed;
    }
    ResultsSink results(out);
    EarlierResults earlier;
    if (const QString refusal = results.open(options.output, earlier); !refusal.isEmpty()) {
        out.fail(refusal);
        return kRunFailed;
    }
    // The program folder's own table goes before the one that ships.
    QString table = findPyDat(folders.program);
    if (table.isEmpty() && !folders.shipped.isEmpty()) table = findPyDat(folders.shipped);
    // Drawing settles the board's size, which the scan of a binary book reads.
    const DiagramRenderer renderer(loaded.style, loaded.folder);
    const Style& style = renderer.style();
    const SolveSetting setting{style, style.PyDictionary + readPyDat(table).dictionary,
                               options.stipulation, options.maxTime,
                               QFileInfo(options.input).suffix().toUpper() == QLatin1String("PBM")};

    const ScratchWorkFile scratch(folders.program);
    OpenBook book;
    ScanEnd end = ScanEnd::Complete;
    if (const int status = readBook(options.input, style, scratch, book, end, out); status != 0)
        return status;
    if (signals.stopped()) return kRunFailed;
    SolveRun run(book, setting, options, popeye, scratch, results, earlier, out);
    if (const int status = run.run(signals); status != 0) return status;
    if (end == ScanEnd::WriteFault || end == ScanEnd::GameLimit) {
        out.fail(QStringLiteral("only the first %1 games of the book could be read")
                     .arg(book.gameCount));
        return kRunFailed;
    }
    return 0;
}

} // namespace marlith
