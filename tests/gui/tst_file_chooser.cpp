// The file chooser driven through its controls, alone and from the main window's commands; the
// rules for names, filters and folders are tst_chooser_rules'.
#include "support/main_window_fixture.h"

#include <QTimer>

using namespace marlith::testing;

namespace {

QListWidgetItem* rowOf(QListWidget* list, const QString& text) {
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->text().trimmed() == text) return list->item(i);
    return nullptr;
}

void click(QListWidget* list, const QString& row, bool twice = false) {
    const QPoint at = list->visualItemRect(rowOf(list, row)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    if (twice) QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

// A chooser of its own, its lists in a fresh folder.
struct Chooser {
    QTemporaryDir dir;
    AppState state;
    FileChooser window{state};
    QComboBox* filter = window.findChild<QComboBox*>(u"filterBox"_s);
    QListWidget* folders = window.findChild<QListWidget*>(u"folderList"_s);
    QListWidget* files = window.findChild<QListWidget*>(u"fileList"_s);
    QLineEdit* nameText = window.findChild<QLineEdit*>(u"nameEdit"_s);

    Chooser() { window.setFolderPath(dir.path()); }
    QString folder() const { return dir.path(); }
    // One use, as a caller starts it; the window is left open.
    void open(int mode) {
        window.hide();
        window.setMode(static_cast<ChooserMode>(mode));
        window.show();
        window.activateWindow();
    }
    // What the window shows: "caption | filter | name | files".
    QString shown() const {
        return QStringList{window.windowTitle(), filter->currentText(), nameText->text(),
                           itemTexts(files).join(QLatin1Char(' ')).simplified()}
            .join(u" | "_s);
    }
    void press(const char* button) {
        QTest::mouseClick(window.findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
    }
    // Whether the window closed with a choice, and which.
    QString outcome() const {
        return window.isVisible() ? u"open"_s : window.choice().value_or(u"none"_s);
    }
};

} // namespace

class TstFileChooser : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A click on a file takes its name, a double click chooses it; Enter in the folder list opens
    // the folder and chooses nothing. Ok and Return make the full path; Close and Escape leave
    // without a choice, the window only hidden.
    void listsLeavingAndFilterMemory() {
        Chooser c;
        writeFile(c.dir.filePath(u"b.bmp"_s));
        QVERIFY(QDir(c.folder()).mkpath(u"inner"_s));
        const QString inner = c.folder() + u"/inner/"_s;
        writeFile(inner + u"x.bmp"_s);
        c.open(0);
        click(c.files, u"b.bmp"_s);
        QCOMPARE(c.nameText->text(), "b.bmp");
        click(c.folders, u"inner"_s);
        QTest::keyClick(c.folders, Qt::Key_Return);
        QCOMPARE(c.outcome(), "open");
        QCOMPARE(c.shown(), "File Save As... | *.bmp | b.bmp | x.bmp");
        click(c.files, u"x.bmp"_s, true);
        QCOMPARE(c.outcome(), inner + u"x.bmp"_s);

        c.open(0);
        c.filter->setCurrentIndex(1); // the user picks "*.png": the name follows
        c.press("okButton");
        QCOMPARE(c.outcome(), inner + u"Marlith.png"_s);
        c.open(1);
        QTest::keyClick(c.nameText, Qt::Key_Return); // an empty name is no choice
        QCOMPARE(c.outcome(), "open");
        QTest::keyClicks(c.nameText, u"games"_s);
        QTest::keyClick(c.nameText, Qt::Key_Return);
        QCOMPARE(c.outcome(), inner + u"games.fen"_s);
        c.open(1);
        c.nameText->setText(u"typed"_s);
        c.press("closeButton");
        QCOMPARE(c.outcome(), "none");
        c.open(2);
        QTest::keyClick(c.nameText, Qt::Key_Escape);
        QCOMPARE(c.outcome(), "none");

        // The filter the user leaves in one use goes to the next.
        for (const char* name : {"a.pgn", "b.fen", "p.gif"})
            writeFile(inner + QLatin1String(name));
        c.open(1);
        QCOMPARE(c.shown(), "Open Book | *.fen |  | b.fen");
        c.filter->setCurrentIndex(3); // the user picks "*.pgn"
        QCOMPARE(c.shown(), "Open Book | *.pgn |  | a.pgn");
        c.open(1);
        QCOMPARE(c.shown(), "Open Book | *.pgn |  | a.pgn");
        c.open(3);
        c.filter->lineEdit()->selectAll();
        QTest::keyClicks(c.filter->lineEdit(), u"*.gif"_s);
        QCOMPARE(c.shown(), "Load Pieces | *.gif | Marlith.bmp | p.gif");
        c.open(2);
        QCOMPARE(c.shown(), "Load Board | *.gif | Marlith.gif | p.gif");
    }

    // MainWindow's commands go through the one chooser, run modally and
    // ended from inside its own event loop; it keeps its state between uses.
    void mainWindowCommands() {
        Fixture f;
        writeFile(f.folder() + u"b.fen"_s, "8/8/8/8/8/8/8/K7\n8/8/8/8/8/8/8/k7\n");
        f.window->runChooser = nullptr;
        QTimer::singleShot(0, [] {
            auto* chooser = qobject_cast<FileChooser*>(QApplication::activeModalWidget());
            if (!chooser) return;
            chooser->findChild<QLineEdit*>(u"nameEdit"_s)->setText(u"pic"_s);
            chooser->confirm();
        });
        // Never left hanging, whatever happens above.
        QTimer::singleShot(5000, [] {
            if (QWidget* modal = QApplication::activeModalWidget()) modal->hide();
        });
        f.window->saveImageAs();
        QCOMPARE(f.state.imageFile, f.folder() + u"pic.bmp"_s);
        QVERIFY(QFile::exists(f.state.imageFile));
        QCOMPARE(f.window->windowTitle(), u"Marlith - "_s + f.state.imageFile);

        f.window->runChooser = [](FileChooser& chooser) {
            chooser.show();
            click(chooser.findChild<QListWidget*>(u"fileList"_s), u"b.fen"_s, true);
        };
        f.action("openBookAction")->trigger(); // the menu item runs the command
        f.waitForScan();
        QCOMPARE(f.state.book.gameCount, 1);
        QCOMPARE(f.state.imageFile, f.folder() + u"pic.bmp"_s);
        QCOMPARE(f.window->findChildren<FileChooser*>().size(), 1);
    }
};

QTEST_MAIN(TstFileChooser)
#include "tst_file_chooser.moc"
