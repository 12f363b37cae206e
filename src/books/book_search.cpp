#include "books/book_search.h"

#include "position/fen.h"

#include <algorithm>
#include <bitset>

namespace marlith {

namespace {

constexpr int kMaxEntries = 30;

// A number as the search writes it: "#" and the last four digits of n + 10000.
QString numberForm(int n) {
    return u'#' + QString::number(n + 10000).right(4);
}

// The leading digits of a text, as the old number reader took them; no
// result beyond 16 bits.
std::optional<int> leadingNumber(QStringView text) {
    text = text.trimmed();
    long long value = 0;
    bool negative = false;
    qsizetype i = 0;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) negative = text[i++] == u'-';
    for (; i < text.size() && text[i].isDigit() && text[i].unicode() < 128; ++i) {
        value = value * 10 + (text[i].unicode() - u'0');
        if (value > 32767) return std::nullopt;
    }
    return static_cast<int>(negative ? -value : value);
}

bool holds(const Criterion& criterion, const GameFields& fields) {
    switch (criterion.kind) {
    case CriterionKind::Word:
        return fields.words.contains(criterion.text);
    case CriterionKind::WhiteMen:
        return criterion.text.contains(fields.whiteMen);
    case CriterionKind::BlackMen:
        return criterion.text.contains(fields.blackMen);
    case CriterionKind::AllMen:
        return criterion.text.contains(fields.allMen);
    case CriterionKind::Place:
        return fields.places.contains(criterion.text);
    }
    return false;
}

} // namespace

QList<std::pair<QString, QChar>> criteriaTokens(const QString& text) {
    QList<std::pair<QString, QChar>> tokens;
    const QString t = text.trimmed() + u' ';
    QString word;
    QChar sep = u' ';
    bool quoted = false;
    for (const QChar c : t) {
        if (c == u'"') {
            quoted = !quoted;
        } else if (c == u' ' || c == u'+' || c == u',') {
            if (quoted) {
                word += c;
            } else {
                if (!word.isEmpty()) tokens.append({word, sep});
                word.clear();
                sep = c;
            }
        } else {
            word += c;
        }
    }
    return tokens;
}

std::optional<QString> expandRanges(const QString& text) {
    const QString t = text.trimmed() + u' ';
    int from = 0;
    QString num;
    QString result;
    // No board holds more men than squares: larger numbers can match
    // nothing, and each number is listed once, so that a long text of wide
    // ranges stays a short list.
    constexpr int kMostMen = kSquareCount - 1;
    std::bitset<kMostMen + 1> listed;
    for (const QChar c : t) {
        if (c == u' ' || c == u',') {
            if (num.isEmpty()) continue;
            const std::optional<int> to = leadingNumber(num);
            if (!to) return std::nullopt;
            num.clear();
            if (*to <= 0) continue;
            int low = from < 1 ? *to : from;
            int high = *to;
            if (low > high) std::swap(low, high);
            for (int n = low; n <= std::min(high, kMostMen); ++n) {
                if (listed[size_t(n)]) continue;
                listed[size_t(n)] = true;
                result += numberForm(n);
            }
            from = 0;
        } else if (c == u'-') {
            const std::optional<int> value = leadingNumber(num);
            if (!value) return std::nullopt;
            from = *value;
            num.clear();
        } else {
            num += c;
        }
    }
    return result;
}

std::optional<QString> notationToPlace(const QString& token, int columns) {
    QString t = token;
    // The rank in two digits; a letter in front of it reads as no number.
    const std::optional<int> lastTwo = leadingNumber(t.right(2));
    if (!t.isEmpty() && (!lastTwo || *lastTwo < 10)) t.insert(t.size() - 1, u'0');
    // A bare square is a pawn.
    t = (QStringLiteral("    P") + t).right(4).trimmed();
    if (t.size() != 4) return std::nullopt;
    const int rank = leadingNumber(t.right(2)).value_or(0);
    const int col = t.at(1).toUpper().unicode() - 65;
    const long long square = static_cast<long long>(columns - rank) * columns + col;
    return t.left(1) + QString::number(square + 10000).right(4);
}

Criteria parseCriteria(const QString& words, const QString& whiteMen, const QString& blackMen,
                       const QString& allMen, const QString& notations, int columns) {
    Criteria criteria;
    // False once a list is full: the reading ends there.
    const auto add = [&criteria](bool mustHold, Criterion entry) {
        QList<Criterion>& list = mustHold ? criteria.all : criteria.any;
        if (list.size() >= kMaxEntries) return false;
        list.append(std::move(entry));
        return true;
    };
    for (const auto& [token, sep] : criteriaTokens(words))
        if (!add(sep == u'+', {CriterionKind::Word, token.toUpper()})) return criteria;
    const std::pair<const QString*, CriterionKind> counts[] = {{&whiteMen, CriterionKind::WhiteMen},
                                                               {&blackMen, CriterionKind::BlackMen},
                                                               {&allMen, CriterionKind::AllMen}};
    for (const auto& [field, kind] : counts) {
        const std::optional<QString> numbers = expandRanges(*field);
        if (!numbers) return criteria;
        if (!numbers->isEmpty() && !add(true, {kind, *numbers})) return criteria;
    }
    for (const auto& [token, sep] : criteriaTokens(notations)) {
        const std::optional<QString> place = notationToPlace(token, columns);
        if (place && !add(sep == u'+', {CriterionKind::Place, *place})) return criteria;
    }
    return criteria;
}

GameFields gameFields(WorkFile& workFile, int32_t firstRecord) {
    GameFields fields;
    int32_t number = firstRecord;
    std::optional<QByteArray> bytes = workFile.read(number);
    Record record = bytes ? parseRecord(*bytes) : Record{};
    while (bytes && record.kind == kHeaderKind) {
        fields.words += recordText(record.text).trimmed().toUpper();
        bytes = workFile.read(++number);
        record = bytes ? parseRecord(*bytes) : Record{};
    }
    if (!bytes || record.kind != kPositionKind) return fields;
    const QByteArray board = record.text.left(
        record.text.indexOf(' ') < 0 ? record.text.size() : record.text.indexOf(' '));
    int square = 0;
    int white = 0;
    int black = 0;
    for (const char c : board) {
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) {
            fields.places += QLatin1Char(c) + QString::number(square % 10000 + 10000).right(4);
            ++square;
            (c >= 'A' && c <= 'Z' ? white : black) += 1;
        } else if (c >= '1' && c <= '9') {
            square += c - '0';
        }
    }
    fields.whiteMen = numberForm(white);
    fields.blackMen = numberForm(black);
    fields.allMen = numberForm(white + black);
    return fields;
}

bool gamePasses(const Criteria& criteria, const GameFields& fields) {
    for (const Criterion& criterion : criteria.all)
        if (!holds(criterion, fields)) return false;
    if (criteria.any.isEmpty()) return true;
    for (const Criterion& criterion : criteria.any)
        if (holds(criterion, fields)) return true;
    return false;
}

GameIndex searchBook(WorkFile& workFile, const GameIndex& fullIndex, const Criteria& criteria,
                     const SearchProgress& progress) {
    GameIndex matches;
    const int total = static_cast<int>(fullIndex.size());
    for (int game = 0; game < total; ++game) {
        if (progress && game % 100 == 0) progress(static_cast<int>(matches.size()), game, total);
        const int32_t first = fullIndex[static_cast<size_t>(game)];
        if (gamePasses(criteria, gameFields(workFile, first))) matches.push_back(first);
    }
    return matches;
}

} // namespace marlith
