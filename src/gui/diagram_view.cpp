#include "gui/diagram_view.h"

#include "drawing/diagram.h"
#include "editing/board_edit.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

namespace marlith {

DiagramView::DiagramView(const Diagram& diagram, QWidget* parent)
    : QWidget(parent), diagram_(diagram) {
    setObjectName(QStringLiteral("diagramView"));
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void DiagramView::refresh(const QRect& changed) {
    if (!changed.isEmpty()) sharp_ = QImage();
    const QSize size = diagram_.image().size();
    if (this->size() != size) {
        setFixedSize(size);
        update();
    } else if (!changed.isEmpty()) {
        update(changed);
    }
}

void DiagramView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect area = event->rect();
    const qreal ratio = devicePixelRatioF();
    if (ratio > 1 && sharpPainter_)
        painter.drawImage(QPointF(0, 0), pictureAt(ratio));
    else
        painter.drawImage(area.topLeft(), diagram_.image(), area);
    if (rubberBand_) rubberBand_(painter);
}

void DiagramView::setSharpPainter(std::function<void(QPainter&)> paint) {
    sharpPainter_ = std::move(paint);
    sharp_ = QImage();
}

QImage DiagramView::pictureAt(qreal ratio) {
    const QImage& image = diagram_.image();
    if (ratio <= 1 || !sharpPainter_ || image.isNull()) return image;
    if (sharp_.isNull() || sharp_.devicePixelRatio() != ratio ||
        sharp_.deviceIndependentSize() != QSizeF(image.size())) {
        sharp_ = QImage((QSizeF(image.size()) * ratio).toSize(), QImage::Format_RGB32);
        sharp_.setDevicePixelRatio(ratio);
        QPainter painter(&sharp_);
        sharpPainter_(painter);
    }
    return sharp_;
}

void DiagramView::setRubberBand(std::function<void(QPainter&)> band) {
    rubberBand_ = std::move(band);
    update();
}

void DiagramView::mousePressEvent(QMouseEvent* event) {
    const int button = buttonNumber(event->button());
    // A second button while one is held belongs to the first press; the same
    // button pressed again means that the release of the last press was lost
    // (outside the window), and a new gesture begins.
    if (press_ && button != press_->button) return;
    press_ =
        BoardPress{event->position().x() * kTwipsPerPixel, event->position().y() * kTwipsPerPixel,
                   button, keyMask(event->modifiers())};
    Q_EMIT pressed(*press_);
}

void DiagramView::mouseDoubleClickEvent(QMouseEvent*) {
    // A double click is one gesture: its second press opens nothing, so its
    // release edits nothing either.
}

void DiagramView::mouseMoveEvent(QMouseEvent* event) {
    if (press_)
        Q_EMIT dragged(*press_, event->position().x() * kTwipsPerPixel,
                       event->position().y() * kTwipsPerPixel);
}

void DiagramView::mouseReleaseEvent(QMouseEvent* event) {
    if (!press_) return;
    const BoardPress press = *press_;
    press_.reset();
    Q_EMIT released(press, buttonNumber(event->button()), event->position().x() * kTwipsPerPixel,
                    event->position().y() * kTwipsPerPixel);
}

} // namespace marlith
