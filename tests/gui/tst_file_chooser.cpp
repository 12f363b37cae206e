// The file chooser driven through its controls, alone and from the main
// window's commands; the rules for names, filters and folders are
// tst_seek_rules'.
#include "gui/file_chooser.h"
#include "support/main_window_fixture.h"

#include <QApplication>
#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

void touch(const QString& path, const QByteArray& text = "x") {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(text);
}

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
    QComboBox* filter = window.findChild<QComboBox*>(QStringLiteral("filterBox"));
    QComboBox* drives = window.findChild<QComboBox*>(QStringLiteral("driveBox"));
    QListWidget* folders = window.findChild<QListWidget*>(QStringLiteral("folderList"));
    QListWidget* files = window.findChild<QListWidget*>(QStringLiteral("fileList"));
    QLineEdit* nameText = window.findChild<QLineEdit*>(QStringLiteral("nameEdit"));

    Chooser() { window.setFolderPath(dir.path()); }
    QString folder() const { return dir.path(); }
    // One use, as a caller starts it; the window is left open.
    void open(int mode) {
        window.hide();
        state.chooserMode = static_cast<ChooserMode>(mode);
        window.show();
        window.activateWindow();
    }
    void typeFilter(const QString& text) {
        filter->lineEdit()->selectAll();
        QTest::keyClicks(filter->lineEdit(), text);
    }
    // What the window shows: "caption | filter | name | files".
    QString shown() const {
        QStringList names;
        for (int i = 0; i < files->count(); ++i)
            names << files->item(i)->text().trimmed();
        return QStringList{window.windowTitle(), filter->currentText(), nameText->text(),
                           names.join(QLatin1Char(' '))}
            .join(QStringLiteral(" | "));
    }
    QLabel* label(const char* name) { return window.findChild<QLabel*>(QLatin1String(name)); }
};

} // namespace

