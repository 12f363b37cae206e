// Any bytes as the rows of the History window, on a board and with letters
// from the first bytes: each row sent to the board and to undo, given extra
// fields and stripped of them, and all rows read as one game.
#include "editing/history.h"

#include <QString>
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace marlith;

namespace {

const QString kEnglish = QStringLiteral("pPnNbBrRqQkK");

const Notation kNotations[] = {
    {kEnglish, kEnglish},
    {QStringLiteral("pPsSlLtTdDkK"), kEnglish},
    {QStringLiteral("pPnNbBrRqQkKaAcC"), QStringLiteral("pPnNbBrRqQkKaAcC")},
    {QStringLiteral("x1=O-nbBrRqk"), kEnglish},
};

const QString kSides[] = {QString(), QStringLiteral("w"), QStringLiteral("b"), QStringLiteral("-")};

} // namespace

// Input: rows, columns, letters and first side, then the rows, one a line.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 3) return 0;
    const Board board{data[0] % 22, data[1] % 22};
    const Notation& notation = kNotations[data[2] % 4];
    const QString& firstSide = kSides[(data[2] >> 2) % 4];
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data + 3),
                                           static_cast<qsizetype>(size - 3));
    const QStringList rows = text.split(QLatin1Char('\n'));

    for (const QString& row : rows) {
        // The board gets the board field alone, unless the row starts with a
        // blank, which the board reads as an empty field anyway.
        const QString board = rowForBoard(row);
        if (!board.startsWith(QLatin1Char(' ')) && board.contains(QLatin1Char(' '))) std::abort();
        (void)rowForUndo(row);
        for (const QString& side : kSides) {
            const QString sided = rowWithSide(row, side);
            if (!sided.startsWith(rowBoardPart(row))) std::abort();
        }
    }
    const QStringList sided = setExtraFields(rows, firstSide);
    if (sided.size() != rows.size()) std::abort();
    // Fields given and taken off again leave the trimmed board parts.
    const QStringList stripped = setExtraFields(sided, QString());
    const QStringList plain = setExtraFields(rows, QString());
    if (!firstSide.isEmpty() && stripped != plain) std::abort();
    (void)historyFen(sided);
    (void)historyPgn(rows, board, notation);
    (void)historyPgn(sided, board, notation);
    return 0;
}
