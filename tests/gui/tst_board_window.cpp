// The board, the palette and the image output driven as a user drives them: real mouse events on
// the diagram and the View window. The editing rules themselves are tst_board_edit's.
#include "support/main_window_fixture.h"

#include <QImageReader>
#include <QMimeData>
#include <QPrinterInfo>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace marlith::testing;

namespace {

const auto square = squareCentre;

// Palette cell k (from 1) of the default six-wide palette.
QPoint paletteCellAt(int k) {
    return square((k - 1) / 6, (k - 1) % 6);
}

void click(QWidget* widget, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
    drag(widget, at, at, {}, button);
}

} // namespace

class TstBoardWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void movesCopiesEmptiesAndReverse() {
        Fixture f;
        f.positionEdit->setText(u"K"_s);
        QCOMPARE(f.dragOnBoard(square(0, 0), square(1, 1)), "8/1K6/8/8/8/8/8/8");
        QTRY_VERIFY(f.positionEdit->hasFocus());
        QCOMPARE(f.dragOnBoard(square(1, 1), square(2, 2), Qt::ControlModifier),
                 "8/1K6/2K5/8/8/8/8/8");
        QCOMPARE(f.dragOnBoard(square(2, 2), square(2, 2), {}, Qt::RightButton),
                 "8/1K6/8/8/8/8/8/8");
        QCOMPARE(f.pieceCounterLabel->text(), "(1x0)");
        // A press whose release was lost doesn't turn the next click into a move.
        QTest::mousePress(f.diagramView(), Qt::LeftButton, {}, square(1, 1));
        QCOMPARE(f.dragOnBoard(square(2, 2), square(2, 2)), "8/1K6/8/8/8/8/8/8");

        // A paste is a step of Undo too.
        QGuiApplication::clipboard()->setText(u"q"_s);
        f.run("pastePositionAction");
        QCOMPARE(f.run("undoAction"), "8/1K6/8/8/8/8/8/8");

