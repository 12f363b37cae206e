// Any bytes as History rows (board, letters and first side from the first bytes): each row sent
// to the board and to undo, given extra fields and stripped of them, and all read as one game.
#include "editing/history.h"
#include "fuzz_support.h"

using namespace marlith;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const QString kSides[] = {{}, QStringLiteral("w"), QStringLiteral("b"), "-"};
    if (size < 3) return 0;
    const Board board{data[0] % 22, data[1] % 22};
    const Notation& notation = fuzz::kNotations[data[2] % 4];
    const QString& firstSide = kSides[(data[2] >> 2) % 4];
    const QStringList rows = fuzz::textOf(data + 3, size - 3).split(u'\n');
    for (const QString& row : rows) {
        // The board gets the board field alone, unless the row starts with a
        // blank, which the board reads as an empty field anyway.
        const QString board = rowForBoard(row);
        if (!board.startsWith(u' ') && board.contains(u' ')) std::abort();
        (void)rowForUndo(row);
        for (const QString& side : kSides)
            if (!rowWithSide(row, side).startsWith(rowBoardPart(row))) std::abort();
    }
    const QStringList sided = setExtraFields(rows, firstSide);
    if (sided.size() != rows.size()) std::abort();
    // Fields given and taken off again leave the trimmed board parts.
    if (!firstSide.isEmpty() && setExtraFields(sided, {}) != setExtraFields(rows, {})) std::abort();
    (void)historyFen(sided);
    (void)historyPgn(rows, board, notation);
    (void)historyPgn(sided, board, notation);
    return 0;
}
