// Child windows: opening one beside the main window, clear of the diagram,
// and closing one.
#pragma once

#include "core/window_place.h"

#include <QCloseEvent>
#include <QMargins>
#include <QScreen>
#include <QVariant>
#include <QWidget>

namespace marlith {

// Places a hidden window before it is shown: at its first showing, and again
// when where it was left would now cover the diagram or leave the screen
// (the main window grew or moved); else the place the user gave it stays.
inline void placeBesideDiagram(QWidget& window, const QWidget& mainWindow, const QWidget& diagram) {
    if (window.isVisible()) return;
    const QScreen* screen = mainWindow.screen();
    if (!screen) return;
    // What show() would do, done first so that the size is known.
    if (!window.testAttribute(Qt::WA_Resized)) window.adjustSize();
    // A window not yet shown has no frame: it will get one like the main window's.
    const QRect mainFrame = mainWindow.frameGeometry();
    const QRect mainClient = mainWindow.geometry();
    const QMargins frame(mainClient.left() - mainFrame.left(), mainClient.top() - mainFrame.top(),
                         mainFrame.right() - mainClient.right(),
                         mainFrame.bottom() - mainClient.bottom());
    const QSize size = window.size().grownBy(frame);
    const QRect diagramOnScreen(diagram.mapToGlobal(QPoint(0, 0)), diagram.size());
    const QRect available = screen->availableGeometry();
    const char* placed = "placedBesideDiagram";
    const QRect now(window.pos(), size);
    if (window.property(placed).toBool() && available.contains(now) &&
        !now.intersects(diagramOnScreen))
        return;
    window.move(placeBeside(available, mainFrame, diagramOnScreen, size));
    window.setProperty(placed, true);
}

// The close box only hides a child window while the main window lives, so
// that it comes back as it was left; then it closes.
inline void hideOnClose(QWidget& window, QCloseEvent& event, bool mainWindowAlive) {
    event.setAccepted(!mainWindowAlive);
    if (mainWindowAlive) window.hide();
}

} // namespace marlith
