// Which keys a text box keeps for itself although a menu item has them: the
// editing keys every Linux text box answers. All other menu shortcuts go
// before the boxes.
#pragma once

#include <Qt>

namespace marlith {

inline bool textBoxKeepsKey(QKeyCombination key, bool hasSelection) {
    if (key.keyboardModifiers() != Qt::ControlModifier) return false;
    switch (key.key()) {
    case Qt::Key_A: // select all
    case Qt::Key_X: // cut
    case Qt::Key_V: // paste
        return true;
    case Qt::Key_C: // copy the selection; with none, the menu's copy runs
        return hasSelection;
    default:
        return false;
    }
}

} // namespace marlith
