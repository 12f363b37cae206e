#include "engines/popeye.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace marlith;

namespace {

PyParams Params(std::initializer_list<std::pair<int, const char*>> fields) {
    PyParams p;
    for (const auto& [index, text] : fields)
        p[static_cast<size_t>(index)] = QString::fromUtf8(text);
    return p;
}

void Write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

class TstPopeye : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void warningsInOrder() {
        QCOMPARE(RunWarning(Params({{1, "2"}, {6, "Ke1"}})),
                 QStringLiteral("Enter the stipulation!"));
        QCOMPARE(RunWarning(Params({{0, "#"}, {6, "Ke1"}})),
                 QStringLiteral("Enter the number of moves!"));
        QCOMPARE(RunWarning(Params({{0, "#"}, {1, "2"}})),
                 QStringLiteral("Enter the pieces list!"));
        QVERIFY(RunWarning(Params({{0, "#"}, {1, "2"}, {8, "Pa2"}})).isEmpty());
    }

    void sevenLinesForAMateInTwo() {
        const PyParams p = Params({{0, "#"}, {1, "2"}, {6, "Ke1 Qd1"}});
        QCOMPARE(ProblemFileText(p, QStringLiteral("/p/F123456i.tmp")),
                 QByteArray("BeginProblem\r\n"
                            "Pieces\r\n"
                            "White Ke1 Qd1\r\n"
                            "Protocol /p/F123456i.tmp\r\n"
                            "Stipulation #2\r\n"
                            "Option MaxTime 60 NoBoard\r\n"
                            "EndProblem\r\n"));
    }

    void everyFieldInItsPlace() {
        const PyParams p = Params({{0, "h#"},
                                   {1, "3"},
                                   {2, "Circe"},
                                   {3, "Intelligent"},
                                   {4, "move e1 e2"},
                                   {5, "rotate 90"},
                                   {6, "Ke1"},
                                   {7, "Ke8"},
                                   {8, "Pa2"},
                                   {9, "Remark raw; \"line\""},
                                   {10, "512M"}});
        QCOMPARE(ProblemFileLines(p, QStringLiteral("proto")),
                 QStringList(
                     {QStringLiteral("BeginProblem"), QStringLiteral("Pieces"),
                      QStringLiteral("White Ke1"), QStringLiteral("Black Ke8"),
                      QStringLiteral("Neutral Pa2"), QStringLiteral("Protocol proto"),
                      QStringLiteral("Stipulation h#3"), QStringLiteral("Condition Circe"),
                      QStringLiteral("Option MaxTime 60 NoBoard Intelligent"),
                      QStringLiteral("Twin move e1 e2"), QStringLiteral("ZeroPosition rotate 90"),
                      QStringLiteral("Remark raw; \"line\""), QStringLiteral("EndProblem")}));
    }

    void optionTextAndMaxTime_data() {
        QTest::addColumn<QString>("options");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("maxTime");
        QTest::newRow("none") << QString() << QStringLiteral("MaxTime 60 NoBoard") << 60.0;
        QTest::newRow("lower case kept")
            << QStringLiteral("maxtime 90 Intelligent")
            << QStringLiteral("NoBoard maxtime 90 Intelligent") << 90.0;
        QTest::newRow("word without value")
            << QStringLiteral("Intelligent MaxTime ")
            << QStringLiteral("MaxTime 60 NoBoard Intelligent MaxTime") << 60.0;
        QTest::newRow("value not a number")
            << QStringLiteral("MaxTime abc") << QStringLiteral("NoBoard MaxTime abc") << 0.0;
        QTest::newRow("two blanks")
            << QStringLiteral("MAXTIME  30") << QStringLiteral("NoBoard MAXTIME  30") << 0.0;
        QTest::newRow("fraction") << QStringLiteral("MaxTime 1.5")
                                  << QStringLiteral("NoBoard MaxTime 1.5") << 1.5;
    }
    void optionTextAndMaxTime() {
        QFETCH(QString, options);
        QFETCH(QString, text);
        QFETCH(double, maxTime);
        const OptionText option = MakeOptionText(options);
        QCOMPARE(option.text, text);
        QCOMPARE(option.maxTime, maxTime);
    }

