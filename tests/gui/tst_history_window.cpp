#include "support/main_window_fixture.h"

using namespace marlith::testing;

namespace {

const auto square = squareCentre;

const QByteArray kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
const QByteArray kAfterE4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR";
const QByteArray kAfterE5 = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR";

QString clipboardText() {
    return QGuiApplication::clipboard()->text();
}

struct History : Fixture {
    HistoryWindow* history = window->historyWindow();
    QListWidget* list = history->findChild<QListWidget*>(u"historyList"_s);
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
    // Add to Book with the Event and Result fields filled in.
    void addToBook() {
        window->runAddToBookWindow = [](AddToBookWindow& w) {
            w.show();
            w.tagEdit(0)->setText(u"Added"_s);
            w.tagEdit(6)->setText(u"1-0"_s);
            QTest::keyClick(w.tagEdit(0), Qt::Key_Return);
            w.hide();
        };
        click("addToBookButton");
    }
    void click(const char* button) {
        history->findChild<QPushButton*>(QLatin1String(button))->click();
    }
};

} // namespace

class TstHistoryWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // Rec Mode records the start and each mouse edit; undo walks back and never takes the first
    // row. Rows from copies, with the counter; their extra fields; sent back to the board; deleted;
    // cleared; a long game.
    void recModeUndoAndRows() {
        History h;
        h.type(u"k7/8/8/8/8/8/8/K"_s);
        QVERIFY(!h.action("undoRecAction")->isEnabled());
        h.child("recModeButton")->clicked();
        QVERIFY(h.action("recModeAction")->isChecked());
        for (const auto& [from, to] : {std::pair{0, 9}, {9, 18}, {56, 48}}) // to b7, c6; a1 to a2
            drag(h.diagramView(), square(from / 8, from % 8), square(to / 8, to % 8));
        const QStringList rows{"k7/8/8/8/8/8/8/K7", "8/1k6/8/8/8/8/8/K7", "8/8/2k5/8/8/8/8/K7",
                               "8/8/2k5/8/8/8/K7/8"};
        QCOMPARE(h.history->rows(), rows);
        QCOMPARE(clipboardText(), rows[3]);
        // Undo takes each recorded edit back with its row, Redo brings both
        // again; Undo Rec steps back through the rows alone.
        for (const int row : {2, 1, 0})
            QCOMPARE(h.run("undoAction"), rows[row]);
        QCOMPARE(h.history->rows(), QStringList{rows[0]});
        h.run("redoAction");
        QCOMPARE(h.run("redoAction"), rows[2]);
        QCOMPARE(h.history->rows(), rows.mid(0, 3));
        for (const int row : {1, 0, 0}) // the first row stays
            QCOMPARE(h.run("undoRecAction"), rows[row]);
        QCOMPARE(h.history->rows(), QStringList{rows[0]});
        QCOMPARE(clipboardText(), rows[3]);
        // Off: edits go unrecorded; the rows stay.
        h.action("recModeAction")->trigger();
        drag(h.diagramView(), square(0, 0), square(1, 1));
        QCOMPARE(h.history->rowCount(), 1);

        h.click("clearAllButton");
        h.state.style.CopyCounter = 1;
        h.copy(u"kK"_s);
        h.state.style.CopyCounter = 0;
        h.copy(u"k1K"_s);
        h.copy(u"k2K"_s);
        QCOMPARE(h.history->rows(), QStringList({"(1x1)kK6/8/8/8/8/8/8/8", "k1K5/8/8/8/8/8/8/8",
                                                 "k2K4/8/8/8/8/8/8/8"}));
        h.press(0, 'w');
        h.press(1, '-');
        QCOMPARE(h.list->item(0)->text(), "(1x1)kK6/8/8/8/8/8/8/8 w - - 0 0");
        QCOMPARE(h.list->item(1)->text(), "k1K5/8/8/8/8/8/8/8 - - - 0 0");
        h.click("blackFirstButton");
        h.click("copyFenButton");
        // The rows' texts are tst_history's; the button and the copy are wired.
        QVERIFY(clipboardText().startsWith("(1x1)kK6/8/8/8/8/8/8/8 b - - 0 0\r\n"));
        h.press(0, 'R');
        QCOMPARE(h.list->item(0)->text(), "(1x1)kK6/8/8/8/8/8/8/8 ");
        h.click("removeFieldsButton");
        QCOMPARE(h.list->item(1)->text(), "k1K5/8/8/8/8/8/8/8");

        // Enter sends the board field alone.
        h.positionEdit->clear();
        h.press(0, Qt::Key_Return);
        QCOMPARE(h.positionEdit->text(), "kK6/8/8/8/8/8/8/8");
        QCOMPARE(h.child<QLabel>("sideLabel")->text(), "Move Controls:");
        // Space and the right button delete the selected row, once confirmed.
        h.answer = QMessageBox::Cancel;
        h.press(1, Qt::Key_Space);
        h.answer = QMessageBox::Ok;
        h.press(1, Qt::Key_Space);
        h.list->setCurrentRow(0);
        QTest::mousePress(h.list->viewport(), Qt::RightButton, {},
                          h.list->visualItemRect(h.list->item(1)).center());
        QCOMPARE(h.questions, QStringList(3, "Remove the selected line from History"));
        QCOMPARE(h.history->rows(), QStringList{"k2K4/8/8/8/8/8/8/8"});

        h.click("clearAllButton");
        QCOMPARE(h.history->rowCount(), 0);
        // A long game keeps every row, to its last move.
        const char* const walk[] = {"k7/8/8/8/8/8/8/K7", "k7/8/8/8/8/8/8/1K6",
                                    "1k6/8/8/8/8/8/8/1K6", "1k6/8/8/8/8/8/8/K7"};
        for (int row = 0; row < 320; ++row)
            h.copy(QLatin1String(walk[row % 4]));
        QCOMPARE(h.history->rowCount(), 320);
        h.click("whiteFirstButton");
        h.click("copyPgnButton");
        QVERIFY2(clipboardText().endsWith("160. Ka1 "), qPrintable(clipboardText().right(40)));
    }

    // The History rows, the first copied twice, added while a search hides the
    // last game: the book keeps its line ends, and every game walks on its own,
    // with the search cleared and after the book is read anew.
    void addedGamesAreWalked_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("book");
        QTest::addColumn<QByteArray>("added");
        QTest::newRow("fen") << "b.fen"
                             << crlf("[Event \"Old\"]\n\n8/8/8/8/8/8/8/8\n[Event \"B\"]\n\nk7/8")
                             << crlf("\n\n[Event \"Added\"]\n[Result \"1-0\"]\n\n" + kStart + "\n" +
                                     kAfterE4 + "\n" + kAfterE5 + "\n");
        QTest::newRow("pgn")
            << "b.pgn" << QByteArray("[Event \"Old\"]\n\n1. d4 *\n\n[Event \"B\"]\n\n1. c4 *\n")
            << QByteArray("\n[Event \"Added\"]\n[Result \"1-0\"]\n[SetUp \"1\"]\n[FEN \"" + kStart +
                          " w - - 0 1\"]\n\n1.e4 e5  1-0\n");
    }

    void addedGamesAreWalked() {
        QFETCH(QString, name);
        QFETCH(QByteArray, book);
        QFETCH(QByteArray, added);
        History h;
        h.openBook(name, book);
        h.search({u"Old"_s});
        for (const QByteArray& board : {kStart, kStart, kAfterE4, kAfterE5})
            h.copy(QString::fromLatin1(board));
        h.addToBook();
        QCOMPARE(h.window->bookPanel()->gameScrollBar()->value(), 2);
        QCOMPARE(readFile(h.state.bookFile), book + added);
        h.search({});
        for (int opening = 0; opening < 2; ++opening) {
            for (int game = 1; game <= 3; ++game) {
                h.window->bookPanel()->gameScrollBar()->setValue(game);
                h.window->bookPanel()->lastPosition();
                QCOMPARE(h.positionEdit->text() == QLatin1String(kAfterE5), game == 3);
            }
            h.window->loadBook(); // the scanner reads what the writer wrote
            h.waitForScan();
        }
    }

    // Add to Book follows an open .FEN or .PGN book and rows to add. A book
    // deleted while open is left alone and the user is told; nothing is counted.
    void booksThatCantGrow() {
        History h;
        auto* add = h.history->findChild<QPushButton*>(u"addToBookButton"_s);
        h.openBook("b.fen", "8/8/8/8/8/8/8/8\r\n");
        QVERIFY(!add->isEnabled());
        h.copy(u"k7/8/8/8/8/8/8/K7"_s);
        QVERIFY(add->isEnabled());
        h.window->closeBook();
        QVERIFY(!add->isEnabled());
        h.window->loadBook();
        h.waitForScan();
        QVERIFY(add->isEnabled());
        QList<QString> warnings;
        h.window->addToBookWindow()->warn = [&](const QString& text) { warnings.append(text); };
        QVERIFY(QFile::remove(h.state.bookFile));
        h.addToBook();
        QVERIFY(!QFile::exists(h.state.bookFile)); // a full disk is tst_book_append's
        QVERIFY(warnings.size() == 1 && warnings[0].contains(u"no longer there"));
        QCOMPARE(h.state.book.gameCount, 1);
    }
};

QTEST_MAIN(TstHistoryWindow)
#include "tst_history_window.moc"
