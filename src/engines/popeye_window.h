// Form8: the Popeye window. Its fields make the problem file; a run starts
// the solver and a timer waits for the protocol, which fills the list.
#pragma once

#include "engines/popeye.h"

#include "engines/engine_window.h"

#include <array>

class QComboBox;
class QLabel;
class QPushButton;

namespace marlith {

struct PieceLists;

class Form8 : public EngineWindow {
    Q_OBJECT
  public:
    Form8(AppState& state, QWidget* parent);

    // The piece lists of MNpy_Click go into boxes 6, 7 and 8.
    void SetPieceLists(const PieceLists& lists);

    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Combo1_Change(int index);
    void Combo1_Click(int index);
    void Timer1_Timer() override;

    int16_t lePy() const { return lePy_; }
    QComboBox* combo1(int index) const { return combo1_[static_cast<size_t>(index)]; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void FocusChanged() override;
    // The timer runs while there is something to do, and no longer.
    void Wake();

    std::array<QLabel*, 11> label1_{};
    std::array<QComboBox*, 11> combo1_{};
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
    QPushButton* command3_ = nullptr;
    QPushButton* command4_ = nullptr;
    QPushButton* command5_ = nullptr;
    int16_t lePy_ = 0;
    int16_t fCombo_ = -1;
    PopeyeRun run_;
};

} // namespace marlith
