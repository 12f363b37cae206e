#include "engines/engine_files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

static void touch(const QString& path, QFile::Permissions permissions = QFile::ReadOwner) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.setPermissions(permissions | QFile::WriteOwner));
}

class TstEngineFiles : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void outcomeOfTheSearch() {
        // The engine read gives way to one that exists; "py", "crafty" or none is
        // checked; the tool button shows when any engine is there.
        const std::tuple<bool, bool, QString, QString, QString> cases[] = {
            {false, true, "Popeye", "Crafty", "crafty shown"},
            {true, false, "cRAFTY", "", " shown"},
            {true, true, "", "Popeye", "py shown"},
            {true, true, "cRAFTY", "cRAFTY", "crafty shown"},
            {false, false, "Crafty", "", ""}};
        for (const auto& [py, crafty, read, after, checked] : cases) {
            const EngineMenu menu = locateEngines(py, crafty, read);
            QCOMPARE(menu.recentEngine, after);
            QCOMPARE(QString(menu.popeyeChecked ? "py" : "") +
                         (menu.craftyChecked ? "crafty" : "") + (menu.toolShown ? " shown" : ""),
                     checked);
        }
    }

    void programsFoundInAnyCaseAndOnlyIfExecutable() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        touch(folder + "py"); // not executable
        QVERIFY(findPopeye(folder).isEmpty());
        touch(folder + "Py.EXE", QFile::ExeOwner | QFile::ReadOwner);
        QCOMPARE(findPopeye(folder), folder + "Py.EXE");
        touch(folder + "PY.DAT");
        QCOMPARE(findPyDat(folder), folder + "PY.DAT");
    }

    void pyDatLines() {
        const PyDat table = parsePyDat("; comment\r\n\r\n"
                                       "00#\r\n01 2 \r\n0#=\n03MaxTime 30 '<\r10128\r\n"
                                       "90&&K=wKing\r\n90&&Q=wQueen\r\n"
                                       "11ignored\r\n-1ignored\r\n 5five\r\nabc\r\n90\r\n00h#");
        QStringList lists; // each box's list joined by "|"
        for (size_t box = 0; box < PopeyeLists::kCount; ++box)
            lists << table.lists.box(box).join(u'|');
        QCOMPARE(lists, QStringList({"#|=|c|h#", " 2 ", "", "MaxTime 30 '<", "", "five", "", "", "",
                                     "", "128"}));
        QCOMPARE(table.dictionary, QStringLiteral("&&K=wKing&&Q=wQueen&&"));
        // A one-character line ends the reading; what was read stays, the dictionary is closed.
        const PyDat cut = parsePyDat("00first\r\n;\r\n90&&P=wPawn\r\nx\r\n00second\r\n");
        QCOMPARE(cut.lists.stipulation, QStringList({"first"}));
        QCOMPARE(cut.dictionary, QStringLiteral("&&P=wPawn&&"));
        QCOMPARE(readPyDat("/nonexistent/py.dat").dictionary, QString("&&"));
    }

    void leftoversGoWithTheirGameFiles() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        for (const char* name : {"log.001", "game.001", "log.002", "game.003", "LOG.004",
                                 "game.004", "log.1234", "game.234", "log.pgn", "game.pgn"})
            touch(folder + name);
        // Only Crafty's numbered logs are leftovers, with their game files.
        QCOMPARE(clearLeftovers(folder), 3);
        QCOMPARE(QDir(folder).entryList(QDir::Files, QDir::Name),
                 QStringList({"game.003", "game.234", "game.pgn", "log.1234", "log.pgn"}));
        for (const char* name : {"Position.bin", "position.lrn", "BOOK.LRN", "book.bin"})
            touch(folder + name);
        deleteCraftyWorkFiles(folder);
        QCOMPARE(
            QDir(folder).entryList(QDir::Files, QDir::Name),
            QStringList({"book.bin", "game.003", "game.234", "game.pgn", "log.1234", "log.pgn"}));
    }
};

QTEST_APPLESS_MAIN(TstEngineFiles)
#include "tst_engine_files.moc"
