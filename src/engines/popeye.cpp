#include "engines/popeye.h"

#include "styles/style_block.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>

namespace marlith {

QString runWarning(const PopeyeFields& fields) {
    if (fields.stipulation.isEmpty()) return QStringLiteral("Enter the stipulation!");
    if (fields.moves.isEmpty()) return QStringLiteral("Enter the number of moves!");
    if (fields.whitePieces.isEmpty() && fields.blackPieces.isEmpty() &&
        fields.neutralPieces.isEmpty())
        return QStringLiteral("Enter the pieces list!");
    return {};
}

StipulationFields splitStipulation(const QString& stipulation, const QString& moves) {
    StipulationFields fields{stipulation, moves, {}};
    // The number at the end: digits, perhaps with a half move behind a point.
    qsizetype start = stipulation.size();
    while (start > 0 && (stipulation[start - 1].isDigit() || stipulation[start - 1] == u'.'))
        --start;
    while (start < stipulation.size() && stipulation[start] == u'.')
        ++start;
    const QString number = stipulation.mid(start);
    bool valid = false;
    const double value = number.toDouble(&valid);
    if (number.isEmpty() || !valid) return fields;
    bool movesValid = false;
    const double movesValue = moves.toDouble(&movesValid);
    if (!moves.isEmpty() && moves != number && !(movesValid && movesValue == value)) {
        fields.warning = QStringLiteral("The stipulation ") + stipulation +
                         QStringLiteral(" has ") + number +
                         QStringLiteral(" moves, but Moves says ") + moves + QStringLiteral("!");
        return fields;
    }
    fields.stipulation = trimSpaces(stipulation.left(start));
    fields.moves = number;
    return fields;
}

std::optional<QString> stipulationTag(const QStringList& headers) {
    for (const QString& line : headers) {
        if (!line.startsWith(QLatin1String("[Stipulation "), Qt::CaseInsensitive)) continue;
        const qsizetype open = line.indexOf(u'"');
        const qsizetype close = line.indexOf(u'"', open + 1);
        if (open < 0 || close < 0) continue;
        const QString stipulation = trimSpaces(QStringView(line).mid(open + 1, close - open - 1));
        if (!stipulation.isEmpty()) return stipulation;
    }
    return std::nullopt;
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

QStringList problemFileLines(const PopeyeFields& fields, const QString& protocolPath) {
    QStringList lines;
    auto optional = [&lines](const char* keyword, const QString& value) {
        if (!value.isEmpty()) lines << QLatin1String(keyword) + value;
    };
    lines << QStringLiteral("BeginProblem") << QStringLiteral("Pieces");
    optional("White ", fields.whitePieces);
    optional("Black ", fields.blackPieces);
    optional("Neutral ", fields.neutralPieces);
    lines << QStringLiteral("Protocol ") + protocolPath;
    lines << QStringLiteral("Stipulation ") + fields.stipulation + fields.moves;
    optional("Condition ", fields.conditions);
    lines << QStringLiteral("Option ") + makeOptionText(fields.options).text;
    optional("Twin ", fields.twins);
    optional("ZeroPosition ", fields.zeroPosition);
    optional("", fields.command);
    lines << QStringLiteral("EndProblem");
    return lines;
}

QByteArray problemFileText(const PopeyeFields& fields, const QString& protocolPath) {
    QByteArray text;
    for (const QString& line : problemFileLines(fields, protocolPath))
        text += line.toUtf8() + "\r\n";
    return text;
}

QStringList popeyeArguments(const PopeyeFields& fields, const QString& problemPath) {
    QStringList arguments;
    if (!fields.maxMem.isEmpty()) arguments << QStringLiteral("-maxmem") << fields.maxMem;
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
    // The rest of the line is [start, end): it is never copied, and the blank
    // found once serves every row in front of it, so a long line costs time
    // in proportion to its length.
    qsizetype start = 0;
    qsizetype end = line.size();
    qsizetype blank = -2; // -2 not searched yet, -1 none up to the end
    bool trimmed = false;
    while (end - start > 50) {
        if (blank != -1 && blank < start + 44) blank = line.indexOf(u' ', start + 44);
        // The first blank from column 45 on; without one the row breaks behind column 44.
        const qsizetype cut = blank < 0 || blank >= end ? start + 44 : blank;
        rows << line.mid(start, cut - start);
        start = cut;
        if (!trimmed) {
            while (end > start && line[end - 1] == u' ')
                --end;
            trimmed = true;
        }
        while (start < end && line[start] == u' ')
            ++start;
    }
    rows << line.mid(start, end - start);
    return rows;
}

QString countdownText(double maxTime, int32_t elapsed) {
    const double left = maxTime - elapsed;
    const double r = std::isnan(left) || left < 0 ? 0.0 : roundHalfEven(std::min(left, 1e15));
    return QStringLiteral("limit ") + clockText(r);
}

namespace {

bool isLineEnd(char c) {
    return c == '\r' || c == '\n';
}

// A line without an end is shown in parts of this size.
constexpr qsizetype kMaxLineBytes = 8 * 1024 * 1024;

} // namespace

void ProtocolTail::feed(QByteArrayView bytes) {
    // Only the last maxRows lines of this part can be shown, as each line
    // gives a row at least: what stands before them is skipped.
    qsizetype from = 0;
    int ends = 0;
    for (qsizetype i = bytes.size() - 1; i > 0; --i) {
        if (isLineEnd(bytes[i]) && !isLineEnd(bytes[i - 1]) && ++ends > maxRows_) {
            from = i + 1;
            pending_.clear();
            midLine_ = false;
            cut_ = true;
            break;
        }
    }
    qsizetype start = from;
    for (qsizetype i = from; i < bytes.size(); ++i) {
        if (!isLineEnd(bytes[i])) continue;
        pending_.append(bytes.sliced(start, i - start));
        start = i + 1;
        endLine();
    }
    pending_.append(bytes.sliced(start));
    if (pending_.size() > kMaxLineBytes) endLine();
}

void ProtocolTail::finish() {
    endLine();
}

void ProtocolTail::skip() {
    pending_.clear();
    midLine_ = true;
    cut_ = true;
}

void ProtocolTail::endLine() {
    // Any run of CR and LF is one line end: no line is empty.
    if (pending_.isEmpty()) return;
    if (midLine_) {
        midLine_ = false;
        pending_.clear();
        return;
    }
    for (const QString& row : wrapRows(QString::fromUtf8(pending_)))
        added_.push_back(row);
    pending_.clear();
    while (added_.size() > static_cast<size_t>(maxRows_)) {
        added_.pop_front();
        cut_ = true;
    }
}

ProtocolTail::Change ProtocolTail::take(qsizetype shown) {
    Change change;
    change.added = QStringList(added_.begin(), added_.end());
    added_.clear();
    change.dropped = std::clamp<qsizetype>(shown + change.added.size() - maxRows_, 0, shown);
    if (change.dropped > 0) cut_ = true;
    change.cut = cut_;
    return change;
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
    offset_ = 0;
    tail_ = ProtocolTail();
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

bool PopeyeRun::readMore(qint64 limit) {
    // A solver that writes faster than it is read is followed at its end:
    // the text in between is left out.
    constexpr qint64 kMaxBehind = 16 * 1024 * 1024;
    QFile file(protocolPath_);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const qint64 size = file.size();
    if (size - offset_ > kMaxBehind) {
        offset_ = size - kMaxBehind;
        tail_.skip();
    }
    if (size <= offset_ || !file.seek(offset_)) return true;
    const QByteArray bytes = file.read(std::min(size - offset_, limit));
    if (bytes.isEmpty()) return true;
    offset_ += bytes.size();
    stage_ = 1;
    tail_.feed(bytes);
    return true;
}

PopeyeRun::Step PopeyeRun::advance(bool engineRunning) {
    if (!active_) return Step::Waiting;
    // Enough for a tick to stay short, whatever the solver writes.
    constexpr qint64 kBytesPerTick = 1024 * 1024;
    switch (stage_) {
    case 0:
    case 1: {
        if (engineRunning) {
            readMore(kBytesPerTick);
            return tail_.hasNewRows() ? Step::Rows : Step::Waiting;
        }
        // The solver is done with its protocol: the rest is read at once.
        readMore(std::numeric_limits<qint64>::max());
        if (stage_ == 0) { // no protocol, or an empty one
            cancel();
            return Step::Ended;
        }
        tail_.finish();
        stage_ = 2;
        return tail_.hasNewRows() ? Step::Rows : Step::Waiting;
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
