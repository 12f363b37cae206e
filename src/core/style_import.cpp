#include "core/style_import.h"

#include "core/settings.h"
#include "styles/style_block.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSaveFile>
#include <QSet>

#include <map>
#include <optional>

namespace marlith {

namespace {

// A style file is a page of text; anything far larger is not one.
constexpr qint64 kMaxStyleFileBytes = 16 * 1024 * 1024;

QString upper(const QString& text) {
    return text.toUpper();
}

// The file named `name` in `folder`, if it is a plain file that really lies
// there (a link that leads out of the folder doesn't count).
std::optional<QString> fileInFolder(const QString& folder, const QString& name) {
    if (name.isEmpty()) return std::nullopt;
    const QFileInfo file(QDir(folder.isEmpty() ? QStringLiteral(".") : folder).filePath(name));
    if (!file.isFile()) return std::nullopt;
    const QString real = file.canonicalFilePath();
    if (real.isEmpty() ||
        QFileInfo(real).absolutePath() != QDir(file.absolutePath()).canonicalPath())
        return std::nullopt;
    return file.absoluteFilePath();
}

// A picture that the diagram can draw, judged by its content.
bool isPicture(const QString& path) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    return reader.canRead();
}

// Names of the program's own files in its folder, which no imported bitmap
// may take: the settings and the saved picture, the engines and their
// table, and the temporary and lock files.
bool isProgramFileName(const QString& name) {
    const QString upper = name.toUpper();
    for (const char* own : {"PY", "PY.EXE", "PY.DAT", "CRAFTY", "CRAFTY.EXE", "CRAFTY.RC"})
        if (upper == QLatin1String(own)) return true;
    return upper.startsWith(u"MARLITH.") || upper.endsWith(u".TMP") || upper.endsWith(u".LOCK");
}

bool sameContent(const QString& a, const QString& b) {
    QFile fa(a);
    QFile fb(b);
    if (fa.size() != fb.size() || !fa.open(QIODevice::ReadOnly) || !fb.open(QIODevice::ReadOnly))
        return false;
    while (!fa.atEnd()) {
        const QByteArray chunk = fa.read(1 << 16);
        if (chunk.isEmpty() || chunk != fb.read(chunk.size())) return false;
    }
    return fb.atEnd();
}

bool copyOver(const QString& from, const QString& to) {
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly)) return false;
    // The old file stays whole until the new one is complete.
    QSaveFile target(to);
    if (!target.open(QIODevice::WriteOnly)) return false;
    while (!source.atEnd()) {
        const QByteArray chunk = source.read(1 << 16);
        if (chunk.isEmpty() || target.write(chunk) != chunk.size()) {
            target.cancelWriting();
            return false;
        }
    }
    // A full disk shows at the flush; the old file then stays as it was.
    if (!target.flush()) {
        target.cancelWriting();
        return false;
    }
    return target.commit();
}

// Which styles of the settings file name which file: absolute path to the
// upper-cased names of the styles.
std::map<QString, QSet<QString>> fileUsers(const QString& programFolder) {
    std::map<QString, QSet<QString>> users;
    QFile file(QDir(programFolder).filePath(QLatin1String(kSettingsFileName)));
    if (!file.open(QIODevice::ReadOnly)) return users;
    for (const StyleBitmap& bitmap : styleBitmaps(decodeStyleText(file.read(kMaxStyleFileBytes)))) {
        const QString path = bitmap.file.contains(u'/') ? bitmap.file : programFolder + bitmap.file;
        users[QFileInfo(path).absoluteFilePath()].insert(bitmap.style);
    }
    return users;
}

enum class Flow { Next, Stop };

class Importer {
  public:
    Importer(const QString& styleFilePath, const QString& programFolder, QStringList& knownNames,
             const ImportHooks& hooks)
        : path_(styleFilePath), programFolder_(programFolder), knownNames_(knownNames),
          hooks_(hooks) {
        const qsizetype slash = path_.lastIndexOf(u'/');
        sourceFolder_ = slash < 0 ? QString() : path_.left(slash + 1);
    }

