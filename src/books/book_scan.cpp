#include "books/book_scan.h"

#include "position/fen.h"

#include <QDir>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace marlith {

namespace {

// What every scanner shares: the records, the game number field, the index
// and the running count.
class ScanSink {
  public:
    ScanSink(WorkFile& work, BookScan& scan, const ScanControl& control)
        : work_(work), scan_(scan), control_(control) {
        work_.restart();
        record_[0] = '?';
    }

    // Game `number` begins with the next record; the running count is told
    // at every `every`th game. False past the last number a record can hold.
    bool startGame(int32_t number, int every) {
        if (number > kMaxGameNumber) {
            failure_ = ScanEnd::GameLimit;
            return false;
        }
        game_ = number;
        scan_.gameIndex.push_back(work_.written() + 1);
        if (control_.progress && number % every == 0) control_.progress(number);
        return true;
    }

    // False when the record can't be written: the scan then ends where it
    // stands. The record is built in one buffer kept for the whole scan.
    bool write(char kind, QByteArrayView text) {
        if (work_.written() >= std::numeric_limits<int32_t>::max() - 1) {
            failure_ = ScanEnd::WriteFault;
            return false;
        }
        if (game_ != fieldGame_) {
            fieldGame_ = game_;
            std::memcpy(record_ + 2, sixCharacters(game_).constData(), 6);
        }
        record_[1] = kind;
        anyPosition_ = anyPosition_ || kind == kPositionKind;
        const qsizetype size = std::min<qsizetype>(text.size(), kRecordTextLength);
        if (size > 0) std::memcpy(record_ + 8, text.data(), static_cast<size_t>(size));
        std::memset(record_ + 8 + size, ' ', static_cast<size_t>(kRecordTextLength - size));
        if (work_.append(QByteArrayView(record_, kRecordLength))) return true;
        failure_ = ScanEnd::WriteFault;
        return false;
    }
    void dropLastIndexEntry() {
        if (!scan_.gameIndex.empty()) scan_.gameIndex.pop_back();
    }
    // Why write() or startGame() refused.
    ScanEnd failure() const { return failure_; }
    bool stopped() const { return control_.stop && control_.stop->load(std::memory_order_relaxed); }

    void finish(ScanEnd end) {
        if (end == ScanEnd::Complete && !anyPosition_) end = ScanEnd::NoGame;
        if (end == ScanEnd::Complete && !work_.append(endMark())) end = ScanEnd::WriteFault;
        if (!work_.flush()) end = ScanEnd::WriteFault;
        scan_.recordCount = end == ScanEnd::Complete ? work_.written() - 1 : work_.written();
        if (end == ScanEnd::WriteFault) scan_.writeError = work_.errorString();
        if (end != ScanEnd::Complete && end != ScanEnd::ReadFault) {
            // A game whose first record never reached the work file is gone.
            GameIndex& index = scan_.gameIndex;
            while (!index.empty() && index.back() > scan_.recordCount)
                index.pop_back();
            scan_.gameCount = static_cast<int32_t>(index.size());
        }
        if (scan_.recordCount <= 0) {
            scan_.recordCount = 0;
            scan_.gameIndex.clear();
        }
        scan_.end = end;
    }

  private:
    WorkFile& work_;
    BookScan& scan_;
    const ScanControl& control_;
    int32_t game_ = 1;
    char record_[kRecordLength];
    int32_t fieldGame_ = -1;
    ScanEnd failure_ = ScanEnd::WriteFault;
    bool anyPosition_ = false;
};

// Opens the book only when it is a regular file. The open itself does not
// wait, so that a pipe put in the book's place holds no thread.
bool openBookFile(QFile& file, const QString& bookFile) {
    const int fd =
        ::open(QFile::encodeName(bookFile).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) ||
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK) != 0 ||
        !file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return false;
    }
    return true;
}

// Hands each line of the book, trimmed, to handle(line), which refuses a
// line only when the sink refused a record.
template <typename Handle>
ScanEnd readTextLines(const QString& bookFile, const WorkFile& work, const ScanSink& sink,
                      Handle handle) {
    QFile file;
    if (!work.isOpen() || !openBookFile(file, bookFile)) return ScanEnd::ReadFault;
    LineReader reader(file);
    QByteArrayView raw;
    while (reader.next(raw)) {
        if (sink.stopped()) return ScanEnd::Stopped;
        if (!handle(trimBlanks(raw))) return sink.failure();
    }
    if (reader.binary()) return ScanEnd::NotABook;
    return reader.error() ? ScanEnd::ReadFault : ScanEnd::Complete;
}

