// Any bytes as Popeye's protocol, arriving in pieces: the first byte sets the
// piece size and how many rows the list holds; every piece is fed, now and
// then a skip, and the rows taken are wrapped as the window shows them. The
// stipulation reader gets the first line as a stipulation and a header.
#include "engines/popeye.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const size_t piece = 1 + data[0] % 64;
    const int maxRows = 1 + data[0] % 16;
    marlith::ProtocolTail tail(maxRows);
    qsizetype shown = 0;
    const auto take = [&] {
        const marlith::ProtocolTail::Change change = tail.take(shown);
        shown = std::max<qsizetype>(0, shown - change.dropped) + change.added.size();
        if (shown > maxRows) __builtin_trap(); // the list would outgrow its bound
        for (const QString& row : change.added)
            (void)marlith::wrapRows(row);
    };
    for (size_t at = 1; at < size; at += piece) {
        const size_t n = std::min(piece, size - at);
        tail.feed(QByteArrayView(reinterpret_cast<const char*>(data + at), qsizetype(n)));
        if (data[at] == 0xFF) tail.skip();
        take();
    }
    tail.finish();
    take();

    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    const QString first = text.section(u'\n', 0, 0);
    (void)marlith::splitStipulation(first, text.section(u'\n', 1, 1));
    (void)marlith::stipulationTag({QStringLiteral("[Stipulation \"") + first + u'"' + u']'});
    return 0;
}
