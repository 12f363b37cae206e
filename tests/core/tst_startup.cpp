#include "core/startup.h"
#include "core/style_list.h"
#include "core/window_place.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QLockFile>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

class TstStartup : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // The program folder that the files beside bin/ and MARLITH_HOME give.
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
        const TempFolder dir;
        const QString root = dir.path();
        QVERIFY(QDir().mkpath(root + "bin") && QDir().mkpath(root + "share/marlith"));
        for (const QString& file : files)
            writeFile(root + file);
        QCOMPARE(programFolderFrom(home ? root + "home" : QString(), root + "bin", root + "data"),
                 root + expected + u'/');
        QCOMPARE(QDir(root + "data").exists(), expected == u"data"); // made when taken
        // The library ships from the installed share folder, else from bin.
        QCOMPARE(shippedDataFolder(root + "bin"),
                 files.isEmpty() ? QString() : root + "share/marlith/");
        writeFile(root + "bin/Marlith.ini", "");
        QCOMPARE(shippedDataFolder(root + "bin"),
                 root + (files.isEmpty() ? "bin/" : "share/marlith/"));
    }

    // A sheet named twice, a border, a path outside; a bitmap no style names.
    void installShipped_data() {
        QTest::addColumn<QStringList>("present"); // in the program folder before
        QTest::addColumn<QStringList>("libraryLacks");
        QTest::addColumn<bool>("installed");
        QTest::addColumn<QStringList>("fromLibrary"); // in the program folder after
        const QStringList none;
        QTest::newRow("first start")
            << none << none << true << QStringList{"Marlith.ini", "big.bmp", "frame.bmp"};
        QTest::newRow("settings there") << QStringList{"Marlith.ini"} << none << false << none;
        QTest::newRow("sheet there")
            << QStringList{"big.bmp"} << none << true << QStringList{"Marlith.ini", "frame.bmp"};
        // The sheet copied before the missing border goes again.
        QTest::newRow("library lacks a border")
            << none << QStringList{"frame.bmp"} << false << none;
    }
    void installShipped() {
        QFETCH(QStringList, present);
        QFETCH(QStringList, libraryLacks);
        QFETCH(QStringList, fromLibrary);
        const TempFolder program;
        const TempFolder library;
        const QByteArray settings = crlf("BeginStyle = Big\n  PiecesFile = big.bmp\n  BorderFile = "
                                         "frame.bmp\nBeginStyle = Small\n  PiecesFile = "
                                         "/elsewhere/small.bmp\n  PiecesFile = big.bmp\n");
        for (const char* name : {"Marlith.ini", "big.bmp", "frame.bmp", "unnamed.bmp"})
            if (!libraryLacks.contains(QLatin1String(name)))
                writeFile(library.path() + name, name[0] == 'M' ? settings : QByteArray(name));
        for (const QString& name : present)
            writeFile(program.path() + name, "mine");
        QTEST(installShippedSettings(program.path(), library.path()), "installed");
        for (const QString& name : present)
            QCOMPARE(readFile(program.path() + name), QByteArray("mine"));
        for (const QString& name : fromLibrary)
            QCOMPARE(readFile(program.path() + name), readFile(library.path() + name));
        QStringList expected = present + fromLibrary;
        expected.sort();
        QCOMPARE(QDir(program.path()).entryList(QDir::Files, QDir::Name), expected);
    }

    // Where a window goes on a screen of 1000 x 700, beside the main window.
    void windowPlace_data() {
        QTest::addColumn<QRect>("mainFrame");
        QTest::addColumn<QRect>("diagram");
        QTest::addColumn<QSize>("window");
        QTest::addColumn<QPoint>("expected");
        const QRect main(0, 0, 500, 400), board(200, 50, 250, 250), screen(0, 0, 1000, 700);
        QTest::newRow("room on the right") << main << board << QSize(300, 200) << QPoint(500, 0);
        QTest::newRow("larger than the screen")
            << main << board << QSize(1200, 900) << QPoint(0, 0);
        QTest::newRow("only on the left") << main.translated(400, 100) << board.translated(400, 100)
                                          << QSize(300, 200) << QPoint(100, 100);
        QTest::newRow("only above")
            << screen.adjusted(0, 300, 0, 0) << board << QSize(300, 200) << QPoint(0, 100);
        // A maximised main window: its left part, beside the diagram.
        QTest::newRow("no room, diagram kept free")
            << screen << QRect(300, 50, 600, 600) << QSize(250, 300) << QPoint(0, 0);
        QTest::newRow("no room anywhere, least hidden")
            << screen << QRect(100, 100, 850, 500) << QSize(400, 300) << QPoint(0, 0);
    }
    void windowPlace() {
        QFETCH(QRect, mainFrame);
        QFETCH(QRect, diagram);
        QFETCH(QSize, window);
        QTEST(placeBeside(QRect(0, 0, 1000, 700), mainFrame, diagram, window), "expected");
    }

    // Paths made absolute; a bare name taken whole; style names in upper-case order.
    void namesAndPaths() {
        QCOMPARE(absoluteArguments({"b.pgn", "../x/c.fen", "/abs/d.epd", " e f.pbm ", "", ":c.pgn"},
                                   QStringLiteral("/home/u/books")),
                 QStringList({"/home/u/books/b.pgn", "/home/u/x/c.fen", "/abs/d.epd",
                              "/home/u/books/e f.pbm", "", "/home/u/books/:c.pgn"}));
        const CommandLine one = splitCommandLine({QStringLiteral("  my \"best\" book.pgn ")});
        QVERIFY(one.bookFile == u"my \"best\" book.pgn" && one.rest.isEmpty());
        QCOMPARE(sortStyleNames({"beta", "Alpha", "ALPHA", "_x", "Zeta", "alpha", "a1"}),
                 QStringList({"a1", "Alpha", "ALPHA", "alpha", "beta", "Zeta", "_x"}));
    }

    // A copy removes its own files at its end, and orphans at its start.
    void temporaryFilesOfEachCopy() {
        const TempFolder dir;
        const QString folder = dir.path();
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

        // Hundredths of a second, the last six digits, zeros in front.
        QCOMPARE(QStringList({makeTempSeed(59), makeTempSeed(12345670)}),
                 QStringList({"F000005", "F234567"}));
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
