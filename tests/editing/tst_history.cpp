#include "editing/history.h"
#include "editing/position_undo.h"

#include <QTest>

using namespace marlith;

namespace {

const Board kBoard{8, 8};
const Notation kNotation{QStringLiteral("pPnNbBrRqQkK"), QStringLiteral("pPnNbBrRqQkK")};

QString pgn(const QStringList& rows) {
    return historyPgn(rows, kBoard, kNotation);
}

} // namespace

class TstHistory : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // Extra fields go behind the board field, the counter stays; "r" keeps
    // the blank behind the board, Remove All doesn't.
    void rowsAndTheirFields() {
        const std::tuple<const char*, const char*, const char*> cases[] = {
            {"(7x5)k7/8", "w", "(7x5)k7/8 w - - 0 0"}, {"k7/8 w - - 0 0", "-", "k7/8 - - - 0 0"},
            {"(2x1)k7/8 b - - 0 0", "", "(2x1)k7/8 "}, {"k7/8", "", "k7/8 "},
            {"(0x0)", "b", "(0x0)  b - - 0 0"},
        };
        for (const auto& [row, side, after] : cases)
            QCOMPARE(rowWithSide(QLatin1String(row), QLatin1String(side)), QLatin1String(after));
        const QStringList rows{"(1x1)K7/k7", "k7/K7 w - - 0 0", "8/8 "};
        QCOMPARE(setExtraFields(rows, QStringLiteral("b")),
                 QStringList({"(1x1)K7/k7 b - - 0 0", "k7/K7 w - - 0 0", "8/8 b - - 0 0"}));
        QCOMPARE(setExtraFields(rows, QString()), QStringList({"(1x1)K7/k7", "k7/K7", "8/8"}));
    }

    // A row sent to the board gives its board field alone; undo gives all
    // behind the counter, extra fields too.
    void rowsBackToTheBoard() {
        QCOMPARE(rowForBoard(QStringLiteral("(2x1)k7/8 w - - 0 0")), QStringLiteral("k7/8"));
        QCOMPARE(rowForBoard(QStringLiteral("k7/8 b - - 0 0")), QStringLiteral("k7/8"));
        QCOMPARE(rowForUndo(QStringLiteral("(2x1)k7/8 w - - 0 0")),
                 QStringLiteral("k7/8 w - - 0 0"));
        QCOMPARE(rowForUndo(QStringLiteral("k7/8")), QStringLiteral("k7/8"));
        QCOMPARE(historyFen({QStringLiteral("k7/8 "), QStringLiteral("8/8")}),
                 QStringLiteral("k7/8 \r\n8/8\r\n"));
    }

    // The moves between the rows: a capture, both castlings, a promotion,
    // counters and extra fields passed over, Black first.
    void rowsAsAGame() {
        QCOMPARE(pgn({}), QString());
        QCOMPARE(pgn({QStringLiteral("8/8/8/8/8/8/8/8 w - - 0 0")}), QString());
        QCOMPARE(pgn({QStringLiteral("(0x0)8/8/8/8/8/8/8/8 b - - 0 0")}), QStringLiteral("1... "));
        QCOMPARE(pgn({"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",
                      "(16x16)rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - - 0 0",
                      "rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR",
                      "rnbqkbnr/ppp1pppp/8/3P4/8/8/PPPP1PPP/RNBQKBNR"}),
                 QStringLiteral("1. e4 d5 2. exd5 "));
        QCOMPARE(
            pgn({"r3k3/P7/8/8/8/8/8/4K2R b", "2kr4/P7/8/8/8/8/8/4K2R", "2kr4/P7/8/8/8/8/8/5RK1",
                 "1k1r4/P7/8/8/8/8/8/5RK1", "Qk1r4/8/8/8/8/8/8/5RK1"}),
            QStringLiteral("1... O-O-O 2. O-O Kb8 3. a8=Q "));
        // A board copied twice is no move: Black's reply stays Black's.
        QCOMPARE(pgn({"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 0",
                      "(32x0)rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",
                      "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR",
                      "rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR"}),
                 QStringLiteral("1. e4 d5 "));
    }

    // Lines break behind the move that takes them past 70 characters.
    void longGamesAreBrokenIntoLines() {
        const QStringList there{"4k1n1/8/8/8/8/8/8/4K1N1", "4k1n1/8/8/8/8/5N2/8/4K3",
                                "4k3/8/5n2/8/8/5N2/8/4K3", "4k3/8/5n2/8/8/8/8/4K1N1"};
        QStringList rows;
        for (int i = 0; i < 40; ++i)
            rows.append(there[i % 4]);
        const QStringList lines = pgn(rows).split(QStringLiteral("\r\n"));
        QVERIFY(lines.size() >= 3);
        for (qsizetype i = 0; i + 1 < lines.size(); ++i)
            QVERIFY(lines[i].size() > 70 && lines[i].size() <= 82);
        QVERIFY(lines[0].startsWith(QLatin1String("1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 ")));
    }
    // Undo walks back to where it began and Redo forward again; a change
    // after an undo drops what was undone; the oldest steps fall out past
    // the limit; a step's History row comes back with the step.
    void undoAndRedoSteps() {
        PositionUndo steps(1000);
        steps.reset(QStringLiteral("start"));
        QVERIFY(!steps.record(QStringLiteral("start")));
        for (const char* text : {"a", "b", "c"})
            QVERIFY(steps.record(QLatin1String(text)));
        steps.noteHistoryRow(QStringLiteral("(1x0)c"));
        QCOMPARE(steps.undo()->historyRow, "(1x0)c");
        QCOMPARE(steps.current(), "b");
        QVERIFY(steps.undo()->historyRow.isEmpty());
        QCOMPARE(steps.redo()->text, "b");
        QVERIFY(steps.record(QStringLiteral("d")));
        QVERIFY(!steps.canRedo());
        QCOMPARE(steps.undo()->text, "d");
        QCOMPARE(steps.undo()->text, "b");
        QCOMPARE(steps.undo()->text, "a");
        QVERIFY(!steps.undo());
        QCOMPARE(steps.current(), "start");
        steps.record(QStringLiteral("typed"));
        steps.record(QStringLiteral("typed, rewritten"));
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
