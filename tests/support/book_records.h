// The records of a work file as "kind game|text", for comparison in tests.
#pragma once

#include "books/work_file.h"

#include <QStringList>

namespace marlith::testing {

inline QStringList RecordLines(WorkFile& work, int32_t count) {
    QStringList out;
    for (int32_t n = 1; n <= count; ++n) {
        const Record r = ParseRecord(work.read(n).value_or(QByteArray()));
        out << QStringLiteral("%1%2|%3")
                   .arg(QLatin1Char(r.kind))
                   .arg(r.gameNumber())
                   .arg(QString::fromLatin1(r.text));
    }
    return out;
}

} // namespace marlith::testing
