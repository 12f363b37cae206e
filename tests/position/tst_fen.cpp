#include "position/fen.h"

#include <QRandomGenerator>
#include <QTest>
#include <iterator>
#include <vector>

using namespace marlith;

namespace {

const QString kPieces = QStringLiteral("pPnNbBrRqQkK");

struct Painted {
    int cell, oneBasedSquare;
};

// Builds the text into a fresh vector whose painted slots are all invalid.
struct Run {
    SquareVector squareVector{};
    Board board;
    QString pieces = kPieces;
    std::vector<Painted> painted;
    PieceCount count{-1, -1};
    bool complete = false;

    explicit Run(Board b = {8, 8}) : board(b) { invalidatePainted(squareVector, board); }
    Run& build(const QString& text) {
        painted.clear();
        const auto paint = [this](int cell, int oneBasedSquare) {
            painted.push_back({cell, oneBasedSquare});
        };
        complete = buildBoard(text, squareVector, board, pieces, paint, &count);
        return *this;
    }
    QString fen() const { return squaresToFen(squareVector, board, pieces); }
    int at(int i) const { return squareVector[i][1]; }
};

struct ReadCase {
    const char *name, *text, *canonical;
    int whites, blacks;
};

const ReadCase kReads[] = {
    {"slash moves to no row", "p/p", "pp6/8/8/8/8/8/8/8", 0, 2},
    {"12 then piece", "12K", "3K4/8/8/8/8/8/8/8", 1, 0},
    // The counter prefix ends at the first ")".
    {"second paren skipped", "(3x2)K)k", "Kk6/8/8/8/8/8/8/8", 1, 1},
    {"zero, blanks and unknown letters skipped", "0 KxK 0", "KK6/8/8/8/8/8/8/8", 2, 0},
    {"further fields stored beyond the board", "8/8/8/8/8/8/8/7K w - - 0 1", "8/8/8/8/8/8/8/7K", 1,
     0},
    {"long row draws the next one up", "ppppppppppK", "pppppppp/ppK5/8/8/8/8/8/8", 1, 10},
};

} // namespace

