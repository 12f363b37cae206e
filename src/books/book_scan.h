// Reading a book once into the work file and the index: one scanner for
// each of the four formats.
#pragma once

#include "books/work_file.h"
#include "position/move_reader.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <atomic>
#include <cstdint>
#include <functional>

namespace marlith {

// How a scan ended.
enum class ScanEnd {
    Complete,
    ReadFault,  // the book could not be read on, or is damaged there
    Stopped,    // the user stopped it
    WriteFault, // the work file took no more records: a full disk
    GameLimit,  // more games than the six digits of the game number can tell
    NotABook,   // bytes no book of its kind holds: a text book with a NUL byte,
                // a binary book whose entries or texts lie outside the file
    NoGame,     // read to its end without one position
};

struct BookScan {
    int32_t gameCount = 0;
    int32_t recordCount = 0;
    GameIndex gameIndex;
    ScanEnd end = ScanEnd::ReadFault; // whatever the end, what was read stays
    QString writeError;               // why the work file refused more
    bool complete() const { return end == ScanEnd::Complete; }
};

// Why a file can't be opened as a book before it is read, or an empty text
// when it can: it must exist, be a regular file (a pipe or a device would
// hold the reading thread) and open for reading. The text names the file.
QString bookFileRefusal(const QString& bookFile);
// Why a scan that ended so opens no book, or an empty text when what was
// read can be shown.
QString bookScanRefusal(const QString& bookFile, ScanEnd end);

// Told the running count of games now and then, for the label of the panel.
using ScanProgress = std::function<void(int32_t games)>;

// What a scan tells and hears while it runs, maybe on a thread of its own.
struct ScanControl {
    ScanProgress progress;
    // Once set, the scan ends at the next line or entry.
    const std::atomic<bool>* stop = nullptr;
};

// The lines of a text file, ended by CR LF, CR or LF, read in blocks.
class LineReader {
  public:
    explicit LineReader(QFile& file) : file_(file) {}
    // The next line without its end, valid until the next call; false at the
    // end of the file or on a read error (error() tells which).
    bool next(QByteArrayView& line);
    bool error() const { return error_; }
    // A NUL byte was read: no text book holds one.
    bool binary() const { return binary_; }

  private:
    bool fill();
    QFile& file_;
    QByteArray buffer_;
    qsizetype pos_ = 0;
    qsizetype end_ = 0; // bytes of the buffer that were read
    bool eof_ = false;
    bool error_ = false;
    bool binary_ = false;
};

// Blanks trimmed at both ends.
QByteArrayView trimBlanks(QByteArrayView line);

// The stipulation of a problem from its flags and number of moves: "#2",
// "h#3", "Max Sh=7", "Sd#12".
QByteArray stipulationText(int flags, int moves);

// The piece letter of a board byte of the binary format, or 0 for a byte
// outside the code; "1" is the empty square.
char pbmPieceLetter(unsigned char byte);

BookScan scanFen(const QString& bookFile, WorkFile& work, const ScanControl& control);
BookScan scanEpd(const QString& bookFile, WorkFile& work, const ScanControl& control);
// The board is written through the square vector in the style's row length.
BookScan scanPbm(const QString& bookFile, WorkFile& work, int rows, int columns,
                 const QString& piecesList, const ScanControl& control);

// What the game scanner needs of the board: set up a position, play one word
// of move text, and tell the position as FEN text. The scanner knows nothing
// of how pieces move.
class PgnBoard {
  public:
    virtual ~PgnBoard() = default;
    // The position's pieces into the wanted slots; fields behind the board are
    // read as the board text reader reads them.
    virtual void setUp(const QByteArray& fen) = 0;
    // side 0 White, 1 Black.
    virtual MovePlay play(QByteArrayView word, int side) = 0;
    // The board field of the position, into out.
    virtual void boardText(QByteArray& out) = 0;
};

// Games with their tags: each half-move played becomes one position record.
// A game whose move can't be played ends at the last position reached: that
// position is written once more, with the move in a cut note behind it.
BookScan scanPgn(const QString& bookFile, WorkFile& work, PgnBoard& board,
                 const QByteArray& startPos, const ScanControl& control);

} // namespace marlith
