// The commands of the real program, run the way a shell runs them: no
// display, no platform named, a program folder of their own.
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/solve_rules.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

namespace {

const QByteArray kFenBook = "[Event \"A\"]\n8/8/8/3k4/8/8/8/4K3\n[Event \"B\"]\nK7/8/8/8/8/8/8/7k\n"
                            "[Event \"C\"]\n8/8/8/8/8/8/8/k6K\n";
const QByteArray kPgnBook = "[Event \"One\"]\n[White \"Kasparov\"]\n\n1. e4 e5 2. Nf3 *\n\n"
                            "[Event \"Two\"]\n[White \"Karpov\"]\n\n1. d4 d5 *\n";

const QString kPopeye = QStringLiteral(MARLITH_REAL_POPEYE);
const char* const kNoPopeye =
    "The real Popeye isn't built here: the folder of its source (../shared/engines) is missing.";

// Problems whose verdicts Popeye was seen to give; the start position's
// help-mate in 4 takes it more than a second.
const QByteArray kProblems =
    "[Event \"Sound\"]\n[Stipulation \"#2\"]\n8/8/8/5B2/5K2/1R6/8/2k5\n"
    "[Event \"Long\"]\n[Stipulation \"h#4\"]\n"
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR\n"
    "[Event \"Cooked, twice\"]\n[Stipulation \"#2\"]\nk7/8/2K5/8/8/8/8/3R4\n"
    "[Event \"Bare\"]\n[Stipulation \"#2\"]\nk7/8/8/8/8/8/8/K7\n"
    "[Event \"Bad\"]\n[Stipulation \"foo2\"]\nk7/8/8/8/8/8/8/K7\n"
    "[Event \"None\"]\nk7/8/8/8/8/8/8/K7\n";
// The rows by game, up to the keys (the time differs from run to run).
const QStringList kVerdicts{"1,Sound,#2,sound,1.Kf4-e3,",
                            "2,Long,h#4,time limit,",
                            "3,\"Cooked, twice\",#2,cooked,1.Kc6-b6; 1.Kc6-c7,",
                            "4,Bare,#2,no solution,,",
                            "5,Bad,foo2,error: input-error:cannot recognize the stipulation",
                            "6,None,,error: Enter the stipulation!,,"};

// The rows of results files, each checked to begin as its game's verdict.
void compareVerdicts(const QStringList& files) {
    QStringList rows;
    for (const QString& file : files) {
        QList<QByteArray> lines = readFile(file).split('\n');
        QCOMPARE(lines.takeFirst() + '\n', QByteArray(kResultsHeader));
        QCOMPARE(lines.takeLast(), QByteArray()); // whole lines only
        for (const QByteArray& line : lines)
            rows << QString::fromUtf8(line);
    }
    rows.sort();
    QCOMPARE(rows.size(), kVerdicts.size());
    for (qsizetype i = 0; i < rows.size(); ++i)
        QVERIFY2(rows[i].startsWith(kVerdicts[i]), qPrintable(rows[i]));
}

struct Run {
    int status = -1;
    QByteArray out, err;
};

} // namespace

class TstCommandLine : public QObject {
    Q_OBJECT
    TempFolder home_;
    TempFolder work_;

    TempFolder popeyeHome_; // a program folder with Popeye in it

