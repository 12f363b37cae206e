#include "styles/style.h"

#include <QTest>
#include <utility>

using namespace marlith;

class TstStyle : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void resetKeepsNameAndSetsDefaults() {
        Style style;
        style.StyleName = QStringLiteral("Mine");
        style.PiecesList = QStringLiteral("xX");
        resetStyle(style);
        QCOMPARE(style.StyleName, QStringLiteral("Mine"));
        // Filled in by the reset, not by the record's own defaults.
        QCOMPARE(style.PiecesList, QLatin1String(kDefaultPiecesList));
        QCOMPARE(style.EnglishNotation, style.PiecesList);
        QCOMPARE(style.StartPos, QLatin1String(kDefaultStartPos));
    }

    void twipToPix() {
        // A margin of 0.1 pixel: 224 twips are still 15 pixels, 223 no longer.
        const std::pair<double, int> cases[] = {
            {225, 15}, {224, 15}, {223, 14}, {32760, 2184}, {-7, -1}};
        for (const auto& [twips, pixels] : cases) {
            QCOMPARE(twipsToPixels(twips), double(pixels));
            QCOMPARE(twipsToWholePixels(twips), pixels);
        }
    }

    void boardSquaresRefusesWhatTheVectorCannotHold() {
        QCOMPARE(boardSquares(20, 20), 400);
        QCOMPARE(boardSquares(21, 20), 64);
        QCOMPARE(boardSquares(0, 8), 0);
    }
};

QTEST_APPLESS_MAIN(TstStyle)
#include "tst_style.moc"
