// The program as a shell starts and ends it: a relative book path, and
// SIGTERM while the book is open, which must run the whole stop sequence.
#include "support/file_bytes.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TstSignals : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A book read in full, and one still being read when the signal comes.
    void terminatedLikeClosed_data() {
        QTest::addColumn<int>("games");
        QTest::newRow("book open") << 1;
        QTest::newRow("book being read") << 400'000;
    }
    void terminatedLikeClosed() {
        QFETCH(int, games);
        QTemporaryDir home;
        QTemporaryDir books;
        const QString book = books.path() + QStringLiteral("/b.pgn");
        marlith::testing::writeFile(
            book, QByteArray("[Event \"x\"]\n\n1. e4 e5 2. Nf3 *\n\n").repeated(games));

        QProcess program;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("MARLITH_HOME"), home.path());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        program.setProcessEnvironment(env);
        program.setWorkingDirectory(books.path());
        program.start(QStringLiteral(MARLITH_EXECUTABLE), {QStringLiteral("b.pgn")});
        QVERIFY(program.waitForStarted(10000));
        // The open book's work file shows that the start is over.
        const auto workFiles = [&] {
            return QDir(home.path()).entryList({QStringLiteral("F*.tmp")}, QDir::Files);
        };
        QTRY_VERIFY_WITH_TIMEOUT(!workFiles().isEmpty(), 20000);
        program.terminate();
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);

        QVERIFY(marlith::testing::readFile(home.path() + QStringLiteral("/Marlith.ini"))
                    .contains("RecentFile = " + book.toUtf8()));
        QVERIFY(workFiles().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstSignals)
#include "tst_signals.moc"
