// The book panel beside the board, driven as a user drives it; the walking
// rules themselves are tst_book_walk's.
#include "books/scan_job.h"
#include "support/main_window_fixture.h"

#include <QRandomGenerator>
#include <chrono>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace marlith::testing;

namespace {

// Two games: a header with one position, then two headers (one longer than
// a row of the list) with three positions.
const QByteArray kTwoGames =
    "[Event \"first\"]\n8/8/8/8/8/8/8/K7 w - -\n[Event \"second\"]\n"
    "[Site \"a site whose name is far longer than one line\"]\n"
    "8/8/8/8/8/8/8/1K6 w - -\n8/8/8/8/8/8/8/2K5 b - -\n8/8/8/8/8/8/8/3K4 x\n";

// A book opened as from the command line.
struct Book : Fixture {
    explicit Book(const QByteArray& text, const QString& name = u"b.fen"_s) {
        openBook(name, text);
        panel = window->bookPanel();
    }
    BookPanel* panel = nullptr;

    QString label(const char* name) const {
        return panel->findChild<QLabel*>(QLatin1String(name))->text();
    }
    QWidget* stepStrip() const { return panel->findChild<QWidget*>(u"stepStrip"_s); }
    QStringList lines() const { return itemTexts(panel->headerList()); }
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
    return u"8/8/8/8/8/8/8/"_s + QLatin1String(row);
}

// Games first to last of a header and two positions each.
QByteArray smallGames(int first, int last) {
    QByteArray text;
    for (int n = first; n <= last; ++n)
        text += "[Event \"game " + QByteArray::number(n) +
                "\"]\nK7/8/8/8/8/8/8/8 w\nk7/8/8/8/8/8/8/8 b\n";
    return text;
}

} // namespace

