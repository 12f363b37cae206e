// The work file of an open book: fixed records of 132 characters, one header
// line or one position each, numbered from 1, behind them an end mark.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace marlith {

inline constexpr int kRecordLength = 132;
inline constexpr int kRecordTextLength = 124;
// The game number field has six digits.
inline constexpr int32_t kMaxGameNumber = 999'999;
inline constexpr char kHeaderKind = '[';
inline constexpr char kPositionKind = 'E';

// Behind the last position of a game that was cut, before the move that
// could not be played and a closing brace: a comment of the position record.
inline constexpr char kCutNote[] = " {cut at ";

// A number in six characters: blanks in front, the last six kept.
QByteArray sixCharacters(int64_t number);

// One record: "?", the kind, the game number in six characters, the text
// cut at 124 characters or padded with blanks.
QByteArray makeRecord(char kind, int32_t game, const QByteArray& text);
QByteArray endMark();

// Per game, the number of its first record.
using GameIndex = std::vector<int32_t>;

struct Record {
    char kind = 0;              // '[' header, 'E' position, '?' the end mark
    QByteArray game;            // the six characters of the game number
    QByteArray text;            // without the padding blanks
    int32_t gameNumber() const; // 0 when the field holds no number
};
Record parseRecord(const QByteArray& bytes);

// Record text as shown: UTF-8 where it is, else Windows-1252.
QString recordText(const QByteArray& text);

class BlockWriter;

// Moved to the thread that scans a book and back when the scan is over. Full
// blocks of records go out on a thread of their own while the next fills.
class WorkFile {
  public:
    WorkFile();
    ~WorkFile();
    WorkFile(WorkFile&&) noexcept;
    WorkFile& operator=(WorkFile&&) noexcept;

    // Opens the file for reading and writing, empty.
    bool open(const QString& path);
    void close();
    bool isOpen() const;

    // A new book is written from record 1 on; what lay behind is cut off.
    bool restart();
    // Writing runs from record 1 on; records are buffered until flush().
    // False for anything but a record of kRecordLength bytes.
    bool append(QByteArrayView record);
    // After a failed write the count is what the file holds in whole records,
    // and errorString() tells why.
    bool flush();
    int32_t written() const { return written_; }
    QString errorString() const;
    // Drops the records behind the first `count`, so that writing goes on
    // from record count + 1 (where a book's end mark stood).
    bool truncateTo(int32_t count);

    // Record `number` (from 1); nothing outside the file is read.
    std::optional<QByteArray> read(int32_t number);

  private:
    // Waits for the block on its way; false when it failed.
    bool waitForWriter();
    // Only whole records that reached the file count after a failed write.
    void keepWhatWasWritten(const QString& error);

    std::unique_ptr<QFile> file_;
    std::unique_ptr<BlockWriter> writer_; // started at the first full block
    QByteArray pending_;
    int32_t written_ = 0;
    QString error_;
};

} // namespace marlith
