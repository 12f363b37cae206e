#include "core/startup.h"
#include "core/style_list.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void put(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), bytes.size());
}

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
        put(bin + QStringLiteral("/Marlith.ini"), "");
        QCOMPARE(shippedDataFolder(bin), bin + QLatin1Char('/'));
        put(share + QStringLiteral("Marlith.ini"), "");
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
        put(library + QStringLiteral("Marlith.ini"), kShippedSettings);
        for (const QString& name : QStringList{"big.bmp", "frame.bmp", "unnamed.bmp"})
            if (!libraryLacks.contains(name)) put(library + name, "library " + name.toUtf8());
        for (const QString& name : present)
            put(program + name, "mine");

        const QString shipped = libraryThere ? library : library + QStringLiteral("gone/");
        QCOMPARE(installShippedSettings(program, shipped), installed);
        for (const QString& name : present)
            QCOMPARE(contentOf(program + name), QByteArray("mine"));
        for (const QString& name : fromLibrary)
            QCOMPARE(contentOf(program + name), contentOf(library + name));
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
