// The problem solver: its problem file, its command line, the entries of
// the window's boxes, and the stages of a run, read from the file system.
#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <optional>

#include "engines/engine_text.h"

namespace marlith {

// The eleven fields of the Popeye window: 0 stipulation, 1 moves,
// 2 conditions, 3 options, 4 twins, 5 zero position, 6 white, 7 black,
// 8 neutral pieces, 9 a raw command line, 10 the -maxmem value.
using PopeyeParams = std::array<QString, 11>;

// The refusal of a run for missing fields, or "" when it may start.
QString runWarning(const PopeyeParams& popeyeParams);

// The Option line's text and the time limit it gives. "MaxTime 60 " goes in
// front unless the options already hold "maxtime " in some case.
struct OptionText {
    QString text;
    double maxTime = 60;
};
OptionText makeOptionText(const QString& options);

// The lines of the problem file, without line ends.
QStringList problemFileLines(const PopeyeParams& popeyeParams, const QString& protocolPath);
// The same joined, each line ended by CR LF, as written to the file.
QByteArray problemFileText(const PopeyeParams& popeyeParams, const QString& protocolPath);

// The arguments behind the program: "-maxmem" and its value when given, then
// the problem file. Each is one argument, whatever blanks it holds.
QStringList popeyeArguments(const PopeyeParams& popeyeParams, const QString& problemPath);

// Choosing an entry of a box's list: the text before " '" and the mode
// character behind it (">" when there is none) combine with the field.
struct EntryChoice {
    bool none = false; // "NONE": the field and the box are emptied at once
    QString param;
};
EntryChoice entryChoice(const QString& entry, const QString& param);

// A protocol line as rows of the list: up to 50 characters whole, longer
// lines broken at the first blank from column 45, or behind column 44.
QStringList wrapRows(const QString& line);
// Every line of a protocol, wrapped; empty lines give no row.
QStringList protocolRows(const QStringList& lines);

// The countdown: MaxTime less the elapsed seconds, rounded, not below 0.
QString countdownText(double maxTime, int32_t elapsed);

// The work files of a run: the seed and a letter, in the program folder.
QString problemPath(const QString& programFolder, const QString& tempSeed);
QString protocolPath(const QString& programFolder, const QString& tempSeed);

// The stages of one run after the start: 0 waiting for the protocol file,
// 1 reading it, 2 removing it. One step per tick; a step that fails is
// tried again at the next.
class PopeyeRun {
  public:
    // Ended: the program is gone and left no protocol.
    enum class Step { Waiting, Rows, Finished, Ended };

    void begin(const QString& protocolPath, double maxTime);
    // The run is given up (stopped by the user).
    void cancel();
    bool active() const { return active_; }
    int16_t stage() const { return stage_; }
    double maxTime() const { return maxTime_; }
    // A new countdown text when the whole second changes.
    std::optional<QString> clock(double now);
    // `engineRunning`: the protocol is read only once the program is done
    // with it. On Rows, `rows` holds the list's new content.
    Step advance(bool engineRunning, QStringList& rows);

  private:
    bool active_ = false;
    int16_t stage_ = 0;
    double maxTime_ = 60;
    QString protocolPath_;
    RunClock clock_;
};

} // namespace marlith
