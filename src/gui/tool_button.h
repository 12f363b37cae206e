// A tool button of the main window's strips: an image with a resting and a
// pressed face, run on click (and once more on a double click).
#pragma once

#include <QPixmap>
#include <QWidget>

namespace marlith {

class ToolButton : public QWidget {
    Q_OBJECT
  public:
    ToolButton(const QPixmap& resting, const QPixmap& pressed, QWidget* strip);

    bool showsPressedFace() const { return pressedFace_; }
    // New faces, for a button whose look tells a state.
    void setFaces(const QPixmap& resting, const QPixmap& pressed);
    const QPixmap& restingFace() const { return resting_; }

  Q_SIGNALS:
    void clicked();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    void setPressedFace(bool pressed);
    bool inside(const QPointF& point) const;

    QPixmap resting_;
    QPixmap pressed_;
    bool pressedFace_ = false;
    bool pressOpen_ = false;
};

} // namespace marlith
