// Any bytes as a settings file: read for every style it names, then a style
// stored into it and taken out again. Nothing reads outside a buffer, and the
// rewrite keeps every line that isn't the style's.
#include "core/settings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static QTemporaryDir folder;
    const QString home = folder.path() + QLatin1Char('/');
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QFile file(home + QLatin1String(marlith::kSettingsFileName));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return 0;
    file.write(bytes);
    file.close();

    marlith::Style style;
    marlith::RecentList recent;
    QString engine;
    const marlith::SettingsRead first =
        marlith::readSettings(file.fileName(), home, style, recent, engine);
    for (const QString& name : first.styleNames) {
        style.StyleName = name;
        marlith::readSettings(file.fileName(), home, style, recent, engine);
    }
    // Stored and taken out again, a new style leaves the other lines alone.
    const QList<QByteArray> lines = marlith::splitLines(bytes);
    style.StyleName = QStringLiteral("\x01fuzz");
    const QList<QByteArray> block = {"BeginStyle = \x01"
                                     "fuzz"};
    const QList<QByteArray> stored = marlith::replaceStyleBlock(lines, style.StyleName, &block);
    if (!stored.contains(block.first())) std::abort();
    marlith::writeStyles(home, style, true);
    marlith::writeStyles(home, style, false);
    return 0;
}
