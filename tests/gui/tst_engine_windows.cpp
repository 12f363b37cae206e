// The engine windows driven end to end by stand-in engines; the rules of the
// files, fields and stages of a run are tst_popeye's, tst_crafty's and
// tst_engine_files'.
#include "gui/crafty_window.h"
#include "gui/popeye_window.h"
#include "support/main_window_fixture.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QListWidget>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <optional>

using namespace marlith;
using marlith::testing::Fixture;

namespace {

// Reads the problem file named last on its command line and appends to the
// protocol file named there, in two parts with a pause, as the real solver
// holds its protocol until it ends.
const QByteArray kPopeye = R"sh(#!/bin/sh
for a; do printf '%s\n' "$a"; last=$a; done > py-args.txt
proto=$(sed -n 's/^Protocol //p' "$last" | tr -d '\r')
sleep 0.3
printf 'Popeye stand-in\r\n\r\n' >> "$proto"
tr -d '\r' < "$last" >> "$proto"
sleep 2
printf '%s\r\n' "solution: 1.Qd1-d8 ! zugzwang, and then a line long enough to wrap" >> "$proto"
)sh";

// Starts, and ends without a word.
const QByteArray kSilentPopeye = "#!/bin/sh\nsleep 0.2\n";

// Reads its commands from standard input. It opens the first free log at
// start, removes it at "log off" and opens the next number at "log on".
const QByteArray kCrafty = R"sh(#!/bin/sh
next() {
  n=$((n+1))
  while [ -e "$(printf 'log.%03d' "$n")" ]; do n=$((n+1)); done
  log=$(printf 'log.%03d' "$n"); game=$(printf 'game.%03d' "$n")
  : > "$log"; : > "$game"
}
n=0; next
while IFS= read -r line; do
  line=$(printf '%s' "$line" | tr -d '\r')
  printf '%s\n' "$line" >> received.txt
  case $line in
    "log off") rm -f "$log" "$game" ;;
    "log on") next ;;
    setboard*) board=${line#setboard } ;;
    analyze) sleep 0.3; printf 'Crafty stand-in\r\n\r\nposition %s\r\n' "$board" >> "$log" ;;
    quit) sleep 2; printf '  depth 9 done\n' >> "$log"; printf 'no line end' >> "$log"; exit 0 ;;
  esac
done
)sh";

// Entries of the stipulation box, and white pawns made neutral.
const QByteArray kPyDat = "00#\r\n00h#\r\n00NONE\r\n00ser- '[\r\n90&&P=nP\r\n";

// Scripts are made executable.
void writeOf(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    if (content.startsWith("#!"))
        QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser));
}

QByteArray readOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList Rows(QWidget* window) {
    QStringList rows;
    auto* list = window->findChild<QListWidget*>(QStringLiteral("solutionList"));
    for (int i = 0; i < list->count(); ++i)
        rows << list->item(i)->text();
    return rows;
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
        path = dir.path() + QLatin1Char('/') + sub;
        QDir().mkpath(path);
        if (!path.endsWith(QLatin1Char('/'))) path += QLatin1Char('/');
        for (const auto& [name, content] : files)
            writeOf(path + QLatin1String(name), content);
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
};

} // namespace

class TstEngineWindows : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void bothEnginesFoundAndTheRecentOneChecked() {
        Engines e({{"Py.exe", kSilentPopeye},
                   {"CRAFTY", kCrafty},
                   {"log.003", "x"},
                   {"game.003", "x"},
                   {"position.bin", "x"}},
                  {}, "RecentEngine = Crafty\r\n");
        Fixture& f = *e.f;
        QVERIFY(f.action("popeyeAction")->isEnabled() && f.action("craftyAction")->isEnabled());
        QVERIFY(f.action("craftyAction")->isChecked() && !f.action("popeyeAction")->isChecked());
        // Leftover logs go at start, with their game files.
        QVERIFY(e.files("log.*").isEmpty() && e.files("game.*").isEmpty());
        // The engine button runs the recent engine.
        QTest::mouseClick(f.tool("engineButton"), Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(f.window->craftyWindow()->isVisible());
        f.window->openPopeye();
        QVERIFY(f.action("popeyeAction")->isChecked() && !f.action("craftyAction")->isChecked());
        f.window->close();
        e.f.reset();
        QVERIFY(readOf(e.path + QStringLiteral("Marlith.ini")).contains("RecentEngine = Popeye"));
        QVERIFY(e.files("position.bin").isEmpty());
    }

