#include "core/settings.h"

#include "styles/style_block.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace marlith {

namespace {

QString inFolder(const QString& folder, const char* name) {
    if (folder.isEmpty() || folder.endsWith(u'/')) return folder + QLatin1String(name);
    return folder + u'/' + QLatin1String(name);
}

// The rename is on disk only once the folder entry is.
void syncFolder(const QString& folder) {
    const QByteArray path = QFile::encodeName(folder.isEmpty() ? QStringLiteral(".") : folder);
    const int fd = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

bool renameOver(const QString& from, const QString& to) {
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

constexpr char16_t kFieldSeparator = u'|';

constexpr const char16_t* kKeptKeys[] = {
    u"RECENTPOSITION", u"RECENTWINDOW",      u"RECENTPOPEYE",     u"EXPORTFORMAT",
    u"EXPORTWIDTH",    u"EXPORTMILLIMETRES", u"EXPORTRESOLUTION", u"EXPORTTRANSPARENT"};

bool isKeptLine(const QString& upperTrimmed) {
    return std::any_of(std::begin(kKeptKeys), std::end(kKeptKeys),
                       [&](const char16_t* key) { return upperTrimmed.startsWith(key); });
}

// A value out of its range is brought into it; one that means nothing
// leaves the choice as it was.
void readExportItem(const StyleItem& item, ExportChoices& choices) {
    const QString& key = item.key;
    if (key == u"EXPORTFORMAT") {
        choices.format = formatNamed(item.value).value_or(choices.format);
    } else if (key == u"EXPORTWIDTH") {
        choices.width = rememberedNumber(item.value, kExportWidths, choices.width);
    } else if (key == u"EXPORTMILLIMETRES") {
        choices.millimetres = rememberedNumber(item.value, kExportMillimetres, choices.millimetres);
    } else if (key == u"EXPORTRESOLUTION") {
        choices.dotsPerInch = rememberedNumber(item.value, kExportResolutions, choices.dotsPerInch);
    } else if (key == u"EXPORTTRANSPARENT") {
        choices.transparent = rememberedNumber(item.value, {0, 1}, choices.transparent) == 1;
    }
}

void readKeptItem(const StyleItem& item, KeptSession& kept) {
    if (item.key == u"RECENTPOSITION") {
        kept.position = unescapeSettingsValue(item.value);
    } else if (item.key == u"RECENTWINDOW") {
        const QStringList numbers = item.value.split(u' ', Qt::SkipEmptyParts);
        if (numbers.size() != 4) return;
        int values[4];
        for (int i = 0; i < 4; ++i) {
            bool ok = false;
            values[i] = numbers[i].toInt(&ok);
            if (!ok) return;
        }
        kept.window = QRect(values[0], values[1], values[2], values[3]);
    } else if (item.key == u"RECENTPOPEYE") {
        const QStringList fields = item.value.split(kFieldSeparator);
        for (size_t i = 0; i < PopeyeFields::kCount; ++i)
            kept.popeyeFields.box(i) =
                i < size_t(fields.size()) ? unescapeSettingsValue(fields[qsizetype(i)]) : QString();
    } else {
        readExportItem(item, kept.exportChoices);
    }
}

} // namespace

QString escapeSettingsValue(const QString& value, QStringView extra) {
    const QByteArray bytes = value.toUtf8();
    QString out;
    out.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const bool atEnd = i == 0 || i == bytes.size() - 1;
        const bool plain = byte > 0x20 && byte < 0x7F &&
                           !QStringView(u"%,;\"=").contains(QChar(byte)) &&
                           !extra.contains(QChar(byte));
        if (plain || (byte == ' ' && !atEnd))
            out += QChar(byte);
        else
            out += QStringLiteral("%") +
                   QString::number(uint(byte), 16).rightJustified(2, u'0').toUpper();
    }
    return out;
}

QString unescapeSettingsValue(const QString& value) {
    QByteArray bytes;
    bytes.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        bool ok = false;
        const int code = value[i] == u'%' && i + 2 < value.size()
                             ? QStringView(value).mid(i + 1, 2).toInt(&ok, 16)
                             : 0;
        if (ok) {
            bytes += char(code);
            i += 2;
        } else {
            bytes += value.mid(i, 1).toUtf8();
        }
    }
    return QString::fromUtf8(bytes);
}

