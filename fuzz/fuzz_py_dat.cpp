// Any bytes as py.dat: the table read into the Popeye window's eleven lists
// and the piece dictionary, which then names the pieces of a few boards.
#include "engines/engine_files.h"
#include "fuzz_support.h"
#include "position/piece_listing.h"
#include "styles/style.h"

using namespace marlith;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const PyDat table = parsePyDat(fuzz::bytesOf(data, size));
    if (!table.dictionary.endsWith(QLatin1String("&&"))) std::abort();
    // The style's dictionary goes first, as at start-up; then the table's
    // alone, so that its entries decide.
    Style style;
    resetStyle(style);
    const Board board{8, 8};
    for (const char* const start : {fuzz::kStarts[0], fuzz::kStarts[1]}) {
        SquareVector squareVector{};
        QString fen = QString::fromLatin1(start);
        fenToSlot(1, fen, squareVector, board, style.PiecesList);
        for (const QString& dictionary : {style.PyDictionary + table.dictionary, table.dictionary})
            (void)listPieces(squareVector, board, style.PiecesList, style.EnglishNotation,
                             dictionary, ListingMode::Dictionary);
    }
    return 0;
}
