#include "drawing/diagram.h"
#include "drawing/piece_sheet.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

const QRgb kBlack = qRgb(0, 0, 0);
const QRgb kWhite = qRgb(255, 255, 255);
const QRgb kSilver = qRgb(192, 192, 192);
const QRgb kRed = qRgb(255, 0, 0);

Style defaultStyle() {
    Style style;
    resetStyle(style);
    return style;
}

// Draws the empty diagram and builds the text on it, as the main window does.
struct Scene {
    Style style = defaultStyle();
    Diagram diagram;
    SquareVector squareVector{};
    int reversed = 0;
    QString folder;

    void draw(const QString& text) {
        diagram.drawBoard(style, reversed, folder);
        const Board board{style.BorderHeight, style.BorderWidth};
        invalidatePainted(squareVector, board);
        buildBoard(
            text, squareVector, board, style.PiecesList,
            [this](int cell, int oneBasedSquare) {
                diagram.copyCellToSquare(cell, oneBasedSquare, style, reversed);
            },
            nullptr);
    }
    QImage cellAt(int px, int py) const { return diagram.image().copy(px, py, 15, 15); }
};

bool onlyColour(const QImage& image, QRgb colour) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != colour) return false;
    return true;
}

} // namespace

class TstDiagram : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void builtInSheet() {
        // Row 0 is drawn on white, row 1 on silver; a piece's inside is white
        // in both, so only on silver does the white pawn's head show it.
        const QImage sheet = marlith::builtInSheet();
        QVERIFY(onlyColour(sheet.copy(0, 0, 15, 15), kWhite));
        QVERIFY(onlyColour(sheet.copy(0, 15, 15, 15), kSilver));
        QCOMPARE(sheet.pixel(36, 3), kBlack);
        QCOMPARE(sheet.pixel(36, 18), kBlack);
        QCOMPARE(sheet.pixel(37, 18), kWhite);
        QCOMPARE(sheet.pixel(22, 18), kBlack); // the black pawn is solid there
    }

    void defaultGeometry() {
        // The main window keeps a least width, and a least height beside the book panel.
        Style style = defaultStyle();
        style.WndWidth = style.WndHeight = 1860;
        QCOMPARE(mainWindowSize(style, false), QSize(6645, 3210));
        QCOMPARE(mainWindowSize(style, true), QSize(6645, 5580));
        style.WndWidth = style.WndHeight = 9000;
        QCOMPARE(mainWindowSize(style, true), QSize(12300, 10350));
    }

    // The start position, square by square, equals the cells of the sheet.
    void startPositionPixels() {
        Scene scene;
        scene.draw(scene.style.StartPos);
        const QImage& image = scene.diagram.image();
        QCOMPARE(image.size(), QSize(124, 124)); // 1860 twips: eight squares and 60
        const QString order = QStringLiteral("rnbqkbnrpppppppp") + QString(32, QLatin1Char(' ')) +
                              QStringLiteral("PPPPPPPPRNBQKBNR");
        for (int square = 0; square < 64; ++square) {
            const int content = static_cast<int>(scene.style.PiecesList.indexOf(order[square])) + 1;
            const int cell = content + 13 * squareColor(square, 8);
            QCOMPARE(image.copy(square % 8 * 15, square / 8 * 15, 15, 15),
                     marlith::builtInSheet().copy((cell % 13) * 15, (cell / 13) * 15, 15, 15));
        }
        // The four pixels round the last square show the background.
        QVERIFY(onlyColour(image.copy(120, 0, 4, 124), kBlack));
        QVERIFY(onlyColour(image.copy(0, 120, 124, 4), kBlack));
    }

    void fallbackAndSquareBoards() {
        // Beyond 400 squares, or with a negative count, the board is 8 by 8;
        // the width is 2 x base + (count - 1) x pitch + size + 60 twips.
        const struct {
            int16_t rows, columns, after;
            bool square;
            int width;
        } cases[] = {{21, 20, 8, false, 1860}, {20, 20, 20, true, 4560}, {-3, 5, 8, false, 1860}};
        for (const auto& c : cases) {
            Style style = defaultStyle();
            style.BorderHeight = c.rows;
            style.BorderWidth = c.columns;
            QCOMPARE(Diagram().drawBoard(style, 0, QString()).squareBoard, c.square);
            QCOMPARE(style.BorderHeight, c.after);
            QCOMPARE(style.BorderWidth, c.after);
            QCOMPARE(style.WndWidth, c.width);
        }
    }

    void setSizesStandAndOverflowKeepsTheValue() {
        Scene scene;
        scene.style.WndWidth = 3000;
        scene.style.WndHeight = 600;
        scene.style.XBase = 150;
        scene.style.YBase = 300;
        scene.draw(QStringLiteral("K"));
        QCOMPARE(scene.diagram.image().size(), QSize(200, 40));
        // Squares that overflow the picture are cut, the rest is painted.
        QCOMPARE(scene.diagram.image().pixel(10, 20), kWhite);

        Scene huge;
        huge.style.BorderWidth = huge.style.BorderHeight = 20;
        huge.style.SqrWidth = huge.style.SqrHeight = 32760;
        huge.draw(QStringLiteral("KkKk"));
        QCOMPARE(huge.style.WndWidth, 0);
        QCOMPARE(huge.style.WndHeight, 0);
        QVERIFY(huge.diagram.image().isNull() || huge.diagram.image().width() == 0);
    }

    void extremeNumbersNeverReadOutside() {
        Scene scene;
        scene.style.XBase = 32767;
        scene.style.YBase = -32768;
        scene.style.SqrHSpc = -32768;
        scene.style.SqrVTab = 32767;
        scene.style.WndWidth = scene.style.WndHeight = 300;
        scene.draw(QStringLiteral("KkKkKkKkKkKk"));
        scene.style = defaultStyle();
        scene.style.PiecesList = QStringLiteral("pPnNbBrRqQkKxyzXYZ");
        scene.draw(QStringLiteral("zZ")); // cells beyond the 195 pixel sheet
        QVERIFY(onlyColour(scene.cellAt(0, 0), kBlack));
        for (const auto& [cell, oneBasedSquare] : {std::pair{-5, 1}, {1, 0}, {1, 65}, {32000, 64}})
            scene.diagram.copyCellToSquare(cell, oneBasedSquare, scene.style, 0);
    }

    void frame() {
        Scene scene;
        scene.style.FrameWidth = 3;
        scene.style.FrameColor = 0x0000FF; // red in the low byte
        scene.style.BackColor = 0xFFFFFF;
        scene.diagram.drawBoard(scene.style, 0, QString());
        // h = 22 twips, one pixel: three pixels of line round x = 1. The far
        // lines stand 66 twips in from the edge: x = 1860 - 22 - 66.
        const int dots[][3] = {{1, 60, 1},   {60, 1, 1},   {5, 60, 0},
                               {118, 60, 1}, {60, 118, 1}, {122, 60, 0}};
        for (const auto& [x, y, red] : dots)
            QCOMPARE(scene.diagram.image().pixel(x, y), red ? kRed : kWhite);
        QCOMPARE(styleColor(0x00C08040), qRgb(0x40, 0x80, 0xC0));
    }

    void coordinatesFollowTheTurn() {
        auto draw = [](int reversed, const char* fontPos) {
            Scene scene;
            scene.style.ShowGrid = 1;
            scene.style.XBase = scene.style.YBase = 300;
            scene.style.FontYBase = scene.style.FontXBase = 0;
            scene.style.BackColor = 0xFFFFFF;
            scene.style.FontPos = QString::fromLatin1(fontPos);
            scene.style.FontName = QStringLiteral("DejaVu Sans");
            scene.reversed = reversed;
            scene.draw(QString());
            return scene.diagram.image();
        };
        const QImage normal = draw(0, "Left Up");
        const QImage turned = draw(65, "Left Up");
        // Row numbers: left margin, one square high; letters: top margin.
        auto rowLabel = [](const QImage& image, int row) {
            return image.copy(0, 20 + row * 15, 20, 15);
        };
        auto columnLabel = [](const QImage& image, int column) {
            return image.copy(20 + column * 15, 0, 15, 20);
        };
        QVERIFY(!onlyColour(rowLabel(normal, 0), kWhite));
        QVERIFY(!onlyColour(columnLabel(normal, 0), kWhite));
        QVERIFY(rowLabel(normal, 0) != rowLabel(normal, 7));
        QCOMPARE(rowLabel(turned, 0), rowLabel(normal, 7));       // "1" on top
        QCOMPARE(columnLabel(turned, 7), columnLabel(normal, 0)); // "a" at the right

        // The later test wins, and mixed-case words are the plain case.
        QCOMPARE(draw(0, "UP CENTER RIGHT"), draw(0, "RIGHT"));
        QCOMPARE(draw(0, "MIDDLE DOWN"), draw(0, "DOWN"));
        QCOMPARE(normal, draw(0, "UP LEFT"));
        QVERIFY(draw(0, "DOWN RIGHT") != normal);
    }

    void capsAndNoGridKeepTheFont() {
        Scene scene;
        scene.style.ShowGrid = 1;
        scene.style.FontName = QStringLiteral("DejaVu Serif");
        scene.style.FontStyle = QStringLiteral("BOLD ITALIC CAPS");
        scene.style.FontSize = 12;
        scene.diagram.drawBoard(scene.style, 0, QString());
        const QFont used = scene.diagram.font();
        QVERIFY(used.bold() && used.italic() && !used.underline());
        QCOMPARE(used.pixelSize(), 16);
        scene.style.ShowGrid = 0;
        scene.style.FontName.clear();
        scene.style.FontStyle.clear();
        scene.diagram.drawBoard(scene.style, 0, QString());
        QCOMPARE(scene.diagram.font(), used);
        // An empty name and a size of 0 keep the surface's font.
        scene.style.ShowGrid = 1;
        scene.style.FontSize = 0;
        scene.diagram.drawBoard(scene.style, 0, QString());
        QCOMPARE(scene.diagram.font().family(), used.family());
        QCOMPARE(scene.diagram.font().pixelSize(), 16);
    }

    void pixToInd() {
        // Each pitch is a square's hit area; past the last column is nothing.
        Style style = defaultStyle();
        style.SqrHTab = style.SqrVTab = 225;
        const int inside[][3] = {
            {224, 224, 0}, {225, 0, 1}, {1799, 1799, 63}, {1800, 0, -1}, {-1, 0, -1}};
        for (const auto& [x, y, square] : inside)
            QCOMPARE(squareAt(x, y, style), square);
        // Each gap between two squares belongs half to each neighbour.
        style.SqrHSpc = style.SqrVSpc = 30;
        style.XBase = style.YBase = 150;
        style.SqrWidth = 100; // the hit area is still a whole pitch
        // Square 1 starts at 150 + 255; the board at 150.
        const int gaps[][3] = {
            {395, 200, 1}, {385, 200, 0}, {200, 136, 0}, {200, 134, -1}, {350, 200, 0}};
        for (const auto& [x, y, square] : gaps)
            QCOMPARE(squareAt(x, y, style), square);
        style.SqrHTab = style.SqrHSpc = 0;
        QCOMPARE(squareAt(10, 10, style), -1);
    }

    void reversedViewTurnsTheBoard() {
        Scene scene;
        scene.diagram.drawBoard(scene.style, 65, QString());
        scene.diagram.takeDirty();
        const long long before = scene.diagram.copies();
        scene.diagram.copyCellToSquare(12, 1, scene.style, 65); // white king of square 0
        QCOMPARE(scene.diagram.copies(), before + 1);
        QCOMPARE(scene.diagram.takeDirty(), QRect(105, 105, 15, 15));
        QCOMPARE(scene.diagram.takeDirty(), QRect());
        QCOMPARE(scene.cellAt(105, 105), marlith::builtInSheet().copy(12 * 15, 0, 15, 15));
        scene.diagram.copyCellToSquare(11, 64, scene.style, 65);
        QCOMPARE(scene.cellAt(0, 0), marlith::builtInSheet().copy(11 * 15, 0, 15, 15));
        QCOMPARE(screenSquare(17, 64, 0), 17);
        // Turned before the board grew: the turn is that of the board now.
        QCOMPARE(screenSquare(0, 100, 65), 99);
    }

    void sheetsAndBordersFromFiles() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        QVERIFY(QFile::copy(QStringLiteral(MARLITH_TEST_DATA "/sheet.gif"), folder + "sheet.gif"));
        QImage bmp(400, 400, QImage::Format_RGB32);
        bmp.fill(qRgb(0, 200, 0));
        QVERIFY(bmp.save(folder + "green.bmp", "BMP"));
        QFile text(folder + "text.bmp");
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("this is not a picture") > 0);
        text.close();

        Scene scene;
        scene.folder = folder;
        scene.style.PiecesList = QStringLiteral("xX");
        scene.style.SqrWidth = scene.style.SqrHeight = 300;
        scene.style.PiecesFile = QStringLiteral("sheet.gif"); // in the program folder
        scene.draw(QStringLiteral("xX"));
        QCOMPARE(scene.diagram.image().pixel(10, 10), kRed);            // x on colour 0
        QCOMPARE(scene.diagram.image().pixel(30, 10), qRgb(0, 0, 255)); // X on colour 1
        QCOMPARE(scene.diagram.image().pixel(21, 1), qRgb(128, 128, 128));

        // Unreadable sheets keep the one in use.
        for (const char* name : {"missing.bmp", "text.bmp"}) {
            scene.style.PiecesFile = folder + QLatin1String(name);
            scene.draw(QStringLiteral("xX"));
            QCOMPARE(scene.diagram.image().pixel(10, 10), kRed);
        }

        // A border picture lies under the board; an unreadable one leaves
        // the background, whose colour has red in the low byte.
        const int right = scene.diagram.image().width() - 1;
        scene.style.BorderFile = QStringLiteral("green.bmp");
        scene.draw(QString());
        QCOMPARE(scene.diagram.image().pixel(right, 5), qRgb(0, 200, 0));
        scene.style.BorderFile = QStringLiteral("text.bmp");
        scene.style.BackColor = 255;
        scene.draw(QString());
        QCOMPARE(scene.diagram.image().pixel(right, 5), kRed);
    }
};

QTEST_MAIN(TstDiagram)
#include "tst_diagram.moc"
