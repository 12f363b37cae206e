// The book panel beside the board: a scroll bar steps from game to game, four
// buttons step through the positions of a game, a list shows the game's header
// lines, and the position on show goes out through positionShown.
#pragma once

#include <QGroupBox>
#include <QStringList>
#include <array>

class QLabel;
class QListWidget;
class QScrollBar;

namespace marlith {

struct AppState;
class ToolButton;

class BookPanel : public QGroupBox {
    Q_OBJECT
  public:
    BookPanel(AppState& state, QWidget* parent);

    // Sets the scroll bar for the book's games and shows game 1.
    void resetGameScrollBar();
    // Shows the game at the scroll bar's value.
    void showGame();
    // The steps through the game on show, by the four buttons or the arrow keys.
    void firstPosition();
    void previousPosition();
    void nextPosition();
    void lastPosition();
    void setGameCaption();
    // A position from elsewhere is on the board: no side is known.
    void showMoveControls();
    // The running count of a scan.
    void showCount(int games);
    // While the book is scanned its games can't be walked.
    void setScanning(bool scanning);
    // The game label is red while a search narrows the book.
    void setNarrowed(bool narrowed);

    QScrollBar* gameScrollBar() const { return gameScrollBar_; }
    QListWidget* headerList() const { return headerList_; }
    // The header lines of the game on show, whole.
    const QStringList& gameHeaders() const { return gameHeaders_; }

  Q_SIGNALS:
    // The board field of the record on show, for the position box.
    void positionShown(const QString& board);
    // A step is over: the caret goes behind the position.
    void stepped();
    // A game's style tag names this style.
    void styleTagFound(const QString& name);
    // Enter on one of the panel's controls.
    void refreshRequested();
    // A game is on show; its header lines are in gameHeaders().
    void headersShown();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showRecord();
    // Shows the record on show if the step moved; the caret goes behind it.
    void finishStep(bool moved);

    AppState& state_;
    QLabel* gameLabel_;
    QScrollBar* gameScrollBar_;
    QListWidget* headerList_;
    QLabel* sideLabel_;
    QWidget* stepStrip_;
    QWidget* stepStripPlaceholder_;
    std::array<ToolButton*, 4> stepButtons_{};
    QStringList gameHeaders_;
};

} // namespace marlith
