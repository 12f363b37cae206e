#include "chooser/chooser_rules.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

void touch(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write("x");
}

} // namespace

class TstChooserRules : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void entryPerPurpose() {
        // A book is never an image or style file; pictures keep to gif after gif, names follow.
        const std::tuple<int, QString, QString, QString> cases[] = {
            {0, "*.gif", "*.bmp", "Marlith.bmp"},
            {1, "*.pgn", "*.pgn", ""},
            {1, "*.bmp", "*.fen", ""},
            {1, "*.sty", "*.fen", ""},
            {2, "*.gif", "*.gif", "Marlith.gif"},
            {2, "*.pgn", "*.bmp", "Marlith.bmp"},
            {3, "*.gif", "*.gif", "Marlith.gif"},
            {4, "*.gif", "*.sty", "Marlith.sty"}};
        for (const auto& [mode, last, filter, name] : cases) {
            const ChooserEntry entry =
                chooserEntryFor(ChooserMode(mode), last).value_or(ChooserEntry());
            QCOMPARE(entry.filter, filter);
            QCOMPARE(entry.name, name);
        }
        QVERIFY(!chooserEntryFor(ChooserMode(-1), "*.pgn") &&
                !chooserEntryFor(ChooserMode(5), "*.pgn"));
    }

    void okPath() {
        // A name with no dot takes all from the filter's first dot; one with "/" keeps its place.
        const std::tuple<QString, QString, QString, QString> cases[] = {
            {"pic", "*.bmp", "/home/u", "/home/u/pic.bmp"},
            {"a", "*", "/home/u", "/home/u/a"},
            {"a", "*.tar.gz", "/d", "/d/a.tar.gz"},
            {"/other/b", "*.pgn", "/home/u", "/other/b.pgn"},
            {"/my.books/b", "*.pgn", "/home/u", "/my.books/b"},
            {"sub/b", "*.pgn", "/home/u", "sub/b.pgn"},
            {"x", "*.bmp", "/", "/x.bmp"},
            {"", "*.bmp", "/", "none"}};
        for (const auto& [name, filter, folder, path] : cases)
            QCOMPARE(chosenPath(name, filter, folder).value_or("none"), path);
    }

    void drives() {
        const QStringList drives =
            driveRoots({"/home", "/", "", "/media/usb/inner", "/home", "/media/usb"});
        QCOMPARE(drives, QStringList({"/", "/home", "/media/usb/inner", "/media/usb"}));
        // The longest root holding the path; a name merely beginning like one isn't inside.
        const std::pair<QString, QString> cases[] = {{"/home/u/books", "/home"},
                                                     {"/home", "/home"},
                                                     {"/homework", "/"},
                                                     {"/media/usb/inner/x", "/media/usb/inner"},
                                                     {"/media/usb/innerx", "/media/usb"}};
        for (const auto& [path, drive] : cases)
            QCOMPARE(driveOf(path, drives), drive);
    }

    void filesAndFoldersOfAFolder() {
        QTemporaryDir dir;
        for (const char* name : {"a.pgn", "B.PGN", "c.fen", "noext", ".hidden.pgn", "z.pgn.bak"})
            touch(dir.filePath(QLatin1String(name)));
        for (const char* name : {"folder.pgn", "Beta", "alpha", ".git"})
            QDir(dir.path()).mkdir(QLatin1String(name));
        const QString path = dir.path();
        QCOMPARE(filesMatching(path, "*.pgn"), QStringList({"a.pgn", "B.PGN"}));
        QCOMPARE(filesMatching(path, "*.pgn; *.fen"), QStringList({"a.pgn", "B.PGN", "c.fen"}));
        const QStringList all{"a.pgn", "B.PGN", "c.fen", "noext", "z.pgn.bak"};
        QCOMPARE(filesMatching(path, "*.*"), all);
        QCOMPARE(filesMatching(path, QString()), all);
        // A pattern that is no wildcard expression names a file as it stands.
        QVERIFY(filesMatching(path, "[").isEmpty());
        touch(dir.filePath("["));
        QCOMPARE(filesMatching(path, "["), QStringList{"["});
        QCOMPARE(subfolders(path), QStringList({"alpha", "Beta", "folder.pgn"}));
    }

    void openableFolders() {
        QTemporaryDir dir;
        QDir(dir.path()).mkdir("in");
        touch(dir.filePath("f"));
        QCOMPARE(openableFolder(dir.path() + "/in/../in/").value_or(""), dir.filePath("in"));
        QCOMPARE(openableFolder("/").value_or(""), QString("/"));
        for (const QString& bad : {QString(), dir.filePath("f"), dir.filePath("missing")})
            QVERIFY(!openableFolder(bad));
    }

    void folderRows() {
        // Each row as "path label depth open".
        auto rowsOf = [](const QString& path, const QStringList& subfolders) {
            QStringList rows;
            for (const FolderRow& r : marlith::folderRows(path, subfolders))
                rows << QString("%1 %2 %3 %4").arg(r.path, r.label).arg(r.depth).arg(int(r.open));
            return rows;
        };
        QCOMPARE(rowsOf("/a/b", {"c", "D"}), QStringList({"/ / 0 1", "/a a 1 1", "/a/b b 2 1",
                                                          "/a/b/c c 3 0", "/a/b/D D 3 0"}));
        QCOMPARE(rowsOf("/", {"x"}), QStringList({"/ / 0 1", "/x x 1 0"}));
    }
};

QTEST_GUILESS_MAIN(TstChooserRules)
#include "tst_chooser_rules.moc"
