#include "core/startup.h"

#include <QDir>
#include <QFile>

namespace marlith {

QString makeTempSeed(int msecsSinceMidnight) {
    const QString digits = QString::number(msecsSinceMidnight / 10);
    return QLatin1Char('F') + (QStringLiteral("000000") + digits).right(6);
}

QString programFolderFrom(const QString& marlithHome, const QString& executableFolder) {
    QString folder = marlithHome.isEmpty() ? executableFolder : marlithHome;
    if (folder.isEmpty()) folder = QDir::currentPath();
    folder = QDir(folder).absolutePath();
    if (!folder.endsWith(QLatin1Char('/'))) folder += QLatin1Char('/');
    return folder;
}

CommandLine splitCommandLine(const QStringList& arguments) {
    CommandLine line;
    if (arguments.isEmpty()) return line;
    line.bookFile = arguments.first().trimmed();
    line.rest = arguments.mid(1);
    return line;
}

int deleteTempFiles(const QString& folder) {
    int deleted = 0;
    const QDir dir(folder);
    const QStringList names = dir.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : names) {
        if (name.size() >= 5 && name.startsWith(QLatin1Char('f'), Qt::CaseInsensitive) &&
            name.endsWith(QLatin1String(".tmp"), Qt::CaseInsensitive) &&
            QFile::remove(dir.filePath(name)))
            ++deleted;
    }
    return deleted;
}

} // namespace marlith
