#include "engines/crafty_window.h"
#include "engines/popeye_window.h"
#include "support/main_window_fixture.h"

#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QGuiApplication>
#include <QListWidget>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

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

const QByteArray kPyDat = "; stand-in table\r\n"
                          "00#\r\n"
                          "00h#\r\n"
                          "00NONE\r\n"
                          "00ser- '[\r\n"
                          "00odd '?\r\n"
                          "03Intelligent\r\n"
                          "90&&P=nP\r\n";

void Write(const QString& path, const QByteArray& content, bool executable = false) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    if (executable)
        QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser));
}

QByteArray Read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList Rows(QWidget* window) {
    QStringList rows;
    auto* list = window->findChild<QListWidget*>(QStringLiteral("List1"));
    for (int i = 0; i < list->count(); ++i)
        rows << list->item(i)->text();
    return rows;
}

QStringList FilesLike(const QString& folder, const QString& pattern) {
    return QDir(folder).entryList({pattern}, QDir::Files, QDir::Name);
}

template <typename T> T* Child(QWidget* window, const char* name) {
    T* child = window->findChild<T*>(QLatin1String(name));
    if (!child) qFatal("no control %s", name);
    return child;
}

void Choose(QComboBox* combo, const QString& entry) {
    const int index = combo->findText(entry);
    QVERIFY(index >= 0);
    combo->setCurrentIndex(index);
    Q_EMIT combo->activated(index);
}

// A program folder holding the stand-ins, made before the main window looks.
struct EngineFolder {
    QTemporaryDir dir;
    QString path;
    explicit EngineFolder(const QString& sub = {}) {
        path = dir.path() + QLatin1Char('/') + sub;
        QDir().mkpath(path);
        if (!path.endsWith(QLatin1Char('/'))) path += QLatin1Char('/');
    }
    QString folder() const { return path.chopped(1); }
};

} // namespace