class TstFileChooser : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // The filter the user leaves in one use goes to the next.
    void filterMemoryAcrossUses() {
        Chooser c;
        for (const char* name : {"a.pgn", "b.fen", "p.gif"})
            touch(c.dir.filePath(QLatin1String(name)));
        c.open(1);
        QCOMPARE(c.shown(), "Open Book | *.fen |  | b.fen");
        QCOMPARE(c.filter->count(), 4);
        c.filter->setCurrentIndex(3); // the user picks "*.pgn"
        QCOMPARE(c.shown(), "Open Book | *.pgn |  | a.pgn");
        c.open(1);
        QCOMPARE(c.shown(), "Open Book | *.pgn |  | a.pgn");
        c.open(3);
        c.typeFilter(QStringLiteral("*.gif"));
        QCOMPARE(c.shown(), "Load Pieces | *.gif | Marlith.bmp | p.gif");
        c.open(2);
        QCOMPARE(c.shown(), "Load Board | *.gif | Marlith.gif | p.gif");
        // A purpose the window doesn't know leaves it as it was.
        c.open(7);
        QCOMPARE(c.shown(), "Load Board | *.gif | Marlith.gif | p.gif");
    }

    void okAndReturnMakeTheFullPath() {
        Chooser c;
        c.open(0);
        c.nameText->setText(QStringLiteral("pic"));
        QTest::mouseClick(c.window.findChild<QPushButton*>(QStringLiteral("okButton")),
                          Qt::LeftButton);
        QVERIFY(!c.window.isVisible());
        QVERIFY(c.state.chooserConfirmed);
        QCOMPARE(c.window.nameText(), c.folder() + QStringLiteral("/pic.bmp"));

        // Return in an empty name box is no choice; with a name it is Ok.
        c.open(1);
        QTest::keyClick(c.nameText, Qt::Key_Return);
        QVERIFY(c.window.isVisible());
        QVERIFY(!c.state.chooserConfirmed);
        QTest::keyClicks(c.nameText, QStringLiteral("games"));
        QTest::keyClick(c.nameText, Qt::Key_Return);
        QVERIFY(!c.window.isVisible());
        QVERIFY(c.state.chooserConfirmed);
        QCOMPARE(c.window.nameText(), c.folder() + QStringLiteral("/games.fen"));
    }

    // Close, Escape and the close box leave without a choice; the window
    // is only hidden, and shows again with its folder.
    void leavingWithoutChoice() {
        Chooser c;
        c.open(1);
        c.nameText->setText(QStringLiteral("typed"));
        QTest::mouseClick(c.window.findChild<QPushButton*>(QStringLiteral("closeButton")),
                          Qt::LeftButton);
        QVERIFY(!c.window.isVisible());
        QVERIFY(!c.state.chooserConfirmed);
        c.open(2);
        QTest::keyClick(c.nameText, Qt::Key_Escape);
        QVERIFY(!c.window.isVisible());
        c.open(2);
        c.window.close();
        QVERIFY(!c.window.isVisible());
        QVERIFY(!c.state.chooserConfirmed);
        c.open(0);
        QCOMPARE(c.window.folderPath(), c.folder());
        c.state.mainWindowAlive = false;
        QVERIFY(c.window.close());
    }

    void focusMarksTheBoxes() {
        Chooser c;
        c.open(2);
        QVERIFY(QTest::qWaitForWindowActive(&c.window));
        QTRY_VERIFY(c.nameText->hasFocus());
        // The proposed name is selected, so typing replaces it.
        QCOMPARE(c.nameText->selectedText(), "Marlith.bmp");
        QVERIFY(c.label("nameLabel")->frameShape() != QFrame::NoFrame);
        QVERIFY(c.label("filterLabel")->frameShape() == QFrame::NoFrame);
        c.filter->setFocus();
        QTRY_VERIFY(c.label("nameLabel")->frameShape() == QFrame::NoFrame);
        QVERIFY(c.label("filterLabel")->frameShape() != QFrame::NoFrame);
        QCOMPARE(c.filter->lineEdit()->selectedText(), "*.bmp");
    }

    void fileListChoosesTheName() {
        Chooser c;
        for (const char* name : {"a.pgn", "b.pgn"})
            touch(c.dir.filePath(QLatin1String(name)));
        c.open(1);
        c.filter->setCurrentIndex(3);
        click(c.files, QStringLiteral("b.pgn"));
        QCOMPARE(c.nameText->text(), "b.pgn");
        // The arrow keys choose too.
        c.files->setFocus();
        QTest::keyClick(c.files, Qt::Key_Up);
        QCOMPARE(c.nameText->text(), "a.pgn");
        QVERIFY(c.window.isVisible());
        click(c.files, QStringLiteral("b.pgn"), true);
        QVERIFY(!c.window.isVisible());
        QVERIFY(c.state.chooserConfirmed);
        QCOMPARE(c.window.nameText(), c.folder() + QStringLiteral("/b.pgn"));
        // Files made since the last use show at the next.
        touch(c.dir.filePath(QStringLiteral("new.pgn")));
        c.open(1);
        QCOMPARE(c.shown(), "Open Book | *.pgn |  | a.pgn b.pgn new.pgn");
    }

    void folderNavigation() {
        Chooser c;
        const QString inner = c.folder() + QStringLiteral("/inner");
        QVERIFY(QDir(c.folder()).mkpath(QStringLiteral("inner/deeper")));
        touch(inner + QStringLiteral("/x.bmp"));
        c.open(0);
        QCOMPARE(c.folders->currentItem()->text().trimmed(), QFileInfo(c.folder()).fileName());
        // A click only marks a folder; a double click opens it.
        click(c.folders, QStringLiteral("inner"));
        QCOMPARE(c.window.folderPath(), c.folder());
        click(c.folders, QStringLiteral("inner"), true);
        QCOMPARE(c.window.folderPath(), inner);
        QCOMPARE(c.files->item(0)->text(), "x.bmp");
        c.window.confirm();
        QCOMPARE(c.window.nameText(), inner + QStringLiteral("/Marlith.bmp"));

        // The folder is kept to the next use; Enter opens the marked one.
        c.open(0);
        QVERIFY(QTest::qWaitForWindowActive(&c.window));
        c.folders->setFocus();
        c.folders->setCurrentItem(rowOf(c.folders, QStringLiteral("deeper")));
        QTest::keyClick(c.folders, Qt::Key_Return);
        QCOMPARE(c.window.folderPath(), inner + QStringLiteral("/deeper"));
        // A folder reached by the arrow keys is opened when the focus leaves.
        c.folders->setFocus();
        QTRY_VERIFY(c.folders->hasFocus());
        QTest::keyClick(c.folders, Qt::Key_Up);
        QCOMPARE(c.window.folderPath(), inner + QStringLiteral("/deeper"));
        c.nameText->setFocus();
        QTRY_COMPARE(c.window.folderPath(), inner);

        // A folder removed after the list was made is passed over.
        QVERIFY(QDir(inner + QStringLiteral("/deeper")).removeRecursively());
        click(c.folders, QStringLiteral("deeper"), true);
        QCOMPARE(c.window.folderPath(), inner);
        QVERIFY(!rowOf(c.folders, QStringLiteral("deeper")));
    }

    // The drive shown is the volume of the folder shown; picking one opens it.
    void driveList() {
        Chooser c;
        c.open(0);
        QVERIFY(c.folder().startsWith(c.drives->currentText()));
        c.drives->setCurrentIndex(-1);
        c.drives->setCurrentIndex(0);
        QCOMPARE(c.window.folderPath(), "/");
        QCOMPARE(
            c.folders->count(),
            1 + int(QDir(QStringLiteral("/")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size()));
    }

    // MainWindow's commands go through the one chooser, which keeps its state.
    void mainWindowCommands() {
        Fixture f;
        touch(f.folder() + QStringLiteral("b.fen"), "8/8/8/8/8/8/8/K7\n8/8/8/8/8/8/8/k7\n");
        f.window->runChooser = [](FileChooser& chooser) {
            chooser.show();
            chooser.findChild<QLineEdit*>(QStringLiteral("nameEdit"))
                ->setText(QStringLiteral("pic"));
            chooser.confirm();
        };
        f.window->saveImageAs();
        QCOMPARE(f.state.imageFile, f.folder() + QStringLiteral("pic.bmp"));
        QVERIFY(QFile::exists(f.state.imageFile));
        QCOMPARE(f.window->windowTitle(), QStringLiteral("Marlith - ") + f.state.imageFile);

        f.window->runChooser = [](FileChooser& chooser) {
            chooser.show();
            click(chooser.findChild<QListWidget*>(QStringLiteral("fileList")),
                  QStringLiteral("b.fen"), true);
        };
        f.action("openBookAction")->trigger(); // the menu item runs the command
        QCOMPARE(f.state.bookFile, f.folder() + QStringLiteral("b.fen"));
        QCOMPARE(f.state.book.gameCount, 1);

        // Leaving the chooser changes nothing.
        f.window->runChooser = [](FileChooser& chooser) {
            chooser.show();
            chooser.cancel();
        };
        f.window->saveImageAs();
        f.window->openBook();
        QCOMPARE(f.state.imageFile, f.folder() + QStringLiteral("pic.bmp"));
        QCOMPARE(f.state.bookFile, f.folder() + QStringLiteral("b.fen"));
        QCOMPARE(f.window->findChildren<FileChooser*>().size(), 1);
        // The main window's end unloads the chooser too.
        f.window->close();
        QVERIFY(!f.window->findChild<FileChooser*>()->isVisible());
    }

    // The real modal run, ended from inside its own event loop.
    void modalRun() {
        Fixture f;
        f.window->runChooser = nullptr;
        QTimer::singleShot(0, [] {
            auto* chooser = qobject_cast<FileChooser*>(QApplication::activeModalWidget());
            if (!chooser) return;
            chooser->findChild<QLineEdit*>(QStringLiteral("nameEdit"))
                ->setText(QStringLiteral("m"));
            chooser->confirm();
        });
        // Never left hanging, whatever happens above.
        QTimer::singleShot(5000, [] {
            if (QWidget* modal = QApplication::activeModalWidget()) modal->hide();
        });
        f.window->saveImageAs();
        QCOMPARE(f.state.imageFile, f.folder() + QStringLiteral("m.bmp"));
    }
};

QTEST_MAIN(TstFileChooser)
#include "tst_file_chooser.moc"
