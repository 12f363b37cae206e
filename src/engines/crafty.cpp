#include "engines/crafty.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace marlith {

namespace {

QString logName(const QString& ext) {
    return QStringLiteral("log.") + ext;
}

} // namespace

QString castlingField(const QString& board) {
    // The eight ranks as eight texts of eight squares, from the 8th down.
    QStringList ranks;
    for (const QString& row : board.split(u'/')) {
        QString squares;
        for (const QChar c : row)
            squares += c.isDigit() ? QString(c.digitValue(), u' ') : QString(c);
        ranks.append(squares);
    }
    if (ranks.size() != 8) return QStringLiteral("-");
    for (const QString& rank : ranks)
        if (rank.size() != 8) return QStringLiteral("-");
    QString field;
    const auto at = [&](int rank, int file) { return ranks[8 - rank].at(file); };
    if (at(1, 4) == u'K') {
        if (at(1, 7) == u'R') field += u'K';
        if (at(1, 0) == u'R') field += u'Q';
    }
    if (at(8, 4) == u'k') {
        if (at(8, 7) == u'r') field += u'k';
        if (at(8, 0) == u'r') field += u'q';
    }
    return field.isEmpty() ? QStringLiteral("-") : field;
}

QByteArray craftyRcText(const QString& depth, const QString& fen, bool whiteToMove) {
    // The board field alone: the side comes from the buttons, and each
    // castling whose king and rook stand at home is allowed, as problems take it.
    const QString board = fen.section(u' ', 0, 0);
    const QStringList lines = {
        QStringLiteral("log off"),
        QStringLiteral("ponder off"),
        QStringLiteral("sd ") + depth,
        QStringLiteral("setboard ") + board +
            (whiteToMove ? QStringLiteral(" w ") : QStringLiteral(" b ")) + castlingField(board) +
            QStringLiteral(" -"),
        whiteToMove ? QStringLiteral("white") : QStringLiteral("black"),
        QStringLiteral("log on"),
        QStringLiteral("analyze"),
        QStringLiteral("exit"),
        QStringLiteral("quit"),
        QStringLiteral("exit"),
    };
    QByteArray text;
    for (const QString& line : lines)
        text += line.toUtf8() + "\r\n";
    return text;
}

QString firstFreeLogExtension(const QString& folder) {
    int i = 1;
    for (; i <= 999; ++i)
        if (!QFileInfo::exists(folder + logName(QString::number(1000 + i).right(3)))) break;
    return QString::number(1000 + i).right(3);
}

QString runLogExtension(const QString& folder, const QString& from) {
    bool ok = false;
    const int first = from.toInt(&ok);
    QString best;
    QDateTime bestTime;
    int bestNumber = -1;
    const QFileInfoList files =
        QDir(folder).entryInfoList({QStringLiteral("log.*")}, QDir::Files, QDir::Name);
    for (const QFileInfo& file : files) {
        const QString name = file.fileName();
        if (name.size() != 7 || !name.startsWith(QLatin1String("log."))) continue;
        const QString ext = name.right(3);
        bool digits = false;
        const int number = ext.toInt(&digits);
        if (!digits || (ok && number < first) || file.size() <= 0) continue;
        const QDateTime time = file.lastModified();
        if (best.isEmpty() || time > bestTime || (time == bestTime && number > bestNumber)) {
            best = ext;
            bestTime = time;
            bestNumber = number;
        }
    }
    return best;
}

QStringList logRows(const QByteArray& data) {
    QByteArray copy = data;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    return readLines(buffer, false);
}

QString craftyFen(const QString& text, const QString& piecesList, const QString& englishNotation) {
    // Crafty knows the orthodox pieces only: a fairy piece leaves its square
    // empty, and the empty squares of the board field run together again.
    static const QString kOrthodox = QStringLiteral("KQRBNPkqrbnp");
    QString copy;
    copy.reserve(text.size());
    int empties = 0;
    bool inBoard = true;
    const auto flush = [&] {
        if (empties > 0) copy += QString::number(empties);
        empties = 0;
    };
    for (const QChar c : text) {
        if (c == u' ') inBoard = false;
        const qsizetype p = piecesList.indexOf(c);
        QChar out = c;
        if (p >= englishNotation.size()) continue; // beyond the English letters
        if (p >= 0) out = englishNotation[p];
        if (inBoard && p >= 0 && !kOrthodox.contains(out)) {
            ++empties;
            continue;
        }
        if (inBoard && p < 0 && out >= u'1' && out <= u'9') {
            empties += out.unicode() - '0';
            continue;
        }
        flush();
        copy += out;
    }
    flush();
    return copy;
}

QString elapsedText(int32_t elapsed) {
    return clockText(elapsed);
}

void CraftyRun::begin(const QString& folder, const QString& logExtension) {
    active_ = true;
    stage_ = 0;
    folder_ = folder;
    firstExtension_ = logExtension;
    logExtension_ = logExtension;
    clock_.reset();
}

std::optional<QString> CraftyRun::clock(double now) {
    if (!active_) return std::nullopt;
    return clock_.tick(now, [](int32_t n) { return elapsedText(n); });
}

void CraftyRun::cancel() {
    stage_ = 0;
    active_ = false;
    clock_.reset();
    // The command file serves one run only; none is left in the user's folder.
    if (!folder_.isEmpty()) QFile::remove(folder_ + QLatin1String(kCraftyRc));
}

CraftyRun::Step CraftyRun::advance(bool engineRunning, const std::function<bool()>& start,
                                   QStringList& rows) {
    if (!active_) return Step::Waiting;
    const QString log = folder_ + logName(logExtension_);
    switch (stage_) {
    case 0: {
        const QFileInfo rc(folder_ + QLatin1String(kCraftyRc));
        if (rc.exists() && rc.size() > 0 && start && start()) stage_ = 1;
        return Step::Waiting;
    }
    case 1: {
        // The log is read once the engine has ended and let go of it.
        if (engineRunning) return Step::Waiting;
        const QString ext = runLogExtension(folder_, firstExtension_);
        if (ext.isEmpty()) {
            cancel();
            return Step::Ended;
        }
        logExtension_ = ext;
        stage_ = 2;
        return Step::Waiting;
    }
    case 2: {
        QFile file(log);
        if (!file.open(QIODevice::ReadOnly)) return Step::Waiting;
        rows = readLines(file, false);
        stage_ = 3;
        return Step::Rows;
    }
    case 3:
        if (QFileInfo::exists(log)) QFile::remove(log);
        if (!QFileInfo::exists(log)) stage_ = 4;
        return Step::Waiting;
    default: {
        const QString game = folder_ + QStringLiteral("game.") + logExtension_;
        if (QFileInfo::exists(game)) QFile::remove(game);
        if (QFileInfo::exists(game)) return Step::Waiting;
        // The game file of the log the engine opened first and put away.
        if (firstExtension_ != logExtension_)
            QFile::remove(folder_ + QStringLiteral("game.") + firstExtension_);
        cancel();
        return Step::Finished;
    }
    }
}

} // namespace marlith
