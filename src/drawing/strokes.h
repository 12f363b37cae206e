// Strokes over the diagram: lines, circles and free-hand dots drawn into its
// picture, and the snapping of a stroke's ends to the squares' corners or
// centres. Lengths are twips on the picture.
#pragma once

#include "styles/style.h"

#include <QImage>
#include <QPointF>
#include <cstdint>

class QPainter;

namespace marlith {

enum class StrokeObject { Line, Circle, FreeHand };
enum class SnapMode { Off, Corner, Center };

struct Pen {
    int32_t color = 255; // red in the low byte
    int width = 1;       // pixels
};

struct StrokeEnds {
    QPointF press;
    QPointF release;
};

// Each end moved to the nearest line of the grid of square corners or
// centres, across and down apart; an end past the middle behind the last
// line stays where it is. Off, or a grid that starts left of the picture,
// moves nothing.
StrokeEnds snapStroke(StrokeEnds ends, const Style& style, SnapMode mode);

// Paints a line from press to release, or a circle round press with the
// radius in twips, without smoothing, as the picture's own pixels.
void paintStroke(QPainter& painter, StrokeObject object, const StrokeEnds& ends, double radius,
                 const Pen& pen);

// One dot of the pen's width at the point.
void paintDot(QPainter& painter, QPointF point, const Pen& pen);

// A stroke as the diagram keeps it, so that a larger picture draws it again.
struct Stroke {
    StrokeObject object = StrokeObject::Line;
    StrokeEnds ends; // a free-hand dot lies at the release
    double radius = 0;
    Pen pen;
};
void paintStroke(QPainter& painter, const Stroke& stroke);

} // namespace marlith