    void popeyeFieldsFromTheBoardAndTheTable() {
        Engines e({{"py", kPopeye}, {"PY.DAT", kPyDat}});
        PopeyeWindow* popeyeWindow = e.popeye("4k3/8/8/8/8/8/P7/3QK3", {});
        QCOMPARE(popeyeWindow->paramBox(6)->currentText(), " Qd1 Ke1");
        QCOMPARE(popeyeWindow->paramBox(7)->currentText(), " Ke8");
        QCOMPARE(popeyeWindow->paramBox(8)->currentText(), " Pa2");

        // Entries build the field, shown in the box at the next tick; "NONE"
        // empties it.
        QComboBox* stipulation = popeyeWindow->paramBox(0);
        auto choose = [stipulation](const char* entry) {
            stipulation->setCurrentIndex(stipulation->findText(QLatin1String(entry)));
            Q_EMIT stipulation->activated(stipulation->currentIndex());
        };
        choose("h#");
        choose("ser- '[");
        QTRY_COMPARE(stipulation->currentText(), " ser-h#");
        choose("NONE");
        QCOMPARE(stipulation->currentText(), QString());
        QVERIFY(e.f->state.popeyeParams[0].isEmpty());
        // Nothing left to do: the timer rests.
        QTRY_VERIFY(!childOf<QTimer>(popeyeWindow, "pollTimer")->isActive());
        // The box with the focus marks its label.
        QVERIFY(QTest::qWaitForWindowActive(popeyeWindow));
        popeyeWindow->paramBox(2)->setFocus();
        QTRY_COMPARE(childOf<QLabel>(popeyeWindow, "conditionsLabel")->frameStyle(),
                     QFrame::Box | QFrame::Plain);
        stipulation->setFocus();
        QTRY_COMPARE(childOf<QLabel>(popeyeWindow, "conditionsLabel")->frameStyle(),
                     int(QFrame::NoFrame));
        // Typing sets the field, trimmed.
        QTest::keyClicks(stipulation->lineEdit(), QStringLiteral("  # "));
        QCOMPARE(e.f->state.popeyeParams[0], "#");

        childOf(popeyeWindow, "clearAllButton")->click();
        QVERIFY(e.f->state.popeyeParams[0].isEmpty() &&
                popeyeWindow->paramBox(6)->currentText().isEmpty());
        // Fields stay from one opening to the next; the pieces are new.
        QTest::keyClicks(popeyeWindow->paramBox(1)->lineEdit(), QStringLiteral("3"));
        childOf(popeyeWindow, "closeButton")->click();
        QVERIFY(!popeyeWindow->isVisible());
        e.f->window->openPopeye();
        QCOMPARE(popeyeWindow->paramBox(1)->currentText(), "3");
        QCOMPARE(popeyeWindow->paramBox(6)->currentText(), " Qd1 Ke1");
    }

    // Incomplete fields are refused; a solver that is gone runs nothing.
    void popeyeThatCannotStart() {
        Engines e({{"py", kPopeye}});
        PopeyeWindow* popeyeWindow = e.popeye("K7", {{1, QStringLiteral("1")}});
        childOf(popeyeWindow, "solveButton")->click();
        QCOMPARE(e.f->warnings, QStringList({QStringLiteral("Enter the stipulation!")}));
        QVERIFY(e.files("F*.tmp").isEmpty());
        QTest::keyClicks(popeyeWindow->paramBox(0)->lineEdit(), QStringLiteral("#"));
        QVERIFY(QFile::remove(e.path + QStringLiteral("py")));
        childOf(popeyeWindow, "solveButton")->click();
        QCOMPARE(Rows(popeyeWindow), QStringList({QStringLiteral("Calculating...")}));
        QCOMPARE(popeyeWindow->running(), int16_t(0));
        QVERIFY(childOf(popeyeWindow, "solveButton")->isEnabled());
        QCOMPARE(childOf(popeyeWindow, "closeButton")->text(), "Cl&ose");
    }

