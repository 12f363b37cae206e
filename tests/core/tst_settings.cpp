#include "core/settings.h"
#include "styles/style_block.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace marlith;

namespace {

// A temporary program folder.
struct Folder {
    QTemporaryDir dir;
    QString path() const { return dir.path() + QLatin1Char('/'); }
    QString ini() const { return path() + QStringLiteral("Marlith.ini"); }
    QString temp() const { return path() + QStringLiteral("F0000000.tmp"); }
    void put(const QByteArray& bytes) const {
        QFile file(ini());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    QByteArray get() const {
        QFile file(ini());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
};

// What the program keeps between two readings of the file.
struct Program {
    Style style;
    RecentList recent;
    QString engine;
    SettingsRead last;

    Program() { ResetStyle(style); }
    Program& read(const Folder& folder) {
        last = ReadSettings(folder.ini(), folder.path(), style, recent, engine);
        return *this;
    }
    bool write(const Folder& folder) const {
        return WriteSettings(folder.path(), recent, engine, style.StyleName);
    }
};

QByteArray Crlf(QByteArray text) {
    return text.replace("\n", "\r\n");
}

const QByteArray kLibrary = Crlf("RecentFile = /b/old.pgn\n"
                                 "RecentFile = /b/new.pgn\n"
                                 "RecentEngine = Crafty\n"
                                 "; my styles\n"
                                 "RecentStyle = beta\n"
                                 "\n"
                                 "BeginStyle = Alpha\n"
                                 "  SqrWidth = 20 \n"
                                 "EndStyle\n"
                                 "\n"
                                 "BeginStyle = Beta\n"
                                 "  PiecesFile = beta.gif\n"
                                 "  SqrWidth = 30 \n"
                                 "EndStyle\n");

} // namespace

class TstSettings : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void cutName_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("n");
        QTest::addColumn<QString>("shown");
        QTest::newRow("fits") << "/A/B/C/D.FEN" << 30 << "/A/B/C/D.FEN";
        QTest::newRow("cut at folders") << "/A/B/C/D.FEN" << 8 << "/.../C/D.FEN";
        QTest::newRow("no folder: last characters") << "ABCDEFGHIJ" << 5 << "ABC.../FGHIJ";
        QTest::newRow("exactly n") << "ABCDE" << 5 << "ABCDE";
        QTest::newRow("deep path")
            << "/home/user/books/problems/collection.pgn" << 15 << "/.../collection.pgn";
        QTest::newRow("long name after the folders")
            << "/books/averyveryverylongname.pgn" << 10 << "/.../ngname.pgn";
        QTest::newRow("relative path keeps its first three")
            << "books/a.pgn" << 5 << "boo.../a.pgn";
        QTest::newRow("empty") << "" << 15 << "";
        QTest::newRow("nothing wanted") << "/A/B" << 0 << "/.../";
        QTest::newRow("less than nothing") << "AB" << -3 << "AB.../";
    }
    void cutName() {
        QFETCH(QString, path);
        QFETCH(int, n);
        QFETCH(QString, shown);
        QCOMPARE(CutName(path, n), shown);
    }

    void recentList() {
        RecentList recent;
        for (const char* book : {"/b/1.pgn", "/b/2.pgn", "/b/3.pgn", "/b/4.pgn"})
            AddRecent(recent, QString::fromLatin1(book));
        QCOMPARE(recent, (RecentList{"/b/4.pgn", "/b/3.pgn", "/b/2.pgn", "/b/1.pgn"}));
        AddRecent(recent, QStringLiteral("/b/5.pgn")); // the oldest falls out
        QCOMPARE(recent, (RecentList{"/b/5.pgn", "/b/4.pgn", "/b/3.pgn", "/b/2.pgn"}));
        AddRecent(recent, QStringLiteral("/b/3.pgn")); // the fourth stays where it is
        QCOMPARE(recent, (RecentList{"/b/3.pgn", "/b/5.pgn", "/b/4.pgn", "/b/2.pgn"}));
        AddRecent(recent, QStringLiteral("/b/3.pgn"));
        QCOMPARE(recent, (RecentList{"/b/3.pgn", "/b/5.pgn", "/b/4.pgn", "/b/2.pgn"}));
        // Paths keep their case and are told apart by it.
        AddRecent(recent, QStringLiteral("/B/3.PGN"));
        QCOMPARE(recent, (RecentList{"/B/3.PGN", "/b/3.pgn", "/b/5.pgn", "/b/4.pgn"}));
    }

