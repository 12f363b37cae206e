#include "gui/tool_faces.h"
#include "support/main_window_fixture.h"

#include <QCryptographicHash>
#include <QScreen>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTimer>

using namespace marlith::testing;

namespace {

const QByteArray kTwoStyles =
    "RecentStyle = Small\r\nBeginStyle = Small\r\nEndStyle\r\n"
    "BeginStyle = Wide\r\n  SqrWidth = 20 \r\n  SqrHeight = 20 \r\n  BorderWidth = 10 \r\n"
    "  BorderHeight = 6 \r\n  PiecesList = sSaAbBcCdDeE\r\nEndStyle\r\n"
    "BeginStyle = alpha\r\nEndStyle\r\n";

const QStringList kChildWindows{"view", "history", "graphic", "popeye", "crafty", "style"};

} // namespace

class TstMainWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void startsEmptyInTheDefaultStyle() {
        Fixture f({"a b.pgn", "c.fen", "d.pbm"});
        QCOMPARE(f.window->windowTitle(), "Marlith - Marlith.bmp");
        QCOMPARE(f.pieceCounterLabel->text(), "(0x0)");
        // The first file is this instance's book; the rest go to another.
        QCOMPARE(f.state.bookFile, "a b.pgn");
        QCOMPARE(f.instances, QList<QStringList>({{"c.fen", "d.pbm"}}));
        QVERIFY(f.child("engineButton")->isHidden()); // no engine found
        // The widget shows the diagram image.
        QCOMPARE(f.diagramView()->grab().toImage().convertToFormat(QImage::Format_RGB32),
                 f.window->diagram().image());

