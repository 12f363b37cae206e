// Form1: the main window, with the position text, the piece counter and the
// diagram.
#pragma once

#include "core/app_state.h"
#include "drawing/diagram.h"

#include <QMainWindow>
#include <functional>
#include <memory>

class QLabel;
class QLineEdit;
class QLockFile;

namespace marlith {

class DiagramView;

class Form1 : public QMainWindow {
    Q_OBJECT
  public:
    explicit Form1(AppState& state, QWidget* parent = nullptr);
    ~Form1() override;

    // The start sequence; `arguments` is the command line without the program.
    void Form_Load(const QStringList& arguments);
    // The stop sequence; closing the window runs both.
    void Form_QueryUnload();
    void Form_Unload();

    void DrawBoard();
    void Build();
    void PicMove();
    void MNNew_Click();
    void MNStart_Click();
    void MNRefresh_Click();

    Diagram& diagram() { return diagram_; }
    AppState& state() { return state_; }

    // How a further instance is started (replaced by tests).
    std::function<void(const QStringList&)> startInstance;

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool Text1_KeyPress(const QString& typed, int key);
    void Text1_KeyDown(int key);
    void PlaceControls();

    AppState& state_;
    Diagram diagram_;
    QLabel* label3_ = nullptr;
    QLineEdit* text1_ = nullptr;
    DiagramView* picMain_ = nullptr;
    std::unique_ptr<QLockFile> instanceLock_;
    bool unloaded_ = false;
};

} // namespace marlith
