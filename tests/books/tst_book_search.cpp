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
            {"E(2x1)r7/8/8/8/8/8/8/RK6"}};
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

Criteria criteria(const char* words, const char* white, const char* black, const char* all,
                  const char* notations) {
    return parseCriteria(QLatin1String(words), QLatin1String(white), QLatin1String(black),
                         QLatin1String(all), QLatin1String(notations), 8);
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

    void numbersAndPlaces() {
        const std::pair<const char*, const char*> ranges[] = {
            {"1-6, 9", "#0001#0002#0003#0004#0005#0006#0009"},
            {"6-1", "#0001#0002#0003#0004#0005#0006"},
            {"1 - 6", "#0001#0006"},
            {"399-32767, 2, 1-2", "#0399#0400#0002#0001"},
            {"x", ""}};
        for (const auto& [text, numbers] : ranges)
            QCOMPARE(expandRanges(QLatin1String(text)), QString::fromLatin1(numbers));
        QCOMPARE(expandRanges(QStringLiteral("1-40000")), std::nullopt);

        const std::tuple<const char*, int, const char*> places[] = {
            {"Ke1", 8, "K0060"}, {"ke8", 8, "k0004"},  {"e4", 8, "P0036"},
            {"a9", 8, "P9992"},  {"a10", 10, "P0000"}, {"Qc3", 10, "Q0072"}};
        for (const auto& [token, columns, place] : places)
            QCOMPARE(notationToPlace(QLatin1String(token), columns), QString::fromLatin1(place));
        QCOMPARE(notationToPlace(QStringLiteral("K"), 8), std::nullopt);
    }

    // Words in the headers, counts of men, pieces on squares; a count of 0
    // restricts nothing; the counter's digits count as squares.
    void gamesThatPass() {
        Book book;
        const std::pair<Criteria, const char*> cases[] = {
            {criteria("paul", "", "", "", ""), "1"},
            {criteria("\"keres memorial\"", "", "", "", ""), "1"},
            {criteria("2000, other", "", "", "", ""), "1 2"},
            {criteria("2000+other", "", "", "", ""), ""},
            {criteria("", "2", "", "", ""), "2 3"},
            {criteria("", "0", "", "1-2", ""), "1"},
            {criteria("", "", "", "", "Ke1"), "2"},
            {criteria("", "", "", "", "Ke1,ka8"), "1 2"},
            {criteria("", "", "", "", "e4+Ke1"), "2"},
            {criteria("", "", "", "", "a9"), ""},
            {criteria("", "", "2", "", ""), "3"},
        };
        for (const auto& [wanted, games] : cases)
            QCOMPARE(book.search(wanted), QString::fromLatin1(games));
        QVERIFY(criteria("", "0", "", "", "").isEmpty());
    }

    // A 31st entry ends the reading.
    void boundsOfTheCriteria() {
        QString words;
        for (int i = 0; i < 31; ++i)
            words += QStringLiteral("w%1,").arg(i);
        const Criteria full = parseCriteria(words, QStringLiteral("3"), {}, {}, {}, 8);
        QCOMPARE(full.any.size(), 30);
        QVERIFY(full.all.isEmpty());
    }
};

QTEST_APPLESS_MAIN(TstBookSearch)
#include "tst_book_search.moc"
