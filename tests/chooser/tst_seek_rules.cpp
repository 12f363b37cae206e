#include "chooser/seek_rules.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

void Touch(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write("x");
}

} // namespace

class TstSeekRules : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void entryPerPurpose_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("last");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QStringList>("filters");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("name");
        const QStringList books{"*.fen", "*.epd", "*.pbm", "*.pgn"};
        const QStringList pictures{"*.bmp", "*.gif"};
        QTest::newRow("save image keeps to bmp")
            << 0 << "*.gif"
            << "File Save As..." << QStringList{"*.bmp"} << "*.bmp"
            << "Marlith.bmp";
        QTest::newRow("book keeps last book filter") << 1 << "*.pgn"
                                                     << "Open Book" << books << "*.pgn"
                                                     << "";
        QTest::newRow("book after image save") << 1 << "*.bmp"
                                               << "Open Book" << books << "*.fen"
                                               << "";
        QTest::newRow("book after style import") << 1 << "*.sty"
                                                 << "Open Book" << books << "*.fen"
                                                 << "";
        QTest::newRow("book keeps a typed filter") << 1 << "*.txt"
                                                   << "Open Book" << books << "*.txt"
                                                   << "";
        QTest::newRow("board after gif") << 2 << "*.gif"
                                         << "Load Board" << pictures << "*.gif"
                                         << "Marlith.gif";
        QTest::newRow("board after book") << 2 << "*.pgn"
                                          << "Load Board" << pictures << "*.bmp"
                                          << "Marlith.bmp";
        QTest::newRow("pieces after gif") << 3 << "*.gif"
                                          << "Load Pieces" << pictures << "*.gif"
                                          << "Marlith.gif";
        QTest::newRow("pieces after bmp") << 3 << "*.bmp"
                                          << "Load Pieces" << pictures << "*.bmp"
                                          << "Marlith.bmp";
        QTest::newRow("style file") << 4 << "*.gif"
                                    << "Import Styles from..." << QStringList{"*.sty"} << "*.sty"
                                    << "Marlith.sty";
    }
    void entryPerPurpose() {
        QFETCH(int, mode);
        QFETCH(QString, last);
        const std::optional<SeekEntry> entry = SeekEntryFor(mode, last);
        QVERIFY(entry);
        QTEST(entry->caption, "caption");
        QTEST(entry->filters, "filters");
        QTEST(entry->filter, "filter");
        QTEST(entry->name, "name");
    }

    void unknownPurposeOffersNothing() {
        for (const int mode : {-1, 5, 32767, -32768})
            QVERIFY(!SeekEntryFor(mode, QStringLiteral("*.pgn")));
    }

    void okPath_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("path");
        QTest::newRow("bare name takes extension and folder") << "pic"
                                                              << "*.bmp"
                                                              << "/home/u"
                                                              << "/home/u/pic.bmp";
        QTest::newRow("any dot keeps the name") << "a.b"
                                                << "*.bmp"
                                                << "/home/u"
                                                << "/home/u/a.b";
        QTest::newRow("filter without dot adds nothing") << "a"
                                                         << "*"
                                                         << "/home/u"
                                                         << "/home/u/a";
        QTest::newRow("extension is all after the first dot") << "a"
                                                              << "*.tar.gz"
                                                              << "/d"
                                                              << "/d/a.tar.gz";
        QTest::newRow("full path ignores the folder") << "/other/b"
                                                      << "*.pgn"
                                                      << "/home/u"
                                                      << "/other/b.pgn";
        QTest::newRow("dot in a folder name") << "/my.books/b"
                                              << "*.pgn"
                                              << "/home/u"
                                              << "/my.books/b";
        QTest::newRow("relative path stands as typed") << "sub/b"
                                                       << "*.pgn"
                                                       << "/home/u"
                                                       << "sub/b.pgn";
        QTest::newRow("file in the root") << "x.bmp"
                                          << "*.bmp"
                                          << "/"
                                          << "/x.bmp";
        QTest::newRow("folder given with slash") << "x"
                                                 << "*.bmp"
                                                 << "/media/usb/"
                                                 << "/media/usb/x.bmp";
    }
    void okPath() {
        QFETCH(QString, name);
        QFETCH(QString, filter);
        QFETCH(QString, folder);
        const std::optional<QString> path = ChosenPath(name, filter, folder);
        QVERIFY(path);
        QTEST(*path, "path");
    }

    void emptyNameIsNoChoice() {
        QVERIFY(!ChosenPath(QString(), QStringLiteral("*.bmp"), QStringLiteral("/home")));
    }

    void drives() {
        const QStringList drives =
            DriveRoots({"/home", "/", "", "/media/usb", "/home", "/media/usb/inner"});
        QCOMPARE(drives, QStringList({"/", "/home", "/media/usb", "/media/usb/inner"}));
        QCOMPARE(DriveRoots({}), QStringList{"/"});

        QCOMPARE(DriveOf("/home/u/books", drives), QStringLiteral("/home"));
        QCOMPARE(DriveOf("/home", drives), QStringLiteral("/home"));
        // A name that merely begins like a mount point is not inside it.
        QCOMPARE(DriveOf("/homework", drives), QStringLiteral("/"));
        QCOMPARE(DriveOf("/media/usb/inner/x", drives), QStringLiteral("/media/usb/inner"));
        QCOMPARE(DriveOf("/media/usb/innerx", drives), QStringLiteral("/media/usb"));
        QCOMPARE(DriveOf("/", drives), QStringLiteral("/"));
        QCOMPARE(DriveOf(QString(), drives), QStringLiteral("/"));
    }

    void filesAndFoldersOfAFolder() {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        for (const char* name : {"a.pgn", "B.PGN", "c.fen", "noext", ".hidden.pgn", "z.pgn.bak"})
            Touch(dir.filePath(QLatin1String(name)));
        QDir(dir.path()).mkdir(QStringLiteral("folder.pgn"));
        QDir(dir.path()).mkdir(QStringLiteral("Beta"));
        QDir(dir.path()).mkdir(QStringLiteral("alpha"));
        QDir(dir.path()).mkdir(QStringLiteral(".git"));

        QCOMPARE(FilesMatching(dir.path(), QStringLiteral("*.pgn")),
                 QStringList({"a.pgn", "B.PGN"}));
        QCOMPARE(FilesMatching(dir.path(), QStringLiteral("*.pgn; *.fen")),
                 QStringList({"a.pgn", "B.PGN", "c.fen"}));
        const QStringList all{"a.pgn", "B.PGN", "c.fen", "noext", "z.pgn.bak"};
        QCOMPARE(FilesMatching(dir.path(), QStringLiteral("*.*")), all);
        QCOMPARE(FilesMatching(dir.path(), QString()), all);
        QCOMPARE(FilesMatching(dir.path(), QStringLiteral("noext")), QStringList{"noext"});
        // A pattern that is no wildcard expression names a file as it stands.
        QVERIFY(FilesMatching(dir.path(), QStringLiteral("[")).isEmpty());
        Touch(dir.filePath(QStringLiteral("[")));
        QCOMPARE(FilesMatching(dir.path(), QStringLiteral("[")), QStringList{"["});
        QCOMPARE(FilesMatching(dir.path(), QStringLiteral("?.fen")), QStringList{"c.fen"});
        QVERIFY(FilesMatching(dir.filePath(QStringLiteral("gone")), QString()).isEmpty());

        QCOMPARE(Subfolders(dir.path()), QStringList({"alpha", "Beta", "folder.pgn"}));
        QVERIFY(Subfolders(dir.filePath(QStringLiteral("a.pgn"))).isEmpty());
    }

    void openableFolders() {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QDir(dir.path()).mkdir(QStringLiteral("in"));
        Touch(dir.filePath(QStringLiteral("f")));
        QCOMPARE(OpenableFolder(dir.path() + QStringLiteral("/in/../in/")).value_or(QString()),
                 dir.filePath(QStringLiteral("in")));
        QCOMPARE(OpenableFolder(QStringLiteral("/")).value_or(QString()), QStringLiteral("/"));
        QVERIFY(!OpenableFolder(QString()));
        QVERIFY(!OpenableFolder(dir.filePath(QStringLiteral("f"))));
        QVERIFY(!OpenableFolder(dir.filePath(QStringLiteral("missing"))));
    }

    void folderRows() {
        const std::vector<FolderRow> rows = FolderRows(QStringLiteral("/a/b"), {"c", "D"});
        QCOMPARE(rows.size(), size_t(5));
        const QStringList paths{"/", "/a", "/a/b", "/a/b/c", "/a/b/D"};
        const QStringList labels{"/", "a", "b", "c", "D"};
        const std::vector<int> depths{0, 1, 2, 3, 3};
        for (size_t i = 0; i < rows.size(); ++i) {
            QCOMPARE(rows[i].path, paths[int(i)]);
            QCOMPARE(rows[i].label, labels[int(i)]);
            QCOMPARE(rows[i].depth, depths[i]);
            QCOMPARE(rows[i].open, i < 3);
        }

        const std::vector<FolderRow> root = FolderRows(QStringLiteral("/"), {"x"});
        QCOMPARE(root.size(), size_t(2));
        QCOMPARE(root[1].path, QStringLiteral("/x"));
        QCOMPARE(root[1].depth, 1);
        QVERIFY(root[0].open && !root[1].open);
    }
};

QTEST_GUILESS_MAIN(TstSeekRules)
#include "tst_seek_rules.moc"
