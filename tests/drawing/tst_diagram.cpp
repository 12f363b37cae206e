#include "core/settings.h"
#include "drawing/diagram.h"
#include "drawing/palette.h"
#include "drawing/piece_sheet.h"
#include "output/export_choices.h"
#include "output/image_output.h"
#include "support/file_bytes.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <array>
#include <functional>

using namespace marlith;
using namespace marlith::testing;

namespace {

const QRgb kBlack = qRgb(0, 0, 0);
const QRgb kWhite = qRgb(255, 255, 255);
const QRgb kRed = qRgb(255, 0, 0);

Style defaultStyle() {
    Style style;
    resetStyle(style);
    return style;
}

// Draws the empty diagram and builds the text on it, as the main window does.
struct Scene {
    explicit Scene(Style from = defaultStyle()) : style(std::move(from)) {}
    Style style;
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
    DiagramPicture picture() {
        return {diagram.image(), [this](QPainter& painter, bool transparent) {
                    const Board board{style.BorderHeight, style.BorderWidth};
                    diagram.paint(painter, {style, squareVector, board, reversed}, transparent);
                }};
    }
};

// The shipped Print style: pieces from the font, hatched dark squares, a frame.
Style printStyle() {
    Style style = defaultStyle();
    RecentList recent;
    QString engine;
    style.StyleName = QStringLiteral("Print");
    readSettings(QStringLiteral(MARLITH_SHIPPED_INI), {}, style, recent, engine);
    return style;
}

Scene printScene(const QString& text) {
    Scene scene{printStyle()};
    scene.draw(text);
    return scene;
}

QImage painted(QSize size, const std::function<void(QPainter&)>& paint) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    paint(painter);
    painter.end();
    return image;
}

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
    // Each square shows its sheet cell, in the SVG too; the 4 pixels past the
    // board, the background.
    void startPositionPixels() {
        Scene scene;
        scene.draw(scene.style.StartPos);
        const QImage& image = scene.diagram.image();
        const QString order = QStringLiteral("rnbqkbnrpppppppp") + QString(32, QLatin1Char(' ')) +
                              QStringLiteral("PPPPPPPPRNBQKBNR");
        for (int square = 0; square < 64; ++square) {
            const int cell = int(scene.style.PiecesList.indexOf(order[square])) + 1 +
                             13 * squareColor(square, 8);
            QCOMPARE(scene.cellAt(square % 8 * 15, square / 8 * 15),
                     builtInSheet().copy((cell % 13) * 15, (cell / 13) * 15, 15, 15));
        }
        QCOMPARE(image.size(), QSize(124, 124));
        QVERIFY(onlyColour(image.copy(120, 0, 4, 124), kBlack));
        QVERIFY(onlyColour(image.copy(0, 120, 124, 4), kBlack));
        QSvgRenderer svg(diagramSvg(scene.picture(), 0, false));
        QCOMPARE(painted(image.size(), [&](QPainter& p) { svg.render(&p); }), image);
    }

    void fallbackAndSquareBoards() {
        // Past 400 squares or below 0, 8 by 8. {rows, columns, after, square board, width}
        const int cases[][5] = {{21, 20, 8, 0, 1860}, {20, 20, 20, 1, 4560}, {-3, 5, 8, 0, 1860}};
        for (const auto& [rows, columns, after, square, width] : cases) {
            Style style = defaultStyle();
            style.BorderHeight = int16_t(rows);
            style.BorderWidth = int16_t(columns);
            QCOMPARE(Diagram().drawBoard(style, 0, QString()).squareBoard, bool(square));
            QCOMPARE(QSize(style.BorderHeight, style.BorderWidth), QSize(after, after));
            QCOMPARE(style.WndWidth, width);
        }
        Style drawn = defaultStyle();
        Diagram().drawBoard(drawn, 0, QString());
        QCOMPARE(paletteSizeTwips(drawn), QSize(1410, 510)); // twelve pieces, six a row
    }

    // Sizes past 16 bits give no picture; numbers at their ends never read outside.
    void extremeNumbersNeverReadOutside() {
        Scene huge;
        huge.style.BorderWidth = huge.style.BorderHeight = 20;
        huge.style.SqrWidth = huge.style.SqrHeight = 32760;
        huge.draw(QStringLiteral("KkKk"));
        QCOMPARE((QList{huge.style.WndWidth, huge.style.WndHeight, huge.diagram.image().width()}),
                 (QList{0, 0, 0}));
        Scene scene;
        scene.style.XBase = scene.style.SqrVTab = 32767;
        scene.style.YBase = scene.style.SqrHSpc = -32768;
        scene.style.WndWidth = scene.style.WndHeight = 300;
        scene.style.ShowGrid = 1;
        scene.style.FontSize = 32767;
        scene.draw(QStringLiteral("KkKkKkKkKkKk"));
        for (const auto& [cell, oneBasedSquare] : {std::pair{-5, 1}, {1, 0}, {1, 65}, {32000, 64}})
            scene.diagram.copyCellToSquare(cell, oneBasedSquare, scene.style, 0);
    }

    // The Print style, and its margins on a 7 x 10 board: frame, even strips, and
    // coordinates at the offsets 0 inking the strips alone.
    void framedStrips() {
        QTemporaryDir dir;
        QImage solid(13 * 64, 2 * 64, QImage::Format_RGB32);
        solid.fill(kRed);
        QVERIFY(solid.save(dir.filePath(QStringLiteral("red.bmp"))));
        for (const auto& [rows, columns] : {std::pair{8, 8}, {7, 10}}) {
            Scene s{printStyle()};
            s.style.PiecesFont.clear();
            s.style.PiecesFile = dir.filePath(QStringLiteral("red.bmp"));
            s.style.WndWidth += (columns - s.style.BorderWidth) * 960; // same margins
            s.style.WndHeight += (rows - s.style.BorderHeight) * 960;
            s.style.BorderHeight = int16_t(rows);
            s.style.BorderWidth = int16_t(columns);
            s.draw(QString());
            const QImage plain = s.diagram.image();
            const int w = plain.width() - 1, h = plain.height() - 1;
            auto at = [&](int x, int y) { return plain.pixel(x, y); };
            // From each corner and edge middle: 3 pixels of frame, 16 of strip, the board.
            for (const auto& [x, y, dx, dy] :
                 {std::array{0, 0, 1, 1}, {w, 0, -1, 1}, {w, h, -1, -1}, {0, h, 1, -1}})
                QCOMPARE(
                    (QList{at(x, y), at(x + 2 * dx, y + 2 * dy), at(x + 3 * dx, y + 3 * dy),
                           at(x + 2 * dx, h / 2), at(x + 18 * dx, h / 2), at(x + 19 * dx, h / 2),
                           at(w / 2, y + 2 * dy), at(w / 2, y + 18 * dy), at(w / 2, y + 19 * dy)}),
                    (QList{kBlack, kBlack, kWhite, kBlack, kWhite, kRed, kBlack, kWhite, kRed}));
            s.style.ShowGrid = 1;
            s.style.FontColor = 0xFF0000; // blue ink shows also over the frame
            s.draw(QString());
            // Unsmoothed letters on the screen: pure ink, no blends.
            int inked = 0, astray = 0;
            for (int y = 0; y <= h; ++y)
                for (int x = 0; x <= w; ++x)
                    if (const QRgb ink = s.diagram.image().pixel(x, y); ink != at(x, y))
                        ++(QRect(3, 3, w - 5, h - 5).contains(x, y) && ink == qRgb(0, 0, 255)
                               ? inked
                               : astray);
            QVERIFY(inked > 0 && astray == 0);
        }
    }

    // Row numbers in the left margin, letters in the top one, a square and its
    // gap apart, turned with the board; "a" comes first on a board of any width;
    // each word of the font style changes the letters.
    void coordinatesFollowTheTurn() {
        const QStringList fontStyles{"",       "",          "",          "BOLD",
                                     "ITALIC", "UNDERLINE", "STRIKEOUT", "CAPS"};
        QList<QImage> images;
        for (qsizetype n = 0; n < fontStyles.size(); ++n) {
            Scene scene;
            scene.style.ShowGrid = 1;
            scene.style.XBase = scene.style.YBase = 300;
            scene.style.SqrHSpc = scene.style.SqrVSpc = 30;
            scene.style.BorderWidth = int16_t(n == 2 ? 3 : 8);
            scene.style.FontYBase = scene.style.FontXBase = 0;
            scene.style.BackColor = 0xFFFFFF;
            scene.style.FontName = QStringLiteral("DejaVu Sans");
            scene.style.FontStyle = fontStyles[n];
            scene.reversed = n == 1 ? 65 : 0;
            scene.draw(QString());
            images << scene.diagram.image();
        }
        auto row = [&](int image, int n) { return images[image].copy(0, 20 + n * 17, 20, 15); };
        auto column = [&](int image, int n) { return images[image].copy(20 + n * 17, 0, 15, 20); };
        QVERIFY(row(0, 0) != row(0, 7) && row(0, 0) != images[0].copy(0, 0, 20, 15));
        QCOMPARE(row(1, 0), row(0, 7));       // "1" on top
        QCOMPARE(column(1, 7), column(0, 0)); // "a" at the right
        QCOMPARE(column(2, 0), column(0, 0));
        for (int n = 3; n < images.size(); ++n)
            QVERIFY2(column(n, 0) != column(0, 0), qPrintable(fontStyles[n]));
    }

    // Palette cells count from 1, six a row; a part row counts.
    void paletteCells() {
        Style style = defaultStyle();
        style.SqrHTab = style.SqrVTab = 225;
        style.PiecesList = QString(13, u'x');
        const int cases[][3] = {
            {10, 10, 1}, {1300, 10, 6}, {1360, 10, 0}, {10, 460, 13}, {10, 700, 0}};
        for (const auto& [x, y, cell] : cases)
            QCOMPARE(paletteCell(x, y, style), cell);
    }

    void squareAtSharesTheGaps() {
        // Each gap, the outer ones too, belongs half to each neighbour.
        Style style = defaultStyle();
        style.SqrHTab = style.SqrVTab = 225;
        style.SqrHSpc = style.SqrVSpc = 30;
        style.XBase = style.YBase = 150;
        style.SqrWidth = 100;
        // Square 1 starts at 150 + 255 and square 63 at 150 + 7 x 255.
        const int cases[][3] = {{395, 200, 1},  {385, 200, 0},    {200, 136, 0},
                                {200, 134, -1}, {2174, 2174, 63}, {2176, 200, -1}};
        for (const auto& [x, y, square] : cases)
            QCOMPARE(squareAt(x, y, style), square);
        style.SqrHTab = style.SqrHSpc = 0;
        QCOMPARE(squareAt(10, 10, style), -1);
    }

    void reversedViewTurnsTheBoard() {
        Scene scene;
        scene.diagram.drawBoard(scene.style, 65, QString());
        scene.diagram.takeDirty();
        scene.diagram.copyCellToSquare(12, 1, scene.style, 65); // white king of square 0
        QCOMPARE(scene.diagram.takeDirty(), QRect(105, 105, 15, 15));
        QCOMPARE(scene.cellAt(105, 105), marlith::builtInSheet().copy(12 * 15, 0, 15, 15));
        // Turned before the board grew: the turn is that of the board now.
        QCOMPARE(screenSquare(0, 100, 65), 99);
    }

    // One picture a square by piece, side and square colour; a break behind each row.
    void htmlFragmentOfANarrowBoard() {
        const Board board{2, 3};
        const QString pieces = QLatin1String(kDefaultPiecesList);
        SquareVector squareVector{};
        buildBoard(QStringLiteral("K2/1p1"), squareVector, board, pieces, nullptr, nullptr);
        QCOMPARE(htmlFragment(squareVector, board, pieces),
                 "<img src=\"Kww.gif\"><img src=\"sqb.gif\"><img src=\"sqw.gif\"><br>\r\n"
                 "<img src=\"sqb.gif\"><img src=\"pbw.gif\"><img src=\"sqb.gif\"><br>\r\n");
    }

    // The extension in any case picks the format, else a bitmap; a failed write keeps the file.
    void imageFileByName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("width");
        QTest::addColumn<QByteArrayList>("marks"); // its start, then its size, else read back
        QTest::newRow("no extension, a dot in the folder") << "d" << 0 << QByteArrayList{"BM"};
        QTest::newRow("png, twice as wide") << "d.png" << 1100 << QByteArrayList{"\x89PNG"};
        QTest::newRow("SVG") << "d.SVG" << 275
                             << QByteArrayList{"<?xml", "viewBox=\"0 0 275 275\""};
        QTest::newRow("pdf") << "d.Pdf" << 0
                             << QByteArrayList{"%PDF", "/MediaBox [0 0 413.000000 413.000000]"};
    }
    void imageFileByName() {
        QFETCH(QString, name);
        QFETCH(int, width);
        QFETCH(QByteArrayList, marks);
        Scene scene = printScene(QStringLiteral("8/8/8/3k4/8/8/8/4K3"));
        const QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/picture.png-XXXXXX"));
        const QString path = dir.filePath(name);
        QVERIFY(writeImageFile(scene.picture(), path, {width}));
        const QByteArray bytes = readFile(path);
        QVERIFY(bytes.startsWith(marks.first()));
        if (marks.size() == 1) {
            const QImage written = QImage(path).convertToFormat(QImage::Format_RGB32);
            QCOMPARE(written,
                     diagramImage(scene.picture(), width, false).convertToFormat(written.format()));
            QCOMPARE(written.width(), width > 0 ? width : 550);
        } else {
            QVERIFY(bytes.contains(marks.last()));
        }
        QVERIFY(!writeImageFile(scene.picture(), dir.filePath("missing/" + name)));
        FileSizeLimit fullDisk(16);
        QVERIFY(!writeImageFile(scene.picture(), path));
        QCOMPARE(readFile(path), bytes);
    }

    // A font style goes out as outlines, drawn at the size asked, not enlarged;
    // hatching scaled 1.45 times stays even: each line in a row of b8 takes the same ink.
    void fontStylesAtAnySize() {
        Scene scene = printScene(QStringLiteral("r3k2r/8/8/8/8/8/8/R3K2R"));
        const DiagramPicture picture = scene.picture();
        QVERIFY(!diagramSvg(picture, 0, false).contains("<image"));
        QTemporaryDir dir;
        QVERIFY(writeImageFile(picture, dir.filePath("d.pdf")));
        QVERIFY(!readFile(dir.filePath("d.pdf")).contains("/Subtype /Image"));

        QCOMPARE(painted(picture.screen.size(), [&](QPainter& p) { picture.paint(p, false); }),
                 picture.screen);
        const QImage large = diagramImage(picture, 4 * 550, false);
        QCOMPARE(large.size(), QSize(2200, 2200));
        const QImage enlarged = picture.screen.scaled(large.size());
        int differ = 0;
        for (int y = 0; y < large.height(); y += 7)
            for (int x = 0; x < large.width(); x += 7)
                differ += large.pixel(x, y) != enlarged.pixel(x, y);
        QVERIFY(differ > 500);
        // Transparent: the background goes, the frame and the squares stay.
        const QImage clear = diagramImage(picture, 1100, true);
        QCOMPARE((QList{qAlpha(clear.pixel(1, 1)), qAlpha(clear.pixel(10, 10)),
                        qAlpha(clear.pixel(60, 60))}),
                 (QList{255, 0, 255}));
        const QImage image = diagramImage(picture, 800, false);
        const double scale = 800 / 550.0;
        QList<int> inks;
        for (int y = int(24 * scale); y < int(78 * scale); ++y) { // rows of b8
            QList<int> row{0};
            for (int x = int(88 * scale); x < int(142 * scale); ++x) {
                const int ink = 255 - qGray(image.pixel(x, y));
                if (ink > 0)
                    row.last() += ink;
                else if (row.last() > 0)
                    row.append(0);
            }
            inks += row.mid(1, row.size() - 3); // whole lines only
        }
        const auto [least, most] = std::minmax_element(inks.begin(), inks.end());
        QVERIFY(inks.size() > 100 && *most < *least * 1.2);
    }

    // A tall board's height stays within the largest side; a PDF page keeps its
    // millimetres; only PNG and SVG leave the background out.
    void exportSizes_data() {
        QTest::addColumn<int>("format");
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<int>("width"); // pixels, or millimetres for PDF
        QTest::addColumn<int>("dotsPerInch");
        QTest::addColumn<QString>("written"); // width, resolution, transparent
        const auto png = int(ImageFormat::Png), pdf = int(ImageFormat::Pdf);
        QTest::newRow("png as asked") << png << QSize(550, 550) << 1100 << 0 << "1100 96 1";
        QTest::newRow("bitmap never clear")
            << int(ImageFormat::Bitmap) << QSize(550, 550) << 1100 << 0 << "1100 96 0";
        QTest::newRow("tall board") << png << QSize(301, 601) << 20000 << 0 << "10016 96 1";
        QTest::newRow("pdf at its resolution")
            << pdf << QSize(550, 550) << 80 << 300 << "945 300 0";
        QTest::newRow("pdf too fine") << pdf << QSize(550, 550) << 1000 << 2400 << "20000 508 0";
    }
    void exportSizes() {
        QFETCH(int, format);
        QFETCH(QSize, picture);
        QFETCH(int, width);
        QFETCH(int, dotsPerInch);
        const PictureSize size =
            exportPictureSize({ImageFormat(format), width, width, dotsPerInch, true}, picture);
        QTEST(
            QStringLiteral("%1 %2 %3").arg(size.width).arg(size.dotsPerInch).arg(size.transparent),
            "written");
        QVERIFY(heightForWidth(size.width, picture) <= kExportWidths.most);
    }

    // The name takes the chosen format's extension in place of an image one.
    void exportFileNames_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("result");
        QTest::newRow("bitmap to png") << "Marlith.bmp" << int(ImageFormat::Png) << "Marlith.png";
        QTest::newRow("already so, any case") << "a.PdF" << int(ImageFormat::Pdf) << "a.PdF";
        QTest::newRow("another image") << "/x/a.SVG" << int(ImageFormat::Bitmap) << "/x/a.bmp";
        QTest::newRow("dot in a folder") << "/x.png/a" << int(ImageFormat::Svg) << "/x.png/a.svg";
        QTest::newRow("other extension") << "a.gif" << int(ImageFormat::Png) << "a.gif.png";
    }
    void exportFileNames() {
        QFETCH(QString, name);
        QFETCH(int, format);
        QTEST(exportFileName(name, ImageFormat(format)), "result");
    }

    // Named signs stand for the letters in turn; with none named, the orthodox ones.
    void signsOfTheLetters() {
        using Signs = std::vector<std::optional<char32_t>>;
        QCOMPARE(piecesSigns("Kpx", {}), (Signs{0x2654, 0x265F, std::nullopt}));
        QCOMPARE(piecesSigns("abcdefg", "1FA00 - D800 DFFF 110000 20"),
                 (Signs{0x1FA00, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
                        std::nullopt, std::nullopt}));
    }

    // A page without a printer takes the first number free, never an earlier page's name.
    void pdfPageNames() {
        QTemporaryDir dir;
        for (const char* name : {"Marlith.pdf", "Solution.pdf", "Solution-2.pdf"})
            writeFile(dir.filePath(QLatin1String(name)));
        QCOMPARE(unusedPdfPath(dir.path(), "Marlith"), dir.filePath("Marlith-2.pdf"));
        QCOMPARE(unusedPdfPath(dir.path(), "Solution"), dir.filePath("Solution-3.pdf"));
    }

    void sheetsFromFiles() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        QVERIFY(QFile::copy(QStringLiteral(MARLITH_TEST_DATA "/sheet.gif"), folder + "sheet.gif"));
        Scene scene;
        scene.folder = folder;
        scene.style.PiecesList = QStringLiteral("xX");
        scene.style.SqrWidth = scene.style.SqrHeight = 300;
        scene.style.PiecesFile = QStringLiteral("sheet.gif"); // in the program folder
        scene.draw(QStringLiteral("xX"));
        const QRgb x = scene.diagram.image().pixel(10, 10), X = scene.diagram.image().pixel(30, 10);
        // A sheet that can't be read keeps the one in use.
        scene.style.PiecesFile = folder + QStringLiteral("missing.bmp");
        scene.draw(QStringLiteral("xX"));
        QCOMPARE((QList{x, X, scene.diagram.image().pixel(10, 10)}),
                 (QList{kRed, qRgb(0, 0, 255), kRed})); // x on colour 0, X on colour 1
    }
};

QTEST_MAIN(TstDiagram)
#include "tst_diagram.moc"
