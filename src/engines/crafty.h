// The chess engine: its start-up command file, the number of its log, the
// rows of the log, and the stages of a run, read from the file system.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <optional>

#include "engines/engine_text.h"

namespace marlith {

inline constexpr const char* kCraftyRc = "Crafty.rc";

// The command file: set up the position for the side to move, analyse to
// the depth and end. Depth and position go out as typed.
QByteArray craftyRcText(const QString& depth, const QString& fen, bool whiteToMove);

// "KQkq" or what of it the board allows: each king and rook on their home
// squares of an 8 by 8 board; "-" for none.
QString castlingField(const QString& board);

// The extension of the first free "log.NNN", NNN from 001 to 999; "000" when
// all are taken.
QString firstFreeLogExtension(const QString& folder);

// The engine numbers its own logs and starts a new one at "log on": the log
// of a run is the newest non-empty "log.NNN" at or above `from`, or "" when
// there is none yet.
QString runLogExtension(const QString& folder, const QString& from);

// The rows of a log: any run of CR and LF ends a row; what follows the last
// line end is not a row.
QStringList logRows(const QByteArray& data);

// A style's piece letters in the FEN text become the English ones; a letter
// beyond the English notation is dropped, a fairy piece leaves its square
// empty, anything else stays.
QString craftyFen(const QString& text, const QString& piecesList, const QString& englishNotation);

// "mm:ss" of the elapsed seconds.
QString elapsedText(int32_t elapsed);

// The stages of one run: 0 start the engine once the command file is there,
// 1 wait for the log, 2 read it, 3 remove it, 4 remove the game file and the
// command file. One step per tick; a step that fails is tried again at the next.
class CraftyRun {
  public:
    // Ended: the engine is gone and left no log of the run.
    enum class Step { Waiting, Rows, Finished, Ended };

    void begin(const QString& folder, const QString& logExtension);
    // The run is over or given up (stopped by the user); the command file goes.
    void cancel();
    bool active() const { return active_; }
    int16_t stage() const { return stage_; }
    // The extension of the log being waited for or read.
    QString logExtension() const { return logExtension_; }
    std::optional<QString> clock(double now);
    // `start` starts the engine and says whether it did.
    Step advance(bool engineRunning, const std::function<bool()>& start, QStringList& rows);

  private:
    bool active_ = false;
    int16_t stage_ = 0;
    QString folder_;
    QString firstExtension_;
    QString logExtension_;
    RunClock clock_;
};

} // namespace marlith
