#include "books/book_scan.h"

#include "position/fen.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace marlith {

namespace {

// What every scanner shares: the records, the game number field, the index
// and the running count.
class ScanSink {
  public:
    ScanSink(WorkFile& work, BookScan& scan, const ScanProgress& progress)
        : work_(work), scan_(scan), progress_(progress) {
        work_.restart();
    }

    // Game `number` begins with the next record; the running count is told
    // at every `every`th game.
    void startGame(int32_t number, int every) {
        game_ = number;
        indexNextRecord();
        if (progress_ && number % every == 0) progress_(number);
    }

    // False when the record can't be written: the scan then ends where it
    // stands. The record is built in one buffer kept for the whole scan.
    bool write(char kind, const QByteArray& text) {
        if (work_.written() >= std::numeric_limits<int32_t>::max() - 1) return false;
        if (game_ != fieldGame_) {
            fieldGame_ = game_;
            field_ = sixCharacters(game_);
        }
        char* record = record_.data();
        record[0] = '?';
        record[1] = kind;
        std::memcpy(record + 2, field_.constData(), 6);
        const qsizetype size = std::min<qsizetype>(text.size(), kRecordTextLength);
        std::memcpy(record + 8, text.constData(), static_cast<size_t>(size));
        std::memset(record + 8 + size, ' ', static_cast<size_t>(kRecordTextLength - size));
        return work_.append(record_);
    }
    void dropLastIndexEntry() { scan_.gameIndex.chop(6); }
    void finish(bool complete) {
        if (complete) work_.append(endMark());
        work_.flush();
        scan_.recordCount = complete ? work_.written() - 1 : work_.written();
        if (scan_.recordCount <= 0) {
            scan_.recordCount = 0;
            scan_.gameIndex.clear();
        }
        scan_.fullIndex = scan_.gameIndex;
        scan_.complete = complete;
    }

  private:
    // A record number of more than six digits can't stand in the index: that
    // game is counted but can't be reached, as those behind the index limit.
    void indexNextRecord() {
        if (scan_.gameIndex.size() < kIndexLimit && work_.written() < kMaxRecordNumber)
            scan_.gameIndex += sixCharacters(static_cast<int64_t>(work_.written()) + 1);
    }

    WorkFile& work_;
    BookScan& scan_;
    const ScanProgress& progress_;
    int32_t game_ = 1;
    QByteArray record_ = QByteArray(kRecordLength, ' ');
    QByteArray field_;
    int32_t fieldGame_ = -1;
};

// Hands each line of the book, prepared, to handle(line). False when the
// book can't be read to its end or handle refuses a line: a fault.
template <typename Handle>
bool readTextLines(const QString& bookFile, const WorkFile& work, Handle handle) {
    QFile file(bookFile);
    if (!work.isOpen() || !file.open(QIODevice::ReadOnly)) return false;
    LineReader reader(file);
    QByteArray raw;
    while (reader.next(raw))
        if (!handle(prepareLine(raw))) return false;
    return !reader.error();
}

} // namespace

bool LineReader::fill() {
    if (eof_) return false;
    buffer_.remove(0, pos_);
    pos_ = 0;
    const QByteArray block = file_.read(1 << 16);
    if (block.isEmpty()) {
        eof_ = true;
        error_ = file_.error() != QFileDevice::NoError;
        return false;
    }
    buffer_ += block;
    return true;
}

bool LineReader::next(QByteArray& line) {
    qsizetype searched = 0; // bytes behind pos_ known to hold no line end
    for (;;) {
        const char* data = buffer_.constData();
        const qsizetype size = buffer_.size();
        bool crAtBlockEnd = false;
        qsizetype i = pos_ + searched;
        for (; i < size; ++i) {
            const char c = data[i];
            if (c != '\n' && c != '\r') continue;
            if (c == '\r' && i + 1 == size && !eof_) {
                crAtBlockEnd = true; // its LF may come with the next block
                break;
            }
            line = buffer_.mid(pos_, i - pos_);
            pos_ = i + 1;
            if (c == '\r' && pos_ < size && data[pos_] == '\n') ++pos_;
            return true;
        }
        searched = i - pos_;
        if (!fill()) {
            if (crAtBlockEnd) continue; // at the end of the file the CR ends the line alone
            if (pos_ < buffer_.size()) {
                line = buffer_.mid(pos_);
                pos_ = buffer_.size();
                return true;
            }
            return false;
        }
    }
}

