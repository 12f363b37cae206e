// Any bytes as a Crafty log: the run's rows from the file agree with the reader's from memory,
// and none is empty or holds a line end. First fields go through the castling and letter rules.
#include "engines/crafty.h"
#include "fuzz_support.h"

#include <QBuffer>

using namespace marlith;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString path = fuzz::folder();
    QByteArray bytes = fuzz::bytesOf(data, size);
    const QStringList rows = logRows(bytes);
    for (const QString& row : rows)
        if (row.isEmpty() || row.contains(u'\r') || row.contains(u'\n')) std::abort();
    // The row behind the last line end counts when asked for, and no other.
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QStringList withLast = readLines(buffer, true);
    if (withLast.mid(0, rows.size()) != rows || withLast.size() > rows.size() + 1) std::abort();
    // A short window on the rows is the start of them.
    buffer.seek(0);
    const QStringList few = readLines(buffer, false, 3, 64);
    if (few.size() > 3 || few != rows.mid(0, few.size())) std::abort();

    // The run finds the log, reads it, and clears its files away.
    if (!fuzz::writeBytes(path + "log.001", bytes)) return 0;
    fuzz::writeBytes(path + QLatin1String(kCraftyRc), "quit\r\n");
    CraftyRun run;
    run.begin(path, QStringLiteral("001"));
    QStringList read;
    for (int tick = 0; tick < 10 && run.active(); ++tick) {
        const CraftyRun::Step step = run.advance(
            false, [] { return true; }, read);
        // An empty log is no log of the run.
        if (step == CraftyRun::Step::Ended && !bytes.isEmpty()) std::abort();
        if (step == CraftyRun::Step::Rows && read != rows) std::abort();
    }
    if (run.active()) std::abort();
    QFile::remove(path + "log.001");

    for (const QString& row : rows) {
        const QString field = row.section(u' ', 0, 0);
        (void)castlingField(field);
        (void)craftyFen(field, QStringLiteral("pPsSlLtTdDkKaA"), fuzz::kEnglish);
    }
    return 0;
}