    // The whole road: the window hides during the run and comes back with
    // the protocol, read only once the solver has ended; the arguments reach
    // it unchanged, whatever the blanks, quotes and semicolons; the work
    // files are gone at the end.
    void popeyeSolvesInTheBackground() {
        Engines e({{"py", kPopeye}}, QStringLiteral("my \"engines\"; 'here'"));
        const QString maxmem = QStringLiteral("1 G; \"two\" 'three' $HOME `x` | & >y");
        PopeyeWindow* popeyeWindow =
            e.popeye("4k3/8/8/8/8/8/8/3QK3", {{0, QStringLiteral("#")},
                                              {1, QStringLiteral("2")},
                                              {3, QStringLiteral("maxtime 90")},
                                              {10, maxmem}});
        const QString problem = e.path + e.f->state.tempSeed + QStringLiteral("o.tmp");
        const QString protocol = e.path + e.f->state.tempSeed + QStringLiteral("i.tmp");
        writeOf(protocol, "old protocol, to be replaced\r\n");

        auto* solution = childOf(popeyeWindow, "solveButton");
        auto* close = childOf(popeyeWindow, "closeButton");
        QTest::mouseClick(solution, Qt::LeftButton);
        QCOMPARE(Rows(popeyeWindow), QStringList({QStringLiteral("Calculating...")}));
        QVERIFY(!solution->isEnabled());
        QCOMPARE(close->text(), "&Hide");
        QTest::mouseClick(close, Qt::LeftButton);
        QVERIFY(!popeyeWindow->isVisible());
        auto* clockLabel = childOf<QLabel>(popeyeWindow, "clockLabel");
        QTRY_COMPARE(clockLabel->text(), QStringLiteral("01:29"));

        QTRY_VERIFY_WITH_TIMEOUT(popeyeWindow->isVisible(), 10000);
        QStringList expected = {QStringLiteral("Popeye stand-in"), QStringLiteral("BeginProblem"),
                                QStringLiteral("Pieces"), QStringLiteral("White Qd1 Ke1"),
                                QStringLiteral("Black Ke8")};
        expected << wrapRows(QStringLiteral("Protocol ") + protocol)
                 << QStringLiteral("Stipulation #2") << QStringLiteral("Option NoBoard maxtime 90")
                 << QStringLiteral("EndProblem")
                 << QStringLiteral("solution: 1.Qd1-d8 ! zugzwang, and then a line")
                 << QStringLiteral("long enough to wrap");
        QCOMPARE(Rows(popeyeWindow), expected);
        QTRY_COMPARE(popeyeWindow->running(), int16_t(0));
        QVERIFY(solution->isEnabled());
        QCOMPARE(close->text(), "Cl&ose");
        QVERIFY(clockLabel->text().isEmpty());
        QVERIFY(!QFile::exists(protocol));
        QTRY_VERIFY(!childOf<QTimer>(popeyeWindow, "pollTimer")->isActive());
        QCOMPARE(QString::fromUtf8(readOf(e.path + QStringLiteral("py-args.txt"))),
                 QStringLiteral("-maxmem\n") + maxmem + QLatin1Char('\n') + problem +
                     QLatin1Char('\n'));

        childOf(popeyeWindow, "copySolutionButton")->click();
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 expected.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n"));
        childOf(popeyeWindow, "printSolutionButton")->click();
        // Without a printer the page goes to a file.
        if (QPrinterInfo::defaultPrinter().isNull())
            QVERIFY(QFile::exists(e.path + QStringLiteral("Solution.pdf")));
        QVERIFY(QFile::exists(problem));
        e.f->window->close();
        QVERIFY(!QFile::exists(problem));
    }

