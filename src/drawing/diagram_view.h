// PicMain: shows the persistent image of the diagram and repaints from it.
#pragma once

#include <QWidget>

namespace marlith {

class Diagram;

class DiagramView : public QWidget {
    Q_OBJECT
  public:
    DiagramView(const Diagram& diagram, QWidget* parent = nullptr);

    // Takes the size of the image and repaints the area that changed.
    void refresh(const QRect& changed);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const Diagram& diagram_;
};

} // namespace marlith
