#include "gui/add_to_book_window.h"
#include "gui/book_panel.h"
#include "gui/history_window.h"
#include "gui/search_window.h"
#include "gui/tool_faces.h"
#include "support/file_bytes.h"
#include "support/main_window_fixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>

#include <unistd.h>

using namespace marlith;
using namespace marlith::testing;

namespace {

// The middle of square (row, column) of the default 15-pixel board.
QPoint square(int row, int column) {
    return QPoint(column * 15 + 7, row * 15 + 7);
}

void drag(QWidget* widget, QPoint from, QPoint to) {
    QTest::mousePress(widget, Qt::LeftButton, {}, from);
    QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
}

QString clipboardText() {
    return QGuiApplication::clipboard()->text();
}

struct History : Fixture {
    HistoryWindow* history = window->historyWindow();
    QListWidget* list = history->findChild<QListWidget*>(QStringLiteral("historyList"));
    QStringList questions;
    QMessageBox::StandardButton answer = QMessageBox::Ok;

    History() {
        history->ask = [this](const QString& text) {
            questions.append(text);
            return answer;
        };
    }
    void copy(const QString& position) {
        positionEdit->setText(position);
        action("copyPositionAction")->trigger();
    }
    template <typename Key> void press(int row, Key key) {
        list->setCurrentRow(row);
        QTest::keyClick(list, key);
    }
    // A book of one game, open.
    void openBook(const char* name, const QByteArray& bytes) {
        state.bookFile = folder() + QLatin1String(name);
        writeFile(state.bookFile, bytes);
        window->loadBook();
        waitForScan();
    }
    // Add to Book with the Event and Result fields filled in.
    void addToBook() {
        window->runAddToBookWindow = [](AddToBookWindow& w) {
            w.show();
            w.tagEdit(0)->setText(QStringLiteral("Added"));
            w.tagEdit(6)->setText(QStringLiteral("1-0"));
            QTest::keyClick(w.tagEdit(0), Qt::Key_Return);
            w.hide();
        };
        click("addToBookButton");
    }
    void search(const QString& words) {
        window->runSearchWindow = [&](SearchWindow& w) {
            w.show();
            w.fieldEdit(0)->setText(words);
            QTest::keyClick(w.fieldEdit(0), Qt::Key_Return);
            w.hide();
        };
        action("searchAction")->trigger();
    }
    void click(const char* button) {
        history->findChild<QPushButton*>(QLatin1String(button))->click();
    }
};

} // namespace

class TstHistoryWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // Rec Mode records the start and each mouse edit; undo walks back and
    // never takes the first row.
    void recModeAndUndo() {
        History h;
        h.type(QStringLiteral("k7/8/8/8/8/8/8/K"));
        QVERIFY(!h.action("undoRecAction")->isEnabled());
        h.child("recModeButton")->clicked();
        QVERIFY(h.action("recModeAction")->isChecked());
        QCOMPARE(h.child("recModeButton")->restingFace().toImage(), recModeFaces()[1].toImage());
        drag(h.diagramView(), square(0, 0), square(1, 1));
        drag(h.diagramView(), square(1, 1), square(2, 2));
        drag(h.diagramView(), square(7, 0), square(6, 0));
        const QStringList rows{"k7/8/8/8/8/8/8/K7", "8/1k6/8/8/8/8/8/K7", "8/8/2k5/8/8/8/8/K7",
                               "8/8/2k5/8/8/8/K7/8"};
        QCOMPARE(h.history->rows(), rows);
        QCOMPARE(clipboardText(), rows[3]);
        for (int undo = 0; undo < 4; ++undo)
            h.action("undoRecAction")->trigger();
        QCOMPARE(h.history->rows(), QStringList{rows[0]});
        QCOMPARE(h.positionEdit->text(), rows[0]);
        QCOMPARE(clipboardText(), rows[3]);
        // Off: edits go unrecorded; the rows stay.
        h.action("recModeAction")->trigger();
        drag(h.diagramView(), square(0, 0), square(1, 1));
        QCOMPARE(h.history->rowCount(), 1);
    }

    // Rows from copies, with the counter; their extra fields; sent back to
    // the board; deleted; cleared.
    void rowsOfTheHistory() {
        History h;
        h.state.style.CopyCounter = 1;
        h.copy(QStringLiteral("kK"));
        h.state.style.CopyCounter = 0;
        h.copy(QStringLiteral("k1K"));
        h.copy(QStringLiteral("k2K"));
        QCOMPARE(h.history->rows(), QStringList({"(1x1)kK6/8/8/8/8/8/8/8", "k1K5/8/8/8/8/8/8/8",
                                                 "k2K4/8/8/8/8/8/8/8"}));
        h.press(0, 'w');
        h.press(1, '-');
        QCOMPARE(h.list->item(0)->text(), "(1x1)kK6/8/8/8/8/8/8/8 w - - 0 0");
        QCOMPARE(h.list->item(1)->text(), "k1K5/8/8/8/8/8/8/8 - - - 0 0");
        h.click("blackFirstButton");
        h.click("copyFenButton");
        QCOMPARE(clipboardText(), "(1x1)kK6/8/8/8/8/8/8/8 b - - 0 0\r\n"
                                  "k1K5/8/8/8/8/8/8/8 w - - 0 0\r\n"
                                  "k2K4/8/8/8/8/8/8/8 b - - 0 0\r\n");
        h.press(0, 'R');
        QCOMPARE(h.list->item(0)->text(), "(1x1)kK6/8/8/8/8/8/8/8 ");
        h.click("removeFieldsButton");
        QCOMPARE(h.list->item(1)->text(), "k1K5/8/8/8/8/8/8/8");

        // Enter sends the board field alone.
        h.positionEdit->clear();
        h.press(0, Qt::Key_Return);
        QCOMPARE(h.positionEdit->text(), "kK6/8/8/8/8/8/8/8");
        QCOMPARE(h.child<QLabel>("sideLabel")->text(), "Move Controls:");
        h.answer = QMessageBox::Cancel;
        h.press(1, Qt::Key_Space);
        h.answer = QMessageBox::Ok;
        h.press(1, Qt::Key_Space);
        QCOMPARE(h.questions, QStringList(2, "Remove the selected line from History"));
        QCOMPARE(h.history->rowCount(), 2);

        h.click("clearAllButton");
        QVERIFY(!h.action("undoRecAction")->isEnabled());
        h.click("copyFenButton");
        QCOMPARE(clipboardText(), QString());
        h.click("copyPgnButton");
        QCOMPARE(clipboardText(), QString());
    }

    // The moves between the rows, with the rows' counters and fields.
    void rowsAsMoveText() {
        History h;
        h.state.style.CopyCounter = 1;
        for (const char* position : {"r3k2r/1P6/8/3p4/4P3/8/8/R3K2R", "r3k2r/1P6/8/3P4/8/8/8/R3K2R",
                                     "2kr3r/1P6/8/3P4/8/8/8/R3K2R", "2kr3r/1P6/8/3P4/8/8/8/R4RK1",
                                     "2k4r/1P6/3r4/3P4/8/8/8/R4RK1", "1Qk4r/8/3r4/3P4/8/8/8/R4RK1"})
            h.copy(QLatin1String(position));
        h.click("whiteFirstButton");
        h.click("copyPgnButton");
        QCOMPARE(clipboardText(), "1. exd5 O-O-O 2. O-O Rd6 3. b8=Q ");
    }

    // The History rows as a new game of a .FEN and a .PGN book: walked at
    // once, and found the same after the book is opened again.
    void addedGamesAreWalked_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("book");
        QTest::newRow("fen") << "b.fen" << QByteArray("[Event \"Old\"]\r\n\r\n8/8/8/8/8/8/8/8\r\n");
        QTest::newRow("pgn") << "b.pgn" << QByteArray("[Event \"Old\"]\n\n1. d4 *\n");
    }

    void addedGamesAreWalked() {
        QFETCH(QString, name);
        QFETCH(QByteArray, book);
        History h;
        h.openBook(name.toLatin1().constData(), book);
        const QStringList boards{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",
                                 "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR",
                                 "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR"};
        for (const QString& board : boards)
            h.copy(board);
        h.click("whiteFirstButton");
        h.addToBook();
        for (int opening = 0; opening < 2; ++opening) {
            QCOMPARE(h.state.book.gameCount, 2);
            QCOMPARE(h.window->bookPanel()->gameScrollBar()->value(), 2);
            QCOMPARE(h.positionEdit->text(), boards[0]);
            QVERIFY(h.window->bookPanel()->headerList()->item(0)->text().contains(u"Added"));
            h.window->bookPanel()->lastPosition();
            QCOMPARE(h.positionEdit->text(), boards[2]);
            // The scanner reads what the writer wrote.
            h.window->loadBook();
            h.waitForScan();
            h.window->bookPanel()->gameScrollBar()->setValue(2);
        }
        QVERIFY(readFile(h.state.bookFile).startsWith(book));
    }

    // Added while a search shows all games but the second: the new game is
    // the narrowed list's last, and with the search cleared every game,
    // numbered on its own, walks to its own last position and no further.
    void addedUnderASearch() {
        History h;
        h.openBook("b.pgn", "[Event \"A\"]\n\n1. d4 *\n\n[Event \"B\"]\n\n1. e4 e5 *\n\n"
                            "[Event \"C\"]\n\n1. c4 *\n");
        h.search(QStringLiteral("A,C"));
        h.copy(QStringLiteral("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"));
        h.copy(QStringLiteral("rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R"));
        h.addToBook();
        QCOMPARE(h.window->bookPanel()->gameScrollBar()->value(), 3);
        h.search(QString());
        const char* const lastPositions[] = {"rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR",
                                             "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR",
                                             "rnbqkbnr/pppppppp/8/8/2P5/8/PP1PPPPP/RNBQKBNR",
                                             "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R"};
        for (int game = 1; game <= 4; ++game) {
            h.window->bookPanel()->gameScrollBar()->setValue(game);
            QVERIFY(h.window->findChild<QLabel*>(QStringLiteral("gameLabel"))
                        ->text()
                        .startsWith(QStringLiteral("Game %1. (%1 of 4)").arg(game)));
            h.window->bookPanel()->lastPosition();
            QCOMPARE(h.positionEdit->text(), lastPositions[game - 1]);
        }
    }

    // A book deleted or made unwritable while open is left alone and the
    // user is told; nothing is counted.
    void booksThatCantGrow() {
        History h;
        h.openBook("b.fen", "8/8/8/8/8/8/8/8\r\n");
        h.copy(QStringLiteral("k7/8/8/8/8/8/8/K7"));
        QList<QString> warnings;
        h.window->addToBookWindow()->warn = [&](const QString& text) { warnings.append(text); };
        QVERIFY(QFile::remove(h.state.bookFile));
        h.addToBook();
        QVERIFY(!QFile::exists(h.state.bookFile));
        // A disk that is full.
        QVERIFY(QFile::link(QStringLiteral("/dev/full"), h.state.bookFile));
        h.addToBook();
        QCOMPARE(warnings.size(), 2);
        QVERIFY(warnings[0].contains(u"no longer there"));
        QVERIFY(warnings[1].contains(u"can't be written"));
        QCOMPARE(h.state.book.gameCount, 1);
        if (::geteuid() != 0) { // the superuser writes read-only files all the same
            QFile::remove(h.state.bookFile);
            h.openBook("b.fen", "8/8/8/8/8/8/8/8\r\n");
            QFile::setPermissions(h.state.bookFile, QFile::ReadOwner);
            h.addToBook();
            QCOMPARE(warnings.size(), 3);
            QCOMPARE(h.state.book.gameCount, 1);
        }
    }

    // Add to Book follows an open .FEN or .PGN book and rows to add.
    void addToBookFollowsTheBook() {
        History h;
        auto* add = h.history->findChild<QPushButton*>(QStringLiteral("addToBookButton"));
        h.openBook("b.fen", "k7/8/8/8/8/8/8/K7\r\n");
        QVERIFY(!add->isEnabled());
        h.copy(QStringLiteral("k7/8/8/8/8/8/8/K7"));
        QVERIFY(add->isEnabled());
        h.window->closeBook();
        QVERIFY(!add->isEnabled());
        h.window->loadBook();
        h.waitForScan();
        QVERIFY(add->isEnabled());
    }
};

QTEST_MAIN(TstHistoryWindow)
#include "tst_history_window.moc"
