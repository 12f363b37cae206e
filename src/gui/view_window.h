// ViewWindow: the View window, the palette of the pieces of the current sheet.
// A piece is chosen here for the clicks on the board, set on a square
// clicked before, or dragged onto a square of the main board.
#pragma once

#include <QWidget>

class QLabel;

namespace marlith {

struct AppState;
class MainWindow;

class ViewWindow : public QWidget {
    Q_OBJECT
  public:
    ViewWindow(AppState& state, MainWindow& form1);

    // Sizes the window and repaints the palette from the sheet in use.
    void drawPalette();
    // Repaints the chosen piece.
    void drawChosenPiece();

    // The palette and the chosen piece.
    QLabel* paletteView() const { return paletteView_; }
    QLabel* chosenPieceView() const { return chosenPieceView_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void pressOnPalette(QMouseEvent* event);
    void releaseOnPalette(QMouseEvent* event);
    void returnToPosition();

    AppState& state_;
    MainWindow& form1_;
    QLabel* paletteView_;
    QLabel* chosenPieceView_;
};

} // namespace marlith
