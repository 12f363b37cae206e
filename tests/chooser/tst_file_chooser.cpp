// The file chooser driven through its controls, alone and from the main
// window's commands.
#include "chooser/file_chooser.h"
#include "support/main_window_fixture.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

void Touch(const QString& path, const QByteArray& text = "x") {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(text);
}

QStringList Texts(const QListWidget* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text().trimmed();
    return texts;
}

QStringList Entries(const QComboBox* combo) {
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i)
        texts << combo->itemText(i);
    return texts;
}

QListWidgetItem* Row(QListWidget* list, const QString& text) {
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->text().trimmed() == text) return list->item(i);
    return nullptr;
}

void DoubleClick(QListWidget* list, QListWidgetItem* item) {
    const QPoint at = list->visualItemRect(item).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

// A chooser of its own, its lists in a fresh folder.
struct Chooser {
    QTemporaryDir dir;
    AppState state;
    WinSeek window{state};
    QComboBox* filter = window.findChild<QComboBox*>(QStringLiteral("txtSearchSpec"));
    QComboBox* drives = window.findChild<QComboBox*>(QStringLiteral("drvList"));
    QListWidget* folders = window.findChild<QListWidget*>(QStringLiteral("dirList"));
    QListWidget* files = window.findChild<QListWidget*>(QStringLiteral("filList"));
    QLineEdit* text2 = window.findChild<QLineEdit*>(QStringLiteral("Text2"));

    Chooser() { window.SetDirPath(dir.path()); }
    QString folder() const { return dir.path(); }
    // One use, as a caller starts it; the window is left open.
    void open(int mode) {
        state.seekMode = static_cast<int16_t>(mode);
        window.show();
        window.activateWindow();
    }
    void typeFilter(const QString& text) {
        filter->lineEdit()->selectAll();
        QTest::keyClicks(filter->lineEdit(), text);
    }
};

} // namespace

