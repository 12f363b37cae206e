#include "gui/view_window.h"

#include "core/app_state.h"
#include "drawing/diagram.h"
#include "drawing/palette.h"
#include "editing/board_edit.h"
#include "gui/child_window_place.h"
#include "gui/diagram_view.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>

namespace marlith {

ViewWindow::ViewWindow(AppState& state, const Diagram& diagram, DiagramView* board, QWidget* parent)
    : QWidget(parent, Qt::Tool), state_(state), diagram_(diagram), board_(board) {
    setObjectName(QStringLiteral("viewWindow"));
    setWindowTitle(QStringLiteral("View"));
    paletteView_ = new QLabel(this);
    paletteView_->setObjectName(QStringLiteral("paletteView"));
    paletteView_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    paletteView_->setFocusPolicy(Qt::StrongFocus);
    paletteView_->installEventFilter(this);
    chosenPieceView_ = new QLabel(this);
    chosenPieceView_->setObjectName(QStringLiteral("chosenPieceView"));
    chosenPieceView_->installEventFilter(this);
}

void ViewWindow::drawPalette() {
    const Style& style = state_.style;
    const QSize palette = paletteSizeTwips(style);
    const QImage image = paletteImage(diagram_.sheet(), style);
    paletteView_->setPixmap(QPixmap::fromImage(image));
    paletteView_->setGeometry(0, 0, image.width(), image.height());
    const int cellW = twipsToWholePixels(style.SqrWidth);
    const int cellH = twipsToWholePixels(style.SqrHeight);
    const int margin = twipsToWholePixels(style.SqrWidth / 2);
    chosenPieceView_->setGeometry(image.width() + margin, margin, cellW, cellH);
    // The window's frame is the system's: the client holds the palette and,
    // beside it, the chosen piece with half a cell of room round it.
    setFixedSize(twipsToWholePixels(palette.width() + 2 * style.SqrWidth),
                 std::max(image.height(), 2 * margin + cellH) + twipsToWholePixels(80));
    drawChosenPiece();
}

void ViewWindow::drawChosenPiece() {
    const QImage selected = chosenPieceImage(diagram_.sheet(), state_.style, state_.chosenPiece);
    chosenPieceView_->setPixmap(selected.isNull() ? QPixmap() : QPixmap::fromImage(selected));
}

void ViewWindow::returnToPosition() {
    Q_EMIT returnedToPosition();
}

void ViewWindow::closeEvent(QCloseEvent* event) {
    // The close box gives up the chosen piece.
    returnToPosition();
    state_.chosenPiece = -1;
    drawChosenPiece();
    hideOnClose(*this, *event, state_.mainWindowAlive);
}

bool ViewWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == paletteView_) {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            pressOnPalette(static_cast<QMouseEvent*>(event));
            return true;
        case QEvent::MouseButtonRelease:
            releaseOnPalette(static_cast<QMouseEvent*>(event));
            return true;
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
                returnToPosition();
                hide();
                return true;
            }
            break;
        case QEvent::FocusOut:
            state_.clickedSquare = -1;
            break;
        default:
            break;
        }
    } else if (watched == chosenPieceView_ && (event->type() == QEvent::MouseButtonRelease ||
                                               event->type() == QEvent::MouseButtonDblClick)) {
        state_.chosenPiece = -1;
        drawChosenPiece();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void ViewWindow::pressOnPalette(QMouseEvent* event) {
    paletteView_->setCursor(Qt::CrossCursor);
    palettePress_ = event->position() * kTwipsPerPixel;
}

void ViewWindow::releaseOnPalette(QMouseEvent* event) {
    const Style& style = state_.style;
    const int pieces = static_cast<int>(style.PiecesList.size());
    const QPointF at = event->position();
    const int released = paletteCell(at.x() * kTwipsPerPixel, at.y() * kTwipsPerPixel, style);
    const int pressed =
        palettePress_ ? paletteCell(palettePress_->x(), palettePress_->y(), style) : 0;
    // The point of the release as a point of the main board, through the screen.
    DiagramView* board = board_;
    const QPointF onBoard = board->mapFromGlobal(paletteView_->mapToGlobal(at));
    int target = board->rect().contains(onBoard.toPoint())
                     ? squareAt(onBoard.x() * kTwipsPerPixel, onBoard.y() * kTwipsPerPixel, style)
                     : -1;

    auto finish = [this] {
        paletteView_->unsetCursor();
        Q_EMIT pressDone();
        palettePress_.reset();
    };
    if (pressed < 1 || pressed > pieces) return finish();
    if (released == pressed) {
        if (!(state_.chosenPiece < 0 && state_.clickedSquare >= 0)) {
            state_.chosenPiece = static_cast<int16_t>(pressed);
            drawChosenPiece();
            return finish();
        }
        // A square of the board waits for a piece.
        target = state_.clickedSquare;
    } else if (released > 0) {
        return finish(); // a drag inside the palette
    }

    state_.chosenPiece = static_cast<int16_t>(pressed);
    drawChosenPiece();
    if (target < 0) target = state_.clickedSquare;
    const int squares = state_.board().squares();
    if (target < 0 || target >= squares || state_.squares[target].wanted < 0) return finish();
    state_.clickedSquare = static_cast<int16_t>(target);
    const int square = screenSquare(target, squares, state_.reversedBoard);
    landPiece(state_.squares, square, pressed, pieces, style.BorderWidth);
    Q_EMIT boardEdited();
    finish();
}

} // namespace marlith
