#include "engines/popeye.h"
#include "support/file_bytes.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

namespace {

PopeyeParams params(std::initializer_list<std::pair<int, const char*>> fields) {
    PopeyeParams p;
    for (const auto& [index, text] : fields)
        p[static_cast<size_t>(index)] = QString::fromUtf8(text);
    return p;
}

} // namespace

class TstPopeye : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void warningsInOrder() {
        QCOMPARE(runWarning(params({})), QString("Enter the stipulation!"));
        QCOMPARE(runWarning(params({{0, "#"}, {1, "2"}})), QString("Enter the pieces list!"));
        QVERIFY(runWarning(params({{0, "#"}, {1, "2"}, {8, "Pa2"}})).isEmpty());
    }

    void everyFieldInItsPlace() {
        // Fields left empty give no line; every line ends in CR LF.
        QCOMPARE(problemFileText(params({{0, "#"}, {1, "2"}, {6, "Ke1 Qd1"}}), "/p/Fi.tmp"),
                 QByteArray("BeginProblem\r\nPieces\r\nWhite Ke1 Qd1\r\nProtocol /p/Fi.tmp\r\n"
                            "Stipulation #2\r\nOption MaxTime 60 NoBoard\r\nEndProblem\r\n"));
        const PopeyeParams all = {"h#",  "3",   "Circe", "Intelligent", "move e1 e2", "rotate 90",
                                  "Ke1", "Ke8", "Pa2",   "Remark raw",  "512M"};
        QCOMPARE(problemFileLines(all, "proto").join(u'|'),
                 QString("BeginProblem|Pieces|White Ke1|Black Ke8|Neutral Pa2|Protocol proto|"
                         "Stipulation h#3|Condition Circe|Option MaxTime 60 NoBoard Intelligent|"
                         "Twin move e1 e2|ZeroPosition rotate 90|Remark raw|EndProblem"));
        const OptionText found = makeOptionText("maxtime 90 Intelligent");
        QCOMPARE(found.text, QString("NoBoard maxtime 90 Intelligent"));
        QCOMPARE(found.maxTime, 90);
        // "MaxTime" at the end loses its blank and isn't found.
        QCOMPARE(makeOptionText("Intelligent MaxTime ").maxTime, 60);
        // The command line keeps each argument whole, whatever blanks it holds.
        QCOMPARE(popeyeArguments(params({{10, "1 G; \"x\""}}), "/a b/Fo.tmp"),
                 QStringList({"-maxmem", "1 G; \"x\"", "/a b/Fo.tmp"}));
    }

    void entryModes() {
        // "NONE" empties the field; " '" and a mode join the entry behind (">"), in front ("<"),
        // glued ("["), or in its place ("#"); the first mark decides.
        const QString p = QStringLiteral("Intelligent");
        const std::tuple<QString, QString, bool, QString> cases[] = {
            {"nOnE", p, true, ""},
            {"#  '# anything", p, false, "#"},
            {"NoThreat '>", p, false, "Intelligent NoThreat"},
            {"NoThreat '<", p, false, "NoThreat Intelligent"},
            {"ser- '[", "h#", false, "ser-h#"},
            {"a '< b '>", p, false, "a Intelligent"},
            {"d'Artagnan", "", false, "d'Artagnan"}};
        for (const auto& [entry, param, none, result] : cases) {
            QCOMPARE(entryChoice(entry, param).none, none);
            QCOMPARE(entryChoice(entry, param).param, result);
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
        QCOMPARE(protocolRows({"a", "   "}), QStringList({"a", "   "})); // blanks make a row
        const QStringList many = wrapRows(QString(1000, u'z'));
        QCOMPARE(many.size(), 23);
    }

    // Nothing is read while the protocol is missing, empty or in the engine's hands; one that
    // goes before it is read is waited for again; a huge one is cut; the run ends once it's gone.
    void stagesOfARun() {
        QTemporaryDir dir;
        const QString protocol = dir.path() + QStringLiteral("/Fi.tmp");
        PopeyeRun run;
        QStringList rows;
        // The stage after one step, and whether rows came.
        auto step = [&](bool engineRunning) {
            const bool got = run.advance(engineRunning, rows) == PopeyeRun::Step::Rows;
            return run.stage() + (got ? 10 : 0);
        };
        // Gone with no protocol, or an empty one: the run has ended.
        for (const bool empty : {false, true}) {
            run.begin(protocol, 90);
            if (empty) writeFile(protocol, QByteArray());
            QCOMPARE(step(true), 0);
            QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Ended);
            QVERIFY(!run.active());
        }
        run.begin(protocol, 90);
        writeFile(protocol, "solution\r\n\r\n1.Qd1-d8 !\r" + QByteArray(51, 'x') + "\nlast");
        QCOMPARE(step(true), 0);
        QCOMPARE(step(false), 1);
        QCOMPARE(step(false), 12);
        QCOMPARE(rows, QStringList({"solution", "1.Qd1-d8 !", QString(44, u'x'), QString(7, u'x'),
                                    "last"}));
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Finished);
        QVERIFY(!QFile::exists(protocol) && !run.active());
        run.begin(protocol, 60);
        writeFile(protocol, "a\r\n");
        QCOMPARE(step(false), 1);
        QVERIFY(QFile::remove(protocol));
        QCOMPARE(step(false), 1);
        writeFile(protocol, QByteArray("x\n").repeated(kMaxResultRows + 10));
        QCOMPARE(step(false), 12);
        QCOMPARE(rows.size(), kMaxResultRows);
        // The limit of bytes.
        QByteArray text = "one\r\ntwo\n\nthree\rfour";
        QBuffer buffer(&text);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(readLines(buffer, true, 100, 7), QStringList({"one", "tw"}));
    }

    void clockShowsEachNewSecond() {
        PopeyeRun run;
        run.begin(QStringLiteral("x"), 90);
        QVERIFY(!run.clock(1000.0) && !run.clock(1000.99));
        QCOMPARE(run.clock(1001.0).value_or(QString()), QString("01:29"));
        QCOMPARE(run.clock(1003.2).value_or(QString()), QString("01:27"));
        QCOMPARE(countdownText(6065, 0), QString("01:05")); // minutes modulo 100
        QCOMPARE(countdownText(1e300, 5).size(), 5);
    }
};

QTEST_APPLESS_MAIN(TstPopeye)
#include "tst_popeye.moc"
