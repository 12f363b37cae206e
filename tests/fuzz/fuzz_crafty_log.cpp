// Any bytes as a Crafty log: its rows as the run reads them from the file
// and as the reader gives them from memory, which must agree, and no row
// holds a line end or is empty. The first field of each row goes through
// the castling test and the letter exchange, as a position text would.
#include "engines/crafty.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace marlith;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static QTemporaryDir folder;
    const QString path = folder.path() + QLatin1Char('/');
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    const QStringList rows = logRows(bytes);
    for (const QString& row : rows)
        if (row.isEmpty() || row.contains(QLatin1Char('\r')) || row.contains(QLatin1Char('\n')))
            std::abort();
    // The row behind the last line end counts when asked for, and no other.
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    const QStringList withLast = readLines(buffer, true);
    if (withLast.mid(0, rows.size()) != rows || withLast.size() > rows.size() + 1) std::abort();
    // A short window on the rows is the start of them.
    buffer.seek(0);
    const QStringList few = readLines(buffer, false, 3, 64);
    if (few.size() > 3 || few != rows.mid(0, few.size())) std::abort();

    // The run finds the log, reads it, and clears its files away.
    QFile log(path + QStringLiteral("log.001"));
    if (!log.open(QIODevice::WriteOnly | QIODevice::Truncate)) return 0;
    log.write(bytes);
    log.close();
    CraftyRun run;
    run.begin(path, QStringLiteral("001"));
    QStringList read;
    const auto start = [] { return true; };
    QFile rc(path + QLatin1String(kCraftyRc));
    if (rc.open(QIODevice::WriteOnly)) rc.write("quit\r\n");
    rc.close();
    for (int tick = 0; tick < 10 && run.active(); ++tick) {
        const CraftyRun::Step step = run.advance(false, start, read);
        // An empty log is no log of the run.
        if (step == CraftyRun::Step::Ended && !bytes.isEmpty()) std::abort();
        if (step == CraftyRun::Step::Rows && read != rows) std::abort();
    }
    if (run.active()) std::abort();
    QFile::remove(path + QStringLiteral("log.001"));

    const QString pieces = QStringLiteral("pPsSlLtTdDkKaA");
    const QString english = QStringLiteral("pPnNbBrRqQkK");
    for (const QString& row : rows) {
        const QString field = row.section(QLatin1Char(' '), 0, 0);
        (void)castlingField(field);
        (void)craftyFen(field, pieces, english);
    }
    return 0;
}
