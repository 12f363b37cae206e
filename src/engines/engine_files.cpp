#include "engines/engine_files.h"

#include "styles/style_block.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cmath>

namespace marlith {

namespace {

QFileInfoList filesOf(const QString& folder) {
    return QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

// Line ends are CR, LF or CR LF; the last line needs none.
QList<QByteArray> splitLines(const QByteArray& data) {
    QList<QByteArray> lines;
    qsizetype start = 0;
    const qsizetype size = data.size();
    for (qsizetype i = 0; i < size; ++i) {
        const char c = data[i];
        if (c != '\r' && c != '\n') continue;
        lines.append(data.mid(start, i - start));
        if (c == '\r' && i + 1 < size && data[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < size) lines.append(data.mid(start));
    return lines;
}

// The leading number of the first two characters, rounded; a text without
// one is 0.
double lineNumber(const QString& line) {
    const std::optional<double> number = readNumber(QStringView(line).left(2));
    if (!number || !std::isfinite(*number)) return 0.0;
    return roundHalfEven(*number) + 0.0;
}

} // namespace

QString findInFolder(const QString& folder, const QStringList& names, bool executable) {
    const QFileInfoList files = filesOf(folder);
    for (const QString& name : names) {
        for (const QFileInfo& file : files) {
            if (file.fileName().compare(name, Qt::CaseInsensitive) != 0) continue;
            if (executable && !file.isExecutable()) continue;
            return file.absoluteFilePath();
        }
    }
    return {};
}

QString findPopeye(const QString& folder) {
    return findInFolder(folder, {QStringLiteral("py"), QStringLiteral("py.exe")}, true);
}

QString findCrafty(const QString& folder) {
    return findInFolder(folder, {QStringLiteral("crafty"), QStringLiteral("crafty.exe")}, true);
}

QString findPyDat(const QString& folder) {
    return findInFolder(folder, {QStringLiteral("py.dat")}, false);
}

EngineMenu locateEngines(bool popeyeFound, bool craftyFound, const QString& recentEngine) {
    EngineMenu menu;
    menu.recentEngine = recentEngine;
    menu.popeyeEnabled = popeyeFound;
    menu.craftyEnabled = craftyFound;
    if (!popeyeFound) {
        if (menu.recentEngine.toUpper() == QLatin1String("POPEYE"))
            menu.recentEngine = QStringLiteral("Crafty");
    } else {
        menu.toolShown = true;
        if (menu.recentEngine.isEmpty()) menu.recentEngine = QStringLiteral("Popeye");
    }
    if (!craftyFound) {
        if (menu.recentEngine.toUpper() == QLatin1String("CRAFTY")) menu.recentEngine.clear();
    } else {
        menu.toolShown = true;
        if (menu.recentEngine.isEmpty()) menu.recentEngine = QStringLiteral("Crafty");
    }
    const QString engine = menu.recentEngine.toUpper();
    if (engine == QLatin1String("POPEYE")) {
        menu.popeyeChecked = menu.popeyeEnabled;
        menu.craftyChecked = false;
    } else if (engine == QLatin1String("CRAFTY")) {
        menu.craftyChecked = menu.craftyEnabled;
        menu.popeyeChecked = false;
    }
    return menu;
}

PyDat parsePyDat(const QByteArray& data) {
    PyDat table;
    for (const QByteArray& bytes : splitLines(data)) {
        const QString line = QString::fromUtf8(bytes);
        if (line.isEmpty() || line.startsWith(QLatin1Char(';'))) continue;
        // A line of one character has no value behind its number field: the
        // old reader failed there, and the rest of the file goes unread.
        if (line.size() < 2) break;
        const double number = lineNumber(line);
        const QString value = line.mid(2);
        if (number >= 0 && number <= 10)
            table.lists.box(static_cast<size_t>(number)).append(value);
        else if (number == 90)
            table.dictionary += value;
    }
    table.dictionary += QStringLiteral("&&");
    return table;
}

PyDat readPyDat(const QString& path) {
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) return parsePyDat({});
    // A table is a few kilobytes; a huge file is read only in part.
    constexpr qint64 kMaxBytes = 16 * 1024 * 1024;
    return parsePyDat(file.read(kMaxBytes));
}

bool deleteNoCase(const QString& folder, const QStringList& names) {
    bool deleted = false;
    for (const QFileInfo& file : filesOf(folder)) {
        for (const QString& name : names) {
            if (file.fileName().compare(name, Qt::CaseInsensitive) == 0 &&
                QFile::remove(file.absoluteFilePath())) {
                deleted = true;
                break;
            }
        }
    }
    return deleted;
}

int clearLeftovers(const QString& folder) {
    QSet<QString> visited;
    for (;;) {
        QString log;
        for (const QFileInfo& file : filesOf(folder)) {
            const QString name = file.fileName();
            // Crafty numbers its logs "log.001" on: a user's "log.pgn" is
            // no leftover, and its "game.pgn" no game file.
            const bool craftyLog = name.size() == 7 &&
                                   name.startsWith(QLatin1String("log."), Qt::CaseInsensitive) &&
                                   name[4].isDigit() && name[5].isDigit() && name[6].isDigit();
            if (craftyLog && !visited.contains(name)) {
                log = name;
                break;
            }
        }
        if (log.isEmpty()) break;
        visited.insert(log);
        const QString ext = log.right(3);
        deleteNoCase(folder, {QStringLiteral("log.") + ext});
        deleteNoCase(folder, {QStringLiteral("game.") + ext});
    }
    return static_cast<int>(visited.size());
}

void deleteCraftyWorkFiles(const QString& folder) {
    deleteNoCase(folder, {QStringLiteral("position.bin"), QStringLiteral("position.lrn"),
                          QStringLiteral("book.lrn")});
}

} // namespace marlith
