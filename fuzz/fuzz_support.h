// What the fuzz targets share: the input as bytes or text, a private folder
// for the files they write, the letters and boards they play on, and a book
// scanned into a work file and every game walked to its end, so that a bad
// index or record count shows as a bad read.
#pragma once

#include "books/book_scan.h"
#include "books/book_walk.h"
#include "position/move_writer.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace marlith::fuzz {

inline QByteArray bytesOf(const uint8_t* data, size_t size) {
    return QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

inline QString textOf(const uint8_t* data, size_t size) {
    return QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

// The process's own folder, its path ending in "/".
inline QString folder() {
    static QTemporaryDir dir;
    return dir.path() + u'/';
}

inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

inline QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline const QString kEnglish = QStringLiteral("pPnNbBrRqQkK");

// The default letters, other letters, letters that clash with the signs the
// move reader strips or reads (digits, "=", "x", "O"), and fairy letters.
inline const Notation kNotations[] = {
    {kEnglish, kEnglish},
    {QStringLiteral("pPsSlLtTdDkK"), kEnglish},
    {QStringLiteral("x1=O-nbBrRqk"), kEnglish},
    {QStringLiteral("pPnNbBrRqQkKaAcC"), QStringLiteral("pPnNbBrRqQkKaAcC")},
};

inline const char* const kStarts[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",
    "4k3/1P4P1/8/QQQQQQQQ/nnnnnnnn/8/1p4p1/4K3",
    "r3k2r/pppppppp/8/3pP3/4pP2/8/PPPPPPPP/R3K2R",
    "",
};

template <typename Scan>
int scanAndWalk(const uint8_t* data, size_t size, const char* extension, Scan scan) {
    const QString book = folder() + QStringLiteral("book") + QLatin1String(extension);
    OpenBook open;
    if (!writeBytes(book, bytesOf(data, size)) || !open.workFile.open(folder() + "work.tmp"))
        return 0;
    const BookScan result = scan(book, open.workFile);
    open.gameCount = result.gameCount;
    open.recordCount = result.recordCount;
    open.gameIndex = result.gameIndex;
    for (int32_t game = 1; game <= open.gameCount && game <= 20'000; ++game) {
        if (!goToGame(open, game)) continue;
        char kind = 0;
        int steps = 0;
        while (nextRecord(open, kind) && ++steps < 100'000)
            (void)positionOfRecord(open.currentRecord);
        while (previousRecord(open) && --steps > -100'000) {
        }
    }
    return 0;
}

} // namespace marlith::fuzz
