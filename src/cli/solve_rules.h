// The rules of `marlith solve` apart from the processes: which problems a
// shard takes, where a problem's stipulation comes from, what Popeye's answer
// says, and the results file's rows.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <set>

namespace marlith {

// The I-th of N shards (I from 1) takes the problems at places I, I + N,
// I + 2N, ... of the book (places from 1), so that the N shards together
// take each problem once.
struct Shard {
    int index = 1;
    int count = 1;
    bool takes(int32_t place) const { return (place - 1) % count == index - 1; }
};
// "I/N" with 1 <= I <= N; none for anything else.
std::optional<Shard> parseShard(const QString& text);

// The value of a game's header line "[Tag "value"]" (the tag in any case).
QString headerValue(const QStringList& headers, const QString& tag);

// The stipulation of a problem: the one given for all, else the game's
// [Stipulation] header, else, for a PBM book, its [Event] header (which holds
// the stipulation of each entry); empty when there is none.
QString problemStipulation(const std::optional<QString>& forAll, const QStringList& headers,
                           bool pbmBook);

// What Popeye said about one problem.
enum class Verdict { Sound, Cooked, NoSolution, TimeLimit, Error };
struct PopeyeAnswer {
    Verdict verdict = Verdict::NoSolution;
    QStringList keys; // the key moves, or the solutions of a help play
    QString message;  // an error's text
    QString seconds;  // Popeye's own solving time ("1.250"), or empty
};
// Read from Popeye's standard output and error. The keys are the move lines
// of the first move at the outermost indentation (a try, ending in "?", is
// not a key); "solving interrupted." is the time limit; any text on the error
// channel is an error.
PopeyeAnswer readPopeyeAnswer(const QString& out, const QString& err);

// "sound", "cooked", "no solution", "time limit", or "error: " and the message.
QString verdictText(const PopeyeAnswer& answer);

// The keys as a field: the first 20, separated by "; ", then how many more.
QString keysText(const QStringList& keys);

// Popeye's time ("0.014 s", "2:05.300 m:s", "1:02:03 h:m:s") in seconds with
// three decimals, or empty for a text it can't be.
QString popeyeSeconds(const QString& time);

// The results file: a header line, then one line per problem, fields quoted
// as RFC 4180 asks (within quotes when they hold a comma or a quote, a quote
// doubled); a line break inside a field becomes a blank, so that a row is
// always one line.
inline constexpr char kResultsHeader[] = "game,name,stipulation,verdict,keys,seconds\n";
QByteArray csvRow(const QStringList& fields);

// The games that a results file of an earlier run holds, and how many of its
// bytes are whole lines: a run that was cut off leaves a torn last line,
// which goes, and its problem is solved again. None when the text doesn't
// start with the header line.
struct EarlierResults {
    std::set<int32_t> games;
    qsizetype wholeBytes = 0;
};
std::optional<EarlierResults> readEarlierResults(const QByteArray& text);

} // namespace marlith
