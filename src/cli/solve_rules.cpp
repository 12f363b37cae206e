#include "cli/solve_rules.h"

#include "engines/popeye.h"

#include <QRegularExpression>
#include <algorithm>

namespace marlith {

std::optional<Shard> parseShard(const QString& text) {
    const qsizetype slash = text.indexOf(u'/');
    if (slash < 0) return std::nullopt;
    bool indexOk = false;
    bool countOk = false;
    const int index = text.left(slash).toInt(&indexOk);
    const int count = text.mid(slash + 1).toInt(&countOk);
    if (!indexOk || !countOk || index < 1 || index > count) return std::nullopt;
    return Shard{index, count};
}

QString headerValue(const QStringList& headers, const QString& tag) {
    const QString start = u'[' + tag + u' ';
    for (const QString& line : headers) {
        if (!line.startsWith(start, Qt::CaseInsensitive)) continue;
        const qsizetype open = line.indexOf(u'"');
        const qsizetype close = line.lastIndexOf(u'"');
        if (open >= 0 && close > open) return line.mid(open + 1, close - open - 1).trimmed();
    }
    return {};
}

QString problemStipulation(const std::optional<QString>& forAll, const QStringList& headers,
                           bool pbmBook) {
    if (forAll) return forAll->trimmed();
    if (const std::optional<QString> tag = stipulationTag(headers)) return *tag;
    return pbmBook ? headerValue(headers, QStringLiteral("Event")) : QString();
}

QString popeyeSeconds(const QString& time) {
    static const QRegularExpression form(
        QStringLiteral("^(?:(\\d+):)?(?:(\\d+):)?(\\d+)(?:\\.(\\d{1,3}))? (s|m:s|h:m:s)$"));
    const QRegularExpressionMatch match = form.match(time.trimmed());
    if (!match.hasMatch()) return {};
    // The parts from the right: seconds, minutes, hours, as many as the unit names.
    const QString unit = match.captured(5);
    const int parts = static_cast<int>(unit.count(u':')) + 1;
    QStringList numbers;
    for (int group = 1; group <= 3; ++group)
        if (match.hasCaptured(group)) numbers << match.captured(group);
    if (numbers.size() != parts) return {};
    int64_t seconds = 0;
    for (const QString& number : numbers)
        seconds = seconds * 60 + number.toLongLong();
    const QString millis = match.captured(4).leftJustified(3, u'0');
    return QStringLiteral("%1.%2").arg(seconds).arg(millis);
}

PopeyeAnswer readPopeyeAnswer(const QString& out, const QString& err) {
    PopeyeAnswer answer;
    static const QRegularExpression firstMove(QStringLiteral("^(\\s*)1\\.\\S"));
    static const QRegularExpression time(QStringLiteral("Time = (.*)$"));
    qsizetype outermost = -1;
    bool interrupted = false;
    for (const QString& line : out.split(u'\n')) {
        const QString text = line.trimmed();
        if (text.startsWith(QLatin1String("solving interrupted."))) interrupted = true;
        if (const QRegularExpressionMatch took = time.match(text); took.hasMatch())
            answer.seconds = popeyeSeconds(took.captured(1));
        const QRegularExpressionMatch move = firstMove.match(line);
        if (!move.hasMatch() || text.endsWith(u'?')) continue;
        // Defences and set play stand deeper than the keys they answer.
        const qsizetype indent = move.capturedLength(1);
        if (outermost >= 0 && indent > outermost) continue;
        if (indent < outermost || outermost < 0) answer.keys.clear();
        outermost = indent;
        QString key = text.simplified();
        if (key.endsWith(QLatin1String(" !"))) key.chop(2);
        answer.keys << key;
    }
    QStringList errors;
    for (const QString& line : err.split(u'\n'))
        if (!line.trimmed().isEmpty()) errors << line.trimmed();
    if (!errors.isEmpty()) {
        answer.verdict = Verdict::Error;
        // The first complaint and the item it names say enough.
        answer.message = errors.mid(0, 2).join(QLatin1String(" "));
    } else if (interrupted) {
        answer.verdict = Verdict::TimeLimit;
    } else {
        answer.verdict = answer.keys.isEmpty()     ? Verdict::NoSolution
                         : answer.keys.size() == 1 ? Verdict::Sound
                                                   : Verdict::Cooked;
    }
    return answer;
}

QString verdictText(const PopeyeAnswer& answer) {
    switch (answer.verdict) {
    case Verdict::Sound:
        return QStringLiteral("sound");
    case Verdict::Cooked:
        return QStringLiteral("cooked");
    case Verdict::NoSolution:
        return QStringLiteral("no solution");
    case Verdict::TimeLimit:
        return QStringLiteral("time limit");
    case Verdict::Error:
        break;
    }
    return QStringLiteral("error: ") + answer.message;
}

QString keysText(const QStringList& keys) {
    constexpr qsizetype kShownKeys = 20;
    QString text = keys.mid(0, kShownKeys).join(QLatin1String("; "));
    if (keys.size() > kShownKeys)
        text += QStringLiteral("; and %1 more").arg(keys.size() - kShownKeys);
    return text;
}

QByteArray csvRow(const QStringList& fields) {
    QByteArray row;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0) row += ',';
        QString field = fields.at(i);
        field.replace(QLatin1String("\r\n"), QLatin1String(" "));
        field.replace(u'\r', u' ').replace(u'\n', u' ');
        if (field.contains(u',') || field.contains(u'"')) {
            field.replace(QLatin1String("\""), QLatin1String("\"\""));
            field = u'"' + field + u'"';
        }
        row += field.toUtf8();
    }
    return row + '\n';
}

std::optional<EarlierResults> readEarlierResults(const QByteArray& text) {
    EarlierResults earlier;
    const QByteArrayView header(kResultsHeader);
    if (!text.startsWith(header)) {
        // A run cut off while it wrote the header line starts afresh.
        if (header.startsWith(text)) return earlier;
        return std::nullopt;
    }
    earlier.wholeBytes = header.size();
    for (qsizetype start = header.size(); start < text.size();) {
        const qsizetype end = text.indexOf('\n', start);
        if (end < 0) break; // the torn last line
        const QByteArray line = text.mid(start, end - start);
        bool ok = false;
        const int32_t game = line.left(std::max<qsizetype>(0, line.indexOf(','))).toInt(&ok);
        if (ok) earlier.games.insert(game);
        start = end + 1;
        earlier.wholeBytes = start;
    }
    return earlier;
}

} // namespace marlith
