#include "core/settings.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <thread>

using namespace marlith;
using namespace marlith::testing;

namespace {

// A temporary program folder, with a settings file when given its bytes.
struct Folder : TempFolder {
    explicit Folder(const QByteArray& bytes = {}) {
        if (!bytes.isNull()) writeFile(ini(), bytes);
    }
    QString ini() const { return path() + "Marlith.ini"; }
    qsizetype leftOvers() const { return QDir(path()).entryList({"Marlith.ini.*.tmp"}).size(); }
    QByteArray get() const { return readFile(ini()); }
};

// What the program keeps between two readings of the file.
struct Program {
    Style style;
    RecentList recent;
    QString engine;
    KeptSession kept;
    SettingsRead last;

    Program() { resetStyle(style); }
    explicit Program(const Folder& folder) : Program() { read(folder); }
    Program& read(const Folder& folder) {
        last = readSettings(folder.ini(), folder.path(), style, recent, engine, &kept);
        return *this;
    }
    bool write(const Folder& folder) const {
        return writeSettings(folder.path(), recent, engine, style.StyleName);
    }
};

const QByteArray kLibrary =
    crlf("RecentFile = /b/old.pgn\nRecentFile = /b/new.pgn\nRecentEngine = Crafty\n"
         "; my styles\nRecentStyle = beta\nRecentPosition = 8/8 w\n\n"
         "BeginStyle = Alpha\n  SqrWidth = 20 \nEndStyle\n\n"
         "BeginStyle = Beta\n  PiecesFile = beta.gif\n  SqrWidth = 30 \nEndStyle\n");

} // namespace

