#include "chooser/chooser_rules.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

class TstChooserRules : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void entryPerPurpose() {
        // A book is never an image or style file; pictures keep to gif after gif, names follow;
        // a suggested name brings its filter.
        const auto shown = [](int mode, const QString& last, const QString& suggested = {}) {
            const ChooserEntry e =
                chooserEntryFor(ChooserMode(mode), last, suggested).value_or(ChooserEntry());
            return e.filter + u' ' + e.name;
        };
        QCOMPARE(
            QStringList({shown(0, "*.gif"), shown(1, "*.bmp"), shown(1, "*.pdf"), shown(2, "*.pgn"),
                         shown(3, "*.gif"), shown(4, "*.gif"), shown(2, "*.bmp", "d.GIF")}),
            QStringList({"*.bmp Marlith.bmp", "*.fen ", "*.fen ", "*.bmp Marlith.bmp",
                         "*.gif Marlith.gif", "*.sty Marlith.sty", "*.gif d.GIF"}));
        const ChooserEntry style = *chooserEntryFor(ChooserMode(4), {});
        QCOMPARE(chooserEntryFor(ChooserMode(2), {})->filters + style.filters +
                     QStringList{style.caption},
                 (QStringList{"*.bmp", "*.gif", "*.sty", "Import Styles from..."}));
    }

    void pathsAndDrives() {
        // A name with "/" keeps its place; one with a dot keeps its own extension.
        const std::tuple<QString, QString, QString, QString> cases[] = {
            {"pic", "*.bmp", "/home/u", "/home/u/pic.bmp"},
            {"/other/b", "*.pgn", "/home/u", "/other/b.pgn"},
            {"/my.books/b", "*.pgn", "/home/u", "/my.books/b"},
            {"", "*.bmp", "/", "none"},
            {"typed", ".fen", "/", "/typed.fen"}};
        for (const auto& [name, filter, folder, path] : cases)
            QCOMPARE(chosenPath(name, filter, folder).value_or("none"), path);
        // Save Image As: an image extension, in any case, follows an image filter.
        const std::tuple<QString, QString, QString> renames[] = {
            {"a.b/c.PDF", "*.svg", "a.b/c.svg"},
            {"n.txt", "*.pdf", "n.txt"},
            {"d.pdf/n", "*.png", "d.pdf/n"},
            {"p.bmp", "*.jpg", "p.bmp"},
            {".png", "*.bmp", ".bmp"}};
        for (const auto& [name, filter, renamed] : renames)
            QCOMPARE(nameForImageFilter(name, filter), renamed);
        const QStringList drives =
            driveRoots({"/home", "/", "", "/media/usb/inner", "/home", "/media/usb"});
        QCOMPARE(drives, QStringList({"/", "/home", "/media/usb/inner", "/media/usb"}));
        // A name merely beginning like a root isn't inside it.
        QCOMPARE(driveOf("/homework", drives), QString("/"));
    }

    void filesAndFoldersOfAFolder() {
        QTemporaryDir dir;
        for (const char* name : {"a.pgn", "B.PGN", "c.fen", "noext", ".hidden.pgn", "z.pgn.bak"})
            writeFile(dir.filePath(QLatin1String(name)));
        for (const char* name : {"folder.pgn", "Beta", "alpha", ".git"})
            QDir(dir.path()).mkdir(QLatin1String(name));
        const QString path = dir.path();
        QCOMPARE(filesMatching(path, "*.pgn; *.fen"), QStringList({"a.pgn", "B.PGN", "c.fen"}));
        QCOMPARE(subfolders(path), QStringList({"alpha", "Beta", "folder.pgn"}));
        QCOMPARE(openableFolder(path + "/Beta/../alpha/").value_or(""), dir.filePath("alpha"));
        for (const QString& bad : {QString(), dir.filePath("a.pgn"), dir.filePath("missing")})
            QVERIFY(!openableFolder(bad));
    }

    void rowsOfTheFolderTree() {
        QStringList rows; // each as "path label depth open"
        for (const FolderRow& r : folderRows("/a/b", {"c", "D"}))
            rows << QString("%1 %2 %3 %4").arg(r.path, r.label).arg(r.depth).arg(int(r.open));
        QCOMPARE(rows, QStringList(
                           {"/ / 0 1", "/a a 1 1", "/a/b b 2 1", "/a/b/c c 3 0", "/a/b/D D 3 0"}));
    }
};

QTEST_GUILESS_MAIN(TstChooserRules)
#include "tst_chooser_rules.moc"
