#include "drawing/strokes.h"

#include "drawing/diagram.h"
#include "styles/style_block.h"

#include <QPainter>
#include <QPen>

namespace marlith {

namespace {

// The grid lines start at `start` and follow at `pitch`, `count` + 1 of them.
double snapped(double value, double start, double pitch, int count) {
    double line = start;
    for (int i = 0; i <= count; ++i) {
        if (line + pitch / 2 > value) return line;
        line += pitch;
    }
    return value;
}

QPointF pixels(QPointF twips) {
    return twips / kTwipsPerPixel;
}

QPen penOf(const Pen& pen) {
    QPen qpen{QColor(styleColor(pen.color))};
    qpen.setWidth(std::max(1, pen.width));
    qpen.setCapStyle(Qt::RoundCap);
    return qpen;
}

} // namespace

StrokeEnds snapStroke(StrokeEnds ends, const Style& style, SnapMode mode) {
    if (mode == SnapMode::Off) return ends;
    const bool corner = mode == SnapMode::Corner;
    const double x0 = roundHalfEven(corner ? style.XBase - style.SqrHSpc / 2.0
                                           : style.XBase + style.SqrHTab / 2.0);
    const double y0 = roundHalfEven(corner ? style.YBase - style.SqrVSpc / 2.0
                                           : style.YBase + style.SqrVTab / 2.0);
    if (x0 < 0) return ends;
    const double across = static_cast<double>(style.SqrHTab) + style.SqrHSpc;
    const double down = static_cast<double>(style.SqrVTab) + style.SqrVSpc;
    for (QPointF* end : {&ends.press, &ends.release}) {
        end->setX(snapped(end->x(), x0, across, style.BorderWidth));
        end->setY(snapped(end->y(), y0, down, style.BorderHeight));
    }
    return ends;
}

void paintStroke(QPainter& painter, StrokeObject object, const StrokeEnds& ends, double radius,
                 const Pen& pen) {
    painter.setRenderHint(QPainter::Antialiasing, !atOwnPixels(painter));
    painter.setPen(penOf(pen));
    painter.setBrush(Qt::NoBrush);
    if (object == StrokeObject::Circle) {
        const double r = radius / kTwipsPerPixel;
        painter.drawEllipse(pixels(ends.press), r, r);
    } else if (object == StrokeObject::Line) {
        painter.drawLine(pixels(ends.press), pixels(ends.release));
    }
}

void paintDot(QPainter& painter, QPointF point, const Pen& pen) {
    painter.setRenderHint(QPainter::Antialiasing, !atOwnPixels(painter));
    painter.setPen(penOf(pen));
    painter.drawPoint(pixels(point));
}

void paintStroke(QPainter& painter, const Stroke& stroke) {
    if (stroke.object == StrokeObject::FreeHand)
        paintDot(painter, stroke.ends.release, stroke.pen);
    else
        paintStroke(painter, stroke.object, stroke.ends, stroke.radius, stroke.pen);
}

} // namespace marlith
