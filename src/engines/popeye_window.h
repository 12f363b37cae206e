// Form8: the Popeye window. Its fields make the problem file; a run starts
// the solver and a timer waits for the protocol, which fills the list.
#pragma once

#include "engines/popeye.h"

#include <QElapsedTimer>
#include <QWidget>
#include <array>
#include <functional>

class QComboBox;
class QLabel;
class QListWidget;
class QProcess;
class QPushButton;
class QTimer;

namespace marlith {

struct AppState;
struct PieceLists;

class Form8 : public QWidget {
    Q_OBJECT
  public:
    Form8(AppState& state, QWidget* parent);
    ~Form8() override;

    // The piece lists of MNpy_Click go into boxes 6, 7 and 8.
    void SetPieceLists(const PieceLists& lists);

    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Combo1_Change(int index);
    void Combo1_Click(int index);
    void Timer1_Timer();

    int16_t lePy() const { return lePy_; }
    QComboBox* combo1(int index) const { return combo1_[static_cast<size_t>(index)]; }

    // Shows the "Warning" message box (replaced by tests).
    std::function<void(const QString&)> warn;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void FocusChanged();
    bool EngineRunning() const;
    // The timer runs while there is something to do, and no longer.
    void Wake();

    AppState& state_;
    std::array<QLabel*, 11> label1_{};
    std::array<QComboBox*, 11> combo1_{};
    QLabel* label2_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
    QPushButton* command3_ = nullptr;
    QPushButton* command4_ = nullptr;
    QPushButton* command5_ = nullptr;
    QListWidget* list1_ = nullptr;
    QTimer* timer1_ = nullptr;
    QProcess* process_ = nullptr;
    int16_t lePy_ = 0;
    int16_t fCombo_ = -1;
    PopeyeRun run_;
    QElapsedTimer clock_;
};

} // namespace marlith