// The first character of a trimmed line; an empty line begins with a blank.
char firstOf(QByteArrayView line) {
    return line.isEmpty() ? ' ' : line.front();
}

constexpr qsizetype kReadBlock = 1 << 18;
// A file without line ends can't take all memory: a line this long is
// handed out in pieces.
constexpr qsizetype kLongestLine = qsizetype(1) << 26;

} // namespace

bool LineReader::fill() {
    if (eof_) return false;
    const qsizetype left = end_ - pos_;
    if (pos_ > 0 && left > 0) std::memmove(buffer_.data(), buffer_.constData() + pos_, left);
    pos_ = 0;
    end_ = left;
    if (buffer_.size() - end_ < kReadBlock)
        buffer_.resize(std::max(end_ + kReadBlock, buffer_.size() * 2));
    // What the system has now, not a whole block: a book that comes through
    // a pipe is read as its text arrives.
    ssize_t got = 0;
    do {
        got = ::read(file_.handle(), buffer_.data() + end_,
                     static_cast<size_t>(buffer_.size() - end_));
    } while (got < 0 && errno == EINTR);
    if (got <= 0) {
        eof_ = true;
        error_ = got < 0;
        return false;
    }
    if (std::memchr(buffer_.constData() + end_, '\0', static_cast<size_t>(got))) {
        eof_ = binary_ = true;
        return false;
    }
    end_ += got;
    return true;
}

bool LineReader::next(QByteArrayView& line) {
    qsizetype searched = 0; // bytes behind pos_ known to hold no line end
    for (;;) {
        const char* data = buffer_.constData();
        bool crAtBlockEnd = false;
        qsizetype i = pos_ + searched;
        for (; i < end_; ++i) {
            const char c = data[i];
            if (c != '\n' && c != '\r') continue;
            if (c == '\r' && i + 1 == end_ && !eof_) {
                crAtBlockEnd = true; // its LF may come with the next block
                break;
            }
            line = QByteArrayView(data + pos_, i - pos_);
            pos_ = i + 1;
            if (c == '\r' && pos_ < end_ && data[pos_] == '\n') ++pos_;
            return true;
        }
        searched = i - pos_;
        if (searched >= kLongestLine) {
            line = QByteArrayView(data + pos_, kLongestLine);
            pos_ += kLongestLine;
            return true;
        }
        if (!fill()) {
            if (crAtBlockEnd) continue; // at the end of the file the CR ends the line alone
            if (pos_ < end_) {
                line = QByteArrayView(buffer_.constData() + pos_, end_ - pos_);
                pos_ = end_;
                return true;
            }
            return false;
        }
    }
}

QByteArrayView trimBlanks(QByteArrayView line) {
    while (!line.isEmpty() && line.front() == ' ')
        line = line.sliced(1);
    while (!line.isEmpty() && line.back() == ' ')
        line.chop(1);
    return line;
}

QByteArray stipulationText(int flags, int moves) {
    int value = flags & 63;
    QByteArray text;
    QByteArray goal = "#";
    if (value >= 32) {
        text = "Max ";
        value -= 32;
    }
    if (value >= 16) {
        goal = "=";
        value -= 16;
    }
    if (value >= 8) {
        text += 'S';
        value -= 8;
    }
    switch (value & 3) {
    case 1:
        text += 'h';
        break;
    case 2:
        text += 's';
        break;
    case 3:
        text += 'r';
        break;
    default:
        if (text.endsWith('S')) text += 'd';
        break;
    }
    return text + goal + QByteArray::number(moves);
}

char pbmPieceLetter(unsigned char byte) {
    static constexpr char kCodes[] = " %$#!\"&+,-/.*";
    static constexpr char kLetters[] = "1PNBRQKpnbrqk";
    const void* found = std::memchr(kCodes, byte, 13);
    return found ? kLetters[static_cast<const char*>(found) - kCodes] : 0;
}

QString bookFileRefusal(const QString& bookFile) {
    const QString shown = QDir::toNativeSeparators(bookFile);
    struct stat info {};
    if (::stat(QFile::encodeName(bookFile).constData(), &info) != 0)
        return errno == ENOENT || errno == ENOTDIR
                   ? QStringLiteral("The book %1 doesn't exist.").arg(shown)
                   : QStringLiteral("The book %1 can't be read.").arg(shown);
    if (!S_ISREG(info.st_mode))
        return QStringLiteral("%1 is no book: a folder, a pipe or a device can't be opened "
                              "as a book.")
            .arg(shown);
    QFile file;
    if (!openBookFile(file, bookFile))
        return QStringLiteral("The book %1 can't be read.").arg(shown);
    return {};
}

