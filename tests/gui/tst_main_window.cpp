#include "drawing/piece_sheet.h"
#include "gui/popeye_window.h"
#include "gui/style_window.h"
#include "support/file_bytes.h"
#include "support/main_window_fixture.h"

#include <QApplication>
#include <QClipboard>
#include <QScreen>
#include <QSignalSpy>
#include <QWheelEvent>

using namespace marlith;
using namespace marlith::testing;

namespace {

const QByteArray kTwoStyles =
    "RecentStyle = Small\r\nBeginStyle = Small\r\nEndStyle\r\n"
    "BeginStyle = Wide\r\n  SqrWidth = 20 \r\n  SqrHeight = 20 \r\n  BorderWidth = 10 \r\n"
    "  BorderHeight = 6 \r\n  PiecesList = sSaAbBcCdDeE\r\nEndStyle\r\n"
    "BeginStyle = alpha\r\nEndStyle\r\n";

const char* const kChildWindows[] = {"view", "history", "graphic", "popeye", "crafty", "style"};

} // namespace

class TstMainWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void startsEmptyInTheDefaultStyle() {
        Fixture f({QStringLiteral("a b.pgn"), QStringLiteral("c.fen"), QStringLiteral("d.pbm")});
        QCOMPARE(f.window->windowTitle(), "Marlith - Marlith.bmp");
        QCOMPARE(f.pieceCounterLabel->text(), "(0x0)");
        // The first file is this instance's book; the rest go to another.
        QCOMPARE(f.state.bookFile, "a b.pgn");
        QCOMPARE(f.instances,
                 QList<QStringList>({{QStringLiteral("c.fen"), QStringLiteral("d.pbm")}}));
        QVERIFY(f.child("engineButton")->isHidden()); // no engine found
        // The widget shows the diagram image: an empty board from the sheet.
        const QImage shown =
            f.diagramView()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(shown, f.window->diagram().image());
        QCOMPARE(shown.copy(15, 0, 15, 15), builtInSheet().copy(0, 15, 15, 15));

