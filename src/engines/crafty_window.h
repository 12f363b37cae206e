// Form9: the Crafty window. A run writes the engine's command file, starts
// the engine on it, and a timer waits for the log, which fills the list.
#pragma once

#include "engines/crafty.h"

#include "engines/engine_window.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace marlith {

class Form9 : public EngineWindow {
    Q_OBJECT
  public:
    Form9(AppState& state, QWidget* parent);

    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Timer1_Timer() override;

    int16_t leCrafty() const { return leCrafty_; }
    QLineEdit* text1() const { return text1_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void FocusChanged() override;
    bool StartEngine();

    QRadioButton* option1_ = nullptr;
    QRadioButton* option2_ = nullptr;
    QLabel* label1_ = nullptr;
    QLabel* label3_ = nullptr;
    QLineEdit* text1_ = nullptr;
    QComboBox* combo1_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command4_ = nullptr;
    int16_t leCrafty_ = 0;
    CraftyRun run_;
};

} // namespace marlith