QString bookScanRefusal(const QString& bookFile, ScanEnd end) {
    const QString shown = QDir::toNativeSeparators(bookFile);
    switch (end) {
    case ScanEnd::ReadFault:
        return QStringLiteral("The book %1 can't be read.").arg(shown);
    case ScanEnd::NotABook:
        return bookFile.endsWith(QLatin1String(".PBM"), Qt::CaseInsensitive)
                   ? QStringLiteral("The book %1 is damaged: its count, its text pointers "
                                    "or its squares can't be true.")
                         .arg(shown)
                   : QStringLiteral("The book %1 is not a text file.").arg(shown);
    case ScanEnd::NoGame:
        return QStringLiteral("The book %1 holds no game.").arg(shown);
    default:
        return {};
    }
}

BookScan scanFen(const QString& bookFile, WorkFile& work, const ScanControl& control) {
    BookScan scan;
    ScanSink sink(work, scan, control);
    scan.gameCount = 1;
    sink.startGame(1, 100);
    bool lastWasPosition = false;
    bool lastWasHeader = false;
    const ScanEnd end = readTextLines(bookFile, work, sink, [&](QByteArrayView line) {
        const char first = firstOf(line);
        if (first == ' ' || first == ';' || first == '{' || first == '%' || first == '*')
            return true;
        const bool header = first == '[';
        if (header && lastWasPosition && !sink.startGame(++scan.gameCount, 100)) return false;
        lastWasPosition = !header;
        lastWasHeader = header;
        return sink.write(header ? kHeaderKind : kPositionKind, line);
    });
    // Headers at the very end open a game with no position: not counted.
    if (end == ScanEnd::Complete && lastWasHeader && scan.gameCount > 1) {
        --scan.gameCount;
        sink.dropLastIndexEntry();
    }
    sink.finish(end);
    return scan;
}

BookScan scanEpd(const QString& bookFile, WorkFile& work, const ScanControl& control) {
    BookScan scan;
    ScanSink sink(work, scan, control);
    QByteArray line; // kept for the whole scan: no allocation per line
    const ScanEnd end = readTextLines(bookFile, work, sink, [&](QByteArrayView trimmed) {
        const char first = firstOf(trimmed);
        if (first == ' ' || first == ';' || first == '{' || first == '%') return true;
        if (!sink.startGame(++scan.gameCount, 100)) return false;
        // A blank behind the line ends its last operation.
        line.resize(0);
        line.append(trimmed.data(), trimmed.size());
        line.append(' ');
        // The operations stand behind the fourth blank, each closed by ";".
        qsizetype blank = 0;
        int blanks = 0;
        while (blanks < 4 && (blank = line.indexOf(' ', blank + 1)) > 0)
            ++blanks;
        if (blanks == 4) {
            qsizetype from = blank + 1;
            while (from <= line.size()) {
                qsizetype end = line.indexOf(';', from);
                if (end < 0) end = line.size();
                const QByteArray piece = line.mid(from, end - from).trimmed();
                if (piece.isEmpty()) break;
                if (!sink.write(kHeaderKind, '[' + piece + ']')) return false;
                from = end + 1;
            }
        }
        return sink.write(kPositionKind, trimmed);
    });
    sink.finish(end);
    return scan;
}

