// Any bytes as a style file and its bitmaps, imported into a program folder with styles of its
// own, the questions answered from the input: the import never writes beside the style file,
// leaves no folder, keeps a shared border, and adds only names then in the style list.
#include "core/settings.h"
#include "core/style_import.h"
#include "fuzz_support.h"

using namespace marlith;
using fuzz::contents;

// Two styles share a border, one owns its pieces: a copy over either must
// keep the other styles' files.
static const char kSettings[] = "RecentStyle = Own\r\n"
                                "BeginStyle = Own\r\n  PiecesFile = p.bmp\r\n"
                                "  BorderFile = b.bmp\r\nEndStyle\r\n"
                                "BeginStyle = Other\r\n  PiecesFile = o.bmp\r\n"
                                "  BorderFile = b.bmp\r\nEndStyle\r\n";

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4) return 0;
    const QString source = fuzz::folder() + "source/", program = fuzz::folder() + "program/";
    QDir(source).removeRecursively();
    QDir(program).removeRecursively();
    if (!QDir().mkpath(source) || !QDir().mkpath(program)) return 0;

    const QByteArray rest = fuzz::bytesOf(data + 4, size - 4);
    const qsizetype styleLength = std::min<qsizetype>(data[0] | data[1] << 8, rest.size());
    const qsizetype piecesLength = (rest.size() - styleLength) * data[2] / 255;
    const QByteArray styleText = rest.left(styleLength),
                     pieces = rest.mid(styleLength, piecesLength),
                     border = rest.mid(styleLength + piecesLength);
    const auto write = fuzz::writeBytes;
    if (!write(program + QLatin1String(kSettingsFileName), kSettings) ||
        !write(program + "p.bmp", "own pieces") || !write(program + "b.bmp", "shared border") ||
        !write(source + "s.sty", styleText) || !write(source + "p.bmp", pieces) ||
        (!border.isEmpty() && !write(source + "b.bmp", border)))
        return 0;

    int asked = 0;
    ImportHooks hooks;
    hooks.ask = [&](const QString&, ImportButtons buttons) {
        const int bits = data[3] >> (2 * (asked++ % 4)) & 3;
        if (buttons == ImportButtons::Ok || (bits != 3 && buttons == ImportButtons::OkCancel))
            return ImportAnswer::Ok;
        return bits == 3 ? ImportAnswer::Cancel : bits == 2 ? ImportAnswer::No : ImportAnswer::Yes;
    };
    QStringList knownNames = {QStringLiteral("Own"), QStringLiteral("Other")};
    const QStringList added = importStyles(source + "s.sty", program, knownNames, hooks);

    for (const QString& name : added)
        if (!knownNames.contains(name)) std::abort();
    // The style file's folder is only read.
    if (QDir(source).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size() !=
            (border.isEmpty() ? 2 : 3) ||
        contents(source + "p.bmp") != pieces)
        std::abort();
    if (!QDir(program).entryList(QDir::Dirs | QDir::NoDotAndDotDot).isEmpty()) std::abort();
    // The border that two other styles use is never overwritten.
    if (contents(program + "b.bmp") != "shared border") std::abort();

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