class TstEngineWindows : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void noEnginesNoEntries() {
        Fixture f;
        QVERIFY(!f.action("MNpy")->isEnabled());
        QVERIFY(!f.action("MNCrafty")->isEnabled());
        QVERIFY(f.tool(QStringLiteral("Image4(8)"))->isHidden());
        QVERIFY(f.state.recentEngine.isEmpty());
    }

    void bothEnginesFoundAndTheRecentOneChecked() {
        EngineFolder engines;
        Write(engines.path + QStringLiteral("Py.exe"), kSilentPopeye, true);
        Write(engines.path + QStringLiteral("CRAFTY"), kCrafty, true);
        for (const char* name : {"log.003", "game.003", "log.007", "position.bin", "book.lrn"})
            Write(engines.path + QLatin1String(name), "x");
        {
            Fixture f({}, "RecentEngine = Crafty\r\n", engines.folder());
            QVERIFY(f.action("MNpy")->isEnabled() && f.action("MNCrafty")->isEnabled());
            QVERIFY(f.action("MNCrafty")->isChecked());
            QVERIFY(!f.action("MNpy")->isChecked());
            QVERIFY(!f.tool(QStringLiteral("Image4(8)"))->isHidden());
            // Leftover logs go at start, with their game files.
            QVERIFY(FilesLike(engines.path, QStringLiteral("log.*")).isEmpty());
            QVERIFY(FilesLike(engines.path, QStringLiteral("game.*")).isEmpty());
            // Py.dat is missing: the dictionary is the closing mark alone.
            QCOMPARE(f.state.pyDatDictionary, QStringLiteral("&&"));
            QTest::mouseClick(f.tool(QStringLiteral("Image4(8)")), Qt::LeftButton, {},
                              QPoint(5, 5));
            QVERIFY(f.form->form9()->isVisible());
            QCOMPARE(f.form->form9()->windowTitle(), QStringLiteral("Crafty"));
            f.form->MNpy_Click();
            QVERIFY(f.action("MNpy")->isChecked() && !f.action("MNCrafty")->isChecked());
            QCOMPARE(f.state.recentEngine, QStringLiteral("Popeye"));
            f.form->close();
        }
        QVERIFY(
            Read(engines.path + QStringLiteral("Marlith.ini")).contains("RecentEngine = Popeye"));
        QVERIFY(FilesLike(engines.path, QStringLiteral("position.bin")).isEmpty());
        QVERIFY(FilesLike(engines.path, QStringLiteral("book.lrn")).isEmpty());
    }

    void popeyeFieldsFromTheBoardAndTheTable() {
        EngineFolder engines;
        Write(engines.path + QStringLiteral("py"), kPopeye, true);
        Write(engines.path + QStringLiteral("PY.DAT"), kPyDat);
        Fixture f({}, {}, engines.folder());
        QCOMPARE(f.state.recentEngine, QStringLiteral("Popeye"));
        f.type(QStringLiteral("4k3/8/8/8/8/8/P7/3QK3"));
        f.action("MNpy")->trigger();
        Form8* form8 = f.form->form8();
        QVERIFY(form8->isVisible());
        QCOMPARE(form8->combo1(6)->currentText(), QStringLiteral(" Qd1 Ke1"));
        QCOMPARE(form8->combo1(7)->currentText(), QStringLiteral(" Ke8"));
        QCOMPARE(form8->combo1(8)->currentText(), QStringLiteral(" Pa2"));
        QCOMPARE(f.state.pyParam[6], QStringLiteral("Qd1 Ke1"));
        QCOMPARE(form8->combo1(0)->count(), 5);
        QCOMPARE(form8->combo1(3)->count(), 1);

        // Entries build the field; the next tick shows it in the box.
        QComboBox* stipulation = form8->combo1(0);
        Choose(stipulation, QStringLiteral("h#"));
        QTRY_COMPARE(stipulation->currentText(), QStringLiteral(" h#"));
        Choose(stipulation, QStringLiteral("ser- '["));
        QTRY_COMPARE(stipulation->currentText(), QStringLiteral(" ser-h#"));
        QCOMPARE(f.state.pyParam[0], QStringLiteral("ser-h#"));
        Choose(stipulation, QStringLiteral("odd '?"));
        QTRY_COMPARE(stipulation->currentText(), QStringLiteral(" ser-h#"));
        Choose(stipulation, QStringLiteral("NONE"));
        QCOMPARE(stipulation->currentText(), QString());
        QVERIFY(f.state.pyParam[0].isEmpty());
        // The box with the focus marks its label.
        QVERIFY(QTest::qWaitForWindowActive(form8));
        form8->combo1(2)->setFocus();
        QTRY_COMPARE(Child<QLabel>(form8, "Label1(2)")->frameStyle(), QFrame::Box | QFrame::Plain);
        QCOMPARE(Child<QLabel>(form8, "Label1(0)")->frameStyle(), int(QFrame::NoFrame));
        stipulation->setFocus();
        QTRY_COMPARE(Child<QLabel>(form8, "Label1(2)")->frameStyle(), int(QFrame::NoFrame));
        // Typing sets the field, trimmed.
        QTest::keyClicks(stipulation->lineEdit(), QStringLiteral("  # "));
        QCOMPARE(f.state.pyParam[0], QStringLiteral("#"));
        // Nothing left to do: the timer rests.
        QTRY_VERIFY(!Child<QTimer>(form8, "Timer1")->isActive());

        Child<QPushButton>(form8, "Command1")->click();
        for (int i = 0; i < 11; ++i) {
            QVERIFY(f.state.pyParam[static_cast<size_t>(i)].isEmpty());
            QVERIFY(form8->combo1(i)->currentText().isEmpty());
        }
        // Fields stay from one opening to the next; the pieces are new.
        QTest::keyClicks(form8->combo1(1)->lineEdit(), QStringLiteral("3"));
        Child<QPushButton>(form8, "Command3")->click();
        QVERIFY(!form8->isVisible());
        f.form->MNpy_Click();
        QCOMPARE(form8->combo1(1)->currentText(), QStringLiteral("3"));
        QCOMPARE(form8->combo1(6)->currentText(), QStringLiteral(" Qd1 Ke1"));
    }

    void popeyeRefusesIncompleteFields() {
        EngineFolder engines;
        Write(engines.path + QStringLiteral("py"), kPopeye, true);
        Fixture f({}, {}, engines.folder());
        f.form->MNpy_Click();
        Form8* form8 = f.form->form8();
        auto* solution = Child<QPushButton>(form8, "Command2");
        solution->click();
        QTest::keyClicks(form8->combo1(0)->lineEdit(), QStringLiteral("#"));
        solution->click();
        QTest::keyClicks(form8->combo1(1)->lineEdit(), QStringLiteral("2"));
        solution->click();
        QCOMPARE(f.warnings, QStringList({QStringLiteral("Enter the stipulation!"),
                                          QStringLiteral("Enter the number of moves!"),
                                          QStringLiteral("Enter the pieces list!")}));
        QCOMPARE(form8->lePy(), int16_t(0));
        QVERIFY(FilesLike(engines.path, QStringLiteral("F*.tmp")).isEmpty());
    }

    // The whole road: the window hides during the run and comes back with
    // the protocol, read only once the solver has ended; the arguments reach
    // it unchanged, whatever the blanks, quotes and semicolons; the work
    // files are gone at the end.
    void popeyeSolvesInTheBackground() {
        EngineFolder engines(QStringLiteral("my \"engines\"; 'here'"));
        Write(engines.path + QStringLiteral("py"), kPopeye, true);
        QString problem;
        QString protocol;
        {
            Fixture f({}, {}, engines.folder());
            f.type(QStringLiteral("4k3/8/8/8/8/8/8/3QK3"));
            f.form->MNpy_Click();
            Form8* form8 = f.form->form8();
            QTest::keyClicks(form8->combo1(0)->lineEdit(), QStringLiteral("#"));
            QTest::keyClicks(form8->combo1(1)->lineEdit(), QStringLiteral("2"));
            QTest::keyClicks(form8->combo1(3)->lineEdit(), QStringLiteral("maxtime 90"));
            const QString maxmem = QStringLiteral("1 G; \"two\" 'three' $HOME `x` | & >y");
            QTest::keyClicks(form8->combo1(10)->lineEdit(), maxmem);
            problem = engines.path + f.state.tempSeed + QStringLiteral("o.tmp");
            protocol = engines.path + f.state.tempSeed + QStringLiteral("i.tmp");
            Write(protocol, "old protocol, to be replaced\r\n");

            auto* solution = Child<QPushButton>(form8, "Command2");
            auto* close = Child<QPushButton>(form8, "Command3");
            QTest::mouseClick(solution, Qt::LeftButton);
            QCOMPARE(Rows(form8), QStringList({QStringLiteral("Calculating...")}));
            QCOMPARE(form8->lePy(), int16_t(1));
            QVERIFY(!solution->isEnabled());
            QCOMPARE(close->text(), QStringLiteral("&Hide"));
            QCOMPARE(Read(problem), QByteArray("BeginProblem\r\nPieces\r\nWhite Qd1 Ke1\r\n"
                                               "Black Ke8\r\nProtocol ") +
                                        protocol.toUtf8() +
                                        "\r\nStipulation #2\r\n"
                                        "Option NoBoard maxtime 90\r\nEndProblem\r\n");
            QTest::mouseClick(close, Qt::LeftButton);
            QVERIFY(!form8->isVisible());
            auto* label2 = Child<QLabel>(form8, "Label2");
            QTRY_COMPARE(label2->text(), QStringLiteral("01:29"));

            QTRY_VERIFY_WITH_TIMEOUT(form8->isVisible(), 10000);
            QStringList expected = {QStringLiteral("Popeye stand-in"),
                                    QStringLiteral("BeginProblem"), QStringLiteral("Pieces"),
                                    QStringLiteral("White Qd1 Ke1"), QStringLiteral("Black Ke8")};
            expected << WrapRows(QStringLiteral("Protocol ") + protocol);
            expected << QStringLiteral("Stipulation #2")
                     << QStringLiteral("Option NoBoard maxtime 90") << QStringLiteral("EndProblem")
                     << QStringLiteral("solution: 1.Qd1-d8 ! zugzwang, and then a line")
                     << QStringLiteral("long enough to wrap");
            QCOMPARE(Rows(form8), expected);
            QTRY_COMPARE(form8->lePy(), int16_t(0));
            QVERIFY(solution->isEnabled());
            QCOMPARE(close->text(), QStringLiteral("Cl&ose"));
            QVERIFY(label2->text().isEmpty());
            QVERIFY(!QFile::exists(protocol));
            QVERIFY(QFile::exists(problem));
            QTRY_VERIFY(!Child<QTimer>(form8, "Timer1")->isActive());
            QCOMPARE(QString::fromUtf8(Read(engines.path + QStringLiteral("py-args.txt"))),
                     QStringLiteral("-maxmem\n") + maxmem + QLatin1Char('\n') + problem +
                         QLatin1Char('\n'));

            Child<QPushButton>(form8, "Command4")->click();
            QCOMPARE(QGuiApplication::clipboard()->text(),
                     expected.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n"));
            Child<QPushButton>(form8, "Command5")->click();
            // Without a printer the page goes to a file.
            if (QPrinterInfo::defaultPrinter().isNull())
                QVERIFY(QFile::exists(engines.path + QStringLiteral("Solution.pdf")));
            Child<QPushButton>(form8, "Command1")->click();
            Child<QPushButton>(form8, "Command4")->click();
            QVERIFY(QGuiApplication::clipboard()->text().isEmpty());
            f.form->close();
        }
        QVERIFY(!QFile::exists(problem));
    }

    // A solver that never writes leaves the run waiting, counting down to
    // zero and no further, with nothing else to see.
    void popeyeWithoutProtocolWaits() {
        EngineFolder engines;
        Write(engines.path + QStringLiteral("py"), kSilentPopeye, true);
        Fixture f({}, {}, engines.folder());
        f.type(QStringLiteral("K7"));
        f.form->MNpy_Click();
        Form8* form8 = f.form->form8();
        QTest::keyClicks(form8->combo1(0)->lineEdit(), QStringLiteral("#"));
        QTest::keyClicks(form8->combo1(1)->lineEdit(), QStringLiteral("1"));
        QTest::keyClicks(form8->combo1(3)->lineEdit(), QStringLiteral("MaxTime 1"));
        Child<QPushButton>(form8, "Command2")->click();
        QTRY_COMPARE(Child<QLabel>(form8, "Label2")->text(), QStringLiteral("00:00"));
        QTest::qWait(1500);
        QCOMPARE(form8->lePy(), int16_t(1));
        QVERIFY(!Child<QPushButton>(form8, "Command2")->isEnabled());
        QCOMPARE(Rows(form8), QStringList({QStringLiteral("Calculating...")}));
        auto* label2 = Child<QLabel>(form8, "Label2");
        QCOMPARE(label2->text(), QStringLiteral("00:00"));
        // Leaving the window empties the clock until its next second.
        QVERIFY(QTest::qWaitForWindowActive(form8));
        f.form->activateWindow();
        QTRY_VERIFY(!form8->isActiveWindow());
        QVERIFY(label2->text().isEmpty());
        QTRY_COMPARE(label2->text(), QStringLiteral("00:00"));
        // The close box only hides the window, and the run goes on.
        form8->close();
        QVERIFY(!form8->isVisible());
        QCOMPARE(form8->lePy(), int16_t(1));
    }

    void popeyeThatCannotStart() {
        EngineFolder engines;
        Write(engines.path + QStringLiteral("py"), kPopeye, true);
        Fixture f({}, {}, engines.folder());
        f.type(QStringLiteral("K7"));
        f.form->MNpy_Click();
        Form8* form8 = f.form->form8();
        QTest::keyClicks(form8->combo1(0)->lineEdit(), QStringLiteral("#"));
        QTest::keyClicks(form8->combo1(1)->lineEdit(), QStringLiteral("1"));
        QVERIFY(QFile::remove(engines.path + QStringLiteral("py")));
        Child<QPushButton>(form8, "Command2")->click();
        QCOMPARE(Rows(form8), QStringList({QStringLiteral("Calculating...")}));
        QCOMPARE(form8->lePy(), int16_t(0));
        QVERIFY(Child<QPushButton>(form8, "Command2")->isEnabled());
        QCOMPARE(Child<QPushButton>(form8, "Command3")->text(), QStringLiteral("Cl&ose"));
    }

    // The engine reads its commands from the file on its standard input and
    // renumbers its log; the window shows the log of the run, read after the
    // engine ended, and log and game files go.
    void craftyAnalysesInTheBackground() {
        EngineFolder engines(QStringLiteral("a b; c"));
        Write(engines.path + QStringLiteral("crafty"), kCrafty, true);
        Fixture f({}, {}, engines.folder());
        QCOMPARE(f.state.recentEngine, QStringLiteral("Crafty"));
        f.type(QStringLiteral("4k3/8/8/8/8/8/8/4K3"));
        f.action("MNCrafty")->trigger();
        Form9* form9 = f.form->form9();
        QVERIFY(form9->isVisible());
        QCOMPARE(form9->text1()->text(), QStringLiteral("4k3/8/8/8/8/8/8/4K3"));
        Child<QRadioButton>(form9, "Option2")->setChecked(true);
        auto* depth = Child<QComboBox>(form9, "Combo1");
        QCOMPARE(depth->currentText(), QStringLiteral("12"));
        QCOMPARE(depth->count(), 7);
        depth->setEditText(QStringLiteral("9"));

        auto* solution = Child<QPushButton>(form9, "Command1");
        auto* close = Child<QPushButton>(form9, "Command4");
        QTest::mouseClick(solution, Qt::LeftButton);
        QCOMPARE(
            Rows(form9),
            QStringList({QStringLiteral("Calculating..."),
                         QStringLiteral("Click on Crafty's icon in taskbar to progress view.")}));
        QCOMPARE(f.state.logExt, QStringLiteral("001"));
        QVERIFY(!solution->isEnabled());
        QCOMPARE(close->text(), QStringLiteral("&Hide"));
        // Clear All during a run takes the rows and the position, not the run.
        Child<QPushButton>(form9, "Command5")->click();
        QVERIFY(Rows(form9).isEmpty() && form9->text1()->text().isEmpty());
        QCOMPARE(form9->leCrafty(), int16_t(1));
        // The close box only hides the window.
        form9->close();
        QVERIFY(!form9->isVisible());
        QTRY_COMPARE(Child<QLabel>(form9, "Label2")->text(), QStringLiteral("00:01"));

        QTRY_VERIFY_WITH_TIMEOUT(form9->isVisible(), 10000);
        QCOMPARE(Rows(form9), QStringList({QStringLiteral("Crafty stand-in"),
                                           QStringLiteral("position 4k3/8/8/8/8/8/8/4K3 b - -"),
                                           QStringLiteral("  depth 9 done")}));
        QTRY_COMPARE(form9->leCrafty(), int16_t(0));
        QCOMPARE(f.state.logExt, QStringLiteral("002"));
        QVERIFY(solution->isEnabled());
        QCOMPARE(close->text(), QStringLiteral("Cl&ose"));
        QVERIFY(Child<QLabel>(form9, "Label2")->text().isEmpty());
        QVERIFY(FilesLike(engines.path, QStringLiteral("log.*")).isEmpty());
        QVERIFY(FilesLike(engines.path, QStringLiteral("game.*")).isEmpty());
        QVERIFY(!Child<QTimer>(form9, "Timer1")->isActive());
        QCOMPARE(Read(engines.path + QStringLiteral("Crafty.rc")),
                 QByteArray("log off\r\nponder off\r\nsd 9\r\n"
                            "setboard 4k3/8/8/8/8/8/8/4K3 b - -\r\nblack\r\nlog on\r\n"
                            "analyze\r\nexit\r\nquit\r\nexit\r\n"));
        QVERIFY(Read(engines.path + QStringLiteral("received.txt"))
                    .startsWith("log off\nponder off\nsd 9\nsetboard 4k3/8/8/8/8/8/8/4K3 b - -\n"));

        // Clear All empties the list and the position, not the depth.
        Child<QPushButton>(form9, "Command5")->click();
        QVERIFY(Rows(form9).isEmpty() && form9->text1()->text().isEmpty());
        QCOMPARE(depth->currentText(), QStringLiteral("9"));
        solution->click();
        QCOMPARE(f.warnings, QStringList({QStringLiteral("Enter the FEN position!")}));
        QCOMPARE(form9->leCrafty(), int16_t(0));
    }

    // An engine that can't be started is tried again at each tick; the run
    // waits without end, and nothing breaks.
    void craftyThatCannotStartKeepsTrying() {
        EngineFolder engines;
        Write(engines.path + QStringLiteral("crafty"), kCrafty, true);
        Fixture f({}, {}, engines.folder());
        f.type(QStringLiteral("K7"));
        f.form->MNCrafty_Click();
        Form9* form9 = f.form->form9();
        QVERIFY(QFile::remove(engines.path + QStringLiteral("crafty")));
        Child<QPushButton>(form9, "Command1")->click();
        QTest::qWait(300);
        QCOMPARE(form9->leCrafty(), int16_t(1));
        // Put back, it starts at a later tick and the run ends.
        Write(engines.path + QStringLiteral("crafty"), kCrafty, true);
        QTRY_COMPARE_WITH_TIMEOUT(form9->leCrafty(), int16_t(0), 10000);
        QCOMPARE(Rows(form9).value(1), QStringLiteral("position K7/8/8/8/8/8/8/8 w - -"));
    }
};

QTEST_MAIN(TstEngineWindows)
#include "tst_engine_windows.moc"
