#include "drawing/diagram_view.h"

#include "drawing/diagram.h"

#include <QPaintEvent>
#include <QPainter>

namespace marlith {

DiagramView::DiagramView(const Diagram& diagram, QWidget* parent)
    : QWidget(parent), diagram_(diagram) {
    setObjectName(QStringLiteral("PicMain"));
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void DiagramView::refresh(const QRect& changed) {
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
    painter.drawImage(area.topLeft(), diagram_.image(), area);
}

} // namespace marlith
