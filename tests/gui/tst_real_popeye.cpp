// The real solver through the Popeye window, as a composer uses it: each problem's solution is the
// one Popeye gives for the same problem written by hand in its own language.
#include "support/main_window_fixture.h"

#include <QProcess>
#include <QRegularExpression>

using namespace marlith::testing;

namespace {

const QString kPopeye = QStringLiteral(MARLITH_REAL_POPEYE);

// The move lines of a solution, without the version and time lines.
QStringList moveLines(const QString& text) {
    static const QRegularExpression move(u"^\\s*\\d+\\.\\S"_s);
    QStringList lines;
    for (const QString& line : text.split(u'\n'))
        if (move.match(line).hasMatch()) lines.append(line.trimmed());
    return lines;
}

} // namespace

class TstRealPopeye : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void solvesAsPopeyeDoes_data() {
        QTest::addColumn<QString>("style"); // the shipped style, else the built-in
        QTest::addColumn<QString>("position");
        QTest::addColumn<QString>("fields"); // stipulation|moves|options
        QTest::addColumn<QString>("pieces"); // in Popeye's own words
        const auto row = [](const char* name, const char* style, const char* position,
                            const char* fields, const char* pieces) {
            QTest::newRow(name) << QString(style) << QString(position) << QString(fields)
                                << QString(pieces);
        };
        // In Popeye's language a knight is S; N would be the nightrider,
        // which gives this problem other solutions.
        row("#2 with knights", "", "k7/8/1KN5/8/8/8/8/7Q", "#|2|", "White Kb6 Sc6 Qh1 Black Ka8");
        row("h#2 with castling", "", "4k2r/5p2/5K2/8/8/8/8/Q7", "h#|2|",
            "White Kf6 Qa1 Black Ke8 Rh8 Pf7");
        row("an en passant key", "", "7N/8/7p/R2Pp2k/6pp/8/8/K7", "#|1|EnPassant e7e6e5",
            "White Ka1 Ra5 Pd5 Sh8 Black Kh5 Pe5 Pg4 Ph4 Ph6");
        // Fairy pieces go under their Popeye names and sides: the grasshopper
        // G, the nightrider H (N for Popeye), the neutral queen Y. The neutral
        // queen can't interpose on e8: there it would check Black.
        row("grasshopper, one key", "Fairy", "k1K5/1R6/8/8/8/4P3/8/4G3", "#|1|",
            "White Kc8 Rb7 Ge1 Pe3 Black Ka8");
        row("nightrider", "Fairy", "k7/p1K5/8/8/7H/8/8/8", "#|1|", "White Kc7 Nh4 Black Ka8 Pa7");
        row("neutral queen", "Fairy", "5k2/8/6K1/8/8/8/4Y3/1R6", "#|1|",
            "White Kg6 Rb1 Black Kf8 Neutral Qe2");
    }

    void solvesAsPopeyeDoes() {
        if (kPopeye.isEmpty() || !QFileInfo(kPopeye).isExecutable())
            QSKIP("The real Popeye isn't built here: the folder of its source "
                  "(../shared/engines) is missing.");
        QFETCH(QString, position);
        QFETCH(QString, fields);
        QFETCH(QString, pieces);
        QFETCH(QString, style);

        // The program folder as a user sets it up: the solver and the table
        // that ships with Marlith.
        QTemporaryDir home;
        QVERIFY(QFile::link(kPopeye, home.path() + u"/py"_s));
        QVERIFY(
            QFile::copy(QStringLiteral(MARLITH_SHIPPED_DIR "/py.dat"), home.path() + u"/py.dat"_s));
        if (!style.isEmpty())
            QVERIFY(QFile::copy(QStringLiteral(MARLITH_SHIPPED_DIR "/Marlith.ini"),
                                home.path() + u"/Marlith.ini"_s));
        Fixture f({}, {}, home.path());
        if (!style.isEmpty()) f.window->chooseStyleByName(style);
        f.positionEdit->clear();
        f.type(position);
        f.window->openPopeye();
        PopeyeWindow* w = f.window->popeyeWindow();
        for (int box = 0; box < 3; ++box)
            QTest::keyClicks(w->paramBox(box == 2 ? 3 : box)->lineEdit(),
                             fields.section(u'|', box, box));
        auto* solve = w->findChild<QPushButton*>(u"solveButton"_s);
        solve->click();
        QTRY_VERIFY_WITH_TIMEOUT(solve->isEnabled(), 60000);
        const QStringList rows = itemTexts(w->findChild<QListWidget*>(u"solutionList"_s));

        const QString problem = home.filePath(u"by-hand.txt"_s);
        const QString option = fields.section(u'|', 2);
        writeFile(problem,
                  ("BeginProblem\nPieces " + pieces + "\nStipulation " +
                   fields.section(u'|', 0, 1).remove(u'|') +
                   (option.isEmpty() ? "\n" : "\nOption " + option + "\n") + "EndProblem\n")
                      .toUtf8());
        QProcess direct;
        direct.start(kPopeye, {problem});
        QVERIFY(direct.waitForFinished(60000));
        const QStringList expected = moveLines(QString::fromUtf8(direct.readAllStandardOutput()));
        QVERIFY(!expected.isEmpty());
        QCOMPARE(moveLines(rows.join(u'\n')), expected);
    }
};

QTEST_MAIN(TstRealPopeye)
#include "tst_real_popeye.moc"
