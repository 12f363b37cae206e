// The book panel beside the board, driven as a user drives it: a book opened
// from the command line and the recent list, the scroll bar, the four move
// buttons, the keys, the style tag, and closing the book.
#include "books/book_panel.h"
#include "support/main_window_fixture.h"

#include <QListWidget>
#include <QScrollBar>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

const QByteArray kStyles = "RecentStyle = Small\r\n"
                           "BeginStyle = Small\r\n"
                           "  SqrWidth = 15 \r\n"
                           "EndStyle\r\n"
                           "BeginStyle = Wide\r\n"
                           "  SqrWidth = 20 \r\n"
                           "  BorderWidth = 10 \r\n"
                           "EndStyle\r\n";

// Three games: headers with one position, headers with three positions, and
// one position with no headers at all.
const QByteArray kThreeGames = "[Event \"first\"]\n"
                               "8/8/8/8/8/8/8/K7 w - -\n"
                               "[Event \"second\"]\n"
                               "[Site \"a site whose name is far longer than one line\"]\n"
                               "8/8/8/8/8/8/8/1K6 w - -\n"
                               "8/8/8/8/8/8/8/2K5 b - -\n"
                               "8/8/8/8/8/8/8/3K4 x\n";

struct Book : Fixture {
    explicit Book(const QByteArray& text, const QString& name = QStringLiteral("b.fen"),
                  const QByteArray& settings = {})
        : Fixture({}, settings) {
        QFile file(folder() + name);
        if (file.open(QIODevice::WriteOnly)) file.write(text);
        file.close();
        state.bookFile = folder() + name;
        form->CmdLoad();
        panel = form->bookPanel();
        scroll = panel->hScroll1();
        list = panel->list1();
    }
    BookPanel* panel = nullptr;
    QScrollBar* scroll = nullptr;
    QListWidget* list = nullptr;

    QString label(const char* name) const {
        return panel->findChild<QLabel*>(QLatin1String(name))->text();
    }
    QWidget* picture1() const { return panel->findChild<QWidget*>(QStringLiteral("Picture1")); }
    QStringList lines() const {
        QStringList all;
        for (int i = 0; i < list->count(); ++i)
            all << list->item(i)->text();
        return all;
    }
    void button(int index) {
        auto* face = panel->findChild<ToolImage*>(QStringLiteral("Image2(%1)").arg(index));
        QTest::mouseClick(face, Qt::LeftButton);
    }
};

} // namespace

