#include "position/fen.h"

#include <QRandomGenerator>
#include <QTest>
#include <vector>

using namespace marlith;

namespace {

const QString kPieces = QStringLiteral("pPnNbBrRqQkK");

struct Painted {
    int cell;
    int casa;
};

// Builds the text into a fresh vector whose painted slots are all invalid.
struct Run {
    VetArray vet{};
    Board board;
    QString pieces = kPieces;
    std::vector<Painted> painted;
    PieceCount count{-1, -1};
    bool complete = false;

    explicit Run(Board b = {8, 8}) : board(b) { ResetVet(vet, board); }
    Run& build(const QString& text) {
        painted.clear();
        complete = Build(
            text, vet, board, pieces,
            [this](int cell, int casa) {
                painted.push_back({cell, casa});
            },
            &count);
        return *this;
    }
    QString fen() const { return VetToFEN(vet, board, pieces); }
    int at(int i) const { return vet[i][1]; }
};

QString Repeat(const QString& s, int n) {
    QString out;
    for (int i = 0; i < n; ++i)
        out += s;
    return out;
}

} // namespace

class TstFen : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void sqrColor() {
        QCOMPARE(SqrColor(0, 8), int16_t(0));
        QCOMPARE(SqrColor(0, 9), int16_t(0));
        QCOMPARE(SqrColor(1, 8), int16_t(1));
        QCOMPARE(SqrColor(8, 8), int16_t(1));
        QCOMPARE(SqrColor(9, 9), int16_t(1));
        QCOMPARE(SqrColor(8, 9), int16_t(0));
        QCOMPARE(SqrColor(63, 8), int16_t(0));
        QCOMPARE(SqrColor(5, 0), int16_t(0)); // no columns: no division
    }

    void readingTheDialect_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("canonical");
        QTest::addColumn<int>("whites");
        QTest::addColumn<int>("blacks");
        QTest::newRow("empty") << ""
                               << "8/8/8/8/8/8/8/8" << 0 << 0;
        QTest::newRow("start") << "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"
                               << "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR" << 16 << 16;
        QTest::newRow("slash moves to no row") << "p/p"
                                               << "pp6/8/8/8/8/8/8/8" << 0 << 2;
        QTest::newRow("each digit alone") << "12"
                                          << "8/8/8/8/8/8/8/8" << 0 << 0;
        QTest::newRow("12 then piece") << "12K"
                                       << "3K4/8/8/8/8/8/8/8" << 1 << 0;
        QTest::newRow("counter prefix") << "(3x2)K"
                                        << "K7/8/8/8/8/8/8/8" << 1 << 0;
        QTest::newRow("second paren skipped") << "(3x2)K)k"
                                              << "Kk6/8/8/8/8/8/8/8" << 1 << 1;
        QTest::newRow("zero and blanks skipped") << "0 K 0"
                                                 << "K7/8/8/8/8/8/8/8" << 1 << 0;
        QTest::newRow("unknown letter dropped") << "KxK"
                                                << "KK6/8/8/8/8/8/8/8" << 2 << 0;
        QTest::newRow("further fields stored beyond the board") << "8/8/8/8/8/8/8/7K w - - 0 1"
                                                                << "8/8/8/8/8/8/8/7K" << 1 << 0;
        QTest::newRow("long row draws the next one up") << "ppppppppppK"
                                                        << "pppppppp/ppK5/8/8/8/8/8/8" << 1 << 10;
    }
    void readingTheDialect() {
        QFETCH(QString, text);
        QFETCH(QString, canonical);
        QFETCH(int, whites);
        QFETCH(int, blacks);
        Run run;
        run.build(text);
        QVERIFY(run.complete);
        QCOMPARE(run.fen(), canonical);
        QCOMPARE(run.count.whites, whites);
        QCOMPARE(run.count.blacks, blacks);
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
        run.build(Repeat(QStringLiteral("9"), 44) + QStringLiteral("5")); // 401 squares
        QVERIFY(run.complete);
        run.build(QStringLiteral("K") + Repeat(QStringLiteral("9"), 45));
        QVERIFY(!run.complete);
        QCOMPARE(run.at(0), 12);
        run.build(Repeat(QStringLiteral("k"), 402));
        QVERIFY(!run.complete);
        QCOMPARE(run.at(400), 11);
    }

    void writing_data() {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QList<int>>("pieces"); // square, content pairs
        QTest::addColumn<QString>("fen");
        QTest::newRow("8x8 empty") << 8 << 8 << QList<int>{} << "8/8/8/8/8/8/8/8";
        QTest::newRow("10x2 rook") << 2 << 10 << QList<int>{0, 8} << "R9/82";
        QTest::newRow("12 empty") << 1 << 12 << QList<int>{} << "84";
        QTest::newRow("9 empty") << 1 << 9 << QList<int>{} << "9";
        QTest::newRow("18 empty") << 1 << 18 << QList<int>{} << "882";
        QTest::newRow("nine then piece") << 1 << 12 << QList<int>{9, 12} << "81K2";
        QTest::newRow("run at row end then next row") << 2 << 9 << QList<int>{17, 1} << "9/8p";
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
        VetArray vet{};
        for (int n = 0; n + 1 < pieces.size(); n += 2)
            vet[pieces[n]][1] = static_cast<int16_t>(pieces[n + 1]);
        QCOMPARE(VetToFEN(vet, Board{rows, columns}, kPieces), fen);
    }

    // Whatever the shape, the written text reads back into the same squares.
    void roundTripOnEveryShape() {
        QRandomGenerator random(1234);
        const QList<QPair<int, int>> shapes{{8, 8},  {20, 20}, {1, 1},   {3, 7},
                                            {2, 10}, {1, 400}, {400, 1}, {13, 17}};
        for (const auto& [rows, columns] : shapes) {
            for (int trial = 0; trial < 20; ++trial) {
                Run source(Board{rows, columns});
                const int squares = rows * columns;
                for (int i = 0; i < squares; ++i)
                    source.vet[i][1] =
                        static_cast<int16_t>(random.bounded(3) == 0 ? random.bounded(1, 13) : 0);
                const QString text = source.fen();
                Run target(Board{rows, columns});
                target.build(text);
                QVERIFY(target.complete);
                for (int i = 0; i < squares; ++i)
                    QCOMPARE(target.at(i), int(source.vet[i][1]));
                QCOMPARE(target.fen(), text);
            }
        }
    }

    void buildPaintsOnlyWhatDiffers() {
        Run run;
        run.build(QString());
        QCOMPARE(run.painted.size(), size_t(64)); // after ResetVet every square
        QCOMPARE(run.painted[0].cell, 0);
        QCOMPARE(run.painted[0].casa, 1);
        QCOMPARE(run.painted[1].cell, 13); // bare square of colour 1
        run.build(QString());
        QVERIFY(run.painted.empty());
        run.build(QStringLiteral("1P"));
        QCOMPARE(run.painted.size(), size_t(1));
        QCOMPARE(run.painted[0].cell, 2 + 13); // white pawn on a dark square
        QCOMPARE(run.painted[0].casa, 2);
        run.build(QStringLiteral("P")); // the pawn moves one square left
        QCOMPARE(run.painted.size(), size_t(2));
    }

    void squaresBeyondTheBoardAreStoredNotPainted() {
        Run run(Board{2, 2});
        run.build(QStringLiteral("4KK"));
        for (const Painted& p : run.painted)
            QVERIFY(p.casa <= 4);
        QCOMPARE(run.at(4), 12);
        QCOMPARE(run.fen(), QStringLiteral("2/2"));
    }

    void resetVetInvalidatesThePaintedSlots() {
        Run run;
        run.build(QStringLiteral("K"));
        ResetVet(run.vet, run.board);
        for (int i = 0; i <= 64; ++i)
            QCOMPARE(run.vet[i][0], int16_t(-1));
        QCOMPARE(run.vet[65][0], int16_t(0));
        run.build(QStringLiteral("K"));
        QCOMPARE(run.painted.size(), size_t(64));
    }

    void fillRows_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("filled");
        QTest::newRow("empty row") << "/" << 8 << "8/";
        QTest::newRow("two more") << "8///" << 8 << "8/8/8/";
        QTest::newRow("twelve columns") << "/" << 12 << "93/";
        QTest::newRow("twenty columns") << "/" << 20 << "992/";
        QTest::newRow("pieces then slash") << "pp/" << 8 << "pp6/";
        QTest::newRow("full row untouched") << "pppppppp/" << 8 << "pppppppp/";
        QTest::newRow("too long completes to next multiple") << "ppppppppp/" << 8 << "ppppppppp7/";
        QTest::newRow("digits count") << "p3p/" << 8 << "p3p3/";
        QTest::newRow("complete rows stay") << "pp6/8/K/" << 8 << "pp6/8/K7/";
        QTest::newRow("counter dropped") << "(1x0)K/" << 8 << "K7/";
        QTest::newRow("unknown letters do not count") << "xK/" << 8 << "xK7/";
        QTest::newRow("no row length ends the pass") << "pp/x" << 0 << "pp";
        QTest::newRow("no row length, empty row") << "/" << 0 << "/";
    }
    void fillRows() {
        QFETCH(QString, text);
        QFETCH(int, columns);
        QFETCH(QString, filled);
        QCOMPARE(FillRows(text, columns, kPieces), filled);
    }

    void slashKeyCompletesAtTheCaret() {
        RowCompletion r = CompleteRow(QStringLiteral("pp"), 2, 8, kPieces);
        QCOMPARE(r.text, QStringLiteral("pp6/"));
        QCOMPARE(r.caret, 4);
        r = CompleteRow(QString(), 0, 8, kPieces);
        QCOMPARE(r.text, QStringLiteral("8/"));
        QCOMPARE(r.caret, 2);
        r = CompleteRow(QStringLiteral("8/"), 2, 8, kPieces);
        QCOMPARE(r.text, QStringLiteral("8/8/"));
        QCOMPARE(r.caret, 4);
        r = CompleteRow(QStringLiteral("Kpp"), 1, 8, kPieces); // "/" typed after K
        QCOMPARE(r.text, QStringLiteral("K7/pp"));
        QCOMPARE(r.caret, 3);
        r = CompleteRow(QStringLiteral("p"), 99, 8, kPieces); // caret beyond the text
        QCOMPARE(r.text, QStringLiteral("p7/"));
    }

    void endKeyCutsBehindTheLastPiece() {
        QCOMPARE(CutAfterLastPiece(QStringLiteral("pp6/8/8"), kPieces), QStringLiteral("pp"));
        QCOMPARE(CutAfterLastPiece(QStringLiteral("8/8"), kPieces), QString());
        QCOMPARE(CutAfterLastPiece(QStringLiteral("K7/x"), kPieces), QStringLiteral("K"));
        QCOMPARE(CutAfterLastPiece(QString(), kPieces), QString());
    }

    void otherLettersTranslateByIndex() {
        Run run;
        run.build(QStringLiteral("kK"));
        QCOMPARE(VetToFEN(run.vet, run.board, QStringLiteral("sSaAbBcCdDeE")),
                 QStringLiteral("eE6/8/8/8/8/8/8/8"));
        // Another row length: the same squares fall into other rows.
        QCOMPARE(VetToFEN(run.vet, Board{16, 4}, kPieces),
                 QStringLiteral("kK2/4/4/4/4/4/4/4/4/4/4/4/4/4/4/4"));
    }
};

QTEST_APPLESS_MAIN(TstFen)
#include "tst_fen.moc"
