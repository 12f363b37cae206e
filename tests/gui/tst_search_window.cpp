#include "support/main_window_fixture.h"

using namespace marlith::testing;

namespace {

const QByteArray kBook =
    "[Event \"Paul memorial\"]\n[Site \"Tallinn\"]\n\n1. e4 e5 *\n\n"
    "[Event \"Other\"]\n[SetUp \"1\"]\n[FEN \"4k3/8/8/8/8/8/8/4K2R w - - 0 1\"]"
    "\n\n1. O-O *\n\n"
    "[Event \"Third\"]\n\n1. d4 *\n";

// An open book and the Search Criteria window, driven by its fields.
struct Search : Fixture {
    QStringList warnings;

    explicit Search(const QByteArray& book = kBook) {
        openBook(u"b.pgn"_s, book);
        window->searchWindow()->warn = [this](const QString& text) { warnings.append(text); };
    }
    int gamesShown() const { return static_cast<int>(state.book.gameIndex.size()); }
    bool narrowed() const { return action("searchAction")->isChecked(); }
};

} // namespace

class TstSearchWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // By a header word, a count of men and a piece on a square; every search starts from the whole
    // book; what matches nothing leaves the book as it was and says so; empty fields restore it.
    void narrowAndRestore() {
        Search s;
        QScrollBar* scroll = s.window->bookPanel()->gameScrollBar();
        s.search({"tallinn"});
        QCOMPARE(scroll->maximum(), 1);
        QVERIFY(s.narrowed());
        s.search({{}, {}, {}, "3"});
        QCOMPARE(s.gamesShown(), 1);
        QCOMPARE(s.positionEdit->text(), "4k3/8/8/8/8/8/8/4K2R");
        s.search({{}, {}, {}, {}, "Pe2"});
        QCOMPARE(scroll->maximum(), 2);
        const GameIndex narrowedIndex = s.state.book.gameIndex;
        s.search({"zzz"});
        QCOMPARE(s.warnings, QStringList{"Game not found!"});
        QCOMPARE(s.state.book.gameIndex, narrowedIndex);
        QVERIFY(s.narrowed());
        s.search({});
        QVERIFY(!s.narrowed());
        QCOMPARE(s.state.book.gameIndex, s.state.book.fullIndex);
        // A book of one game is searched like any other, by a count of men too.
        Search one("[Event \"Only\"]\n\n1. e4 *\n");
        one.search({"only", "16"});
        QCOMPARE(one.gamesShown(), 1);
        one.search({"only", "15"});
        QCOMPARE(one.warnings, QStringList{"Game not found!"});
        // A book of 12,000 games, every thousandth of them rare: the search finds them past the
        // 10,667th game, and the whole book comes back.
        QByteArray book;
        for (int n = 1; n <= 12'000; ++n)
            book += (n % 1000 ? "[Event \"common\"]" : "[Event \"rare\"]") +
                    QByteArray("\n\n1. e4 *\n\n");
        Search large(book);
        large.search({"rare"});
        large.window->bookPanel()->gameScrollBar()->setValue(11);
        QCOMPARE(large.window->bookPanel()->findChild<QLabel*>(u"gameLabel"_s)->text(),
                 "Game 11000. (11 of 12)");
        large.search({});
        QCOMPARE(large.window->bookPanel()->gameScrollBar()->maximum(), 12'000);
    }
};

QTEST_MAIN(TstSearchWindow)
#include "tst_search_window.moc"
