// Frame2: the book panel of the main window. A scroll bar steps from game to
// game, four buttons step through the positions of a game, a list shows the
// game's header lines, and the position on show goes into Text1.
#pragma once

#include <QGroupBox>
#include <array>

class QLabel;
class QListWidget;
class QScrollBar;

namespace marlith {

struct AppState;
class Form1;
class ToolImage;

class BookPanel : public QGroupBox {
    Q_OBJECT
  public:
    BookPanel(AppState& state, Form1& form1, QWidget* parent);

    // Sets the scroll bar for the book's games and shows game 1.
    void SetHScroll();
    // Shows the game at the scroll bar's value.
    void HScroll1_Change();
    // 0 first position, 1 a step back, 2 a step forward, 3 last position.
    void Image2_Click(int index);
    void SetGameCaption();
    // The running count of a scan.
    void ShowCount(int games);
    // Label1 is red while a search narrows the book.
    void SetNarrowed(bool narrowed);

    QScrollBar* hScroll1() const { return hScroll1_; }
    QListWidget* list1() const { return list1_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void ShowRecord();

    AppState& state_;
    Form1& form1_;
    QLabel* label1_;
    QScrollBar* hScroll1_;
    QListWidget* list1_;
    QLabel* label5_;
    QWidget* picture1_;
    QWidget* picture2_;
    std::array<ToolImage*, 4> image2_{};
};

} // namespace marlith
