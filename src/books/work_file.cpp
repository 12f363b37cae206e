#include "books/work_file.h"

#include "styles/style_block.h"

#include <algorithm>

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
} // namespace

WorkFile::WorkFile() : file_(std::make_unique<QFile>()) {}
WorkFile::~WorkFile() {
    if (file_) close();
}
WorkFile::WorkFile(WorkFile&&) noexcept = default;
WorkFile& WorkFile::operator=(WorkFile&& other) noexcept {
    if (this != &other) {
        if (file_) close();
        file_ = std::move(other.file_);
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
    return file_->open(QIODevice::ReadWrite | QIODevice::Truncate);
}

bool WorkFile::restart() {
    pending_.resize(0);
    written_ = 0;
    return isOpen() && file_->resize(0);
}

void WorkFile::close() {
    if (isOpen()) {
        flush();
        file_->close();
    }
}

bool WorkFile::append(QByteArrayView record) {
    if (!isOpen() || record.size() != kRecordLength) return false;
    pending_.append(record.data(), kRecordLength);
    ++written_;
    return pending_.size() < kBlockSize || flush();
}

bool WorkFile::flush() {
    if (pending_.isEmpty()) return true;
    const qint64 at = static_cast<qint64>(written_) * kRecordLength - pending_.size();
    bool ok = file_->seek(at);
    // A short write is tried again: it goes on, or tells why it can't.
    for (qint64 done = 0; ok && done < pending_.size();) {
        const qint64 wrote = file_->write(pending_.constData() + done, pending_.size() - done);
        ok = wrote > 0;
        done += std::max<qint64>(wrote, 0);
    }
    pending_.resize(0); // keeps its room for the next block
    if (!ok) {
        error_ = file_->errorString();
        // A full disk may have taken part of the block: only whole records
        // that reached the file count, and nothing is written behind them.
        const qint64 held = std::max<qint64>(at, std::min(file_->size(), at + kBlockSize));
        written_ = static_cast<int32_t>(held / kRecordLength);
        file_->resize(static_cast<qint64>(written_) * kRecordLength);
        file_->unsetError();
    }
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
