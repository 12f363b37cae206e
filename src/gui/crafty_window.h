// The Crafty window. A run writes the engine's command file, starts
// the engine on it, and a timer waits for the log, which fills the list.
#pragma once

#include "engines/crafty.h"

#include "gui/engine_window.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace marlith {

class CraftyWindow : public EngineWindow {
    Q_OBJECT
  public:
    CraftyWindow(AppState& state, QWidget* parent);

    void solve();
    void clearAll();
    void tick() override;
    void stopRun() override;

    int16_t running() const { return running_; }
    QLineEdit* positionEdit() const { return positionEdit_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void focusChanged() override;
    bool startEngine();

    QRadioButton* whiteOption_ = nullptr;
    QRadioButton* blackOption_ = nullptr;
    QLabel* positionLabel_ = nullptr;
    QLabel* depthLabel_ = nullptr;
    QLineEdit* positionEdit_ = nullptr;
    QComboBox* depthBox_ = nullptr;
    QPushButton* solveButton_ = nullptr;
    QPushButton* closeButton_ = nullptr;
    int16_t running_ = 0;
    CraftyRun run_;
};

} // namespace marlith
