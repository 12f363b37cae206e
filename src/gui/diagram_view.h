// The diagram on screen: shows the persistent image of the diagram and repaints from it.
#pragma once

#include <QWidget>
#include <functional>

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

  Q_SIGNALS:
    // Mouse events on the diagram: button and key mask as the editing
    // counts them, the point in twips.
    void mouseDown(int button, int shift, double x, double y);
    void mouseMove(int button, int shift, double x, double y);
    void mouseUp(int button, int shift, double x, double y);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    const Diagram& diagram_;
    std::function<void(QPainter&)> rubberBand_;
};

} // namespace marlith
