#include "books/book_walk.h"

#include <algorithm>

namespace marlith {

namespace {

bool inRange(const OpenBook& book, int32_t record) {
    return record >= 1 && record <= book.recordCount;
}

QByteArray gameField(const QByteArray& record) {
    return record.mid(2, 6);
}

} // namespace

bool goToGame(OpenBook& book, int32_t n) {
    book.currentRecord = QByteArray(kRecordLength, ' ');
    if (n < 1 || static_cast<size_t>(n) > book.gameIndex.size()) return false;
    const int32_t number = book.gameIndex[static_cast<size_t>(n) - 1];
    book.currentRecordNumber = number;
    if (!inRange(book, number)) return false;
    const auto record = book.workFile.read(number);
    if (!record) return false;
    book.currentRecord = *record;
    return true;
}

bool nextRecord(OpenBook& book, char& kind) {
    kind = 0;
    const int32_t r = book.currentRecordNumber + 1;
    if (!inRange(book, r)) return false;
    const auto record = book.workFile.read(r);
    if (!record || gameField(*record) != gameField(book.currentRecord)) return false;
    book.currentRecord = *record;
    book.currentRecordNumber = r;
    // The record behind tells whether the game goes on.
    if (const auto behind = book.workFile.read(r + 1)) kind = behind->at(1);
    return true;
}

bool previousRecord(OpenBook& book) {
    const int32_t r = book.currentRecordNumber - 1;
    if (!inRange(book, r)) return false;
    const auto record = book.workFile.read(r);
    if (!record || gameField(*record) != gameField(book.currentRecord) ||
        record->at(1) != kPositionKind)
        return false;
    book.currentRecord = *record;
    book.currentRecordNumber = r;
    return true;
}

QByteArray cutMoveOfGame(OpenBook& book, int32_t first) {
    // The whole book's index is in record order: the next game's first
    // record follows this game's last.
    const auto next = std::upper_bound(book.fullIndex.begin(), book.fullIndex.end(), first);
    const int32_t last = next == book.fullIndex.end() ? book.recordCount : *next - 1;
    if (last < first || !inRange(book, last)) return {};
    const auto record = book.workFile.read(last);
    if (!record || record->at(1) != kPositionKind) return {};
    const qsizetype note = record->indexOf(kCutNote);
    if (note < 0) return {};
    const qsizetype from = note + qsizetype(sizeof kCutNote) - 1;
    const qsizetype close = record->indexOf('}', from);
    return record->mid(from, close < 0 ? -1 : close - from).trimmed();
}

QByteArray stripComment(const QByteArray& record) {
    QByteArray s = record.trimmed();
    // A tag line keeps what stands inside its brackets.
    qsizetype from = 0;
    if (s.size() >= 2 && s.at(1) == '[') {
        from = s.indexOf(']');
        if (from < 0) from = s.size();
    }
    for (const char mark : {';', '{'}) {
        const qsizetype at = s.indexOf(mark, from);
        if (at > 0) s.truncate(at);
    }
    return s.size() < 9 ? QByteArray() : s.mid(8);
}

ShownPosition positionOfRecord(const QByteArray& record) {
    const QByteArray text = stripComment(record) + " -";
    const qsizetype blank = text.indexOf(' ');
    ShownPosition shown;
    shown.side = blank + 1 < text.size() ? text.at(blank + 1) : 0;
    shown.board = text.left(blank);
    return shown;
}

QString sideCaption(char side) {
    switch (side) {
    case 'W':
    case 'w':
        return QStringLiteral("White moves...");
    case 'B':
    case 'b':
        return QStringLiteral("Black moves...");
    default:
        return QStringLiteral("Move Control:");
    }
}

QStringList wrapHeader(const QString& line) {
    QStringList lines;
    QString t = line;
    while (t.size() >= 34) {
        lines << t.left(33);
        t = QLatin1Char(' ') + t.mid(33);
    }
    lines << t;
    return lines;
}

std::optional<QString> styleTag(const QString& line) {
    if (!line.startsWith(QLatin1String("[STYLE"), Qt::CaseInsensitive)) return std::nullopt;
    const qsizetype open = line.indexOf(QLatin1Char('"'));
    if (open < 0) return QString();
    const qsizetype close = line.indexOf(QLatin1Char('"'), open + 1);
    return close < 0 ? line.mid(open + 1) : line.mid(open + 1, close - open - 1);
}

} // namespace marlith
