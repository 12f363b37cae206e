#include "styles/style.h"

#include <QTest>

using namespace marlith;

class TstStyle : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void resetKeepsNameAndSetsDefaults() {
        Style style;
        style.StyleName = QStringLiteral("Mine");
        style.BorderWidth = 12;
        style.PiecesList = QStringLiteral("xX");
        style.SqrHTab = 300;
        style.WndWidth = 5000;
        ResetStyle(style);
        QCOMPARE(style.StyleName, QStringLiteral("Mine"));
        QCOMPARE(style.BorderWidth, int16_t(8));
        QCOMPARE(style.BorderHeight, int16_t(8));
        QCOMPARE(style.PiecesList, QStringLiteral("pPnNbBrRqQkK"));
        QCOMPARE(style.EnglishNotation, style.PiecesList);
        QCOMPARE(style.SqrWidth, int16_t(225));
        QCOMPARE(style.SqrHeight, int16_t(225));
        QCOMPARE(style.SqrHTab, int16_t(0));
        QCOMPARE(style.WndWidth, 0);
        QCOMPARE(style.FontName, QStringLiteral("MS Sans Serif"));
        QCOMPARE(style.FontPos, QStringLiteral("Left Up"));
        QCOMPARE(style.FontSize, int16_t(8));
        QCOMPARE(style.StartPos, QStringLiteral("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"));
    }

    void twipToPix_data() {
        QTest::addColumn<double>("twips");
        QTest::addColumn<double>("pixels");
        QTest::newRow("exact") << 225.0 << 15.0;
        QTest::newRow("just under") << 224.0 << 15.0;
        QTest::newRow("margin exhausted") << 223.0 << 14.0;
        QTest::newRow("239 is 16") << 239.0 << 16.0;
        QTest::newRow("238 is 15") << 238.0 << 15.0;
        QTest::newRow("zero") << 0.0 << 0.0;
        QTest::newRow("largest length") << 32760.0 << 2184.0;
        QTest::newRow("negative rounds down") << -7.0 << -1.0;
    }
    void twipToPix() {
        QFETCH(double, twips);
        QFETCH(double, pixels);
        QCOMPARE(TwipToPix(twips), pixels);
    }

    void pixelsRoundTrip() {
        for (int pixels = 0; pixels <= 2184; ++pixels)
            QCOMPARE(TwipToPixInt(pixels * kTwipsPerPixel), pixels);
    }

    void boardSquaresRefusesWhatTheVectorCannotHold() {
        QCOMPARE(BoardSquares(20, 20), 400);
        QCOMPARE(BoardSquares(21, 20), 64);
        QCOMPARE(BoardSquares(-8, -8), 64);
        QCOMPARE(BoardSquares(0, 8), 0);
        QCOMPARE(BoardSquares(32767, 32767), 64);
    }
};

QTEST_APPLESS_MAIN(TstStyle)
#include "tst_style.moc"
