#include "cli/commands.h"

#include "books/book_search.h"
#include "books/book_walk.h"
#include "books/scan_job.h"
#include "cli/solve.h"
#include "core/settings.h"
#include "core/startup.h"
#include "output/image_output.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLockFile>
#include <QTime>

namespace marlith {

LoadedStyle loadStyle(const CommandFolders& folders, const QString& name) {
    LoadedStyle loaded;
    QString settings = folders.program + QLatin1String(kSettingsFileName);
    loaded.folder = folders.program;
    // A folder that has never seen the editor reads the shipped styles where they stand.
    if (!QFile::exists(settings) && !folders.shipped.isEmpty() &&
        QFile::exists(folders.shipped + QLatin1String(kSettingsFileName))) {
        settings = folders.shipped + QLatin1String(kSettingsFileName);
        loaded.folder = folders.shipped;
    }
    RecentList recent;
    QString engine;
    resetStyle(loaded.style);
    loaded.style.StyleName.clear();
    const SettingsRead first = readSettings(settings, loaded.folder, loaded.style, recent, engine);
    if (name.isEmpty()) return loaded;
    for (const QString& known : first.styleNames) {
        if (known.toUpper() != name.toUpper()) continue;
        loaded.style.StyleName = known;
        readSettings(settings, loaded.folder, loaded.style, recent, engine);
        return loaded;
    }
    loaded.error = QStringLiteral("unknown style '%1' (the styles: %2)")
                       .arg(name, first.styleNames.join(QStringLiteral(", ")));
    return loaded;
}

std::optional<QString> positionText(const QString& text, const QString& piecesList) {
    const QString board = text.trimmed().section(u' ', 0, 0);
    if (board.isEmpty()) return std::nullopt;
    for (const QChar ch : dropCounterPrefix(board)) {
        const bool digit = ch >= u'1' && ch <= u'9';
        if (!digit && ch != u'/' && !piecesList.contains(ch)) return std::nullopt;
    }
    SquareVector squares{};
    if (!buildBoard(board, squares, Board{}, piecesList, nullptr, nullptr)) return std::nullopt;
    return board;
}

DiagramRenderer::DiagramRenderer(const Style& style, const QString& folder) : style_(style) {
    diagram_.drawBoard(style_, 0, folder);
    invalidatePainted(squares_, Board{style_.BorderHeight, style_.BorderWidth});
}

void DiagramRenderer::setPosition(const QString& boardText) {
    buildBoard(
        boardText, squares_, Board{style_.BorderHeight, style_.BorderWidth}, style_.PiecesList,
        [this](int cell, int oneBasedSquare) {
            diagram_.copyCellToSquare(cell, oneBasedSquare, style_, 0);
        },
        nullptr);
}

bool DiagramRenderer::write(const QString& path, int width) {
    const DiagramPicture picture{
        diagram_.image(), [this](QPainter& painter, bool transparent) {
            const Board board{style_.BorderHeight, style_.BorderWidth};
            diagram_.paint(painter, {style_, squares_, board, 0}, transparent);
        }};
    return writeImageFile(picture, path, PictureSize{width});
}

ScratchWorkFile::ScratchWorkFile(const QString& folder)
    : folder_(folder), seed_(makeTempSeed(QTime::currentTime().msecsSinceStartOfDay())),
      lock_(takeTempSeed(folder, seed_)) {}

ScratchWorkFile::~ScratchWorkFile() {
    if (lock_) deleteTempFiles(folder_, seed_);
}

bool ScratchWorkFile::open(WorkFile& work) const {
    return lock_ && work.open(folder_ + seed_ + QStringLiteral(".tmp"));
}

// The position of a game that a picture shows: its first, or its last.
std::optional<QByteArray> gamePosition(OpenBook& book, int32_t place, bool last) {
    if (!goToGame(book, place)) return std::nullopt;
    char kind = 0;
    while (book.currentRecord.at(1) != kPositionKind)
        if (!nextRecord(book, kind)) return std::nullopt;
    if (last)
        while (nextRecord(book, kind)) {
        }
    return positionOfRecord(book.currentRecord).board;
}

int readBook(const QString& bookFile, const Style& style, const ScratchWorkFile& scratch,
             OpenBook& book, ScanEnd& end, const CommandOutput& out) {
    if (!scratch.open(book.workFile)) {
        out.fail(QStringLiteral("can't write a work file in %1")
                     .arg(QDir::toNativeSeparators(scratch.folder())));
        return kRunFailed;
    }
    const ScanControl control{[&out](int32_t games) {
                                  if (out.progress)
                                      out.progress(
                                          QStringLiteral("Reading the book: %1 games").arg(games));
                              },
                              nullptr};
    BookScan scan = bookScanner(bookFile, style)(book.workFile, control);
    end = scan.end;
    if (const QString refusal = bookScanRefusal(bookFile, scan.end); !refusal.isEmpty()) {
        if (out.endProgress) out.endProgress();
        out.fail(refusal);
        return kRunFailed;
    }
    book.gameCount = scan.gameCount;
    book.recordCount = scan.recordCount;
    book.fullIndex = std::move(scan.gameIndex);
    book.gameIndex = book.fullIndex;
    return 0;
}

namespace {

int renderPosition(const CliOptions& options, const CommandFolders& folders,
                   const CommandOutput& out) {
    const LoadedStyle loaded = loadStyle(folders, options.style);
    if (!loaded.error.isEmpty()) {
        out.fail(loaded.error);
        return kBadArguments;
    }
    const std::optional<QString> board = positionText(options.input, loaded.style.PiecesList);
    if (!board) {
        out.fail(QStringLiteral("not a FEN text of the style %1: '%2'")
                     .arg(loaded.style.StyleName, options.input));
        return kBadArguments;
    }
    DiagramRenderer renderer(loaded.style, loaded.folder);
    renderer.setPosition(*board);
    if (!renderer.write(options.output, options.width)) {
        out.fail(QStringLiteral("can't write %1").arg(QDir::toNativeSeparators(options.output)));
        return kRunFailed;
    }
    return 0;
}

int exportBook(const CliOptions& options, const CommandFolders& folders, const CommandOutput& out) {
    const LoadedStyle loaded = loadStyle(folders, options.style);
    if (!loaded.error.isEmpty()) {
        out.fail(loaded.error);
        return kBadArguments;
    }
    if (const QString refusal = bookFileRefusal(options.input); !refusal.isEmpty()) {
        out.fail(refusal);
        return kRunFailed;
    }
    const QString folder = QDir(options.output).absolutePath();
    if (!QDir().mkpath(folder)) {
        out.fail(QStringLiteral("can't make the folder %1").arg(QDir::toNativeSeparators(folder)));
        return kRunFailed;
    }
    // Drawing sets the board's size, which the scan of a binary book reads.
    DiagramRenderer renderer(loaded.style, loaded.folder);
    const Style& style = renderer.style();

    const ScratchWorkFile scratch(folders.program);
    OpenBook book;
    ScanEnd end = ScanEnd::Complete;
    if (const int status = readBook(options.input, style, scratch, book, end, out); status != 0)
        return status;
    if (options.search) {
        const CriteriaFields fields = criteriaFields(*options.search);
        const Criteria criteria = parseCriteria(fields.words, fields.whiteMen, fields.blackMen,
                                                fields.allMen, fields.notations, style.BorderWidth);
        if (!criteria.isEmpty())
            book.gameIndex = searchBook(book.workFile, book.fullIndex, criteria);
        if (book.gameIndex.empty()) {
            if (out.endProgress) out.endProgress();
            out.fail(QStringLiteral("Game not found!"));
            return kRunFailed;
        }
    }

    const auto total = static_cast<int32_t>(book.gameIndex.size());
    QElapsedTimer clock;
    clock.start();
    for (int32_t place = 1; place <= total; ++place) {
        const std::optional<QByteArray> position = gamePosition(book, place, options.last);
        if (!position) continue; // a game without a position has no diagram
        renderer.setPosition(QString::fromLatin1(*position));
        const int number = parseRecord(book.currentRecord).gameNumber();
        const QString path = folder + u'/' +
                             QStringLiteral("%1").arg(number, 5, 10, QLatin1Char('0')) + u'.' +
                             options.format;
        if (!renderer.write(path, options.width)) {
            if (out.endProgress) out.endProgress();
            out.fail(QStringLiteral("can't write %1").arg(QDir::toNativeSeparators(path)));
            return kRunFailed;
        }
        if (out.progress) out.progress(progressText(place, total, clock.elapsed()));
    }
    if (out.endProgress) out.endProgress();
    if (end == ScanEnd::WriteFault || end == ScanEnd::GameLimit) {
        out.fail(QStringLiteral("only the first %1 games of the book could be read")
                     .arg(book.gameCount));
        return kRunFailed;
    }
    return 0;
}

// The progress line on a terminal: rewritten at most ten times a second,
// and the last state always.
class ProgressLine {
  public:
    explicit ProgressLine(FILE* stream) : stream_(stream) { clock_.start(); }
    void show(const QString& text) {
        last_ = text;
        if (shown_ && clock_.elapsed() - shownAt_ < 100) return;
        put();
    }
    void end() {
        if (last_.isEmpty()) return;
        put();
        std::fputc('\n', stream_);
        std::fflush(stream_);
        last_.clear();
        shown_ = false;
    }

