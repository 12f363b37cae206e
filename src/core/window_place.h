// Where a window opens: beside the main window, so that the diagram stays in
// sight, and wholly on the screen.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace marlith {

// The top-left corner of a window of `windowSize` (frame included). It goes
// right of the main window when the screen has room there, else left of it,
// else below, else above; failing all, the place on the screen that leaves
// the diagram free, else hides least of it. The window always lies wholly on
// the screen, a window larger than the screen at its top left corner.
// The nearest place on the screen for a window of `size`; a window too large
// for it starts at its top left corner, so that its title bar can be reached.
QPoint clampToScreen(const QRect& screen, const QSize& size, QPoint place);

QPoint placeBeside(const QRect& screenAvailable, const QRect& mainFrame,
                   const QRect& diagramOnScreen, const QSize& windowSize);

} // namespace marlith
