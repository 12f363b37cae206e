// Any bytes as a .pgn book, played on the default board: the scan and the
// walk never read outside a buffer or the work file.
#include "books/pgn_board.h"
#include "scan_fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    marlith::fuzz::scanAndWalk(
        data, size, ".pgn", [](const QString& book, marlith::WorkFile& work) {
            marlith::Style style;
            marlith::resetStyle(style);
            marlith::StylePgnBoard board(style);
            return marlith::scanPgn(book, work, board, style.StartPos.toLatin1(), {});
        });
    return 0;
}
