#include "styles/style.h"
#include "styles/style_block.h"
#include "styles/style_form.h"

#include <QTest>
#include <utility>

using namespace marlith;

namespace {

// The default style with the items of a block stored on top, in pixels.
Style styled(const char* items) {
    Style style;
    resetStyle(style);
    for (const QString& raw : splitItems(QString::fromUtf8(items)))
        storeStyleKey(style, *parseItem(raw, KeylessItems::Skip), {});
    return style;
}

} // namespace

class TstStyle : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A margin of 0.1 pixel: 224 twips are still 15 pixels, 223 no longer.
    void twipsAndSquares() {
        const std::pair<double, int> cases[] = {
            {225, 15}, {224, 15}, {223, 14}, {32760, 2184}, {-7, -1}};
        for (const auto& [twips, pixels] : cases) {
            QCOMPARE(twipsToPixels(twips), double(pixels));
            QCOMPARE(twipsToWholePixels(twips), pixels);
        }
        // A board past what the square vector holds is 8 by 8.
        QCOMPARE((QList{boardSquares(20, 20), boardSquares(21, 20), boardSquares(0, 8),
                        boardSquares(8, 0), boardSquares(8, -1)}),
                 (QList{400, 64, 0, 0, 64}));
    }

    // What the Style window shows of a style gives the same style back, given
    // the sheet that the style was made for.
    void theControlsGiveTheStyleBack() {
        const Style plain = styled("SqrHTab = 15, SqrVTab = 15");
        // Cells of 20 pixels sharing 2 of them; squares of 30 pixels, no sheet to measure.
        const std::pair<Style, QSize> cases[] = {
            {plain, QSize(195, 30)},
            {styled("SqrHTab = 18, SqrVTab = 18, SqrWidth = 20, SqrHeight = 20, FrameWidth = 3, "
                    "FontPos = MIDDLE CENTER, FontStyle = BOLD CAPS, XBase = 4, YBase = 4, "
                    "ShowGrid = Yes, FontYBase = 20, FontXBase = 3, SqrVSpc = 2, SqrHSpc = 3, "
                    "CopyCounter = Yes, FrameColor = &HFF, FontColor = &HFF00"),
             QSize(12 * 18 + 20, 38)},
            {styled("SqrWidth = 30, SqrHeight = 30, SqrHTab = 30, SqrVTab = 30, DarkHatch = Yes, "
                    "PiecesFont = Noto Sans Symbols 2, DarkColor = &H123456"),
             QSize()}};
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
        // The default "Left Up" is shown as up and left; a size of 0 keeps its sign place.
        QCOMPARE(std::pair(formFromStyle(plain).verticalAlign,
                           formFromStyle(styled("FontSize = 0")).fontSize),
                 std::pair(0, QString(" 0")));
        QCOMPARE(QStringList({fontPosText(2, 1), fontPosText(1, -1)}),
                 QStringList({"DOWN CENTER", "MIDDLE"}));
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
        // The left offset is raised out from under the frame.
        QCOMPARE((QList<int>{style.BorderHeight, style.BorderWidth, style.YBase, style.XBase,
                             style.SqrWidth, style.SqrHTab, style.FontSize}),
                 (QList<int>{1, 12, 2184 * 15, 5 * 15, 40 * 15, 15, 0}));
        QCOMPARE(formFromStyle(style).piecesList, QLatin1String(kDefaultPiecesList));
    }

    // Columns across the picture's width, rows down its height.
    void aBorderPictureCentresTheBoard() {
        const Style style =
            styled("BorderWidth = 7, BorderHeight = 10, SqrHTab = 20, SqrVTab = 16");
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