SettingsRead readSettings(const QString& settingsPath, const QString& programFolder, Style& style,
                          RecentList& recentFile, QString& recentEngine, KeptSession* kept) {
    SettingsRead result;
    resetStyle(style);
    recentEngine.clear();
    const bool reReading = !style.StyleName.isEmpty();

    QFile file(settingsPath);
    if (!file.open(QIODevice::ReadOnly)) return result;
    const QString text = decodeStyleText(file.readAll());
    file.close();
    result.opened = true;

    ItemSplitter items(text);
    QString raw;
    bool inBlock = false;
    while (items.next(raw)) {
        const std::optional<StyleItem> item = parseItem(raw, KeylessItems::Skip);
        if (!item) continue;
        const QString& key = item->key;
        if (key == u"RECENTFILE") {
            addRecent(recentFile, item->value);
        } else if (key == u"RECENTENGINE") {
            recentEngine = item->value;
        } else if (isKeptLine(key)) {
            if (kept && !reReading) readKeptItem(*item, *kept);
        } else if (key == u"STYLE" || key == u"RECENTSTYLE") {
            if (!reReading) style.StyleName = item->value;
        } else if (key == u"BEGINSTYLE") {
            if (!reReading) result.styleNames.append(item->value);
            // With no RecentStyle line, the first block of the file is the style.
            if (style.StyleName.isEmpty()) style.StyleName = item->value;
            inBlock = style.StyleName.toUpper() == item->value.toUpper();
        } else if (inBlock && storeStyleKey(style, *item, programFolder) == StoreResult::Fault) {
            result.stoppedAtFault = true;
            break;
        }
    }
    return result;
}

void addRecent(RecentList& recentFile, const QString& path) {
    const auto found = std::find(recentFile.begin(), recentFile.end(), path);
    const auto k = found == recentFile.end() ? recentFile.size() - 1
                                             : static_cast<size_t>(found - recentFile.begin());
    for (size_t j = k; j >= 1; --j)
        recentFile[j] = recentFile[j - 1];
    recentFile[0] = path;
}

std::array<RecentMenuItem, 4> recentMenuItems(const RecentList& recentFile) {
    std::array<RecentMenuItem, 4> items;
    for (size_t j = 0; j < items.size(); ++j) {
        items[j].caption = QLatin1Char('&') + QString::number(j + 1) + QLatin1Char(' ') +
                           shortenPath(recentFile[j], 30);
        items[j].visible = !recentFile[j].isEmpty();
    }
    return items;
}

// The root kept in front of a shortened path: "/" for an absolute path, else
// the first three characters, as the drive of the old platform was
// ("ABCDEFGHIJ" to 5 gives "ABC.../FGHIJ").
QString shortenPath(const QString& w, int n) {
    const qsizetype wanted = std::max(n, 0);
    QString cut = w;
    while (cut.size() > wanted) {
        const qsizetype slash = cut.indexOf(u'/');
        if (slash < 0) break;
        cut = cut.mid(slash + 1);
    }
    if (cut.size() > wanted) cut = cut.right(wanted);
    if (cut == w) return w;
    const QString root = w.startsWith(u'/') ? QStringLiteral("/") : w.left(3);
    return root + QStringLiteral(".../") + cut;
}