class TstBookPanel : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A file that can't be a book gets a Warning that names it, and no book
    // opens; a pipe never holds the window.
    void badBooksAreRefused_data() {
        QTest::addColumn<QString>("file"); // how it is made, and its name
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("says");
        QByteArray noise;
        for (QRandomGenerator random(7); noise.size() < 5'000;)
            noise += static_cast<char>(random.bounded(256));
        const QByteArray none;
        QTest::newRow("missing") << "none nosuch.pgn" << none << "doesn't exist";
        QTest::newRow("unreadable") << "locked b.fen" << kTwoGames << "can't be read";
        QTest::newRow("link to itself") << "loop b.fen" << none << "can't be read";
        QTest::newRow("folder") << "folder b.pgn" << none << "no book";
        QTest::newRow("pipe") << "fifo b.pgn" << none << "no book";
        QTest::newRow("empty") << "file b.pgn" << none << "holds no game";
        QTest::newRow("no position")
            << "file b.fen" << QByteArray("[Event \"x\"]\n") << "holds no game";
        QTest::newRow("random bytes as .pgn") << "file b.pgn" << noise << "not a text file";
    }
    void badBooksAreRefused() {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, says);
        Fixture f;
        const QString made = file.section(u' ', 0, 0), path = f.folder() + file.section(u' ', 1);
        if (made == "file" || made == "locked") writeFile(path, bytes);
        if (made == "locked" && ::geteuid() == 0) QSKIP("the superuser reads any file");
        if (made == "locked") QVERIFY(QFile::setPermissions(path, {}));
        if (made == "loop") QVERIFY(QFile::link(path, path));
        if (made == "folder") QVERIFY(QDir().mkdir(path));
        if (made == "fifo") QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        f.state.bookFile = path;
        f.window->loadBook();
        f.waitForScan();
        QCOMPARE(f.warnings.size(), 1);
        QVERIFY2(f.warnings[0].contains(QDir::toNativeSeparators(path)) &&
                     f.warnings[0].contains(says),
                 qPrintable(f.warnings[0]));
        QVERIFY(!f.window->bookPanel()->isVisible());
    }

    // Opened, the book shows its first game; buttons and keys walk the positions of a game, the
    // scroll bar the games; walking reads the work file alone.
    void walksGamesAndPositions() {
        Book b(kTwoGames);
        QVERIFY(b.panel->isVisible() && b.action("closeBookAction")->isEnabled());
        QCOMPARE(QStringList({b.label("gameLabel"), b.positionEdit->text()}) + b.lines(),
                 QStringList({"Game 1. (1 of 2)", rank1("K7"), "[Event \"first\"]"}));
        QVERIFY(!b.stepStrip()->isVisible()); // one position: no move buttons
        QCOMPARE(b.label("sideLabel"), "White moves...");
        QVERIFY(QFile::remove(b.folder() + u"b.fen"_s));
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
        QCOMPARE(b.key(b.stepStrip(), Qt::Key_Right, Qt::ControlModifier), rank1("3K4"));
        QCOMPARE(b.key(b.stepStrip(), Qt::Key_Left), rank1("2K5"));
        QCOMPARE(b.key(b.panel->gameScrollBar(), Qt::Key_Left), rank1("K7"));
        // The panel names the move at which a game was cut; a book without headers shows none.
        Book cut("[Event \"a\"]\n\n1.e4 e5 2.Ke3 Nc6\n", u"b.pgn"_s);
        QCOMPARE(cut.lines().value(1), "Cut at 2.Ke3 (can't be played)");
        Book bare("k7/8/8/8/8/8/8/K7\n8/8/8/8/8/8/8/8\n");
        QCOMPARE(QStringList({bare.label("gameLabel"), bare.positionEdit->text()}) + bare.lines(),
                 QStringList({"Game 1. (1 of 1)", "k7/8/8/8/8/8/8/K7"}));
        QVERIFY(!bare.stepStrip()->isVisible());
    }

    // The window lives while a book is read: the count runs, Escape stops the
    // scan, and what was read can be walked. The scan is held at game 6000
    // until the stop, so that it ends halfway whatever the machine's speed.
    void scansThatEndEarly() {
        Fixture f;
        const QByteArray text = smallGames(1, 12'000);
        writeFile(f.state.bookFile = f.folder() + u"book.fen"_s, text);
        f.window->holdBookScan = [](ScanJob::Scan scan) {
            return [scan](WorkFile& work, const ScanControl& control) {
                ScanControl held = control;
                held.progress = [&control](int32_t games) {
                    control.progress(games);
                    while (games == 6'000 && !control.stop->load())
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                };
                return scan(work, held);
            };
        };
        f.window->loadBook();
        auto* label = f.window->bookPanel()->findChild<QLabel*>(u"gameLabel"_s);
        QTRY_COMPARE_WITH_TIMEOUT(label->text(), "6000 games", 60'000);
        QVERIFY(!f.window->bookPanel()->gameScrollBar()->isEnabled());
        f.type(u"K"_s);
        QTest::keyClick(f.positionEdit, Qt::Key_Escape);
        QCOMPARE(f.positionEdit->text(), "K"); // the key went to the scan, not to the box
        f.waitForScan();
        QVERIFY(f.window->bookPanel()->gameScrollBar()->isEnabled());
        f.window->bookPanel()->gameScrollBar()->setValue(6'000);
        QCOMPARE(label->text(), "Game 6000. (6000 of 6000)");
        QVERIFY(f.warnings.isEmpty());

        // A work file that can't grow ends the scan with a message; the games it holds can be
        // walked and the book is as it was.
        {
            const FileSizeLimit full(1'000'000);
            f.window->loadBook();
            f.waitForScan();
        }
        QCOMPARE(f.warnings.size(), 1);
        QVERIFY2(f.warnings[0].contains(u"File too large"_s) &&
                     f.warnings[0].contains(u"The first 2525 games"_s),
                 qPrintable(f.warnings[0]));
        QCOMPARE(f.window->bookPanel()->gameScrollBar()->maximum(), 2'525);
        f.window->bookPanel()->gameScrollBar()->setValue(2'525);
        QCOMPARE(f.positionEdit->text(), "K7/8/8/8/8/8/8/8");
        QCOMPARE(readFile(f.state.bookFile), text);
    }

    // Closing the book also stops a scan that is under way.
    void closingAndReopeningFromTheRecentList() {
        Book b(kTwoGames + smallGames(3, 20'000));
        for (int round = 0; round < 2; ++round) { // the second closes a running scan
            b.action("closeBookAction")->trigger();
            QVERIFY(!b.window->bookScanRunning() && !b.panel->isVisible());
            QVERIFY(!b.action("closeBookAction")->isEnabled());
            QVERIFY(!b.action("searchAction")->isEnabled());
            b.action("recentBookAction0")->trigger();
        }
        b.waitForScan();
        QVERIFY(b.panel->isVisible());
        QCOMPARE(b.positionEdit->text(), rank1("K7"));
    }
};

QTEST_MAIN(TstBookPanel)
#include "tst_book_panel.moc"
