// The engine windows driven end to end by stand-in engines; the rules of the files, fields and
// stages of a run are tst_popeye's, tst_crafty's and tst_engine_files'.
#include "engines/popeye.h"
#include "support/main_window_fixture.h"

#include <optional>

using namespace marlith::testing;

namespace {

// Reads the problem file named last on its command line and appends to the protocol file named
// there, in two parts with a pause, as the real solver holds its protocol until it ends.
const QByteArray kPopeye = R"sh(#!/bin/sh
for a; do printf '%s\n' "$a"; last=$a; done > py-args.txt
proto=$(sed -n 's/^Protocol //p' "$last" | tr -d '\r')
sleep 0.3
printf 'Popeye stand-in\r\n\r\n' >> "$proto"
tr -d '\r' < "$last" >> "$proto"
sleep 2
printf '%s\r\n' "solution: 1.Qd1-d8 ! zugzwang, and then a line long enough to wrap" >> "$proto"
)sh";

// Reads its commands from standard input and writes the first log.
const QByteArray kCrafty = R"sh(#!/bin/sh
while IFS= read -r line; do
  line=$(printf '%s' "$line" | tr -d '\r')
  printf '%s\n' "$line" >> received.txt
  case $line in
    setboard*) board=${line#setboard } ;;
    analyze) sleep 0.3; : > game.001; printf 'Crafty stand-in\r\n\r\nposition %s\r\n' "$board" >> log.001 ;;
    quit) sleep 2; printf '  depth 9 done\nno line end' >> log.001; exit 0 ;;
  esac
done
)sh";

QStringList rowsOf(QWidget* window) {
    return itemTexts(window->findChild<QListWidget*>(u"solutionList"_s));
}

template <typename T = QPushButton> T* childOf(QWidget* window, const char* name) {
    T* child = window->findChild<T*>(QLatin1String(name));
    if (!child) qFatal("no control %s", name);
    return child;
}

// A program folder (perhaps a sub-folder of awkward name) holding the
// stand-ins, and the main window started in it.
struct Engines {
    QTemporaryDir dir;
    QString path; // ends with "/"
    std::optional<Fixture> f;

