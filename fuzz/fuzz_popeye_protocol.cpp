// Any bytes as Popeye's protocol, fed in pieces with skips: the list never outgrows its bound.
// The first line goes to the stipulation reader as a stipulation and as a header.
#include "engines/popeye.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const size_t piece = 1 + data[0] % 64;
    const int maxRows = 1 + data[0] % 16;
    marlith::ProtocolTail tail(maxRows);
    qsizetype shown = 0;
    const auto take = [&] {
        const marlith::ProtocolTail::Change change = tail.take(shown);
        shown = std::max<qsizetype>(0, shown - change.dropped) + change.added.size();
        if (shown > maxRows) std::abort(); // the list would outgrow its bound
        for (const QString& row : change.added)
            (void)marlith::wrapRows(row);
    };
    for (size_t at = 1; at < size; at += piece) {
        tail.feed(marlith::fuzz::bytesOf(data + at, std::min(piece, size - at)));
        if (data[at] == 0xFF) tail.skip();
        take();
    }
    tail.finish();
    take();
    const QString text = marlith::fuzz::textOf(data + 1, size - 1);
    const QString first = text.section(u'\n', 0, 0);
    (void)marlith::splitStipulation(first, text.section(u'\n', 1, 1));
    (void)marlith::stipulationTag({QStringLiteral("[Stipulation \"") + first + u'"' + u']'});
    return 0;
}
