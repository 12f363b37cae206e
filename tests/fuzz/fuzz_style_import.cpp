// Any bytes as a style file with the bitmaps beside it, imported into a
// program folder that already holds styles and bitmaps of its own. The
// questions get answers from the input. The import never writes beside the
// style file, never leaves a folder in the program folder, and adds only
// names that are then in the style list.
#include "core/settings.h"
#include "core/style_import.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace marlith;

namespace {

// Two styles share a border, one owns its pieces: a copy over either must
// keep the other styles' files.
const char kSettings[] = "RecentStyle = Own\r\n"
                         "BeginStyle = Own\r\n  PiecesFile = p.bmp\r\n"
                         "  BorderFile = b.bmp\r\nEndStyle\r\n"
                         "BeginStyle = Other\r\n  PiecesFile = o.bmp\r\n"
                         "  BorderFile = b.bmp\r\nEndStyle\r\n";

bool write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

// Input: the length of the style text (two bytes, low first), where the rest
// splits into pieces and border bitmap, the answers (two bits a question),
// then the style text and the two bitmaps.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4) return 0;
    static QTemporaryDir root;
    const QString source = root.path() + QStringLiteral("/source/");
    const QString program = root.path() + QStringLiteral("/program/");
    QDir(source).removeRecursively();
    QDir(program).removeRecursively();
    if (!QDir().mkpath(source) || !QDir().mkpath(program)) return 0;

    const size_t rest = size - 4;
    const size_t styleLength = std::min<size_t>(data[0] | data[1] << 8, rest);
    const size_t piecesLength = (rest - styleLength) * data[2] / 255;
    const uint8_t answers = data[3];
    const char* const bytes = reinterpret_cast<const char*>(data + 4);
    const QByteArray styleText(bytes, static_cast<qsizetype>(styleLength));
    const QByteArray pieces(bytes + styleLength, static_cast<qsizetype>(piecesLength));
    const QByteArray border(bytes + styleLength + piecesLength,
                            static_cast<qsizetype>(rest - styleLength - piecesLength));

    if (!write(program + QLatin1String(kSettingsFileName), kSettings) ||
        !write(program + QStringLiteral("p.bmp"), "own pieces") ||
        !write(program + QStringLiteral("b.bmp"), "shared border") ||
        !write(source + QStringLiteral("s.sty"), styleText) ||
        !write(source + QStringLiteral("p.bmp"), pieces) ||
        (!border.isEmpty() && !write(source + QStringLiteral("b.bmp"), border)))
        return 0;

    int asked = 0;
    ImportHooks hooks;
    hooks.ask = [&](const QString&, ImportButtons buttons) {
        const int bits = answers >> (2 * (asked++ % 4)) & 3;
        switch (buttons) {
        case ImportButtons::Ok:
            return ImportAnswer::Ok;
        case ImportButtons::OkCancel:
            return bits == 3 ? ImportAnswer::Cancel : ImportAnswer::Ok;
        case ImportButtons::YesNoCancel:
            return bits == 3   ? ImportAnswer::Cancel
                   : bits == 2 ? ImportAnswer::No
                               : ImportAnswer::Yes;
        }
        return ImportAnswer::Cancel;
    };
    QStringList knownNames = {QStringLiteral("Own"), QStringLiteral("Other")};
    const QStringList added =
        importStyles(source + QStringLiteral("s.sty"), program, knownNames, hooks);

    for (const QString& name : added)
        if (!knownNames.contains(name)) std::abort();
    // The style file's folder is only read.
    if (QDir(source).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size() !=
            (border.isEmpty() ? 2 : 3) ||
        contents(source + QStringLiteral("p.bmp")) != pieces)
        std::abort();
    if (!QDir(program).entryList(QDir::Dirs | QDir::NoDotAndDotDot).isEmpty()) std::abort();
    // The border that two other styles use is never overwritten.
    if (contents(program + QStringLiteral("b.bmp")) != "shared border") std::abort();

    // What was stored reads back.
    Style style;
    RecentList recent;
    QString engine;
    for (const QString& name : added) {
        style.StyleName = name;
        readSettings(program + QLatin1String(kSettingsFileName), program, style, recent, engine);
    }
    return 0;
}
