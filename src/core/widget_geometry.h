// Placing controls and marking the focused one, for every window.
#pragma once

#include "styles/style.h"

#include <QFrame>
#include <QLabel>
#include <QRect>

namespace marlith {

// Positions of controls are kept in twips; a widget's pixels are twips / 15.
inline QRect TwipRect(int left, int top, int width, int height) {
    return QRect(left / kTwipsPerPixel, top / kTwipsPerPixel, width / kTwipsPerPixel,
                 height / kTwipsPerPixel);
}

// A label shows a border while the control it names has the focus.
inline void SetFocusBorder(QLabel* label, bool on) {
    label->setFrameStyle(on ? QFrame::Box | QFrame::Plain : QFrame::NoFrame);
}

} // namespace marlith
