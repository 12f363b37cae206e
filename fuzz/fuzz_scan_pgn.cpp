// Any bytes as a .pgn book, played on the default board: the scan and the walk never read
// outside a buffer or the work file.
#include "books/pgn_board.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return marlith::fuzz::scanAndWalk(data, size, ".pgn", [](auto& book, auto& work) {
        marlith::Style style;
        marlith::resetStyle(style);
        marlith::StylePgnBoard board(style);
        return marlith::scanPgn(book, work, board, style.StartPos.toLatin1(), {});
    });
}
