#include "core/startup.h"
#include "core/style_list.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

namespace {

// Two styles: a sheet named twice, a border, a sheet by path that is no
// file of the library, and a bitmap that no style names.
const QByteArray kShippedSettings = "RecentStyle = Big\r\n\r\n"
                                    "BeginStyle = Big\r\n  PiecesFile = big.bmp\r\n"
                                    "  BorderFile = frame.bmp\r\nEndStyle\r\n\r\n"
                                    "BeginStyle = Small\r\n  PiecesFile = /elsewhere/small.bmp\r\n"
                                    "  PiecesFile = big.bmp\r\nEndStyle\r\n";

} // namespace

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
        // An executable's folder that can't be written gives way to the
        // user's data folder, which is made.
        QTemporaryDir data;
        const QString mine = data.path() + QStringLiteral("/marlith");
        QCOMPARE(programFolderFrom(QString(), QStringLiteral("/no/such/bin"), mine), mine + u'/');
        QVERIFY(QDir(mine).exists());
    }

    void shippedFolder() {
        // The installed share folder first, else the executable's own.
        QTemporaryDir dir;
        const QString bin = dir.path() + QStringLiteral("/bin");
        const QString share = dir.path() + QStringLiteral("/share/marlith/");
        QVERIFY(QDir().mkpath(bin) && QDir().mkpath(share));
        QCOMPARE(shippedDataFolder(bin), QString());
        writeFile(bin + QStringLiteral("/Marlith.ini"), "");
        QCOMPARE(shippedDataFolder(bin), bin + QLatin1Char('/'));
        writeFile(share + QStringLiteral("Marlith.ini"), "");
        QCOMPARE(shippedDataFolder(bin), share);
    }

    void installShipped_data() {
        QTest::addColumn<QStringList>("present"); // in the program folder before
        QTest::addColumn<bool>("libraryThere");
        QTest::addColumn<QStringList>("libraryLacks");
        QTest::addColumn<bool>("installed");
        QTest::addColumn<QStringList>("fromLibrary"); // in the program folder after

        const QStringList all{"Marlith.ini", "big.bmp", "frame.bmp"};
        QTest::newRow("first start") << QStringList() << true << QStringList() << true << all;
        QTest::newRow("settings there")
            << QStringList{"Marlith.ini"} << true << QStringList() << false << QStringList();
        QTest::newRow("sheet there") << QStringList{"big.bmp"} << true << QStringList() << true
                                     << QStringList{"Marlith.ini", "frame.bmp"};
        QTest::newRow("no library")
            << QStringList() << false << QStringList() << false << QStringList();
        // The sheet copied before the missing border goes again.
        QTest::newRow("library lacks a border")
            << QStringList() << true << QStringList{"frame.bmp"} << false << QStringList();
    }

    void installShipped() {
        QFETCH(QStringList, present);
        QFETCH(bool, libraryThere);
        QFETCH(QStringList, libraryLacks);
        QFETCH(bool, installed);
        QFETCH(QStringList, fromLibrary);

        QTemporaryDir programDir;
        QTemporaryDir libraryDir;
        const QString program = programDir.path() + QLatin1Char('/');
        const QString library = libraryDir.path() + QLatin1Char('/');
        writeFile(library + QStringLiteral("Marlith.ini"), kShippedSettings);
        for (const QString& name : QStringList{"big.bmp", "frame.bmp", "unnamed.bmp"})
            if (!libraryLacks.contains(name)) writeFile(library + name, "library " + name.toUtf8());
        for (const QString& name : present)
            writeFile(program + name, "mine");

        const QString shipped = libraryThere ? library : library + QStringLiteral("gone/");
        QCOMPARE(installShippedSettings(program, shipped), installed);
        for (const QString& name : present)
            QCOMPARE(readFile(program + name), QByteArray("mine"));
        for (const QString& name : fromLibrary)
            QCOMPARE(readFile(program + name), readFile(library + name));
        QStringList expected = present + fromLibrary;
        expected.sort();
        QCOMPARE(QDir(program).entryList(QDir::Files, QDir::Name), expected);
    }

    void pathsFromTheShell() {
        QCOMPARE(absoluteArguments({"b.pgn", "../x/c.fen", "/abs/d.epd", " e f.pbm ", ""},
                                   QStringLiteral("/home/u/books")),
                 QStringList({"/home/u/books/b.pgn", "/home/u/x/c.fen", "/abs/d.epd",
                              "/home/u/books/e f.pbm", ""}));
    }

    // A bare name is taken whole, blanks and quotes inside included; the
    // split of several is tst_main_window's.
    void commandLine() {
        const CommandLine one = splitCommandLine({QStringLiteral("  my \"best\" book.pgn ")});
        QCOMPARE(one.bookFile, QStringLiteral("my \"best\" book.pgn"));
        QVERIFY(one.rest.isEmpty());
    }

    void styleListOrder() {
        // Upper-case order; names equal but for case keep the order they came in.
        QCOMPARE(sortStyleNames({"beta", "Alpha", "ALPHA", "_x", "Zeta", "alpha", "a1"}),
                 QStringList({"a1", "Alpha", "ALPHA", "alpha", "beta", "Zeta", "_x"}));
    }

    // A copy removes the files of its own seed at its end; at its start,
    // those of copies that no longer run and those without a seed.
    void temporaryFilesOfEachCopy() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        const QStringList mine{"F123456.tmp", "f123456o.TMP", "F123456i.tmp"};
        const QStringList orphans{"F654321.tmp", "f1.tmp", "FOO.TMP", "F0000000.tmp"};
        const QStringList others{"F111111.tmp", "keep.tmp", "F123456.txt", "xF123456.tmp"};
        for (const QString& name : mine + orphans + others)
            writeFile(folder + name);
        QVERIFY(QDir(folder).mkdir(QStringLiteral("f9.tmp"))); // a folder is no file
        QCOMPARE(deleteTempFiles(folder, QStringLiteral("F123456")), int(mine.size()));
        const auto held = [](const QString& seed) { return seed == u"F111111"; };
        QCOMPARE(deleteOrphanedTempFiles(folder, held), int(orphans.size()));
        for (const QString& name : others)
            QVERIFY2(QFile::exists(folder + name), qPrintable(name));
        QCOMPARE(deleteTempFiles(QStringLiteral("/no/such/folder/"), QStringLiteral("F1")), 0);

        // A seed that a copy holds is passed over, and free again when it ends.
        QString seed = QStringLiteral("F999999");
        const auto first = takeTempSeed(folder, seed);
        QVERIFY(first && seedHeld(folder, QStringLiteral("F999999")));
        QString next = QStringLiteral("F999999");
        auto second = takeTempSeed(folder, next);
        QCOMPARE(next, QStringLiteral("F000000"));
        second.reset();
        QVERIFY(!seedHeld(folder, next));
    }
};

QTEST_GUILESS_MAIN(TstStartup)
#include "tst_startup.moc"
