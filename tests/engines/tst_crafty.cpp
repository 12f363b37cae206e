#include "engines/crafty.h"
#include "support/file_bytes.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

class TstCrafty : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void commandFileForEitherSide() {
        const QByteArray head = "log off\r\nponder off\r\nsd 12\r\n";
        const QByteArray tail = "log on\r\nanalyze\r\nexit\r\nquit\r\nexit\r\n";
        // The side comes from the buttons alone, even behind a full FEN.
        QCOMPARE(craftyRcText("12", "r3k2r/8/8/8/8/8/8/R3K2R b", true),
                 head + "setboard r3k2r/8/8/8/8/8/8/R3K2R w KQkq -\r\nwhite\r\n" + tail);
        QCOMPARE(craftyRcText("12", "K6k", false), head + "setboard K6k b - -\r\nblack\r\n" + tail);
        QStringList castlings;
        for (const char* board :
             {"4k2r/8/8/8/8/8/8/R3K3", "r3k3/8/8/8/8/8/8/4K2R", "r2k3r/8/8/8/8/8/8/R2K3R",
              "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"})
            castlings << castlingField(QLatin1String(board));
        QCOMPARE(castlings, QStringList({"Qk", "Kq", "-", "KQkq"}));
    }

    void logNumbers() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        QCOMPARE(firstFreeLogExtension(folder), QString("001"));
        writeFile(folder + "log.001");
        writeFile(folder + "log.003");
        QCOMPARE(firstFreeLogExtension(folder), QString("002")); // the first gap
        // The run's log is a filled one from the first number on.
        writeFile(folder + "log.004", QByteArray());
        QCOMPARE(runLogExtension(folder, "002"), QString("003"));
        QVERIFY(runLogExtension(folder, "004").isEmpty());
        // Of two logs written in the same moment, the higher number.
        writeFile(folder + "log.005", "x");
        QFile log(folder + "log.005"), older(folder + "log.003");
        QVERIFY(log.open(QIODevice::ReadWrite) && older.open(QIODevice::ReadWrite));
        const QDateTime moment = QDateTime::currentDateTime().addSecs(60);
        QVERIFY(log.setFileTime(moment, QFileDevice::FileModificationTime) &&
                older.setFileTime(moment, QFileDevice::FileModificationTime));
        QCOMPARE(runLogExtension(folder, "002"), QString("005"));
        log.remove();
        for (int i = 2; i <= 999; ++i)
            writeFile(folder + QString("log.%1").arg(i, 3, 10, QLatin1Char('0')), QByteArray());
        QCOMPARE(firstFreeLogExtension(folder), QString("000")); // all taken
    }

    void logRowsAndEnglishLetters() {
        // Any run of line ends is one; what follows the last one is no row.
        QCOMPARE(logRows("a\r\nb\n\n\r\rc\rd"), QStringList({"a", "b", "c"}));
        // The reader's limits of rows and of bytes.
        QCOMPARE(logRows(QByteArray("x\n").repeated(150'000)).size(), 100'000);
        QByteArray text = "one\r\ntwo\n\nthree\rfour";
        QBuffer buffer(&text);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(readLines(buffer, true, 100, 7), QStringList({"one", "tw"}));
        QCOMPARE(craftyFen("sK6/8/3B4/8 w", "bBsSlLtTdDkK", "pPnNbBrRqQkK"),
                 QString("nK6/8/3P4/8 w"));
        // A letter beyond the English notation is dropped; a digit in the list is a piece.
        QCOMPARE(craftyFen("aZ1/2", "aZ1", "pP"), QString("pP/2"));
        // Fairy pieces leave empty squares that join the empty run beside them.
        QCOMPARE(craftyFen("kG1K/1Y1h/K1k w", "kKGYh", "kKGYh"), QString("k2K/4/K1k w"));
    }

    // The engine starts once the command file is there; its log, perhaps under a later number
    // than the first free one, is read after it ends; then log, game and command files go.
    void stagesOfARun() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        CraftyRun run;
        QStringList rows;
        int starts = 0;
        const auto start = [&starts] { return ++starts > 1; }; // fails once, then works
        // The stage after one step, and whether rows came.
        auto step = [&](bool engineRunning) {
            const bool got = run.advance(engineRunning, start, rows) == CraftyRun::Step::Rows;
            return run.stage() + (got ? 10 : 0);
        };
        run.begin(folder, firstFreeLogExtension(folder));
        QCOMPARE(step(false), 0);
        QCOMPARE(starts, 0); // no command file yet
        writeFile(folder + kCraftyRc, craftyRcText("8", "8", true));
        QCOMPARE(step(false), 0);
        QCOMPARE(step(false), 1); // a failed start is tried again
        writeFile(folder + "game.001");
        writeFile(folder + "log.002", "depth 8\r\n 1.  Kb2\r\ntrailing");
        writeFile(folder + "game.002");
        QCOMPARE(step(true), 1); // not while the engine runs
        QCOMPARE(step(false), 2);
        QCOMPARE(step(false), 13);
        QCOMPARE(rows, QStringList({"depth 8", " 1.  Kb2"}));
        QCOMPARE(step(false), 4);
        QCOMPARE(run.advance(false, start, rows), CraftyRun::Step::Finished);
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList());
        // Each run's clock starts from nought.
        QCOMPARE(run.clock(100).value_or("-"), "-"); // finished: no clock
        run.begin(folder, "001");
        run.clock(100);
        QCOMPARE(run.clock(165).value_or("-"), elapsedText(65));
        run.begin(folder, "001");
        QCOMPARE(run.clock(300).value_or("-"), "-"); // the same second as a fresh start
        QCOMPARE(run.clock(302).value_or("-"), elapsedText(2));
    }
};

QTEST_APPLESS_MAIN(TstCrafty)
#include "tst_crafty.moc"