    void recentMenu() {
        const RecentList recent{"/home/user/books/problems/collection-of-the-year.pgn",
                                "/b/short.fen", "", ""};
        const auto items = RecentMenuItems(recent);
        QCOMPARE(items[0].caption, QStringLiteral("&1 /.../collection-of-the-year.pgn"));
        QCOMPARE(items[1].caption, QStringLiteral("&2 /b/short.fen"));
        QVERIFY(items[0].visible && items[1].visible);
        QVERIFY(!items[2].visible && !items[3].visible);
    }

    void firstReading() {
        Folder folder;
        folder.put(kLibrary);
        Program program;
        program.read(folder);
        QVERIFY(program.last.opened);
        QVERIFY(!program.last.stoppedAtFault);
        QCOMPARE(program.last.styleNames, QStringList({"Alpha", "Beta"}));
        QCOMPARE(program.style.StyleName, QStringLiteral("beta")); // as the RecentStyle line has it
        QCOMPARE(program.style.SqrWidth, int16_t(450));
        QCOMPARE(program.style.PiecesFile, folder.path() + QStringLiteral("beta.gif"));
        QCOMPARE(program.recent, (RecentList{"/b/new.pgn", "/b/old.pgn", "", ""}));
        QCOMPARE(program.engine, QStringLiteral("Crafty"));
    }

    void reReadingAfterAPick() {
        Folder folder;
        folder.put(kLibrary);
        Program program;
        program.read(folder);
        // Since the start: a book opened, another engine used, Alpha picked.
        AddRecent(program.recent, QStringLiteral("/b/since.pgn"));
        program.engine = QStringLiteral("Popeye");
        program.style.StyleName = QStringLiteral("ALPHA");
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("ALPHA"));
        QVERIFY(program.last.styleNames.isEmpty());
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QVERIFY(program.style.PiecesFile.isEmpty()); // Beta's sheet doesn't stay
        QCOMPARE(program.engine, QStringLiteral("Crafty"));
        QCOMPARE(program.recent, (RecentList{"/b/new.pgn", "/b/old.pgn", "/b/since.pgn", ""}));

