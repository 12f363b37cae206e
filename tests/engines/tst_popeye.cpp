#include "engines/popeye.h"
#include "support/file_bytes.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

static PopeyeFields params(std::initializer_list<std::pair<int, const char*>> fields) {
    PopeyeFields p;
    for (const auto& [index, text] : fields)
        p.box(static_cast<size_t>(index)) = QString::fromUtf8(text);
    return p;
}

class TstPopeye : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    // A game's stipulation: the first Stipulation tag, in any case, with text between two quotes.
    void stipulationOfTheGame() {
        const std::pair<QStringList, const char*> cases[] = {
            {{"[Event \"#2\"]", "[stipulation \" h#3 \"]"}, "h#3"},
            {{"[Stipulation \"#2]", "[Stipulation \"\"]", "[Stipulation \"s#4\"]"}, "s#4"},
            {{"[Stipulation \"#2]"}, "none"}};
        for (const auto& [headers, stipulation] : cases)
            QCOMPARE(stipulationTag(headers).value_or("none"), QLatin1String(stipulation));
    }

    void stipulationNumber_data() {
        QTest::addColumn<QString>("stipulation");
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("result"); // stipulation|moves, or the warning
        const auto row = [](const char* name, QString stipulation, QString moves, QString result) {
            QTest::newRow(name) << stipulation << moves << result;
        };
        row("#2 with 2 moves", "#2", "2", "#|2");
        row("h#3 with no moves", "h#3", "", "h#|3");
        row("ser-h#5", "ser-h#5", "", "ser-h#|5");
        row("half moves", "h#2.5", "2.5", "h#|2.5");
        row("no number", "#", "3", "#|3");
        row("numbers differ", "#2", "3", "The stipulation #2 has 2 moves, but Moves says 3!");
    }
    void stipulationNumber() {
        QFETCH(QString, stipulation);
        QFETCH(QString, moves);
        const StipulationFields fields = splitStipulation(stipulation, moves);
        QTEST(fields.warning.isEmpty() ? fields.stipulation + u'|' + fields.moves : fields.warning,
              "result");
    }

    void problemFile() {
        QCOMPARE(runWarning(params({})), QString("Enter the stipulation!"));
        QCOMPARE(runWarning(params({{0, "#"}, {1, "2"}})), QString("Enter the pieces list!"));
        QVERIFY(runWarning(params({{0, "#"}, {1, "2"}, {8, "Pa2"}})).isEmpty());
        // Fields left empty give no line; every line ends in CR LF.
        const PopeyeFields all = {"h#",  "3", "Circe", "Intelligent", "move e1 e2", "rotate 90",
                                  "Ke1", "",  "Pa2",   "Remark raw",  "512M"};
        QCOMPARE(
            problemFileText(all, "proto"),
            QByteArray("BeginProblem\r\nPieces\r\nWhite Ke1\r\nNeutral Pa2\r\nProtocol proto\r\n"
                       "Stipulation h#3\r\nCondition Circe\r\nOption MaxTime 60 NoBoard "
                       "Intelligent\r\nTwin move e1 e2\r\nZeroPosition rotate 90\r\n"
                       "Remark raw\r\nEndProblem\r\n"));
        QCOMPARE(problemFileLines(params({{7, "Ke8"}}), "p").filter("Black"),
                 QStringList("Black Ke8"));
        const OptionText found = makeOptionText("maxtime 90 Intelligent");
        QCOMPARE(found.text + QString::number(found.maxTime), "NoBoard maxtime 90 Intelligent90");
        // The command line keeps each argument whole, whatever blanks it holds.
        QCOMPARE(popeyeArguments(params({{10, "1 G; \"x\""}}), "/a b/Fo.tmp"),
                 QStringList({"-maxmem", "1 G; \"x\"", "/a b/Fo.tmp"}));
    }

    void entryModes() {
        // "NONE" empties the field; " '" and a mode join the entry behind (">"), in front ("<"),
        // glued ("["), or in its place ("#"); the first mark decides.
        const QString p = QStringLiteral("Intelligent");
        const std::tuple<QString, QString, QString> cases[] = {
            {"nOnE", p, "<none>"},
            {"#  '# anything", p, "#"},
            {"NoThreat '>", p, "Intelligent NoThreat"},
            {"NoThreat '<", p, "NoThreat Intelligent"},
            {"ser- '[", "h#", "ser-h#"},
            {"a '< b '>", p, "a Intelligent"},
            {"d'Artagnan", "", "d'Artagnan"},
            {" '<", p, "Intelligent"}};
        for (const auto& [entry, param, result] : cases) {
            const EntryChoice choice = entryChoice(entry, param);
            QCOMPARE(choice.none ? QStringLiteral("<none>") : choice.param, result);
        }
    }

    void rowWrapping() {
        const QString fifty(50, u'x');
        QCOMPARE(wrapRows(fifty), QStringList({fifty}));
        QCOMPARE(wrapRows(fifty + u'x'), QStringList({QString(44, u'x'), QString(7, u'x')}));
        // The first blank from column 45 on; blanks before it don't count.
        const QString line = QString(10, u'a') + u' ' + QString(36, u'b') + u' ';
        QCOMPARE(wrapRows(line + QString(20, u'c')),
                 QStringList({line.left(47), QString(20, u'c')}));
        // A blank far behind column 45 makes a long row, and serves no later row.
        QCOMPARE(wrapRows(QString(100, u'a') + u' ' + QString(99, u'b')),
                 QStringList({QString(100, u'a'), QString(44, u'b'), QString(44, u'b'),
                              QString(11, u'b')}));
        // A line of 20 million characters wraps whole in linear time, also where no blank is left.
        const QString huge = QStringLiteral("word ").repeated(800'000) + QString(16'000'000, u'x');
        QCOMPARE(wrapRows(huge).join(QString()).count(u'w'), 800'000);
    }

    // The protocol is read as it grows; a run without one (or with an empty one) has ended;
    // the rest is read once the solver is gone, and then the file goes.
    void stagesOfARun() {
        QTemporaryDir dir;
        const QString protocol = dir.path() + QStringLiteral("/Fi.tmp");
        PopeyeRun run;
        for (const bool empty : {false, true}) {
            run.begin(protocol, 90);
            if (empty) writeFile(protocol, QByteArray());
            QCOMPARE(run.advance(true), PopeyeRun::Step::Waiting);
            QCOMPARE(run.advance(false), PopeyeRun::Step::Ended);
            QVERIFY(!run.active());
        }
        run.begin(protocol, 90);
        writeFile(protocol, "solution\r\n\r\n1.Qd1-d8 !\r");
        QCOMPARE(run.advance(true), PopeyeRun::Step::Rows);
        QCOMPARE(run.take(0).added, QStringList({"solution", "1.Qd1-d8 !"}));
        QFile file(protocol);
        QVERIFY(file.open(QIODevice::Append) && file.write("two\nla") && file.flush());
        QCOMPARE(run.advance(true), PopeyeRun::Step::Rows);
        QCOMPARE(run.take(2).added, QStringList({"two"}));
        file.write("st");
        file.close();
        QVERIFY(run.advance(false) == PopeyeRun::Step::Rows && run.stage() == 2);
        QCOMPARE(run.take(4).added, QStringList({"last"}));
        QCOMPARE(run.advance(false), PopeyeRun::Step::Finished);
        QVERIFY(!QFile::exists(protocol) && !run.active());
    }

    // Parts may end anywhere, even between CR and LF; only the last rows are kept,
    // and the list is told to drop what falls out; a skip loses the broken line.
    void protocolTail() {
        ProtocolTail tail(3);
        for (const char* part : {"one\r", "\n   \ntwo", "\r\n\nthr", "ee"})
            tail.feed(part);
        ProtocolTail::Change change = tail.take(0);
        QCOMPARE(change.added, QStringList({"one", "   ", "two"})); // blanks make a row
        QVERIFY(!change.cut);
        tail.finish();
        tail.feed("four\nfive\n");
        change = tail.take(3);
        QCOMPARE(change.added, QStringList({"three", "four", "five"}));
        QVERIFY(change.dropped == 3 && change.cut);
        tail.skip();
        tail.feed("end of a line\nsix\n");
        QCOMPARE(tail.take(3).added, QStringList({"six"}));
        ProtocolTail one(1); // one line wraps to more rows than are kept
        one.feed(QByteArray(60, 'w') + '\n');
        QVERIFY(one.take(0).cut);
        // A program that writes without end: only the tail is decoded and kept.
        ProtocolTail endless;
        endless.feed(QByteArray("y\n").repeated(2'000'000) + "last\n");
        change = endless.take(0);
        QVERIFY(change.added.size() == kMaxShownRows && change.added.back() == "last" &&
                change.cut);
    }

    void clockShowsEachNewSecond() {
        PopeyeRun run;
        run.begin(QStringLiteral("x"), 90);
        QVERIFY(!run.clock(1000.0) && !run.clock(1000.99));
        QCOMPARE(*run.clock(1001.0) + *run.clock(1003.2), "limit 01:29limit 01:27");
        QCOMPARE(countdownText(6065, 0), QString("limit 01:05")); // minutes modulo 100
    }
};

QTEST_APPLESS_MAIN(TstPopeye)
#include "tst_popeye.moc"