    void countdown() {
        QCOMPARE(CountdownText(90, 1), QStringLiteral("01:29"));
        QCOMPARE(CountdownText(60, 1), QStringLiteral("00:59"));
        QCOMPARE(CountdownText(60, 75), QStringLiteral("00:00"));
        QCOMPARE(CountdownText(6065, 0), QStringLiteral("01:05")); // minutes modulo 100
        QCOMPARE(CountdownText(1.5, 1), QStringLiteral("00:00"));  // 0.5 rounds to even
        QCOMPARE(CountdownText(2.5, 0), QStringLiteral("00:02"));
        QCOMPARE(CountdownText(1e300, 5).size(), 5);
        QCOMPARE(CountdownText(-1e300, 5), QStringLiteral("00:00"));
    }

    void entryModes_data() {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("param");
        QTest::addColumn<bool>("none");
        QTest::addColumn<QString>("result");
        const QString p = QStringLiteral("Intelligent");
        QTest::newRow("none any case") << QStringLiteral("nOnE") << p << true << QString();
        QTest::newRow("none with mark is an entry")
            << QStringLiteral("None '#") << p << false << QStringLiteral("None");
        QTest::newRow("no mark appends") << QStringLiteral(" Quodlibet ") << p << false
                                         << QStringLiteral("Intelligent Quodlibet");
        QTest::newRow("to empty") << QStringLiteral("Quodlibet") << QString() << false
                                  << QStringLiteral("Quodlibet");
        QTest::newRow(">") << QStringLiteral("NoThreat '>") << p << false
                           << QStringLiteral("Intelligent NoThreat");
        QTest::newRow("<") << QStringLiteral("NoThreat '<") << p << false
                           << QStringLiteral("NoThreat Intelligent");
        QTest::newRow("]") << QStringLiteral("50 ']") << QStringLiteral("MaxTime ") << false
                           << QStringLiteral("MaxTime 50");
        QTest::newRow("[") << QStringLiteral("ser- '[") << QStringLiteral("h#") << false
                           << QStringLiteral("ser-h#");
        QTest::newRow("#") << QStringLiteral("#  '# anything") << p << false << QStringLiteral("#");
        QTest::newRow("unknown mode") << QStringLiteral("X '?") << p << false << p;
        QTest::newRow("mark at the end") << QStringLiteral("X '") << p << false << p;
        QTest::newRow("first mark decides")
            << QStringLiteral("a '< b '>") << p << false << QStringLiteral("a Intelligent");
        QTest::newRow("apostrophe without blank")
            << QStringLiteral("d'Artagnan") << QString() << false << QStringLiteral("d'Artagnan");
    }
    void entryModes() {
        QFETCH(QString, entry);
        QFETCH(QString, param);
        QFETCH(bool, none);
        QFETCH(QString, result);
        const EntryChoice choice = ChooseEntry(entry, param);
        QCOMPARE(choice.none, none);
        QCOMPARE(choice.param, result);
    }

    void rowWrapping() {
        const QString fifty(50, u'x');
        QCOMPARE(WrapRows(fifty), QStringList({fifty}));
        const QStringList hard = WrapRows(QString(51, u'x'));
        QCOMPARE(hard.size(), 2);
        QCOMPARE(hard[0].size(), 44);
        QCOMPARE(hard[1].size(), 7);
        // The first blank from column 45 on; blanks before it don't count.
        const QString line =
            QString(10, u'a') + u' ' + QString(36, u'b') + u' ' + QString(20, u'c');
        QCOMPARE(WrapRows(line), QStringList({line.left(47), QString(20, u'c')}));
        QCOMPARE(WrapRows(QString(44, u'y') + QString(10, u' ')),
                 QStringList({QString(44, u'y'), QString()}));
        QVERIFY(WrapRows(QString()).isEmpty());
        const QStringList many = WrapRows(QString(1000, u'z'));
        QCOMPARE(many.size(), 23);
        QCOMPARE(many.join(QString()), QString(1000, u'z'));
        QCOMPARE(ProtocolRows({QStringLiteral("a"), QStringLiteral("   ")}),
                 QStringList({QStringLiteral("a"), QStringLiteral("   ")}));
    }

