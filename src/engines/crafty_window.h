// Form9: the Crafty window. A run writes the engine's command file, starts
// the engine on it, and a timer waits for the log, which fills the list.
#pragma once

#include "engines/crafty.h"

#include <QElapsedTimer>
#include <QWidget>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProcess;
class QPushButton;
class QRadioButton;
class QTimer;

namespace marlith {

struct AppState;

class Form9 : public QWidget {
    Q_OBJECT
  public:
    Form9(AppState& state, QWidget* parent);
    ~Form9() override;

    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Timer1_Timer();

    int16_t leCrafty() const { return leCrafty_; }
    QLineEdit* text1() const { return text1_; }

    // Shows the "Warning" message box (replaced by tests).
    std::function<void(const QString&)> warn;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void FocusChanged();
    bool EngineRunning() const;
    bool StartEngine();

    AppState& state_;
    QRadioButton* option1_ = nullptr;
    QRadioButton* option2_ = nullptr;
    QLabel* label1_ = nullptr;
    QLabel* label2_ = nullptr;
    QLabel* label3_ = nullptr;
    QLineEdit* text1_ = nullptr;
    QComboBox* combo1_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command4_ = nullptr;
    QListWidget* list1_ = nullptr;
    QTimer* timer1_ = nullptr;
    QProcess* process_ = nullptr;
    int16_t leCrafty_ = 0;
    CraftyRun run_;
    QElapsedTimer clock_;
};

} // namespace marlith
