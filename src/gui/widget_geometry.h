// Placing controls and marking the focused one, for every window.
#pragma once

#include "styles/style.h"

#include <QEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRect>
#include <QWidget>
#include <functional>

namespace marlith {

// Positions of controls are kept in twips, turned into pixels as every other
// length of the program.
inline QRect twipsRect(int left, int top, int width, int height) {
    return QRect(twipsToWholePixels(left), twipsToWholePixels(top), twipsToWholePixels(width),
                 twipsToWholePixels(height));
}

// A label shows a border while the control it names has the focus.
inline void setFocusBorder(QLabel* label, bool on) {
    label->setFrameStyle(on ? QFrame::Box | QFrame::Plain : QFrame::NoFrame);
}

// A box of a form: the focus selects all its text and frames its label,
// Enter runs `enter`. True when the event is used up.
inline bool formFieldEvent(QLineEdit* edit, QLabel* label, QEvent* event,
                           const std::function<void()>& enter) {
    switch (event->type()) {
    case QEvent::FocusIn:
        edit->selectAll();
        setFocusBorder(label, true);
        return false;
    case QEvent::FocusOut:
        setFocusBorder(label, false);
        return false;
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
        enter();
        return true;
    }
    default:
        return false;
    }
}

// Neither minimised, maximised nor full screen: only then does a window size
// itself.
inline bool isNormalState(const QWidget& window) {
    return !(window.windowState() &
             (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen));
}

inline QPushButton* namedButton(QWidget* parent, const char* name, const char* caption,
                                QRect geometry) {
    auto* button = new QPushButton(QString::fromUtf8(caption), parent);
    button->setObjectName(QLatin1String(name));
    button->setGeometry(geometry);
    return button;
}

inline QLabel* namedLabel(QWidget* parent, const char* name, const char* caption, QRect geometry) {
    auto* label = new QLabel(QString::fromUtf8(caption), parent);
    label->setObjectName(QLatin1String(name));
    label->setGeometry(geometry);
    return label;
}

} // namespace marlith
