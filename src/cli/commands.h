// Running a command without a window: the style read as the editor reads it,
// the diagram drawn as the editor draws it, one picture per position.
#pragma once

#include "books/book_scan.h"
#include "books/book_walk.h"
#include "cli/command_line.h"
#include "drawing/diagram.h"
#include "styles/style.h"

#include <QString>
#include <cstdio>
#include <functional>
#include <memory>

class QLockFile;

namespace marlith {

// Where a command finds the settings: the program folder, and the shipped
// files for a folder that has no settings file yet (a command never installs
// them: it writes no settings).
struct CommandFolders {
    QString program;
    QString shipped;
};

// The style named in the settings, or the one last used for an empty name;
// `folder` is where its bitmaps are found. `error` tells why there is none.
struct LoadedStyle {
    Style style;
    QString folder;
    QString error;
};
LoadedStyle loadStyle(const CommandFolders& folders, const QString& name);

// The text that the position box would take: its board field, the fields
// behind the first blank left out. None when a character is neither a digit,
// "/" nor a letter of the style, or the squares run past the largest board.
std::optional<QString> positionText(const QString& text, const QString& piecesList);

// One diagram of a style, redrawn for each position: only the squares that
// change are painted again.
class DiagramRenderer {
  public:
    DiagramRenderer(const Style& style, const QString& folder);
    void setPosition(const QString& boardText);
    // The picture in the format of the name's extension, `width` pixels wide
    // (0: the style's size).
    bool write(const QString& path, int width);
    const Style& style() const { return style_; }

  private:
    Style style_;
    Diagram diagram_;
    SquareVector squares_{};
};

// What a command tells: messages of one line, and a progress line that is
// rewritten in place (no progress line when it is empty).
struct CommandOutput {
    std::function<void(const QString&)> print;
    std::function<void(const QString&)> fail;
    std::function<void(const QString&)> progress;
    std::function<void()> endProgress;
};

// The work file of a scan, and any other temporary file of the command,
// under a temporary seed of this run that no running editor holds: all of
// them go at the end.
class ScratchWorkFile {
  public:
    explicit ScratchWorkFile(const QString& folder);
    ~ScratchWorkFile();
    ScratchWorkFile(const ScratchWorkFile&) = delete;
    ScratchWorkFile& operator=(const ScratchWorkFile&) = delete;
    bool open(WorkFile& work) const;
    bool held() const { return lock_ != nullptr; }
    const QString& folder() const { return folder_; }
    const QString& seed() const { return seed_; }

  private:
    QString folder_;
    QString seed_;
    std::unique_ptr<QLockFile> lock_;
};

// The book scanned into the scratch work file; 0, or the status of a run
// that failed, its message told.
int readBook(const QString& bookFile, const Style& style, const ScratchWorkFile& scratch,
             OpenBook& book, ScanEnd& end, const CommandOutput& out);

// The position of a game that a picture shows: its first, or its last.
std::optional<QByteArray> gamePosition(OpenBook& book, int32_t place, bool last);

// The command's run; the status for the shell.
int runCommand(const CliOptions& options, const CommandFolders& folders, const CommandOutput& out);

// From the arguments behind the program's name to the status: help, version,
// a one-line message for arguments that can't be run, or the run. The
// progress line goes to `err` only when `progressShown`.
int runCommandLine(const QStringList& arguments, const CommandFolders& folders, FILE* out,
                   FILE* err, bool progressShown);

} // namespace marlith
