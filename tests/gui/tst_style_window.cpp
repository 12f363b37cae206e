#include "drawing/font_pieces.h"
#include "styles/style_block.h"
#include "support/main_window_fixture.h"

#include <QAbstractItemView>
#include <QMenu>

using namespace marlith::testing;

namespace {

const QByteArray kSettings = "RecentStyle = Alpha\r\n\r\n"
                             "BeginStyle = Alpha\r\n  PiecesFile = alpha.bmp\r\n"
                             "  SqrWidth = 20 \r\n  SqrHeight = 20 \r\nEndStyle\r\n\r\n"
                             "BeginStyle = Gamma\r\n  SqrWidth = 15 \r\nEndStyle\r\n";

// A sheet of 13 by 2 cells of `size` pixels, each cell its own grey.
void writeSheet(const QString& path, int size) {
    QImage sheet(13 * size, 2 * size, QImage::Format_RGB32);
    for (int cell = 0; cell < 26; ++cell) {
        const int grey = 40 + cell * 8;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                sheet.setPixel((cell % 13) * size + x, (cell / 13) * size + y, qRgb(grey, grey, 0));
    }
    QVERIFY(sheet.save(path, "BMP"));
}

template <typename T = QPushButton> T* in(StyleWindow& w, const char* name) {
    return w.findChild<T*>(QLatin1String(name));
}

void enter(StyleWindow& w, const char* edit, const QString& text) {
    auto* box = in<QLineEdit>(w, edit);
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

void run(StyleWindow& w, const char* action) {
    in<QAction>(w, action)->trigger();
}

// The program with a library of two styles, and a Style window driven as a
// user would: `steps` runs while the window is open.
struct StyleSession : Fixture {
    QStringList questions;
    QMessageBox::StandardButton answer = QMessageBox::Yes;
    int32_t picked = -1;
    QString chosenFile;

    StyleSession() : Fixture({}, kSettings, {}) {
        writeSheet(folder() + u"alpha.bmp"_s, 20);
        window->chooseStyleByName(u"Alpha"_s);
    }

    void open(const std::function<void(StyleWindow&)>& steps) {
        window->runStyleWindow = [&](StyleWindow& w) {
            w.ask = [this](const QString& text, QMessageBox::StandardButtons) {
                questions.append(text);
                return answer;
            };
            w.pickColor = [this](int32_t, QWidget*) { return picked; };
            w.chooseFile = [this](ChooserMode) {
                return chosenFile.isEmpty() ? std::nullopt : std::optional(chosenFile);
            };
            w.show();
            steps(w);
            w.hide();
        };
        window->editStyle();
    }
    // The margin behind the last square shows the back colour.
    QRgb corner() const {
        const QImage& image = window->diagram().image();
        return image.pixel(image.width() - 1, image.height() - 1);
    }
    QStringList styleList() const { return itemTexts(child<QComboBox>("styleBox")); }
};

} // namespace

class TstStyleWindow : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    // Each change shows in the diagram at once; Cancel brings the old look back and leaves the
    // settings file alone. Ok keeps the edits in force, Save stores them; the next opening starts
    // from what Ok kept. A font in place of the pieces file: squares of the size typed, in the
    // colour picked, kept when the style is saved.
    void previewsOkAndSave() {
        StyleSession s;
        const QImage before = s.window->diagram().image();
        s.picked = 0x0000FF; // red
        s.open([&](StyleWindow& w) {
            // The padlock open: the picture takes the size of the board.
            in<ToolButton>(w, "padlockButton")->clicked();
            enter(w, "boardColumnsEdit", u"5"_s);
            QCOMPARE(s.window->diagram().image().width(), 5 * 20 + 4);
            in(w, "backColorSwatch")->click();
            QCOMPARE(s.corner(), qRgb(255, 0, 0));
            QCOMPARE(w.statusText(), "View mode...");
            // The width bar resizes the picture pixel by pixel, no draw.
            auto* bar = in<QScrollBar>(w, "pictureWidthScrollBar");
            bar->setValue(bar->value() + 7);
            QCOMPARE(s.window->diagram().image().width(), 5 * 20 + 4 + 7);
            w.reject();
        });
        QCOMPARE(s.window->diagram().image(), before);
        QCOMPARE(s.state.style.BorderWidth, 8);
        QCOMPARE(readFile(s.folder() + "Marlith.ini"), kSettings);

        s.picked = 0x00FF00;
        s.open([&](StyleWindow& w) {
            in<ToolButton>(w, "padlockButton")->clicked();
            in<QComboBox>(w, "piecesFontBox")->setEditText(kPieceFontFamily);
            enter(w, "squareSizeEdit", u"30"_s);
            QCOMPARE(s.window->diagram().image().width(), 8 * 30 + 4);
            in(w, "darkColorSwatch")->click();
            QCOMPARE(s.window->diagram().image().pixel(31, 1), qRgb(0, 255, 0));
            in<QComboBox>(w, "styleNameBox")->setEditText(u"Beta"_s);
            enter(w, "frameWidthEdit", u"2"_s);
            run(w, "saveStyleAction");
            QCOMPARE(w.statusText(), "Beta saved!");
            QVERIFY(s.questions.isEmpty());
            in(w, "okButton")->click();
        });
        QCOMPARE(s.state.style.StyleName, "Beta");
        QCOMPARE(s.state.style.FrameWidth, 2);
        QCOMPARE(s.styleList(), QStringList({"CUSTOM", "Alpha", "Gamma", "Beta"}));
        const QByteArray expected = readFile(s.folder() + "Marlith.ini");
        QVERIFY(
            expected.contains("BeginStyle = Beta\r\n") && expected.contains("FrameWidth = 2 ") &&
            expected.contains("  PiecesFont = Noto Sans Symbols 2\r\n  LightColor = &HFFFFFF\r\n"
                              "  DarkColor = &HFF00\r\n  SqrWidth = 30 \r\n"));

        // Saving again asks before it replaces; Exit keeps what Ok kept.
        s.answer = QMessageBox::No;
        s.open([&](StyleWindow& w) {
            QCOMPARE(in<QLineEdit>(w, "frameWidthEdit")->text(), "2");
            run(w, "saveStyleAction");
            run(w, "exitAction");
        });
        QCOMPARE(s.questions, QStringList({"This file already contains a style called Beta.\n"
                                           "Would you like to replace the existing style?"}));
        QCOMPARE(s.state.style.FrameWidth, 2);
        QCOMPARE(readFile(s.folder() + "Marlith.ini"), expected);
    }