    void prepare(QProcess& process, const QString& home) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            env.remove(QLatin1String(name));
        env.insert(QStringLiteral("MARLITH_HOME"), home);
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(work_.path());
    }
    Run run(const QStringList& arguments, const QString& home = {}) {
        QProcess process;
        prepare(process, home.isEmpty() ? home_.path() : home);
        process.start(QStringLiteral(MARLITH_EXECUTABLE), arguments);
        Run result;
        if (!process.waitForFinished(120000)) return result;
        result.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }
    // A command run in this process with a terminal for its progress: its status and stderr.
    std::pair<int, QByteArray> onATerminal(const QStringList& arguments, const QString& home) {
        char* text = nullptr;
        size_t size = 0;
        FILE* err = open_memstream(&text, &size);
        const int status = runCommandLine(arguments, {home, {}}, stdout, err, true);
        std::fclose(err);
        const QByteArray shown(text, qsizetype(size));
        std::free(text);
        return {status, shown};
    }
    QStringList exported(const QString& folder) {
        return QDir(work_.filePath(folder)).entryList(QDir::Files, QDir::Name);
    }

  private Q_SLOTS:
    void initTestCase() {
        writeFile(work_.filePath(QStringLiteral("b.fen")), kFenBook);
        writeFile(work_.filePath(QStringLiteral("b.pgn")), kPgnBook);
        writeFile(work_.filePath(QStringLiteral("problems.fen")), kProblems);
        if (QFileInfo(kPopeye).isExecutable())
            QVERIFY(QFile::link(kPopeye, popeyeHome_.filePath(QStringLiteral("py"))));
    }

    // Help and version on stdout; anything that can't be done is a status
    // and one line on stderr, and nothing lands in the program folder.
    void statusAndMessages_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("out"); // what stdout begins with; errors: stderr
        QTest::addColumn<int>("status");
        const QString fen = QStringLiteral("8/8/8/3k4/8/8/8/4K3");
        QTest::newRow("help") << QStringList{"--help"} << "Usage: marlith [BOOK]\n" << 0;
        QTest::newRow("version") << QStringList{"--version"} << "marlith 0.1.0\n" << 0;
        QTest::newRow("unknown option") << QStringList{"render", fen, "-o", "a.png", "--last"}
                                        << "marlith: render has no option '--last'" << 2;
        QTest::newRow("missing -o")
            << QStringList{"export", "b.fen"} << "marlith: export needs -o FOLDER" << 2;
        QTest::newRow("bad width")
            << QStringList{"render", fen, "-o", "a.png", "--size", "wide"}
            << "marlith: --size needs a width in pixels from 1 to 10000, not 'wide'\n"
            << 2;
        QTest::newRow("unknown style") << QStringList{"render", fen, "-o", "a.png", "--style", "x"}
                                       << "marlith: unknown style 'x'" << 2;
        QTest::newRow("not a FEN text")
            << QStringList{"render", "8/8/3z4", "-o", "a.png"} << "marlith: not a FEN text" << 2;
        QTest::newRow("picture format") << QStringList{"render", fen, "-o", "a.jpg"}
                                        << "marlith: a.jpg: the name must end" << 2;
        QTest::newRow("unreadable book") << QStringList{"export", "none.pgn", "-o", "o"}
                                         << "marlith: The book none.pgn doesn't exist." << 1;
        QTest::newRow("bad shard") << QStringList{"solve", "b.fen", "--shard", "3/2"}
                                   << "marlith: --shard needs I/N with 1 <= I <= N, not '3/2'" << 2;
        QTest::newRow("no Popeye")
            << QStringList{"solve", "b.fen"} << "marlith: Popeye isn't in the program folder" << 1;
        QTest::newRow("nothing found")
            << QStringList{"export", "b.pgn", "-o", "o", "--search", "Tal"}
            << "marlith: Game not found!" << 1;
    }
    void statusAndMessages() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, out);
        QFETCH(int, status);
        const Run result = run(arguments);
        QCOMPARE(result.status, status);
        const QByteArray& shown = status == 0 ? result.out : result.err;
        QVERIFY2(shown.startsWith(out.toUtf8()), shown.constData());
        if (status != 0) QCOMPARE(result.err.count('\n'), 1);
        QCOMPARE(QDir(home_.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    // A picture by its name, at the width asked for or the style's own.
    void renderFormats_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("magic");
        QTest::addColumn<QString>("size"); // none: the style's own, 408 pixels
        QTest::newRow("png") << "d.png" << QByteArray("\x89PNG") << "300";
        QTest::newRow("bmp, own size") << "d.bmp" << QByteArray("BM") << "";
    }
    void renderFormats() {
        QFETCH(QString, name);
        QFETCH(QByteArray, magic);
        QFETCH(QString, size);
        QStringList arguments{
            "render", "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1", "-o", name};
        if (!size.isEmpty()) arguments << "--size" << size;
        const Run result = run(arguments);
        QCOMPARE(result.status, 0);
        const QByteArray bytes = readFile(work_.filePath(name));
        QVERIFY(bytes.startsWith(magic));
        QCOMPARE(QImage(work_.filePath(name)).width(), size.isEmpty() ? 408 : 300);
    }

    // A program folder's own settings come first: the shipped styles only
    // stand in where it has none.
    void ownStyles() {
        TempFolder home;
        writeFile(home.filePath(QStringLiteral("Marlith.ini")),
                  "BeginStyle = Tiny\r\n  SqrWidth = 10 \r\n  SqrHeight = 10 \r\nEndStyle\r\n");
        // Drawn larger, the king stands on a8, top left, not on the turned board's h1.
        QImage twice[2];
        for (const int n : {0, 1}) {
            QCOMPARE(run({"render", n ? "8" : "K7", "-o", "x.png", "--style", "Tiny", "--size=168"},
                         home.path())
                         .status,
                     0);
            twice[n] = QImage(work_.filePath(QStringLiteral("x.png")));
        }
        QVERIFY(twice[0].copy(0, 0, 20, 20) != twice[1].copy(0, 0, 20, 20));
        QCOMPARE(twice[0].copy(140, 140, 20, 20), twice[1].copy(140, 140, 20, 20));
        // A shipped style draws as the window does, coordinates and all.
        QCOMPARE(run({"render", "pPnNbBrR/qQkK", "-o", "c.png", "--style", "Coordinates"}).status,
                 0);
        QCOMPARE(QImage(work_.filePath("c.png")).convertToFormat(QImage::Format_ARGB32),
                 QImage(MARLITH_PICTURES "/style-Coordinates.png"));
    }

    // One picture per game, named by the game's own number.
    void exportBooks_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("fen") << QStringList{"export", "b.fen", "-o", "fen"}
                             << QStringList{"00001.svg", "00002.svg", "00003.svg"};
        QTest::newRow("pgn as png")
            << QStringList{"export", "b.pgn", "-o", "png", "--format", "png"}
            << QStringList{"00001.png", "00002.png"};
        QTest::newRow("search") << QStringList{"export", "b.pgn",    "-o",
                                               "found",  "--search", "Karpov"}
                                << QStringList{"00002.svg"};
        QTest::newRow("search by men")
            << QStringList{"export", "b.fen", "-o", "men", "--search=White: 1; Notations: Ka8"}
            << QStringList{"00002.svg"};
    }
    void exportBooks() {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, names);
        const Run result = run(arguments);
        QCOMPARE(result.status, 0);
        QVERIFY2(result.err.isEmpty(), result.err.constData()); // no progress line in a pipe
        QCOMPARE(exported(arguments.at(3)), names);
    }
    // A game's picture shows its first position, or with --last its last one; a book read in
    // part is named.
    void gamePositions() {
        QCOMPARE(run({"export", "b.pgn", "-o", "first"}).status, 0);
        QCOMPARE(run({"export", "b.pgn", "-o", "last", "--last"}).status, 0);
        for (const auto& [picture, fen] :
             {std::pair{"first/00001.svg", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"},
              {"last/00001.svg", "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R"}}) {
            QCOMPARE(run({"render", fen, "-o", "one.svg"}).status, 0);
            QCOMPARE(readFile(work_.filePath(picture)), readFile(work_.filePath("one.svg")));
        }
        writeFile(work_.filePath("big.fen"), QByteArray("[E]\nK7/8/8/8/8/8/8/7k\n").repeated(300));
        const FileSizeLimit full(50'000); // the work file outgrows it, a picture doesn't
        QCOMPARE(run({"export", "big.fen", "-o", "big"}).err,
                 "marlith: only the first 189 games of the book could be read\n");
    }

    // A book that isn't there is named; a stop keeps whole rows and leaves no temporary file; the
    // same command then solves only the rest (and again the problem of a torn last line).
    void solveStopAndGoOn() {
        if (!QFileInfo(kPopeye).isExecutable()) QSKIP(kNoPopeye);
        QCOMPARE(run({"solve", "none.fen"}, popeyeHome_.path()).err,
                 "marlith: The book none.fen doesn't exist.\n");
        const QStringList solve{"solve", "problems.fen", "--maxtime", "1", "-o", "r.csv"};
        const Run whole =
            run(solve + QStringList{"--jobs", "2", "-o", "whole.csv"}, popeyeHome_.path());
        QCOMPARE(whole.status, 0);
        compareVerdicts({work_.filePath("whole.csv")});

        QProcess stopped;
        prepare(stopped, popeyeHome_.path());
        stopped.start(QStringLiteral(MARLITH_EXECUTABLE), solve);
        QTRY_VERIFY(readFile(work_.filePath("r.csv")).count('\n') >= 2);
        stopped.terminate();
        QVERIFY(stopped.waitForFinished());
        QCOMPARE(stopped.exitCode(), 1);
        QCOMPARE(stopped.readAllStandardError(),
                 "marlith: stopped; the same command goes on where it stopped\n");
        QCOMPARE(QDir(popeyeHome_.path()).entryList({"f*"}), QStringList());
        QFile torn(work_.filePath("r.csv"));
        QVERIFY(torn.open(QIODevice::Append));
        torn.write("6,None,,err");
        torn.close();
        QCOMPARE(run(solve, popeyeHome_.path()).status, 0);
        compareVerdicts({work_.filePath("r.csv")});
    }

    // A solver that can't be started is named, with the reason.
    void aSolverThatWontStart() {
        TempFolder home;
        writeFile(home.filePath(QStringLiteral("py")), "#!/nonexistent/interpreter\n");
        QFile::setPermissions(home.filePath(QStringLiteral("py")),
                              QFile::ReadOwner | QFile::ExeOwner);
        const Run result = run({"solve", "problems.fen"}, home.path());
        QCOMPARE(result.status, 1);
        QVERIFY2(
            result.err.startsWith("marlith: can't start " + home.filePath("py").toUtf8() + ": "),
            result.err.constData());
    }

    // Two shards run at once give the rows of one run; on a terminal the progress line counts
    // the problems of its shard and ends with the last.
    void solveShardsAtOnce() {
        if (!QFileInfo(kPopeye).isExecutable()) QSKIP(kNoPopeye);
        QProcess second;
        prepare(second, popeyeHome_.path());
        second.start(QStringLiteral(MARLITH_EXECUTABLE),
                     {"solve", "problems.fen", "--maxtime", "1", "--shard", "2/2", "-o", "2.csv"});
        const auto [status, shown] =
            onATerminal({"solve", work_.filePath("problems.fen"), "--maxtime", "1", "--shard",
                         "1/2", "-o", work_.filePath("1.csv")},
                        popeyeHome_.path());
        QVERIFY(second.waitForFinished(120000));
        QCOMPARE(status + second.exitCode(), 0);
        QVERIFY2(shown.mid(shown.lastIndexOf('\r')).startsWith("\r3 of 3, ") &&
                     shown.endsWith('\n'),
                 shown.constData());
        compareVerdicts({work_.filePath("1.csv"), work_.filePath("2.csv")});
    }

    // A picture that can't be written ends the export. The progress line held back (ten a
    // second at most) still shows before the message, which starts a line of its own.
    void aPictureThatCantBeWritten() {
        const QString taken = work_.filePath("tty/00003.svg");
        QVERIFY(QDir().mkpath(taken));
        const auto [status, shown] = onATerminal(
            {"export", work_.filePath("b.fen"), "-o", work_.filePath("tty")}, home_.path());
        QCOMPARE(status, 1);
        QVERIFY2(shown.mid(shown.lastIndexOf('\r')).startsWith("\r2 of 3, ") &&
                     shown.endsWith("\nmarlith: can't write " + taken.toUtf8() + "\n"),
                 shown.constData());
    }

    // What Popeye's answer says, the keys at the outermost level only.
    void popeyeAnswers_data() {
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        QTest::addColumn<QString>("answer"); // verdict | keys | seconds
        QTest::newRow("key, defences and a try")
            << "   1.Qa1-a2 ?\n      but\n      1...Ka8-b8 !\n   1.Kf4-e3 !\n"
               "      1...Kc1-d1   2.Rb3-b1 #\n\nsolution finished. Time = 2:05.3 m:s\n"
            << ""
            << "sound | 1.Kf4-e3 | 125.300";
        QTest::newRow("help play from the second half")
            << "  1...Qa1-e5 +   2.Ke8-f8 Qe5-b8 #\n  1...Qa1-d4   2.Ke8-f8 Qd4-d8 #\n"
            << ""
            << "cooked | 1...Qa1-e5 + 2.Ke8-f8 Qe5-b8 #; 1...Qa1-d4 2.Ke8-f8 Qd4-d8 # | ";
        QTest::newRow("limit") << "  1.e7-e5 Qd1-h5\nsolving interrupted. Time = 1.953 s\n"
                               << ""
                               << "time limit | 1.e7-e5 Qd1-h5 | 1.953";
        QTest::newRow("error") << "solution finished.\n"
                               << "\nthe side to play can capture the king"
                               << "error: the side to play can capture the king |  | ";
    }
    void popeyeAnswers() {
        QFETCH(QString, out);
        QFETCH(QString, err);
        const PopeyeAnswer answer = readPopeyeAnswer(out, err);
        QTEST(QStringList(
                  {verdictText(answer), answer.keys.join(QLatin1String("; ")), answer.seconds})
                  .join(QLatin1String(" | ")),
              "answer");
    }

    void resultsFile() {
        QCOMPARE(csvRow({"7", "a \"b\", c", "d\ne"}), QByteArray("7,\"a \"\"b\"\", c\",d e\n"));
        QCOMPARE(keysText(QStringList(20, "k")), QStringList(20, "k").join("; ")); // all shown
        const QByteArray text = QByteArray(kResultsHeader) + "2,x\n4\n10,y\n3,\"torn";
        const std::optional<EarlierResults> earlier = readEarlierResults(text);
        QVERIFY(earlier);
        QCOMPARE(earlier->games, (std::set<int32_t>{2, 10}));
        QCOMPARE(earlier->wholeBytes, text.indexOf("3,"));
        QVERIFY(!readEarlierResults("name,verdict\n"));
        QCOMPARE(parseShard("2/3")->index, 2);
        QVERIFY(!parseShard("0/3") && !parseShard("4/3") && !parseShard("1"));
        CliOptions options = parseCommandLine({"export", "b", "--size=300", "-o", "f", "--format",
                                               "PNG", "--last", "--search", "x"})
                                 .options;
        QCOMPARE(options.command, CliCommand::Export);
        QCOMPARE(
            std::tuple(options.input, options.output, options.width, options.format, options.last),
            std::tuple(QString("b"), QString("f"), 300, QString("png"), true));
        QCOMPARE(options.search, std::optional<QString>("x"));
        QVERIFY(!isCommand({"book.pgn", "--help"}));
        QCOMPARE(QStringList({parseCommandLine({"export", "b", "c", "-o", "f"}).error,
                              parseCommandLine({"render", "K7", "-o"}).error,
                              parseCommandLine({"render", "--", "-K7", "-o", "f"}).options.input}),
                 QStringList({"unexpected argument 'c'", "option -o needs a value", "-K7"}));
        const CriteriaFields fields = criteriaFields("Paul; \"a;b\"; WHITE: 1-6 ; notations:Ke1");
        QCOMPARE(std::tuple(fields.words, fields.whiteMen, fields.blackMen, fields.notations),
                 std::tuple(QString("Paul,\"a;b\""), QString("1-6"), QString(), QString("Ke1")));
    }

    void progress_data() {
        QTest::addColumn<int>("done");
        QTest::addColumn<int>("total");
        QTest::addColumn<int>("msecs");
        QTest::addColumn<QString>("text");
        QTest::newRow("start") << 0 << 10 << 0 << "0 of 10";
        QTest::newRow("slow") << 50 << 200 << 10000 << "50 of 200, 5.0/s, 0:30 left";
        QTest::newRow("ten a second") << 100 << 400 << 10000 << "100 of 400, 10/s, 0:30 left";
        QTest::newRow("fast, rounded")
            << 1000 << 13927 << 2000 << "1000 of 13927, 500/s, 0:26 left";
        QTest::newRow("hours") << 1 << 3601 << 1000 << "1 of 3601, 1.0/s, 1:00:00 left";
        QTest::newRow("done") << 7 << 7 << 3000 << "7 of 7, 2.3/s, 0:00 left";
        QTest::newRow("a millisecond") << 1 << 2 << 1 << "1 of 2, 1000/s, 0:00 left";
    }
    void progress() {
        QFETCH(int, done);
        QFETCH(int, total);
        QFETCH(int, msecs);
        QFETCH(QString, text);
        QCOMPARE(progressText(done, total, msecs), text);
    }
};

QTEST_GUILESS_MAIN(TstCommandLine)
#include "tst_command_line.moc"
