// Text helpers shared by the two engines: the rows of a result
// file, and the clock shown during a run.
#pragma once

#include "styles/style_block.h" // trimSpaces

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

class QIODevice;

namespace marlith {

// A result file can be large: what is shown of it stops here.
inline constexpr int kMaxResultRows = 100000;
inline constexpr qint64 kMaxResultBytes = 64 * 1024 * 1024;

// The lines of a device, decoded as UTF-8. Any run of CR and LF is one line
// end, so no empty line comes out. With `lastWithoutEnd` the text behind the
// last line end is a line too; otherwise it is dropped.
QStringList readLines(QIODevice& device, bool lastWithoutEnd, int maxLines = kMaxResultRows,
                      qint64 maxBytes = kMaxResultBytes);

// "mm:ss": minutes modulo 100 and seconds, two digits each; negative is 0.
QString clockText(double seconds);

// Seconds as the run's clock: whole seconds since the first reading.
class RunClock {
  public:
    // The text for a new whole second, or nothing while the second lasts.
    // `shown` turns the elapsed seconds into the label's text.
    template <typename Shown> std::optional<QString> tick(double now, Shown shown) {
        if (!start_) start_ = now;
        const double elapsed = now - *start_;
        const int32_t n = elapsed <= 0 ? 0 : elapsed >= 2e9 ? 2000000000 : int32_t(elapsed);
        if (n == lastSecond_) return std::nullopt;
        lastSecond_ = n;
        return shown(n);
    }
    void reset() {
        start_.reset();
        lastSecond_ = 0;
    }
    int32_t lastSecond() const { return lastSecond_; }

  private:
    std::optional<double> start_;
    int32_t lastSecond_ = 0;
};

} // namespace marlith