BookScan scanPbm(const QString& bookFile, WorkFile& work, int rows, int columns,
                 const QString& piecesList, const ScanControl& control) {
    BookScan scan;
    ScanSink sink(work, scan, control);
    // A fault ends the scan: what was read stays, no end mark is written.
    auto fail = [&](ScanEnd end = ScanEnd::ReadFault) {
        sink.finish(end);
        return scan;
    };
    constexpr int kEntrySize = 96;
    // Entries follow the 16-bit count; a text pointer has 24 bits and a text
    // length 16: nothing behind this reach can be named, so the file is read
    // at once as far as it goes.
    constexpr qint64 kReach = 2 + 65'536LL * kEntrySize + (1LL << 24) + 2 + 65'535;
    QFile file;
    if (!work.isOpen() || !openBookFile(file, bookFile)) return fail();
    const qint64 fileSize = file.size();
    const QByteArray book = file.read(std::min(fileSize, kReach));
    if (book.size() != std::min(fileSize, kReach)) return fail();
    // The bytes from `at` on, when the file has them all.
    auto bytesAt = [&book](qint64 at, qint64 size) {
        return at >= 0 && size >= 0 && at + size <= book.size()
                   ? reinterpret_cast<const unsigned char*>(book.constData()) + at
                   : nullptr;
    };
    auto u16 = [](const unsigned char* b) { return b[0] | (b[1] << 8); };
    const unsigned char* count = bytesAt(0, 2);
    // A count or a pointer that the file's size can't hold: no such book.
    const auto damaged = [&] { return fail(ScanEnd::NotABook); };
    if (!count || !bytesAt(2, (u16(count) + 1LL) * kEntrySize)) return damaged();
    scan.gameCount = u16(count) + 1;
    static constexpr const char* kTags[7] = {"White", "Site",  "Result", "ECO",
                                             "Comm1", "Comm2", "Comm3"};
    SquareVector squareVector{};
    const Board board{rows, columns};
    QByteArray tag;
    for (int32_t n = 1; n <= scan.gameCount; ++n) {
        if (sink.stopped()) return fail(ScanEnd::Stopped);
        sink.startGame(n, 100); // the count has 16 bits: far below the last game number
        const unsigned char* entry =
            bytesAt(2 + static_cast<qint64>(n - 1) * kEntrySize, kEntrySize);
        if (!entry) return damaged();
        if (!sink.write(kHeaderKind, "[Event \"" + stipulationText(entry[2], entry[3]) + "\"]"))
            return fail(sink.failure());
        for (int t = 0; t < 7; ++t) {
            const unsigned char* pointer = entry + 4 + t * 4;
            const qint64 offset = u16(pointer) | (static_cast<qint64>(pointer[2]) << 16);
            // Offset 0 is the count, never a text: a damaged entry.
            const unsigned char* length = offset < 2 ? nullptr : bytesAt(offset, 2);
            if (!length) return damaged();
            const int size = u16(length);
            if (size == 0) continue;
            const unsigned char* text = bytesAt(offset + 2, size);
            if (!text) return damaged();
            tag.resize(0);
            tag.append('[').append(kTags[t]).append(" \"");
            tag.append(reinterpret_cast<const char*>(text), size).append("\"]");
            if (!sink.write(kHeaderKind, tag)) return fail(sink.failure());
        }
        for (int square = 0; square < 64; ++square) {
            const char letter = pbmPieceLetter(entry[32 + square]);
            if (!letter) return damaged();
            const qsizetype at = piecesList.indexOf(QLatin1Char(letter));
            squareVector[square].wanted = static_cast<int16_t>(at < 0 ? 0 : at + 1);
        }
        if (!sink.write(kPositionKind, squaresToFen(squareVector, board, piecesList).toLatin1()))
            return fail(sink.failure());
    }
    sink.finish(ScanEnd::Complete);
    return scan;
}

} // namespace marlith

namespace marlith {

namespace {

// The running state of the game scanner between lines.
class PgnScanner {
  public:
    PgnScanner(BookScan& scan, ScanSink& sink, PgnBoard& board, const QByteArray& startPos)
        : scan_(scan), sink_(sink), board_(board), startPos_(startPos), fen_(startPos) {
        word_.reserve(64);
    }

    // False when a record can't be written: the scan ends there.
    bool line(QByteArrayView line) {
        const char first = firstOf(line);
        if (first == ' ' || first == ';' || first == '%' || first == '*') return emptyLine();
        if (first == '[') return tagLine(line);
        return moveText(line);
    }

    // Tags at the very end open a game with no text: not counted.
    void finish() {
        if (last_ == 0 && scan_.gameCount >= 2) {
            --scan_.gameCount;
            sink_.dropLastIndexEntry();
        }
    }

  private:
    bool emptyLine() {
        if (last_ == 2) {
            if (!sink_.write(kPositionKind, fen_)) return false;
            fen_ = startPos_;
        } else {
            side_ = -1;
        }
        last_ = seen_;
        return true;
    }

