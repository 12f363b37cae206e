// Helpers of the book tests: records as "kind game|text", a scan's outcome in one line.
#pragma once

#include "books/book_scan.h"
#include "books/work_file.h"
#include "support/file_bytes.h"

#include <QStringList>

namespace marlith::testing {

inline QStringList recordLines(WorkFile& work, int32_t count) {
    QStringList out;
    for (int32_t n = 1; n <= count; ++n) {
        const Record r = parseRecord(work.read(n).value_or(QByteArray()));
        out << QStringLiteral("%1%2|%3")
                   .arg(QLatin1Char(r.kind))
                   .arg(r.gameNumber())
                   .arg(QString::fromLatin1(r.text));
    }
    return out;
}

inline QString writeBook(const QString& path, const QByteArray& bytes) {
    writeFile(path, bytes);
    return path;
}

// "2 games, 6 records, index (1 3)", with how the scan ended when it did not read the whole book.
inline QString scanSummary(const BookScan& scan) {
    QStringList index;
    for (const int32_t first : scan.gameIndex)
        index << QString::number(first);
    static const QStringList kEnds =
        QStringLiteral(
            "|, cut short|, stopped|, work file full|, too many games|, not a book|, no game")
            .split(u'|');
    return QStringLiteral("%1 games, %2 records, index (%3)%4")
        .arg(scan.gameCount)
        .arg(scan.recordCount)
        .arg(index.join(u' '), kEnds[static_cast<int>(scan.end)]);
}

} // namespace marlith::testing
