// The letters a style reads and writes moves with.
#pragma once

#include "styles/style.h"

#include <QString>

namespace marlith {

// piecesList names the pieces on the board (place k is the value k in the
// square vector); englishNotation says in English letters what kind each of
// them is ("KQRBNP", lower case for Black). They run in step.
struct Notation {
    QString piecesList;
    QString englishNotation;
};

inline Notation notationOf(const Style& style) {
    return Notation{style.PiecesList, style.EnglishNotation};
}

} // namespace marlith
