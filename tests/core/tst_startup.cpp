#include "core/startup.h"
#include "core/style_list.h"
#include "core/window_place.h"
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

    // The files made in a folder with bin/ and share/marlith/, MARLITH_HOME
    // set or not, and the program folder that comes of it.
    void programFolder_data() {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<bool>("home");
        QTest::addColumn<QString>("expected");
        const QString shipped = QStringLiteral("share/marlith/Marlith.ini");
        QTest::newRow("home wins") << QStringList{shipped} << true << "home";
        QTest::newRow("installed, bin writable") << QStringList{shipped} << false << "data";
        QTest::newRow("build tree") << QStringList{shipped, "CMakeCache.txt"} << false << "bin";
        QTest::newRow("portable copy") << QStringList() << false << "bin";
    }

    void programFolder() {
        QFETCH(QStringList, files);
        QFETCH(bool, home);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        const QString root = dir.path() + u'/';
        QVERIFY(QDir().mkpath(root + "bin") && QDir().mkpath(root + "share/marlith"));
        for (const QString& file : files)
            writeFile(root + file);
        // Always with a slash behind; the data folder is made.
        QCOMPARE(programFolderFrom(home ? root + "home" : QString(), root + "bin", root + "data"),
                 root + expected + u'/');
        QCOMPARE(QDir(root + "data").exists(), expected == QLatin1String("data"));
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

    // A screen of 1000 x 700.
    void windowPlace_data() {
        QTest::addColumn<QRect>("mainFrame");
        QTest::addColumn<QRect>("diagram");
        QTest::addColumn<QSize>("window");
        QTest::addColumn<QPoint>("expected");
        const QRect screen(0, 0, 1000, 700);
        QTest::newRow("room on the right") << QRect(0, 0, 500, 400) << QRect(200, 50, 250, 250)
                                           << QSize(300, 200) << QPoint(500, 0);
        QTest::newRow("only on the left") << QRect(400, 100, 500, 400) << QRect(600, 150, 250, 250)
                                          << QSize(300, 200) << QPoint(100, 100);
        // A maximised main window: its left part, beside the diagram.
        QTest::newRow("no room, diagram kept free")
            << screen << QRect(300, 50, 600, 600) << QSize(250, 300) << QPoint(0, 0);
        QTest::newRow("no room anywhere, least hidden")
            << screen << QRect(100, 100, 850, 500) << QSize(400, 300) << QPoint(0, 0);
        QTest::newRow("larger than the screen") << QRect(0, 0, 500, 400) << QRect(200, 50, 250, 250)
                                                << QSize(1200, 900) << QPoint(0, 0);
    }

    void windowPlace() {
        QFETCH(QRect, mainFrame);
        QFETCH(QRect, diagram);
        QFETCH(QSize, window);
        QFETCH(QPoint, expected);
        QCOMPARE(placeBeside(QRect(0, 0, 1000, 700), mainFrame, diagram, window), expected);
    }

    void pathsFromTheShell() {
        // A name that starts with ":" is a file too, not one of Qt's resources.
        QCOMPARE(absoluteArguments({"b.pgn", "../x/c.fen", "/abs/d.epd", " e f.pbm ", "", ":c.pgn"},
                                   QStringLiteral("/home/u/books")),
                 QStringList({"/home/u/books/b.pgn", "/home/u/x/c.fen", "/abs/d.epd",
                              "/home/u/books/e f.pbm", "", "/home/u/books/:c.pgn"}));
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
