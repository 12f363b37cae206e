#include "books/book_search.h"

#include <QTemporaryDir>
#include <QTest>
#include <algorithm>

using namespace marlith;

namespace {

using Tokens = QList<std::pair<QString, QChar>>;

// Three games: headers with words, then the first position.
struct Book {
    QTemporaryDir dir;
    WorkFile work;
    GameIndex index;
    Book() {
        work.open(dir.path() + QStringLiteral("/w.tmp"));
        const QList<QList<QByteArray>> games = {
            {"[Event \"Paul Keres memorial\"]", "[Date \"2000\"]", "Ek7/8/8/8/8/8/8/K7 w"},
            {"[Event \"Other\"]", "E4k3/8/8/8/4P3/8/8/4K3"},
            {"E(2x1)r7/8/8/8/8/8/9/ZK6"}};
        int32_t number = 0;
        for (int game = 0; game < games.size(); ++game) {
            index.push_back(number + 1);
            for (const QByteArray& line : games[game]) {
                const char kind = line.startsWith('[') ? '[' : 'E';
                work.append(makeRecord(kind, game + 1, kind == 'E' ? line.mid(1) : line));
                ++number;
            }
        }
        work.append(endMark());
        work.flush();
    }
    // The numbers of the games that pass, "1 3".
    QString search(const Criteria& criteria) {
        QStringList games;
        for (const int32_t first : searchBook(work, index, criteria))
            games << QString::number(std::find(index.begin(), index.end(), first) - index.begin() +
                                     1);
        return games.join(u' ');
    }
};

// The five boxes of the search, "words|white|black|all|notations".
Criteria criteria(const char* boxes) {
    const QStringList b = QString::fromLatin1(boxes).split(u'|');
    return parseCriteria(b[0], b[1], b[2], b[3], b[4], 8);
}

} // namespace

class TstBookSearch : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // "+" makes a token one that must hold; the blank behind a plus sign
    // wins; double quotes hold a blank.
    void tokens() {
        QCOMPARE(criteriaTokens(QStringLiteral("A+B")), Tokens({{"A", u' '}, {"B", u'+'}}));
        QCOMPARE(criteriaTokens(QStringLiteral("A + B")), Tokens({{"A", u' '}, {"B", u' '}}));
        QCOMPARE(criteriaTokens(QStringLiteral("\"Paul Keres\", 2000")),
                 Tokens({{"Paul Keres", u' '}, {"2000", u' '}}));
        QCOMPARE(criteriaTokens(QStringLiteral("  ,, ")), Tokens());
    }

    // Ranges are bounded by 400 and 32767 games; places count the counter's digits.
    void numbersAndPlaces() {
        const std::pair<const char*, const char*> ranges[] = {
            {"1-6, 9", "#0001#0002#0003#0004#0005#0006#0009"},
            {"6-1", "#0001#0002#0003#0004#0005#0006"},
            {"1 - 6", "#0001#0006"},
            {"399-32767, 2, 1-2", "#0399#0400#0002#0001"},
            {"x", ""},
            {"1-40000", "none"}};
        for (const auto& [text, numbers] : ranges)
            QCOMPARE(expandRanges(QLatin1String(text)).value_or("none"), QLatin1String(numbers));
        const std::tuple<const char*, int, const char*> places[] = {
            {"Ke1", 8, "K0060"},  {"ke8", 8, "k0004"},  {"e4", 8, "P0036"}, {"a9", 8, "P9992"},
            {"a10", 10, "P0000"}, {"Qc3", 10, "Q0072"}, {"K", 8, "none"}};
        for (const auto& [token, columns, place] : places)
            QCOMPARE(notationToPlace(QLatin1String(token), columns).value_or("none"),
                     QLatin1String(place));
    }

    // Words in the headers, counts of men, pieces on squares; a count of 0
    // restricts nothing; the counter's digits count as squares.
    void gamesThatPass() {
        Book book;
        const std::pair<const char*, const char*> cases[] = {{"paul||||", "1"},
                                                             {"\"keres memorial\"||||", "1"},
                                                             {"2000, other||||", "1 2"},
                                                             {"2000+other||||", ""},
                                                             {"|2|||", "2 3"},
                                                             {"|0||1-2|", "1"},
                                                             {"||||Ke1", "2"},
                                                             {"||||Ke1,ka8", "1 2"},
                                                             {"||||e4+Ke1", "2"},
                                                             {"||||a9", ""},
                                                             {"||2||", "3"}};
        for (const auto& [boxes, games] : cases)
            QCOMPARE(book.search(criteria(boxes)), QLatin1String(games));
        QVERIFY(criteria("|0|||").isEmpty());
        QCOMPARE(gameFields(book.work, book.index[2]).places, "x0002r0004Z0061K0062");
    }

    // A 31st entry ends the reading.
    void boundsOfTheCriteria() {
        QString words;
        for (int i = 0; i < 31; ++i)
            words += QStringLiteral("w%1,").arg(i);
        const Criteria full = parseCriteria(words, QStringLiteral("3"), {}, {}, {}, 8);
        QVERIFY(full.any.size() == 30 && full.all.isEmpty());
    }
};

QTEST_APPLESS_MAIN(TstBookSearch)
#include "tst_book_search.moc"
