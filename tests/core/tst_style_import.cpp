#include "core/settings.h"
#include "core/style_import.h"
#include "support/file_bytes.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace marlith;
using namespace marlith::testing;

namespace {

// A file that the reader takes for a picture by its content, with a tag.
QByteArray picture(const char* tag) {
    return QByteArray("GIF89a") + tag;
}

// A style file in its own folder beside the picture p.bmp, a program folder,
// and the user's answers.
struct Run {
    TempFolder source;
    TempFolder program;
    QStringList known;
    QList<ImportAnswer> answers; // taken one per question, then OK
    QStringList questions;
    std::function<bool(const QString&, const QString&)> copy;
    bool complete = false;

    Run() { writeFile(in("p.bmp"), picture("p")); }

    QString in(const QString& name) const { return source.path() + name; }
    QString home(const QString& name) const { return program.path() + name; }
    QString settings() const { return QString::fromUtf8(readFile(home("Marlith.ini"))); }

    QStringList import(const QByteArray& styleFile, QString path = {}) {
        path = path.isEmpty() ? in("s.sty") : path;
        writeFile(path, crlf(styleFile));
        ImportHooks hooks;
        hooks.ask = [this](const QString& text, ImportButtons) {
            questions.append(text);
            return answers.isEmpty() ? ImportAnswer::Ok : answers.takeFirst();
        };
        hooks.copy = copy;
        return importStyles(path, program.path(), known, hooks, &complete);
    }
};

} // namespace