    void run() {
        QFile file(path_);
        if (!file.open(QIODevice::ReadOnly)) {
            complete = false;
            return;
        }
        const QByteArray bytes = file.read(kMaxStyleFileBytes + 1);
        if (file.error() != QFileDevice::NoError || bytes.size() > kMaxStyleFileBytes) {
            ask(QStringLiteral("Error reading ") + path_, ImportButtons::Ok);
            complete = false;
            return;
        }
        StyleFileBlocks read = readStyleFile(bytes);
        for (Style& style : read.blocks)
            if (take(style) == Flow::Stop) {
                complete = false;
                return;
            }
        if (read.stoppedAtFault) {
            complete = false;
            ask(QStringLiteral("A value in ") + path_ +
                    QStringLiteral(" doesn't fit its field: the styles behind it were not read."),
                ImportButtons::Ok);
        }
    }

    bool complete = true;

    QStringList added;

  private:
    ImportAnswer ask(const QString& text, ImportButtons buttons) const {
        return hooks_.ask ? hooks_.ask(text, buttons) : ImportAnswer::Cancel;
    }

    Flow take(Style& style) {
        if (hooks_.blockStarted) hooks_.blockStarted(style.StyleName);
        const QString name = upper(style.StyleName);
        if (name.isEmpty() || name == u"CUSTOM") return Flow::Next;
        // A quoted item can bring a name with a comma or a line break, which
        // the settings file would not give back.
        if (const QString refusal = styleRefusal(style); !refusal.isEmpty())
            return missing(refusal);

        const QString pieces = importedFileName(style.PiecesFile);
        const std::optional<QString> piecesSource = fileInFolder(sourceFolder_, pieces);
        if (!piecesSource)
            return missing(QStringLiteral("PiecesFile ") + sourceFolder_ + pieces +
                           QStringLiteral(" not found!"));
        if (!isPicture(*piecesSource))
            return missing(QStringLiteral("PiecesFile ") + *piecesSource +
                           QStringLiteral(" is no picture!"));
        const QString border = importedFileName(style.BorderFile);
        std::optional<QString> borderSource;
        if (!style.BorderFile.isEmpty()) {
            borderSource = fileInFolder(sourceFolder_, border);
            if (!borderSource)
                return missing(QStringLiteral("BorderFile ") + sourceFolder_ + border +
                               QStringLiteral(" not found!"));
            if (!isPicture(*borderSource))
                return missing(QStringLiteral("BorderFile ") + *borderSource +
                               QStringLiteral(" is no picture!"));
        }

        bool known = false;
        for (const QString& k : knownNames_)
            known = known || upper(k) == name;
        if (known) {
            const ImportAnswer answer =
                ask(replaceStyleQuestion(style.StyleName), ImportButtons::YesNoCancel);
            if (answer == ImportAnswer::Cancel) return Flow::Stop;
            if (answer != ImportAnswer::Yes) return Flow::Next;
        } else {
            knownNames_.append(style.StyleName);
            added.append(style.StyleName);
        }

        const auto users = fileUsers(programFolder_);
        std::optional<QString> stored = bring(*piecesSource, pieces, name, users);
        if (!stored) return Flow::Stop;
        style.PiecesFile = *stored;
        if (borderSource) {
            stored = bring(*borderSource, border, name, users);
            if (!stored) return Flow::Stop;
            style.BorderFile = *stored;
        }
        if (!writeStyles(programFolder_, style, true)) {
            // A full disk or a locked file: the import stops here, and says so.
            complete = false;
            if (!known) {
                added.removeLast();
                knownNames_.removeLast();
            }
            ask(QStringLiteral("Error writing ") + programFolder_ +
                    QLatin1String(kSettingsFileName),
                ImportButtons::Ok);
            return Flow::Stop;
        }
        return Flow::Next;
    }

