#include "core/tool_image.h"

#include <QMouseEvent>
#include <QPainter>

namespace marlith {

ToolImage::ToolImage(const QPixmap& resting, const QPixmap& pressed, QWidget* strip)
    : QWidget(strip), resting_(resting), pressed_(pressed) {
    setFixedSize(resting.size());
}

void ToolImage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawPixmap(0, 0, pressedFace_ ? pressed_ : resting_);
}

void ToolImage::setPressedFace(bool pressed) {
    if (pressedFace_ == pressed) return;
    pressedFace_ = pressed;
    repaint();
}

bool ToolImage::inside(const QPointF& point) const {
    return point.x() >= 0 && point.y() >= 0 && point.x() <= width() && point.y() <= height();
}

void ToolImage::mousePressEvent(QMouseEvent* event) {
    pressOpen_ = event->button() == Qt::LeftButton;
    setPressedFace(true);
    // The strip takes the focus while the button is held.
    if (parentWidget()) parentWidget()->setFocus(Qt::MouseFocusReason);
}

void ToolImage::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) setPressedFace(inside(event->position()));
}

void ToolImage::mouseReleaseEvent(QMouseEvent* event) {
    setPressedFace(false);
    const bool click = pressOpen_ && event->button() == Qt::LeftButton && inside(event->position());
    pressOpen_ = false;
    if (click) Q_EMIT clicked();
}

void ToolImage::mouseDoubleClickEvent(QMouseEvent* event) {
    // The second click of a double click runs the command again.
    setPressedFace(true);
    pressOpen_ = false;
    if (event->button() == Qt::LeftButton) Q_EMIT clicked();
}

} // namespace marlith
