// What the scanner fuzzers share: the input written as a book into a
// private folder, scanned into a work file there, and then every game walked
// to its end, so that a bad index or record count shows as a bad read.
#pragma once

#include "books/book_scan.h"
#include "books/book_walk.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

namespace marlith::fuzz {

template <typename Scan>
void scanAndWalk(const uint8_t* data, size_t size, const char* extension, Scan scan) {
    static QTemporaryDir folder;
    const QString book = folder.path() + QStringLiteral("/book") + QLatin1String(extension);
    {
        QFile file(book);
        if (!file.open(QIODevice::WriteOnly)) return;
        file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    }
    OpenBook open;
    if (!open.workFile.open(folder.path() + QStringLiteral("/work.tmp"))) return;
    const BookScan result = scan(book, open.workFile);
    open.gameCount = result.gameCount;
    open.recordCount = result.recordCount;
    open.gameIndex = result.gameIndex;
    for (int32_t game = 1; game <= open.gameCount && game <= 20'000; ++game) {
        if (!goToGame(open, game)) continue;
        char kind = 0;
        int steps = 0;
        while (nextRecord(open, kind) && ++steps < 100'000) {
            (void)positionOfRecord(open.currentRecord);
        }
        while (previousRecord(open) && --steps > -100'000) {
        }
    }
}

} // namespace marlith::fuzz