        // A second start in the same folder notices the first.
        AppState state;
        MainWindow second(state);
        second.startInstance = [](const QStringList&) {};
        second.start({});
        QVERIFY(state.otherInstanceRunning);
    }

    void commandsOfThePosition() {
        Fixture f;
        QSignalSpy saveAs(f.action("saveImageAsAction"), &QAction::triggered);
        const Qt::KeyboardModifiers ctrl = Qt::ControlModifier,
                                    ctrlShift = ctrl | Qt::ShiftModifier;
        f.type(u"kKQ"_s);
        QCOMPARE(f.pieceCounterLabel->text(), "(2x1)");
        QCOMPARE(f.key(Qt::Key_Return), "kKQ5/8/8/8/8/8/8/8"); // completes the rows
        // The typing and its rewrite at Enter are one step of Undo.
        QCOMPARE(f.key(Qt::Key_Z, ctrl), "");
        QCOMPARE(f.key(Qt::Key_Z, ctrlShift), "kKQ5/8/8/8/8/8/8/8");
        f.key(Qt::Key_T, ctrl);
        QCOMPARE(f.pieceCounterLabel->text(), "(16x16)");
        QCOMPARE(f.key(Qt::Key_N, ctrl), "");
        // The editing keys stay with the box; with nothing selected Ctrl+C copies the position.
        f.type(u"kK"_s);
        f.key(Qt::Key_A, ctrl);
        QCOMPARE(f.key(Qt::Key_X, ctrl), "");
        f.key(Qt::Key_V, ctrl);
        QCOMPARE(f.key(Qt::Key_V, ctrl), "kKkK");
        f.key(Qt::Key_C, ctrl);
        QCOMPARE(QGuiApplication::clipboard()->text(), "kKkK4/8/8/8/8/8/8/8");
        f.key(Qt::Key_S, ctrlShift);
        QCOMPARE(saveAs.count(), 1);
        QVERIFY(f.positionEdit->hasFocus());
        // The help page that ships beside the executable is found with the
        // program folder elsewhere.
        f.action("helpContentsAction")->trigger();
        QVERIFY(f.warnings.isEmpty());
        QVERIFY(f.window->findChild<QWidget*>(u"helpWindow"_s)->isVisible());
    }

    // The labels beside a control are framed while it has the focus. Each tool button runs the menu
    // item of its name; Graphic and History open windows and keep the focus, the others give it
    // back to the position box. The engine button is tst_engine_windows'.
    void focusMarksAndToolButtons() {
        Fixture f;
        f.openBook(u"b.fen"_s, "[Event \"x\"]\n8/8/8/8/8/8/8/K7 w\n8/8/8/8/8/8/8/1K6 b\n");
        for (const auto& [control, label] : {std::pair{"positionEdit", "pieceCounterLabel"},
                                             {"stepStrip", "sideLabel"},
                                             {"gameScrollBar", "gameLabel"}}) {
            auto* marked = f.window->findChild<QLabel*>(QLatin1String(label));
            f.window->findChild<QWidget*>(QLatin1String(control))->setFocus();
            QTRY_COMPARE(marked->frameStyle(), QFrame::Box | QFrame::Plain);
            f.child<QWidget>("styleBox")->setFocus();
            QTRY_COMPARE(marked->frameStyle(), int(QFrame::NoFrame));
        }
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
        drag(f.child("startPositionButton"), QPoint(5, 5), QPoint(30, 5));
        QCOMPARE(started.count(), 0);
    }

    // Menu keys that no box keeps work from the style list, whose line edit gets them past its
    // filters, and the editing keys work there too. A style picked carries the position over.
    // Export Diagram (its own key) takes the format and width, Enter is Ok, the name takes the
    // format's extension. At the end the settings are written, the work files go, and the next
    // start sees what was left: the style, the position, the place, the export choices.
    void stylesExportAndTheNextStart() {
        QTemporaryDir shared;
        const QString work = shared.filePath(u"F123456.tmp"_s);
        QStringList shown;
        // Answers the Export window that the next command opens.
        const auto answer = [&](const QString& format, const char* digits, Qt::Key end) {
            QTimer::singleShot(0, [&, format, digits, end] {
                QWidget* w = QApplication::activeModalWidget();
                if (!w) return;
                auto* formats = w->findChild<QComboBox*>(u"formatBox"_s);
                auto* width = w->findChild<QSpinBox*>(u"widthSpin"_s);
                shown << formats->currentText() + QString::number(width->value());
                formats->setCurrentIndex(formats->findText(format));
                shown << QString::number(
                    w->findChild<QCheckBox*>(u"transparentCheck"_s)->isEnabled());
                width->selectAll();
                QTest::keyClicks(width, QLatin1String(digits));
                QTest::keyClick(width, end);
            });
        };
        {
            Fixture first({}, kTwoStyles, shared.path());
            auto* combo = first.child<QComboBox>("styleBox");
            const auto pick = [&](const char* name) { // typed in any case, then Enter
                combo->setEditText(QLatin1String(name));
                QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
                // Rotation (R) and the diagonal mirror (D) only on square boards.
                return first.positionEdit->text() +
                       (first.action("rotateAction")->isEnabled() ? " R" : "") +
                       (first.child("diagonalMirrorButton")->isHidden() ? "" : " D");
            };
            int styleWindows = 0;
            first.window->runStyleWindow = [&](StyleWindow&) { ++styleWindows; };
            combo->setFocus();
            QTest::keyClick(combo, Qt::Key_E, Qt::ControlModifier);
            QCOMPARE(styleWindows, 1);
            combo->setFocus();
            QTest::keyClick(combo, Qt::Key_A, Qt::ControlModifier);
            QCOMPARE(combo->lineEdit()->selectedText(), "Small");
            QTest::keyClick(combo, Qt::Key_T, Qt::ControlModifier); // the start position
            // The pieces keep their square numbers, in the new letters and rows.
            QCOMPARE(pick("wide"), "cabdebacss/ssssss4/82/82/8SS/SSSSSSCABD");
            QCOMPARE(first.pieceCounterLabel->text(), "(12x16)");
            // Squares beyond the smaller board kept their pieces in the vector.
            QCOMPARE(pick("small"), first.state.style.StartPos + " R D");
            pick("Wide");
            first.state.exportChoices.format = ImageFormat::Bitmap;
            first.window->runChooser = [](FileChooser& chooser) {
                chooser.show();
                chooser.findChild<QLineEdit*>(u"nameEdit"_s)->setText("pic");
                chooser.confirm();
            };
            answer(u"PNG"_s, "1100", Qt::Key_Return);
            first.key(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
            const QString path = first.folder() + u"pic.png"_s;
            QVERIFY(readFile(path).startsWith("\x89PNG"));
            QCOMPARE(QImage(path).width(), 1100);
            answer(u"BMP"_s, "", Qt::Key_Escape); // no change
            first.run("exportDiagramAction");
            writeFile(work);
            // The position and the place come back, quoted as the settings file needs.
            first.positionEdit->clear();
            first.type(u"sS, \"x;y\" %41"_s);
            first.window->move(40, 30);
            first.window->close();
        }
        Fixture second({}, {}, shared.path());
        QVERIFY(!QFile::exists(work)); // no copy held its seed
        QCOMPARE(second.child<QComboBox>("styleBox")->currentText(), "Wide");
        QCOMPARE(second.positionEdit->text(), "sS, \"x;y\" %41");
        QCOMPARE(second.pieceCounterLabel->text(), "(1x1)");
        QCOMPARE(second.window->pos(), QPoint(40, 30));
        QCOMPARE(shown, QStringList({"BMP1200", "1", "PNG1100", "0"}));
        QCOMPARE(second.state.exportChoices.format, ImageFormat::Png);
    }

    void childWindowsBesideTheDiagram_data() {
        QTest::addColumn<bool>("room"); // else, taller than the room below, it hides a sliver
        for (const QString& name : kChildWindows)
            QTest::newRow(qPrintable(name)) << (name != u"style");
    }

    // Wholly on the screen, clear of the diagram; the main window stays put.
    void childWindowsBesideTheDiagram() {
        QFETCH(bool, room);
        // The row's name picks the command (an int column trips the debug build's warnings).
        const qsizetype command = kChildWindows.indexOf(QLatin1String(QTest::currentDataTag()));
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

    // At 1x the strips' faces are what they always were; at 2x a face is drawn anew, not blown up,
    // and keeps its size on screen; at 1.5x its pixels round up.
    void toolFacesAtMorePixels() {
        QCryptographicHash md5(QCryptographicHash::Md5);
        for (const auto& faces : {firstStripFaces(1), secondStripFaces(1)})
            for (const QPixmap& face : faces) {
                const QImage image = face.toImage();
                md5.addData(QByteArrayView(image.constBits(), image.sizeInBytes()));
            }
        QCOMPARE(md5.result().toHex(), "02af7227338f76e899b147eb5c2c2f46");
        const QPixmap twice = firstStripFaces(2)[2];
        QCOMPARE(twice.size(), QSize(38, 38));
        QCOMPARE(ToolButton(twice, twice, nullptr).size(), QSize(19, 19));
        QImage blownUp = firstStripFaces(1)[2].toImage().scaled(38, 38);
        blownUp.setDevicePixelRatio(2);
        QVERIFY(twice.toImage() != blownUp);
        QCOMPARE(secondStripFaces(1.5)[4].size(), QSize(14, 29));
        // The diagram too is drawn for the screen's pixels, not enlarged.
        Fixture f;
        f.positionEdit->setText(u"k7/8/8/8/8/8/8/7K"_s);
        const QImage screen = f.diagramView()->pictureAt(1);
        const QImage sharp = f.diagramView()->pictureAt(2);
        QCOMPARE(sharp.size(), screen.size() * 2);
        QVERIFY(sharp.convertToFormat(screen.format()) != screen.scaled(screen.size() * 2));
    }
};

QTEST_MAIN(TstMainWindow)
#include "tst_main_window.moc"