    Flow missing(const QString& message) const {
        return ask(message, ImportButtons::OkCancel) == ImportAnswer::Cancel ? Flow::Stop
                                                                             : Flow::Next;
    }

    // Brings a bitmap into the program folder; the name the block is to
    // give it, or nothing when the user stops at a failed copy.
    std::optional<QString> bring(const QString& source, const QString& name,
                                 const QString& styleName,
                                 const std::map<QString, QSet<QString>>& users) {
        const QFileInfo suffixed(name);
        const QString stem = suffixed.completeBaseName();
        const QString suffix = suffixed.suffix().isEmpty() ? QString() : u'.' + suffixed.suffix();
        for (int k = 1; k < 1000; ++k) {
            const QString candidate = k == 1 ? name : stem + u'-' + QString::number(k) + suffix;
            if (isProgramFileName(candidate)) continue;
            const QString target = QDir(programFolder_).absoluteFilePath(candidate);
            const QFileInfo there(target);
            if (there.exists() || there.isSymLink()) {
                if (there.canonicalFilePath() == QFileInfo(source).canonicalFilePath() ||
                    sameContent(source, target))
                    return candidate;
                // Only the style being replaced may lose its file.
                const auto user = users.find(there.absoluteFilePath());
                const bool ownFile = user != users.end() && user->second.size() == 1 &&
                                     user->second.contains(styleName);
                if (!ownFile || there.isSymLink() || !there.isFile()) continue;
            }
            const bool copied =
                hooks_.copy ? hooks_.copy(source, target) : copyOver(source, target);
            if (copied) return candidate;
            complete = false;
            const ImportAnswer answer = ask(QStringLiteral("Error on copy:\nfrom ") + source +
                                                QStringLiteral("\nto ") + target,
                                            ImportButtons::OkCancel);
            if (answer == ImportAnswer::Cancel) return std::nullopt;
            return candidate;
        }
        // A thousand files of one name: the block keeps the plain name.
        return name;
    }

    QString path_;
    QString programFolder_;
    QString sourceFolder_;
    QStringList& knownNames_;
    const ImportHooks& hooks_;
};

} // namespace

StyleFileBlocks readStyleFile(const QByteArray& bytes) {
    StyleFileBlocks result;
    const QString text = decodeStyleText(bytes);
    ItemSplitter items(text);
    QString raw;
    std::optional<Style> block;
    while (items.next(raw)) {
        const std::optional<StyleItem> item = parseItem(raw, KeylessItems::AsKey);
        if (!item) continue;
        if (item->key == u"BEGINSTYLE") {
            // A block that no EndStyle closed is dropped.
            block.emplace();
            resetStyle(*block);
            block->StyleName = item->value;
        } else if (!block) {
            continue;
        } else if (item->key == u"ENDSTYLE") {
            result.blocks.append(*block);
            block.reset();
        } else if (storeStyleKey(*block, *item, QString()) == StoreResult::Fault) {
            result.stoppedAtFault = true;
            break;
        }
    }
    return result;
}

QString importedFileName(const QString& value) {
    const qsizetype cut = std::max(value.lastIndexOf(u'/'), value.lastIndexOf(u'\\'));
    const QString name = value.mid(cut + 1).trimmed();
    if (name == u"." || name == u"..") return QString();
    return name;
}

QString replaceStyleQuestion(const QString& styleName) {
    return QStringLiteral("This file already contains a style called ") + styleName +
           QStringLiteral(".\nWould you like to replace the existing style?");
}

QStringList importStyles(const QString& styleFilePath, const QString& programFolder,
                         QStringList& knownNames, const ImportHooks& hooks, bool* complete) {
    Importer importer(styleFilePath, programFolder, knownNames, hooks);
    importer.run();
    if (complete) *complete = importer.complete;
    return importer.added;
}

} // namespace marlith
