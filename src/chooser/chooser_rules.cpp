#include "chooser/chooser_rules.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace marlith {

namespace {

const QString kBmp = QStringLiteral("*.bmp");
const QString kGif = QStringLiteral("*.gif");
const QString kSty = QStringLiteral("*.sty");
const QString kFen = QStringLiteral("*.fen");
// The formats that Save Image As writes, the bitmap first as the default.
const QStringList kImageFilters = {kBmp, QStringLiteral("*.png"), QStringLiteral("*.svg"),
                                   QStringLiteral("*.pdf")};

QStringList sortedNames(const QString& folder, QDir::Filters kind) {
    QDir dir(folder);
    if (!dir.exists()) return {};
    return dir.entryList(kind | QDir::NoDotAndDotDot,
                         QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
}

// A pattern that is no wildcard expression ("[" alone) names a file literally.
QRegularExpression patternExpression(const QString& pattern) {
    const QRegularExpression wildcard(QRegularExpression::wildcardToRegularExpression(pattern),
                                      QRegularExpression::CaseInsensitiveOption);
    if (wildcard.isValid()) return wildcard;
    return QRegularExpression(
        QRegularExpression::anchoredPattern(QRegularExpression::escape(pattern)),
        QRegularExpression::CaseInsensitiveOption);
}

} // namespace

std::optional<ChooserEntry> chooserEntryFor(ChooserMode mode, const QString& lastFilter,
                                            const QString& suggestedName) {
    ChooserEntry entry;
    switch (mode) {
    case ChooserMode::SaveImage:
        entry.caption = QStringLiteral("File Save As...");
        entry.filters = kImageFilters;
        entry.filter = kBmp;
        entry.name = QStringLiteral("Marlith.bmp");
        break;
    case ChooserMode::OpenBook:
        entry.caption = QStringLiteral("Open Book");
        entry.filters = {kFen, QStringLiteral("*.epd"), QStringLiteral("*.pbm"),
                         QStringLiteral("*.pgn")};
        // A book is never an image or a style file.
        entry.filter =
            (kImageFilters.contains(lastFilter) || lastFilter == kSty) ? kFen : lastFilter;
        break;
    case ChooserMode::BorderBitmap:
    case ChooserMode::PieceSheet:
        entry.caption = mode == ChooserMode::BorderBitmap ? QStringLiteral("Load Board")
                                                          : QStringLiteral("Load Pieces");
        entry.filters = {kBmp, kGif};
        entry.filter = lastFilter == kGif ? kGif : kBmp;
        entry.name =
            entry.filter == kGif ? QStringLiteral("Marlith.gif") : QStringLiteral("Marlith.bmp");
        break;
    case ChooserMode::StyleFile:
        entry.caption = QStringLiteral("Import Styles from...");
        entry.filters = {kSty};
        entry.filter = kSty;
        entry.name = QStringLiteral("Marlith.sty");
        break;
    default:
        return std::nullopt;
    }
    if (!suggestedName.isEmpty()) {
        entry.name = suggestedName;
        const QString filter = QStringLiteral("*.") + QFileInfo(suggestedName).suffix().toLower();
        if (entry.filters.contains(filter)) entry.filter = filter;
    }
    return entry;
}

QString addFilterExtension(const QString& name, const QString& filter) {
    const qsizetype dot = filter.indexOf(QLatin1Char('.'));
    if (dot < 0 || name.contains(QLatin1Char('.'))) return name;
    return name + filter.mid(dot);
}

QString nameForImageFilter(const QString& name, const QString& filter) {
    if (!kImageFilters.contains(filter, Qt::CaseInsensitive)) return name;
    // The extension is the file's own: a "." in a folder name is none.
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || name.indexOf(QLatin1Char('/'), dot) >= 0) return name;
    const QString extension = QLatin1Char('*') + name.mid(dot);
    if (!kImageFilters.contains(extension, Qt::CaseInsensitive)) return name;
    return name.left(dot) + filter.mid(1).toLower();
}

QString completePath(const QString& name, const QString& folder) {
    if (name.contains(QLatin1Char('/'))) return name;
    if (folder.endsWith(QLatin1Char('/'))) return folder + name;
    return folder + QLatin1Char('/') + name;
}

std::optional<QString> chosenPath(const QString& name, const QString& filter,
                                  const QString& folder) {
    if (name.isEmpty()) return std::nullopt;
    return completePath(addFilterExtension(name, filter), folder);
}

QStringList driveRoots(const QStringList& mountedRoots) {
    QStringList drives{QStringLiteral("/")};
    for (const QString& root : mountedRoots)
        if (!root.isEmpty() && !drives.contains(root)) drives.append(root);
    return drives;
}

QString driveOf(const QString& path, const QStringList& drives) {
    QString best = QStringLiteral("/");
    for (const QString& drive : drives) {
        if (drive.size() <= best.size()) continue;
        const bool inside = path == drive ||
                            (path.startsWith(drive) && (drive.endsWith(QLatin1Char('/')) ||
                                                        path.at(drive.size()) == QLatin1Char('/')));
        if (inside) best = drive;
    }
    return best;
}

QStringList namePatterns(const QString& filter) {
    QStringList patterns;
    for (const QString& part : filter.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString pattern = part.trimmed();
        if (pattern.isEmpty()) continue;
        // On the system the chooser comes from, "*.*" also matched names without a dot.
        patterns.append(pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern);
    }
    if (patterns.isEmpty()) patterns.append(QStringLiteral("*"));
    return patterns;
}

QStringList filesMatching(const QString& folder, const QString& filter) {
    std::vector<QRegularExpression> expressions;
    for (const QString& pattern : namePatterns(filter))
        expressions.push_back(patternExpression(pattern));
    QStringList files;
    for (const QString& name : sortedNames(folder, QDir::Files))
        for (const QRegularExpression& expression : expressions)
            if (expression.match(name).hasMatch()) {
                files.append(name);
                break;
            }
    return files;
}

QStringList subfolders(const QString& folder) {
    return sortedNames(folder, QDir::Dirs);
}

std::optional<QString> openableFolder(const QString& path) {
    if (path.isEmpty()) return std::nullopt;
    const QFileInfo info(path);
    if (!info.isDir() || !info.isReadable() || !info.isExecutable()) return std::nullopt;
    return QDir::cleanPath(info.absoluteFilePath());
}

std::vector<FolderRow> folderRows(const QString& path, const QStringList& subfolders) {
    std::vector<FolderRow> rows;
    rows.push_back({QStringLiteral("/"), QStringLiteral("/"), 0, true});
    QString walked;
    for (const QString& part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        walked += QLatin1Char('/') + part;
        rows.push_back({walked, part, static_cast<int>(rows.size()), true});
    }
    const int depth = static_cast<int>(rows.size());
    for (const QString& name : subfolders)
        rows.push_back({completePath(name, walked.isEmpty() ? QStringLiteral("/") : walked), name,
                        depth, false});
    return rows;
}

} // namespace marlith
