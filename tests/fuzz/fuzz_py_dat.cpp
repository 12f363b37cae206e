// Any bytes as py.dat: the table read into the Popeye window's eleven lists
// and the piece dictionary, which then names the pieces of a few boards.
#include "engines/engine_files.h"
#include "position/move_writer.h"
#include "position/piece_listing.h"
#include "styles/style.h"

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace marlith;

namespace {

const char* const kBoards[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",
    "4k3/1P4P1/8/QQQQQQQQ/nnnnnnnn/8/1p4p1/4K3",
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const PyDat table = parsePyDat(bytes);
    if (!table.dictionary.endsWith(QLatin1String("&&"))) std::abort();

    // The style's dictionary goes first, as at start-up; then the table's
    // alone, so that its entries decide.
    Style style;
    resetStyle(style);
    const Board board{8, 8};
    for (const char* const start : kBoards) {
        SquareVector squareVector{};
        QString fen = QString::fromLatin1(start);
        fenToSlot(1, fen, squareVector, board, style.PiecesList);
        for (const QString& dictionary : {style.PyDictionary + table.dictionary, table.dictionary})
            (void)listPieces(squareVector, board, style.PiecesList, style.EnglishNotation,
                             dictionary, ListingMode::Dictionary);
    }
    return 0;
}
