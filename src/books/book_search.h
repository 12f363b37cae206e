// Narrowing an open book: the criteria a user types (words of the headers,
// counts of men, pieces on squares), what a game offers them, and the index
// of the games that pass.
#pragma once

#include "books/work_file.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <functional>
#include <optional>
#include <utility>

namespace marlith {

enum class CriterionKind { Word = 0, WhiteMen = 1, BlackMen = 2, AllMen = 3, Place = 4 };

struct Criterion {
    CriterionKind kind;
    QString text;
    bool operator==(const Criterion&) const = default;
};

// `all` must hold each; of `any`, one, unless it is empty. Each holds at
// most 30 entries.
struct Criteria {
    QList<Criterion> all;
    QList<Criterion> any;
    bool isEmpty() const { return all.isEmpty() && any.isEmpty(); }
};

// The tokens of a words or notations field, each with the separator in
// front of it: "+" puts it among the criteria that must all hold, a blank
// or a comma among those of which one must. Double quotes hold blanks,
// commas and plus signs inside a token.
QList<std::pair<QString, QChar>> criteriaTokens(const QString& text);

// "1-6, 9" as the numbers it names, each "#" and four digits ("#0001").
// No result for a number beyond 16 bits.
std::optional<QString> expandRanges(const QString& text);

// "Ke1" as the letter and the square number in four digits ("K0060" on an
// 8-column board); a bare square is a pawn. No result for what isn't one.
std::optional<QString> notationToPlace(const QString& token, int columns);

// The five fields of the search window as criteria. A field that can't be
// read, or a 31st entry of a list, ends the reading with what it has.
Criteria parseCriteria(const QString& words, const QString& whiteMen, const QString& blackMen,
                       const QString& allMen, const QString& notations, int columns);

// What a game shows the criteria: its header text upper-cased, the number
// forms of its men, and each man of its first position with its square.
struct GameFields {
    QString words;
    QString whiteMen;
    QString blackMen;
    QString allMen;
    QString places;
};
GameFields gameFields(WorkFile& workFile, int32_t firstRecord);

bool gamePasses(const Criteria& criteria, const GameFields& fields);

// The entries of `fullIndex` whose games pass, in order. `progress` hears of every hundredth game:
// matches so far, games looked at, games in all.
using SearchProgress = std::function<void(int found, int searched, int total)>;
GameIndex searchBook(WorkFile& workFile, const GameIndex& fullIndex, const Criteria& criteria,
                     const SearchProgress& progress = {});

} // namespace marlith
