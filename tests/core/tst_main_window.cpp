#include "core/about_window.h"
#include "drawing/piece_sheet.h"
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
QString Items(const QWidget* menu) {
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
        if (a->menu()) item += QStringLiteral(" [") + Items(a->menu()) + QLatin1Char(']');
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
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QCOMPARE(f.form->windowTitle(), "Marlith - Marlith.bmp");
        QCOMPARE(f.label3->text(), "(0x0)");
        QVERIFY(f.text1->text().isEmpty());
        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(QDir::currentPath() + QLatin1Char('/'), f.folder());
        QVERIFY(f.instances.isEmpty());
        QCOMPARE(f.state.prevInstanceFlag, int16_t(0));
        // No settings file: the style list holds "CUSTOM" alone.
        QCOMPARE(f.combo1()->count(), 1);
        QCOMPARE(f.combo1()->itemText(0), "CUSTOM");
        QVERIFY(f.tool("Image4(8)")->isHidden()); // no engine found
        // The widget shows the diagram image: an empty board from the sheet.
        const QImage shown = f.picMain()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(shown, f.form->diagram().image());
        QCOMPARE(shown.copy(15, 0, 15, 15), BuiltInSheet().copy(0, 15, 15, 15));

        // A second start in the same folder notices the first.
        AppState state;
        Form1 second(state);
        second.startInstance = [](const QStringList&) {};
        second.Form_Load({});
        QCOMPARE(state.prevInstanceFlag, int16_t(1));
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
            f.text1->setText(QString(text).remove(QLatin1Char('|')));
            f.text1->setCursorPosition(int(text.indexOf(QLatin1Char('|'))));
            QTest::keyClick(f.text1, key);
            return f.text1->text().insert(f.text1->cursorPosition(), QLatin1Char('|'));
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
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        f.type(QStringLiteral("kKQ"));
        QCOMPARE(f.label3->text(), "(2x1)");
        // Too long a text leaves the counter as it was.
        f.text1->setText(QStringLiteral("K") + QString(45, QLatin1Char('9')));
        QCOMPARE(f.label3->text(), "(2x1)");

        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(f.label3->frameShape(), QFrame::Box);
        f.picMain()->setFocus();
        QTRY_COMPARE(f.label3->frameShape(), QFrame::NoFrame);
        f.text1->setFocus();
        QTRY_COMPARE(f.label3->frameShape(), QFrame::Box);
    }

    void commandsOfThePosition() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QSignalSpy saveAs(f.action("MNSaveAs"), &QAction::triggered);
        QTest::keyClick(f.text1, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(f.text1->text(), f.state.style.StartPos);
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());
        QCOMPARE(f.label3->text(), "(16x16)");
        // Menu keys go before the text box's own: Ctrl+A selects nothing.
        QTest::keyClick(f.text1, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(saveAs.count(), 1);
        QVERIFY(!f.text1->hasSelectedText());
        QTest::keyClick(f.text1, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(f.text1->text().isEmpty());
        // An edit of the board leaves a sheet cell in the vector; PicMove
        // writes it back as text.
        f.state.vet[5][1] = 12 + 13; // white king as the cell of a dark square
        f.form->PicMove();
        QCOMPARE(f.text1->text(), "5K2/8/8/8/8/8/8/8");
        // A disabled item leaves the key to the text box.
        f.type(QStringLiteral("K"));
        QTest::keyClick(f.text1, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.text1->text(), "5K2/8/8/8/8/8/8/8");
    }

    // No book is open and no engine is in the program folder.
    void menuBar() {
        Fixture f;
        QCOMPARE(
            Items(f.form->menuBar()),
            "MNFile &File [MNNew &New Ctrl+N | MNStart S&tart Position Ctrl+T | - | "
            "MNSave &Save Image Ctrl+S | MNSaveAs Save Image &As... Ctrl+A | - | "
            "MNLoad Open &Book Ctrl+B | MNCriteria &Criteria Ctrl+F ~ | "
            "MNClose Cl&ose book Ctrl+O ~ | - | MNPrint &Print Ctrl+P | - | MNFileList(0) ? | "
            "MNFileList(1) ? | MNFileList(2) ? | MNFileList(3) ? | - | MNExit E&xit Ctrl+X] | "
            "MNEdit &Edit [MNRefresh Refre&sh = <Enter> | "
            "MNCopy Cop&y [MNMarlith &Marlith Ctrl+C | MNPicture &Image Ctrl+I | "
            "MNHtml HTM&L Ctrl+L] | MNPaste &Paste Marlith Ctrl+V | - | "
            "MNHistory &History Ctrl+H | MNRec Rec &Mode Ctrl+M | MNUndo &Undo Rec Ctrl+Z ~ | - | "
            "MNEffects E&ffects [MNReverse &Reverse Ctrl+R | MNHMirror Hori&zontal Mirror F2 | "
            "MNDMirror Dia&gonal Mirror F3 | MNRotate R&otate 90\u00b0 F4 | MNLeft Move L&eft F5 | "
            "MNRight Move R&ight F6 | MNUp Mo&ve Up F7 | MNDown Move &Down F8] | "
            "MNGraphic &Graphic Ctrl+G | MNstyle Styl&e Ctrl+E] | "
            "MNEngines En&gines [MNpy Pope&ye Ctrl+Y ~ | MNCrafty &Crafty Ctrl+K ~] | "
            "MNHelp &Help [MNContents &Contents | - | MNAbout &About...]");
    }

    void toolButtonsPressMoveReleaseAndClick() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QSignalSpy started(f.action("MNStart"), &QAction::triggered);
        ToolImage* start = f.tool("Image7(1)");
        auto send = [start](QEvent::Type type, QPointF at, Qt::MouseButton button) {
            QMouseEvent event(type, at, start->mapToGlobal(at), button, Qt::LeftButton,
                              Qt::NoModifier);
            QApplication::sendEvent(start, &event);
        };
        QTest::mousePress(start, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(start->showsPressedFace());
        QTRY_VERIFY(f.form->findChild<QWidget*>(QStringLiteral("Picture4"))->hasFocus());
        send(QEvent::MouseMove, QPointF(40, 5), Qt::NoButton);
        QVERIFY(!start->showsPressedFace());
        send(QEvent::MouseMove, QPointF(3, 3), Qt::NoButton);
        QVERIFY(start->showsPressedFace());
        QTest::mouseRelease(start, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(!start->showsPressedFace());
        QCOMPARE(started.count(), 1);
        QTRY_VERIFY(f.text1->hasFocus());

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
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        const QString wiring = QStringLiteral(
            "Image4(0) MNSave, Image4(1) MNGraphic, Image4(2) MNHistory, Image4(3) MNPicture, "
            "Image4(4) MNHtml, Image4(5) MNMarlith, Image4(6) MNPaste, Image4(7) MNPrint, "
            "Image7(0) MNNew, Image7(1) MNStart, Image7(2) MNRight, Image7(3) MNLeft, "
            "Image7(4) MNUp, Image7(5) MNDown, Image7(6) MNRotate, Image7(7) MNHMirror, "
            "Image7(8) MNDMirror");
        for (const QString& pair : wiring.split(QStringLiteral(", "))) {
            const QStringList names = pair.split(QLatin1Char(' '));
            QSignalSpy run(f.form->action(names[1]), &QAction::triggered);
            QTest::mouseClick(f.form->findChild<ToolImage*>(names[0]), Qt::LeftButton, {},
                              QPoint(5, 5));
            QVERIFY2(run.count() == 1, qPrintable(pair));
            const bool opensWindow = names[1] == u"MNGraphic" || names[1] == u"MNHistory";
            QTRY_COMPARE(f.text1->hasFocus(), !opensWindow);
        }
    }

    // Rotation and the diagonal mirror only on square boards.
    void squareBoardRule() {
        Fixture f;
        for (const int columns : {10, 8}) {
            f.state.style.BorderWidth = int16_t(columns);
            f.form->DrawBoard();
            const bool square = columns == 8;
            QCOMPARE(f.action("MNRotate")->isEnabled(), square);
            QCOMPARE(f.action("MNDMirror")->isEnabled(), square);
            QCOMPARE(f.tool("Image7(6)")->isHidden(), !square);
            QCOMPARE(f.tool("Image7(8)")->isHidden(), !square);
        }
    }

    void childWindowsFollowTheMainWindow() {
        Fixture f;
        QWidget history, view, graphic;
        f.form->setChildWindow(3, &history);
        f.form->setChildWindow(6, &view);
        f.form->setChildWindow(7, &graphic);
        history.show();
        graphic.show();
        f.form->showMinimized();
        QTRY_VERIFY(!history.isVisible());
        QVERIFY(!graphic.isVisible());
        f.form->showNormal();
        QTRY_VERIFY(history.isVisible());
        QVERIFY(graphic.isVisible());
        QVERIFY(!view.isVisible());
    }

    void aboutAndHelp() {
        QCOMPARE(VersionCaption(3, 0, 2), "Marlith v3.02");
        Fixture f;
        f.form->MNContents_Click();
        QCOMPARE(f.warnings, QStringList({QStringLiteral("Help not available!")}));
        QFile page(f.folder() + QStringLiteral("marlith.html"));
        QVERIFY(page.open(QIODevice::WriteOnly));
        page.write("<html><body><h1>Marlith</h1></body></html>");
        page.close();
        f.form->MNContents_Click();
        QCOMPARE(f.warnings.size(), 1);
        auto* help = f.form->findChild<QWidget*>(QStringLiteral("HelpWindow"));
        QVERIFY(help && help->isVisible());
    }

    void pickingAStyleCarriesThePositionOver() {
        Fixture f({}, kTwoStyles);
        QComboBox* combo = f.combo1();
        QStringList entries;
        for (int i = 0; i < combo->count(); ++i)
            entries << combo->itemText(i);
        QCOMPARE(entries, QStringList({"CUSTOM", "alpha", "Small", "Wide"}));
        QCOMPARE(combo->currentText(), "Small");
        f.form->MNStart_Click();
        combo->setCurrentIndex(combo->findText(QStringLiteral("Wide")));
        f.form->Combo1_Click();
        QCOMPARE(f.state.style.StyleName, "Wide");
        // The pieces keep their square numbers, in the new letters and rows.
        QCOMPARE(f.text1->text(), "cabdebacss/ssssss4/82/82/8SS/SSSSSSCABD");
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());
        QCOMPARE(f.label3->text(), "(12x16)");
        QCOMPARE(f.form->diagram().image().size(), QSize(10 * 20 + 4, 6 * 20 + 4));

        // Typed in any case and confirmed with Enter.
        combo->setEditText(QStringLiteral("small"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
        QCOMPARE(f.state.style.StyleName, "Small");
        // Squares beyond the smaller board kept their pieces in the vector.
        QCOMPARE(f.text1->text(), f.state.style.StartPos);
    }

    void styleListKeys() {
        Fixture f({}, kTwoStyles);
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QComboBox* combo = f.combo1();
        combo->setFocus();
        // A name that isn't in the list empties the field and changes nothing.
        combo->setEditText(QStringLiteral("nothing"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Enter);
        QVERIFY(combo->currentText().isEmpty());
        QCOMPARE(f.state.style.StyleName, "Small");
        // Escape brings back the selected style's name and moves on to Text1.
        combo->setEditText(QStringLiteral("Wi"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Escape);
        QCOMPARE(combo->currentText(), "Small");
        QTRY_VERIFY(f.text1->hasFocus());
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
            first.combo1()->setCurrentIndex(first.combo1()->findText(QStringLiteral("Wide")));
            first.form->Combo1_Click();
            QVERIFY(QFile(work).open(QIODevice::WriteOnly));
            first.form->close();
        }
        QVERIFY(!QFile::exists(work));
        Fixture second({}, {}, shared.path());
        QCOMPARE(second.combo1()->currentText(), "Wide");
        QCOMPARE(second.state.style.BorderWidth, int16_t(10));
    }
};

QTEST_MAIN(TstMainWindow)
#include "tst_main_window.moc"
