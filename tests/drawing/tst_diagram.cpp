#include "core/settings.h"
#include "drawing/diagram.h"
#include "drawing/palette.h"
#include "drawing/piece_sheet.h"
#include "output/export_choices.h"
#include "output/image_output.h"
#include "support/file_bytes.h"
#include "support/shipped_style.h"

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

const QRgb kRed = qRgb(255, 0, 0);

Style defaultStyle() {
    Style style;
    resetStyle(style);
    return style;
}

// Draws the empty diagram and builds the text on it, as the main window does.
struct Scene {
    explicit Scene(Style from = defaultStyle()) : style(std::move(from)) {}
    explicit Scene(const QString& shipped) { readShippedStyle(shipped, style); }
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
    DiagramPicture picture() {
        return {diagram.image(), [this](QPainter& painter, bool transparent) {
                    const Board board{style.BorderHeight, style.BorderWidth};
                    diagram.paint(painter, {style, squareVector, board, reversed}, transparent);
                }};
    }
};

// A picture against its reference in data/pictures; with MARLITH_NEW_PICTURES
// set, the references are written anew (look at them before committing).
bool matchesReference(const QImage& image, const QString& name) {
    const QString path = QStringLiteral(MARLITH_TEST_DATA "/pictures/") + name + ".png";
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    if (qEnvironmentVariableIsSet("MARLITH_NEW_PICTURES")) return argb.save(path);
    if (QImage(path).convertToFormat(QImage::Format_ARGB32) == argb) return true;
    argb.save(QDir::temp().filePath(name + ".png")); // to compare with the reference
    return false;
}

Scene printScene(const QString& text) {
    Scene scene{QStringLiteral("Print")};
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

} // namespace