QByteArray prepareLine(const QByteArray& raw) {
    qsizetype from = 0;
    qsizetype to = raw.size();
    while (from < to && raw.at(from) == ' ')
        ++from;
    while (to > from && raw.at(to - 1) == ' ')
        --to;
    QByteArray line = raw.mid(from, to - from);
    line += ' ';
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

BookScan scanFen(const QString& bookFile, WorkFile& work, const ScanProgress& progress) {
    BookScan scan;
    scan.gameCount = 1;
    scan.gameIndex = sixCharacters(1);
    ScanSink sink(work, scan, progress);
    bool lastWasPosition = false;
    bool lastWasHeader = false;
    const bool complete = readTextLines(bookFile, work, [&](const QByteArray& line) {
        const char first = line.at(0);
        if (first == ' ' || first == ';' || first == '{' || first == '%' || first == '*')
            return true;
        const bool header = first == '[';
        if (header && lastWasPosition) sink.startGame(++scan.gameCount, 100);
        lastWasPosition = !header;
        lastWasHeader = header;
        return sink.write(header ? kHeaderKind : kPositionKind, line);
    });
    // Headers at the very end open a game with no position: not counted.
    if (complete && lastWasHeader && scan.gameCount > 1) {
        --scan.gameCount;
        sink.dropLastIndexEntry();
    }
    // A fault keeps what was read, with no end mark.
    sink.finish(complete);
    return scan;
}

BookScan scanEpd(const QString& bookFile, WorkFile& work, const ScanProgress& progress) {
    BookScan scan;
    ScanSink sink(work, scan, progress);
    const bool complete = readTextLines(bookFile, work, [&](const QByteArray& line) {
        const char first = line.at(0);
        if (first == ' ' || first == ';' || first == '{' || first == '%') return true;
        sink.startGame(++scan.gameCount, 100);
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
        return sink.write(kPositionKind, line);
    });
    sink.finish(complete);
    return scan;
}

BookScan scanPbm(const QString& bookFile, WorkFile& work, int rows, int columns,
                 const QString& piecesList, const ScanProgress& progress) {
    BookScan scan;
    ScanSink sink(work, scan, progress);
    // A fault ends the scan: what was read stays, no end mark is written.
    auto fail = [&] {
        sink.finish(false);
        return scan;
    };
    QFile entries(bookFile);
    QFile texts(bookFile);
    if (!work.isOpen() || !entries.open(QIODevice::ReadOnly) || !texts.open(QIODevice::ReadOnly))
        return fail();
    const qint64 fileSize = entries.size();
    auto readExactly = [](QFile& file, qint64 at, qint64 size, QByteArray& out) {
        if (at < 0 || size < 0 || at + size > file.size() || !file.seek(at)) return false;
        out = file.read(size);
        return out.size() == size;
    };
    auto u16 = [](const QByteArray& b, int at) {
        return static_cast<int>(static_cast<unsigned char>(b[at])) |
               (static_cast<int>(static_cast<unsigned char>(b[at + 1])) << 8);
    };
    QByteArray bytes;
    if (!readExactly(entries, 0, 2, bytes)) return fail();
    scan.gameCount = u16(bytes, 0) + 1;
    static constexpr const char* kTags[7] = {"White", "Site",  "Result", "ECO",
                                             "Comm1", "Comm2", "Comm3"};
    constexpr int kEntrySize = 96;
    SquareVector squareVector{};
    const Board board{rows, columns};
    for (int32_t n = 1; n <= scan.gameCount; ++n) {
        sink.startGame(n, 100);
        QByteArray entry;
        // An entry promised by the count but not in the file ends the scan.
        if (!readExactly(entries, 2 + static_cast<qint64>(n - 1) * kEntrySize, kEntrySize, entry))
            return fail();
        const int flags = static_cast<unsigned char>(entry[2]);
        const int moves = static_cast<unsigned char>(entry[3]);
        if (!sink.write(kHeaderKind, "[Event \"" + stipulationText(flags, moves) + "\"]"))
            return fail();
        for (int t = 0; t < 7; ++t) {
            const int base = 4 + t * 4;
            const qint64 offset =
                static_cast<qint64>(u16(entry, base)) |
                (static_cast<qint64>(static_cast<unsigned char>(entry[base + 2])) << 16);
            QByteArray length;
            // Offset 0 is the count, never a text: a damaged entry.
            if (offset < 2 || offset >= fileSize || !readExactly(texts, offset, 2, length))
                return fail();
            const int size = u16(length, 0);
            if (size == 0) continue;
            QByteArray text;
            if (!readExactly(texts, offset + 2, size, text)) return fail();
            const QByteArray tag = QByteArray("[") + kTags[t] + " \"" + text + "\"]";
            if (!sink.write(kHeaderKind, tag)) return fail();
        }
        for (int square = 0; square < 64; ++square) {
            const char letter = pbmPieceLetter(static_cast<unsigned char>(entry[32 + square]));
            if (!letter) return fail();
            const qsizetype at = piecesList.indexOf(QLatin1Char(letter));
            squareVector[square][1] = static_cast<int16_t>(at < 0 ? 0 : at + 1);
        }
        if (!sink.write(kPositionKind, squaresToFen(squareVector, board, piecesList).toLatin1()))
            return fail();
    }
    sink.finish(true);
    return scan;
}

} // namespace marlith