class TstFen : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void sqrColor() {
        // Every row starts anew: with 9 columns, squares 8 and 9 share a colour.
        const int cases[][3] = {{1, 8, 1}, {8, 8, 1}, {63, 8, 0}, {8, 9, 0}, {9, 9, 1}, {5, 0, 0}};
        for (const auto& [square, columns, colour] : cases)
            QCOMPARE(squareColor(square, columns), int16_t(colour));
    }

    void readingTheDialect_data() {
        QTest::addColumn<int>("index");
        for (int n = 0; n < int(std::size(kReads)); ++n)
            QTest::newRow(kReads[n].name) << n;
    }
    void readingTheDialect() {
        QFETCH(int, index);
        const ReadCase& c = kReads[index];
        Run run;
        QVERIFY(run.build(QString::fromLatin1(c.text)).complete);
        QCOMPARE(run.fen(), QString::fromLatin1(c.canonical));
        QCOMPARE(run.count.whites, c.whites);
        QCOMPARE(run.count.blacks, c.blacks);
    }

    void firstOccurrenceAndUnreachableDigits() {
        Run run;
        run.pieces = QStringLiteral("pP1p*");
        run.build(QStringLiteral("p1*"));
        QCOMPARE(run.at(0), 1); // first "p" of the list
        QCOMPARE(run.at(1), 0); // "1" is a digit, never the piece
        QCOMPARE(run.at(2), 5);
        QCOMPARE(run.count.whites, 1); // a sign without case counts as white
        QCOMPARE(run.count.blacks, 1);
    }

    void textPastTheVectorStopsWithoutCounter() {
        Run run;
        QVERIFY(run.build(QString(44, QLatin1Char('9')) + QStringLiteral("5")).complete); // 401
        QVERIFY(!run.build(QStringLiteral("K") + QString(45, QLatin1Char('9'))).complete);
        QCOMPARE(run.at(0), 12);
        QVERIFY(!run.build(QString(402, QLatin1Char('k'))).complete);
        QCOMPARE(run.at(400), 11);
    }

    void writing_data() {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QList<int>>("pieces"); // square, content pairs
        QTest::addColumn<QString>("fen");
        // A run longer than 8 is cut into 8 and the rest, unless it ends the row.
        QTest::newRow("10x2 rook") << 2 << 10 << QList<int>{0, 8} << "R9/82";
        QTest::newRow("18 empty") << 1 << 18 << QList<int>{} << "882";
        QTest::newRow("nine then piece") << 1 << 12 << QList<int>{9, 12} << "81K2";
        QTest::newRow("sheet cell of colour 1 folds") << 1 << 8 << QList<int>{1, 15} << "1P6";
        QTest::newRow("empty of colour 1 folds") << 1 << 8 << QList<int>{1, 13, 2, 1} << "2p5";
        QTest::newRow("negative is empty") << 1 << 8 << QList<int>{0, -1} << "8";
        QTest::newRow("one column") << 3 << 1 << QList<int>{1, 2} << "1/P/1";
        QTest::newRow("no squares") << 0 << 8 << QList<int>{} << "";
    }
    void writing() {
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(QList<int>, pieces);
        QFETCH(QString, fen);
        SquareVector squareVector{};
        for (int n = 0; n + 1 < pieces.size(); n += 2)
            squareVector[pieces[n]][1] = static_cast<int16_t>(pieces[n + 1]);
        QCOMPARE(squaresToFen(squareVector, Board{rows, columns}, kPieces), fen);
    }

    // Whatever the shape, the written text reads back into the same squares.
    void roundTripOnEveryShape() {
        QRandomGenerator random(1234);
        for (const auto& [rows, columns] :
             {std::pair{8, 8}, {20, 20}, {1, 1}, {3, 7}, {2, 10}, {1, 400}, {400, 1}, {13, 17}}) {
            for (int trial = 0; trial < 20; ++trial) {
                Run source(Board{rows, columns}), target(Board{rows, columns});
                for (int i = 0; i < rows * columns; ++i)
                    source.squareVector[i][1] =
                        int16_t(random.bounded(3) == 0 ? random.bounded(1, 13) : 0);
                QVERIFY(target.build(source.fen()).complete);
                QCOMPARE(target.fen(), source.fen());
                for (int i = 0; i < rows * columns; ++i)
                    QCOMPARE(target.at(i), int(source.squareVector[i][1]));
            }
        }
    }

    void buildPaintsOnlyWhatDiffers() {
        Run run;
        run.build(QString());
        QCOMPARE(run.painted.size(), size_t(64)); // after invalidatePainted every square
        QCOMPARE(run.painted[1].cell, 13);        // bare square of colour 1
        QCOMPARE(run.painted[1].oneBasedSquare, 2);
        QVERIFY(run.build(QString()).painted.empty());
        run.build(QStringLiteral("1P"));
        QCOMPARE(run.painted.size(), size_t(1));
        QCOMPARE(run.painted[0].cell, 2 + 13); // white pawn on a dark square
        QCOMPARE(run.painted[0].oneBasedSquare, 2);
        QCOMPARE(run.build(QStringLiteral("P")).painted.size(), size_t(2));

        // invalidatePainted invalidates the painted slots up to one past the board.
        invalidatePainted(run.squareVector, run.board);
        QCOMPARE(run.squareVector[64][0], int16_t(-1));
        QCOMPARE(run.squareVector[65][0], int16_t(0));
        QCOMPARE(run.build(QStringLiteral("P")).painted.size(), size_t(64));
    }

    void squaresBeyondTheBoardAreStoredNotPainted() {
        Run run(Board{2, 2});
        run.build(QStringLiteral("4KK"));
        for (const Painted& p : run.painted)
            QVERIFY(p.oneBasedSquare <= 4);
        QCOMPARE(run.at(4), 12);
        QCOMPARE(run.fen(), QStringLiteral("2/2"));
    }

    void fillRows_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("filled");
        QTest::newRow("two more") << "8///" << 8 << "8/8/8/";
        QTest::newRow("twenty columns") << "/" << 20 << "992/";
        QTest::newRow("full row untouched") << "pppppppp/" << 8 << "pppppppp/";
        QTest::newRow("too long completes to next multiple") << "ppppppppp/" << 8 << "ppppppppp7/";
        QTest::newRow("digits count") << "p3p/" << 8 << "p3p3/";
        QTest::newRow("counter dropped") << "(1x0)K/" << 8 << "K7/";
        QTest::newRow("unknown letters do not count") << "xK/" << 8 << "xK7/";
        QTest::newRow("no row length ends the pass") << "pp/x" << 0 << "pp";
        QTest::newRow("no row length, empty row") << "/" << 0 << "/";
    }
    void fillRows() {
        QFETCH(QString, text);
        QFETCH(int, columns);
        QFETCH(QString, filled);
        QCOMPARE(marlith::fillRows(text, columns, kPieces), filled);
    }

    void slashKeyCompletesAtTheCaret() {
        // "/" typed at the caret; a caret beyond the text stands at its end.
        const struct {
            const char *text, *completed;
            int caret, after;
        } cases[] = {
            {"pp", "pp6/", 2, 4}, {"", "8/", 0, 2}, {"Kpp", "K7/pp", 1, 3}, {"p", "p7/", 99, 3}};
        for (const auto& c : cases) {
            const RowCompletion r = completeRow(QString::fromLatin1(c.text), c.caret, 8, kPieces);
            QCOMPARE(r.text, QString::fromLatin1(c.completed));
            QCOMPARE(r.caret, c.after);
        }
    }

    void endKeyCutsBehindTheLastPiece() {
        QCOMPARE(cutAfterLastPiece(QStringLiteral("pp6/8/8"), kPieces), QStringLiteral("pp"));
        QCOMPARE(cutAfterLastPiece(QStringLiteral("8/8"), kPieces), QString());
        QCOMPARE(cutAfterLastPiece(QStringLiteral("K7/x"), kPieces), QStringLiteral("K"));
    }
};

QTEST_APPLESS_MAIN(TstFen)
#include "tst_fen.moc"