    explicit Engines(const QList<std::pair<const char*, QByteArray>>& files,
                     const QString& sub = {}, const QByteArray& settings = {}) {
        path = QDir::cleanPath(dir.filePath(sub)) + QLatin1Char('/');
        QDir().mkpath(path);
        for (const auto& [name, content] : files) {
            writeFile(path + QLatin1String(name), content);
            if (content.startsWith("#!")) // scripts are made executable
                QFile::setPermissions(path + QLatin1String(name),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
        f.emplace(QStringList(), settings, path.chopped(1));
    }
    QStringList files(const char* pattern) const {
        return QDir(path).entryList({QLatin1String(pattern)}, QDir::Files);
    }
    // The Popeye window for the position, with fields typed in.
    PopeyeWindow* popeye(const char* position, const QList<std::pair<int, QString>>& fields) {
        f->type(QLatin1String(position));
        f->window->openPopeye();
        for (const auto& [index, text] : fields)
            QTest::keyClicks(f->window->popeyeWindow()->paramBox(index)->lineEdit(), text);
        return f->window->popeyeWindow();
    }
    // Starts a run with the Solve button; its window hides at once.
    void solve(QWidget* window) {
        QTest::mouseClick(childOf(window, "solveButton"), Qt::LeftButton);
        QCOMPARE(rowsOf(window).value(0), "Calculating...");
        QVERIFY(!childOf(window, "solveButton")->isEnabled());
        QTest::mouseClick(childOf(window, "closeButton"), Qt::LeftButton);
        QVERIFY(!window->isVisible());
    }
    // The window comes back when the run has ended, ready for another.
    void awaitEnd(QWidget* window) {
        QTRY_VERIFY_WITH_TIMEOUT(window->isVisible(), 10000);
        QTRY_VERIFY(childOf(window, "solveButton")->isEnabled());
        QVERIFY(childOf<QLabel>(window, "clockLabel")->text().isEmpty());
    }
};

} // namespace

class TstEngineWindows : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // Both engines found, the recent one checked; leftover logs go at start, with their game files;
    // the engine button runs the recent engine. Crafty gets the side and depth; its log shows once
    // it ended. While the Popeye window is open its pieces follow the board; a game's stipulation
    // header fills the fields.
    void bothEnginesFoundAndCraftyAnalyses() {
        Engines e({{"Py.exe", kPopeye}, {"CRAFTY", kCrafty}, {"log.003", "x"}, {"game.003", "x"}},
                  u"a b; c"_s, "RecentEngine = Crafty\r\n");
        Fixture& f = *e.f;
        QVERIFY(f.action("popeyeAction")->isEnabled() && f.action("craftyAction")->isChecked());
        QVERIFY(e.files("log.*").isEmpty() && e.files("game.*").isEmpty());
        f.type(u"4k3/8/8/8/8/8/8/4K3"_s);
        QTest::mouseClick(f.child("engineButton"), Qt::LeftButton, {}, QPoint(5, 5));
        CraftyWindow* c = f.window->craftyWindow();
        QVERIFY(c->isVisible());
        QCOMPARE(c->positionEdit()->text(), "4k3/8/8/8/8/8/8/4K3");
        childOf<QRadioButton>(c, "blackOption")->setChecked(true);
        childOf<QComboBox>(c, "depthBox")->setEditText(u"9"_s);
        e.solve(c);
        QTRY_COMPARE(childOf<QLabel>(c, "clockLabel")->text(), u"00:01"_s);
        e.awaitEnd(c);
        QCOMPARE(rowsOf(c), QStringList({"Crafty stand-in", "position 4k3/8/8/8/8/8/8/4K3 b - -",
                                         "  depth 9 done"}));
        QVERIFY(e.files("log.*").isEmpty() && e.files("game.*").isEmpty());
        QVERIFY(readFile(e.path + u"received.txt"_s).contains("\nsd 9\n"));
        // With no position nothing runs.
        childOf(c, "clearAllButton")->click();
        childOf(c, "solveButton")->click();
        QCOMPARE(f.warnings, QStringList({u"Enter the FEN position!"_s}));
        f.openBook(u"b.fen"_s, "[Stipulation \"h#3\"]\n4k3/8/8/8/8/8/8/3QK3 w - -\n"
                               "[stipulation \"#2\"]\n8/8/8/8/8/8/8/K7 w - -\n");
        PopeyeWindow* w = e.popeye("", {});
        const PopeyeFields& p = f.state.popeyeFields;
        QCOMPARE(QStringList({p.stipulation, p.moves, p.whitePieces, p.blackPieces}),
                 QStringList({"h#", "3", "Qd1 Ke1", "Ke8"}));
        f.window->bookPanel()->gameScrollBar()->setValue(2);
        QCOMPARE(QStringList({p.stipulation, p.moves, p.whitePieces, p.blackPieces}),
                 QStringList({"#", "2", "Ka1", ""}));
        QCOMPARE(w->paramBox(6)->currentText(), " Ka1");
        f.window->close();
        e.f.reset();
        QVERIFY(readFile(e.path + u"Marlith.ini"_s).contains("RecentEngine = Popeye"));
    }

    // Incomplete fields are refused; a solver that is gone runs nothing; an
    // engine that ends without a result ends the run at once, its own words
    // and its exit status in the list, the run's files gone.
    void runsThatEndWithoutAResult() {
        Engines e({{"py", "#!/bin/sh\necho 'not enough memory for -maxmem 1G' >&2\nexit 3\n"},
                   {"crafty", "#!/bin/sh\necho 'Illegal position, no king'\nexit 1\n"}});
        PopeyeWindow* popeye = e.popeye("K7", {{1, u"2"_s}});
        childOf(popeye, "solveButton")->click();
        QCOMPARE(e.f->warnings, QStringList{"Enter the stipulation!"});
        QVERIFY(e.files("*.tmp").isEmpty());
        QTest::keyClicks(popeye->paramBox(0)->lineEdit(), u"#"_s);
        e.solve(popeye);
        e.awaitEnd(popeye);
        QCOMPARE(rowsOf(popeye), QStringList({"not enough memory for -maxmem 1G",
                                              "Popeye ended without a result (exit status 3)."}));
        QVERIFY(e.files("*.tmp").isEmpty() && QFile::remove(e.path + u"py"_s));
        childOf(popeye, "solveButton")->click();
        QVERIFY(!popeye->running() && childOf(popeye, "solveButton")->isEnabled());
        e.f->action("craftyAction")->trigger();
        CraftyWindow* crafty = e.f->window->craftyWindow();
        e.solve(crafty);
        e.awaitEnd(crafty);
        QCOMPARE(rowsOf(crafty), QStringList({"Illegal position, no king",
                                              "Crafty ended without a result (exit status 1)."}));
    }