    // What the Save command refuses, and Delete, and Restore defaults; then only a choice in the
    // pop-up loads the style of a name that is typed.
    void listRefusalsDeleteAndRestore() {
        StyleSession s;
        s.open([&](StyleWindow& w) {
            in<QComboBox>(w, "styleNameBox")->setEditText("Smith, John");
            run(w, "saveStyleAction");
            in<QComboBox>(w, "styleNameBox")->setEditText(u"Alpha"_s);
            in<QLineEdit>(w, "piecesFileEdit")->clear();
            run(w, "saveStyleAction");
            run(w, "deleteStyleAction");
            run(w, "restoreDefaultsAction");
            // The fields show the defaults, the picture sizing itself again.
            QCOMPARE(in<QLineEdit>(w, "pictureWidthEdit")->text(), "124");
            QVERIFY(in(w, "autoSizeButton")->isEnabled());
            // The default style draws from the built-in sheet again.
            QCOMPARE(s.window->diagram().image().copy(0, 0, 15, 15),
                     builtInSheet().copy(0, 0, 15, 15));
            w.activateWindow();
            auto* name = in<QComboBox>(w, "styleNameBox");
            enter(w, "frameWidthEdit", u"2"_s);
            name->setFocus();
            name->setEditText(u"Gamma"_s);
            in<QLineEdit>(w, "frameWidthEdit")->setFocus();
            name->setFocus();
            QTest::keyClick(name, Qt::Key_Return);
            in<QMenu>(w, "fileMenu")->popup(w.pos());
            in<QMenu>(w, "fileMenu")->close();
            QCOMPARE(s.state.style.FrameWidth, 2);
            name->showPopup();
            QTest::mouseClick(name->view()->viewport(), Qt::LeftButton, {},
                              name->view()->visualRect(name->model()->index(1, 0)).center());
            QCOMPARE(s.state.style.FrameWidth, 0); // Gamma's
            w.reject();
        });
        QCOMPARE(s.questions,
                 QStringList({"The style name can't hold \",\"!", "There's no valid pieces file!",
                              "Are you sure you want to delete Alpha?"}));
        QCOMPARE(readFile(s.folder() + "Marlith.ini"),
                 QByteArray("RecentStyle = Alpha\r\n\r\n"
                            "BeginStyle = Gamma\r\n  SqrWidth = 15 \r\nEndStyle\r\n"));
        QCOMPARE(s.styleList(), QStringList({"CUSTOM", "Gamma"}));
    }

    // The grid switch: on, the board gets a margin; off, the margin goes and comes back at the next
    // switching on. The sheet decides the square size; a border picture centres the board; a file
    // that is no picture is refused with the message.
    void gridAndFilesOfTheStyle() {
        StyleSession s;
        writeSheet(s.folder() + "big.bmp", 30);
        QImage border(400, 300, QImage::Format_RGB32);
        border.fill(Qt::blue);
        QVERIFY(border.save(s.folder() + "border.bmp", "BMP"));
        writeFile(s.folder() + "text.bmp", "BM no picture");
        s.open([&](StyleWindow& w) {
            auto* grid = in<QCheckBox>(w, "showGridCheck");
            grid->click();
            QCOMPARE(s.state.style.XBase, 15 * 15);
            enter(w, "boardOffsetXEdit", u"25"_s);
            grid->click();
            QCOMPARE(s.state.style.XBase, 0);
            grid->click();
            QCOMPARE(s.state.style.XBase, 25 * 15);
            s.chosenFile = s.folder() + "big.bmp";
            in<ToolButton>(w, "browsePiecesButton")->clicked();
            QCOMPARE(s.state.style.SqrWidth, 30 * 15);
            s.chosenFile = s.folder() + "border.bmp";
            in<ToolButton>(w, "browseBorderButton")->clicked();
            QCOMPARE(in<QLineEdit>(w, "boardOffsetXEdit")->text(), "80");
            QCOMPARE(s.window->diagram().image().pixel(5, 5), qRgb(0, 0, 255));
            enter(w, "piecesFileEdit", u"text.bmp"_s);
            w.reject();
        });
        QCOMPARE(s.questions, QStringList({"File not found!"}));
    }
};

QTEST_MAIN(TstStyleWindow)
#include "tst_style_window.moc"
