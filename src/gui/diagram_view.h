// The diagram on screen: shows the persistent image of the diagram and repaints from it.
#pragma once

#include "editing/board_edit.h"

#include <QWidget>
#include <functional>
#include <optional>

namespace marlith {

class Diagram;

class DiagramView : public QWidget {
    Q_OBJECT
  public:
    DiagramView(const Diagram& diagram, QWidget* parent = nullptr);

    // Takes the size of the image and repaints the area that changed.
    void refresh(const QRect& changed);
    // Drawn over the picture on the screen only, as a stroke follows the
    // mouse; empty for none.
    void setRubberBand(std::function<void(QPainter&)> band);
    // Draws the same picture in its own pixels onto any painter: on a screen
    // of more pixels than the picture has, the view draws it at the screen's
    // resolution instead of enlarging the image.
    void setSharpPainter(std::function<void(QPainter&)> paint);
    // What the view shows at a device pixel ratio: the image itself at 1.
    QImage pictureAt(qreal ratio);

  Q_SIGNALS:
    // One gesture on the diagram, from its press to its release: the press
    // holds the button and key mask as the editing counts them, and every
    // point is in twips.
    void pressed(const BoardPress& press);
    void dragged(const BoardPress& press, double x, double y);
    void released(const BoardPress& press, int button, double x, double y);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    const Diagram& diagram_;
    std::function<void(QPainter&)> rubberBand_;
    std::function<void(QPainter&)> sharpPainter_;
    QImage sharp_; // the picture at the screen's ratio; null when stale
    // The press of the gesture under way; none between gestures.
    std::optional<BoardPress> press_;
};

} // namespace marlith
