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

Style DefaultStyle() {
    Style style;
    ResetStyle(style);
    return style;
}

// Draws the empty diagram and builds the text on it, as the main window does.
struct Scene {
    Style style = DefaultStyle();
    Diagram diagram;
    VetArray vet{};
    int reversed = 0;
    QString folder;

    void draw(const QString& text) {
        diagram.DrawBoard(style, reversed, folder);
        const Board board{style.BorderHeight, style.BorderWidth};
        ResetVet(vet, board);
        Build(
            text, vet, board, style.PiecesList,
            [this](int cell, int casa) { diagram.PutPeca(cell, casa, style, reversed); }, nullptr);
    }
    QImage cellAt(int px, int py, int w, int h) const { return diagram.image().copy(px, py, w, h); }
};

bool OnlyColour(const QImage& image, QRgb colour) {
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
        const QImage sheet = BuiltInSheet();
        QCOMPARE(sheet.size(), QSize(195, 30));
        QCOMPARE(sheet.pixel(0, 0), kWhite);   // bare square of colour 0
        QCOMPARE(sheet.pixel(0, 15), kSilver); // bare square of colour 1
        QVERIFY(OnlyColour(sheet.copy(0, 0, 15, 15), kWhite));
        QVERIFY(OnlyColour(sheet.copy(0, 15, 15, 15), kSilver));
        // Cell 15, the white pawn on a dark square, from (30, 15): its head
        // is black, white, black on the third line of the cell.
        QCOMPARE(sheet.pixel(30, 15), kSilver);
        QCOMPARE(sheet.pixel(36, 18), kBlack);
        QCOMPARE(sheet.pixel(37, 18), kWhite);
        QCOMPARE(sheet.pixel(38, 18), kBlack);
        // The black pawn beside it is solid black there.
        QCOMPARE(sheet.pixel(22, 18), kBlack);
        // Row 0 is the same drawing on white: the inside of a white piece and
        // the square are one colour.
        QCOMPARE(sheet.pixel(30, 0), kWhite);
        QCOMPARE(sheet.pixel(36, 3), kBlack);
        QCOMPARE(sheet.pixel(37, 3), kWhite);
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 195; ++x) {
                const QRgb p = sheet.pixel(x, y);
                QVERIFY(p == kBlack || p == kWhite || p == kSilver);
            }
    }

    void defaultGeometry() {
        Scene scene;
        scene.draw(QString());
        QCOMPARE(scene.style.SqrHTab, int16_t(225));
        QCOMPARE(scene.style.SqrVTab, int16_t(225));
        QCOMPARE(scene.style.WndWidth, 1860);
        QCOMPARE(scene.style.WndHeight, 1860);
        QCOMPARE(scene.diagram.image().size(), QSize(124, 124));
        QCOMPARE(MainWindowSize(scene.style, false), QSize(6645, 3210));
        QCOMPARE(MainWindowSize(scene.style, true), QSize(6645, 5580));
        Style large = scene.style;
        large.WndWidth = 9000;
        large.WndHeight = 9000;
        QCOMPARE(MainWindowSize(large, true), QSize(12300, 10350));
    }

    // The start position, square by square, equals the cells of the sheet.
    void startPositionPixels() {
        Scene scene;
        scene.draw(scene.style.StartPos);
        const QImage sheet = BuiltInSheet();
        const QImage& image = scene.diagram.image();
        const QString order = QStringLiteral("rnbqkbnrpppppppp") + QString(32, QLatin1Char(' ')) +
                              QStringLiteral("PPPPPPPPRNBQKBNR");
        for (int square = 0; square < 64; ++square) {
            const int content = static_cast<int>(scene.style.PiecesList.indexOf(order[square])) + 1;
            const int cell = content + 13 * SqrColor(square, 8);
            const int x = (square % 8) * 15;
            const int y = (square / 8) * 15;
            QCOMPARE(image.copy(x, y, 15, 15),
                     sheet.copy((cell % 13) * 15, (cell / 13) * 15, 15, 15));
        }
        // The four pixels round the last square show the background.
        QVERIFY(OnlyColour(image.copy(120, 0, 4, 124), kBlack));
        QVERIFY(OnlyColour(image.copy(0, 120, 124, 4), kBlack));
    }

    void fallbackAndSquareBoards() {
        Diagram diagram;
        Style style = DefaultStyle();
        style.BorderHeight = 21;
        style.BorderWidth = 20;
        QVERIFY(!diagram.DrawBoard(style, 0, QString()).squareBoard);
        QCOMPARE(style.BorderHeight, int16_t(8));
        QCOMPARE(style.BorderWidth, int16_t(8));
        QCOMPARE(style.WndWidth, 1860);

        style = DefaultStyle();
        style.BorderHeight = 20;
        style.BorderWidth = 20;
        QVERIFY(diagram.DrawBoard(style, 0, QString()).squareBoard);
        QCOMPARE(style.BorderWidth, int16_t(20));
        QCOMPARE(style.WndWidth, 19 * 225 + 225 + 60);

        style = DefaultStyle();
        style.BorderHeight = 8;
        style.BorderWidth = 10;
        QVERIFY(!diagram.DrawBoard(style, 0, QString()).squareBoard);

        style = DefaultStyle();
        style.BorderHeight = -3;
        style.BorderWidth = 5;
        diagram.DrawBoard(style, 0, QString());
        QCOMPARE(style.BorderHeight, int16_t(8));
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
        huge.style.BorderWidth = 20;
        huge.style.BorderHeight = 20;
        huge.style.SqrWidth = 32760;
        huge.style.SqrHeight = 32760;
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
        scene.style.WndWidth = 300;
        scene.style.WndHeight = 300;
        scene.draw(QStringLiteral("KkKkKkKkKkKk"));
        scene.style = DefaultStyle();
        scene.style.PiecesList = QStringLiteral("pPnNbBrRqQkKxyzXYZ");
        scene.draw(QStringLiteral("zZ")); // cells beyond the 195 pixel sheet
        QVERIFY(OnlyColour(scene.cellAt(0, 0, 15, 15), kBlack));
        scene.diagram.PutPeca(-5, 1, scene.style, 0);
        scene.diagram.PutPeca(1, 0, scene.style, 0);
        scene.diagram.PutPeca(1, 65, scene.style, 0);
        scene.diagram.PutPeca(32000, 64, scene.style, 0);
    }

    void frame() {
        Scene scene;
        scene.style.FrameWidth = 3;
        scene.style.FrameColor = 0x0000FF; // red
        scene.style.BackColor = 0xFFFFFF;
        scene.diagram.DrawBoard(scene.style, 0, QString());
        const QImage& image = scene.diagram.image();
        const QRgb red = qRgb(255, 0, 0);
        // h = 22 twips, one pixel: three pixels of line round x = 1.
        QCOMPARE(image.pixel(1, 60), red);
        QCOMPARE(image.pixel(60, 1), red);
        QCOMPARE(image.pixel(5, 60), kWhite);
        // The far lines stand 66 twips in from the edge: x = 1860 - 22 - 66.
        QCOMPARE(image.pixel(118, 60), red);
        QCOMPARE(image.pixel(60, 118), red);
        QCOMPARE(image.pixel(122, 60), kWhite);
    }

    void coloursHaveRedInTheLowByte() {
        QCOMPARE(StyleColor(255), qRgb(255, 0, 0));
        QCOMPARE(StyleColor(16711680), qRgb(0, 0, 255));
        QCOMPARE(StyleColor(0x00C08040), qRgb(0x40, 0x80, 0xC0));
    }

    void coordinatesFollowTheTurn() {
        auto draw = [](int reversed, const QString& fontPos) {
            Scene scene;
            scene.style.ShowGrid = 1;
            scene.style.XBase = 300;
            scene.style.YBase = 300;
            scene.style.FontYBase = 0;
            scene.style.FontXBase = 0;
            scene.style.BackColor = 0xFFFFFF;
            scene.style.FontPos = fontPos;
            scene.style.FontName = QStringLiteral("DejaVu Sans");
            scene.reversed = reversed;
            scene.draw(QString());
            return scene.diagram.image();
        };
        const QImage normal = draw(0, QStringLiteral("Left Up"));
        const QImage turned = draw(65, QStringLiteral("Left Up"));
        // Row numbers: left margin, one square high; letters: top margin.
        auto rowLabel = [](const QImage& image, int row) {
            return image.copy(0, 20 + row * 15, 20, 15);
        };
        auto columnLabel = [](const QImage& image, int column) {
            return image.copy(20 + column * 15, 0, 15, 20);
        };
        QVERIFY(!OnlyColour(rowLabel(normal, 0), kWhite));
        QVERIFY(!OnlyColour(columnLabel(normal, 0), kWhite));
        QVERIFY(rowLabel(normal, 0) != rowLabel(normal, 7));
        QCOMPARE(rowLabel(turned, 0), rowLabel(normal, 7)); // "1" on top
        QCOMPARE(rowLabel(turned, 7), rowLabel(normal, 0));
        QCOMPARE(columnLabel(turned, 7), columnLabel(normal, 0)); // "a" at the right
        QVERIFY(columnLabel(normal, 0) != columnLabel(normal, 1));

        // The later test wins, and mixed-case words are the plain case.
        QCOMPARE(draw(0, QStringLiteral("UP CENTER RIGHT")), draw(0, QStringLiteral("RIGHT")));
        QCOMPARE(draw(0, QStringLiteral("MIDDLE DOWN")), draw(0, QStringLiteral("DOWN")));
        QCOMPARE(draw(0, QStringLiteral("Left Up")), draw(0, QStringLiteral("UP LEFT")));
        QVERIFY(draw(0, QStringLiteral("DOWN RIGHT")) != normal);
    }

    void capsAndNoGridKeepTheFont() {
        Scene scene;
        scene.style.ShowGrid = 1;
        scene.style.FontName = QStringLiteral("DejaVu Serif");
        scene.style.FontStyle = QStringLiteral("BOLD ITALIC CAPS");
        scene.style.FontSize = 12;
        scene.diagram.DrawBoard(scene.style, 0, QString());
        const QFont used = scene.diagram.font();
        QVERIFY(used.bold());
        QVERIFY(used.italic());
        QVERIFY(!used.underline());
        QCOMPARE(used.pixelSize(), 16);
        scene.style.ShowGrid = 0;
        scene.style.FontName.clear();
        scene.style.FontStyle.clear();
        scene.diagram.DrawBoard(scene.style, 0, QString());
        QCOMPARE(scene.diagram.font(), used);
        // An empty name and a size of 0 keep the surface's font.
        scene.style.ShowGrid = 1;
        scene.style.FontSize = 0;
        scene.diagram.DrawBoard(scene.style, 0, QString());
        QCOMPARE(scene.diagram.font().family(), used.family());
        QCOMPARE(scene.diagram.font().pixelSize(), 16);
    }

    void pixToInd() {
        Style style = DefaultStyle();
        style.SqrHTab = 225;
        style.SqrVTab = 225;
        QCOMPARE(PixToInd(style.XBase, style.YBase, style), 0);
        QCOMPARE(PixToInd(224, 224, style), 0);
        QCOMPARE(PixToInd(225, 0, style), 1);
        QCOMPARE(PixToInd(1799, 1799, style), 63);
        QCOMPARE(PixToInd(1800, 0, style), -1); // past the pitch of the last column
        QCOMPARE(PixToInd(-1, 0, style), -1);

        style.SqrHSpc = 30;
        style.SqrVSpc = 30;
        style.XBase = 150;
        style.YBase = 150;
        const int leftOfSquare1 = 150 + 255;
        QCOMPARE(PixToInd(leftOfSquare1 - 10, 200, style), 1); // nearer half of the gap
        QCOMPARE(PixToInd(leftOfSquare1 - 20, 200, style), 0);
        QCOMPARE(PixToInd(150, 150, style), 0);
        QCOMPARE(PixToInd(200, 150 - 14, style), 0);
        QCOMPARE(PixToInd(200, 150 - 16, style), -1); // above by more than half the gap
        style.SqrWidth = 100;                         // the hit area is still a whole pitch
        QCOMPARE(PixToInd(150 + 200, 200, style), 0);
        style.SqrHTab = 0;
        style.SqrHSpc = 0;
        QCOMPARE(PixToInd(10, 10, style), -1);
    }

    void reversedViewTurnsTheBoard() {
        Scene scene;
        scene.diagram.DrawBoard(scene.style, 65, QString());
        scene.diagram.PutPeca(12, 1, scene.style, 65); // white king of square 0
        QCOMPARE(scene.cellAt(105, 105, 15, 15), BuiltInSheet().copy(12 * 15, 0, 15, 15));
        scene.diagram.PutPeca(11, 64, scene.style, 65);
        QCOMPARE(scene.cellAt(0, 0, 15, 15), BuiltInSheet().copy(11 * 15, 0, 15, 15));
        QCOMPARE(ScreenSquare(0, 64, 65), 63);
        QCOMPARE(ScreenSquare(ScreenSquare(17, 64, 65), 64, 65), 17);
        QCOMPARE(ScreenSquare(17, 64, 0), 17);
        // Turned before the board grew: the turn is that of the board now.
        QCOMPARE(ScreenSquare(0, 100, 65), 99);
    }

    void sheetsAndBordersFromFiles() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        QVERIFY(QFile::copy(QStringLiteral(MARLITH_TEST_DATA "/sheet.gif"), folder + "sheet.gif"));
        QImage bmp(400, 400, QImage::Format_RGB32);
        bmp.fill(qRgb(0, 200, 0));
        QVERIFY(bmp.save(folder + "green.bmp", "BMP"));
        QFile empty(folder + "empty.bmp");
        QVERIFY(empty.open(QIODevice::WriteOnly));
        empty.close();
        QFile text(folder + "text.bmp");
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("this is not a picture");
        text.close();

        Scene scene;
        scene.folder = folder;
        scene.style.PiecesList = QStringLiteral("xX");
        scene.style.SqrWidth = 300;
        scene.style.SqrHeight = 300;
        scene.style.PiecesFile = QStringLiteral("sheet.gif"); // in the program folder
        scene.draw(QStringLiteral("xX"));
        const QRgb red = qRgb(255, 0, 0);
        const QRgb blue = qRgb(0, 0, 255);
        QCOMPARE(scene.diagram.image().pixel(10, 10), red);  // x on colour 0
        QCOMPARE(scene.diagram.image().pixel(30, 10), blue); // X on colour 1
        QCOMPARE(scene.diagram.image().pixel(21, 1), qRgb(128, 128, 128));

        // Unreadable sheets keep the one in use.
        for (const char* name : {"missing.bmp", "empty.bmp", "text.bmp"}) {
            scene.style.PiecesFile = folder + QLatin1String(name);
            scene.draw(QStringLiteral("xX"));
            QCOMPARE(scene.diagram.image().pixel(10, 10), red);
        }

        // A border picture lies under the board; an unreadable one leaves
        // the background.
        scene.style.BorderFile = QStringLiteral("green.bmp");
        scene.draw(QString());
        QCOMPARE(scene.diagram.image().pixel(scene.diagram.image().width() - 1, 5),
                 qRgb(0, 200, 0));
        scene.style.BorderFile = QStringLiteral("text.bmp");
        scene.style.BackColor = 255;
        scene.draw(QString());
        QCOMPARE(scene.diagram.image().pixel(scene.diagram.image().width() - 1, 5), red);
    }

    void dirtyAreaAndCopyCount() {
        Scene scene;
        scene.draw(QString());
        scene.diagram.takeDirty();
        const long long before = scene.diagram.copies();
        scene.diagram.PutPeca(2, 10, scene.style, 0);
        QCOMPARE(scene.diagram.copies(), before + 1);
        QCOMPARE(scene.diagram.takeDirty(), QRect(15, 15, 15, 15));
        QCOMPARE(scene.diagram.takeDirty(), QRect());
    }
};

QTEST_MAIN(TstDiagram)
#include "tst_diagram.moc"
