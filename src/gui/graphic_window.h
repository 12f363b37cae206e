// The Graphic window: the tools of the strokes drawn with Shift over the
// diagram (object, snap mode, width, colour). The strokes themselves are
// made on the diagram, with the window open or closed.
#pragma once

#include "drawing/strokes.h"

#include <QWidget>
#include <array>
#include <functional>

class QComboBox;
class QFrame;
class QPushButton;
class QRadioButton;

namespace marlith {

struct AppState;

class GraphicWindow : public QWidget {
    Q_OBJECT
  public:
    GraphicWindow(AppState& state, QWidget* parent);

    StrokeObject object() const;
    SnapMode snapMode() const;
    Pen pen() const { return pen_; }

    void takeSwatchColor(int index);
    void pickSwatchColor(int index);
    void takeTypedWidth();
    void chooseWidth(int index);
    QPushButton* swatch(int index) const { return swatches_[static_cast<size_t>(index)]; }

    // The colour chooser: the colour picked, or -1 (replaced by tests).
    std::function<int32_t(int32_t color, QWidget* focusAfter)> pickColor;

  Q_SIGNALS:
    // "Clear Graphic": the diagram is to be drawn anew, without strokes.
    void clearRequested();

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showPen();

    AppState& state_;
    Pen pen_;
    QRadioButton* lineOption_ = nullptr;
    QRadioButton* circleOption_ = nullptr;
    QRadioButton* freeHandOption_ = nullptr;
    std::array<QRadioButton*, 3> snapOptions_{}; // off, corner, centre
    QComboBox* widthBox_ = nullptr;
    QFrame* sampleLine_ = nullptr;
    std::array<QPushButton*, 10> swatches_{};
};

} // namespace marlith
