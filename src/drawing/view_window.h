// Form6: the View window, the palette of the pieces of the current sheet.
// A piece is chosen here for the clicks on the board, set on a square
// clicked before, or dragged onto a square of the main board.
#pragma once

#include <QWidget>

class QLabel;

namespace marlith {

struct AppState;
class Form1;

class Form6 : public QWidget {
    Q_OBJECT
  public:
    Form6(AppState& state, Form1& form1);

    // Sizes the window and repaints the palette from the sheet in use.
    void DrawView();
    // Repaints the chosen piece.
    void DrawSelect();

    // The palette and the chosen piece.
    QLabel* picture1() const { return picture1_; }
    QLabel* picture2() const { return picture2_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Picture1_MouseDown(QMouseEvent* event);
    void Picture1_MouseUp(QMouseEvent* event);
    void LeaveForText1();

    AppState& state_;
    Form1& form1_;
    QLabel* picture1_;
    QLabel* picture2_;
};

} // namespace marlith