    void argumentsStayWhole() {
        QCOMPARE(PopeyeArguments(Params({}), QStringLiteral("/p/Fo.tmp")),
                 QStringList({QStringLiteral("/p/Fo.tmp")}));
        QCOMPARE(PopeyeArguments(Params({{10, "1 G; \"x\""}}), QStringLiteral("/a b/Fo.tmp")),
                 QStringList({QStringLiteral("-maxmem"), QStringLiteral("1 G; \"x\""),
                              QStringLiteral("/a b/Fo.tmp")}));
        QCOMPARE(ProblemPath(QStringLiteral("/p/"), QStringLiteral("F000123")),
                 QStringLiteral("/p/F000123o.tmp"));
        QCOMPARE(ProtocolPath(QStringLiteral("/p/"), QStringLiteral("F000123")),
                 QStringLiteral("/p/F000123i.tmp"));
    }

    // The stages against a real folder: nothing is read while the file is
    // missing, empty or still in the engine's hands, and the run ends only
    // when the file is seen to be gone.
    void stagesOfARun() {
        QTemporaryDir dir;
        const QString protocol = dir.path() + QStringLiteral("/Fi.tmp");
        PopeyeRun run;
        QStringList rows;
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Waiting);
        run.begin(protocol, 90);
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Waiting);
        Write(protocol, QByteArray());
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Waiting);
        QCOMPARE(run.stage(), int16_t(0));
        Write(protocol, "solution\r\n\r\n1.Qd1-d8 !\r" + QByteArray(51, 'x') + "\nlast");
        QCOMPARE(run.advance(true, rows), PopeyeRun::Step::Waiting);
        QCOMPARE(run.stage(), int16_t(0));
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Waiting);
        QCOMPARE(run.stage(), int16_t(1));
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Rows);
        QCOMPARE(rows, QStringList({QStringLiteral("solution"), QStringLiteral("1.Qd1-d8 !"),
                                    QString(44, u'x'), QString(7, u'x'), QStringLiteral("last")}));
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Finished);
        QVERIFY(!QFile::exists(protocol));
        QVERIFY(!run.active());
    }

    // A protocol that goes away before it is read is waited for again; a
    // huge one is shown in part.
    void vanishingAndHugeProtocols() {
        QTemporaryDir dir;
        const QString protocol = dir.path() + QStringLiteral("/Fi.tmp");
        PopeyeRun run;
        QStringList rows;
        run.begin(protocol, 60);
        Write(protocol, "a\r\n");
        run.advance(false, rows);
        QVERIFY(QFile::remove(protocol));
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Waiting);
        QCOMPARE(run.stage(), int16_t(1));
        Write(protocol, QByteArray("x\n").repeated(kMaxResultRows + 10));
        QCOMPARE(run.advance(false, rows), PopeyeRun::Step::Rows);
        QCOMPARE(rows.size(), kMaxResultRows);

        QByteArray text = "one\r\ntwo\n\nthree\rfour";
        QBuffer buffer(&text);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(ReadLines(buffer, true, 2),
                 QStringList({QStringLiteral("one"), QStringLiteral("two")}));
        QVERIFY(buffer.seek(0));
        QCOMPARE(ReadLines(buffer, true, 100, 7),
                 QStringList({QStringLiteral("one"), QStringLiteral("tw")}));
        QVERIFY(buffer.seek(0));
        QCOMPARE(ReadLines(buffer, true).last(), QStringLiteral("four"));
    }

    void clockShowsEachNewSecond() {
        PopeyeRun run;
        QVERIFY(!run.clock(5.0));
        run.begin(QStringLiteral("x"), 90);
        QVERIFY(!run.clock(1000.0));
        QVERIFY(!run.clock(1000.99));
        QCOMPARE(run.clock(1001.0).value_or(QString()), QStringLiteral("01:29"));
        QVERIFY(!run.clock(1001.5));
        QCOMPARE(run.clock(1003.2).value_or(QString()), QStringLiteral("01:27"));
        // A clock that goes back shows the whole time again.
        QCOMPARE(run.clock(900.0).value_or(QString()), QStringLiteral("01:30"));
    }
};

QTEST_APPLESS_MAIN(TstPopeye)
#include "tst_popeye.moc"
