// the book panel: the book panel of the main window. A scroll bar steps from game to
// game, four buttons step through the positions of a game, a list shows the
// game's header lines, and the position on show goes into the position box.
#pragma once

#include <QGroupBox>
#include <array>

class QLabel;
class QListWidget;
class QScrollBar;

namespace marlith {

struct AppState;
class MainWindow;
class ToolButton;

class BookPanel : public QGroupBox {
    Q_OBJECT
  public:
    BookPanel(AppState& state, MainWindow& host, QWidget* parent);

    // Sets the scroll bar for the book's games and shows game 1.
    void resetGameScrollBar();
    // Shows the game at the scroll bar's value.
    void showGame();
    // 0 first position, 1 a step back, 2 a step forward, 3 last position.
    void stepThroughGame(int index);
    void setGameCaption();
    // The running count of a scan.
    void showCount(int games);
    // Label1 is red while a search narrows the book.
    void setNarrowed(bool narrowed);

    QScrollBar* gameScrollBar() const { return gameScrollBar_; }
    QListWidget* headerList() const { return headerList_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showRecord();

    AppState& state_;
    MainWindow& host_;
    QLabel* gameLabel_;
    QScrollBar* gameScrollBar_;
    QListWidget* headerList_;
    QLabel* sideLabel_;
    QWidget* stepStrip_;
    QWidget* stepStripPlaceholder_;
    std::array<ToolButton*, 4> stepButtons_{};
};

} // namespace marlith
