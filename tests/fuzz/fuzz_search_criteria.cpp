// Any bytes as the five fields of the Search Criteria window on a board of
// any width: the fields read into criteria, which are then tried on a game
// held in memory. Every entry has the form its kind promises, and no list
// holds more than 30.
#include "books/book_search.h"

#include <QString>
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace marlith;

namespace {

bool isNumberForm(const QString& text) {
    if (text.isEmpty() || text.size() % 5 != 0) return false;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (i % 5 == 0 ? text[i] != u'#' : !text[i].isDigit()) return false;
    return true;
}

bool isPlace(const QString& text) {
    if (text.size() != 5) return false;
    for (qsizetype i = 1; i < 5; ++i)
        if (!text[i].isDigit()) return false;
    return true;
}

// The opening position of a game with a few header words, as the book's
// work file would show it.
GameFields openingGame() {
    GameFields game;
    game.words = QStringLiteral("[EVENT \"PAUL, 2000\"][WHITE \"KE1\"]");
    game.whiteMen = QStringLiteral("#0016");
    game.blackMen = QStringLiteral("#0016");
    game.allMen = QStringLiteral("#0032");
    const QString board =
        QStringLiteral("rnbqkbnrpppppppp") + QString(32, u' ') + QStringLiteral("PPPPPPPPRNBQKBNR");
    for (int square = 0; square < board.size(); ++square)
        if (board[square] != u' ')
            game.places += board[square] + QString::number(10000 + square).right(4);
    return game;
}

void checkEntries(const QList<Criterion>& entries) {
    if (entries.size() > 30) std::abort();
    for (const Criterion& entry : entries) {
        switch (entry.kind) {
        case CriterionKind::Word:
            if (entry.text.isEmpty() || entry.text != entry.text.toUpper()) std::abort();
            break;
        case CriterionKind::WhiteMen:
        case CriterionKind::BlackMen:
        case CriterionKind::AllMen:
            if (!isNumberForm(entry.text)) std::abort();
            break;
        case CriterionKind::Place:
            if (!isPlace(entry.text)) std::abort();
            break;
        }
    }
}

} // namespace

// Input: the board's width, then the five fields, each ended by a line feed.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const int columns = data[0] % 22;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data + 1),
                                           static_cast<qsizetype>(size - 1));
    QStringList fields = text.split(QLatin1Char('\n'));
    while (fields.size() < 5)
        fields.append(QString());

    for (const QString& field : fields.mid(0, 5)) {
        for (const auto& [token, separator] : criteriaTokens(field)) {
            if (token.isEmpty()) std::abort();
            if (separator != u' ' && separator != u'+' && separator != u',') std::abort();
            const std::optional<QString> place = notationToPlace(token, columns);
            if (place && !isPlace(*place)) std::abort();
        }
        const std::optional<QString> numbers = expandRanges(field);
        if (numbers && !numbers->isEmpty() && !isNumberForm(*numbers)) std::abort();
    }

    const Criteria criteria =
        parseCriteria(fields[0], fields[1], fields[2], fields[3], fields[4], columns);
    checkEntries(criteria.all);
    checkEntries(criteria.any);
    static const GameFields game = openingGame();
    (void)gamePasses(criteria, game);
    (void)gamePasses(criteria, GameFields{});
    return 0;
}
