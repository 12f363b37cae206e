// The book panel beside the board, driven as a user drives it; the walking
// rules themselves are tst_book_walk's.
#include "gui/book_panel.h"
#include "support/main_window_fixture.h"

#include <QListWidget>
#include <QScrollBar>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

// Two games: a header with one position, then two headers (one longer than
// a row of the list) with three positions.
const QByteArray kTwoGames = "[Event \"first\"]\n"
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
        state.bookFile = file.fileName();
        window->loadBook();
        waitForScan();
        panel = window->bookPanel();
    }
    BookPanel* panel = nullptr;

    QString label(const char* name) const {
        return panel->findChild<QLabel*>(QLatin1String(name))->text();
    }
    QWidget* stepStrip() const { return panel->findChild<QWidget*>(QStringLiteral("stepStrip")); }
    QStringList lines() const {
        QStringList all;
        for (int i = 0; i < panel->headerList()->count(); ++i)
            all << panel->headerList()->item(i)->text();
        return all;
    }
    // The position shown after a click on a move button or a key.
    QString button(const char* name) {
        QTest::mouseClick(panel->findChild<ToolButton*>(QLatin1String(name)), Qt::LeftButton);
        return positionEdit->text();
    }
    QString key(QWidget* on, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(on, key, modifiers);
        return positionEdit->text();
    }
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
        QTest::newRow("headers") << kTwoGames << "Game 1. (1 of 2)"
                                 << QStringList{"[Event \"first\"]"} << rank1("K7");
        QTest::newRow("no headers") << QByteArray("k7/8/8/8/8/8/8/K7\n8/8/8/8/8/8/8/8\n")
                                    << "Game 1. (1 of 1)" << QStringList() << "k7/8/8/8/8/8/8/K7";
    }
    void firstGame() {
        QFETCH(QByteArray, text);
        Book b(text);
        QVERIFY(b.panel->isVisible());
        QVERIFY(b.action("closeBookAction")->isEnabled());
        QTEST(b.label("gameLabel"), "caption");
        QTEST(b.lines(), "headers");
        QTEST(b.positionEdit->text(), "position");
        QVERIFY(!b.stepStrip()->isVisible()); // no move buttons in any of these games
    }

    void walksGamesAndPositions() {
        Book b(kTwoGames);
        QCOMPARE(b.label("sideLabel"), "White moves...");
        // Walking reads the work file alone.
        QVERIFY(QFile::remove(b.folder() + QStringLiteral("b.fen")));
        b.panel->gameScrollBar()->setValue(2);
        QCOMPARE(b.label("gameLabel"), "Game 2. (2 of 2)");
        QCOMPARE(b.lines(), QStringList({"[Event \"second\"]", "[Site \"a site whose name is far l",
                                         " onger than one line\"]"}));
        QCOMPARE(b.positionEdit->text(), rank1("1K6"));
        QVERIFY(b.stepStrip()->isVisible());
        QCOMPARE(b.button("nextPositionButton"), rank1("2K5"));
        QCOMPARE(b.label("sideLabel"), "Black moves...");
        QCOMPARE(b.button("lastPositionButton"), rank1("3K4"));
        QCOMPARE(b.label("sideLabel"), "Move Control:");
        QCOMPARE(b.button("previousPositionButton"), rank1("2K5"));
        QCOMPARE(b.button("firstPositionButton"), rank1("1K6"));
    }

    void keysOfTheMoveButtonsAndGames() {
        Book b(kTwoGames);
        QScrollBar* scroll = b.panel->gameScrollBar();
        scroll->setValue(2);
        QWidget* strip = b.stepStrip();
        QCOMPARE(b.key(strip, Qt::Key_Right), rank1("2K5"));
        QCOMPARE(b.key(strip, Qt::Key_Right, Qt::ControlModifier), rank1("3K4"));
        QCOMPARE(b.key(strip, Qt::Key_Left), rank1("2K5"));
        QCOMPARE(b.key(strip, Qt::Key_Left, Qt::ControlModifier), rank1("1K6"));
        QCOMPARE(b.key(scroll, Qt::Key_Left), rank1("K7"));
    }

    void closingAndReopeningFromTheRecentList() {
        Book b(kTwoGames);
        b.action("closeBookAction")->trigger();
        QVERIFY(!b.panel->isVisible());
        QVERIFY(!b.action("closeBookAction")->isEnabled());
        QVERIFY(!b.action("searchAction")->isEnabled());
        b.action("recentBookAction0")->trigger();
        b.waitForScan();
        QVERIFY(b.panel->isVisible());
        QCOMPARE(b.positionEdit->text(), rank1("K7"));
    }
};

QTEST_MAIN(TstBookPanel)
#include "tst_book_panel.moc"
