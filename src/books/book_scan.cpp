#include "books/book_scan.h"

#include "position/fen.h"

#include <cstring>

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

    int32_t game = 1;

    // False when the record can't be written or no number is left for it:
    // the scan then ends where it stands.
    bool write(char kind, const QByteArray& text) {
        if (work_.written() >= kMaxRecordNumber) return false;
        return work_.append(MakeRecord(kind, game, text));
    }
    void indexNextRecord() {
        if (scan_.gameIndex.size() < kIndexLimit)
            scan_.gameIndex += SixCharacters(static_cast<int64_t>(work_.written()) + 1);
    }
    void dropLastIndexEntry() { scan_.gameIndex.chop(6); }
    void count(int32_t games, int every) {
        if (progress_ && games % every == 0) progress_(games);
    }
    void finish(bool complete) {
        if (complete) work_.append(EndMark());
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
    WorkFile& work_;
    BookScan& scan_;
    const ScanProgress& progress_;
};

bool OpenText(QFile& file, const QString& path) {
    file.setFileName(path);
    return file.open(QIODevice::ReadOnly);
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

QByteArray PrepareLine(const QByteArray& raw) {
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

QByteArray Stipulation(int flags, int moves) {
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

char PbmPieceLetter(unsigned char byte) {
    static constexpr char kCodes[] = " %$#!\"&+,-/.*";
    static constexpr char kLetters[] = "1PNBRQKpnbrqk";
    const void* found = std::memchr(kCodes, byte, 13);
    return found ? kLetters[static_cast<const char*>(found) - kCodes] : 0;
}

BookScan ScanFEN(const QString& bookFile, WorkFile& work, const ScanProgress& progress) {
    BookScan scan;
    scan.gameCount = 1;
    scan.gameIndex = SixCharacters(1);
    ScanSink sink(work, scan, progress);
    // A fault ends the scan: what was read stays, no end mark is written.
    auto fail = [&] {
        sink.finish(false);
        return scan;
    };
    QFile file;
    if (!work.isOpen() || !OpenText(file, bookFile)) return fail();
    LineReader reader(file);
    QByteArray raw;
    bool lastWasPosition = false;
    bool lastWasHeader = false;
    while (reader.next(raw)) {
        const QByteArray line = PrepareLine(raw);
        const char first = line.at(0);
        if (first == ' ' || first == ';' || first == '{' || first == '%' || first == '*') continue;
        if (first == '[') {
            if (lastWasPosition) {
                ++scan.gameCount;
                sink.game = scan.gameCount;
                sink.indexNextRecord();
                sink.count(scan.gameCount, 100);
            }
            if (!sink.write(kHeaderKind, line)) return fail();
            lastWasPosition = false;
            lastWasHeader = true;
        } else {
            if (!sink.write(kPositionKind, line)) return fail();
            lastWasPosition = true;
            lastWasHeader = false;
        }
    }
    if (reader.error()) return fail();
    // Headers at the very end open a game with no position: not counted.
    if (lastWasHeader && scan.gameCount > 1) {
        --scan.gameCount;
        sink.dropLastIndexEntry();
    }
    sink.finish(true);
    return scan;
}

BookScan ScanEPD(const QString& bookFile, WorkFile& work, const ScanProgress& progress) {
    BookScan scan;
    ScanSink sink(work, scan, progress);
    // A fault ends the scan: what was read stays, no end mark is written.
    auto fail = [&] {
        sink.finish(false);
        return scan;
    };
    QFile file;
    if (!work.isOpen() || !OpenText(file, bookFile)) return fail();
    LineReader reader(file);
    QByteArray raw;
    while (reader.next(raw)) {
        const QByteArray line = PrepareLine(raw);
        const char first = line.at(0);
        if (first == ' ' || first == ';' || first == '{' || first == '%') continue;
        ++scan.gameCount;
        sink.game = scan.gameCount;
        sink.indexNextRecord();
        sink.count(scan.gameCount, 100);
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
                if (!sink.write(kHeaderKind, '[' + piece + ']')) return fail();
                from = end + 1;
            }
        }
        if (!sink.write(kPositionKind, line)) return fail();
    }
    sink.finish(!reader.error());
    return scan;
}

BookScan ScanPBM(const QString& bookFile, WorkFile& work, int rows, int columns,
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
    VetArray vet{};
    const Board board{rows, columns};
    for (int32_t n = 1; n <= scan.gameCount; ++n) {
        sink.game = n;
        sink.indexNextRecord();
        sink.count(n, 100);
        QByteArray entry;
        // An entry promised by the count but not in the file ends the scan.
        if (!readExactly(entries, 2 + static_cast<qint64>(n - 1) * kEntrySize, kEntrySize, entry))
            return fail();
        const int flags = static_cast<unsigned char>(entry[2]);
        const int moves = static_cast<unsigned char>(entry[3]);
        if (!sink.write(kHeaderKind, "[Event \"" + Stipulation(flags, moves) + "\"]"))
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
            const char letter = PbmPieceLetter(static_cast<unsigned char>(entry[32 + square]));
            if (!letter) return fail();
            const qsizetype at = piecesList.indexOf(QLatin1Char(letter));
            vet[square][1] = static_cast<int16_t>(at < 0 ? 0 : at + 1);
        }
        if (!sink.write(kPositionKind, VetToFEN(vet, board, piecesList).toLatin1())) return fail();
    }
    sink.finish(true);
    return scan;
}

} // namespace marlith
