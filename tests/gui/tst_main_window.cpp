#include "drawing/piece_sheet.h"
#include "gui/about_window.h"
#include "support/main_window_fixture.h"

#include <QApplication>
#include <QDir>
#include <QMenuBar>
#include <QSignalSpy>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

const QByteArray kTwoStyles =
    "RecentStyle = Small\r\nBeginStyle = Small\r\nEndStyle\r\n"
    "BeginStyle = Wide\r\n  SqrWidth = 20 \r\n  SqrHeight = 20 \r\n  BorderWidth = 10 \r\n"
    "  BorderHeight = 6 \r\n  PiecesList = sSaAbBcCdDeE\r\nEndStyle\r\n"
    "BeginStyle = alpha\r\nEndStyle\r\n";

// A menu as "item | item": an item is "name caption keys", "~" marks a
// disabled item, "name ?" a hidden one, "-" a separator; a submenu follows
// in brackets.
QString itemsOf(const QWidget* menu) {
    QStringList items;
    for (const QAction* a : menu->actions()) {
        if (a->isSeparator() || !a->isVisible()) {
            items << (a->isSeparator() ? QStringLiteral("-")
                                       : a->objectName() + QStringLiteral(" ?"));
            continue;
        }
        QString item = a->objectName() + QLatin1Char(' ') + a->text();
        if (!a->shortcut().isEmpty()) item += QLatin1Char(' ') + a->shortcut().toString();
        if (!a->isEnabled()) item += QStringLiteral(" ~");
        if (a->menu()) item += QStringLiteral(" [") + itemsOf(a->menu()) + QLatin1Char(']');
        items << item;
    }
    return items.join(QStringLiteral(" | "));
}

} // namespace

class TstMainWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void startsEmptyInTheDefaultStyle() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        QCOMPARE(f.window->windowTitle(), "Marlith - Marlith.bmp");
        QCOMPARE(f.pieceCounterLabel->text(), "(0x0)");
        QVERIFY(f.positionEdit->text().isEmpty());
        QTRY_VERIFY(f.positionEdit->hasFocus());
        QCOMPARE(QDir::currentPath() + QLatin1Char('/'), f.folder());
        QVERIFY(f.instances.isEmpty());
        QVERIFY(!f.state.otherInstanceRunning);
        // No settings file: the style list holds "CUSTOM" alone.
        QCOMPARE(f.styleBox()->count(), 1);
        QCOMPARE(f.styleBox()->itemText(0), "CUSTOM");
        QVERIFY(f.tool("engineButton")->isHidden()); // no engine found
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

    void commandLineStartsFurtherInstances() {
        Fixture f({QStringLiteral("a b.pgn"), QStringLiteral("c.fen"), QStringLiteral("d.pbm")});
        QCOMPARE(f.state.bookFile, "a b.pgn");
        QCOMPARE(f.instances,
                 QList<QStringList>({{QStringLiteral("c.fen"), QStringLiteral("d.pbm")}}));
    }

    // Each key the position box handles itself; the rules are tst_fen's.
    void keysOfThePositionText() {
        Fixture f;
        // The text before and after the key, "|" marking the caret.
        auto press = [&](const char* before, Qt::Key key) {
            const QString text = QLatin1String(before);
            f.positionEdit->setText(QString(text).remove(QLatin1Char('|')));
            f.positionEdit->setCursorPosition(int(text.indexOf(QLatin1Char('|'))));
            QTest::keyClick(f.positionEdit, key);
            return f.positionEdit->text().insert(f.positionEdit->cursorPosition(),
                                                 QLatin1Char('|'));
        };
        QCOMPARE(press("pp|", Qt::Key_Slash), "pp6/|");
        QCOMPARE(press("pp6/|", Qt::Key_Escape), "|");
        QCOMPARE(press("p/p|", Qt::Key_Return), "pp6/8/8/8/8/8/8/8|");
        QCOMPARE(press("12|", Qt::Key_Enter), "8/8/8/8/8/8/8/8|");
        QCOMPARE(press("|pp6/8/8", Qt::Key_End), "pp|");
        QCOMPARE(press("Zz |", Qt::Key_9), "Zz 9|"); // the rest unfiltered
    }

    void counterAndItsFocusBorder() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        f.type(QStringLiteral("kKQ"));
        QCOMPARE(f.pieceCounterLabel->text(), "(2x1)");
        // Too long a text leaves the counter as it was.
        f.positionEdit->setText(QStringLiteral("K") + QString(45, QLatin1Char('9')));
        QCOMPARE(f.pieceCounterLabel->text(), "(2x1)");

        QTRY_VERIFY(f.positionEdit->hasFocus());
        QCOMPARE(f.pieceCounterLabel->frameShape(), QFrame::Box);
        f.diagramView()->setFocus();
        QTRY_COMPARE(f.pieceCounterLabel->frameShape(), QFrame::NoFrame);
        f.positionEdit->setFocus();
        QTRY_COMPARE(f.pieceCounterLabel->frameShape(), QFrame::Box);
    }

    void commandsOfThePosition() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        QSignalSpy saveAs(f.action("saveImageAsAction"), &QAction::triggered);
        QTest::keyClick(f.positionEdit, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(f.positionEdit->text(), f.state.style.StartPos);
        QCOMPARE(f.positionEdit->cursorPosition(), f.positionEdit->text().size());
        QCOMPARE(f.pieceCounterLabel->text(), "(16x16)");
        // Menu keys go before the text box's own: Ctrl+A selects nothing.
        QTest::keyClick(f.positionEdit, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(saveAs.count(), 1);
        QVERIFY(!f.positionEdit->hasSelectedText());
        QTest::keyClick(f.positionEdit, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(f.positionEdit->text().isEmpty());
        // An edit of the board leaves a sheet cell in the vector; commitBoardEdit
        // writes it back as text.
        f.state.squares[5][1] = 12 + 13; // white king as the cell of a dark square
        f.window->commitBoardEdit();
        QCOMPARE(f.positionEdit->text(), "5K2/8/8/8/8/8/8/8");
        // A disabled item leaves the key to the text box.
        f.type(QStringLiteral("K"));
        QTest::keyClick(f.positionEdit, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.positionEdit->text(), "5K2/8/8/8/8/8/8/8");
    }

    // No book is open and no engine is in the program folder.
    void menuBar() {
        Fixture f;
        QCOMPARE(
            itemsOf(f.window->menuBar()),
            "fileMenu &File [newAction &New Ctrl+N | startPositionAction S&tart Position Ctrl+T | "
            "- | "
            "saveImageAction &Save Image Ctrl+S | saveImageAsAction Save Image &As... Ctrl+A | - | "
            "openBookAction Open &Book Ctrl+B | searchAction &Criteria Ctrl+F ~ | "
            "closeBookAction Cl&ose book Ctrl+O ~ | - | printAction &Print Ctrl+P | - | "
            "recentBookAction0 ? | "
            "recentBookAction1 ? | recentBookAction2 ? | recentBookAction3 ? | - | exitAction "
            "E&xit Ctrl+X] | "
            "editMenu &Edit [refreshAction Refre&sh = <Enter> | "
            "copyMenu Cop&y [copyPositionAction &Marlith Ctrl+C | copyImageAction &Image Ctrl+I | "
            "copyHtmlAction HTM&L Ctrl+L] | pastePositionAction &Paste Marlith Ctrl+V | - | "
            "historyAction &History Ctrl+H | recModeAction Rec &Mode Ctrl+M | undoRecAction &Undo "
            "Rec Ctrl+Z ~ | - | "
            "effectsMenu E&ffects [reverseAction &Reverse Ctrl+R | horizontalMirrorAction "
            "Hori&zontal Mirror F2 | "
            "diagonalMirrorAction Dia&gonal Mirror F3 | rotateAction R&otate 90\u00b0 F4 | "
            "moveLeftAction Move L&eft F5 | "
            "moveRightAction Move R&ight F6 | moveUpAction Mo&ve Up F7 | moveDownAction Move &Down "
            "F8] | "
            "graphicAction &Graphic Ctrl+G | styleAction Styl&e Ctrl+E] | "
            "enginesMenu En&gines [popeyeAction Pope&ye Ctrl+Y ~ | craftyAction &Crafty Ctrl+K ~] "
            "| "
            "helpMenu &Help [helpContentsAction &Contents | - | aboutAction &About...]");
    }

    void toolButtonsPressMoveReleaseAndClick() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        QSignalSpy started(f.action("startPositionAction"), &QAction::triggered);
        ToolButton* start = f.tool("startPositionButton");
        auto send = [start](QEvent::Type type, QPointF at, Qt::MouseButton button) {
            QMouseEvent event(type, at, start->mapToGlobal(at), button, Qt::LeftButton,
                              Qt::NoModifier);
            QApplication::sendEvent(start, &event);
        };
        QTest::mousePress(start, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(start->showsPressedFace());
        QTRY_VERIFY(f.window->findChild<QWidget*>(QStringLiteral("secondToolStrip"))->hasFocus());
        send(QEvent::MouseMove, QPointF(40, 5), Qt::NoButton);
        QVERIFY(!start->showsPressedFace());
        send(QEvent::MouseMove, QPointF(3, 3), Qt::NoButton);
        QVERIFY(start->showsPressedFace());
        QTest::mouseRelease(start, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(!start->showsPressedFace());
        QCOMPARE(started.count(), 1);
        QTRY_VERIFY(f.positionEdit->hasFocus());

        // Released outside: no command.
        QTest::mousePress(start, Qt::LeftButton, {}, QPoint(5, 5));
        QTest::mouseRelease(start, Qt::LeftButton, {}, QPoint(30, 5));
        QCOMPARE(started.count(), 1);

        // A double click runs the command twice: the window system sends
        // press, release, double click, release.
        QTest::mouseClick(start, Qt::LeftButton, {}, QPoint(5, 5));
        send(QEvent::MouseButtonDblClick, QPointF(5, 5), Qt::LeftButton);
        QTest::mouseRelease(start, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(started.count(), 3);
    }

    // Each tool button runs its menu item; Graphic and History open windows
    // and keep the focus, the others give it back to the position box. The
    // engine button is tst_engine_windows'.
    void toolButtonsRunTheirMenuItems() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        const QString wiring =
            QStringLiteral("saveImageButton saveImageAction, graphicButton graphicAction, "
                           "historyButton historyAction, copyImageButton copyImageAction, "
                           "copyHtmlButton copyHtmlAction, copyPositionButton copyPositionAction, "
                           "pastePositionButton pastePositionAction, printButton printAction, "
                           "newButton newAction, startPositionButton startPositionAction, "
                           "moveRightButton moveRightAction, moveLeftButton moveLeftAction, "
                           "moveUpButton moveUpAction, moveDownButton moveDownAction, rotateButton "
                           "rotateAction, horizontalMirrorButton horizontalMirrorAction, "
                           "diagonalMirrorButton diagonalMirrorAction");
        for (const QString& pair : wiring.split(QStringLiteral(", "))) {
            const QStringList names = pair.split(QLatin1Char(' '));
            QSignalSpy run(f.window->action(names[1]), &QAction::triggered);
            QTest::mouseClick(f.window->findChild<ToolButton*>(names[0]), Qt::LeftButton, {},
                              QPoint(5, 5));
            QVERIFY2(run.count() == 1, qPrintable(pair));
            const bool opensWindow = names[1] == u"graphicAction" || names[1] == u"historyAction";
            QTRY_COMPARE(f.positionEdit->hasFocus(), !opensWindow);
        }
    }

    // Rotation and the diagonal mirror only on square boards.
    void squareBoardRule() {
        Fixture f;
        for (const int columns : {10, 8}) {
            f.state.style.BorderWidth = int16_t(columns);
            f.window->drawBoard();
            const bool square = columns == 8;
            QCOMPARE(f.action("rotateAction")->isEnabled(), square);
            QCOMPARE(f.action("diagonalMirrorAction")->isEnabled(), square);
            QCOMPARE(f.tool("rotateButton")->isHidden(), !square);
            QCOMPARE(f.tool("diagonalMirrorButton")->isHidden(), !square);
        }
    }

    void childWindowsFollowTheMainWindow() {
        Fixture f;
        QWidget history, view, graphic;
        f.window->setChildWindow(MainWindow::ChildWindow::History, &history);
        f.window->setChildWindow(MainWindow::ChildWindow::View, &view);
        f.window->setChildWindow(MainWindow::ChildWindow::Graphic, &graphic);
        history.show();
        graphic.show();
        f.window->showMinimized();
        QTRY_VERIFY(!history.isVisible());
        QVERIFY(!graphic.isVisible());
        f.window->showNormal();
        QTRY_VERIFY(history.isVisible());
        QVERIFY(graphic.isVisible());
        QVERIFY(!view.isVisible());
    }

    void aboutAndHelp() {
        QCOMPARE(versionCaption(3, 0, 2), "Marlith v3.02");
        Fixture f;
        f.window->showHelp();
        QCOMPARE(f.warnings, QStringList({QStringLiteral("Help not available!")}));
        QFile page(f.folder() + QStringLiteral("marlith.html"));
        QVERIFY(page.open(QIODevice::WriteOnly));
        page.write("<html><body><h1>Marlith</h1></body></html>");
        page.close();
        f.window->showHelp();
        QCOMPARE(f.warnings.size(), 1);
        auto* help = f.window->findChild<QWidget*>(QStringLiteral("helpWindow"));
        QVERIFY(help && help->isVisible());
    }

    void pickingAStyleCarriesThePositionOver() {
        Fixture f({}, kTwoStyles);
        QComboBox* combo = f.styleBox();
        QStringList entries;
        for (int i = 0; i < combo->count(); ++i)
            entries << combo->itemText(i);
        QCOMPARE(entries, QStringList({"CUSTOM", "alpha", "Small", "Wide"}));
        QCOMPARE(combo->currentText(), "Small");
        f.window->setStartPosition();
        combo->setCurrentIndex(combo->findText(QStringLiteral("Wide")));
        f.window->chooseStyle();
        QCOMPARE(f.state.style.StyleName, "Wide");
        // The pieces keep their square numbers, in the new letters and rows.
        QCOMPARE(f.positionEdit->text(), "cabdebacss/ssssss4/82/82/8SS/SSSSSSCABD");
        QCOMPARE(f.positionEdit->cursorPosition(), f.positionEdit->text().size());
        QCOMPARE(f.pieceCounterLabel->text(), "(12x16)");
        QCOMPARE(f.window->diagram().image().size(), QSize(10 * 20 + 4, 6 * 20 + 4));

        // Typed in any case and confirmed with Enter.
        combo->setEditText(QStringLiteral("small"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
        QCOMPARE(f.state.style.StyleName, "Small");
        // Squares beyond the smaller board kept their pieces in the vector.
        QCOMPARE(f.positionEdit->text(), f.state.style.StartPos);
    }

    void styleListKeys() {
        Fixture f({}, kTwoStyles);
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        QComboBox* combo = f.styleBox();
        combo->setFocus();
        // A name that isn't in the list empties the field and changes nothing.
        combo->setEditText(QStringLiteral("nothing"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Enter);
        QVERIFY(combo->currentText().isEmpty());
        QCOMPARE(f.state.style.StyleName, "Small");
        // Escape brings back the selected style's name and moves on to the position box.
        combo->setEditText(QStringLiteral("Wi"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Escape);
        QCOMPARE(combo->currentText(), "Small");
        QTRY_VERIFY(f.positionEdit->hasFocus());
        // "custom" in lower case opens the Style window.
        f.state.savedStyle.StyleName = QStringLiteral("untouched");
        combo->setEditText(QStringLiteral("custom"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
        QCOMPARE(f.state.savedStyle.StyleName, "Small");
    }

    // At the end the settings are written and the work files go.
    void theNextStartSeesTheChosenStyle() {
        QTemporaryDir shared;
        const QString work = shared.filePath(QStringLiteral("F123456.tmp"));
        {
            Fixture first({}, kTwoStyles, shared.path());
            first.styleBox()->setCurrentIndex(first.styleBox()->findText(QStringLiteral("Wide")));
            first.window->chooseStyle();
            QVERIFY(QFile(work).open(QIODevice::WriteOnly));
            first.window->close();
        }
        QVERIFY(!QFile::exists(work));
        Fixture second({}, {}, shared.path());
        QCOMPARE(second.styleBox()->currentText(), "Wide");
        QCOMPARE(second.state.style.BorderWidth, int16_t(10));
    }
};

QTEST_MAIN(TstMainWindow)
#include "tst_main_window.moc"
