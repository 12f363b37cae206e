// The commands that run without a window: what the arguments ask for, the
// help and version texts, and the progress line of a long run.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace marlith {

enum class CliCommand { Help, Version, Render, Export, Solve };

// Exit statuses: a run that failed, and arguments that can't be run at all.
inline constexpr int kRunFailed = 1;
inline constexpr int kBadArguments = 2;

struct CliOptions {
    CliCommand command = CliCommand::Help;
    QString input;                          // render: the position text; else the book
    QString output;                         // render: the picture; export: the folder; solve:
                                            // the results file (empty: standard output)
    QString format = QStringLiteral("svg"); // export: the pictures' extension
    QString style;                          // empty: the style last used
    int width = 0;                          // pixels; 0: the style's own size
    bool last = false;                      // export: each game's last position
    std::optional<QString> search;          // export: only the games it finds
    int jobs = 1;                           // solve: Popeye runs at a time
    int shardIndex = 1;                     // solve: the shard, I of N
    int shardCount = 1;
    int maxTime = 60;                   // solve: seconds for each problem
    std::optional<QString> stipulation; // solve: one stipulation for all problems
};

inline constexpr int kMaxJobs = 256;
inline constexpr int kMaxSolvingSeconds = 9'999'999;

struct ParsedCommandLine {
    CliOptions options;
    QString error; // one line, empty when the arguments can be run
};

// The first argument names a command (or asks for help or the version)
// rather than a book for the editor to open.
bool isCommand(const QStringList& arguments);

// The arguments behind the program's name.
ParsedCommandLine parseCommandLine(const QStringList& arguments);

QString helpText();
// "marlith 0.1.0"
QString versionText();

// The largest width in pixels that --size takes.
inline constexpr int kMaxPictureWidth = 10000;

// The picture formats a command writes, by a file name's extension.
bool isPictureExtension(const QString& extension);

// The five fields of the Search Criteria window from one text: parts
// separated by ";" outside double quotes, each "Words:", "White:", "Black:",
// "Global:" or "Notations:" and its field's text, in any case; a part with no
// such name is words.
struct CriteriaFields {
    QString words;
    QString whiteMen;
    QString blackMen;
    QString allMen;
    QString notations;
};
CriteriaFields criteriaFields(const QString& text);

// "1234 of 13927, 512/s, 0:25 left": what is done, the rate so far and the
// time the rest takes at that rate.
QString progressText(int64_t done, int64_t total, int64_t elapsedMsecs);

} // namespace marlith