    // A solver that never writes leaves the run waiting, counting down to
    // zero and no further, with nothing else to see.
    void popeyeWithoutProtocolWaits() {
        Engines e({{"py", kSilentPopeye}});
        PopeyeWindow* popeyeWindow = e.popeye(
            "K7",
            {{0, QStringLiteral("#")}, {1, QStringLiteral("1")}, {3, QStringLiteral("MaxTime 1")}});
        childOf(popeyeWindow, "solveButton")->click();
        auto* clockLabel = childOf<QLabel>(popeyeWindow, "clockLabel");
        QTRY_COMPARE(clockLabel->text(), QStringLiteral("00:00"));
        QTest::qWait(1500);
        QCOMPARE(popeyeWindow->running(), int16_t(1));
        QCOMPARE(Rows(popeyeWindow), QStringList({QStringLiteral("Calculating...")}));
        QCOMPARE(clockLabel->text(), "00:00");
        // Leaving the window empties the clock until its next second.
        QVERIFY(QTest::qWaitForWindowActive(popeyeWindow));
        e.f->window->activateWindow();
        QTRY_VERIFY(!popeyeWindow->isActiveWindow());
        QVERIFY(clockLabel->text().isEmpty());
        QTRY_COMPARE(clockLabel->text(), QStringLiteral("00:00"));
        // The close box only hides the window, and the run goes on.
        popeyeWindow->close();
        QVERIFY(!popeyeWindow->isVisible());
        QCOMPARE(popeyeWindow->running(), int16_t(1));
    }

    // The engine reads its commands from the file on its standard input and
    // renumbers its log; the window shows the log of the run, read after the
    // engine ended, and log and game files go.
    void craftyAnalysesInTheBackground() {
        Engines e({{"crafty", kCrafty}}, QStringLiteral("a b; c"));
        e.f->type(QStringLiteral("4k3/8/8/8/8/8/8/4K3"));
        e.f->action("craftyAction")->trigger();
        CraftyWindow* craftyWindow = e.f->window->craftyWindow();
        QCOMPARE(craftyWindow->positionEdit()->text(), "4k3/8/8/8/8/8/8/4K3");
        childOf<QRadioButton>(craftyWindow, "blackOption")->setChecked(true);
        auto* depth = childOf<QComboBox>(craftyWindow, "depthBox");
        depth->setEditText(QStringLiteral("9"));

        auto* solution = childOf(craftyWindow, "solveButton");
        auto* close = childOf(craftyWindow, "closeButton");
        QTest::mouseClick(solution, Qt::LeftButton);
        QCOMPARE(Rows(craftyWindow).value(0), "Calculating...");
        QVERIFY(!solution->isEnabled());
        QCOMPARE(close->text(), "&Hide");
        // Clear All during a run takes the rows and the position, not the run.
        childOf(craftyWindow, "clearAllButton")->click();
        QVERIFY(Rows(craftyWindow).isEmpty() && craftyWindow->positionEdit()->text().isEmpty());
        // The close box only hides the window.
        craftyWindow->close();
        QVERIFY(!craftyWindow->isVisible());
        QTRY_COMPARE(childOf<QLabel>(craftyWindow, "clockLabel")->text(), QStringLiteral("00:01"));

        QTRY_VERIFY_WITH_TIMEOUT(craftyWindow->isVisible(), 10000);
        QCOMPARE(Rows(craftyWindow),
                 QStringList({QStringLiteral("Crafty stand-in"),
                              QStringLiteral("position 4k3/8/8/8/8/8/8/4K3 b - -"),
                              QStringLiteral("  depth 9 done")}));
        QTRY_COMPARE(craftyWindow->running(), int16_t(0));
        QVERIFY(solution->isEnabled());
        QCOMPARE(close->text(), "Cl&ose");
        QVERIFY(childOf<QLabel>(craftyWindow, "clockLabel")->text().isEmpty());
        QVERIFY(e.files("log.*").isEmpty() && e.files("game.*").isEmpty());
        QVERIFY(readOf(e.path + QStringLiteral("received.txt"))
                    .startsWith("log off\nponder off\nsd 9\nsetboard 4k3/8/8/8/8/8/8/4K3 b - -\n"));

        // Clear All keeps the depth; with no position nothing runs.
        childOf(craftyWindow, "clearAllButton")->click();
        QCOMPARE(depth->currentText(), "9");
        solution->click();
        QCOMPARE(e.f->warnings, QStringList({QStringLiteral("Enter the FEN position!")}));
        QCOMPARE(craftyWindow->running(), int16_t(0));
    }
};

QTEST_MAIN(TstEngineWindows)
#include "tst_engine_windows.moc"
