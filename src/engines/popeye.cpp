#include "engines/popeye.h"

#include "styles/style_block.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace marlith {

QString runWarning(const PopeyeParams& popeyeParams) {
    if (popeyeParams[0].isEmpty()) return QStringLiteral("Enter the stipulation!");
    if (popeyeParams[1].isEmpty()) return QStringLiteral("Enter the number of moves!");
    if (popeyeParams[6].isEmpty() && popeyeParams[7].isEmpty() && popeyeParams[8].isEmpty())
        return QStringLiteral("Enter the pieces list!");
    return {};
}

OptionText makeOptionText(const QString& options) {
    OptionText option;
    option.text = trimSpaces(QStringLiteral("NoBoard ") + options);
    const qsizetype p = option.text.toUpper().indexOf(QLatin1String("MAXTIME "));
    if (p < 0) {
        option.maxTime = 60;
        option.text = QStringLiteral("MaxTime 60 ") + option.text;
        return option;
    }
    const qsizetype s = p + 8;
    const QString padded = option.text + QLatin1Char(' ');
    const qsizetype e = padded.indexOf(QLatin1Char(' '), s);
    const QString value = trimSpaces(padded.mid(s, e - s));
    const std::optional<double> number = readNumber(value);
    option.maxTime = number && std::isfinite(*number) ? *number : 0.0;
    return option;
}

QStringList problemFileLines(const PopeyeParams& popeyeParams, const QString& protocolPath) {
    QStringList lines;
    auto optional = [&lines](const char* keyword, const QString& value) {
        if (!value.isEmpty()) lines << QLatin1String(keyword) + value;
    };
    lines << QStringLiteral("BeginProblem") << QStringLiteral("Pieces");
    optional("White ", popeyeParams[6]);
    optional("Black ", popeyeParams[7]);
    optional("Neutral ", popeyeParams[8]);
    lines << QStringLiteral("Protocol ") + protocolPath;
    lines << QStringLiteral("Stipulation ") + popeyeParams[0] + popeyeParams[1];
    optional("Condition ", popeyeParams[2]);
    lines << QStringLiteral("Option ") + makeOptionText(popeyeParams[3]).text;
    optional("Twin ", popeyeParams[4]);
    optional("ZeroPosition ", popeyeParams[5]);
    optional("", popeyeParams[9]);
    lines << QStringLiteral("EndProblem");
    return lines;
}

QByteArray problemFileText(const PopeyeParams& popeyeParams, const QString& protocolPath) {
    QByteArray text;
    for (const QString& line : problemFileLines(popeyeParams, protocolPath))
        text += line.toUtf8() + "\r\n";
    return text;
}

QStringList popeyeArguments(const PopeyeParams& popeyeParams, const QString& problemPath) {
    QStringList arguments;
    if (!popeyeParams[10].isEmpty()) arguments << QStringLiteral("-maxmem") << popeyeParams[10];
    arguments << problemPath;
    return arguments;
}

EntryChoice entryChoice(const QString& entry, const QString& param) {
    EntryChoice choice;
    if (entry.toUpper() == QLatin1String("NONE")) {
        choice.none = true;
        return choice;
    }
    const qsizetype mark = entry.indexOf(QLatin1String(" '"));
    const QChar mode = mark < 0 ? QChar(u'>') : mark + 2 < entry.size() ? entry[mark + 2] : QChar();
    const QString text = trimSpaces(mark < 0 ? entry : entry.left(mark));
    const QString blank = QStringLiteral(" ");
    if (mode == u'>')
        choice.param = trimSpaces(param + blank + text);
    else if (mode == u'<')
        choice.param = trimSpaces(text + blank + param);
    else if (mode == u']')
        choice.param = trimSpaces(param + text);
    else if (mode == u'[')
        choice.param = trimSpaces(text + param);
    else if (mode == u'#')
        choice.param = text;
    else
        choice.param = param;
    return choice;
}

QStringList wrapRows(const QString& line) {
    QStringList rows;
    if (line.isEmpty()) return rows;
    QString rest = line;
    while (rest.size() > 50) {
        qsizetype p = rest.indexOf(QLatin1Char(' '), 44) + 1; // 1-based, 0 for none
        if (p == 0) p = 45;
        rows << rest.left(p - 1);
        rest = trimSpaces(rest.mid(p - 1));
    }
    rows << rest;
    return rows;
}

QStringList protocolRows(const QStringList& lines) {
    QStringList rows;
    for (const QString& line : lines) {
        rows << wrapRows(line);
        if (rows.size() >= kMaxResultRows) break;
    }
    return rows;
}

QString countdownText(double maxTime, int32_t elapsed) {
    const double left = maxTime - elapsed;
    const double r = std::isnan(left) || left < 0 ? 0.0 : roundHalfEven(std::min(left, 1e15));
    return clockText(r);
}

QString problemPath(const QString& programFolder, const QString& tempSeed) {
    return programFolder + tempSeed + QStringLiteral("o.tmp");
}

QString protocolPath(const QString& programFolder, const QString& tempSeed) {
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
    return clock_.tick(now, [maxTime](int32_t n) { return countdownText(maxTime, n); });
}

void PopeyeRun::cancel() {
    stage_ = 0;
    active_ = false;
    clock_.reset();
}

PopeyeRun::Step PopeyeRun::advance(bool engineRunning, QStringList& rows) {
    if (!active_) return Step::Waiting;
    switch (stage_) {
    case 0: {
        if (engineRunning) return Step::Waiting;
        const QFileInfo protocol(protocolPath_);
        if (protocol.exists() && protocol.size() > 0) {
            stage_ = 1;
            return Step::Waiting;
        }
        cancel();
        return Step::Ended;
    }
    case 1: {
        QFile file(protocolPath_);
        if (!file.open(QIODevice::ReadOnly)) return Step::Waiting;
        rows = protocolRows(readLines(file, true));
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
