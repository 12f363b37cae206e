#include "editing/history.h"
#include "editing/position_undo.h"

#include <QTest>

using namespace marlith;

static QString pgn(const QStringList& rows) {
    const Notation notation{QStringLiteral("pPnNbBrRqQkK"), QStringLiteral("pPnNbBrRqQkK")};
    return historyPgn(rows, {8, 8}, notation);
}

class TstHistory : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // Extra fields go behind the board field, the counter stays; "r" keeps
    // the blank behind the board, Remove All doesn't; a row sent to the board
    // gives its board field alone, undo all behind the counter.
    void rowsAndTheirFields() {
        const std::tuple<const char*, const char*, const char*> cases[] = {
            {"(7x5)k7/8", "w", "(7x5)k7/8 w - - 0 0"}, {"k7/8 w - - 0 0", "-", "k7/8 - - - 0 0"},
            {"(2x1)k7/8 b - - 0 0", "", "(2x1)k7/8 "}, {"k7/8", "", "k7/8 "},
            {"(0x0)", "b", "(0x0)  b - - 0 0"},
        };
        for (const auto& [row, side, after] : cases)
            QCOMPARE(rowWithSide(QLatin1String(row), QLatin1String(side)), QLatin1String(after));
        const QStringList rows{"(1x1)K7/k7", "k7/K7 w - - 0 0", "8/8 "};
        QCOMPARE(setExtraFields(rows, "b") + setExtraFields(rows, {}),
                 QStringList({"(1x1)K7/k7 b - - 0 0", "k7/K7 w - - 0 0", "8/8 b - - 0 0",
                              "(1x1)K7/k7", "k7/K7", "8/8"}));
        const QString row = QStringLiteral("(2x1)k7/8 w - - 0 0");
        QCOMPARE(rowForBoard(row) + u'|' + rowForUndo(row) + u'|' + rowForUndo("k7/8"),
                 "k7/8|k7/8 w - - 0 0|k7/8");
    }

    // The moves between the rows: a capture, both castlings, a promotion, counters and extra fields
    // passed over, Black first; a board copied twice is no move.
    void rowsAsAGame() {
        const QString start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
        const QString e4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR";
        const QString d5 = "rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR";
        const std::pair<QStringList, const char*> cases[] = {
            {{}, ""},
            {{"8/8/8/8/8/8/8/8 w - - 0 0"}, ""},
            {{"(0x0)8/8/8/8/8/8/8/8 b - - 0 0"}, "1... "},
            {{start, "(16x16)" + e4 + " b - - 0 0", d5,
              "rnbqkbnr/ppp1pppp/8/3P4/8/8/PPPP1PPP/RNBQKBNR"},
             "1. e4 d5 2. exd5 "},
            {{"r3k3/P7/8/8/8/8/8/4K2R b", "2kr4/P7/8/8/8/8/8/4K2R", "2kr4/P7/8/8/8/8/8/5RK1",
              "1k1r4/P7/8/8/8/8/8/5RK1", "Qk1r4/8/8/8/8/8/8/5RK1"},
             "1... O-O-O 2. O-O Kb8 3. a8=Q "},
            {{start + " w - - 0 0", "(32x0)" + start, e4, d5}, "1. e4 d5 "}};
        for (const auto& [rows, moves] : cases)
            QCOMPARE(pgn(rows), QLatin1String(moves));
        QCOMPARE(historyFen({QStringLiteral("k7/8 "), QStringLiteral("8/8")}), "k7/8 \r\n8/8\r\n");
    }

    // Lines break behind the move that takes them past 70 characters.
    void longGamesAreBrokenIntoLines() {
        const QStringList there{"4k1n1/8/8/8/8/8/8/4K1N1", "4k1n1/8/8/8/8/5N2/8/4K3",
                                "4k3/8/5n2/8/8/5N2/8/4K3", "4k3/8/5n2/8/8/8/8/4K1N1"};
        QStringList rows;
        for (int i = 0; i < 40; ++i)
            rows.append(there[i % 4]);
        const QStringList lines = pgn(rows).split(QStringLiteral("\r\n"));
        QVERIFY(lines.size() >= 3 && lines[0].startsWith("1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 "));
        for (qsizetype i = 0; i + 1 < lines.size(); ++i) // without its last move, 70 at most
            QVERIFY(lines[i].size() > 70 && lines[i].chopped(1).lastIndexOf(u' ') < 70);
    }

    // Undo walks back to where it began and Redo forward again; a change
    // after an undo drops what was undone; the oldest steps fall out past
    // the limit; a step's History row comes back with the step.
    void undoAndRedoSteps() {
        PositionUndo steps(1000);
        steps.reset(QStringLiteral("start"));
        // The text shown after each step ("<" undo, ">" redo, else a change), "!" when refused.
        const auto play = [&steps](const QStringList& script) {
            QStringList shown;
            for (const QString& s : script) {
                const bool done = s == "<"   ? bool(steps.undo())
                                  : s == ">" ? bool(steps.redo())
                                             : steps.record(s);
                shown << (done ? steps.current() : QStringLiteral("!"));
            }
            return shown.join(u' ');
        };
        QCOMPARE(play({">", "a"}), "! a");
        steps.noteHistoryRow(QStringLiteral("(1x0)a"));
        QCOMPARE(steps.undo()->historyRow, "(1x0)a");
        QCOMPARE(play({"start", "a", "b", "c"}), "! a b c");
        steps.noteHistoryRow(QStringLiteral("(1x0)c"));
        QCOMPARE(steps.undo()->historyRow, "(1x0)c");
        QVERIFY(steps.undo()->historyRow.isEmpty());
        QCOMPARE(play({">", "d", ">", "<", "<", "<", "<", "typed", "typed, rewritten"}),
                 "b d ! b a start ! typed typed, rewritten");
        steps.mergeLastTwo();
        QCOMPARE(steps.undo()->text, "typed, rewritten");
        QCOMPARE(steps.current(), "start");
        for (int i = 0; i < 1005; ++i)
            steps.record(QString::number(i));
        int undone = 0;
        while (steps.undo())
            ++undone;
        QCOMPARE(undone, 1000);
        QCOMPARE(steps.current(), "4");
    }
};

QTEST_APPLESS_MAIN(TstHistory)
#include "tst_history.moc"