class TstStyleImport : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void blocksComeWithTheirBitmaps() {
        Run run;
        writeFile(run.in("b.bmp"), picture("border"));
        const QStringList added = run.import(
            "RecentStyle = x\nBeginStyle = Alpha\n  PiecesFile = p.bmp\n  BorderFile = b.bmp\n"
            "  SqrWidth = 20\nEndStyle\n"
            "BeginStyle = custom\n  PiecesFile = p.bmp\nEndStyle\n"
            "BeginStyle = Dropped\n  PiecesFile = p.bmp\n"
            "BeginStyle = Beta\n  PiecesFile = p.bmp\nEndStyle\n"
            "\"BeginStyle = Smith, John\"\n  PiecesFile = p.bmp\nEndStyle\n"
            "BeginStyle = Unended\n  PiecesFile = p.bmp\n");
        QCOMPARE(added, QStringList({"Alpha", "Beta"}));
        QCOMPARE(run.questions, QStringList({"The style name can't hold \",\"!"}));
        QCOMPARE(readFile(run.home("b.bmp")), picture("border"));
        // Lengths that no draw has filled in are stored as 0.
        QVERIFY(run.settings().startsWith(QString::fromLatin1(
            crlf("BeginStyle = Alpha\n  PiecesFile = p.bmp\n  BorderFile = b.bmp\n"
                 "  SqrWidth = 20 \n  SqrHeight = 15 \n  SqrHTab = 0 \n  SqrVTab = 0 \n"
                 "  WndWidth = 0 \n  WndHeight = 0 \nEndStyle\n\n"
                 "BeginStyle = Beta\n  PiecesFile = p.bmp\n"))));
        QVERIFY(!run.settings().contains(u"Dropped") && !run.settings().contains(u"custom"));
    }

    // Names that lead out of the style file's folder are looked for in it by
    // their last part; nothing is read from elsewhere nor written there.
    void filesAreTakenFromBesideTheStyleFileOnly() {
        Run run;
        QDir(run.source.path()).mkdir(QStringLiteral("sub"));
        writeFile(run.in("here.bmp"), picture("here"));
        writeFile(run.in("sub/passwd"), picture("a border"));
        QVERIFY(QFile::link(QStringLiteral("/etc/hosts"), run.in("sub/link.bmp")));
        QCOMPARE(run.import("BeginStyle = Up\n  PiecesFile = ../../here.bmp\nEndStyle\n"
                            "BeginStyle = Back\n  PiecesFile = ..\\\\here.bmp\nEndStyle\n"
                            "BeginStyle = Linked\n  PiecesFile = link.bmp\nEndStyle\n"
                            "BeginStyle = Dots\n  PiecesFile = ..\nEndStyle\n"
                            "BeginStyle = Abs\n  PiecesFile = ../passwd\n"
                            "  BorderFile = /etc/passwd\nEndStyle\n",
                            run.in("sub/s.sty")),
                 QStringList({"Abs"}));
        const auto missing = [&run](const char* name) {
            return "PiecesFile " + run.in("sub/") + name + " not found!";
        };
        QCOMPARE(run.questions, QStringList({missing("here.bmp"), missing("here.bmp"),
                                             missing("link.bmp"), missing("")}));
        QCOMPARE(QDir(run.program.path()).entryList(QDir::Files, QDir::Name),
                 QStringList({"Marlith.ini", "passwd"}));
        QVERIFY(run.settings().contains(u"PiecesFile = passwd\r\n  BorderFile = passwd\r\n"));
    }

    // Into a library of two styles: a known name is replaced on Yes alone, and the bitmap its old
    // style owned with it; any other file keeps its bytes, and the program's own names are never
    // taken, even when free. What the settings file would not give back, what is no picture and a
    // value too large are refused, each with its message; Cancel ends the import and keeps what
    // came before it. None of it, nor a full disk, makes the import complete.
    void importIntoALibrary() {
        Run run;
        writeFile(run.home("Marlith.ini"),
                  crlf("BeginStyle = Mine\n  PiecesFile = p.bmp\nEndStyle\n\n"
                       "BeginStyle = Theirs\n  PiecesFile = t.bmp\nEndStyle\n"));
        for (const char* name : {"p.bmp", "t.bmp", "t-2.bmp", "same.bmp"})
            writeFile(run.home(name), picture(name));
        for (const char* name : {"same.bmp", "Marlith.ini", "py.dat"})
            writeFile(run.in(name), picture(name[0] == 's' ? name : "no settings, no table"));
        writeFile(run.in("t.bmp"), picture("new"));
        writeFile(run.in("text.bmp"), "no picture");
        run.known = QStringList({"Mine", "Theirs"});
        run.answers = {ImportAnswer::No, ImportAnswer::Yes};
        QCOMPARE(run.import("BeginStyle = THEIRS\n  PiecesFile = p.bmp\nEndStyle\n"
                            "BeginStyle = mine\n  PiecesFile = p.bmp\nEndStyle\n"
                            "BeginStyle = Other\n  PiecesFile = t.bmp\n  BorderFile = same.bmp\n"
                            "EndStyle\nBeginStyle = Ini\n  PiecesFile = Marlith.ini\nEndStyle\n"
                            "BeginStyle = Py\n  PiecesFile = py.dat\nEndStyle\n"
                            "BeginStyle = B\n\"  FontName = x\nRecentFile = /etc/shadow\"\n"
                            "  PiecesFile = p.bmp\nEndStyle\n"
                            "BeginStyle = C\n  PiecesFile = text.bmp\nEndStyle\n"
                            "BeginStyle = D\n  SqrWidth = 3000\nEndStyle\n"),
                 QStringList({"Other", "Ini", "Py"}));
        QVERIFY(!run.complete);
        QCOMPARE(run.known, QStringList({"Mine", "Theirs", "Other", "Ini", "Py"}));
        QCOMPARE(run.questions.size(), 5);
        QCOMPARE(run.questions.first(4),
                 QStringList({replaceStyleQuestion("THEIRS"), replaceStyleQuestion("mine"),
                              "The style's FontName can't hold a line break!",
                              "PiecesFile " + run.in("text.bmp") + " is no picture!"}));
        QVERIFY(run.questions[4].contains(u"doesn't fit"));
        run.answers = {ImportAnswer::Cancel};
        QCOMPARE(run.import("BeginStyle = OTHER\n  PiecesFile = p.bmp\nEndStyle\n"
                            "BeginStyle = Later\n  PiecesFile = p.bmp\nEndStyle\n"),
                 QStringList());
        QVERIFY(!run.complete);
        QCOMPARE(readFile(run.home("p.bmp")), picture("p"));
        for (const char* name : {"t.bmp", "t-2.bmp"})
            QCOMPARE(readFile(run.home(name)), picture(name));
        QCOMPARE(readFile(run.home("t-3.bmp")), picture("new"));
        const QString stored = run.settings();
        for (const char* text :
             {"BeginStyle = mine", "BeginStyle = Theirs", "PiecesFile = py-2.dat",
              "PiecesFile = t-3.bmp\r\n  BorderFile = same.bmp\r\n", "PiecesFile = Marlith-2.ini"})
            QVERIFY2(stored.contains(QLatin1String(text)), text);
        for (const char* text : {"THEIRS", "Mine", "shadow", "Later"})
            QVERIFY2(!stored.contains(QLatin1String(text)), text);

        QCOMPARE(run.import("BeginStyle = E\n  PiecesFile = p.bmp\nEndStyle\n"), QStringList{"E"});
        QVERIFY(run.complete);
        const QByteArray before = readFile(run.home("Marlith.ini"));
        {
            const FileSizeLimit full(before.size());
            QCOMPARE(run.import("BeginStyle = F\n  PiecesFile = p.bmp\nEndStyle\n"), QStringList());
        }
        QVERIFY(!run.complete);
        QCOMPARE(readFile(run.home("Marlith.ini")), before);
        QCOMPARE(run.known.size(), 6);
    }

    // A copy that fails: OK stores the style all the same, Cancel ends.
    void aFailedCopyAsks() {
        for (const ImportAnswer answer : {ImportAnswer::Ok, ImportAnswer::Cancel}) {
            Run run;
            run.copy = [](const QString&, const QString&) { return false; };
            run.answers = {answer};
            run.import("BeginStyle = A\n  PiecesFile = p.bmp\nEndStyle\n"
                       "BeginStyle = B\n  PiecesFile = p.bmp\nEndStyle\n");
            QCOMPARE(run.questions.first(),
                     "Error on copy:\nfrom " + run.in("p.bmp") + "\nto " + run.home("p.bmp"));
            QCOMPARE(run.settings().contains(u"BeginStyle = A"), answer == ImportAnswer::Ok);
            QVERIFY(!QFile::exists(run.home("p.bmp")));
        }
    }

    // A style file in the program folder itself copies nothing; numbers out
    // of range and bytes that are no text change nothing.
    void aStyleFileAtHomeAndBadOnes() {
        Run run;
        writeFile(run.home("p.bmp"), picture("p"));
        run.copy = [](const QString&, const QString&) { return false; };
        QCOMPARE(run.import("BeginStyle = A\n  PiecesFile = p.bmp\nEndStyle\n", run.home("s.sty")),
                 QStringList({"A"}));
        const QString stored = run.settings();
        QVERIFY(run.questions.isEmpty() && stored.contains(u"PiecesFile = p.bmp"));
        QVERIFY(readStyleFile("BeginStyle = B\r\nXBase = 1e300\r\nEndStyle").stoppedAtFault);
        // Items behind a block's end belong to no block.
        QCOMPARE(readStyleFile("BeginStyle = C\nEndStyle\nXBase = 9\nEndStyle").blocks.size(), 1);
        QCOMPARE(run.import(QByteArray(5000, '\xFF')), QStringList());
        QCOMPARE(run.settings(), stored);
    }
};

QTEST_GUILESS_MAIN(TstStyleImport)
#include "tst_style_import.moc"
