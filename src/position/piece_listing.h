// The pieces of the board listed by colour and square, the way the problem
// solver reads a position: each name once, its squares behind it.
#pragma once

#include "position/fen.h"

#include <QString>
#include <cstdint>

namespace marlith {

struct PieceLists {
    QString white;
    QString black;
    QString neutral;
};

// Which names the lists use.
enum class ListingMode : int16_t {
    PiecesList = 0,      // the style's own letters, squares apart
    EnglishNotation = 1, // the English letters, squares apart
    Dictionary = 2,      // the dictionary's names, squares run together
};

// `dictionary` is FullDictionary: entries "&&" letter "=" colour name, the
// style's before those of Py.dat, the first match deciding.
PieceLists listPieces(const SquareVector& squareVector, const Board& board,
                      const QString& piecesList, const QString& englishNotation,
                      const QString& dictionary, ListingMode mode);

// The pieces on the board by side: white for a letter that upper-casing
// leaves as it is, black for another, neutral for one whose dictionary entry
// (by its English letter) says so.
PieceCount countPieces(const SquareVector& squareVector, const Board& board,
                       const QString& piecesList, const QString& englishNotation,
                       const QString& dictionary);

} // namespace marlith
