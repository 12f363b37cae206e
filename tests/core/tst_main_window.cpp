#include "core/about_window.h"
#include "drawing/piece_sheet.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

const QByteArray kTwoStyles = "; my styles\r\n"
                              "RecentStyle = Small\r\n"
                              "BeginStyle = Small\r\n"
                              "  SqrWidth = 15 \r\n"
                              "  SqrHeight = 15 \r\n"
                              "EndStyle\r\n"
                              "BeginStyle = Wide\r\n"
                              "  SqrWidth = 20 \r\n"
                              "  SqrHeight = 20 \r\n"
                              "  BorderWidth = 10 \r\n"
                              "  BorderHeight = 6 \r\n"
                              "  PiecesList = sSaAbBcCdDeE\r\n"
                              "EndStyle\r\n"
                              "BeginStyle = alpha\r\n"
                              "EndStyle\r\n";

} // namespace

class TstMainWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void startsEmptyInTheDefaultStyle() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QCOMPARE(f.form->windowTitle(), QStringLiteral("Marlith - Marlith.bmp"));
        QCOMPARE(f.label3->text(), QStringLiteral("(0x0)"));
        QVERIFY(f.text1->text().isEmpty());
        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(f.state.programFolder, f.folder());
        QCOMPARE(QDir::currentPath() + QLatin1Char('/'), f.folder());
        QVERIFY(QRegularExpression(QStringLiteral("^F\\d{6}$")).match(f.state.tempSeed).hasMatch());
        QCOMPARE(f.state.keepForms, int16_t(-1));
        QCOMPARE(f.state.clickedSquare, int16_t(-1));
        QCOMPARE(f.state.prevInstanceFlag, int16_t(0));
        // 6645 by 3210 twips.
        QCOMPARE(f.form->size(), QSize(443, 214));
        auto* picMain = f.form->findChild<DiagramView*>(QStringLiteral("PicMain"));
        QVERIFY(picMain);
        QCOMPARE(picMain->size(), QSize(124, 124));
        QCOMPARE(picMain->pos(), QPoint(208, 40));
        // The widget shows the diagram image: an empty board from the sheet.
        const QImage shown = picMain->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(shown, f.form->diagram().image());
        QCOMPARE(shown.copy(15, 0, 15, 15), BuiltInSheet().copy(0, 15, 15, 15));
    }

    void secondInstanceIsNoticed() {
        Fixture first;
        AppState state;
        Form1 second(state);
        second.startInstance = [](const QStringList&) {};
        second.Form_Load({});
        QCOMPARE(state.prevInstanceFlag, int16_t(1));
    }

    void commandLineStartsFurtherInstances() {
        Fixture none;
        QVERIFY(none.instances.isEmpty());
        QVERIFY(none.state.bookFile.isEmpty());
        Fixture three(
            {QStringLiteral("a b.pgn"), QStringLiteral("c.fen"), QStringLiteral("d.pbm")});
        QCOMPARE(three.state.bookFile, QStringLiteral("a b.pgn"));
        QCOMPARE(three.instances.size(), 1);
        QCOMPARE(three.instances[0],
                 QStringList({QStringLiteral("c.fen"), QStringLiteral("d.pbm")}));
    }

    void keysOfThePositionText() {
        Fixture f;
        f.type(QStringLiteral("pp/"));
        QCOMPARE(f.text1->text(), QStringLiteral("pp6/"));
        QCOMPARE(f.text1->cursorPosition(), 4);
        f.type(QStringLiteral("/"));
        QCOMPARE(f.text1->text(), QStringLiteral("pp6/8/"));

        QTest::keyClick(f.text1, Qt::Key_Escape);
        QVERIFY(f.text1->text().isEmpty());

        f.text1->setText(QStringLiteral("p/p"));
        QCOMPARE(f.state.vet[1][1], int16_t(1)); // side by side until Enter
        QTest::keyClick(f.text1, Qt::Key_Return);
        QCOMPARE(f.text1->text(), QStringLiteral("pp6/8/8/8/8/8/8/8"));
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());

        f.text1->setText(QStringLiteral("12"));
        QTest::keyClick(f.text1, Qt::Key_Enter);
        QCOMPARE(f.text1->text(), QStringLiteral("8/8/8/8/8/8/8/8"));

        f.text1->setText(QStringLiteral("pp6/8/8"));
        f.text1->setCursorPosition(0);
        QTest::keyClick(f.text1, Qt::Key_End);
        QCOMPARE(f.text1->text(), QStringLiteral("pp"));
        QCOMPARE(f.text1->cursorPosition(), 2);
        f.text1->setText(QStringLiteral("8/8"));
        QTest::keyClick(f.text1, Qt::Key_End);
        QVERIFY(f.text1->text().isEmpty());

        // Everything else reaches the box unfiltered.
        f.type(QStringLiteral("Zz 9"));
        QCOMPARE(f.text1->text(), QStringLiteral("Zz 9"));
    }

    void counterAndItsFocusBorder() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        f.type(QStringLiteral("kKQ"));
        QCOMPARE(f.label3->text(), QStringLiteral("(2x1)"));
        f.text1->setText(QStringLiteral("(9x9)k"));
        QCOMPARE(f.label3->text(), QStringLiteral("(0x1)"));
        // Too long a text leaves the counter as it was.
        f.text1->setText(QStringLiteral("K") + QString(45, QLatin1Char('9')));
        QCOMPARE(f.label3->text(), QStringLiteral("(0x1)"));

        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(f.label3->frameShape(), QFrame::Box);
        f.form->findChild<DiagramView*>(QStringLiteral("PicMain"))->setFocus();
        QTRY_COMPARE(f.label3->frameShape(), QFrame::NoFrame);
        f.text1->setFocus();
        QTRY_COMPARE(f.label3->frameShape(), QFrame::Box);
    }

    void keystrokeRepaintsOnlyChangedSquares() {
        Fixture f;
        Diagram& diagram = f.form->diagram();
        auto copiesOf = [&](auto&& action) {
            const long long before = diagram.copies();
            action();
            return diagram.copies() - before;
        };
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("K")); }), 1);
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("k")); }), 1);
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("/")); }), 0); // "Kk6/": same squares
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("P")); }), 1);
        QCOMPARE(copiesOf([&] { QTest::keyClick(f.text1, Qt::Key_Backspace); }), 1);
        QCOMPARE(copiesOf([&] {
                     f.text1->setCursorPosition(0);
                     f.type(QStringLiteral("1"));
                 }),
                 3);
        QCOMPARE(copiesOf([&] { f.form->MNStart_Click(); }), 32);
        QCOMPARE(copiesOf([&] { f.form->MNRefresh_Click(); }), 0);
        // After a change of look every square is painted again.
        QCOMPARE(copiesOf([&] {
                     f.form->DrawBoard();
                     ResetVet(f.state.vet, f.state.board());
                     f.form->Build();
                 }),
                 64);
    }

    void commandsOfThePosition() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        f.form->MNStart_Click();
        QCOMPARE(f.text1->text(), f.state.style.StartPos);
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());
        QCOMPARE(f.label3->text(), QStringLiteral("(16x16)"));
        QTest::keyClick(f.text1, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(f.text1->text().isEmpty());
        QTest::keyClick(f.text1, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(f.text1->text(), f.state.style.StartPos);

        // An edit of the board leaves a sheet cell in the vector; PicMove
        // writes it back as text.
        f.form->MNNew_Click();
        f.state.vet[5][1] = 12 + 13; // white king as the cell of a dark square
        f.form->PicMove();
        QCOMPARE(f.text1->text(), QStringLiteral("5K2/8/8/8/8/8/8/8"));
        QCOMPARE(f.state.vet[5][1], int16_t(12));
    }

    void menuTree_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<bool>("enabled");
        const char* rows[][5] = {
            {"MNNew", "MNFile", "&New", "Ctrl+N", "1"},
            {"MNStart", "MNFile", "S&tart Position", "Ctrl+T", "1"},
            {"MNSave", "MNFile", "&Save Image", "Ctrl+S", "1"},
            {"MNSaveAs", "MNFile", "Save Image &As...", "Ctrl+A", "1"},
            {"MNLoad", "MNFile", "Open &Book", "Ctrl+B", "1"},
            {"MNCriteria", "MNFile", "&Criteria", "Ctrl+F", "0"},
            {"MNClose", "MNFile", "Cl&ose book", "Ctrl+O", "0"},
            {"MNPrint", "MNFile", "&Print", "Ctrl+P", "1"},
            {"MNExit", "MNFile", "E&xit", "Ctrl+X", "1"},
            {"MNRefresh", "MNEdit", "Refre&sh = <Enter>", "", "1"},
            {"MNCopy", "MNEdit", "Cop&y", "", "1"},
            {"MNMarlith", "MNCopy", "&Marlith", "Ctrl+C", "1"},
            {"MNPicture", "MNCopy", "&Image", "Ctrl+I", "1"},
            {"MNHtml", "MNCopy", "HTM&L", "Ctrl+L", "1"},
            {"MNPaste", "MNEdit", "&Paste Marlith", "Ctrl+V", "1"},
            {"MNHistory", "MNEdit", "&History", "Ctrl+H", "1"},
            {"MNRec", "MNEdit", "Rec &Mode", "Ctrl+M", "1"},
            {"MNUndo", "MNEdit", "&Undo Rec", "Ctrl+Z", "0"},
            {"MNEffects", "MNEdit", "E&ffects", "", "1"},
            {"MNReverse", "MNEffects", "&Reverse", "Ctrl+R", "1"},
            {"MNHMirror", "MNEffects", "Hori&zontal Mirror", "F2", "1"},
            {"MNDMirror", "MNEffects", "Dia&gonal Mirror", "F3", "1"},
            {"MNRotate", "MNEffects", "R&otate 90\u00b0", "F4", "1"},
            {"MNLeft", "MNEffects", "Move L&eft", "F5", "1"},
            {"MNRight", "MNEffects", "Move R&ight", "F6", "1"},
            {"MNUp", "MNEffects", "Mo&ve Up", "F7", "1"},
            {"MNDown", "MNEffects", "Move &Down", "F8", "1"},
            {"MNGraphic", "MNEdit", "&Graphic", "Ctrl+G", "1"},
            {"MNstyle", "MNEdit", "Styl&e", "Ctrl+E", "1"},
            // No engine in the program folder: both entries are disabled.
            {"MNpy", "MNEngines", "Pope&ye", "Ctrl+Y", "0"},
            {"MNCrafty", "MNEngines", "&Crafty", "Ctrl+K", "0"},
            {"MNContents", "MNHelp", "&Contents", "", "1"},
            {"MNAbout", "MNHelp", "&About...", "", "1"},
        };
        for (const auto& row : rows)
            QTest::newRow(row[0]) << row[0] << row[1] << QString::fromUtf8(row[2]) << row[3]
                                  << (row[4][0] == '1');
    }
    void menuTree() {
        QFETCH(QString, name);
        QFETCH(QString, parent);
        QFETCH(QString, caption);
        QFETCH(QString, keys);
        QFETCH(bool, enabled);
        Fixture f;
        QAction* item = f.form->action(name);
        QVERIFY(item);
        QCOMPARE(item->text(), caption);
        QCOMPARE(item->shortcut(), QKeySequence(keys));
        QCOMPARE(item->isEnabled(), enabled);
        auto* menu = f.form->findChild<QMenu*>(parent);
        QVERIFY(menu);
        QVERIFY(menu->actions().contains(item));
    }

    void menuOrderAndSeparators() {
        Fixture f;
        auto names = [&](const char* menu) {
            QStringList out;
            for (QAction* a : f.form->findChild<QMenu*>(QLatin1String(menu))->actions())
                out << (a->isSeparator() ? QStringLiteral("-") : a->objectName());
            return out;
        };
        QCOMPARE(names("MNFile"),
                 QStringList({"MNNew", "MNStart", "-", "MNSave", "MNSaveAs", "-", "MNLoad",
                              "MNCriteria", "MNClose", "-", "MNPrint", "-", "MNFileList(0)",
                              "MNFileList(1)", "MNFileList(2)", "MNFileList(3)", "-", "MNExit"}));
        QCOMPARE(names("MNEdit"),
                 QStringList({"MNRefresh", "MNCopy", "MNPaste", "-", "MNHistory", "MNRec", "MNUndo",
                              "-", "MNEffects", "MNGraphic", "MNstyle"}));
        QCOMPARE(names("MNHelp"), QStringList({"MNContents", "-", "MNAbout"}));
        for (int i = 0; i < 4; ++i)
            QVERIFY(!f.form->action(QStringLiteral("MNFileList(%1)").arg(i))->isVisible());
    }

    void controlsStandAtTheirPlaces() {
        Fixture f;
        auto at = [&](const char* name) {
            return f.form->findChild<QWidget*>(QLatin1String(name))->geometry();
        };
        QCOMPARE(at("Label3"), QRect(0, 5, 57, 21));
        QCOMPARE(at("Text1"), QRect(56, 5, 377, 21));
        QCOMPARE(at("Picture3"), QRect(0, 40, 201, 22));
        QCOMPARE(at("Picture4"), QRect(0, 64, 201, 22));
        QCOMPARE(at("Frame1"), QRect(0, 96, 201, 49));
        QCOMPARE(at("Combo1"), QRect(8, 112, 129, 21));
        QCOMPARE(at("Command9"), QRect(144, 112, 49, 21));
        QCOMPARE(at("Frame2"), QRect(0, 152, 201, 385));
        QVERIFY(!f.form->findChild<QWidget*>(QStringLiteral("Frame2"))->isVisible());
        QCOMPARE(at("Image4(7)"), QRect(19, 0, 19, 19));
        QCOMPARE(at("Image4(6)"), QRect(150, 0, 19, 19));
        QCOMPARE(at("Image7(2)"), QRect(46, 0, 19, 9));
        QCOMPARE(at("Image7(3)"), QRect(46, 9, 19, 9));
        QCOMPARE(at("Image7(4)"), QRect(65, 0, 9, 19));
        QCOMPARE(at("Image7(5)"), QRect(74, 0, 9, 19));
        QCOMPARE(at("Image6"), QRect(178, 0, 19, 19));
        QVERIFY(f.tool(QStringLiteral("Image4(8)"))->isHidden());
        QVERIFY(!f.tool(QStringLiteral("Image7(6)"))->isHidden());
    }

    void toolButtonsPressMoveReleaseAndClick() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QSignalSpy started(f.action("MNStart"), &QAction::triggered);
        ToolImage* start = f.tool(QStringLiteral("Image7(1)"));
        QTest::mousePress(start, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(start->showsPressedFace());
        QTRY_VERIFY(f.form->findChild<QWidget*>(QStringLiteral("Picture4"))->hasFocus());
        QMouseEvent away(QEvent::MouseMove, QPointF(40, 5), start->mapToGlobal(QPointF(40, 5)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(start, &away);
        QVERIFY(!start->showsPressedFace());
        QMouseEvent back(QEvent::MouseMove, QPointF(3, 3), start->mapToGlobal(QPointF(3, 3)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(start, &back);
        QVERIFY(start->showsPressedFace());
        QTest::mouseRelease(start, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(!start->showsPressedFace());
        QCOMPARE(started.count(), 1);
        QCOMPARE(f.text1->text(), f.state.style.StartPos);
        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());

        // Released outside: no command.
        QTest::mousePress(start, Qt::LeftButton, {}, QPoint(5, 5));
        QTest::mouseRelease(start, Qt::LeftButton, {}, QPoint(30, 5));
        QCOMPARE(started.count(), 1);

        // A double click runs the command twice: the window system sends
        // press, release, double click, release.
        QTest::mouseClick(start, Qt::LeftButton, {}, QPoint(5, 5));
        QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(5, 5),
                           start->mapToGlobal(QPointF(5, 5)), Qt::LeftButton, Qt::LeftButton,
                           Qt::NoModifier);
        QApplication::sendEvent(start, &second);
        QTest::mouseRelease(start, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(started.count(), 3);
    }

    void toolButtonsThatOpenWindowsKeepTheFocus() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QSignalSpy graphic(f.action("MNGraphic"), &QAction::triggered);
        QSignalSpy saved(f.action("MNSave"), &QAction::triggered);
        QSignalSpy py(f.action("MNpy"), &QAction::triggered);
        QTest::mouseClick(f.tool(QStringLiteral("Image4(1)")), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(graphic.count(), 1);
        QVERIFY(!f.text1->hasFocus());
        QTest::mouseClick(f.tool(QStringLiteral("Image4(0)")), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(saved.count(), 1);
        QTRY_VERIFY(f.text1->hasFocus());
        // The engine button does nothing while no engine is named.
        f.state.recentEngine.clear();
        f.tool(QStringLiteral("Image4(8)"))->show();
        QTest::mouseClick(f.tool(QStringLiteral("Image4(8)")), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(py.count(), 0);
        f.state.recentEngine = QStringLiteral("popeye");
        f.action("MNpy")->setEnabled(true); // as if Popeye had been found
        QTest::mouseClick(f.tool(QStringLiteral("Image4(8)")), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(py.count(), 1);
    }

    void menuShortcutsGoBeforeTheTextBox() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QSignalSpy saveAs(f.action("MNSaveAs"), &QAction::triggered);
        f.type(QStringLiteral("Kk"));
        QTest::keyClick(f.text1, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(saveAs.count(), 1);
        QVERIFY(!f.text1->hasSelectedText());
        // A disabled item leaves the key to the text box.
        QTest::keyClick(f.text1, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(f.text1->text() != QStringLiteral("Kk"));
    }

    void squareBoardRule() {
        Fixture f;
        f.state.style.BorderWidth = 10;
        f.form->DrawBoard();
        QVERIFY(!f.action("MNRotate")->isEnabled());
        QVERIFY(!f.action("MNDMirror")->isEnabled());
        QVERIFY(f.tool(QStringLiteral("Image7(6)"))->isHidden());
        QVERIFY(f.tool(QStringLiteral("Image7(8)"))->isHidden());
        f.state.style.BorderWidth = 8;
        f.form->DrawBoard();
        QVERIFY(f.action("MNRotate")->isEnabled());
        QVERIFY(!f.tool(QStringLiteral("Image7(8)"))->isHidden());
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
        // After that a maximise or a normal resize shows nothing more.
        history.hide();
        f.form->showMaximized();
        QTest::qWait(20);
        QVERIFY(!history.isVisible());
    }

    void aboutAndHelp() {
        QCOMPARE(VersionCaption(3, 0, 2), QStringLiteral("Marlith v3.02"));
        Form2 about;
        QCOMPARE(about.windowTitle(), QStringLiteral("About Marlith"));
        QVERIFY(about.findChild<QLabel*>(QStringLiteral("Label1"))
                    ->text()
                    .startsWith(QStringLiteral("Marlith v")));
        about.show();
        QTest::keyClick(&about, Qt::Key_Escape);
        QVERIFY(!about.isVisible());

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

    void styleListFromTheSettings() {
        Fixture f({}, kTwoStyles);
        QComboBox* combo = f.combo1();
        QStringList entries;
        for (int i = 0; i < combo->count(); ++i)
            entries << combo->itemText(i);
        QCOMPARE(entries, QStringList({"CUSTOM", "alpha", "Small", "Wide"}));
        QCOMPARE(combo->currentText(), QStringLiteral("Small"));
        QCOMPARE(f.state.style.StyleName, QStringLiteral("Small"));

        // No settings file: only "CUSTOM" and the defaults.
        Fixture bare;
        QCOMPARE(bare.combo1()->count(), 1);
        QCOMPARE(bare.combo1()->itemText(0), QStringLiteral("CUSTOM"));
        QVERIFY(bare.state.style.StyleName.isEmpty());
    }

    void pickingAStyleCarriesThePositionOver() {
        Fixture f({}, kTwoStyles);
        f.form->MNStart_Click();
        QComboBox* combo = f.combo1();
        combo->setCurrentIndex(combo->findText(QStringLiteral("Wide")));
        f.form->Combo1_Click();
        QCOMPARE(f.state.style.StyleName, QStringLiteral("Wide"));
        QCOMPARE(f.state.style.BorderWidth, int16_t(10));
        // The pieces keep their square numbers, in the new letters and rows.
        QCOMPARE(f.text1->text(), QStringLiteral("cabdebacss/ssssss4/82/82/8SS/SSSSSSCABD"));
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());
        QCOMPARE(f.label3->text(), QStringLiteral("(12x16)"));
        QCOMPARE(f.form->diagram().image().size(), QSize(10 * 20 + 4, 6 * 20 + 4));

        // Typed in any case and confirmed with Enter.
        combo->setEditText(QStringLiteral("small"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
        QCOMPARE(f.state.style.StyleName, QStringLiteral("Small"));
        QCOMPARE(f.state.style.BorderWidth, int16_t(8));
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
        QCOMPARE(f.state.style.StyleName, QStringLiteral("Small"));
        // Escape brings back the selected style's name and moves on to Text1.
        combo->setEditText(QStringLiteral("Wi"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Escape);
        QCOMPARE(combo->currentText(), QStringLiteral("Small"));
        QTRY_VERIFY(f.text1->hasFocus());
        // "custom" in lower case opens the Style window.
        f.state.savedStyle.StyleName = QStringLiteral("untouched");
        combo->setEditText(QStringLiteral("custom"));
        QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
        QCOMPARE(f.state.savedStyle.StyleName, QStringLiteral("Small"));
    }

    void theNextStartSeesTheChosenStyle() {
        QTemporaryDir shared;
        {
            Fixture first({}, kTwoStyles, shared.path());
            first.combo1()->setCurrentIndex(first.combo1()->findText(QStringLiteral("Wide")));
            first.form->Combo1_Click();
            first.form->close();
        }
        Fixture second({}, {}, shared.path());
        QCOMPARE(second.state.style.StyleName, QStringLiteral("Wide"));
        QCOMPARE(second.combo1()->currentText(), QStringLiteral("Wide"));
        QCOMPARE(second.state.style.BorderWidth, int16_t(10));
        QFile ini(shared.path() + QStringLiteral("/Marlith.ini"));
        QVERIFY(ini.open(QIODevice::ReadOnly));
        QVERIFY(ini.readAll().startsWith("; my styles\r\nRecentStyle = Wide\r\n"));
    }

    void recentBooksInTheFileMenu() {
        Fixture f({}, "RecentFile = /books/old.pgn\r\nRecentFile = /books/new.fen\r\n");
        QAction* first = f.action("MNFileList(0)");
        QVERIFY(first->isVisible());
        QCOMPARE(first->text(), QStringLiteral("&1 /books/new.fen"));
        QCOMPARE(f.action("MNFileList(1)")->text(), QStringLiteral("&2 /books/old.pgn"));
        QVERIFY(!f.action("MNFileList(2)")->isVisible());
        f.form->AddRecent(QStringLiteral("/a/very/long/folder/name/of/books/problems.pbm"));
        QCOMPARE(f.action("MNFileList(0)")->text(),
                 QStringLiteral("&1 /.../name/of/books/problems.pbm"));
        QVERIFY(f.action("MNFileList(2)")->isVisible());
    }

    void stopDeletesTemporaryFiles() {
        Fixture f;
        for (const char* name : {"F123456.tmp", "f0000000.tmp", "keep.txt"}) {
            QFile file(f.folder() + QLatin1String(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        f.form->close();
        QCOMPARE(f.state.keepForms, int16_t(0));
        QVERIFY(!QFile::exists(f.folder() + QStringLiteral("F123456.tmp")));
        QVERIFY(!QFile::exists(f.folder() + QStringLiteral("f0000000.tmp")));
        QVERIFY(QFile::exists(f.folder() + QStringLiteral("keep.txt")));
    }
};

QTEST_MAIN(TstMainWindow)
#include "tst_main_window.moc"