    // A run that doesn't end is stopped by Escape; what it wrote stays.
    void stoppingARun() {
        Engines e({{"py", QByteArray("#!/bin/sh\nfor a; do last=$a; done\n"
                                     "proto=$(sed -n 's/^Protocol //p' \"$last\" | tr -d '\\r')\n"
                                     "printf 'found so far\\n' >> \"$proto\"\nexec sleep 30\n")}});
        PopeyeWindow* w = e.popeye("K7", {{0, u"#"_s}, {1, u"2"_s}});
        w->show();
        childOf(w, "solveButton")->click();
        QTRY_COMPARE(rowsOf(w), QStringList{"found so far"});
        QTest::keyClick(w, Qt::Key_Escape);
        QCOMPARE(rowsOf(w), QStringList({"found so far", "The run was stopped."}));
        QVERIFY(childOf(w, "solveButton")->isEnabled() && !childOf(w, "stopButton")->isVisible());
        QVERIFY(e.files("*.tmp").isEmpty());
        // Closing the program during a run ends the run and its files.
        childOf(w, "solveButton")->click();
        QTRY_COMPARE(rowsOf(w), QStringList{"found so far"});
        e.f->window->close();
        QVERIFY(e.files("*.tmp").isEmpty() && !w->running());
    }

    // The run goes on with the window hidden; a stipulation typed with its
    // number gives it to the moves; the arguments reach the solver whole.
    void popeyeSolvesInTheBackground() {
        Engines e({{"py", kPopeye}}, u"my \"engines\"; 'here'"_s);
        const QString maxmem = u"1 G; \"two\" 'three' $HOME `x` | & >y"_s;
        PopeyeWindow* w = e.popeye("4k3/8/8/8/8/8/8/3QK3",
                                   {{0, "#2"}, {1, "2"}, {3, "maxtime 90"}, {10, maxmem}});
        const QString problem = e.path + e.f->state.tempSeed + u"o.tmp"_s;
        const QString protocol = e.path + e.f->state.tempSeed + u"i.tmp"_s;
        writeFile(protocol, "old protocol, to be replaced\r\n");
        e.solve(w);
        QCOMPARE(QStringList({w->paramBox(0)->currentText(), w->paramBox(1)->currentText()}),
                 QStringList({"#", "2"}));
        QTRY_COMPARE(childOf<QLabel>(w, "clockLabel")->text(), "limit 01:29");
        QTRY_COMPARE(rowsOf(w).value(0), "Popeye stand-in");
        QVERIFY(w->running());
        e.awaitEnd(w);
        QVERIFY(e.files("*.tmp").isEmpty() && !QFile::exists(protocol));
        // The fields reach the problem file (its lines are tst_popeye's), the
        // solution is wrapped, and Copy takes the rows as shown.
        const QStringList rows = rowsOf(w);
        QVERIFY(rows.contains("White Qd1 Ke1") && rows.contains("Stipulation #2") &&
                rows.contains("Option NoBoard maxtime 90"));
        QCOMPARE(
            rows.mid(rows.size() - 2),
            QStringList({"solution: 1.Qd1-d8 ! zugzwang, and then a line", "long enough to wrap"}));
        QCOMPARE(QString::fromUtf8(readFile(e.path + u"py-args.txt"_s)),
                 "-maxmem\n" + maxmem + "\n" + problem + "\n");
        childOf(w, "copySolutionButton")->click();
        QCOMPARE(QGuiApplication::clipboard()->text(), rows.join("\r\n") + "\r\n");
    }
};

QTEST_MAIN(TstEngineWindows)
#include "tst_engine_windows.moc"
