// The plain copy of a rectangle between two 32-bit pictures.
#pragma once

#include <QImage>
#include <QRect>

namespace marlith {

// Copies the w by h pixels at `from` of the source to `to` of the target,
// clipped to the target; what lies beyond the source is black. Nothing is
// read or written outside either picture. Returns the area written.
QRect copyPixels(const QImage& source, QPoint from, QImage& target, QPoint to, QSize size);

} // namespace marlith