        // Reverse turns the picture and the mouse with it, never the text; the effects rewrite the
        // text and record nothing, even in Rec Mode.
        f.positionEdit->setText(u"k7/8/8/8/8/8/8/K7"_s);
        f.action("reverseAction")->trigger();
        QVERIFY(f.action("reverseAction")->isChecked());
        QCOMPARE(f.positionEdit->palette().color(QPalette::Text), QColor(255, 0, 0));
        // The white king, on a1, is shown top right; dragged one down there.
        QCOMPARE(f.dragOnBoard(square(0, 7), square(1, 7)), "k7/8/8/8/8/8/K7/8");
        QCOMPARE(f.run("reverseAction"), "k7/8/8/8/8/8/K7/8");
        QCOMPARE(f.positionEdit->palette().color(QPalette::Text), QColor(0, 0, 0));
        f.action("recModeAction")->trigger();
        const int rows = f.window->historyWindow()->rowCount();
        QCOMPARE(f.run("horizontalMirrorAction"), "8/K7/8/8/8/8/8/k7");
        QCOMPARE(f.window->historyWindow()->rowCount(), rows);
    }

    // A click without a piece opens the palette for that square; the piece clicked there goes on it
    // and is chosen, and then clicks on the board stamp it; a click on the chosen piece gives it
    // up. A piece dragged from the palette lands under the pointer, on the turned board too.
    void thePalette() {
        Fixture f;
        click(f.diagramView(), square(4, 4));
        ViewWindow* view = f.window->viewWindow();
        QVERIFY(QTest::qWaitForWindowExposed(view));
        click(view->paletteView(), paletteCellAt(10)); // Q
        QCOMPARE(f.positionEdit->text(), "8/8/8/8/4Q3/8/8/8");
        QVERIFY(!view->chosenPieceView()->pixmap().isNull());
        click(f.diagramView(), square(0, 0));
        QCOMPARE(f.positionEdit->text(), "Q7/8/8/8/4Q3/8/8/8");
        click(view->chosenPieceView(), QPoint(3, 3));
        QCOMPARE(f.state.chosenPiece, int16_t(-1));
        QVERIFY(view->chosenPieceView()->pixmap().isNull());

        auto releaseOver = [&](QPoint onBoard) {
            return view->paletteView()->mapFromGlobal(f.diagramView()->mapToGlobal(onBoard));
        };
        drag(view->paletteView(), paletteCellAt(2), releaseOver(square(6, 4))); // P onto e2
        QCOMPARE(f.positionEdit->text(), "Q7/8/8/8/4Q3/8/4P3/8");
        f.action("reverseAction")->trigger();
        drag(view->paletteView(), paletteCellAt(12), releaseOver(square(7, 7)));
        QCOMPARE(f.positionEdit->text(), "K7/8/8/8/4Q3/8/4P3/8");
        QCOMPARE(f.window->diagram().image().pixel(square(7, 7)),
                 builtInSheet().pixel(12 * 15 + 7, 7));
    }

    // On a board of 7 x 10 whose squares stand 6 pixels apart, corner snap draws on the middle of
    // the gaps. Square n starts at pixel 12 + 21 n.
    void spacedSquares() {
        Fixture f({}, "RecentStyle = Gap\r\nBeginStyle = Gap\r\n  BorderWidth = 7 \r\n"
                      "  BorderHeight = 10 \r\n  XBase = 12 \r\n  YBase = 12 \r\n"
                      "  SqrHSpc = 6 \r\n  SqrVSpc = 6 \r\nEndStyle\r\n");
        f.window->graphicWindow()->findChild<QRadioButton*>("snapCornerOption")->setChecked(true);
        f.dragOnBoard({31, 31}, {50, 52}, Qt::ShiftModifier);
        const QImage& image = f.window->diagram().image();
        QCOMPARE(image.pixel(30, 30), qRgb(255, 0, 0));
        QVERIFY(image.pixel(54, 54) != qRgb(255, 0, 0));
    }

    // Strokes with Shift go into the picture and out with the bitmap; snapped to centres they run
    // from centre to centre; the right button and Clear Graphic leave none; a circle has the drag's
    // radius. The name given decides the file written; it is a bitmap whatever the name.
    // Paste drops the counter; the picture goes as it is shown, also as PNG and as SVG of the
    // picture's size, for editors that take only those; the HTML fragment goes as text and HTML.
    void picturesOut() {
        Fixture f;
        const QRgb red = qRgb(255, 0, 0);
        const auto pixel = [&](int x, int y) { return f.window->diagram().image().pixel(x, y); };
        GraphicWindow* graphic = f.window->graphicWindow();
        f.dragOnBoard({5, 5}, {20, 20}, Qt::ShiftModifier);
        QVERIFY(pixel(5, 5) == red && pixel(12, 12) == red && pixel(22, 22) != red);
        graphic->findChild<QPushButton*>("clearGraphicButton")->click();
        QVERIFY(pixel(12, 12) != red);
        f.dragOnBoard({5, 5}, {20, 20}, Qt::ShiftModifier, Qt::RightButton);
        QVERIFY(pixel(12, 12) != red);

        graphic->findChild<QRadioButton*>("snapCenterOption")->setChecked(true);
        f.dragOnBoard({5, 5}, {20, 20}, Qt::ShiftModifier);
        QVERIFY(pixel(5, 5) != red && pixel(6, 6) != red && pixel(10, 10) == red &&
                pixel(22, 22) == red);
        // A circle round the centre of b7, its radius the drag's, in blue.
        graphic->swatch(4)->click();
        graphic->findChild<QRadioButton*>("circleOption")->setChecked(true);
        f.dragOnBoard({20, 20}, {26, 40}, Qt::ShiftModifier);
        QVERIFY(pixel(22, 28) == qRgb(0, 0, 255) && pixel(16, 22) == qRgb(0, 0, 255));
        f.window->saveImage();
        QCOMPARE(QImage(f.folder() + u"Marlith.bmp"_s).convertToFormat(QImage::Format_RGB32),
                 f.window->diagram().image());
        f.state.imageFile = u"picture.gif"_s;
        f.window->saveImage();
        QCOMPARE(QImageReader(f.folder() + "picture.gif").format(), QByteArray("bmp"));
        QCOMPARE(f.window->windowTitle(), "Marlith - picture.gif");
        // A picture that can't be written whole leaves the old one and says so.
        const QByteArray old = readFile(f.folder() + "picture.gif");
        f.window->newPosition();
        {
            const FileSizeLimit full(old.size() / 2);
            f.window->saveImage();
        }
        QCOMPARE(readFile(f.folder() + "picture.gif"), old);
        QCOMPARE(f.warnings.size(), 1);
        QVERIFY(f.warnings[0].contains(u"picture.gif"));

        QClipboard* clipboard = QGuiApplication::clipboard();
        clipboard->setText(u"(2x0)K/8/Q"_s);
        f.window->pastePosition();
        QCOMPARE(f.positionEdit->text(), "K7/8/Q");
        QCOMPARE(f.pieceCounterLabel->text(), "(2x0)");
        f.window->copyImage();
        const QImage shown = f.window->diagram().image();
        QCOMPARE(clipboard->image().convertToFormat(QImage::Format_RGB32), shown);
        const QMimeData* mime = clipboard->mimeData();
        QCOMPARE(QImage::fromData(mime->data("image/png")).convertToFormat(shown.format()), shown);
        const QString svg = mime->data("image/svg+xml");
        QVERIFY(svg.startsWith("<?xml") &&
                svg.contains(
                    QString("width=\"%1\" height=\"%2\"").arg(shown.width()).arg(shown.height())));

        f.action("copyHtmlAction")->trigger();
        QVERIFY(clipboard->text().startsWith(u"<img src=\"Kww.gif\">"));
        QCOMPARE(clipboard->mimeData()->html(), clipboard->text());
    }

    // Without a printer the page is a PDF of one page in the documents folder,
    // made if missing, and the user is told where it went.
    void printingWithoutAPrinter() {
        if (!QPrinterInfo::defaultPrinter().isNull()) QSKIP("a printer is set up here");
        Fixture f;
        QStandardPaths::setTestModeEnabled(true); // no user-dirs file read either
        f.type(u"k7/8/8/8/8/8/8/K7"_s);
        f.action("printAction")->trigger();
        const QString pdf = f.folder() + u"Documents/Marlith.pdf"_s;
        QCOMPARE(f.informed, QStringList{pageWentTo(pdf)});
        const QByteArray bytes = readFile(pdf);
        QVERIFY(bytes.startsWith("%PDF-"));
        QCOMPARE(QString::fromLatin1(bytes).count(QRegularExpression(u"/Type\\s*/Page[^s]"_s)), 1);
    }
};

QTEST_MAIN(TstBoardWindow)
#include "tst_board_window.moc"
