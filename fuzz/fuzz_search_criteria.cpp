// Any bytes as a board width and the Search Criteria window's five fields: every entry read has
// the form its kind promises, no list holds more than 30, and the criteria try a game.
#include "books/book_search.h"
#include "fuzz_support.h"

using namespace marlith;

namespace {

bool isPlace(const QString& text) {
    return text.size() == 5 &&
           std::all_of(text.begin() + 1, text.end(), [](QChar c) { return c.isDigit(); });
}

// One or more of "#" and four digits.
bool isNumberForm(const QString& text) {
    if (text.isEmpty() || text.size() % 5 != 0) return false;
    for (qsizetype i = 0; i < text.size(); i += 5)
        if (text[i] != u'#' || !isPlace(text.mid(i, 5))) return false;
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
    for (const Criterion& entry : entries)
        if (entry.kind == CriterionKind::Word
                ? entry.text.isEmpty() || entry.text != entry.text.toUpper()
                : !(entry.kind == CriterionKind::Place ? isPlace : isNumberForm)(entry.text))
            std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const int columns = data[0] % 22;
    QStringList fields = fuzz::textOf(data + 1, size - 1).split(u'\n');
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
