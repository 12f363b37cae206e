#include "core/startup.h"

#include "core/settings.h"
#include "styles/style_block.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

namespace marlith {

QString makeTempSeed(int msecsSinceMidnight) {
    const QString digits = QString::number(msecsSinceMidnight / 10);
    return QLatin1Char('F') + (QStringLiteral("000000") + digits).right(6);
}

bool isInstalledCopy(const QString& executableFolder) {
    if (executableFolder.isEmpty()) return false;
    const QDir executable(executableFolder);
    return QFileInfo(executable.absoluteFilePath(QStringLiteral("../share/marlith/")) +
                     QLatin1String(kSettingsFileName))
               .isFile() &&
           !QFileInfo::exists(executable.absoluteFilePath(QStringLiteral("../CMakeCache.txt")));
}

QString programFolderFrom(const QString& marlithHome, const QString& executableFolder,
                          const QString& dataFolder) {
    QString folder = marlithHome;
    if (folder.isEmpty()) {
        folder = executableFolder;
        // An installed executable's folder belongs to the system, even to a
        // user who may write it (root, a prefix in the home folder).
        if (!dataFolder.isEmpty() && isInstalledCopy(executableFolder)) {
            folder = dataFolder;
            QDir().mkpath(folder);
        }
    }
    if (folder.isEmpty()) folder = QDir::currentPath();
    folder = QDir(folder).absolutePath();
    if (!folder.endsWith(QLatin1Char('/'))) folder += QLatin1Char('/');
    return folder;
}

QString programFolder() {
    return programFolderFrom(qEnvironmentVariable("MARLITH_HOME"),
                             QCoreApplication::applicationDirPath(),
                             QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                 QStringLiteral("/marlith"));
}

namespace {

// A link that leads nowhere still takes the name.
bool nameTaken(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

// The bitmaps that the styles of a settings text name by a bare file name,
// each once; a path names a file of its own that isn't the library's.
QStringList bareBitmapNames(const QString& settingsText) {
    QStringList names;
    for (const StyleBitmap& bitmap : styleBitmaps(settingsText)) {
        const QString& name = bitmap.file;
        if (!name.isEmpty() && !name.contains(u'/') && !names.contains(name)) names.append(name);
    }
    return names;
}

} // namespace

QString shippedDataFolder(const QString& executableFolder) {
    if (executableFolder.isEmpty()) return QString();
    const QDir executable(executableFolder);
    for (const QString& folder : {executable.absoluteFilePath(QStringLiteral("../share/marlith")),
                                  executable.absolutePath()}) {
        const QString candidate = QDir::cleanPath(folder) + QLatin1Char('/');
        if (QFileInfo(candidate + QLatin1String(kSettingsFileName)).isFile()) return candidate;
    }
    return QString();
}

bool installShippedSettings(const QString& programFolder, const QString& shippedFolder) {
    if (programFolder.isEmpty() || shippedFolder.isEmpty()) return false;
    const QDir program(programFolder);
    const QDir shipped(shippedFolder);
    const QString settingsPath = program.filePath(QLatin1String(kSettingsFileName));
    if (nameTaken(settingsPath)) return false;

    QFile source(shipped.filePath(QLatin1String(kSettingsFileName)));
    if (!source.open(QIODevice::ReadOnly)) return false;
    const QByteArray settings = source.readAll();
    if (source.error() != QFileDevice::NoError) return false;

    QStringList written;
    const auto undo = [&written] {
        for (const QString& path : written)
            QFile::remove(path);
        return false;
    };
    for (const QString& name : bareBitmapNames(decodeStyleText(settings))) {
        const QString target = program.filePath(name);
        if (nameTaken(target)) continue;
        if (!QFile::copy(shipped.filePath(name), target)) return undo();
        written.append(target);
        // A library installed read-only must not hand its owner read-only copies.
        QFile::setPermissions(target, QFile::permissions(target) | QFileDevice::ReadOwner |
                                          QFileDevice::WriteOwner);
    }
    // The settings file last, and only as a new file: until it stands, the
    // next start tries again; one that appeared meanwhile is not replaced.
    QFile target(settingsPath);
    if (!target.open(QIODevice::WriteOnly | QIODevice::NewOnly)) return undo();
    written.append(settingsPath);
    const bool ok = target.write(settings) == settings.size() && target.flush();
    target.close();
    if (!ok || target.error() != QFileDevice::NoError) return undo();
    return true;
}

QStringList absoluteArguments(const QStringList& arguments, const QString& startFolder) {
    QStringList absolute;
    const QDir start(startFolder);
    for (const QString& argument : arguments) {
        const QString path = argument.trimmed();
        // Qt reads a leading ":" as its resources; here it is a file's name.
        const QString file = path.startsWith(u':') ? QStringLiteral("./") + path : path;
        absolute.append(path.isEmpty() ? path : QDir::cleanPath(start.absoluteFilePath(file)));
    }
    return absolute;
}

CommandLine splitCommandLine(const QStringList& arguments) {
    CommandLine line;
    if (arguments.isEmpty()) return line;
    line.bookFile = arguments.first().trimmed();
    line.rest = arguments.mid(1);
    return line;
}

namespace {

// The seed at the start of a temporary name, "F" and six digits, or empty.
QString seedOf(const QString& name) {
    if (name.size() < 7 || name[0].toUpper() != u'F') return {};
    for (int i = 1; i < 7; ++i)
        if (!name[i].isDigit()) return {};
    return u'F' + name.mid(1, 6);
}

bool isTempName(const QString& name) {
    return name.size() >= 5 && name.startsWith(QLatin1Char('f'), Qt::CaseInsensitive) &&
           name.endsWith(QLatin1String(".tmp"), Qt::CaseInsensitive);
}

template <typename Doomed> int deleteFilesWhere(const QString& folder, Doomed doomed) {
    int deleted = 0;
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (isTempName(name) && doomed(name) && QFile::remove(dir.filePath(name))) ++deleted;
    return deleted;
}

QString seedLockPath(const QString& folder, const QString& seed) {
    return folder + seed + QStringLiteral(".lock");
}

} // namespace

QString nextTempSeed(const QString& seed) {
    const int number = seedOf(seed).mid(1).toInt();
    return makeTempSeed((number + 1) % 1'000'000 * 10);
}

std::unique_ptr<QLockFile> takeTempSeed(const QString& folder, QString& seed) {
    for (int tries = 0; tries < 1000; ++tries, seed = nextTempSeed(seed)) {
        auto lock = std::make_unique<QLockFile>(seedLockPath(folder, seed));
        lock->setStaleLockTime(0); // stale only when its copy is gone
        if (lock->tryLock(0)) return lock;
    }
    return nullptr;
}

bool seedHeld(const QString& folder, const QString& seed) {
    QLockFile lock(seedLockPath(folder, seed));
    lock.setStaleLockTime(0);
    if (!lock.tryLock(0)) return true;
    lock.unlock();
    return false;
}

int deleteTempFiles(const QString& folder, const QString& seed) {
    return deleteFilesWhere(
        folder, [&seed](const QString& name) { return !seed.isEmpty() && seedOf(name) == seed; });
}

int deleteOrphanedTempFiles(const QString& folder,
                            const std::function<bool(const QString&)>& held) {
    return deleteFilesWhere(folder, [&](const QString& name) {
        const QString seed = seedOf(name);
        return seed.isEmpty() || !held(seed);
    });
}

} // namespace marlith
