#include "books/work_file.h"

#include "books/new_file.h"

#include "styles/style_block.h"

#include <algorithm>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <thread>
#include <utility>

namespace marlith {

QByteArray sixCharacters(int64_t number) {
    const QByteArray digits = QByteArray::number(static_cast<qlonglong>(number));
    return (QByteArray(6, ' ') + digits).right(6);
}

QByteArray makeRecord(char kind, int32_t game, const QByteArray& text) {
    QByteArray record;
    record.reserve(kRecordLength);
    record += '?';
    record += kind;
    record += sixCharacters(game);
    record += text.left(kRecordTextLength);
    record.append(kRecordLength - record.size(), ' ');
    return record;
}

QByteArray endMark() {
    return QByteArray(kRecordLength, '?');
}

int32_t Record::gameNumber() const {
    bool ok = false;
    const int32_t number = game.trimmed().toInt(&ok);
    return ok ? number : 0;
}

Record parseRecord(const QByteArray& bytes) {
    Record record;
    if (bytes.size() < 8) return record;
    record.kind = bytes.at(1);
    record.game = bytes.mid(2, 6);
    QByteArray text = bytes.mid(8);
    while (!text.isEmpty() && text.back() == ' ')
        text.chop(1);
    record.text = text;
    return record;
}

QString recordText(const QByteArray& text) {
    // UTF-8 where it is valid; books from older systems are in Windows-1252.
    return decodeStyleText(text);
}

namespace {

// Records go out in blocks: a scan writes millions.
constexpr qsizetype kBlockSize = 1 << 20;

// All of the bytes at `at`; a short write is tried again: it goes on, or
// tells why it can't.
bool writeAll(QFile& file, qint64 at, const QByteArray& bytes) {
    bool ok = file.seek(at);
    for (qint64 done = 0; ok && done < bytes.size();) {
        const qint64 wrote = file.write(bytes.constData() + done, bytes.size() - done);
        ok = wrote > 0;
        done += std::max<qint64>(wrote, 0);
    }
    return ok;
}

} // namespace

// One block at a time on its way to the file. Whoever hands a block over
// touches the file only after wait(), so the file is never used by two
// threads at once.
class BlockWriter {
  public:
    explicit BlockWriter(QFile& file) : file_(file), thread_([this] { run(); }) {}
    ~BlockWriter() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            quit_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

    // Takes the block, leaving the caller an empty buffer with room.
    void write(QByteArray& block, qint64 at) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            block_.swap(block);
            at_ = at;
            busy_ = true;
        }
        changed_.notify_all();
        block.resize(0);
    }
    // False, with the reason, when the last block failed.
    bool wait(QString& error) {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return !busy_; });
        if (error_.isEmpty()) return true;
        error = std::exchange(error_, QString());
        return false;
    }

  private:
    void run() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return busy_ || quit_; });
            if (!busy_) return;
            lock.unlock();
            const bool ok = writeAll(file_, at_, block_);
            lock.lock();
            if (!ok) error_ = file_.errorString();
            busy_ = false;
            changed_.notify_all();
        }
    }

    QFile& file_;
    std::mutex mutex_;
    std::condition_variable changed_;
    QByteArray block_;
    qint64 at_ = 0;
    bool busy_ = false;
    bool quit_ = false;
    QString error_;
    std::thread thread_; // last: it starts once the rest is there
};

WorkFile::WorkFile() : file_(std::make_unique<QFile>()) {}
WorkFile::~WorkFile() {
    if (file_) close();
}
WorkFile::WorkFile(WorkFile&&) noexcept = default;
WorkFile& WorkFile::operator=(WorkFile&& other) noexcept {
    if (this != &other) {
        if (file_) close();
        file_ = std::move(other.file_);
        writer_ = std::move(other.writer_);
        pending_ = std::move(other.pending_);
        written_ = other.written_;
        error_ = std::move(other.error_);
        other.file_ = std::make_unique<QFile>();
        other.written_ = 0;
    }
    return *this;
}

bool WorkFile::isOpen() const {
    return file_ && file_->isOpen();
}

QString WorkFile::errorString() const {
    return error_;
}

bool WorkFile::open(const QString& path) {
    close();
    file_->setFileName(path);
    written_ = 0;
    error_.clear();
    pending_.clear();
    pending_.reserve(kBlockSize + kRecordLength);
    const int fd = createNewFile(path);
    if (fd < 0) return false;
    if (file_->open(fd, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle)) return true;
    ::close(fd);
    return false;
}

bool WorkFile::restart() {
    waitForWriter();
    pending_.resize(0);
    written_ = 0;
    error_.clear();
    return isOpen() && file_->resize(0);
}

void WorkFile::close() {
    if (isOpen()) {
        flush();
        writer_.reset();
        file_->close();
    }
}

bool WorkFile::append(QByteArrayView record) {
    if (!isOpen() || record.size() != kRecordLength) return false;
    pending_.append(record.data(), kRecordLength);
    ++written_;
    if (pending_.size() < kBlockSize) return true;
    if (!waitForWriter()) return false;
    if (!writer_) writer_ = std::make_unique<BlockWriter>(*file_);
    const qint64 at = static_cast<qint64>(written_) * kRecordLength - pending_.size();
    writer_->write(pending_, at);
    return true;
}

bool WorkFile::waitForWriter() {
    QString error;
    if (!writer_ || writer_->wait(error)) return true;
    keepWhatWasWritten(error);
    return false;
}

void WorkFile::keepWhatWasWritten(const QString& error) {
    error_ = error;
    pending_.resize(0);
    // A full disk may have taken part of a block: nothing is written behind
    // the last whole record.
    written_ = static_cast<int32_t>(
        std::min<qint64>(file_->size() / kRecordLength, std::numeric_limits<int32_t>::max()));
    file_->resize(static_cast<qint64>(written_) * kRecordLength);
    file_->unsetError();
}

bool WorkFile::flush() {
    if (!waitForWriter()) return false;
    if (pending_.isEmpty()) return true;
    const qint64 at = static_cast<qint64>(written_) * kRecordLength - pending_.size();
    const bool ok = writeAll(*file_, at, pending_);
    pending_.resize(0); // keeps its room for the next block
    if (!ok) keepWhatWasWritten(file_->errorString());
    return ok;
}

bool WorkFile::truncateTo(int32_t count) {
    if (!isOpen() || count < 0 || count > written_ || !flush()) return false;
    written_ = count;
    return file_->resize(static_cast<qint64>(count) * kRecordLength);
}

std::optional<QByteArray> WorkFile::read(int32_t number) {
    // Every record of the file was written in this run, so the count bounds
    // a read without asking the file system for the file's size at each step.
    if (!isOpen() || number < 1 || number > written_ || !flush()) return std::nullopt;
    const qint64 at = static_cast<qint64>(number - 1) * kRecordLength;
    if (!file_->seek(at)) return std::nullopt;
    QByteArray bytes = file_->read(kRecordLength);
    if (bytes.size() != kRecordLength) return std::nullopt;
    return bytes;
}

} // namespace marlith
