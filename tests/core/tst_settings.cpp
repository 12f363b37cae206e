#include "core/settings.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <thread>

#include <csignal>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

using namespace marlith;
using namespace marlith::testing;

namespace {

// A temporary program folder.
struct Folder {
    QTemporaryDir dir;
    Folder() = default;
    explicit Folder(const QByteArray& bytes) { put(bytes); }
    QString path() const { return dir.path() + QLatin1Char('/'); }
    QString ini() const { return path() + QStringLiteral("Marlith.ini"); }
    int leftOvers() const {
        return int(QDir(path()).entryList({QStringLiteral("Marlith.ini.*.tmp")}).size());
    }
    void put(const QByteArray& bytes) const { writeFile(ini(), bytes); }
    QByteArray get() const { return readFile(ini()); }
};

// What the program keeps between two readings of the file.
struct Program {
    Style style;
    RecentList recent;
    QString engine;
    SettingsRead last;

    Program() { resetStyle(style); }
    explicit Program(const Folder& folder) : Program() { read(folder); }
    Program& read(const Folder& folder) {
        last = readSettings(folder.ini(), folder.path(), style, recent, engine);
        return *this;
    }
    bool write(const Folder& folder) const {
        return writeSettings(folder.path(), recent, engine, style.StyleName);
    }
};

const QByteArray kLibrary =
    crlf("RecentFile = /b/old.pgn\nRecentFile = /b/new.pgn\nRecentEngine = Crafty\n"
         "; my styles\nRecentStyle = beta\n\n"
         "BeginStyle = Alpha\n  SqrWidth = 20 \nEndStyle\n\n"
         "BeginStyle = Beta\n  PiecesFile = beta.gif\n  SqrWidth = 30 \nEndStyle\n");

} // namespace