QList<QByteArray> splitLines(const QByteArray& bytes) {
    QList<QByteArray> lines;
    qsizetype start = 0;
    const qsizetype n = bytes.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (bytes[i] != '\r' && bytes[i] != '\n') continue;
        lines.append(bytes.mid(start, i - start));
        if (bytes[i] == '\r' && i + 1 < n && bytes[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < n) lines.append(bytes.mid(start));
    return lines;
}

namespace {

// The lines of the settings file that is to be rewritten: none on a first
// run, and no result for a file that is there but can't be read, which
// would otherwise be replaced by the new lines alone.
std::optional<QList<QByteArray>> oldSettingsLines(const QString& programFolder) {
    const QString settingsPath = inFolder(programFolder, kSettingsFileName);
    const QFileInfo info(settingsPath);
    if (!info.exists() && !info.isSymLink()) return QList<QByteArray>();
    QFile old(settingsPath);
    if (!old.open(QIODevice::ReadOnly)) return std::nullopt;
    const QByteArray bytes = old.readAll();
    if (old.error() != QFileDevice::NoError) return std::nullopt;
    return splitLines(bytes);
}

// New lines follow the code of the old ones, so that a file from the old
// platform stays readable as one text.
bool usesWindows1252(const QList<QByteArray>& lines) {
    return std::any_of(lines.begin(), lines.end(),
                       [](const QByteArray& line) { return !isValidUtf8(line); });
}

// Copies of the program that share a folder rewrite the settings file one
// at a time, each reading the file as the other left it.
class SettingsLock {
  public:
    explicit SettingsLock(const QString& programFolder)
        : lock_(inFolder(programFolder, kSettingsFileName) + QStringLiteral(".lock")) {
        lock_.setStaleLockTime(0); // stale only when its copy is gone
        held_ = lock_.tryLock(10'000);
    }
    bool held() const { return held_; }

  private:
    QLockFile lock_;
    bool held_ = false;
};

} // namespace

QString settingsTempName() {
    return QStringLiteral("Marlith.ini.%1.tmp").arg(QCoreApplication::applicationPid());
}

bool replaceSettingsFile(const QString& programFolder, const QList<QByteArray>& lines,
                         const SettingsWriteSeams& seams) {
    const QString tempPath = inFolder(programFolder, "") + settingsTempName();
    const QString settingsPath = inFolder(programFolder, kSettingsFileName);

    // Left-over temporary files go first (the caller holds the lock, so no
    // other copy is writing one), and nothing is written through a link that
    // happens to stand under the name.
    QDir folder(programFolder.isEmpty() ? QStringLiteral(".") : programFolder);
    for (const QString& name :
         folder.entryList({QStringLiteral("Marlith.ini.*.tmp")}, QDir::Files | QDir::System))
        folder.remove(name);
    QFile::remove(tempPath);
    QFile temp(tempPath);
    if (!temp.open(QIODevice::WriteOnly | QIODevice::NewOnly)) return false;
    bool ok = true;
    for (qsizetype i = 0; ok && i < lines.size(); ++i) {
        if (seams.beforeLine && !seams.beforeLine(static_cast<int>(i))) {
            ok = false;
            break;
        }
        ok = temp.write(lines[i]) == lines[i].size() && temp.write("\r\n", 2) == 2;
    }
    ok = ok && temp.flush() && ::fsync(temp.handle()) == 0;
    temp.close();
    ok = ok && temp.error() == QFileDevice::NoError;
    if (ok)
        ok = seams.rename ? seams.rename(tempPath, settingsPath)
                          : renameOver(tempPath, settingsPath);
    if (!ok) {
        // A half-written file is of no use to anyone: the settings file stands.
        QFile::remove(tempPath);
        return false;
    }
    syncFolder(programFolder);
    return true;
}

bool writeSettings(const QString& programFolder, const RecentList& recentFile,
                   const QString& recentEngine, const QString& styleName,
                   const SettingsWriteSeams& seams, const KeptSession* kept) {
    const SettingsLock lock(programFolder);
    if (!lock.held()) return false;
    const std::optional<QList<QByteArray>> old = oldSettingsLines(programFolder);
    if (!old) return false;
    const bool windows1252 = usesWindows1252(*old);
    QList<QByteArray> lines;
    // A path that the file would not give back, or that would make lines of
    // its own, is not kept.
    const auto keptPath = [](const QString& path) {
        const ValueFault fault = settingsValueFault(path);
        return !path.isEmpty() && fault != ValueFault::LineBreak &&
               fault != ValueFault::ItemSeparator && fault != ValueFault::Comment;
    };
    for (size_t i = recentFile.size(); i-- > 0;)
        if (keptPath(recentFile[i]))
            lines.append(encodeStyleText("RecentFile = " + recentFile[i], windows1252));
    if (!recentEngine.isEmpty())
        lines.append(encodeStyleText("RecentEngine = " + recentEngine, windows1252));
    if (kept) {
        // Escaped to plain ASCII, so the file's encoding can't matter.
        lines.append("RecentPosition = " + escapeSettingsValue(kept->position).toLatin1());
        if (!kept->window.isEmpty())
            lines.append(QStringLiteral("RecentWindow = %1 %2 %3 %4")
                             .arg(kept->window.x())
                             .arg(kept->window.y())
                             .arg(kept->window.width())
                             .arg(kept->window.height())
                             .toLatin1());
        QStringList fields;
        for (size_t i = 0; i < PopeyeFields::kCount; ++i)
            fields.append(
                escapeSettingsValue(kept->popeyeFields.box(i), QStringView(&kFieldSeparator, 1)));
        lines.append("RecentPopeye = " + fields.join(QChar(kFieldSeparator)).toLatin1());
        const ExportChoices& choices = kept->exportChoices;
        lines.append("ExportFormat = " + formatName(choices.format).toLatin1());
        lines.append("ExportWidth = " + QByteArray::number(choices.width));
        lines.append("ExportMillimetres = " + QByteArray::number(choices.millimetres));
        lines.append("ExportResolution = " + QByteArray::number(choices.dotsPerInch));
        lines.append("ExportTransparent = " + QByteArray::number(choices.transparent ? 1 : 0));
    }

    const QByteArray styleLine = encodeStyleText("RecentStyle = " + styleName, windows1252);
    for (const QByteArray& line : *old) {
        const QString t = trimBlanks(decodeStyleText(line)).toUpper();
        if (t.startsWith(u"RECENTSTYLE") || t.startsWith(u"STYLE"))
            lines.append(styleLine);
        else if (!t.startsWith(u"RECENTENGINE") && !t.startsWith(u"RECENTFILE") &&
                 !(kept && isKeptLine(t)))
            lines.append(line);
    }
    return replaceSettingsFile(programFolder, lines, seams);
}

QList<QByteArray> replaceStyleBlock(const QList<QByteArray>& lines, const QString& styleName,
                                    const QList<QByteArray>* block) {
    const QString current = styleName.toUpper();
    bool pending = block != nullptr;
    bool skipping = false;
    bool lastBlank = true;
    QList<QByteArray> out;
    const auto printBlock = [&] {
        if (!lastBlank) out.append(QByteArray());
        out.append(*block);
        pending = false;
    };
    for (const QByteArray& line : lines) {
        const QString text = decodeStyleText(line);
        QString copy = text.toUpper();
        const qsizetype comment = copy.indexOf(QLatin1Char(';'));
        if (comment >= 1) copy = trimBlanks(QStringView(copy).left(comment));
        const qsizetype equals = copy.indexOf(QLatin1Char('='));
        if (equals >= 1 && copy.startsWith(QLatin1String("BEGINSTYLE"))) {
            const QString name = trimBlanks(QStringView(copy).mid(equals + 1));
            skipping = name == current;
            if (name > current && pending) {
                printBlock();
                out.append(QByteArray());
            }
        }
        if (!skipping) {
            out.append(line);
            lastBlank = trimBlanks(text).isEmpty();
        }
    }
    if (pending) printBlock();
    return out;
}

bool writeStyles(const QString& programFolder, Style& style, bool store,
                 const SettingsWriteSeams& seams) {
    if (store && !styleRefusal(style).isEmpty()) return false;
    const SettingsLock lock(programFolder);
    if (!lock.held()) return false;
    const std::optional<QList<QByteArray>> old = oldSettingsLines(programFolder);
    if (!old) return false;
    const QList<QByteArray> block =
        store ? splitLines(encodeStyleText(writeStyleBlock(style), usesWindows1252(*old)))
              : QList<QByteArray>();
    return replaceSettingsFile(
        programFolder, replaceStyleBlock(*old, style.StyleName, store ? &block : nullptr), seams);
}

} // namespace marlith
