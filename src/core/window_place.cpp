#include "core/window_place.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace marlith {

namespace {

int64_t overlapArea(const QRect& a, const QRect& b) {
    const QRect common = a.intersected(b);
    return common.isEmpty() ? 0 : int64_t{common.width()} * common.height();
}

} // namespace

QPoint clampToScreen(const QRect& screen, const QSize& size, QPoint place) {
    place.setX(std::max(screen.left(), std::min(place.x(), screen.right() + 1 - size.width())));
    place.setY(std::max(screen.top(), std::min(place.y(), screen.bottom() + 1 - size.height())));
    return place;
}

QPoint placeBeside(const QRect& screenAvailable, const QRect& mainFrame,
                   const QRect& diagramOnScreen, const QSize& windowSize) {
    const int width = windowSize.width();
    const int height = windowSize.height();
    // Beside the main window first, then beside the diagram over the rest of
    // the main window.
    const std::array<QPoint, 8> wanted{
        QPoint(mainFrame.right() + 1, mainFrame.top()),
        QPoint(mainFrame.left() - width, mainFrame.top()),
        QPoint(mainFrame.left(), mainFrame.bottom() + 1),
        QPoint(mainFrame.left(), mainFrame.top() - height),
        QPoint(diagramOnScreen.right() + 1, diagramOnScreen.top()),
        QPoint(diagramOnScreen.left() - width, diagramOnScreen.top()),
        QPoint(diagramOnScreen.left(), diagramOnScreen.bottom() + 1),
        QPoint(diagramOnScreen.left(), diagramOnScreen.top() - height),
    };
    std::array<QPoint, 8> places{};
    for (size_t i = 0; i < wanted.size(); ++i)
        places[i] = clampToScreen(screenAvailable, windowSize, wanted[i]);
    const auto rectAt = [&](const QPoint& place) { return QRect(place, windowSize); };

    // Clear of the whole main window if the screen has room for that.
    for (size_t i = 0; i < 4; ++i)
        if (!rectAt(places[i]).intersects(mainFrame)) return places[i];
    // Else the first that leaves the diagram free, else the one that hides least of it.
    QPoint best = places[0];
    int64_t least = std::numeric_limits<int64_t>::max();
    for (const QPoint& place : places) {
        const int64_t hidden = overlapArea(rectAt(place), diagramOnScreen);
        if (hidden < least) {
            least = hidden;
            best = place;
        }
    }
    return best;
}

} // namespace marlith