    bool tagLine(QByteArrayView line) {
        seen_ = 1;
        cut_ = false;
        moveNumber_.clear();
        // Games cost more to read than positions: the count is told more often.
        if (last_ == 1 && !sink_.startGame(++scan_.gameCount, 10)) return false;
        if (line.size() < 4 || qstrnicmp(line.data(), "[FEN", 4) != 0) {
            if (!sink_.write(kHeaderKind, line)) return false;
            if (last_ != 2) last_ = 0;
            return true;
        }
        // The position stands between the first two quotes behind "[FEN"; an
        // unclosed one runs to the end of the line and its blank.
        const QByteArrayView rest = line.sliced(4);
        const qsizetype open = rest.indexOf('"');
        if (open < 0) {
            fen_ = rest.trimmed().toByteArray();
        } else {
            const qsizetype close = rest.indexOf('"', open + 1);
            fen_ = close < 0 ? rest.sliced(open + 1).toByteArray() + ' '
                             : rest.sliced(open + 1, close - open - 1).toByteArray();
        }
        last_ = 2;
        side_ = fen_.toLower().contains(" b") ? 1 : 0;
        setUp(fen_);
        return true;
    }

    bool moveText(QByteArrayView line) {
        last_ = seen_;
        word_.clear();
        for (const char c : line) {
            switch (c) {
            case ' ':
            case '.':
                if (!endWord()) return false;
                break;
            case '(':
            case '{':
                ++depth_;
                break;
            case ')':
            case '}':
                --depth_;
                break;
            default:
                // Comments and variations nest and may span lines.
                if (depth_ < 1) {
                    word_ += c;
                    depth_ = 0;
                }
                break;
            }
        }
        // The line's end ends its last word, even inside a comment.
        return endWord();
    }

    // Move numbers and results begin with a digit from 1 to 9; anything
    // else, the empty word included, is tried as a move.
    bool endWord() {
        const bool numbered = !word_.empty() && word_.front() >= '1' && word_.front() <= '9';
        if (numbered)
            moveNumber_ = word_;      // for the note of a cut game
        else if (!cut_ && !tryMove()) // a cut game plays no more moves
            return false;
        word_.clear();
        return true;
    }

    bool tryMove() {
        if (side_ < 0) {
            // A game with no setup starts from the start position.
            if (!sink_.write(kPositionKind, startPos_)) return false;
            side_ = 0;
            fen_ = startPos_;
            setUp(fen_);
        }
        if (word_.empty()) return true;
        switch (board_.play(QByteArrayView(word_.data(), static_cast<qsizetype>(word_.size())),
                            side_)) {
        case MovePlay::NotAMove:
            return true;
        case MovePlay::NoSource:
            return cutGame();
        case MovePlay::Played:
            break;
        }
        played_ = true;
        board_.boardText(position_);
        position_ += side_ != 0 ? " w - - 0 0" : " b - - 0 0";
        side_ = 1 - side_;
        return sink_.write(kPositionKind, position_);
    }

    void setUp(const QByteArray& fen) {
        board_.setUp(fen);
        setUpText_ = fen;
        played_ = false;
    }

    // The game ends at the last position it reached, which is written once
    // more with a note of the move; the rest of the game is passed over.
    bool cutGame() {
        cut_ = true;
        QByteArray note = played_ ? position_ : setUpText_;
        note += kCutNote;
        note.append(moveNumber_.data(), static_cast<qsizetype>(moveNumber_.size()));
        if (!moveNumber_.empty()) note += side_ == 0 ? "." : "...";
        note.append(word_.data(), static_cast<qsizetype>(word_.size())).append('}');
        return sink_.write(kPositionKind, note);
    }

    BookScan& scan_;
    ScanSink& sink_;
    PgnBoard& board_;
    const QByteArray& startPos_;
    QByteArray fen_;
    std::string word_;
    QByteArray position_;
    QByteArray setUpText_;   // the position of the last setup
    std::string moveNumber_; // the last move number read
    bool played_ = false;    // position_ holds a move played since the setup
    bool cut_ = false;
    int side_ = -1;
    int seen_ = 0;
    int last_ = 0;
    int depth_ = 0;
};

} // namespace

BookScan scanPgn(const QString& bookFile, WorkFile& work, PgnBoard& board,
                 const QByteArray& startPos, const ScanControl& control) {
    BookScan scan;
    ScanSink sink(work, scan, control);
    scan.gameCount = 1;
    sink.startGame(1, 10);
    PgnScanner scanner(scan, sink, board, startPos);
    const ScanEnd end = readTextLines(
        bookFile, work, sink, [&scanner](QByteArrayView line) { return scanner.line(line); });
    if (end == ScanEnd::Complete) scanner.finish();
    sink.finish(end);
    return scan;
}

} // namespace marlith
