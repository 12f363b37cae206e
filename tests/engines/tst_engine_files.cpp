#include "engines/engine_files.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

void Touch(const QString& path, const QByteArray& content = "x", bool executable = false) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    if (executable) file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser);
}

} // namespace

class TstEngineFiles : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void outcomeOfTheSearch_data() {
        QTest::addColumn<bool>("py");
        QTest::addColumn<bool>("crafty");
        QTest::addColumn<QString>("read");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("checked");
        QTest::addColumn<bool>("tool");
        const QString none;
        const QString popeye = QStringLiteral("Popeye");
        const QString crafty = QStringLiteral("Crafty");
        for (const QString& read : {none, popeye, crafty}) {
            QTest::addRow("neither, read '%s'", qPrintable(read))
                << false << false << read << none << none << false;
            QTest::addRow("crafty only, read '%s'", qPrintable(read))
                << false << true << read << crafty << QStringLiteral("MNCrafty") << true;
        }
        for (const QString& read : {none, popeye}) {
            QTest::addRow("py only, read '%s'", qPrintable(read))
                << true << false << read << popeye << QStringLiteral("MNpy") << true;
            QTest::addRow("both, read '%s'", qPrintable(read))
                << true << true << read << popeye << QStringLiteral("MNpy") << true;
        }
        QTest::newRow("py only, read Crafty") << true << false << crafty << none << none << true;
        QTest::newRow("both, read Crafty")
            << true << true << crafty << crafty << QStringLiteral("MNCrafty") << true;
        QTest::newRow("both, read in other case")
            << true << true << QStringLiteral("cRAFTY") << QStringLiteral("cRAFTY")
            << QStringLiteral("MNCrafty") << true;
        QTest::newRow("both, other text passes unchanged")
            << true << true << QStringLiteral("Fritz") << QStringLiteral("Fritz") << none << true;
    }
    void outcomeOfTheSearch() {
        QFETCH(bool, py);
        QFETCH(bool, crafty);
        QFETCH(QString, read);
        QFETCH(QString, after);
        QFETCH(QString, checked);
        QFETCH(bool, tool);
        const EngineMenu menu = LocateEngines(py, crafty, read);
        QCOMPARE(menu.recentEngine, after);
        QCOMPARE(menu.pyEnabled, py);
        QCOMPARE(menu.craftyEnabled, crafty);
        QCOMPARE(menu.pyChecked, checked == QLatin1String("MNpy"));
        QCOMPARE(menu.craftyChecked, checked == QLatin1String("MNCrafty"));
        QCOMPARE(menu.toolShown, tool);
    }

    void programsFoundInAnyCaseAndOnlyIfExecutable() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        QVERIFY(FindPopeye(folder).isEmpty());
        Touch(folder + QStringLiteral("py"));
        QVERIFY(FindPopeye(folder).isEmpty());
        QVERIFY(QDir(folder).mkdir(QStringLiteral("CRAFTY")));
        QVERIFY(FindCrafty(folder).isEmpty());
        Touch(folder + QStringLiteral("Py.EXE"), "#!/bin/sh\n", true);
        QCOMPARE(FindPopeye(folder), folder + QStringLiteral("Py.EXE"));
        Touch(folder + QStringLiteral("Crafty.exe"), "#!/bin/sh\n", true);
        QCOMPARE(FindCrafty(folder), folder + QStringLiteral("Crafty.exe"));
        Touch(folder + QStringLiteral("PY.DAT"));
        QCOMPARE(FindPyDat(folder), folder + QStringLiteral("PY.DAT"));
        QVERIFY(FindPopeye(folder + QStringLiteral("missing/")).isEmpty());
    }

    void pyDatLines() {
        const PyDat table = ParsePyDat("; comment\r\n"
                                       "\r\n"
                                       "00#\r\n"
                                       "01 2 \r\n"
                                       "0#=\n"
                                       "03MaxTime 30 '<\r"
                                       "10128\r\n"
                                       "90&&K=wKing\r\n"
                                       "90&&Q=wQueen\r\n"
                                       "11ignored\r\n"
                                       "-1ignored\r\n"
                                       " 5five\r\n"
                                       "abc\r\n"
                                       "90\r\n"
                                       "00h#");
        QCOMPARE(table.lists[0], QStringList({QStringLiteral("#"), QStringLiteral("="),
                                              QStringLiteral("c"), QStringLiteral("h#")}));
        QCOMPARE(table.lists[1], QStringList({QStringLiteral(" 2 ")}));
        QCOMPARE(table.lists[3], QStringList({QStringLiteral("MaxTime 30 '<")}));
        QCOMPARE(table.lists[5], QStringList({QStringLiteral("five")}));
        QCOMPARE(table.lists[10], QStringList({QStringLiteral("128")}));
        QCOMPARE(table.dictionary, QStringLiteral("&&K=wKing&&Q=wQueen&&"));
        for (const int i : {2, 4, 6, 7, 8, 9})
            QVERIFY(table.lists[i].isEmpty());
    }

    // A line of one character other than ";" ends the reading; what was read
    // stays and the dictionary is still closed.
    void oneCharacterLineEndsTheReading() {
        const PyDat table = ParsePyDat("00first\r\n;\r\n90&&P=wPawn\r\nx\r\n00second\r\n");
        QCOMPARE(table.lists[0], QStringList({QStringLiteral("first")}));
        QCOMPARE(table.dictionary, QStringLiteral("&&P=wPawn&&"));
    }

    void missingOrBinaryTable() {
        QCOMPARE(ReadPyDat(QStringLiteral("/nonexistent/py.dat")).dictionary, QStringLiteral("&&"));
        QCOMPARE(ReadPyDat(QString()).dictionary, QStringLiteral("&&"));
        QByteArray noise(1 << 16, '\0');
        auto* random = QRandomGenerator::global();
        for (char& c : noise)
            c = static_cast<char>(random->bounded(256));
        const PyDat table = ParsePyDat(noise);
        QVERIFY(table.dictionary.endsWith(QLatin1String("&&")));
    }

    void leftoversGoWithTheirGameFiles() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        for (const char* name : {"log.001", "game.001", "log.002", "game.003", "LOG.004",
                                 "game.004", "log.1234", "other.txt", "game.234"})
            Touch(folder + QLatin1String(name));
        // "log.1234" names "log.234", which isn't there: it is visited once
        // and left, and the search still ends.
        QCOMPARE(ClearLeftovers(folder), 4);
        QDir d(folder);
        QCOMPARE(d.entryList(QDir::Files, QDir::Name),
                 QStringList({QStringLiteral("game.003"), QStringLiteral("log.1234"),
                              QStringLiteral("other.txt")}));
        QCOMPARE(ClearLeftovers(folder + QStringLiteral("missing/")), 0);
    }

    void craftyWorkFilesInAnyCase() {
        QTemporaryDir dir;
        const QString folder = dir.path() + QLatin1Char('/');
        for (const char* name : {"Position.bin", "position.lrn", "BOOK.LRN", "book.bin"})
            Touch(folder + QLatin1String(name));
        DeleteCraftyWorkFiles(folder);
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList({QStringLiteral("book.bin")}));
    }
};

QTEST_APPLESS_MAIN(TstEngineFiles)
#include "tst_engine_files.moc"