        // A second start in the same folder notices the first.
        AppState state;
        MainWindow second(state);
        second.startInstance = [](const QStringList&) {};
        second.start({});
        QVERIFY(state.otherInstanceRunning);
    }

    void commandsOfThePosition() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        QSignalSpy saveAs(f.action("saveImageAsAction"), &QAction::triggered);
        f.type(QStringLiteral("kKQ"));
        QCOMPARE(f.pieceCounterLabel->text(), "(2x1)");
        QTest::keyClick(f.positionEdit, Qt::Key_Return); // completes the rows
        QCOMPARE(f.positionEdit->text(), "kKQ5/8/8/8/8/8/8/8");
        // The typing and its rewrite at Enter are one step of Undo.
        QTest::keyClick(f.positionEdit, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(f.positionEdit->text().isEmpty());
        QTest::keyClick(f.positionEdit, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(f.positionEdit->text(), "kKQ5/8/8/8/8/8/8/8");
        // "/" fills the row typed so far; End cuts the text behind its last piece.
        f.positionEdit->clear();
        f.type(QStringLiteral("k/"));
        QCOMPARE(f.positionEdit->text(), "k7/");
        f.type(QStringLiteral("1K3"));
        QTest::keyClick(f.positionEdit, Qt::Key_End);
        QCOMPARE(f.positionEdit->text(), "k7/1K");
        QTest::keyClick(f.positionEdit, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(f.positionEdit->text(), f.state.style.StartPos);
        QCOMPARE(f.pieceCounterLabel->text(), "(16x16)");
        QTest::keyClick(f.positionEdit, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(f.positionEdit->text().isEmpty());
        // The editing keys stay with the box: select all, copy the selection,
        // cut, paste; with nothing selected Ctrl+C copies the position.
        f.type(QStringLiteral("kK"));
        QTest::keyClick(f.positionEdit, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.positionEdit->selectedText(), "kK");
        QTest::keyClick(f.positionEdit, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), "kK");
        QTest::keyClick(f.positionEdit, Qt::Key_X, Qt::ControlModifier);
        QVERIFY(f.positionEdit->text().isEmpty());
        QVERIFY(f.window->isVisible());
        QTest::keyClick(f.positionEdit, Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(f.positionEdit, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(f.positionEdit->text(), "kKkK");
        QTest::keyClick(f.positionEdit, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), "kKkK4/8/8/8/8/8/8/8");
        QTest::keyClick(f.positionEdit, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(saveAs.count(), 1);
        // Undo takes back the typing, the paste-less copy's rewrite included.
        QTest::keyClick(f.positionEdit, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.positionEdit->text(), "kKkK");
        QTest::keyClick(f.positionEdit, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(f.positionEdit->text(), "kKkK4/8/8/8/8/8/8/8");
    }

    // Menu keys that no box keeps work from the style list, whose line edit
    // gets them past its filters, and the editing keys work there too.
    void menuKeysFromTheStyleList() {
        Fixture f({}, kTwoStyles);
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        int styleWindows = 0;
        f.window->runStyleWindow = [&styleWindows](StyleWindow& window) {
            ++styleWindows;
            window.reject();
        };
        auto* box = f.child<QComboBox>("styleBox");
        box->setFocus();
        QTest::keyClick(box, Qt::Key_E, Qt::ControlModifier);
        QCOMPARE(styleWindows, 1);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(box->lineEdit()->selectedText(), "Small");
        QTest::keyClick(box, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(f.positionEdit->text(), f.state.style.StartPos);
    }

    // The items that need a book, a recording or an engine start disabled.
    void menuItemsWithoutBookOrEngine() {
        Fixture f;
        for (const char* item :
             {"searchAction", "closeBookAction", "undoRecAction", "popeyeAction", "craftyAction"})
            QVERIFY2(!f.action(item)->isEnabled(), item);
        QVERIFY(!f.action("recentBookAction0")->isVisible());
    }

    // Each tool button runs the menu item of its name; Graphic and History
    // open windows and keep the focus, the others give it back to the
    // position box. The engine button is tst_engine_windows'.
    void toolButtonsRunTheirMenuItems() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        for (const char* name :
             {"saveImage", "graphic", "history", "copyImage", "copyHtml", "copyPosition",
              "pastePosition", "print", "new", "startPosition", "moveRight", "moveLeft", "moveUp",
              "moveDown", "rotate", "horizontalMirror", "diagonalMirror"}) {
            const QString stem = QLatin1String(name);
            QSignalSpy run(f.window->action(stem + "Action"), &QAction::triggered);
            QTest::mouseClick(f.window->findChild<ToolButton*>(stem + "Button"), Qt::LeftButton, {},
                              QPoint(5, 5));
            QVERIFY2(run.count() == 1, name);
            QTRY_COMPARE(f.positionEdit->hasFocus(), stem != u"graphic" && stem != u"history");
        }
        // Released outside: no command.
        QSignalSpy started(f.action("startPositionAction"), &QAction::triggered);
        QTest::mousePress(f.child("startPositionButton"), Qt::LeftButton, {}, QPoint(5, 5));
        QTest::mouseRelease(f.child("startPositionButton"), Qt::LeftButton, {}, QPoint(30, 5));
        QCOMPARE(started.count(), 0);
    }

    // Rotation and the diagonal mirror only on square boards.
    void squareBoardRule() {
        Fixture f;
        for (const int columns : {10, 8}) {
            f.state.style.BorderWidth = int16_t(columns);
            f.window->drawBoard();
            QCOMPARE(f.action("rotateAction")->isEnabled(), columns == 8);
            QCOMPARE(f.child("diagonalMirrorButton")->isHidden(), columns != 8);
        }
    }

    // The labels beside a control are framed while it has the focus.
    void focusMarks() {
        Fixture f;
        f.openBook(QStringLiteral("b.fen"),
                   "[Event \"x\"]\n8/8/8/8/8/8/8/K7 w\n8/8/8/8/8/8/8/1K6 b\n");
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        for (const auto& [control, label] : {std::pair{"positionEdit", "pieceCounterLabel"},
                                             {"stepStrip", "sideLabel"},
                                             {"gameScrollBar", "gameLabel"}}) {
            auto* marked = f.window->findChild<QLabel*>(QLatin1String(label));
            f.window->findChild<QWidget*>(QLatin1String(control))->setFocus();
            QTRY_COMPARE(marked->frameStyle(), QFrame::Box | QFrame::Plain);
            f.child<QWidget>("styleBox")->setFocus();
            QTRY_COMPARE(marked->frameStyle(), int(QFrame::NoFrame));
        }
    }

    void pickingAStyleCarriesThePositionOver() {
        Fixture f({}, kTwoStyles);
        auto* combo = f.child<QComboBox>("styleBox");
        QCOMPARE(combo->currentText(), "Small");
        f.window->setStartPosition();
        combo->setCurrentIndex(combo->findText(QStringLiteral("Wide")));
        f.window->chooseStyle();
        QCOMPARE(f.state.style.StyleName, "Wide");
        // The pieces keep their square numbers, in the new letters and rows.
        QCOMPARE(f.positionEdit->text(), "cabdebacss/ssssss4/82/82/8SS/SSSSSSCABD");
        QCOMPARE(f.pieceCounterLabel->text(), "(12x16)");
        QCOMPARE(f.window->diagram().image().size(), QSize(10 * 20 + 4, 6 * 20 + 4));

        // Typed in any case and confirmed with Enter.
        combo->setEditText(QStringLiteral("small"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
        QCOMPARE(f.state.style.StyleName, "Small");
        // Squares beyond the smaller board kept their pieces in the vector.
        QCOMPARE(f.positionEdit->text(), f.state.style.StartPos);
    }

    // At the end the settings are written and the work files go.
    void theNextStartSeesTheChosenStyle() {
        QTemporaryDir shared;
        const QString work = shared.filePath(QStringLiteral("F123456.tmp"));
        {
            Fixture first({}, kTwoStyles, shared.path());
            auto* combo = first.child<QComboBox>("styleBox");
            combo->setCurrentIndex(combo->findText(QStringLiteral("Wide")));
            first.window->chooseStyle();
            writeFile(work);
            // The position, the place and the Popeye fields come back, also
            // with the characters that end an item or a line.
            first.positionEdit->clear();
            first.type(QStringLiteral("sS, \"x;y\" %41"));
            first.window->move(40, 30);
            first.state.popeyeFields.stipulation = QStringLiteral("ser-h#|;");
            first.state.popeyeFields.maxMem = QStringLiteral("twin=1");
            first.window->close();
        }
        Fixture second({}, {}, shared.path());
        QVERIFY(!QFile::exists(work)); // no copy held its seed
        QCOMPARE(second.child<QComboBox>("styleBox")->currentText(), "Wide");
        QCOMPARE(second.positionEdit->text(), "sS, \"x;y\" %41");
        QCOMPARE(second.pieceCounterLabel->text(), "(1x1)");
        QCOMPARE(second.window->pos(), QPoint(40, 30));
        const PopeyeWindow popeye(second.state, nullptr);
        QCOMPARE(popeye.findChild<QComboBox*>("stipulationBox")->currentText(), "ser-h#|;");
        QCOMPARE(second.state.popeyeFields.maxMem, "twin=1");
    }

    // The style list matches whole names: nothing completes typing, and the
    // wheel picks nothing while another control has the focus.
    void styleListTakesNoGuesses() {
        Fixture f({}, kTwoStyles);
        auto* box = f.child<QComboBox>("styleBox");
        box->lineEdit()->clear();
        QTest::keyClicks(box->lineEdit(), QStringLiteral("Wi"));
        QCOMPARE(box->currentText(), "Wi");
        f.positionEdit->setFocus();
        QWheelEvent wheel(QPointF(5, 5), box->mapToGlobal(QPointF(5, 5)), {}, {0, -120},
                          Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box, &wheel);
        QCOMPARE(f.state.style.StyleName, "Small");
    }

    // Two copies on one folder: each removes only its own temporary files.
    void copiesKeepApart() {
        Fixture first;
        AppState state;
        MainWindow second(state);
        second.startInstance = [](const QStringList&) {};
        second.start({});
        QVERIFY(state.tempSeed != first.state.tempSeed);
        const QString others = first.folder() + state.tempSeed + QStringLiteral(".tmp");
        const QString own = first.folder() + first.state.tempSeed + QStringLiteral("o.tmp");
        writeFile(others);
        writeFile(own);
        first.window->close();
        QVERIFY(QFile::exists(others) && !QFile::exists(own));
    }

    // A press whose release was lost doesn't turn the next click into a
    // move; a book shown at start makes the window tall enough for its panel;
    // every tool button tells its command.
    void strayPressesAndTheStartHeight() {
        Fixture f;
        f.type(QStringLiteral("k7/8/8/8/8/8/8/K7"));
        QTest::mousePress(f.diagramView(), Qt::LeftButton, {}, QPoint(7, 7));
        QTest::mousePress(f.diagramView(), Qt::LeftButton, {}, QPoint(22, 22));
        QTest::mouseRelease(f.diagramView(), Qt::LeftButton, {}, QPoint(22, 22));
        QCOMPARE(f.positionEdit->text(), "k7/8/8/8/8/8/8/K7");

        QTemporaryDir books;
        writeFile(books.filePath("b.pgn"), "[Style \"Wide\"]\n\n1. e4 *\n");
        Fixture withBook({books.filePath("b.pgn")}, kTwoStyles);
        QVERIFY(withBook.window->height() >= twipsToWholePixels(5580));
        for (const ToolButton* button : withBook.window->findChildren<ToolButton*>())
            QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->objectName()));
        QCOMPARE(withBook.child("saveImageButton")->toolTip(), "Save Image (Ctrl+S)");
    }

    // The help page that ships beside the executable is found with the
    // program folder elsewhere.
    void helpFromBesideTheExecutable() {
        Fixture f;
        f.action("helpContentsAction")->trigger();
        QVERIFY(f.warnings.isEmpty());
        QVERIFY(f.window->findChild<QWidget*>(QStringLiteral("helpWindow"))->isVisible());
    }

    void childWindowsBesideTheDiagram_data() {
        QTest::addColumn<bool>("room"); // else, taller than the room below, it hides a sliver
        for (const char* name : kChildWindows)
            QTest::newRow(name) << (QLatin1String(name) != u"style");
    }

    // Wholly on the screen, clear of the diagram; the main window stays put.
    void childWindowsBesideTheDiagram() {
        QFETCH(bool, room);
        // The row's name picks the command, in the order of the list.
        const auto command = std::find_if(std::begin(kChildWindows), std::end(kChildWindows),
                                          [](const char* name) {
                                              return qstrcmp(name, QTest::currentDataTag()) == 0;
                                          }) -
                             std::begin(kChildWindows);
        Fixture f;
        f.window->move(0, 0);
        QRect opened;
        f.window->runStyleWindow = [&](QWidget& w) { opened = w.frameGeometry(); };
        using Command = void (MainWindow::*)();
        const Command commands[] = {&MainWindow::showViewWindow,    &MainWindow::showHistory,
                                    &MainWindow::showGraphicWindow, &MainWindow::openPopeye,
                                    &MainWindow::openCrafty,        &MainWindow::editStyle};
        (f.window.get()->*commands[command])();
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window != f.window.get()) opened = window->frameGeometry();
        QCOMPARE(f.window->pos(), QPoint(0, 0));
        const QRect diagram(f.diagramView()->mapToGlobal(QPoint(0, 0)), f.diagramView()->size());
        QVERIFY(!opened.isEmpty());
        QVERIFY(room ? !opened.intersects(diagram)
                     : opened.intersected(diagram).height() < diagram.height() / 8);
        QVERIFY(f.window->screen()->availableGeometry().contains(opened));
    }
};

QTEST_MAIN(TstMainWindow)
#include "tst_main_window.moc"
