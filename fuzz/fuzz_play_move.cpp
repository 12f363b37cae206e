// Fuzzed words played on fuzzed boards and written back: no square may be left with no piece of
// the list, and a Latin-1 word plays the same through both entry points.
#include "fuzz_support.h"

using namespace marlith;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4) return 0;
    const Board board{data[0] % 22, data[1] % 22};
    int side = data[2] % 3;
    const Notation& notation = fuzz::kNotations[data[3] % 4];
    const int pieces = static_cast<int>(notation.piecesList.size());
    SquareVector squareVector{};
    QString start = QString::fromLatin1(fuzz::kStarts[(data[3] >> 2) % 4]);
    fenToSlot(1, start, squareVector, board, notation.piecesList);

    // Words go in as the book scanner hands them over, split at blanks.
    for (const QString& move : fuzz::textOf(data + 4, size - 4).split(u' ')) {
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