class TstFileChooser : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void controls() {
        Chooser c;
        c.open(0);
        QCOMPARE(c.window.windowTitle(), QStringLiteral("File Save As..."));
        // 5415 by 3405 twips.
        QCOMPARE(c.window.size(), QSize(361, 227));
        const auto text = [&](const char* name) {
            if (auto* label = c.window.findChild<QLabel*>(QLatin1String(name)))
                return label->text();
            if (auto* button = c.window.findChild<QPushButton*>(QLatin1String(name)))
                return button->text();
            return QStringLiteral("missing");
        };
        QCOMPARE(text("lblCriteria"), QStringLiteral("Search &Criteria:"));
        QCOMPARE(text("Label1"), QStringLiteral("File:"));
        QCOMPARE(text("OkCmd"), QStringLiteral("O&k"));
        QCOMPARE(text("CancelCmd"), QStringLiteral("Cl&ose"));
        QVERIFY(c.window.findChild<QWidget*>(QStringLiteral("Picture1")));
        QCOMPARE(c.window.findChild<QWidget*>(QStringLiteral("Picture1"))->width(),
                 c.window.width());
        QCOMPARE(c.drives->itemText(0), QStringLiteral("/"));
    }

    // The filter of one use decides the filter and name of the next.
    void filterMemoryAcrossUsesAndModes() {
        Chooser c;
        Touch(c.dir.filePath(QStringLiteral("a.pgn")));
        Touch(c.dir.filePath(QStringLiteral("b.fen")));
        Touch(c.dir.filePath(QStringLiteral("p.gif")));

        c.open(1);
        QCOMPARE(c.window.windowTitle(), QStringLiteral("Open Book"));
        QCOMPARE(Entries(c.filter), QStringList({"*.fen", "*.epd", "*.pbm", "*.pgn"}));
        QCOMPARE(c.filter->currentText(), QStringLiteral("*.fen"));
        QVERIFY(c.text2->text().isEmpty());
        QCOMPARE(Texts(c.files), QStringList{"b.fen"});
        c.filter->setCurrentIndex(3); // the user picks "*.pgn"
        QCOMPARE(c.filter->currentText(), QStringLiteral("*.pgn"));
        QCOMPARE(Texts(c.files), QStringList{"a.pgn"});
        c.window.CancelCmd_Click();

        c.open(1);
        QCOMPARE(c.filter->currentText(), QStringLiteral("*.pgn"));
        QCOMPARE(Texts(c.files), QStringList{"a.pgn"});
        c.window.CancelCmd_Click();

        c.open(4);
        QCOMPARE(c.window.windowTitle(), QStringLiteral("Import Styles from..."));
        QCOMPARE(c.text2->text(), QStringLiteral("Marlith.sty"));
        c.window.CancelCmd_Click();
        c.open(1);
        QCOMPARE(c.filter->currentText(), QStringLiteral("*.fen"));
        c.window.CancelCmd_Click();

        c.open(3);
        QCOMPARE(c.window.windowTitle(), QStringLiteral("Load Pieces"));
        QCOMPARE(c.text2->text(), QStringLiteral("Marlith.bmp"));
        c.typeFilter(QStringLiteral("*.gif"));
        QCOMPARE(Texts(c.files), QStringList{"p.gif"});
        c.window.CancelCmd_Click();
        c.open(2);
        QCOMPARE(c.window.windowTitle(), QStringLiteral("Load Board"));
        QCOMPARE(c.filter->currentText(), QStringLiteral("*.gif"));
        QCOMPARE(c.text2->text(), QStringLiteral("Marlith.gif"));
        c.window.CancelCmd_Click();

        c.open(0);
        QCOMPARE(Entries(c.filter), QStringList{"*.bmp"});
        QCOMPARE(c.text2->text(), QStringLiteral("Marlith.bmp"));
        c.window.CancelCmd_Click();
        c.open(1);
        QCOMPARE(c.filter->currentText(), QStringLiteral("*.fen"));
        c.window.CancelCmd_Click();

        // A purpose the window doesn't know leaves it as it was.
        c.open(7);
        QCOMPARE(c.window.windowTitle(), QStringLiteral("Open Book"));
        QCOMPARE(c.filter->currentText(), QStringLiteral("*.fen"));
        QVERIFY(c.filter->count() == 0);
        c.window.CancelCmd_Click();
        QCOMPARE(c.state.seekMode, int16_t(7));
    }

    void okMakesTheFullPath() {
        Chooser c;
        const QString folder = c.folder() + QLatin1Char('/');
        c.open(0);
        c.text2->setText(QStringLiteral("pic"));
        QTest::mouseClick(c.window.findChild<QPushButton*>(QStringLiteral("OkCmd")),
                          Qt::LeftButton);
        QVERIFY(!c.window.isVisible());
        QCOMPARE(c.state.seekMode, int16_t(1));
        QCOMPARE(c.window.text2(), folder + QStringLiteral("pic.bmp"));

        c.open(0);
        c.text2->setText(QStringLiteral("a.b"));
        c.window.OkCmd_Click();
        QCOMPARE(c.window.text2(), folder + QStringLiteral("a.b"));

        c.open(1);
        c.typeFilter(QStringLiteral("*"));
        c.text2->setText(QStringLiteral("book"));
        c.window.OkCmd_Click();
        QCOMPARE(c.window.text2(), folder + QStringLiteral("book"));

        c.open(4);
        c.text2->setText(QStringLiteral("/elsewhere/mine"));
        c.window.OkCmd_Click();
        QCOMPARE(c.window.text2(), QStringLiteral("/elsewhere/mine.sty"));

        // The root of a drive gets one separator.
        QVERIFY(c.window.SetDirPath(QStringLiteral("/")));
        c.open(0);
        c.window.OkCmd_Click();
        QCOMPARE(c.window.text2(), QStringLiteral("/Marlith.bmp"));
    }

    void keysInTheNameBox() {
        Chooser c;
        c.open(1);
        QCOMPARE(c.state.seekMode, int16_t(0));
        QTest::keyClick(c.text2, Qt::Key_Return);
        QVERIFY(c.window.isVisible());
        QCOMPARE(c.state.seekMode, int16_t(0));
        QTest::keyClicks(c.text2, QStringLiteral("games"));
        QTest::keyClick(c.text2, Qt::Key_Return);
        QVERIFY(!c.window.isVisible());
        QCOMPARE(c.state.seekMode, int16_t(1));
        QCOMPARE(c.window.text2(), c.folder() + QStringLiteral("/games.fen"));

        Chooser d;
        d.open(2);
        d.text2->setText(QStringLiteral("typed"));
        QTest::keyClick(d.text2, Qt::Key_Escape);
        QVERIFY(!d.window.isVisible());
        QCOMPARE(d.state.seekMode, int16_t(2));
    }

    void focusMarksTheBoxes() {
        Chooser c;
        c.open(2);
        QVERIFY(QTest::qWaitForWindowActive(&c.window));
        QTRY_VERIFY(c.text2->hasFocus());
        // The proposed name is selected, so typing replaces it.
        QCOMPARE(c.text2->selectedText(), QStringLiteral("Marlith.bmp"));
        auto* label1 = c.window.findChild<QLabel*>(QStringLiteral("Label1"));
        auto* criteria = c.window.findChild<QLabel*>(QStringLiteral("lblCriteria"));
        QVERIFY(label1->frameShape() != QFrame::NoFrame);
        QVERIFY(criteria->frameShape() == QFrame::NoFrame);
        c.filter->setFocus();
        QTRY_VERIFY(label1->frameShape() == QFrame::NoFrame);
        QVERIFY(criteria->frameShape() != QFrame::NoFrame);
        QCOMPARE(c.filter->lineEdit()->selectedText(), QStringLiteral("*.bmp"));
    }

    void leavingWithoutChoice() {
        Chooser c;
        c.open(1);
        c.text2->setText(QStringLiteral("typed"));
        QTest::mouseClick(c.window.findChild<QPushButton*>(QStringLiteral("CancelCmd")),
                          Qt::LeftButton);
        QVERIFY(!c.window.isVisible());
        QCOMPARE(c.state.seekMode, int16_t(0));

        c.open(2);
        c.window.close();
        QVERIFY(!c.window.isVisible());
        QCOMPARE(c.state.seekMode, int16_t(2));
        // Hidden, not gone: it shows again with its folder.
        c.open(0);
        QCOMPARE(c.window.dirPath(), c.folder());
        c.state.keepForms = 0;
        QVERIFY(c.window.close());
    }

    void fileListChoosesTheName() {
        Chooser c;
        for (const char* name : {"a.pgn", "b.pgn", "c.fen"})
            Touch(c.dir.filePath(QLatin1String(name)));
        c.open(1);
        c.filter->setCurrentIndex(3);
        QCOMPARE(Texts(c.files), QStringList({"a.pgn", "b.pgn"}));
        QTest::mouseClick(c.files->viewport(), Qt::LeftButton, {},
                          c.files->visualItemRect(Row(c.files, "b.pgn")).center());
        QCOMPARE(c.text2->text(), QStringLiteral("b.pgn"));
        QVERIFY(c.window.isVisible());
        // The arrow keys choose too.
        c.files->setFocus();
        QTest::keyClick(c.files, Qt::Key_Up);
        QCOMPARE(c.text2->text(), QStringLiteral("a.pgn"));

        DoubleClick(c.files, Row(c.files, "b.pgn"));
        QVERIFY(!c.window.isVisible());
        QCOMPARE(c.state.seekMode, int16_t(1));
        QCOMPARE(c.window.text2(), c.folder() + QStringLiteral("/b.pgn"));

        // Files made since the last use show at the next.
        Touch(c.dir.filePath(QStringLiteral("new.pgn")));
        c.open(1);
        QCOMPARE(Texts(c.files), QStringList({"a.pgn", "b.pgn", "new.pgn"}));
        c.typeFilter(QStringLiteral("*.pgn;*.fen"));
        QCOMPARE(Texts(c.files), QStringList({"a.pgn", "b.pgn", "c.fen", "new.pgn"}));
    }

    void folderNavigation() {
        Chooser c;
        QVERIFY(QDir(c.folder()).mkpath(QStringLiteral("inner/deeper")));
        Touch(c.dir.filePath(QStringLiteral("inner/x.bmp")));
        Touch(c.dir.filePath(QStringLiteral("top.bmp")));
        c.open(0);
        QCOMPARE(Texts(c.files), QStringList{"top.bmp"});
        const QString here = QFileInfo(c.folder()).fileName();
        QCOMPARE(c.folders->currentItem()->text().trimmed(), here);
        QCOMPARE(c.folders->item(0)->text(), QStringLiteral("/"));
        QCOMPARE(Texts(c.folders).last(), QStringLiteral("inner"));

        // A click only marks a folder; a double click opens it.
        QListWidgetItem* inner = Row(c.folders, "inner");
        QTest::mouseClick(c.folders->viewport(), Qt::LeftButton, {},
                          c.folders->visualItemRect(inner).center());
        QCOMPARE(c.window.dirPath(), c.folder());
        DoubleClick(c.folders, inner);
        QCOMPARE(c.window.dirPath(), c.folder() + QStringLiteral("/inner"));
        QCOMPARE(Texts(c.files), QStringList{"x.bmp"});
        QCOMPARE(Texts(c.folders).last(), QStringLiteral("deeper"));
        c.text2->setText(QStringLiteral("y"));
        c.window.OkCmd_Click();
        QCOMPARE(c.window.text2(), c.folder() + QStringLiteral("/inner/y.bmp"));

        // The folder is kept to the next use.
        c.open(0);
        QCOMPARE(c.window.dirPath(), c.folder() + QStringLiteral("/inner"));
        QVERIFY(QTest::qWaitForWindowActive(&c.window));
        // Enter opens the marked folder.
        c.folders->setFocus();
        c.folders->setCurrentItem(Row(c.folders, "deeper"));
        QTest::keyClick(c.folders, Qt::Key_Return);
        QCOMPARE(c.window.dirPath(), c.folder() + QStringLiteral("/inner/deeper"));
        // A folder reached by the arrow keys is opened when the focus leaves.
        c.folders->setFocus();
        QTRY_VERIFY(c.folders->hasFocus());
        QTest::keyClick(c.folders, Qt::Key_Up);
        QCOMPARE(c.window.dirPath(), c.folder() + QStringLiteral("/inner/deeper"));
        c.text2->setFocus();
        QTRY_COMPARE(c.window.dirPath(), c.folder() + QStringLiteral("/inner"));
        QCOMPARE(Texts(c.files), QStringList{"x.bmp"});

        // A folder removed after the list was made is passed over.
        QVERIFY(QDir(c.folder() + QStringLiteral("/inner/deeper")).removeRecursively());
        DoubleClick(c.folders, Row(c.folders, "deeper"));
        QCOMPARE(c.window.dirPath(), c.folder() + QStringLiteral("/inner"));
        QVERIFY(!Row(c.folders, "deeper"));
        QVERIFY(!c.window.SetDirPath(c.folder() + QStringLiteral("/missing")));
        QCOMPARE(c.window.dirPath(), c.folder() + QStringLiteral("/inner"));
    }

    void driveList() {
        Chooser c;
        c.open(0);
        QVERIFY(c.drives->currentIndex() >= 0);
        // The drive shown is the volume of the folder shown.
        const QString drive = c.drives->currentText();
        QVERIFY(c.folder().startsWith(drive));
        c.drives->setCurrentIndex(-1);
        c.drives->setCurrentIndex(0);
        QCOMPARE(c.window.dirPath(), QStringLiteral("/"));
        QCOMPARE(
            c.folders->count(),
            1 + int(QDir(QStringLiteral("/")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size()));
    }

    // Form1's commands go through the one chooser, which keeps its state.
    void mainWindowCommands() {
        Fixture f;
        Touch(f.folder() + QStringLiteral("b.fen"), "8/8/8/8/8/8/8/K7\n8/8/8/8/8/8/8/k7\n");
        QList<int> modes;
        f.form->runChooser = [&](WinSeek& chooser) {
            modes << f.state.seekMode;
            chooser.show();
            auto* text2 = chooser.findChild<QLineEdit*>(QStringLiteral("Text2"));
            text2->setText(QStringLiteral("pic"));
            chooser.OkCmd_Click();
        };
        f.form->MNSaveAs_Click();
        QCOMPARE(f.state.imageFile, f.folder() + QStringLiteral("pic.bmp"));
        QVERIFY(QFile::exists(f.state.imageFile));
        QCOMPARE(f.form->windowTitle(), QStringLiteral("Marlith - ") + f.state.imageFile);

        f.form->runChooser = [&](WinSeek& chooser) {
            modes << f.state.seekMode;
            chooser.show();
            auto* files = chooser.findChild<QListWidget*>(QStringLiteral("filList"));
            DoubleClick(files, Row(files, "b.fen"));
        };
        f.action("MNLoad")->trigger(); // the menu item runs the command
        QCOMPARE(f.state.bookFile, f.folder() + QStringLiteral("b.fen"));
        QVERIFY(f.state.book.isOpen());
        QCOMPARE(f.state.book.gameCount, 1);

        // Leaving the chooser changes nothing.
        f.form->runChooser = [&](WinSeek& chooser) {
            modes << f.state.seekMode;
            chooser.show();
            chooser.CancelCmd_Click();
        };
        const QString image = f.state.imageFile;
        f.form->MNSaveAs_Click();
        f.form->MNLoad_Click();
        QCOMPARE(f.state.imageFile, image);
        QCOMPARE(f.state.bookFile, f.folder() + QStringLiteral("b.fen"));
        QVERIFY(f.state.seekMode != 1);
        QCOMPARE(modes, QList<int>({0, 1, 0, 1}));
        QCOMPARE(f.form->findChildren<WinSeek*>().size(), 1);

        // The main window's end unloads the chooser too.
        f.form->close();
        QVERIFY(!f.form->findChild<WinSeek*>()->isVisible());
    }

    // The real modal run, ended from inside its own event loop.
    void modalRun() {
        Fixture f;
        f.form->runChooser = nullptr;
        QTimer::singleShot(0, [] {
            auto* chooser = qobject_cast<WinSeek*>(QApplication::activeModalWidget());
            if (!chooser) return;
            chooser->findChild<QLineEdit*>(QStringLiteral("Text2"))->setText(QStringLiteral("m"));
            chooser->OkCmd_Click();
        });
        // Never left hanging, whatever happens above.
        QTimer::singleShot(5000, [] {
            if (QWidget* modal = QApplication::activeModalWidget()) modal->hide();
        });
        f.form->MNSaveAs_Click();
        QCOMPARE(f.state.imageFile, f.folder() + QStringLiteral("m.bmp"));
    }
};

QTEST_MAIN(TstFileChooser)
#include "tst_file_chooser.moc"
