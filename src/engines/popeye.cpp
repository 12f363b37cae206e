#include "engines/popeye.h"

#include "styles/style_block.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace marlith {

QString RunWarning(const PyParams& pyParam) {
    if (pyParam[0].isEmpty()) return QStringLiteral("Enter the stipulation!");
    if (pyParam[1].isEmpty()) return QStringLiteral("Enter the number of moves!");
    if (pyParam[6].isEmpty() && pyParam[7].isEmpty() && pyParam[8].isEmpty())
        return QStringLiteral("Enter the pieces list!");
    return {};
}

OptionText MakeOptionText(const QString& options) {
    OptionText option;
    option.text = TrimSpaces(QStringLiteral("NoBoard ") + options);
    const qsizetype p = option.text.toUpper().indexOf(QLatin1String("MAXTIME "));
    if (p < 0) {
        option.maxTime = 60;
        option.text = QStringLiteral("MaxTime 60 ") + option.text;
        return option;
    }
    const qsizetype s = p + 8;
    const QString padded = option.text + QLatin1Char(' ');
    const qsizetype e = padded.indexOf(QLatin1Char(' '), s);
    const QString value = TrimSpaces(padded.mid(s, e - s));
    const std::optional<double> number = ValNumber(value);
    option.maxTime = number && std::isfinite(*number) ? *number : 0.0;
    return option;
}

QStringList ProblemFileLines(const PyParams& pyParam, const QString& protocolPath) {
    QStringList lines;
    auto optional = [&lines](const char* keyword, const QString& value) {
        if (!value.isEmpty()) lines << QLatin1String(keyword) + value;
    };
    lines << QStringLiteral("BeginProblem") << QStringLiteral("Pieces");
    optional("White ", pyParam[6]);
    optional("Black ", pyParam[7]);
    optional("Neutral ", pyParam[8]);
    lines << QStringLiteral("Protocol ") + protocolPath;
    lines << QStringLiteral("Stipulation ") + pyParam[0] + pyParam[1];
    optional("Condition ", pyParam[2]);
    lines << QStringLiteral("Option ") + MakeOptionText(pyParam[3]).text;
    optional("Twin ", pyParam[4]);
    optional("ZeroPosition ", pyParam[5]);
    optional("", pyParam[9]);
    lines << QStringLiteral("EndProblem");
    return lines;
}

QByteArray ProblemFileText(const PyParams& pyParam, const QString& protocolPath) {
    QByteArray text;
    for (const QString& line : ProblemFileLines(pyParam, protocolPath))
        text += line.toUtf8() + "\r\n";
    return text;
}

QStringList PopeyeArguments(const PyParams& pyParam, const QString& problemPath) {
    QStringList arguments;
    if (!pyParam[10].isEmpty()) arguments << QStringLiteral("-maxmem") << pyParam[10];
    arguments << problemPath;
    return arguments;
}

EntryChoice ChooseEntry(const QString& entry, const QString& param) {
    EntryChoice choice;
    if (entry.toUpper() == QLatin1String("NONE")) {
        choice.none = true;
        return choice;
    }
    const qsizetype mark = entry.indexOf(QLatin1String(" '"));
    const QChar mode = mark < 0 ? QChar(u'>') : mark + 2 < entry.size() ? entry[mark + 2] : QChar();
    const QString text = TrimSpaces(mark < 0 ? entry : entry.left(mark));
    const QString blank = QStringLiteral(" ");
    if (mode == u'>')
        choice.param = TrimSpaces(param + blank + text);
    else if (mode == u'<')
        choice.param = TrimSpaces(text + blank + param);
    else if (mode == u']')
        choice.param = TrimSpaces(param + text);
    else if (mode == u'[')
        choice.param = TrimSpaces(text + param);
    else if (mode == u'#')
        choice.param = text;
    else
        choice.param = param;
    return choice;
}

QStringList WrapRows(const QString& line) {
    QStringList rows;
    if (line.isEmpty()) return rows;
    QString rest = line;
    while (rest.size() > 50) {
        qsizetype p = rest.indexOf(QLatin1Char(' '), 44) + 1; // 1-based, 0 for none
        if (p == 0) p = 45;
        rows << rest.left(p - 1);
        rest = TrimSpaces(rest.mid(p - 1));
    }
    rows << rest;
    return rows;
}

QStringList ProtocolRows(const QStringList& lines) {
    QStringList rows;
    for (const QString& line : lines) {
        rows << WrapRows(line);
        if (rows.size() >= kMaxResultRows) break;
    }
    return rows;
}

QString CountdownText(double maxTime, int32_t elapsed) {
    const double left = maxTime - elapsed;
    const double r = std::isnan(left) || left < 0 ? 0.0 : RoundHalfEven(std::min(left, 1e15));
    return ClockText(r);
}

QString ProblemPath(const QString& programFolder, const QString& tempSeed) {
    return programFolder + tempSeed + QStringLiteral("o.tmp");
}

QString ProtocolPath(const QString& programFolder, const QString& tempSeed) {
    return programFolder + tempSeed + QStringLiteral("i.tmp");
}

void PopeyeRun::begin(const QString& protocolPath, double maxTime) {
    active_ = true;
    stage_ = 0;
    maxTime_ = maxTime;
    protocolPath_ = protocolPath;
    clock_.reset();
}

std::optional<QString> PopeyeRun::clock(double now) {
    if (!active_) return std::nullopt;
    const double maxTime = maxTime_;
    return clock_.tick(now, [maxTime](int32_t n) { return CountdownText(maxTime, n); });
}

PopeyeRun::Step PopeyeRun::advance(bool engineRunning, QStringList& rows) {
    if (!active_) return Step::Waiting;
    switch (stage_) {
    case 0: {
        const QFileInfo protocol(protocolPath_);
        if (!engineRunning && protocol.exists() && protocol.size() > 0) stage_ = 1;
        return Step::Waiting;
    }
    case 1: {
        QFile file(protocolPath_);
        if (!file.open(QIODevice::ReadOnly)) return Step::Waiting;
        rows = ProtocolRows(ReadLines(file, true));
        stage_ = 2;
        return Step::Rows;
    }
    default:
        if (QFileInfo::exists(protocolPath_)) QFile::remove(protocolPath_);
        if (QFileInfo::exists(protocolPath_)) return Step::Waiting;
        stage_ = 0;
        active_ = false;
        clock_.reset();
        return Step::Finished;
    }
}

} // namespace marlith
