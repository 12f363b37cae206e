#include "engines/engine_text.h"

#include <QIODevice>

#include <cmath>

namespace marlith {

QStringList readLines(QIODevice& device, bool lastWithoutEnd, int maxLines, qint64 maxBytes) {
    QStringList lines;
    QByteArray buffer;
    qint64 total = 0;
    char chunk[65536];
    bool full = false;
    while (!full && total < maxBytes) {
        const qint64 got = device.read(chunk, std::min<qint64>(sizeof chunk, maxBytes - total));
        if (got <= 0) break;
        total += got;
        for (qint64 i = 0; i < got; ++i) {
            const char c = chunk[i];
            if (c != '\r' && c != '\n') {
                buffer.append(c);
                continue;
            }
            if (buffer.isEmpty()) continue;
            lines.append(QString::fromUtf8(buffer));
            buffer.clear();
            if (lines.size() >= maxLines) {
                full = true;
                break;
            }
        }
    }
    if (!full && lastWithoutEnd && !buffer.isEmpty()) lines.append(QString::fromUtf8(buffer));
    return lines;
}

QString clockText(double seconds) {
    const double r = std::isnan(seconds) || seconds < 0 ? 0.0 : std::min(seconds, 1e15);
    const auto whole = static_cast<long long>(r);
    return QStringLiteral("%1:%2")
        .arg((whole / 60) % 100, 2, 10, QLatin1Char('0'))
        .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

} // namespace marlith
