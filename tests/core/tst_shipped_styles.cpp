// The style library as the build ships it: every style reads, and the bitmaps
// it names, or the font, are there and drawn in the layout the program copies from.
#include "core/settings.h"
#include "drawing/font_pieces.h"
#include "engines/engine_files.h"
#include "engines/popeye.h"
#include "styles/style_block.h"
#include "support/file_bytes.h"

#include <QImage>
#include <QTest>

using namespace marlith;

namespace {

const QString kLibrary = QStringLiteral(MARLITH_SHIPPED_DIR "/");

// The style of that name, or with none the one the first start shows.
SettingsRead readStyle(const QString& name, Style& style) {
    resetStyle(style);
    style.StyleName = name;
    RecentList recent;
    QString engine;
    return readSettings(kLibrary + "Marlith.ini", kLibrary, style, recent, engine);
}

} // namespace

class TstShippedStyles : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void library() {
        const QByteArray bytes = marlith::testing::readFile(kLibrary + "Marlith.ini");
        QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));
        Style first;
        const SettingsRead reading = readStyle({}, first);
        QVERIFY(reading.opened && !reading.stoppedAtFault && reading.styleNames.size() >= 4);
        // In the order that a stored style keeps, so that it lands among them.
        for (qsizetype i = 1; i < reading.styleNames.size(); ++i)
            QVERIFY(reading.styleNames[i - 1].toUpper() < reading.styleNames[i].toUpper());
        // The first start shows a style of the file, large enough for the screen.
        QVERIFY(reading.styleNames.contains(first.StyleName));
        QVERIFY(twipsToWholePixels(first.SqrWidth) >= 40);
        // The table that ships gives Popeye its own letters (the knight is S),
        // and every entry of its lists can be chosen.
        const PyDat table = readPyDat(kLibrary + QStringLiteral("py.dat"));
        QVERIFY(table.dictionary.contains(u"&&N=WS") && table.dictionary.contains(u"&&n=BS"));
        for (const size_t box : {0, 1, 2, 3, 4, 9, 10}) {
            QVERIFY(table.lists.box(box).size() >= 4);
            for (const QString& entry : table.lists.box(box)) {
                const EntryChoice choice = entryChoice(entry, QString());
                QVERIFY2(choice.none || !choice.param.isEmpty(), qPrintable(entry));
            }
        }
        QCOMPARE(entryChoice(table.lists.stipulation.first(), QStringLiteral("h#")).param, "#");
    }

    void style_data() {
        QTest::addColumn<QString>("name");
        Style first;
        for (const QString& name : readStyle({}, first).styleNames)
            QTest::newRow(qPrintable(name)) << name;
    }

    // Light squares above, dark below, a piece in every other cell, and a
    // border as large as the style says.
    void style() {
        QFETCH(QString, name);
        Style style;
        QVERIFY(!readStyle(name, style).stoppedAtFault);
        QCOMPARE(style.StyleName, name);
        // Every letter of the style goes through the board and back unchanged.
        const Board board{style.BorderHeight, style.BorderWidth};
        QString text = style.PiecesList.left(board.squares());
        for (qsizetype at = board.columns; at < text.size(); at += board.columns + 1)
            text.insert(at, u'/');
        SquareVector squares{};
        QVERIFY(buildBoard(text, squares, board, style.PiecesList, nullptr, nullptr));
        QVERIFY(squaresToFen(squares, board, style.PiecesList).startsWith(text));
        const int width = twipsToWholePixels(style.SqrWidth);
        const int height = twipsToWholePixels(style.SqrHeight);
        const int across = style.SqrHTab > 0 ? twipsToWholePixels(style.SqrHTab) : width;
        const int down = style.SqrVTab > 0 ? twipsToWholePixels(style.SqrVTab) : height;
        QImage sheet(style.PiecesFile);
        if (!style.PiecesFont.isEmpty()) {
            QVERIFY(addPieceFont(kLibrary));
            const std::optional<FontPieces> pieces =
                FontPieces::load(style.PiecesFont, style.PiecesList, style.PiecesSigns);
            QVERIFY(pieces);
            style.SqrHTab = int16_t(across * kTwipsPerPixel);
            style.SqrVTab = int16_t(down * kTwipsPerPixel);
            sheet = fontSheet(*pieces, style);
            Style thin = style; // squares of one pixel, or none
            thin.SqrHeight = kTwipsPerPixel;
            QVERIFY(!fontSheet(*pieces, thin).isNull());
            thin.SqrWidth = 0;
            QVERIFY(fontSheet(*pieces, thin).isNull());
        }
        const auto cell = [&](int column, int row) {
            return sheet.copy(column * across, row * down, width, height);
        };
        const int pieces = int(style.PiecesList.size());
        QVERIFY(sheet.width() >= pieces * across + width && sheet.height() >= down + height);
        QVERIFY(cell(0, 0) != cell(0, 1));
        // Each piece fills a good part of its square.
        for (int row = 0; row < 2; ++row)
            for (int column = 1; column <= pieces; ++column) {
                const QImage piece = cell(column, row), bare = cell(0, row);
                int drawn = 0;
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x)
                        drawn += piece.pixel(x, y) != bare.pixel(x, y);
                QVERIFY2(drawn > width * height / 8, qPrintable(QString::number(column)));
            }
        if (style.BorderFile.isEmpty()) return;
        const QImage border(style.BorderFile);
        QVERIFY(border.width() >= twipsToWholePixels(style.XBase) + style.BorderWidth * across);
        QVERIFY(border.height() >= twipsToWholePixels(style.YBase) + style.BorderHeight * down);
    }
};

QTEST_MAIN(TstShippedStyles)
#include "tst_shipped_styles.moc"
