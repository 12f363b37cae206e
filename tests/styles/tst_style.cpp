#include "styles/style.h"
#include "styles/style_block.h"
#include "styles/style_form.h"

#include <QTest>
#include <utility>

using namespace marlith;

class TstStyle : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A margin of 0.1 pixel: 224 twips are still 15 pixels, 223 no longer.
    void twipsBecomePixelsWithATenthToSpare() {
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
        QCOMPARE(boardSquares(8, -1), 64);
    }

    // What the Style window shows of a style gives the same style back, given
    // the sheet that the style was made for.
    void theControlsGiveTheStyleBack() {
        Style plain;
        resetStyle(plain);
        plain.SqrHTab = plain.SqrWidth;
        plain.SqrVTab = plain.SqrHeight;
        Style overlapping = plain; // cells of 20 pixels sharing 2 of them
        overlapping.SqrWidth = overlapping.SqrHeight = 300;
        overlapping.SqrHTab = overlapping.SqrVTab = 270;
        overlapping.FontPos = QStringLiteral("MIDDLE CENTER");
        overlapping.FontStyle = QStringLiteral("BOLD CAPS");
        overlapping.FrameWidth = 3;
        overlapping.XBase = overlapping.YBase = 60;
        overlapping.ShowGrid = 1;
        overlapping.FontYBase = 300;
        overlapping.FontXBase = 45;
        overlapping.SqrVSpc = 30;
        overlapping.SqrHSpc = 45;
        overlapping.CopyCounter = 1;
        overlapping.FrameColor = 0x0000FF;
        overlapping.FontColor = 0x00FF00;
        Style font = plain; // squares of 30 pixels, no sheet to measure
        font.SqrWidth = font.SqrHeight = font.SqrHTab = font.SqrVTab = 450;
        font.PiecesFont = QStringLiteral("Noto Sans Symbols 2");
        font.DarkColor = 0x123456;
        font.DarkHatch = 1;
        const std::pair<Style, QSize> cases[] = {
            {plain, QSize(195, 30)}, {overlapping, QSize(12 * 18 + 20, 38)}, {font, QSize()}};
        for (const auto& [style, sheet] : cases) {
            // Every field the form gives comes from the form.
            Style back;
            back.FontYBase = back.FontXBase = back.XBase = back.YBase = back.SqrVSpc = 15;
            back.LightColor = back.DarkColor = back.FontColor = back.BackColor = 7;
            back.DarkHatch = back.ShowGrid = back.CopyCounter = 1;
            back.PiecesFont = back.PiecesFile = back.BorderFile = QStringLiteral("x");
            storeForm(formFromStyle(style), sheet, back);
            QCOMPARE(block(back), block(style)); // every stored field
        }
        // The default "Left Up" is shown as up and left.
        QCOMPARE(formFromStyle(plain).verticalAlign, 0);
        QCOMPARE(fontPosText(2, 1), QStringLiteral("DOWN CENTER"));
    }

    // Boxes hold any text: what doesn't fit its field is held to it.
    void boxesAreHeldToTheirFields() {
        Style style;
        resetStyle(style);
        StyleForm form = formFromStyle(style);
        form.boardRows = QStringLiteral("0");
        form.boardColumns = QStringLiteral("12x");
        form.boardOffsetY = QStringLiteral("9999");
        form.boardOffsetX = QStringLiteral("2");
        form.frameWidth = QStringLiteral("5");
        form.cellOverlapHorizontal = QStringLiteral("50"); // wider than a cell
        form.piecesList.clear();                           // the sheet is one cell wide
        form.fontSize = QStringLiteral("abc");
        storeForm(form, QSize(40, 30), style);
        QCOMPARE(style.BorderHeight, 1);
        QCOMPARE(style.BorderWidth, 12);
        QCOMPARE(style.YBase, 2184 * 15);
        QCOMPARE(style.XBase, 5 * 15); // raised out from under the frame
        QCOMPARE(style.SqrWidth, 40 * 15);
        QCOMPARE(style.SqrHTab, 15);
        QCOMPARE(style.FontSize, 0);
        QCOMPARE(formFromStyle(style).piecesList, QLatin1String(kDefaultPiecesList));
    }

    // Columns across the picture's width, rows down its height.
    void aBorderPictureCentresTheBoard() {
        Style style;
        resetStyle(style);
        style.BorderWidth = 7;
        style.BorderHeight = 10;
        style.SqrHTab = 300;
        style.SqrVTab = 240;
        QCOMPARE(centredBoardBase(QSize(3000, 3600), style), QPoint(450, 600));
        QCOMPARE(centredBoardBase(QSize(2000, 2000), style), QPoint(0, 0)); // never before the edge
        QCOMPARE(scrolledLength(kSizeBarMaximum / 2 + 3, 1500), 1545);
        QCOMPARE(farEdgeOffset(1000, 2000, 90), 0);
    }

  private:
    static QString block(Style style) { return writeStyleBlock(style); }
};

QTEST_APPLESS_MAIN(TstStyle)
#include "tst_style.moc"
