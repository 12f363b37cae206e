// The problem solver: its problem file, its command line, the entries of
// the window's boxes, and the stages of a run, read from the file system.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <deque>
#include <optional>

#include "engines/engine_text.h"
#include "engines/popeye_fields.h"

namespace marlith {

// The refusal of a run for missing fields, or "" when it may start.
QString runWarning(const PopeyeFields& fields);

// A stipulation typed with its number ("#2", "h#3", "ser-h#5", "h#2.5")
// gives the number to the moves, which must then be empty or say the same.
struct StipulationFields {
    QString stipulation;
    QString moves;
    // The refusal when the two numbers differ, or "".
    QString warning;
};
StipulationFields splitStipulation(const QString& stipulation, const QString& moves);

// The stipulation of a game's header lines ("[Stipulation "#2"]", the tag
// in any case), if one is there.
std::optional<QString> stipulationTag(const QStringList& headers);

// The Option line's text and the time limit it gives. "MaxTime 60 " goes in
// front unless the options already hold "maxtime " in some case.
struct OptionText {
    QString text;
    double maxTime = 60;
};
OptionText makeOptionText(const QString& options);

// The lines of the problem file, without line ends.
QStringList problemFileLines(const PopeyeFields& fields, const QString& protocolPath);
// The same joined, each line ended by CR LF, as written to the file.
QByteArray problemFileText(const PopeyeFields& fields, const QString& protocolPath);

// The arguments behind the program: "-maxmem" and its value when given, then
// the problem file. Each is one argument, whatever blanks it holds.
QStringList popeyeArguments(const PopeyeFields& fields, const QString& problemPath);

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

// The countdown to the time limit: "limit mm:ss", MaxTime less the elapsed
// seconds, rounded, not below 0.
QString countdownText(double maxTime, int32_t elapsed);

// The protocol as the solver writes it: parts of text come in, whole lines
// leave as wrapped rows. Only the last `maxRows` rows are kept, so that a
// solver that writes without end costs a bounded amount of memory; lines
// that could never be among them are skipped without being decoded.
inline constexpr int kMaxShownRows = 10000;
class ProtocolTail {
  public:
    explicit ProtocolTail(int maxRows = kMaxShownRows) : maxRows_(maxRows) {}

    void feed(QByteArrayView bytes);
    // The text behind the last line end is a line too.
    void finish();
    // Text was left out unread; what stands before the next line end is the
    // end of a line that is not shown.
    void skip();

    // What the list of `shown` rows takes: drop `dropped` rows from its
    // front, then add `added` behind. `cut` once rows have been left out.
    struct Change {
        qsizetype dropped = 0;
        QStringList added;
        bool cut = false;
    };
    Change take(qsizetype shown);
    bool hasNewRows() const { return !added_.empty(); }

  private:
    void endLine();

    int maxRows_;
    QByteArray pending_;
    bool midLine_ = false; // after a skip, until the next line end
    bool cut_ = false;
    std::deque<QString> added_;
};

// The work files of a run: the seed and a letter, in the program folder.
QString problemPath(const QString& programFolder, const QString& tempSeed);
QString protocolPath(const QString& programFolder, const QString& tempSeed);

// The stages of one run after the start: 0 waiting for the protocol file,
// 1 reading it as it grows, 2 removing it once the solver has ended. One
// step per tick; a step that fails is tried again at the next.
class PopeyeRun {
  public:
    // Rows: new rows wait in take(). Ended: the program is gone and left
    // no protocol.
    enum class Step { Waiting, Rows, Finished, Ended };

    void begin(const QString& protocolPath, double maxTime);
    // The run is given up (stopped by the user).
    void cancel();
    bool active() const { return active_; }
    int16_t stage() const { return stage_; }
    double maxTime() const { return maxTime_; }
    // A new countdown text when the whole second changes.
    std::optional<QString> clock(double now);
    // What the protocol holds beyond what was read goes to the rows; once
    // the program has ended (`engineRunning` false) all of it, and the file
    // then goes.
    Step advance(bool engineRunning);
    // The new rows, for a list that shows `shown` of them.
    ProtocolTail::Change take(qsizetype shown) { return tail_.take(shown); }

  private:
    // Reads up to `limit` new bytes; false when the file can't be read.
    bool readMore(qint64 limit);

    bool active_ = false;
    int16_t stage_ = 0;
    double maxTime_ = 60;
    QString protocolPath_;
    qint64 offset_ = 0;
    ProtocolTail tail_;
    RunClock clock_;
};

} // namespace marlith
