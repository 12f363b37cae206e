#include "position/fen.h"

#include <QRandomGenerator>
#include <QTest>
#include <iterator>
#include <vector>

using namespace marlith;

namespace {

const QString kPieces = QStringLiteral("pPnNbBrRqQkK");

// Builds the text into a fresh vector whose painted slots are all invalid.
struct Run {
    SquareVector squareVector{};
    Board board;
    QString pieces = kPieces;
    std::vector<std::pair<int, int>> painted; // cell, square counted from 1
    PieceCount count{-1, -1};
    bool complete = false;

    explicit Run(Board b = {8, 8}) : board(b) { invalidatePainted(squareVector, board); }
    Run& build(const QString& text) {
        painted.clear();
        const auto paint = [this](int cell, int oneBasedSquare) {
            painted.emplace_back(cell, oneBasedSquare);
        };
        complete = buildBoard(text, squareVector, board, pieces, paint, &count);
        return *this;
    }
    QString fen() const { return squaresToFen(squareVector, board, pieces); }
    int at(int i) const { return squareVector[i].wanted; }
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
    {"fields stored beyond the board", "8/8/8/8/8/8/8/7K w - - 0 1", "8/8/8/8/8/8/8/7K", 1, 0},
    {"long row draws the next one up", "ppppppppppK", "pppppppp/ppK5/8/8/8/8/8/8", 1, 10},
};

} // namespace

class TstFen : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void squareColorStartsEachRowAnew() {
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
        QCOMPARE(std::pair(run.count.whites, run.count.blacks), std::pair(c.whites, c.blacks));
    }

    void textPastTheVectorStopsWithoutCounter() {
        Run run;
        QVERIFY(run.build(QString(44, QLatin1Char('9')) + QStringLiteral("5")).complete); // 401
        QVERIFY(!run.build(QStringLiteral("K") + QString(45, QLatin1Char('9'))).complete);
        QCOMPARE(run.at(0), 12);
        QVERIFY(!run.build(QString(402, QLatin1Char('k'))).complete);
        QCOMPARE(run.at(400), 11);
    }

    void writing() {
        // A run longer than 8 is cut into 8 and the rest, unless it ends the
        // row; sheet cells of colour 1 fold, a negative content is empty. A
        // board of more than 400 squares has 64: the unfilled last row drops
        // its run. The game scanner's byte text is the same.
        const struct {
            int rows, columns, square, content;
            const char* fen;
        } cases[] = {{2, 10, 0, 8, "R9/82"}, {1, 12, 9, 12, "81K2"},
                     {1, 8, 1, 15, "1P6"},   {1, 8, 1, 13, "8"},
                     {1, 8, 0, -1, "8"},     {30, 30, 62, 12, "8886/8886/2K"}};
        for (const auto& [rows, columns, square, content, fen] : cases) {
            SquareVector squareVector{};
            squareVector[square].wanted = int16_t(content);
            QCOMPARE(squaresToFen(squareVector, Board{rows, columns}, kPieces),
                     QString::fromLatin1(fen));
            QByteArray bytes = "junk";
            squaresToFen(squareVector, Board{rows, columns}, kPieces.toLatin1(), bytes);
            QCOMPARE(bytes, QByteArray(fen));
        }
    }

    // Whatever the shape, the written text reads back into the same squares.
    void roundTripOnEveryShape() {
        QRandomGenerator random(1234);
        for (const auto& [rows, columns] :
             {std::pair{8, 8}, {20, 20}, {1, 1}, {3, 7}, {2, 10}, {1, 400}, {400, 1}, {13, 17}}) {
            for (int trial = 0; trial < 20; ++trial) {
                Run source(Board{rows, columns}), target(Board{rows, columns});
                for (int i = 0; i < rows * columns; ++i)
                    source.squareVector[i].wanted =
                        int16_t(random.bounded(3) == 0 ? random.bounded(1, 13) : 0);
                QVERIFY(target.build(source.fen()).complete);
                QCOMPARE(target.fen(), source.fen());
            }
        }
    }

    void buildPaintsOnlyWhatDiffers() {
        Run run;
        // After invalidatePainted every square is painted, then only changes.
        QCOMPARE(run.build(QString()).painted.size(), size_t(64));
        QVERIFY(run.build(QString()).painted.empty());
        run.build(QStringLiteral("1P"));
        QCOMPARE(run.painted[0], std::pair(2 + 13, 2)); // white pawn on a dark square
        // The painted slots are invalidated up to one past the board.
        invalidatePainted(run.squareVector, run.board);
        QCOMPARE(run.squareVector[65].painted, int16_t(0));
        QCOMPARE(run.build(QStringLiteral("P")).painted.size(), size_t(64));
    }

    // 'F' fills the rows, 'E' (End) cuts behind the last piece, '/' completes
    // the row at the caret "^".
    void textKeys_data() {
        QTest::addColumn<char>("key");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("result");
        QTest::newRow("fill two more") << 'F' << "8///" << 8 << "8/8/8/";
        QTest::newRow("fill twenty columns") << 'F' << "/" << 20 << "992/";
        QTest::newRow("fill past the row") << 'F' << "ppppppppp/" << 8 << "ppppppppp7/";
        QTest::newRow("fill digits count") << 'F' << "p3p/" << 8 << "p3p3/";
        QTest::newRow("fill without row length ends") << 'F' << "pp/x" << 0 << "pp";
        QTest::newRow("slash at the end") << '/' << "pp^" << 8 << "pp6/^";
        QTest::newRow("slash inside") << '/' << "K^pp" << 8 << "K7/^pp";
        QTest::newRow("end skips unknown letters") << 'E' << "K7/x" << 8 << "K";
    }
    void textKeys() {
        QFETCH(char, key);
        QFETCH(QString, text);
        QFETCH(int, columns);
        QFETCH(QString, result);
        QString got =
            key == 'F' ? fillRows(text, columns, kPieces) : cutAfterLastPiece(text, kPieces);
        if (key == '/') {
            const auto caret = int(text.indexOf(QLatin1Char('^')));
            const RowCompletion r =
                completeRow(text.remove(QLatin1Char('^')), caret, columns, kPieces);
            got = QString(r.text).insert(r.caret, QLatin1Char('^'));
        }
        QCOMPARE(got, result);
    }
};

QTEST_APPLESS_MAIN(TstFen)
#include "tst_fen.moc"
