#include "books/book_append.h"

#include <QTest>

using namespace marlith;

namespace {

const Board kBoard{8, 8};
const Notation kNotation{QStringLiteral("pPnNbBrRqQkK"), QStringLiteral("pPnNbBrRqQkK")};

GameTags tags(const char* event, const char* result) {
    GameTags t;
    t[0] = QLatin1String(event);
    t[6] = QLatin1String(result);
    return t;
}

} // namespace

class TstBookAppend : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // The lines a game adds to a book, as the scanners read them.
    void linesOfTheGame() {
        const QStringList fromStart{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 0",
                                    "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - - 0 0",
                                    "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR"};
        const std::tuple<AddedGame, QByteArray, int> cases[] = {
            {fenGame(tags("E", ""), {"k7/8 w", "(2x1)K7/8"}),
             "\r\n[Event \"E\"]\r\n\r\nk7/8 w\r\n(2x1)K7/8\r\n", 3},
            {fenGame(tags("", ""), {"k7/8"}), "\r\n\r\nk7/8\r\n", 1},
            {pgnGame(tags("", "1-0"), fromStart, kBoard, kNotation),
             "\r\n[Result \"1-0\"]\r\n\r\n1.e4 e5  1-0\r\n", 4},
            {pgnGame(tags("E", ""),
                     {"(1x1)k7/8/8/8/8/8/8/K7 b", "8/k7/8/8/8/8/8/K7", "8/k7/8/8/8/8/K7/8"}, kBoard,
                     kNotation),
             "\r\n[Event \"E\"]\r\n[SetUp \"1\"]\r\n[FEN \"k7/8/8/8/8/8/8/K7 b\"]\r\n\r\n"
             "1...Ka7 2.Ka2  *\r\n",
             4},
            {pgnGame(tags("", ""), {"k7/8/8/8/8/8/8/K7"}, kBoard, kNotation),
             "\r\n[SetUp \"1\"]\r\n[FEN \"k7/8/8/8/8/8/8/K7\"]\r\n\r\n *\r\n", 1},
        };
        for (const auto& [game, text, records] : cases) {
            QCOMPARE(game.bookText, text);
            QCOMPARE(game.records.size(), records);
        }
    }
};

QTEST_APPLESS_MAIN(TstBookAppend)
#include "tst_book_append.moc"
