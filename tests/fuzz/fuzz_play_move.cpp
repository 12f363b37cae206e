// Plays fuzzed words on fuzzed boards, then writes the move back: neither
// may crash, read out of bounds, or leave a square with no piece of the list;
// a Latin-1 word plays the same through both entry points.
#include "position/move_reader.h"
#include "position/move_writer.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace marlith;

namespace {

const QString kEnglish = QStringLiteral("pPnNbBrRqQkK");

// The default letters, other letters, and letters that clash with the signs
// the reader strips or reads (digits, "=", "x", "O").
const Notation kNotations[] = {
    {kEnglish, kEnglish},
    {QStringLiteral("pPsSlLtTdDkK"), kEnglish},
    {QStringLiteral("x1=O-nbBrRqk"), kEnglish},
    {QStringLiteral("pPnNbBrRqQkKaAcC"), QStringLiteral("pPnNbBrRqQkKaAcC")},
};

const char* const kStarts[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",
    "r3k2r/pppppppp/8/3pP3/4pP2/8/PPPPPPPP/R3K2R",
    "4k3/1P4P1/8/QQQQQQQQ/nnnnnnnn/8/1p4p1/4K3",
    "",
};

} // namespace

// Input: columns, rows, side, letters and start position, then the words.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4) return 0;
    const Board board{data[0] % 22, data[1] % 22};
    int side = data[2] % 3;
    const Notation& notation = kNotations[data[3] % 4];
    const char* const startText = kStarts[(data[3] >> 2) % 4];
    const int pieces = static_cast<int>(notation.piecesList.size());
    data += 4;
    size -= 4;

    SquareVector squareVector{};
    QString start = QString::fromLatin1(startText);
    fenToSlot(1, start, squareVector, board, notation.piecesList);

    // Words go in as the book scanner hands them over, split at blanks.
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const QString& move : text.split(QLatin1Char(' '))) {
        for (Square& square : squareVector)
            square.painted = square.wanted;
        // The scanner's entry point plays a Latin-1 word alike.
        SquareVector bytesPlayed = squareVector;
        const QByteArray latin1 = move.toLatin1();
        const bool isLatin1 = QString::fromLatin1(latin1) == move;
        const bool played = playMove(side, QByteArrayView(latin1), bytesPlayed, board, notation);
        QString word = move;
        playMove(side, word, squareVector, board, notation);
        if (!word.isEmpty() && word != QLatin1String("ok") && word != move) abort();
        if (isLatin1 && (played == word.isEmpty() || bytesPlayed != squareVector)) abort();
        for (const Square& square : squareVector)
            if (square.wanted < 0 || square.wanted > pieces) abort();

        // The writer gives the move from slot 0 (before) to slot 1, and back.
        QString m;
        writeMove(0, m, squareVector, board, notation);
        writeMove(1, m, squareVector, board, notation);
        side = 1 - side;
    }
    return 0;
}