class TstSettings : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A kept value can't end its item or line, and comes back whole.
    void escapedValues_data() {
        QTest::addColumn<QString>("value");
        QTest::newRow("separators") << QStringLiteral("a,b;c=\"d\"%e");
        QTest::newRow("blanks at the ends") << QStringLiteral("  k7/8 w  ");
        QTest::newRow("line ends and controls") << QStringLiteral("a\r\nb\tc\x7f");
        QTest::newRow("beyond ASCII") << QStringLiteral("T\u00e9te \u265a");
        QTest::newRow("field separator") << QStringLiteral("h#|2");
    }
    void escapedValues() {
        QFETCH(QString, value);
        const QString escaped = escapeSettingsValue(value, u"|");
        for (const char16_t c : {u',', u';', u'"', u'=', u'\r', u'\n', u'|'})
            QVERIFY(!escaped.contains(c));
        QVERIFY(escaped == escaped.trimmed());
        for (const QChar c : escaped)
            QVERIFY(c.unicode() >= 0x20 && c.unicode() < 0x7F); // printable ASCII alone
        QCOMPARE(unescapeSettingsValue(escaped), value);
    }

    void cutName() {
        // Cut at folder boundaries from the left, the root kept in front; with
        // no folder left, the last characters.
        const std::tuple<const char*, int, const char*> cases[] = {
            {"/A/B/C/D.FEN", 30, "/A/B/C/D.FEN"},
            {"/A/B/C/D.FEN", 8, "/.../C/D.FEN"},
            {"ABCDEFGHIJ", 5, "ABC.../FGHIJ"},
            {"books/a.pgn", 5, "boo.../a.pgn"}};
        for (const auto& [path, n, shown] : cases)
            QCOMPARE(shortenPath(QString::fromUtf8(path), n), QString::fromUtf8(shown));
    }

    void recentList() {
        RecentList recent;
        for (const char* book : {"/b/1.pgn", "/b/2.pgn", "/b/3.pgn", "/b/4.pgn", "/b/5.pgn"})
            addRecent(recent, QString::fromLatin1(book)); // the oldest falls out
        QCOMPARE(recent, (RecentList{"/b/5.pgn", "/b/4.pgn", "/b/3.pgn", "/b/2.pgn"}));
        addRecent(recent, QStringLiteral("/b/3.pgn")); // the fourth stays where it is
        QCOMPARE(recent, (RecentList{"/b/3.pgn", "/b/5.pgn", "/b/4.pgn", "/b/2.pgn"}));
        // Paths keep their case and are told apart by it.
        addRecent(recent, QStringLiteral("/B/3.PGN"));
        QCOMPARE(recent, (RecentList{"/B/3.PGN", "/b/3.pgn", "/b/5.pgn", "/b/4.pgn"}));
    }

    void recentMenu() {
        const auto items = recentMenuItems(
            {"/home/user/books/problems/collection-of-the-year.pgn", "/b/short.fen", "", ""});
        QCOMPARE(items[0].caption, QStringLiteral("&1 /.../collection-of-the-year.pgn"));
        QCOMPARE(items[1].caption, QStringLiteral("&2 /b/short.fen"));
        QVERIFY(items[1].visible && !items[2].visible);
    }

    // Which block a first reading takes, judged as the file goes by.
    void firstReading() {
        // File, the style taken (its block has 20-pixel squares), the names.
        const std::tuple<const char*, const char*, QStringList> cases[] = {
            {"BeginStyle = Gamma\n SqrWidth = 20\nBeginStyle = Alpha\n SqrWidth = 10\n",
             "Gamma",
             {"Gamma", "Alpha"}},
            {"recentstyle = ALPHA\n beginstyle = alpha\n  sqrwidth = 20\n", "ALPHA", {"alpha"}},
            // Block A was judged while it was the style; B had passed by then.
            {"BeginStyle = A\n  SqrWidth = 20\nBeginStyle = B\n  SqrWidth = 30\n"
             "Style = B\nBeginStyle = C\n  SqrWidth = 40\n",
             "B",
             {"A", "B", "C"}},
            // The flag of block A stays up until the next BeginStyle.
            {"BeginStyle = A\n  RecentStyle = B\nEndStyle\n  SqrWidth = 20\nBeginStyle = B\n",
             "B",
             {"A", "B"}}};
        for (const auto& [text, name, names] : cases) {
            Program program(Folder(crlf(text)));
            QCOMPARE(program.style.StyleName, QString::fromUtf8(name));
            QCOMPARE(program.style.SqrWidth, int16_t(300));
            QCOMPARE(program.last.styleNames, names);
        }
    }

    void reReadingAfterAPick() {
        Folder folder(kLibrary);
        Program program(folder);
        // Since the start: a book opened, another engine used, Alpha picked.
        addRecent(program.recent, QStringLiteral("/b/since.pgn"));
        program.engine = QStringLiteral("Popeye");
        program.style.StyleName = QStringLiteral("ALPHA");
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("ALPHA"));
        QVERIFY(program.last.styleNames.isEmpty());
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QCOMPARE(program.engine, QStringLiteral("Crafty"));
        QCOMPARE(program.recent, (RecentList{"/b/new.pgn", "/b/old.pgn", "/b/since.pgn", ""}));
        // A name that no block has: defaults, and the name stays.
        program.style.StyleName = QStringLiteral("Zeta");
        program.read(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("Zeta"));
        QCOMPARE(program.style.SqrWidth, int16_t(225));
    }

    // RecentFile and RecentEngine count inside a block too, up to the fault.
    void aValueThatDoesntFitEndsTheReading() {
        Folder folder(
            crlf("RecentStyle = A\n"
                 "BeginStyle = Other\n  SqrWidth = 9999\n" // not the wanted block: no fault
                 "BeginStyle = A\n  SqrWidth = 20\n"
                 "  RecentFile = /b/before.pgn, RecentEngine = Popeye\n"
                 "  SqrHeight = 2185\n  XBase = 5\n"
                 "RecentFile = /b/after.pgn\nRecentEngine = Crafty\nBeginStyle = Z\n"));
        Program program(folder);
        QVERIFY(program.last.stoppedAtFault);
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QCOMPARE(program.style.XBase, int16_t(0));
        QCOMPARE(program.recent, (RecentList{"/b/before.pgn", "", "", ""}));
        QCOMPARE(program.engine, QStringLiteral("Popeye"));
        QCOMPARE(program.last.styleNames, QStringList({"Other", "A"}));
    }

    // Every line end reads alike, and the rewrite copies the lines with CR LF.
    void lineEnds() {
        for (const char* lineEnd : {"\r\n", "\n", "\r"}) {
            Folder folder(QByteArray(kLibrary).replace("\r\n", lineEnd));
            Program program(folder);
            QCOMPARE(program.last.styleNames, QStringList({"Alpha", "Beta"}));
            QCOMPARE(program.style.StyleName, QStringLiteral("beta")); // as RecentStyle has it
            QCOMPARE(program.style.PiecesFile, folder.path() + QStringLiteral("beta.gif"));
            QCOMPARE(program.recent, (RecentList{"/b/new.pgn", "/b/old.pgn", "", ""}));
            program.style.StyleName = QStringLiteral("Alpha");
            QVERIFY(program.write(folder));
            QCOMPARE(folder.get(),
                     QByteArray(kLibrary).replace("RecentStyle = beta", "RecentStyle = Alpha"));
        }
    }

    void filesThatHoldNothingUseful() {
        Folder folder;
        Program program;
        program.engine = QStringLiteral("Popeye");
        program.style.SqrWidth = 1;
        QVERIFY(!program.read(folder).last.opened); // missing: the defaults
        QVERIFY(program.engine.isEmpty());
        QCOMPARE(program.style.SqrWidth, int16_t(225));
    }

    // Without an old file the new one holds the recent lines alone, oldest first.
    void firstRun() {
        Folder folder;
        Program program;
        program.recent = {"/b/5.pgn", "/b/4.pgn", "/b/3.pgn", "/b/2.pgn"};
        program.engine = QStringLiteral("Popeye");
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(), crlf("RecentFile = /b/2.pgn\nRecentFile = /b/3.pgn\n"
                                    "RecentFile = /b/4.pgn\nRecentFile = /b/5.pgn\n"
                                    "RecentEngine = Popeye\n"));
        QCOMPARE(Program(folder).recent, program.recent);
        // A path that would make lines of its own, or come back cut, is not kept.
        program.recent = {"/b/x\nBeginStyle = Evil", "/b/a,b.pgn", "/b/a;b.pgn", "/b/a=b.pgn"};
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(), crlf("RecentFile = /b/a=b.pgn\nRecentEngine = Popeye\n"));
    }

    // Recent lines go to the top, style lines (by their start, in any case)
    // carry the current name, every other line stays byte for byte.
    void handWrittenLinesSurviveEveryRun() {
        Folder folder("; by hand\r\nRecentFile = /old/one.pgn\r\nRecentEngine = Crafty\r\n\r\n"
                      "  recentstyle=old ; the comment goes with the line\r\n"
                      "Unknown line without equals\n; caf\xe9 in another code page\r\n"
                      "BeginStyle = Alpha\r\n  SqrWidth = 20 ; twenty \r\n"
                      "\t RECENTFILE = /tabbed.pgn\r\nSTYLEX = 1\r\nEndStyle");
        const QByteArray expected =
            "RecentFile = /b/1.pgn\r\nRecentFile = /b/2.pgn\r\nRecentEngine = Popeye\r\n"
            "; by hand\r\n\r\nRecentStyle = Beta\r\nUnknown line without equals\r\n"
            "; caf\xe9 in another code page\r\nBeginStyle = Alpha\r\n  SqrWidth = 20 ; twenty \r\n"
            "RecentStyle = Beta\r\nEndStyle\r\n";
        const RecentList recent{"/b/2.pgn", "/b/1.pgn", "", ""};
        QVERIFY(
            writeSettings(folder.path(), recent, QStringLiteral("Popeye"), QStringLiteral("Beta")));
        QCOMPARE(folder.get(), expected);
        // The next start and stop read and write the same again.
        QVERIFY(Program(folder).write(folder));
        QCOMPARE(folder.get(), expected);
    }

    void leftOversAndUnusableFolders() {
        // A settings file that can't be read as a file is neither read nor replaced.
        Folder odd;
        QVERIFY(QDir(odd.path()).mkdir(QStringLiteral("Marlith.ini")));
        QVERIFY(!Program(odd).last.opened);
        QVERIFY(!writeSettings(odd.path(), {"/b/1.pgn"}, {}, {}));
        QVERIFY(QFileInfo(odd.ini()).isDir() && odd.leftOvers() == 0);
    }

    // A style's block goes in the order of names, one blank line from its
    // neighbours; its old block goes with what stands behind it.
    void styleBlocksKeepTheirOrder() {
        const QList<QByteArray> block = {"BeginStyle = beta", "  SqrWidth = 9"};
        const QByteArray kept = "RecentStyle = x\n\nBeginStyle = ALPHA\nA\n\nBeginStyle = GAMMA\nG";
        const std::tuple<const char*, QByteArray, bool, QByteArray> cases[] = {
            {"beta", kept, true,
             "RecentStyle = x\n\nBeginStyle = ALPHA\nA\n\nBeginStyle = beta\n  SqrWidth = 9\n\n"
             "BeginStyle = GAMMA\nG"},
            {"zeta", "BeginStyle = Alpha\nA", true,
             "BeginStyle = Alpha\nA\n\nBeginStyle = beta\n  SqrWidth = 9"},
            // Replaced in place, spelled the new way.
            {"BETA", "BeginStyle = Beta\nold\n\nBeginStyle = Gamma\nG", true,
             "BeginStyle = beta\n  SqrWidth = 9\n\nBeginStyle = Gamma\nG"},
            {"beta", "A\n\nbeginstyle = Beta\nold\n\nBeginStyle = Gamma\nG", false,
             "A\n\nBeginStyle = Gamma\nG"},
        };
        for (const auto& [name, before, store, after] : cases) {
            const QList<QByteArray> result =
                replaceStyleBlock(before.isEmpty() ? QList<QByteArray>() : before.split('\n'),
                                  QString::fromLatin1(name), store ? &block : nullptr);
            QCOMPARE(result.join('\n'), after);
        }
    }

    // A stored block reads back; deleting it gives the old file back. Where
    // it goes is styleBlocksKeepTheirOrder's.
    void aStoredStyleIsReadBack() {
        Folder folder(kLibrary);
        Program program(folder);
        program.style.StyleName = QStringLiteral("Aardvark");
        program.style.SqrWidth = 25 * 15;
        QVERIFY(writeStyles(folder.path(), program.style, true));
        Program again;
        again.style.StyleName = QStringLiteral("AARDVARK");
        QCOMPARE(again.read(folder).style.SqrWidth, 25 * 15);
        QVERIFY(writeStyles(folder.path(), program.style, false));
        QCOMPARE(folder.get(), kLibrary);
    }

    // Two writers of one folder take turns: every style that either stored
    // is in the file.
    void writersTakeTurns() {
        Folder folder(kLibrary);
        const auto store = [&folder](const QString& prefix) {
            Style style;
            resetStyle(style);
            for (int i = 0; i < 40; ++i) {
                style.StyleName = prefix + QString::number(i);
                writeStyles(folder.path(), style, true);
            }
        };
        std::thread other([&store] { store(QStringLiteral("Other")); });
        store(QStringLiteral("Mine"));
        other.join();
        QCOMPARE(folder.get().count("BeginStyle"), 2 + 80);
    }

    // A file from the old platform: names and paths in Windows-1252 read
    // right, a saved block follows its code, and no other byte changes.
    void aWindows1252FileStaysOne() {
        const QByteArray old = crlf("RecentFile = /b/\xC9tudes.pgn\n\nBeginStyle = \xC9"
                                    "checs\n  SqrWidth = 20 \n"
                                    "  PiecesFile = pi\xE8"
                                    "ces\x80.bmp\nEndStyle\n");
        Folder folder(old);
        Program program(folder);
        QCOMPARE(program.style.StyleName, QStringLiteral("Échecs"));
        QCOMPARE(program.style.PiecesFile, folder.path() + QStringLiteral("pièces€.bmp"));
        QCOMPARE(program.recent[0], QStringLiteral("/b/Études.pgn"));
        // Written back unchanged, it is the same file byte for byte.
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(), old);
    }

    // Failing before the first line, midway, at the last, at the rename, or
    // killed midway (last, as a child gets no chance to clean up): the old
    // file stays whole.
    void aWriteThatDoesntFinishLeavesTheOldFile() {
        QList<SettingsWriteSeams> cases;
        for (int failAt : {0, 5, 11})
            cases.append({[failAt](int line) { return line < failAt; }, {}});
        cases.append({{}, [](const QString&, const QString&) { return false; }});
        cases.append({[](int line) { return line != 5 || ::raise(SIGKILL) != 0; }, {}});
        Folder folder(kLibrary);
        for (const SettingsWriteSeams& seams : cases) {
            const pid_t child = ::fork();
            if (child == 0) ::_exit(writeSettings(folder.path(), {"/b/x.pgn"}, {}, {}, seams));
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            const bool killed = &seams == &cases.last();
            QCOMPARE(status, killed ? SIGKILL : 0); // killed, or exited with false
            QCOMPARE(folder.get(), kLibrary);
            QCOMPARE(folder.leftOvers(), killed ? 1 : 0);
        }
        // The next run starts its temporary file afresh.
        Folder fresh(kLibrary);
        QVERIFY(writeSettings(fresh.path(), {"/b/x.pgn"}, {}, {}));
        QVERIFY(writeSettings(folder.path(), {"/b/x.pgn"}, {}, {}));
        QCOMPARE(folder.get(), fresh.get());
        QCOMPARE(folder.leftOvers(), 0);
    }
};

QTEST_APPLESS_MAIN(TstSettings)
#include "tst_settings.moc"
