#include "drawing/pixel_copy.h"

#include <algorithm>
#include <cstring>

namespace marlith {

QRect copyPixels(const QImage& source, QPoint from, QImage& target, QPoint to, QSize size) {
    const QRect area = QRect(to, size).intersected(target.rect());
    if (area.isEmpty() || target.format() != QImage::Format_RGB32) return QRect();
    const bool usable = source.format() == QImage::Format_RGB32;
    const QRgb black = qRgb(0, 0, 0);
    for (int py = area.top(); py <= area.bottom(); ++py) {
        auto* dst = reinterpret_cast<QRgb*>(target.scanLine(py));
        const int srcY = from.y() + (py - to.y());
        const QRgb* src = usable && srcY >= 0 && srcY < source.height()
                              ? reinterpret_cast<const QRgb*>(source.constScanLine(srcY))
                              : nullptr;
        for (int px = area.left(); px <= area.right(); ++px) {
            const int srcX = from.x() + (px - to.x());
            if (src && srcX >= 0 && srcX < source.width()) {
                const int span = std::min(area.right() - px + 1, source.width() - srcX);
                std::memcpy(dst + px, src + srcX, static_cast<size_t>(span) * sizeof(QRgb));
                px += span - 1;
            } else {
                dst[px] = black;
            }
        }
    }
    return area;
}

} // namespace marlith
