#include "engines/crafty.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

void Write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

class TstCrafty : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void commandFileForEitherSide() {
        const QByteArray common = "log off\r\nponder off\r\nsd 12\r\n";
        const QByteArray tail = "log on\r\nanalyze\r\nexit\r\nquit\r\nexit\r\n";
        // The side comes from the buttons alone, even behind a full FEN.
        QCOMPARE(CraftyRcText(QStringLiteral("12"), QStringLiteral("8/8/8/8/8/8/8/K6k b"), true),
                 common + "setboard 8/8/8/8/8/8/8/K6k b w - -\r\nwhite\r\n" + tail);
        QCOMPARE(CraftyRcText(QStringLiteral("12"), QStringLiteral("8/8/8/8/8/8/8/K6k"), false),
                 common + "setboard 8/8/8/8/8/8/8/K6k b - -\r\nblack\r\n" + tail);
        QVERIFY(
            CraftyRcText(QString(), QString(), true).contains("\r\nsd \r\nsetboard  w - -\r\n"));
    }

    void firstFreeLogNumber() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        QCOMPARE(FirstFreeLogExt(folder), QStringLiteral("001"));
        Write(folder + QStringLiteral("log.001"), "x");
        Write(folder + QStringLiteral("log.003"), "x");
        QCOMPARE(FirstFreeLogExt(folder), QStringLiteral("002"));
        Write(folder + QStringLiteral("log.002"), "x");
        QCOMPARE(FirstFreeLogExt(folder), QStringLiteral("004"));
        for (int i = 4; i <= 999; ++i)
            Write(folder + QStringLiteral("log.%1").arg(i, 3, 10, QLatin1Char('0')), QByteArray());
        QCOMPARE(FirstFreeLogExt(folder), QStringLiteral("000"));
    }

    void logRows() {
        QCOMPARE(LogRows("a\r\nb\n\n\r\rc\rd"),
                 QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
        QVERIFY(LogRows("no line end").isEmpty());
        QVERIFY(LogRows("\r\n\r\n").isEmpty());
        const QByteArray longRow(300, 'w');
        QCOMPARE(LogRows(longRow + "\n"), QStringList({QString(300, u'w')}));
        QCOMPARE(LogRows(QByteArray("\0\xff\n", 3)).size(), 1);
    }

    void styleLettersBecomeEnglish() {
        const QString german = QStringLiteral("bBsSlLtTdDkK");
        const QString english = QStringLiteral("pPnNbBrRqQkK");
        QCOMPARE(CraftyFen(QStringLiteral("sK6/8/3B4/8 w"), german, english),
                 QStringLiteral("nK6/8/3P4/8 w"));
        // A letter beyond the English notation is dropped; a digit in the
        // style's list is a piece like any other.
        QCOMPARE(CraftyFen(QStringLiteral("aZ1/2"), QStringLiteral("aZ1"), QStringLiteral("pP")),
                 QStringLiteral("pP/2"));
    }

    // The engine starts once the command file is there; its log, perhaps
    // under a later number than the first free one, is read after it ends;
    // then log and game files go.
    void stagesOfARun() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        CraftyRun run;
        QStringList rows;
        int starts = 0;
        bool startWorks = false;
        const auto start = [&] {
            ++starts;
            return startWorks;
        };
        run.begin(folder, FirstFreeLogExt(folder));
        QCOMPARE(run.logExt(), QStringLiteral("001"));
        run.advance(false, start, rows);
        QCOMPARE(starts, 0); // no command file yet
        Write(folder + QLatin1String(kCraftyRc),
              CraftyRcText(QStringLiteral("8"), QStringLiteral("8"), true));
        run.advance(false, start, rows);
        run.advance(false, start, rows);
        QCOMPARE(starts, 2); // a failed start is tried again
        QCOMPARE(run.stage(), int16_t(0));
        startWorks = true;
        run.advance(false, start, rows);
        QCOMPARE(run.stage(), int16_t(1));
        Write(folder + QStringLiteral("game.001"), "x");
        Write(folder + QStringLiteral("log.002"), "depth 8\r\n 1.  Kb2\r\ntrailing");
        Write(folder + QStringLiteral("game.002"), "x");
        run.advance(true, start, rows);
        QCOMPARE(run.stage(), int16_t(1));
        run.advance(false, start, rows);
        QCOMPARE(run.stage(), int16_t(2));
        QCOMPARE(run.logExt(), QStringLiteral("002"));
        QCOMPARE(run.advance(false, start, rows), CraftyRun::Step::Rows);
        QCOMPARE(rows, QStringList({QStringLiteral("depth 8"), QStringLiteral(" 1.  Kb2")}));
        QCOMPARE(run.advance(false, start, rows), CraftyRun::Step::Waiting);
        QCOMPARE(run.stage(), int16_t(4));
        QCOMPARE(run.advance(false, start, rows), CraftyRun::Step::Finished);
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList({QLatin1String(kCraftyRc)}));
        QCOMPARE(starts, 3);
    }

    void runLogIsTheNewestFromTheFirstNumber() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        QVERIFY(RunLogExt(folder, QStringLiteral("002")).isEmpty());
        Write(folder + QStringLiteral("log.001"), "old");
        Write(folder + QStringLiteral("log.004"), QByteArray());
        Write(folder + QStringLiteral("log.0031"), "odd");
        QVERIFY(RunLogExt(folder, QStringLiteral("002")).isEmpty());
        Write(folder + QStringLiteral("log.003"), "older");
        {
            QFile older(folder + QStringLiteral("log.003"));
            QVERIFY(older.open(QIODevice::ReadWrite));
            QVERIFY(older.setFileTime(QDateTime::currentDateTime().addSecs(-60),
                                      QFileDevice::FileModificationTime));
        }
        Write(folder + QStringLiteral("log.002"), "new");
        QCOMPARE(RunLogExt(folder, QStringLiteral("002")), QStringLiteral("002"));
    }

    void elapsed() {
        QCOMPARE(ElapsedText(0), QStringLiteral("00:00"));
        QCOMPARE(ElapsedText(61), QStringLiteral("01:01"));
        QCOMPARE(ElapsedText(6001), QStringLiteral("00:01"));
    }
};

QTEST_APPLESS_MAIN(TstCrafty)
#include "tst_crafty.moc"