        // A name that no block has: defaults, and the name stays.
        program.style.StyleName = QStringLiteral("Zeta");
        program.style.SqrWidth = 1;
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("Zeta"));
        QCOMPARE(program.style.SqrWidth, int16_t(225));
    }

    void firstBlockWithoutRecentStyle() {
        Folder folder;
        folder.put(
            Crlf("BeginStyle = Gamma\n SqrWidth = 10\nBeginStyle = Alpha\n SqrWidth = 20\n"));
        Program program;
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("Gamma"));
        QCOMPARE(program.style.SqrWidth, int16_t(150));
        QCOMPARE(program.last.styleNames, QStringList({"Gamma", "Alpha"}));
    }

    void styleLineBehindABlock() {
        Folder folder;
        folder.put(Crlf("BeginStyle = A\n  SqrWidth = 20\nEndStyle\n"
                        "BeginStyle = B\n  SqrHeight = 30\nEndStyle\n"
                        "Style = B\n"
                        "BeginStyle = C\n  XBase = 5\nEndStyle\n"));
        Program program;
        program.read(folder);
        // Block A was judged while it was the style; B had passed by then.
        QCOMPARE(program.style.StyleName, QStringLiteral("B"));
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QCOMPARE(program.style.SqrHeight, int16_t(225));
        QCOMPARE(program.style.XBase, int16_t(0));
        // Picked again by name, B is read whole and the Style line is passed over.
        program.read(folder);
        QCOMPARE(program.style.SqrWidth, int16_t(225));
        QCOMPARE(program.style.SqrHeight, int16_t(450));
    }

    void theFourKeysCountInsideBlocks() {
        Folder folder;
        folder.put(Crlf("BeginStyle = A\n"
                        "  SqrWidth = 20, RecentStyle = B, SqrHeight = 30\n"
                        "  RecentFile = /in/block.pgn\n"
                        "  RecentEngine = Popeye\n"
                        "EndStyle\n"
                        "  YBase = 2 ; behind EndStyle, still block A\n"
                        "BeginStyle = B\n"
                        "  XBase = 1\n"));
        Program program;
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("B"));
        // The flag of block A stays up until the next BeginStyle.
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QCOMPARE(program.style.SqrHeight, int16_t(450));
        QCOMPARE(program.style.YBase, int16_t(30));
        QCOMPARE(program.style.XBase, int16_t(15));
        QCOMPARE(program.recent[0], QStringLiteral("/in/block.pgn"));
        QCOMPARE(program.engine, QStringLiteral("Popeye"));
    }

    void blockNamesAndKeysInAnyCase() {
        Folder folder;
        folder.put(Crlf("recentstyle = ALPHA\n beginstyle = alpha\n  sqrwidth = 20\n"));
        Program program;
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("ALPHA"));
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QCOMPARE(program.last.styleNames, QStringList({"alpha"}));
    }

    void aValueThatDoesntFitEndsTheReading() {
        Folder folder;
        folder.put(Crlf("RecentFile = /b/before.pgn\n"
                        "RecentStyle = A\n"
                        "BeginStyle = Other\n  SqrWidth = 9999\n" // not the wanted block: no fault

                        "BeginStyle = A\n  SqrWidth = 20\n  SqrHeight = 2185\n  XBase = 5\n"
                        "RecentFile = /b/after.pgn\nRecentEngine = Crafty\n"
                        "BeginStyle = Z\n"));
        Program program;
        program.read(folder);
        QVERIFY(program.last.stoppedAtFault);
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QCOMPARE(program.style.SqrHeight, int16_t(225));
        QCOMPARE(program.style.XBase, int16_t(0));
        QCOMPARE(program.recent, (RecentList{"/b/before.pgn", "", "", ""}));
        QVERIFY(program.engine.isEmpty());
        QCOMPARE(program.last.styleNames, QStringList({"Other", "A"}));
    }

    void lineEnds_data() {
        QTest::addColumn<QByteArray>("lineEnd");
        QTest::newRow("CR LF") << QByteArray("\r\n");
        QTest::newRow("LF") << QByteArray("\n");
        QTest::newRow("CR") << QByteArray("\r");
    }
    void lineEnds() {
        QFETCH(QByteArray, lineEnd);
        Folder folder;
        QByteArray text = kLibrary;
        folder.put(text.replace("\r\n", lineEnd));
        Program program;
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("beta"));
        QCOMPARE(program.style.SqrWidth, int16_t(450));
        QCOMPARE(program.recent[0], QStringLiteral("/b/new.pgn"));
        QCOMPARE(program.last.styleNames.size(), 2);

        // The rewrite copies the lines with CR LF behind each.
        program.style.StyleName = QStringLiteral("Alpha");
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(), Crlf("RecentFile = /b/old.pgn\n"
                                    "RecentFile = /b/new.pgn\n"
                                    "RecentEngine = Crafty\n"
                                    "; my styles\n"
                                    "RecentStyle = Alpha\n"
                                    "\n"
                                    "BeginStyle = Alpha\n"
                                    "  SqrWidth = 20 \n"
                                    "EndStyle\n"
                                    "\n"
                                    "BeginStyle = Beta\n"
                                    "  PiecesFile = beta.gif\n"
                                    "  SqrWidth = 30 \n"
                                    "EndStyle\n"));
    }

    void filesThatHoldNothingUseful() {
        Folder folder;
        Program program;
        program.engine = QStringLiteral("Popeye");
        program.style.SqrWidth = 1;
        program.read(folder); // missing
        QVERIFY(!program.last.opened);
        QVERIFY(program.engine.isEmpty());
        QCOMPARE(program.style.SqrWidth, int16_t(225));
        QVERIFY(program.style.StyleName.isEmpty());
        QVERIFY(program.last.styleNames.isEmpty());

        folder.put(QByteArray()); // empty
        program.read(folder);
        QVERIFY(program.last.opened);
        QVERIFY(program.style.StyleName.isEmpty());

        QByteArray binary(256 * 1024, '\0');
        QRandomGenerator random(7);
        for (char& byte : binary)
            byte = static_cast<char>(random.bounded(256));
        folder.put(binary);
        program.read(folder);
        QVERIFY(program.last.opened);

        // A line of a few megabytes, then one that counts.
        folder.put(QByteArray(4 * 1024 * 1024, 'x') + "\r\nRecentEngine = Crafty\r\n" +
                   "BeginStyle = Long\r\nPiecesList = " + QByteArray(1024 * 1024, 'p') + "\r\n");
        program.read(folder);
        QCOMPARE(program.engine, QStringLiteral("Crafty"));
        QCOMPARE(program.style.StyleName, QStringLiteral("Long"));
        QCOMPARE(program.style.PiecesList.size(), 1024 * 1024);

        Folder other;
        QVERIFY(QDir(other.path()).mkdir(QStringLiteral("Marlith.ini")));
        Program reader;
        reader.read(other);
        QVERIFY(!reader.last.opened);
    }

    void firstRun() {
        Folder folder;
        Program program;
        program.read(folder);
        for (const char* book : {"/b/1.pgn", "/b/2.pgn", "/b/3.pgn", "/b/4.pgn", "/b/5.pgn"})
            AddRecent(program.recent, QString::fromLatin1(book));
        program.engine = QStringLiteral("Popeye");
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(), Crlf("RecentFile = /b/2.pgn\n"
                                    "RecentFile = /b/3.pgn\n"
                                    "RecentFile = /b/4.pgn\n"
                                    "RecentFile = /b/5.pgn\n"
                                    "RecentEngine = Popeye\n"));
        QVERIFY(!QFile::exists(folder.temp()));

        // The next start reads the same list back, and no style.
        Program next;
        next.read(folder);
        QCOMPARE(next.recent, program.recent);
        QVERIFY(next.style.StyleName.isEmpty());

        Folder bare;
        Program nothing;
        QVERIFY(nothing.write(bare));
        QCOMPARE(bare.get(), QByteArray());
    }

    void handWrittenLinesSurviveEveryRun() {
        Folder folder;
        folder.put("; Marlith settings, by hand\r\n"
                   "RecentFile = /old/one.pgn\r\n"
                   "RecentEngine = Crafty\r\n"
                   "\r\n"
                   "  recentstyle=old ; the comment goes with the line\r\n"
                   "Unknown line without equals\n"
                   "Colour = blue, Size = 3\r\n"
                   "; caf\xe9 in another code page\r\n"
                   "BeginStyle = Alpha\r\n"
                   "  SqrWidth = 20 ; twenty \r\n"
                   "EndStyle\r\n"
                   "\t RECENTFILE = /tabbed.pgn\r\n"
                   "Styles are below\r\n"
                   "STYLEX = 1\r\n"
                   "\r\n"
                   "BeginStyle = Beta\r\n"
                   "EndStyle");
        const QByteArray expected = "RecentFile = /b/1.pgn\r\n"
                                    "RecentFile = /b/2.pgn\r\n"
                                    "RecentEngine = Popeye\r\n"
                                    "; Marlith settings, by hand\r\n"
                                    "\r\n"
                                    "RecentStyle = Beta\r\n"
                                    "Unknown line without equals\r\n"
                                    "Colour = blue, Size = 3\r\n"
                                    "; caf\xe9 in another code page\r\n"
                                    "BeginStyle = Alpha\r\n"
                                    "  SqrWidth = 20 ; twenty \r\n"
                                    "EndStyle\r\n"
                                    "RecentStyle = Beta\r\n"
                                    "RecentStyle = Beta\r\n"
                                    "\r\n"
                                    "BeginStyle = Beta\r\n"
                                    "EndStyle\r\n";
        const RecentList recent{"/b/2.pgn", "/b/1.pgn", "", ""};
        for (int run = 0; run < 3; ++run) {
            QVERIFY(WriteSettings(folder.path(), recent, QStringLiteral("Popeye"),
                                  QStringLiteral("Beta")));
            QCOMPARE(folder.get(), expected);
        }

        // A whole start-and-stop: what was read is what is written.
        Program program;
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("Beta"));
        QCOMPARE(program.recent, recent);
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(), expected);
    }

    void aCommaCutsARecentPath() {
        Folder folder;
        const RecentList recent{"/b/one, two.pgn", "", "", ""};
        QVERIFY(WriteSettings(folder.path(), recent, QString(), QString()));
        Program program;
        program.read(folder);
        QCOMPARE(program.recent[0], QStringLiteral("/b/one"));
    }

    void aWriterThatFailsLeavesTheOldFile() {
        Folder folder;
        folder.put(kLibrary);
        const RecentList recent{"/b/x.pgn", "", "", ""};
        for (int failAt : {0, 1, 5, 11}) {
            SettingsWriteSeams seams;
            int written = 0;
            seams.beforeLine = [&](int line) {
                written = line;
                return line < failAt;
            };
            QVERIFY(!WriteSettings(folder.path(), recent, {}, QStringLiteral("Alpha"), seams));
            QCOMPARE(written, failAt);
            QCOMPARE(folder.get(), kLibrary);
            QVERIFY(!QFile::exists(folder.temp()));
        }
    }

    void aRenameThatFailsLeavesTheOldFile() {
        Folder folder;
        folder.put(kLibrary);
        SettingsWriteSeams seams;
        QString from;
        QString to;
        seams.rename = [&](const QString& a, const QString& b) {
            from = a;
            to = b;
            return false;
        };
        QVERIFY(!WriteSettings(folder.path(), {}, QStringLiteral("Popeye"), QStringLiteral("Alpha"),
                               seams));
        QCOMPARE(from, folder.temp());
        QCOMPARE(to, folder.ini());
        QCOMPARE(folder.get(), kLibrary);
        QVERIFY(!QFile::exists(folder.temp()));
    }

    void leftOversAndUnusableFolders() {
        // A temporary file of an earlier run is replaced.
        Folder folder;
        folder.put(kLibrary);
        {
            QFile old(folder.temp());
            QVERIFY(old.open(QIODevice::WriteOnly));
            old.write(QByteArray(100000, 'j'));
        }
        QVERIFY(WriteSettings(folder.path(), {}, {}, QStringLiteral("Alpha")));
        QVERIFY(folder.get().startsWith("; my styles\r\nRecentStyle = Alpha\r\n"));
        QVERIFY(!QFile::exists(folder.temp()));

        // A settings file that can't be read as a file is left alone.
        Folder odd;
        QVERIFY(QDir(odd.path()).mkdir(QStringLiteral("Marlith.ini")));
        QVERIFY(!WriteSettings(odd.path(), {"/b/1.pgn"}, {}, {}));
        QVERIFY(QFileInfo(odd.ini()).isDir());
        QVERIFY(!QFile::exists(odd.temp()));

        // A folder that isn't there.
        QVERIFY(!WriteSettings(folder.path() + QStringLiteral("missing/"), {"/b/1.pgn"}, {}, {}));
    }

    void aKilledWriterLeavesTheOldFile() {
        Folder folder;
        QByteArray library;
        for (int i = 0; i < 100000; ++i)
            library += "; line " + QByteArray::number(i) + " of a large library\r\n";
        folder.put(library);

        int ready[2];
        QCOMPARE(::pipe(ready), 0);
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            ::close(ready[0]);
            SettingsWriteSeams seams;
            seams.beforeLine = [&](int line) {
                if (line == 60000) {
                    const char byte = 1;
                    if (::write(ready[1], &byte, 1) != 1) ::_exit(2);
                    for (;;)
                        ::pause();
                }
                return true;
            };
            WriteSettings(folder.path(), {"/b/1.pgn"}, {}, QStringLiteral("Alpha"), seams);
            ::_exit(1);
        }
        ::close(ready[1]);
        char byte = 0;
        const bool midway = ::read(ready[0], &byte, 1) == 1;
        ::close(ready[0]);
        ::kill(child, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(midway);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        QCOMPARE(folder.get(), library);
        QVERIFY(QFile::exists(folder.temp())); // what the killed run had written

        // The next run starts its temporary file afresh.
        QVERIFY(WriteSettings(folder.path(), {"/b/1.pgn"}, {}, QStringLiteral("Alpha")));
        QCOMPARE(folder.get(), "RecentFile = /b/1.pgn\r\n" + library);
    }

    void splitLines() {
        QCOMPARE(SplitLines("a\r\nb\nc\rd"), QList<QByteArray>({"a", "b", "c", "d"}));
        QCOMPARE(SplitLines("a\r\n\r\n"), QList<QByteArray>({"a", ""}));
        QCOMPARE(SplitLines("\r\r\n\n"), QList<QByteArray>({"", "", ""}));
        QCOMPARE(SplitLines(""), QList<QByteArray>());
        QCOMPARE(SplitLines(QByteArray("a\0b", 3)), QList<QByteArray>({QByteArray("a\0b", 3)}));
    }

    void aBlockAsWrittenIsReadBack() {
        Style style;
        ResetStyle(style);
        style.StyleName = QStringLiteral("Written");
        style.PiecesFile = QStringLiteral("/sheets/a.gif");
        style.SqrWidth = 300;
        style.SqrHTab = 285;
        style.FrameWidth = 1;
        style.FrameColor = 0xFF;
        style.ShowGrid = 1;
        style.FontPos = QStringLiteral("UP LEFT");
        Style copy = style;
        Folder folder;
        folder.put("RecentStyle = written\r\n" + WriteStyleBlock(copy).toUtf8());
        Program program;
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("written"));
        program.style.StyleName = style.StyleName;
        // WndWidth and WndHeight were 0, printed as 0 and read as 0.
        QCOMPARE(WriteStyleBlock(program.style), WriteStyleBlock(style));
    }
};

QTEST_APPLESS_MAIN(TstSettings)
#include "tst_settings.moc"
