// The board, the palette and the image output driven as a user drives them:
// real mouse events on the diagram and the View window. The editing rules
// themselves are tst_board_edit's.
#include "drawing/piece_sheet.h"
#include "drawing/view_window.h"
#include "support/main_window_fixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImageReader>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

// The middle of square (row, column) of the default 15-pixel board.
QPoint Square(int row, int column) {
    return QPoint(column * 15 + 7, row * 15 + 7);
}

void Drag(QWidget* widget, QPoint from, QPoint to, Qt::KeyboardModifiers keys = {},
          Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(widget, button, keys, from);
    QTest::mouseRelease(widget, button, keys, to);
}

void Click(QWidget* widget, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
    Drag(widget, at, at, {}, button);
}

// Palette cell k (from 1) of the default palette.
QPoint PaletteCellAt(int k) {
    return QPoint(((k - 1) % 6) * 15 + 7, ((k - 1) / 6) * 15 + 7);
}

} // namespace

class TstBoardWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void movesCopiesAndEmpties() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        f.text1->setText(QStringLiteral("K"));
        Drag(f.picMain(), Square(0, 0), Square(1, 1));
        QCOMPARE(f.text1->text(), "8/1K6/8/8/8/8/8/8");
        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());
        Drag(f.picMain(), Square(1, 1), Square(2, 2), Qt::ControlModifier);
        QCOMPARE(f.text1->text(), "8/1K6/2K5/8/8/8/8/8");
        Click(f.picMain(), Square(2, 2), Qt::RightButton);
        QCOMPARE(f.text1->text(), "8/1K6/8/8/8/8/8/8");
        QCOMPARE(f.label3->text(), "(1x0)");
        QCOMPARE(f.state.pressX, -1.0f);
        // A stroke with Shift edits nothing and asks for no piece.
        Drag(f.picMain(), Square(1, 1), Square(3, 3), Qt::ShiftModifier);
        QCOMPARE(f.text1->text(), "8/1K6/8/8/8/8/8/8");
        QVERIFY(!f.form->form6()->isVisible());
    }

    void aClickWithoutPieceOpensThePaletteForThatSquare() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        Click(f.picMain(), Square(4, 4));
        Form6* view = f.form->form6();
        QVERIFY(view->isVisible());
        QCOMPARE(f.state.clickedSquare, int16_t(36));
        // The piece clicked in the palette goes on that square and is chosen.
        Click(view->picture1(), PaletteCellAt(10)); // Q
        QCOMPARE(f.text1->text(), "8/8/8/8/4Q3/8/8/8");
        QCOMPARE(f.state.viewPiece, int16_t(10));
        QVERIFY(!view->picture2()->pixmap().isNull());
        // Now clicks on the board stamp it.
        Click(f.picMain(), Square(0, 0));
        Click(f.picMain(), Square(0, 1));
        QCOMPARE(f.text1->text(), "QQ6/8/8/8/4Q3/8/8/8");
        // A click on the chosen piece gives it up.
        Click(view->picture2(), QPoint(3, 3));
        QCOMPARE(f.state.viewPiece, int16_t(-1));
        QVERIFY(view->picture2()->pixmap().isNull());
    }

    void paletteRowsAndCells() {
        Fixture f;
        Form6* view = f.form->form6();
        const QImage palette =
            view->picture1()->pixmap().toImage().convertToFormat(QImage::Format_RGB32);
        for (int k = 1; k <= 12; ++k) // each cell is the sheet's cell k on colour 0
            QCOMPARE(palette.copy((k - 1) % 6 * 15, (k - 1) / 6 * 15, 15, 15),
                     BuiltInSheet().copy(k * 15, 0, 15, 15));

        // A thirteenth piece starts a third row; beyond it nothing is chosen.
        f.state.style.PiecesList = QStringLiteral("pPnNbBrRqQkKx");
        f.form->DrawView();
        Click(view->picture1(), PaletteCellAt(14));
        QCOMPARE(f.state.viewPiece, int16_t(-1));
        Click(view->picture1(), PaletteCellAt(13));
        QCOMPARE(f.state.viewPiece, int16_t(13));
    }

    void dragFromThePaletteOntoTheBoard() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowExposed(f.form.get()));
        f.form->Command9_Click();
        Form6* view = f.form->form6();
        QVERIFY(QTest::qWaitForWindowExposed(view));
        auto releaseOver = [&](QPoint onBoard) {
            return view->picture1()->mapFromGlobal(f.picMain()->mapToGlobal(onBoard));
        };
        Drag(view->picture1(), PaletteCellAt(2), releaseOver(Square(6, 4))); // P onto e2
        QCOMPARE(f.text1->text(), "8/8/8/8/8/8/4P3/8");
        QCOMPARE(f.state.viewPiece, int16_t(2));

        // Released outside the board with no square waiting: only chosen.
        f.state.clickedSquare = -1;
        Drag(view->picture1(), PaletteCellAt(11), releaseOver(QPoint(-40, 300)));
        QCOMPARE(f.state.viewPiece, int16_t(11));
        QCOMPARE(f.text1->text(), "8/8/8/8/8/8/4P3/8");

        // On the turned board the piece lands under the pointer, is drawn
        // there, and is dragged from there.
        f.state.reversedBoard = 65;
        f.form->DrawBoard();
        ResetVet(f.state.vet, f.state.board());
        f.form->Build();
        Drag(view->picture1(), PaletteCellAt(12), releaseOver(Square(7, 7)));
        QCOMPARE(f.text1->text(), "K7/8/8/8/8/8/4P3/8");
        QCOMPARE(f.form->diagram().image().pixel(Square(7, 7)),
                 BuiltInSheet().pixel(12 * 15 + 7, 7));
        Drag(f.picMain(), Square(7, 7), Square(7, 6));
        QCOMPARE(f.text1->text(), "1K6/8/8/8/8/8/4P3/8");
    }

    void escapeKeepsThePieceTheCloseBoxDoesNot() {
        Fixture f;
        f.form->Command9_Click();
        Form6* view = f.form->form6();
        Click(view->picture1(), PaletteCellAt(4));
        QTest::keyClick(view->picture1(), Qt::Key_Escape);
        QVERIFY(!view->isVisible());
        QCOMPARE(f.state.viewPiece, int16_t(4));
        f.form->Command9_Click();
        view->close();
        QVERIFY(!view->isVisible());
        QCOMPARE(f.state.viewPiece, int16_t(-1));
        QVERIFY(view->picture2()->pixmap().isNull());
        f.form->Command9_Click(); // hidden, not gone
        QVERIFY(view->isVisible());
    }

    // The name given decides the file written; it is a bitmap whatever the name.
    void savedBitmaps() {
        Fixture f;
        f.form->MNStart_Click();
        f.form->CmdSave();
        QCOMPARE(f.form->windowTitle(), "Marlith - Marlith.bmp");
        QImage saved(f.folder() + QStringLiteral("Marlith.bmp"));
        QCOMPARE(saved.convertToFormat(QImage::Format_RGB32), f.form->diagram().image());

        QVERIFY(QDir(f.folder()).mkdir(QStringLiteral("v1.0")));
        const struct {
            QString given, written;
        } cases[] = {{f.folder() + "diagram", "diagram.bmp"},
                     {f.folder() + "v1.0/diagram", "v1.0/diagram"},
                     {"picture.gif", "picture.gif"}};
        for (const auto& c : cases) {
            f.state.imageFile = c.given;
            f.form->CmdSave();
            QCOMPARE(QImageReader(f.folder() + c.written).format(), QByteArray("bmp"));
        }
        // A folder that doesn't exist changes only the caption.
        f.state.imageFile = QStringLiteral("/no/such/folder/x.bmp");
        f.form->CmdSave();
        QCOMPARE(f.form->windowTitle(), "Marlith - /no/such/folder/x.bmp");
    }

    void clipboardTextAndPicture() {
        Fixture f;
        QClipboard* clipboard = QGuiApplication::clipboard();
        f.text1->setText(QStringLiteral("K/k"));
        f.form->MNMarlith_Click();
        QCOMPARE(f.text1->text(), "Kk6/8/8/8/8/8/8/8");
        QCOMPARE(clipboard->text(), "Kk6/8/8/8/8/8/8/8");
        f.state.style.CopyCounter = 1;
        f.form->MNMarlith_Click();
        QCOMPARE(clipboard->text(), "(1x1)Kk6/8/8/8/8/8/8/8");

        // Paste completes short rows and drops the counter.
        clipboard->setText(QStringLiteral("(2x0)K/8/Q"));
        f.form->MNPaste_Click();
        QCOMPARE(f.text1->text(), "K7/8/Q");
        QCOMPARE(f.label3->text(), "(2x0)");
        clipboard->clear();
        f.form->MNPaste_Click();
        QVERIFY(f.text1->text().isEmpty());
        clipboard->setText(QString(3'000'000, QLatin1Char('K')));
        f.form->MNPaste_Click();
        QCOMPARE(f.text1->text().size(), f.text1->maxLength());
        QCOMPARE(f.label3->text(), "(0x0)"); // too long: counter kept
        QCOMPARE(f.state.vet[63][1], int16_t(12));

        f.form->MNPicture_Click();
        QCOMPARE(clipboard->image().convertToFormat(QImage::Format_RGB32),
                 f.form->diagram().image());
    }
};

QTEST_MAIN(TstBoardWindow)
#include "tst_board_window.moc"
