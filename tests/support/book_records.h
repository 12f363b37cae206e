// Helpers of the book tests: records as "kind game|text", a scan's outcome in one line.
#pragma once

#include "books/book_scan.h"
#include "books/work_file.h"

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
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(bytes);
    return path;
}

// "2 games, 6 records, index (1 3)", ", cut short" when a fault ended the scan.
inline QString scanSummary(const BookScan& scan) {
    QStringList index;
    for (qsizetype at = 0; at < scan.gameIndex.size(); at += 6)
        index << QString::fromLatin1(scan.gameIndex.mid(at, 6).trimmed());
    return QStringLiteral("%1 games, %2 records, index (%3)%4%5")
        .arg(scan.gameCount)
        .arg(scan.recordCount)
        .arg(index.join(u' '), scan.complete ? QString() : QStringLiteral(", cut short"),
             scan.fullIndex == scan.gameIndex ? QString() : QStringLiteral(", full index differs"));
}

} // namespace marlith::testing