class TstDiagram : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // Whole pictures, each a reference: pieces from sheets, fonts and bitmaps,
    // frames, coordinates in every place, font style and turn, spaced squares,
    // strokes, the palette, and the pictures drawn at other sizes.
    void picturesMatchTheirReferences() {
        Scene start;
        start.draw(start.style.StartPos);
        QSvgRenderer svg(diagramSvg(start.picture(), 0, false));
        QCOMPARE(painted(QSize(124, 124), [&](QPainter& p) { svg.render(&p); }),
                 start.diagram.image());
        QList<std::pair<QString, QImage>> pictures{{"start", start.diagram.image()}};
        Scene print = printScene(QStringLiteral("r2qk2r/1P6/8/3pP3/8/8/6p1/R3K2R"));
        print.diagram.addStroke({StrokeObject::Line, {{300, 300}, {4000, 2500}}, 0, {0xFF, 2}});
        print.diagram.addStroke({StrokeObject::Circle, {{4000, 4000}, {}}, 600, {0xFF0000, 3}});
        print.diagram.addStroke({StrokeObject::FreeHand, {{}, {1500, 6000}}, 0, {0x00FF00, 5}});
        pictures += {{"print", print.diagram.image()},
                     {"print-800", diagramImage(print.picture(), 800, false)},
                     {"print-clear-275", diagramImage(print.picture(), 275, true)},
                     {"print-palette", paletteImage(print.diagram.sheet(), print.style)},
                     {"print-chosen", chosenPieceImage(print.diagram.sheet(), print.style, 11)}};
        // Coordinates: {name, rows, columns, turned, position, font style, spacing}
        const std::tuple<const char*, int, int, int, const char*, const char*, int> coordinates[] =
            {{"top-left", 7, 10, 0, "", "", 0},
             {"middle-center", 8, 8, 0, "MIDDLE CENTER", "BOLD ITALIC", 30},
             {"down-right-turned", 5, 3, 1, "DOWN RIGHT", "CAPS UNDERLINE STRIKEOUT", 45}};
        for (const auto& [name, rows, columns, turned, place, fontStyle, spacing] : coordinates) {
            Scene scene{QStringLiteral("Framed")};
            scene.style.BorderHeight = int16_t(rows);
            scene.style.BorderWidth = int16_t(columns);
            scene.style.WndWidth = scene.style.WndHeight = 0; // worked out anew
            scene.style.SqrHSpc = scene.style.SqrVSpc = int16_t(spacing);
            scene.style.ShowGrid = 1;
            scene.style.FontName = QStringLiteral("DejaVu Sans");
            scene.style.FontPos = QLatin1String(place);
            scene.style.FontStyle = QLatin1String(fontStyle);
            // Placed on the frame or past the far edges, they move inside.
            scene.style.FontXBase = scene.style.FontYBase = int16_t(turned ? 30000 : 0);
            scene.style.FrameWidth = 2;
            scene.reversed = turned;
            scene.draw(QStringLiteral("KQ1/2p/b1n"));
            pictures.append({QStringLiteral("coordinates-") + name, scene.diagram.image()});
        }
        Style first;
        const QStringList styles = readShippedStyle({}, first).styleNames;
        for (const QString& name : styles) { // each shipped style with all its letters
            Scene scene{name};
            QString text = scene.style.PiecesList;
            for (qsizetype at = 8; at < text.size(); at += 9)
                text.insert(at, u'/');
            scene.draw(text);
            pictures.append({"style-" + name, scene.diagram.image()});
            if (name == u"Fairy")
                pictures.append(
                    {"fairy-palette", paletteImage(scene.diagram.sheet(), scene.style)});
        }
        // Font sheets: squares of one pixel are drawn, of none refused; a letter without a
        // sign leaves its own cell empty and the others in place.
        const auto pieces = FontPieces::load(print.style.PiecesFont, print.style.PiecesList, {});
        Style odd = print.style;
        odd.SqrHeight = kTwipsPerPixel;
        QVERIFY(pieces && !fontSheet(*pieces, odd).isNull());
        odd.SqrWidth = 0;
        QVERIFY(fontSheet(*pieces, odd).isNull());
        const QImage full = fontSheet(*pieces, print.style);
        odd = print.style;
        odd.PiecesList[0] = u'x';
        const QImage sheet = fontSheet(*FontPieces::load(odd.PiecesFont, odd.PiecesList, {}), odd);
        const QRect others(128, 0, full.width(), full.height()); // behind the first letter's cell
        QVERIFY(sheet != full && sheet.copy(others) == full.copy(others));
        for (const auto& [name, picture] : pictures)
            QVERIFY2(matchesReference(picture, name), qPrintable(name));
    }

    void fallbackAndSquareBoards() {
        // Past 400 squares or below 0, 8 by 8. {rows, columns, after, square board, width}
        const int cases[][5] = {
            {21, 20, 8, 0, 1860}, {20, 20, 20, 1, 4560}, {-3, 5, 8, 0, 1860}, {0, 0, 0, 1, 60}};
        for (const auto& [rows, columns, after, square, width] : cases) {
            Style style = defaultStyle();
            style.BorderHeight = int16_t(rows);
            style.BorderWidth = int16_t(columns);
            QCOMPARE(Diagram().drawBoard(style, 0, QString()).squareBoard, bool(square));
            QCOMPARE(QSize(style.BorderHeight, style.BorderWidth), QSize(after, after));
            QCOMPARE(style.WndWidth, width);
        }
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

    // Palette cells count from 1, six a row; a part row counts.
    void paletteCells() {
        Style style = defaultStyle();
        style.SqrHTab = style.SqrVTab = 225;
        style.PiecesList = QString(13, u'x');
        const int cases[][3] = {
            {10, 10, 1}, {1300, 10, 6}, {1360, 10, 0}, {10, 460, 13}, {10, 700, 0}};
        for (const auto& [x, y, cell] : cases)
            QCOMPARE(paletteCell(x, y, style), cell);
        style.SqrVTab = 0;
        QCOMPARE(paletteCell(10, 10, style), 0);
    }

    // The main window holds the diagram and its controls; with the book panel, its height.
    void mainWindowSizes() {
        Style style = defaultStyle();
        for (const auto& [width, height, panel, size] :
             {std::tuple{3000, 1000, false, QSize(6645, 2350)},
              {4000, 1000, true, QSize(7300, 5580)},
              {4000, 5000, true, QSize(7300, 6350)}}) {
            style.WndWidth = width;
            style.WndHeight = height;
            QCOMPARE(mainWindowSize(style, panel), size);
        }
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
        QCOMPARE(squareAt(150, 200, style), -1); // at the left edge: no pitch to divide by
    }

    void reversedViewTurnsTheBoard() {
        Scene scene;
        scene.diagram.drawBoard(scene.style, 65, QString());
        scene.diagram.takeDirty();
        scene.diagram.copyCellToSquare(12, 1, scene.style, 65); // white king of square 0
        QCOMPARE(scene.diagram.takeDirty(), QRect(105, 105, 15, 15));
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

    // A font style goes out as outlines; the screen picture is the same paint.
    void fontStylesAsOutlines() {
        Scene scene = printScene(QStringLiteral("r3k2r/8/8/8/8/8/8/R3K2R"));
        const DiagramPicture picture = scene.picture();
        QVERIFY(!diagramSvg(picture, 0, false).contains("<image"));
        QTemporaryDir dir;
        QVERIFY(writeImageFile(picture, dir.filePath("d.pdf")));
        QVERIFY(!readFile(dir.filePath("d.pdf")).contains("/Subtype /Image"));
        QCOMPARE(painted(picture.screen.size(), [&](QPainter& p) { picture.paint(p, false); }),
                 picture.screen);
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
        QTest::newRow("twice as tall") << png << QSize(300, 600) << 20000 << 0 << "10000 96 1";
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

    // Past the largest side no picture is drawn; a picture without area has no
    // height; a PDF's resolution has its limit, and its bitmaps keep every pixel.
    void largestPictures() {
        const auto flat = [](QSize size) {
            return DiagramPicture{QImage(size, QImage::Format_RGB32), [](QPainter&, bool) {}};
        };
        QVERIFY(diagramImage(flat({2000, 1}), 20001, false).isNull());
        QCOMPARE(diagramImage(flat({2, 40000}), 1, false).size(), QSize(1, 20000));
        QVERIFY(diagramImage(flat({2, 40002}), 1, false).isNull());
        QCOMPARE(QList({heightForWidth(10, {0, 5}), heightForWidth(10, {5, -5})}), QList({0, 0}));
        QCOMPARE(settleImageName({}), "Marlith.bmp");
        QTemporaryDir dir;
        QVERIFY(!writeImageFile(flat({1, 1}), dir.filePath("d.pdf"), {1, false, 10001}));
        QVERIFY(!writeImageFile(flat({0, 0}), dir.filePath("d.png"))); // no picture
        Scene start;
        start.draw(start.style.StartPos);
        QVERIFY(writeImageFile(start.picture(), dir.filePath("d.pdf"), {1000}));
        QVERIFY(!readFile(dir.filePath("d.pdf")).contains("DCTDecode"));
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
