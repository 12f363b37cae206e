// Any bytes as a settings file: read for every style it names; a style stored into it keeps
// every line that isn't the style's.
#include "core/settings.h"
#include "fuzz_support.h"

using namespace marlith;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString home = fuzz::folder(), file = home + QLatin1String(kSettingsFileName);
    const QByteArray bytes = fuzz::bytesOf(data, size);
    if (!fuzz::writeBytes(file, bytes)) return 0;
    Style style;
    RecentList recent;
    QString engine;
    for (const QString& name : readSettings(file, home, style, recent, engine).styleNames) {
        style.StyleName = name;
        readSettings(file, home, style, recent, engine);
    }
    // Stored and taken out again, a new style leaves the other lines alone.
    style.StyleName = QStringLiteral("\x01fuzz");
    const QList<QByteArray> block = {"BeginStyle = \x01"
                                     "fuzz"};
    if (!replaceStyleBlock(splitLines(bytes), style.StyleName, &block).contains(block.first()))
        std::abort();
    writeStyles(home, style, true);
    writeStyles(home, style, false);
    return 0;
}