namespace marlith {

namespace {

// The running state of the game scanner between lines.
class PgnScanner {
  public:
    PgnScanner(BookScan& scan, ScanSink& sink, PgnBoard& board, const QByteArray& startPos)
        : scan_(scan), sink_(sink), board_(board), startPos_(startPos), fen_(startPos) {}

    // False when a record can't be written: the scan ends there.
    bool line(const QByteArray& line) {
        const char first = line.at(0);
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

    bool tagLine(const QByteArray& line) {
        seen_ = 1;
        // Games cost more to read than positions: the count is told more often.
        if (last_ == 1) sink_.startGame(++scan_.gameCount, 10);
        if (line.size() < 4 || qstrnicmp(line.constData(), "[FEN", 4) != 0) {
            if (!sink_.write(kHeaderKind, line)) return false;
            if (last_ != 2) last_ = 0;
            return true;
        }
        // The position stands between the first two quotes behind "[FEN".
        const QByteArray rest = line.mid(4);
        const qsizetype open = rest.indexOf('"');
        if (open < 0) {
            fen_ = rest.trimmed();
        } else {
            const qsizetype close = rest.indexOf('"', open + 1);
            fen_ = close < 0 ? rest.mid(open + 1) : rest.mid(open + 1, close - open - 1);
        }
        last_ = 2;
        side_ = fen_.toLower().contains(" b") ? 1 : 0;
        board_.setUp(fen_);
        return true;
    }

    bool moveText(const QByteArray& line) {
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
        return true;
    }

    // Move numbers and results begin with a digit from 1 to 9; anything
    // else, the empty word included, is tried as a move.
    bool endWord() {
        const bool numbered = !word_.isEmpty() && word_.at(0) >= '1' && word_.at(0) <= '9';
        if (!numbered && !tryMove()) return false;
        word_.clear();
        return true;
    }

    bool tryMove() {
        if (side_ < 0) {
            // A game with no setup starts from the start position.
            if (!sink_.write(kPositionKind, startPos_)) return false;
            side_ = 0;
            fen_ = startPos_;
            board_.setUp(fen_);
        }
        if (word_.isEmpty() || !board_.play(word_, side_)) return true;
        board_.boardText(position_);
        position_ += side_ != 0 ? " w - - 0 0" : " b - - 0 0";
        side_ = 1 - side_;
        return sink_.write(kPositionKind, position_);
    }

    BookScan& scan_;
    ScanSink& sink_;
    PgnBoard& board_;
    const QByteArray& startPos_;
    QByteArray fen_;
    QByteArray word_;
    QByteArray position_;
    int side_ = -1;
    int seen_ = 0;
    int last_ = 0;
    int depth_ = 0;
};

} // namespace

BookScan scanPgn(const QString& bookFile, WorkFile& work, PgnBoard& board,
                 const QByteArray& startPos, const ScanProgress& progress) {
    BookScan scan;
    scan.gameCount = 1;
    scan.gameIndex = sixCharacters(1);
    ScanSink sink(work, scan, progress);
    PgnScanner scanner(scan, sink, board, startPos);
    const bool complete = readTextLines(
        bookFile, work, [&scanner](const QByteArray& line) { return scanner.line(line); });
    if (complete) scanner.finish();
    sink.finish(complete);
    return scan;
}

} // namespace marlith
