#include "core/startup.h"
#include "core/style_list.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

class TstStartup : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void tempSeed() {
        // Hundredths of a second, the last six digits, zeros in front.
        QCOMPARE(makeTempSeed(59), QStringLiteral("F000005"));
        QCOMPARE(makeTempSeed(12345670), QStringLiteral("F234567"));
    }

    void programFolder() {
        // The home folder, else the program's, always with a slash behind.
        QCOMPARE(programFolderFrom(QStringLiteral("/opt/m"), QStringLiteral("/usr/bin")),
                 QStringLiteral("/opt/m/"));
        QCOMPARE(programFolderFrom(QString(), QStringLiteral("/usr/bin/")),
                 QStringLiteral("/usr/bin/"));
    }

    void commandLine() {
        // A bare name is taken whole, blanks and quotes inside included.
        const CommandLine one = splitCommandLine({QStringLiteral("  my \"best\" book.pgn ")});
        QCOMPARE(one.bookFile, QStringLiteral("my \"best\" book.pgn"));
        QVERIFY(one.rest.isEmpty());
        // The first file is this instance's, the rest go on whole to the next.
        const CommandLine three = splitCommandLine(
            {QStringLiteral("/b/a.pgn"), QStringLiteral("/b/c d.fen"), QStringLiteral("e.pbm")});
        QCOMPARE(three.bookFile, QStringLiteral("/b/a.pgn"));
        QCOMPARE(three.rest, QStringList({QStringLiteral("/b/c d.fen"), QStringLiteral("e.pbm")}));
    }

    void styleListOrder() {
        // Upper-case order; names equal but for case keep the order they came in.
        QCOMPARE(sortStyleNames({"beta", "Alpha", "ALPHA", "_x", "Zeta", "alpha", "a1"}),
                 QStringList({"a1", "Alpha", "ALPHA", "alpha", "beta", "Zeta", "_x"}));
    }

    void temporaryFilesInEitherCase() {
        QTemporaryDir dir;
        const QStringList doomed{"F123456.tmp", "f1.tmp", "FOO.TMP", "F0000000.tmp", "F.tmp"};
        const QStringList kept{"keep.tmp", "F1.txt", "Marlith.lock", "xf1.tmp", "F1.tmpx"};
        for (const QString& name : doomed + kept) {
            QFile file(QDir(dir.path()).filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("f9.tmp"))); // a folder is no file
        QCOMPARE(deleteTempFiles(dir.path() + QLatin1Char('/')), int(doomed.size()));
        for (const QString& name : kept)
            QVERIFY2(QFile::exists(QDir(dir.path()).filePath(name)), qPrintable(name));
        QCOMPARE(deleteTempFiles(QStringLiteral("/no/such/folder/")), 0);
    }
};

QTEST_GUILESS_MAIN(TstStartup)
#include "tst_startup.moc"