class TstSettings : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A kept value can't end its item or line, and comes back whole.
    void escapedValues_data() {
        QTest::addColumn<QString>("value");
        QTest::newRow("separators") << QStringLiteral("a,b;c=\"d\"%e|f");
        QTest::newRow("blanks at the ends") << QStringLiteral("  k7/8 w  ");
        QTest::newRow("line ends and controls") << QStringLiteral("a\r\nb\tc\x7f");
        QTest::newRow("beyond ASCII") << QStringLiteral("T\u00e9te \u265a");
    }
    void escapedValues() {
        QFETCH(QString, value);
        const QString escaped = escapeSettingsValue(value, u"|");
        QCOMPARE(escaped, escaped.trimmed());
        for (const QChar c : escaped) // printable ASCII, no separator
            QVERIFY(c >= u' ' && c < u'\x7f' && !QStringView(u",;\"=|").contains(c));
        QCOMPARE(unescapeSettingsValue(escaped), value);
    }

    // The oldest path falls out, a known one moves up; a long one is cut in the menu.
    void recentPaths() {
        RecentList recent;
        for (const char* book : {"/b/1", "/b/2", "/b/3", "/b/4", "/b/5", "/b/4", "/B/4"})
            addRecent(recent, QString::fromLatin1(book));
        QCOMPARE(recent, (RecentList{"/B/4", "/b/4", "/b/5", "/b/3"}));
        const auto items =
            recentMenuItems({"/home/user/books/problems/collection-of-the-year.pgn", "/b/short.fen",
                             "a-name-without-any-folder-that-is-long.pgn", ""});
        QCOMPARE(items[0].caption, QStringLiteral("&1 /.../collection-of-the-year.pgn"));
        QCOMPARE(items[1].caption, QStringLiteral("&2 /b/short.fen"));
        QCOMPARE(items[2].caption, QStringLiteral("&3 a-n.../ut-any-folder-that-is-long.pgn"));
        QVERIFY(items[2].visible && !items[3].visible);
    }

    // Export choices, brought into range, and the Popeye fields come back; one line each.
    void exportChoices_data() {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("choices"); // format, width, mm, dpi, transparent
        QTest::newRow("none") << QByteArray("RecentStyle = A\n") << "PNG 1200 80 300 0";
        QTest::newRow("as written") << QByteArray("ExportFormat = svg\nExportWidth = 640\n"
                                                  "ExportMillimetres = 50\nExportResolution = "
                                                  "600\nExportTransparent = 1\n")
                                    << "SVG 640 50 600 1";
        QTest::newRow("out of range")
            << QByteArray("exportwidth = 5\nEXPORTMILLIMETRES = 99999999999\n"
                          "ExportResolution = -3\nExportTransparent = 7\n")
            << "PNG 16 1000 72 1";
        QTest::newRow("no meaning")
            << QByteArray("ExportFormat = GIF\nExportWidth = wide\nExportTransparent = yes\n")
            << "PNG 1200 80 300 0";
    }
    void exportChoices() {
        QFETCH(QByteArray, lines);
        const Folder folder(crlf(lines));
        const auto choices = [](const Program& program) {
            const ExportChoices& c = program.kept.exportChoices;
            return QStringLiteral("%1 %2 %3 %4 %5")
                .arg(formatName(c.format))
                .arg(c.width)
                .arg(c.millimetres)
                .arg(c.dotsPerInch)
                .arg(c.transparent);
        };
        Program program(folder);
        QTEST(choices(program), "choices");
        for (size_t i = 0; i < PopeyeFields::kCount; ++i)
            program.kept.popeyeFields.box(i) = QStringLiteral("field %1, with; separators").arg(i);
        QVERIFY(writeSettings(folder.path(), {}, {}, {}, {}, &program.kept));
        const Program back(folder);
        QTEST(choices(back), "choices");
        QCOMPARE(folder.get().toUpper().count("EXPORT"), 5);
        for (size_t i = 0; i < PopeyeFields::kCount; ++i)
            QCOMPARE(back.kept.popeyeFields.box(i), program.kept.popeyeFields.box(i));
    }

    // Which block a first reading takes; the style's block has 20-pixel squares.
    void firstReading_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("style");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("names in any case")
            << QByteArray("recentstyle = ALPHA\n beginstyle = alpha\n  sqrwidth = 20\n") << "ALPHA"
            << QStringList{"alpha"};
        // The first block is the style until a name comes, up to the next BeginStyle.
        QTest::newRow("a name inside a block")
            << QByteArray("BeginStyle = A\n Style = B\nEndStyle\n SqrWidth = 20\nBeginStyle = B\n")
            << "B" << QStringList{"A", "B"};
    }
    void firstReading() {
        QFETCH(QByteArray, file);
        const Program program(Folder(crlf(file)));
        QTEST(program.style.StyleName, "style");
        QCOMPARE(program.style.SqrWidth, int16_t(300));
        QTEST(program.last.styleNames, "names");
    }

    // A re-reading after a pick takes the block of that name in any case;
    // deleting a stored block gives the old file back.
    void reReadingAfterAPick() {
        Folder folder(kLibrary);
        Program program(folder);
        addRecent(program.recent, QStringLiteral("/b/since.pgn"));
        program.style.StyleName = QStringLiteral("Aardvark");
        program.style.SqrWidth = 25 * 15;
        QVERIFY(writeStyles(folder.path(), program.style, true));
        program.style.StyleName = QStringLiteral("AARDVARK");
        program.read(folder);
        QCOMPARE(std::tuple(program.style.StyleName, program.style.SqrWidth),
                 std::tuple(QString("AARDVARK"), int16_t(25 * 15)));
        QVERIFY(program.last.styleNames.isEmpty());
        QCOMPARE(program.recent, (RecentList{"/b/new.pgn", "/b/old.pgn", "/b/since.pgn", ""}));
        QVERIFY(writeStyles(folder.path(), program.style, false));
        QCOMPARE(folder.get(), kLibrary);
    }

    // RecentFile and RecentEngine count inside a block too, up to the fault.
    void aValueThatDoesntFitEndsTheReading() {
        Program program(
            Folder(crlf("RecentStyle = A\n"
                        "BeginStyle = Other\n  SqrWidth = 9999\n" // not the wanted block: no fault
                        "BeginStyle = A\n  SqrWidth = 20\n"
                        "  RecentFile = /b/before.pgn, RecentEngine = Popeye\n"
                        "  SqrHeight = 2185\n  XBase = 5\n"
                        "RecentFile = /b/after.pgn\nRecentEngine = Crafty\nBeginStyle = Z\n")));
        QVERIFY(program.last.stoppedAtFault);
        QCOMPARE(std::tuple(program.style.SqrWidth, program.style.XBase, program.engine),
                 std::tuple(int16_t(300), int16_t(0), QString("Popeye")));
        QCOMPARE(program.recent, (RecentList{"/b/before.pgn", "", "", ""}));
        QCOMPARE(program.last.styleNames, QStringList({"Other", "A"}));
    }

    // Without a file: the defaults, then the recent lines alone, none that
    // would come back otherwise. A folder in the file's place stays.
    void firstRun() {
        Folder folder;
        Program program;
        program.engine = QStringLiteral("Popeye");
        program.style.SqrWidth = 1;
        QVERIFY(!program.read(folder).last.opened);
        QVERIFY(program.engine.isEmpty() && program.style.SqrWidth == 225);
        program.recent = {"/b/5.pgn", "/b/x\nBeginStyle = Evil", "/b/a,b.pgn", "/b/2.pgn"};
        program.engine = QStringLiteral("Popeye");
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(),
                 crlf("RecentFile = /b/2.pgn\nRecentFile = /b/5.pgn\nRecentEngine = Popeye\n"));
        program.recent = {"/b/a;b.pgn", "/b/a=b.pgn", "", ""};
        QVERIFY(program.write(folder));
        QCOMPARE(Program(folder).recent, (RecentList{"/b/a=b.pgn", "", "", ""}));
        QVERIFY(QFile::remove(folder.ini()) &&
                QDir(folder.path()).mkdir(QStringLiteral("Marlith.ini")));
        QVERIFY(!program.read(folder).last.opened);
        QVERIFY(!writeSettings(folder.path(), {"/b/1.pgn"}, {}, {}));
        QVERIFY(QFileInfo(folder.ini()).isDir() && folder.leftOvers() == 0);
    }

    // Recent lines on top, style lines renamed, the rest byte for byte, all in CR LF.
    void handWrittenLinesSurviveEveryRun() {
        Folder folder("; by hand\rRecentFile = /old/one.pgn\r\nRecentEngine = Crafty\r\n\r\n"
                      "  recentstyle=old ; the comment goes with the line\r\n"
                      "Unknown line without equals\n; caf\xe9 in another code page\r\n"
                      "BeginStyle = Alpha\r\n  SqrWidth = 20 ; twenty \r\n"
                      "\t RECENTFILE = /tabbed.pgn\r\nSTYLEX = 1\r\nEndStyle");
        const QByteArray expected =
            "RecentFile = /b/1.pgn\r\nRecentFile = /b/2.pgn\r\nRecentEngine = Popeye\r\n"
            "; by hand\r\n\r\nRecentStyle = Beta\r\nUnknown line without equals\r\n"
            "; caf\xe9 in another code page\r\nBeginStyle = Alpha\r\n  SqrWidth = 20 ; twenty \r\n"
            "RecentStyle = Beta\r\nEndStyle\r\n";
        QVERIFY(writeSettings(folder.path(), {"/b/2.pgn", "/b/1.pgn", "", ""},
                              QStringLiteral("Popeye"), QStringLiteral("Beta")));
        QCOMPARE(folder.get(), expected);
    }

    // A block goes in the order of names, a blank line apart; "*" is the block stored.
    void styleBlocksKeepTheirOrder_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("store");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("in the middle")
            << "beta" << true << QByteArray("BeginStyle = A\nA\n\nBeginStyle = G\nG")
            << QByteArray("BeginStyle = A\nA\n\n*\n\nBeginStyle = G\nG");
        QTest::newRow("at the end") << "zeta" << true << QByteArray("BeginStyle = A\nA")
                                    << QByteArray("BeginStyle = A\nA\n\n*");
        QTest::newRow("replaced, spelled anew")
            << "BETA" << true << QByteArray("BeginStyle = Beta\nold\n\nBeginStyle = G\nG")
            << QByteArray("*\n\nBeginStyle = G\nG");
        QTest::newRow("deleted") << "beta" << false
                                 << QByteArray("A\n\nbeginstyle = Beta\nold\n\nBeginStyle = G")
                                 << QByteArray("A\n\nBeginStyle = G");
    }
    void styleBlocksKeepTheirOrder() {
        QFETCH(QString, name);
        QFETCH(bool, store);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const QList<QByteArray> block = {"BeginStyle = beta", "  SqrWidth = 9"};
        const QList<QByteArray> result =
            replaceStyleBlock(before.split('\n'), name, store ? &block : nullptr);
        QCOMPARE(result.join('\n'), after.replace("*", block.join('\n')));
    }

    // Two writers of one folder take turns: every style stored is in the file.
    void writersTakeTurns() {
        Folder folder(kLibrary);
        const auto store = [&folder](const QString& prefix) {
            Program program;
            for (int i = 0; i < 40; ++i) {
                program.style.StyleName = prefix + QString::number(i);
                writeStyles(folder.path(), program.style, true);
            }
        };
        std::thread other([&store] { store(QStringLiteral("Other")); });
        store(QStringLiteral("Mine"));
        other.join();
        QCOMPARE(folder.get().count("BeginStyle"), 2 + 80);
    }

    // A Windows-1252 file reads right and is written back byte for byte.
    void aWindows1252FileStaysOne() {
        const QByteArray old = crlf("RecentFile = /b/\xC9tudes.pgn\n\nBeginStyle = \xC9"
                                    "checs\n  SqrWidth = 20 \n"
                                    "  PiecesFile = pi\xE8"
                                    "ces\x80.bmp\nEndStyle\n");
        Folder folder(old);
        Program program(folder);
        QCOMPARE(
            QStringList({program.style.StyleName, program.style.PiecesFile, program.recent[0]}),
            QStringList({"Échecs", folder.path() + "pièces€.bmp", "/b/Études.pgn"}));
        QVERIFY(program.write(folder));
        QCOMPARE(folder.get(), old);
    }

    // The old file stays whole; a killed copy's temporary file goes on the next write.
    void aWriteThatDoesntFinishLeavesTheOldFile_data() {
        QTest::addColumn<int>("failAt"); // the line it fails before; -1 the rename
        QTest::newRow("before the first line") << 0;
        QTest::newRow("midway") << 5;
        QTest::newRow("before the last line") << 12;
        QTest::newRow("at the rename") << -1;
    }
    void aWriteThatDoesntFinishLeavesTheOldFile() {
        QFETCH(int, failAt);
        Folder folder(kLibrary);
        writeFile(folder.path() + "Marlith.ini.1.tmp", "left by a killed copy");
        SettingsWriteSeams seams;
        if (failAt >= 0)
            seams.beforeLine = [failAt](int line) { return line < failAt; };
        else
            seams.rename = [](const QString&, const QString&) { return false; };
        QVERIFY(!writeSettings(folder.path(), {"/b/x.pgn"}, {}, {}, seams));
        QCOMPARE(folder.get(), kLibrary);
        QCOMPARE(folder.leftOvers(), 0);
    }
};

QTEST_APPLESS_MAIN(TstSettings)
#include "tst_settings.moc"
