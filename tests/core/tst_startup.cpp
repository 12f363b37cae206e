#include "core/startup.h"
#include "core/style_list.h"
#include "core/window_place.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QFile>
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

    void programFolder_data() {
        QTest::addColumn<bool>("home");      // MARLITH_HOME set
        QTest::addColumn<bool>("shipped");   // ../share/marlith/Marlith.ini
        QTest::addColumn<bool>("buildTree"); // ../CMakeCache.txt
        QTest::addColumn<QString>("expected");
        QTest::newRow("home wins") << true << true << false << "home";
        QTest::newRow("installed copy, bin writable") << false << true << false << "data";
        QTest::newRow("build tree") << false << true << true << "bin";
        QTest::newRow("portable copy") << false << false << false << "bin";
    }

    void programFolder() {
        QFETCH(bool, home);
        QFETCH(bool, shipped);
        QFETCH(bool, buildTree);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        const QString root = dir.path() + u'/';
        QVERIFY(QDir().mkpath(root + QStringLiteral("bin")) &&
                QDir().mkpath(root + QStringLiteral("share/marlith")));
        if (shipped) writeFile(root + QStringLiteral("share/marlith/Marlith.ini"), "");
        if (buildTree) writeFile(root + QStringLiteral("CMakeCache.txt"), "");
        const QString folder =
            programFolderFrom(home ? root + QStringLiteral("home") : QString(),
                              root + QStringLiteral("bin"), root + QStringLiteral("data"));
        // Always with a slash behind; the data folder is made.
        QCOMPARE(folder, root + expected + u'/');
        QCOMPARE(QDir(root + QStringLiteral("data")).exists(), expected == QLatin1String("data"));
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

    // Screen 1000 x 700 at (0, 0) unless told.
    void windowPlace_data() {
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<QRect>("mainFrame");
        QTest::addColumn<QRect>("diagram");
        QTest::addColumn<QSize>("window");
        QTest::addColumn<QPoint>("expected");
        const QRect screen(0, 0, 1000, 700);
        QTest::newRow("room on the right")
            << screen << QRect(0, 0, 500, 400) << QRect(200, 50, 250, 250) << QSize(300, 200)
            << QPoint(500, 0);
        QTest::newRow("only on the left")
            << screen << QRect(400, 100, 500, 400) << QRect(600, 150, 250, 250) << QSize(300, 200)
            << QPoint(100, 100);
        QTest::newRow("only below") << screen << QRect(100, 0, 800, 400) << QRect(400, 50, 300, 300)
                                    << QSize(300, 200) << QPoint(100, 400);
        QTest::newRow("only above")
            << screen << QRect(100, 450, 800, 250) << QRect(400, 460, 200, 200) << QSize(300, 300)
            << QPoint(100, 150);
        // A maximised main window: the left part, beside the diagram.
        QTest::newRow("no room, diagram kept free")
            << screen << screen << QRect(300, 50, 600, 600) << QSize(250, 300) << QPoint(0, 0);
        QTest::newRow("no room anywhere, least hidden")
            << screen << screen << QRect(100, 100, 850, 500) << QSize(400, 300) << QPoint(0, 0);
        QTest::newRow("larger than the screen")
            << screen << QRect(0, 0, 500, 400) << QRect(200, 50, 250, 250) << QSize(1200, 900)
            << QPoint(0, 0);
        QTest::newRow("second screen")
            << QRect(1000, 0, 800, 600) << QRect(1500, 0, 250, 300) << QRect(1600, 40, 120, 120)
            << QSize(200, 200) << QPoint(1300, 0);
    }

    void windowPlace() {
        QFETCH(QRect, screen);
        QFETCH(QRect, mainFrame);
        QFETCH(QRect, diagram);
        QFETCH(QSize, window);
        QFETCH(QPoint, expected);
        QCOMPARE(placeBeside(screen, mainFrame, diagram, window), expected);
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

    void temporaryFilesInEitherCase() {
        QTemporaryDir dir;
        const QStringList doomed{"F123456.tmp", "f1.tmp", "FOO.TMP", "F0000000.tmp", "F.tmp"};
        const QStringList kept{"keep.tmp", "F1.txt", "Marlith.lock", "xf1.tmp", "F1.tmpx"};
        for (const QString& name : doomed + kept)
            writeFile(QDir(dir.path()).filePath(name));
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("f9.tmp"))); // a folder is no file
        QCOMPARE(deleteTempFiles(dir.path() + QLatin1Char('/')), int(doomed.size()));
        for (const QString& name : kept)
            QVERIFY2(QFile::exists(QDir(dir.path()).filePath(name)), qPrintable(name));
        QCOMPARE(deleteTempFiles(QStringLiteral("/no/such/folder/")), 0);
    }
};

QTEST_GUILESS_MAIN(TstStartup)
#include "tst_startup.moc"
