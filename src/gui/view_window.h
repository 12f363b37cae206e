// The View window: the palette of the pieces of the current sheet.
// A piece is chosen here for the clicks on the board, set on a square
// clicked before, or dragged onto a square of the main board.
#pragma once

#include <QPointF>
#include <QWidget>
#include <optional>

class QLabel;

namespace marlith {

struct AppState;
class Diagram;
class DiagramView;

class ViewWindow : public QWidget {
    Q_OBJECT
  public:
    // The palette is cut from the diagram's sheet; a piece dragged out of
    // it lands on `board`.
    ViewWindow(AppState& state, const Diagram& diagram, DiagramView* board, QWidget* parent);

    // Sizes the window and repaints the palette from the sheet in use.
    void drawPalette();
    // Repaints the chosen piece.
    void drawChosenPiece();

    // The palette and the chosen piece.
    QLabel* paletteView() const { return paletteView_; }
    QLabel* chosenPieceView() const { return chosenPieceView_; }

  Q_SIGNALS:
    // The user leaves the palette for the position box.
    void returnedToPosition();
    // The palette is done with the press: the caret goes behind the position.
    void pressDone();
    // A piece was set on the board's squares: the text is to follow them.
    void boardEdited();

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void pressOnPalette(QMouseEvent* event);
    void releaseOnPalette(QMouseEvent* event);
    void returnToPosition();

    AppState& state_;
    const Diagram& diagram_;
    DiagramView* board_;
    QLabel* paletteView_;
    QLabel* chosenPieceView_;
    // Where the press on the palette was, in twips; none between presses.
    std::optional<QPointF> palettePress_;
};

} // namespace marlith