  private:
    void put() {
        // Blanks behind the text wipe a longer one that stood before it.
        const QByteArray line = last_.leftJustified(width_).toLocal8Bit();
        width_ = std::max<qsizetype>(width_, last_.size());
        std::fprintf(stream_, "\r%s", line.constData());
        std::fflush(stream_);
        shown_ = true;
        shownAt_ = clock_.elapsed();
    }
    FILE* stream_;
    QElapsedTimer clock_;
    QString last_;
    qsizetype width_ = 0;
    bool shown_ = false;
    qint64 shownAt_ = 0;
};

} // namespace

int runCommand(const CliOptions& options, const CommandFolders& folders, const CommandOutput& out) {
    switch (options.command) {
    case CliCommand::Help:
        out.print(helpText());
        return 0;
    case CliCommand::Version:
        out.print(versionText() + u'\n');
        return 0;
    case CliCommand::Render:
        return renderPosition(options, folders, out);
    case CliCommand::Export:
        return exportBook(options, folders, out);
    case CliCommand::Solve:
        return solveBook(options, folders, out);
    }
    return kBadArguments;
}

int runCommandLine(const QStringList& arguments, const CommandFolders& folders, FILE* out,
                   FILE* err, bool progressShown) {
    CommandOutput output;
    output.print = [out](const QString& text) {
        std::fputs(text.toLocal8Bit().constData(), out);
        std::fflush(out);
    };
    output.fail = [err](const QString& message) {
        std::fprintf(err, "marlith: %s\n", message.toLocal8Bit().constData());
    };
    ProgressLine line(err);
    if (progressShown) {
        output.progress = [&line](const QString& text) { line.show(text); };
        output.endProgress = [&line] { line.end(); };
    }
    const ParsedCommandLine parsed = parseCommandLine(arguments);
    if (!parsed.error.isEmpty()) {
        output.fail(parsed.error);
        return kBadArguments;
    }
    return runCommand(parsed.options, folders, output);
}

} // namespace marlith
