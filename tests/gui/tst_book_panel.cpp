// The book panel beside the board, driven as a user drives it; the walking
// rules themselves are tst_book_walk's.
#include "gui/book_panel.h"
#include "support/main_window_fixture.h"

#include <QListWidget>
#include <QScrollBar>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

const char* const kStepButtons[4] = {"firstPositionButton", "previousPositionButton",
                                     "nextPositionButton", "lastPositionButton"};

// Two games: a header with one position, then two headers (one longer than
// a row of the list) with three positions.
const QByteArray kThreeGames = "[Event \"first\"]\n"
                               "8/8/8/8/8/8/8/K7 w - -\n"
                               "[Event \"second\"]\n"
                               "[Site \"a site whose name is far longer than one line\"]\n"
                               "8/8/8/8/8/8/8/1K6 w - -\n"
                               "8/8/8/8/8/8/8/2K5 b - -\n"
                               "8/8/8/8/8/8/8/3K4 x\n";

// A book opened as from the command line.
struct Book : Fixture {
    explicit Book(const QByteArray& text, const QByteArray& settings = {}) : Fixture({}, settings) {
        QFile file(folder() + QStringLiteral("b.fen"));
        if (file.open(QIODevice::WriteOnly)) file.write(text);
        file.close();
        state.bookFile = folder() + QStringLiteral("b.fen");
        window->loadBook();
        panel = window->bookPanel();
        scroll = panel->gameScrollBar();
    }
    BookPanel* panel = nullptr;
    QScrollBar* scroll = nullptr;

    QLabel* label(const char* name) const { return panel->findChild<QLabel*>(QLatin1String(name)); }
    QWidget* stepStrip() const { return panel->findChild<QWidget*>(QStringLiteral("stepStrip")); }
    QStringList lines() const {
        QStringList all;
        for (int i = 0; i < panel->headerList()->count(); ++i)
            all << panel->headerList()->item(i)->text();
        return all;
    }
    // The position shown after a click on a move button or a key.
    QString button(int index) {
        QTest::mouseClick(panel->findChild<ToolButton*>(QLatin1String(kStepButtons[index])),
                          Qt::LeftButton);
        return position();
    }
    QString key(QWidget* on, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(on, key, modifiers);
        return position();
    }
    QString position() const { return positionEdit->text(); }
};

QString rank1(const char* row) {
    return QStringLiteral("8/8/8/8/8/8/8/") + QLatin1String(row);
}

} // namespace

class TstBookPanel : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // What opening a book shows of its first game.
    void firstGame_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QStringList>("headers");
        QTest::addColumn<QString>("position");
        QTest::newRow("empty") << QByteArray() << "Game . (1 of 1)" << QStringList() << rank1("8");
        QTest::newRow("headers") << kThreeGames << "Game 1. (1 of 2)"
                                 << QStringList{"[Event \"first\"]"} << rank1("K7");
        QTest::newRow("no headers") << QByteArray("k7/8/8/8/8/8/8/K7\n8/8/8/8/8/8/8/8\n")
                                    << "Game 1. (1 of 1)" << QStringList() << "k7/8/8/8/8/8/8/K7";
    }
    void firstGame() {
        QFETCH(QByteArray, text);
        Book b(text);
        QVERIFY(b.panel->isVisible());
        QVERIFY(b.action("closeBookAction")->isEnabled());
        QTEST(b.label("gameLabel")->text(), "caption");
        QTEST(b.lines(), "headers");
        QTEST(b.position(), "position");
        // No move buttons in any of these games.
        QVERIFY(!b.stepStrip()->isVisible());
        // Every button and key on it does nothing harmful.
        for (int i = 0; i < 4; ++i)
            b.panel->stepThroughGame(i);
        QTest::keyClick(b.scroll, Qt::Key_Right);
    }

    void walksGamesAndPositions() {
        Book b(kThreeGames);
        QCOMPARE(b.label("sideLabel")->text(), "White moves...");
        // Walking reads the work file alone.
        QVERIFY(QFile::remove(b.folder() + QStringLiteral("b.fen")));
        b.scroll->setValue(2);
        QCOMPARE(b.label("gameLabel")->text(), "Game 2. (2 of 2)");
        QCOMPARE(b.lines(), QStringList({"[Event \"second\"]", "[Site \"a site whose name is far l",
                                         " onger than one line\"]"}));
        QCOMPARE(b.position(), rank1("1K6"));
        QVERIFY(b.stepStrip()->isVisible());
        QCOMPARE(b.button(2), rank1("2K5"));
        QCOMPARE(b.label("sideLabel")->text(), "Black moves...");
        QCOMPARE(b.button(3), rank1("3K4"));
        QCOMPARE(b.label("sideLabel")->text(), "Move Control:");
        QCOMPARE(b.button(1), rank1("2K5"));
        QCOMPARE(b.button(0), rank1("1K6"));
        QCOMPARE(b.positionEdit->cursorPosition(), b.position().size());
    }

    void keysOfTheMoveButtons() {
        Book b(kThreeGames);
        b.scroll->setValue(2);
        QWidget* stepStrip = b.stepStrip();
        stepStrip->setFocus();
        QTRY_VERIFY(stepStrip->hasFocus());
        QVERIFY(b.label("sideLabel")->frameStyle() != QFrame::NoFrame);
        QCOMPARE(b.key(stepStrip, Qt::Key_Right), rank1("2K5"));
        QCOMPARE(b.key(stepStrip, Qt::Key_Right, Qt::ControlModifier), rank1("3K4"));
        QCOMPARE(b.key(stepStrip, Qt::Key_Left), rank1("2K5"));
        QCOMPARE(b.key(stepStrip, Qt::Key_Left, Qt::ControlModifier), rank1("1K6"));
        // The scroll bar steps games by its own keys, with its focus mark.
        b.scroll->setFocus();
        QTRY_VERIFY(b.scroll->hasFocus());
        QVERIFY(b.label("gameLabel")->frameStyle() != QFrame::NoFrame);
        QCOMPARE(b.key(b.scroll, Qt::Key_Left), rank1("K7"));
    }

    void styleTagSwitchesTheStyle() {
        Book b("[Style \"wide\"]\n[Event \"x\"]\n9K w\n",
               "RecentStyle = Small\r\nBeginStyle = Small\r\nEndStyle\r\n"
               "BeginStyle = Wide\r\n  BorderWidth = 10 \r\nEndStyle\r\n");
        QCOMPARE(b.state.style.StyleName, "Wide");
        // The tag itself isn't listed among the headers.
        QCOMPARE(b.lines(), QStringList({"[Event \"x\"]"}));
        QVERIFY(b.position().startsWith(QStringLiteral("81K/82/")));
    }

    void closingAndReopeningFromTheRecentList() {
        Book b(kThreeGames);
        const int openHeight = b.window->height();
        b.action("closeBookAction")->trigger();
        QVERIFY(!b.panel->isVisible());
        QVERIFY(!b.state.book.isOpen());
        QVERIFY(!b.action("closeBookAction")->isEnabled());
        QVERIFY(!b.action("searchAction")->isEnabled());
        QVERIFY(b.window->height() <= openHeight);

        b.action("recentBookAction0")->trigger();
        QVERIFY(b.panel->isVisible());
        QCOMPARE(b.state.book.gameCount, 2);
        QCOMPARE(b.position(), rank1("K7"));
    }
};

QTEST_MAIN(TstBookPanel)
#include "tst_book_panel.moc"
