// The commands of the real program, run the way a shell runs them: no
// display, no platform named, a program folder of their own.
#include "cli/command_line.h"
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

struct Run {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

} // namespace

class TstCommandLine : public QObject {
    Q_OBJECT
    TempFolder home_;
    TempFolder work_;

    Run run(const QStringList& arguments) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            env.remove(QLatin1String(name));
        env.insert(QStringLiteral("MARLITH_HOME"), home_.path());
        QProcess process;
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(work_.path());
        process.start(QStringLiteral(MARLITH_EXECUTABLE), arguments);
        Run result;
        if (!process.waitForFinished(120000)) return result;
        result.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }
    QStringList exported(const QString& folder) {
        return QDir(work_.filePath(folder)).entryList(QDir::Files, QDir::Name);
    }

  private Q_SLOTS:
    void initTestCase() {
        writeFile(work_.filePath(QStringLiteral("b.fen")), kFenBook);
        writeFile(work_.filePath(QStringLiteral("b.pgn")), kPgnBook);
    }

    // Help and version on stdout; anything that can't be done is a status
    // and one line on stderr, and nothing lands in the program folder.
    void statusAndMessages_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("out"); // what stdout begins with; errors: stderr
        QTest::addColumn<int>("status");
        const QString fen = QStringLiteral("8/8/8/3k4/8/8/8/4K3");
        QTest::newRow("help") << QStringList{"--help"} << QByteArray("Usage: marlith [BOOK]\n")
                              << 0;
        QTest::newRow("help of a command")
            << QStringList{"render", "--help"} << QByteArray("Usage:") << 0;
        QTest::newRow("version") << QStringList{"--version"} << QByteArray("marlith 0.1.0\n") << 0;
        QTest::newRow("unknown option")
            << QStringList{"render", fen, "-o", "a.png", "--last"}
            << QByteArray("marlith: render has no option '--last'") << 2;
        QTest::newRow("missing -o")
            << QStringList{"export", "b.fen"} << QByteArray("marlith: export needs -o FOLDER") << 2;
        QTest::newRow("bad width") << QStringList{"render", fen, "-o", "a.png", "--size", "wide"}
                                   << QByteArray("marlith: --size needs a width") << 2;
        QTest::newRow("unknown style") << QStringList{"render", fen, "-o", "a.png", "--style", "x"}
                                       << QByteArray("marlith: unknown style 'x'") << 2;
        QTest::newRow("not a FEN text") << QStringList{"render", "8/8/3z4", "-o", "a.png"}
                                        << QByteArray("marlith: not a FEN text") << 2;
        QTest::newRow("picture format") << QStringList{"render", fen, "-o", "a.jpg"}
                                        << QByteArray("marlith: a.jpg: the name must end") << 2;
        QTest::newRow("unreadable book")
            << QStringList{"export", "none.pgn", "-o", "o"}
            << QByteArray("marlith: The book none.pgn doesn't exist.") << 1;
        QTest::newRow("nothing found")
            << QStringList{"export", "b.pgn", "-o", "o", "--search", "Tal"}
            << QByteArray("marlith: Game not found!") << 1;
    }
    void statusAndMessages() {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, out);
        QFETCH(int, status);
        const Run result = run(arguments);
        QCOMPARE(result.status, status);
        const QByteArray& shown = status == 0 ? result.out : result.err;
        QVERIFY2(shown.startsWith(out), shown.constData());
        if (status != 0) QCOMPARE(result.err.count('\n'), 1);
        QCOMPARE(QDir(home_.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    // Each format by its name, at the width asked for.
    void renderFormats_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("magic");
        QTest::newRow("png") << "d.png" << QByteArray("\x89PNG");
        QTest::newRow("svg") << "d.svg" << QByteArray("<?xml");
        QTest::newRow("pdf") << "d.pdf" << QByteArray("%PDF");
        QTest::newRow("bmp") << "d.bmp" << QByteArray("BM");
    }
    void renderFormats() {
        QFETCH(QString, name);
        QFETCH(QByteArray, magic);
        const Run result =
            run({"render", "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1", "-o", name,
                 "--size", "300"});
        QCOMPARE(result.status, 0);
        const QByteArray bytes = readFile(work_.filePath(name));
        QVERIFY(bytes.startsWith(magic));
        if (name.endsWith(QLatin1String(".svg")))
            QVERIFY(bytes.contains("viewBox=\"0 0 300 300\""));
        else if (!name.endsWith(QLatin1String(".pdf")))
            QCOMPARE(QImage(work_.filePath(name)).width(), 300);
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
        QTest::newRow("pgn, last") << QStringList{"export", "b.pgn", "-o", "last", "--last"}
                                   << QStringList{"00001.svg", "00002.svg"};
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
        const QByteArray svg = readFile(work_.filePath(arguments.at(3) + u'/' + names.first()));
        if (names.first().endsWith(QLatin1String(".svg")))
            QVERIFY(svg.startsWith("<?xml") && svg.contains("<svg"));
    }
    void lastPositionOfTheGame() {
        for (const QString& folder : {QStringLiteral("first"), QStringLiteral("last")})
            QCOMPARE(
                run({"export", "b.pgn", "-o", folder, folder == "last" ? "--last" : "--size=200"})
                    .status,
                0);
        QVERIFY(readFile(work_.filePath("first/00001.svg")) !=
                readFile(work_.filePath("last/00001.svg")));
    }

    void parsedOptions() {
        CliOptions options = parseCommandLine({"export", "b", "--size=300", "-o", "f", "--format",
                                               "PNG", "--last", "--search", "x"})
                                 .options;
        QCOMPARE(options.command, CliCommand::Export);
        QCOMPARE(
            std::tuple(options.input, options.output, options.width, options.format, options.last),
            std::tuple(QString("b"), QString("f"), 300, QString("png"), true));
        QCOMPARE(options.search, std::optional<QString>("x"));
        QVERIFY(!isCommand({"book.pgn", "--help"}));
        QCOMPARE(parseCommandLine({"export", "b", "c", "-o", "f"}).error,
                 "unexpected argument 'c'");
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
        QTest::newRow("fast, rounded")
            << 1000 << 13927 << 2000 << "1000 of 13927, 500/s, 0:26 left";
        QTest::newRow("hours") << 1 << 3601 << 1000 << "1 of 3601, 1.0/s, 1:00:00 left";
        QTest::newRow("done") << 7 << 7 << 3000 << "7 of 7, 2.3/s, 0:00 left";
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
