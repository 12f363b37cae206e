#include "position/fen.h"

#include <QRandomGenerator>
#include <QTest>
#include <vector>

using namespace marlith;

namespace {

const QString kPieces = QStringLiteral("pPnNbBrRqQkK");

// Builds the text into a vector whose painted slots are all invalid, noting
// the cells painted (cell, square counted from 1).
struct Run {
    SquareVector squareVector{};
    Board board;
    std::vector<std::pair<int, int>> painted;
    PieceCount count{-1, -1};

    explicit Run(Board b = {8, 8}) : board(b) { invalidatePainted(squareVector, board); }
    bool build(const QString& text) {
        painted.clear();
        return buildBoard(
            text, squareVector, board, kPieces,
            [this](int cell, int square) { painted.emplace_back(cell, square); }, &count);
    }
    QString fen() const { return squaresToFen(squareVector, board, kPieces); }
};

} // namespace

class TstFen : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void squareColorStartsEachRowAnew() {
        // With 9 columns, squares 8 and 9 share a colour.
        const int cases[][3] = {{1, 8, 1}, {8, 8, 1}, {63, 8, 0}, {8, 9, 0}, {9, 9, 1}, {5, 0, 0}};
        for (const auto& [square, columns, colour] : cases)
            QCOMPARE(squareColor(square, columns), int16_t(colour));
    }

    void readingTheDialect_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("read"); // the text written back, and whites+blacks counted
        const auto row = [](const char* name, const char* text, const char* read) {
            QTest::newRow(name) << QString(text) << QString(read);
        };
        row("slash moves to no row", "p/p", "pp6/8/8/8/8/8/8/8 0+2");
        row("12 then piece", "12K", "3K4/8/8/8/8/8/8/8 1+0");
        row("counter ends at the first )", "(3x2)K)k", "Kk6/8/8/8/8/8/8/8 1+1");
        row("zero, blanks, unknown skipped", "0 KxK 0", "KK6/8/8/8/8/8/8/8 2+0");
        row("fields beyond the board", "8/8/8/8/8/8/8/7K w - - 0 1", "8/8/8/8/8/8/8/7K 1+0");
        row("long row runs on", "ppppppppppK", "pppppppp/ppK5/8/8/8/8/8/8 1+10");
    }
    void readingTheDialect() {
        QFETCH(QString, text);
        Run run;
        QVERIFY(run.build(text));
        QTEST(run.fen() + QStringLiteral(" %1+%2").arg(run.count.whites).arg(run.count.blacks),
              "read");
    }

    void textPastTheVectorStopsWithoutCounter() {
        Run run;
        QVERIFY(run.build(QString(44, u'9') + u'5')); // 401
        QVERIFY(!run.build(u'K' + QString(45, u'9')));
        QCOMPARE(run.squareVector[0].wanted, 12);
        QVERIFY(!run.build(QString(402, u'k')));
        QCOMPARE(run.squareVector[400].wanted, 11);
    }

    void writing() {
        // A run longer than 8 is cut into 8 and the rest, unless it ends the row; sheet cells of
        // colour 1 fold, a negative content is empty. A board of more than 400 squares has 64: the
        // unfilled last row drops its run. The game scanner's byte text is the same.
        const std::tuple<int, int, int, int, const char*> cases[] = {
            {2, 10, 0, 8, "R9/82"}, {1, 12, 9, 12, "81K2"}, {1, 8, 1, 15, "1P6"},
            {1, 8, 1, 13, "8"},     {1, 8, 0, -1, "8"},     {30, 30, 62, 12, "8886/8886/2K"}};
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
                QVERIFY(target.build(source.fen()));
                QCOMPARE(target.fen(), source.fen());
            }
        }
    }

    // After invalidatePainted (up to one past the board) every square is
    // painted, then only what changed.
    void buildPaintsOnlyWhatDiffers() {
        Run run;
        run.build(QString());
        QCOMPARE(run.painted.size(), size_t(64));
        run.build(QStringLiteral("1P"));
        QCOMPARE(run.painted, (std::vector{std::pair(2 + 13, 2)})); // white pawn, dark square
        invalidatePainted(run.squareVector, run.board);
        QCOMPARE(run.squareVector[65].painted, int16_t(0));
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
        QTest::newRow("fill digits count, seven columns") << 'F' << "p3p/" << 7 << "p3p2/";
        QTest::newRow("fill one column") << 'F' << "p//" << 1 << "p/1/";
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
