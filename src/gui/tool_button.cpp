#include "gui/tool_button.h"

#include <QMouseEvent>
#include <QPainter>

namespace marlith {

ToolButton::ToolButton(const QPixmap& resting, const QPixmap& pressed, QWidget* strip)
    : QWidget(strip), resting_(resting), pressed_(pressed) {
    // A face drawn for a screen of more pixels keeps its size in the layout.
    setFixedSize(resting.deviceIndependentSize().toSize());
}

void ToolButton::setFaces(const QPixmap& resting, const QPixmap& pressed) {
    resting_ = resting;
    pressed_ = pressed;
    update();
}

void ToolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // Drawn at the face's own pixel ratio: at its logical size, not scaled up.
    painter.drawPixmap(QPointF(0, 0), pressedFace_ ? pressed_ : resting_);
}

void ToolButton::setPressedFace(bool pressed) {
    if (pressedFace_ == pressed) return;
    pressedFace_ = pressed;
    repaint();
}

bool ToolButton::inside(const QPointF& point) const {
    return point.x() >= 0 && point.y() >= 0 && point.x() <= width() && point.y() <= height();
}

void ToolButton::mousePressEvent(QMouseEvent* event) {
    pressOpen_ = event->button() == Qt::LeftButton;
    setPressedFace(true);
    // The strip takes the focus while the button is held.
    if (parentWidget()) parentWidget()->setFocus(Qt::MouseFocusReason);
}

void ToolButton::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) setPressedFace(inside(event->position()));
}

void ToolButton::mouseReleaseEvent(QMouseEvent* event) {
    setPressedFace(false);
    const bool click = pressOpen_ && event->button() == Qt::LeftButton && inside(event->position());
    pressOpen_ = false;
    if (click) Q_EMIT clicked();
}

void ToolButton::mouseDoubleClickEvent(QMouseEvent* event) {
    // The second click of a double click runs the command again.
    setPressedFace(true);
    pressOpen_ = false;
    if (event->button() == Qt::LeftButton) Q_EMIT clicked();
}

} // namespace marlith