class TstBookPanel : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void emptyBookLeavesAUsablePanel() {
        Book b("");
        QVERIFY(b.panel->isVisible());
        QCOMPARE(b.state.book.gameCount, 1);
        QCOMPARE(b.state.book.recordCount, 0);
        QCOMPARE(b.label("Label1"), QStringLiteral("Game . (1 of 1)"));
        QVERIFY(!b.picture1()->isVisible());
        QVERIFY(b.action("MNClose")->isEnabled());
        // Every button and key on an empty book does nothing harmful.
        for (int i = 0; i < 4; ++i)
            b.panel->Image2_Click(i);
        QTest::keyClick(b.scroll, Qt::Key_Right);
        // The blank record shows as a board with no pieces.
        QCOMPARE(b.text1->text(), QString());
        QCOMPARE(b.label3->text(), QStringLiteral("(0x0)"));
    }

    void walksGamesAndPositions() {
        Book b(kThreeGames);
        QCOMPARE(b.state.book.gameCount, 2);
        QCOMPARE(b.scroll->maximum(), 2);
        QCOMPARE(b.label("Label1"), QStringLiteral("Game 1. (1 of 2)"));
        QCOMPARE(b.lines(), QStringList({"[Event \"first\"]"}));
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/K7"));
        QCOMPARE(b.label("Label5"), QStringLiteral("White moves..."));
        // One position and nothing behind it in its game: no move buttons.
        QVERIFY(!b.picture1()->isVisible());

        b.scroll->setValue(2);
        QCOMPARE(b.label("Label1"), QStringLiteral("Game 2. (2 of 2)"));
        QCOMPARE(b.lines(), QStringList({"[Event \"second\"]", "[Site \"a site whose name is far l",
                                         " onger than one line\"]"}));
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/1K6"));
        QVERIFY(b.picture1()->isVisible());

        b.button(2);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/2K5"));
        QCOMPARE(b.label("Label5"), QStringLiteral("Black moves..."));
        b.button(3);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/3K4"));
        QCOMPARE(b.label("Label5"), QStringLiteral("Move Control:"));
        // Forward at the last position stays there.
        b.button(2);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/3K4"));
        b.button(1);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/2K5"));
        b.button(0);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/1K6"));
        // A step back never leaves the position records for the headers.
        b.button(1);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/1K6"));
        QCOMPARE(b.text1->cursorPosition(), b.text1->text().size());
    }

    void keysOfTheMoveButtons() {
        Book b(kThreeGames);
        b.scroll->setValue(2);
        QWidget* picture1 = b.picture1();
        picture1->setFocus();
        QTRY_VERIFY(picture1->hasFocus());
        QVERIFY(b.panel->findChild<QLabel*>(QStringLiteral("Label5"))->frameStyle() !=
                QFrame::NoFrame);
        QTest::keyClick(picture1, Qt::Key_Right);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/2K5"));
        QTest::keyClick(picture1, Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/3K4"));
        QTest::keyClick(picture1, Qt::Key_Left);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/2K5"));
        QTest::keyClick(picture1, Qt::Key_Left, Qt::ControlModifier);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/1K6"));

        // The scroll bar steps games by its own keys, with its focus mark.
        b.scroll->setFocus();
        QTRY_VERIFY(b.scroll->hasFocus());
        QVERIFY(b.panel->findChild<QLabel*>(QStringLiteral("Label1"))->frameStyle() !=
                QFrame::NoFrame);
        QTest::keyClick(b.scroll, Qt::Key_Left);
        QCOMPARE(b.scroll->value(), 1);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/K7"));
    }

    void positionListWithoutHeadersIsOneGame() {
        Book b("k7/8/8/8/8/8/8/K7\n8/8/8/8/8/8/8/8\n");
        QCOMPARE(b.state.book.gameCount, 1);
        QCOMPARE(b.text1->text(), QStringLiteral("k7/8/8/8/8/8/8/K7"));
        QVERIFY(!b.picture1()->isVisible());
        QVERIFY(b.lines().isEmpty());
    }

    void styleTagSwitchesTheStyle() {
        Book b("[Style \"wide\"]\n[Event \"x\"]\n9K w\n", QStringLiteral("s.fen"), kStyles);
        QCOMPARE(b.state.style.StyleName, QStringLiteral("Wide"));
        QCOMPARE(b.state.style.BorderWidth, int16_t(10));
        // The tag itself isn't listed among the headers.
        QCOMPARE(b.lines(), QStringList({"[Event \"x\"]"}));
        QVERIFY(b.text1->text().startsWith(QStringLiteral("81K/82/")));
    }

    void closingAndReopeningFromTheRecentList() {
        Book b(kThreeGames);
        const int openHeight = b.form->height();
        QCOMPARE(b.state.recentFile[0], b.folder() + QStringLiteral("b.fen"));
        b.action("MNClose")->trigger();
        QVERIFY(!b.panel->isVisible());
        QVERIFY(!b.state.book.isOpen());
        QVERIFY(!b.action("MNClose")->isEnabled());
        QVERIFY(!b.action("MNCriteria")->isEnabled());
        QVERIFY(b.form->height() <= openHeight);

        b.form->MNFileList_Click(0);
        QVERIFY(b.panel->isVisible());
        QCOMPARE(b.state.book.gameCount, 2);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/K7"));
    }

    void bookThatVanishesWhileOpen() {
        Book b(kThreeGames);
        QVERIFY(QFile::remove(b.folder() + QStringLiteral("b.fen")));
        // Walking reads the work file alone.
        b.scroll->setValue(2);
        b.button(3);
        QCOMPARE(b.text1->text(), QStringLiteral("8/8/8/8/8/8/8/3K4"));
        // Opening it again gives an empty book, not a fault.
        b.form->MNFileList_Click(0);
        QCOMPARE(b.state.book.recordCount, 0);
        QVERIFY(b.panel->isVisible());
    }
};

QTEST_MAIN(TstBookPanel)
#include "tst_book_panel.moc"
