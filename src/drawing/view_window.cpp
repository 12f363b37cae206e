#include "drawing/view_window.h"

#include "core/main_window.h"
#include "drawing/diagram_view.h"
#include "drawing/palette.h"
#include "editing/board_edit.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>

namespace marlith {

Form6::Form6(AppState& state, Form1& form1)
    : QWidget(&form1, Qt::Tool), state_(state), form1_(form1) {
    setObjectName(QStringLiteral("Form6"));
    setWindowTitle(QStringLiteral("View"));
    picture1_ = new QLabel(this);
    picture1_->setObjectName(QStringLiteral("Picture1"));
    picture1_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    picture1_->setFocusPolicy(Qt::StrongFocus);
    picture1_->installEventFilter(this);
    picture2_ = new QLabel(this);
    picture2_->setObjectName(QStringLiteral("Picture2"));
    picture2_->installEventFilter(this);
}

void Form6::DrawView() {
    const Style& style = state_.style;
    const QSize palette = PaletteSizeTwips(style);
    const QImage image = DrawPalette(form1_.diagram().sheet(), style);
    picture1_->setPixmap(QPixmap::fromImage(image));
    picture1_->setGeometry(0, 0, image.width(), image.height());
    const int cellW = TwipToPixInt(style.SqrWidth);
    const int cellH = TwipToPixInt(style.SqrHeight);
    const int margin = TwipToPixInt(style.SqrWidth / 2);
    picture2_->setGeometry(image.width() + margin, margin, cellW, cellH);
    // The window's frame is the system's: the client holds the palette and,
    // beside it, the chosen piece with half a cell of room round it.
    setFixedSize(TwipToPixInt(palette.width() + 2 * style.SqrWidth),
                 std::max(image.height(), 2 * margin + cellH) + TwipToPixInt(80));
    DrawSelect();
}

void Form6::DrawSelect() {
    const QImage selected = DrawSelected(form1_.diagram().sheet(), state_.style, state_.viewPiece);
    picture2_->setPixmap(selected.isNull() ? QPixmap() : QPixmap::fromImage(selected));
}

void Form6::LeaveForText1() {
    form1_.CaretToText1();
}

void Form6::closeEvent(QCloseEvent* event) {
    // The close box gives up the chosen piece; the window is only hidden
    // while the main window lives.
    LeaveForText1();
    state_.viewPiece = -1;
    DrawSelect();
    if (state_.keepForms != 0) {
        event->ignore();
        hide();
    } else {
        event->accept();
    }
}

bool Form6::eventFilter(QObject* watched, QEvent* event) {
    if (watched == picture1_) {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            Picture1_MouseDown(static_cast<QMouseEvent*>(event));
            return true;
        case QEvent::MouseButtonRelease:
            Picture1_MouseUp(static_cast<QMouseEvent*>(event));
            return true;
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
                LeaveForText1();
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
    } else if (watched == picture2_ && (event->type() == QEvent::MouseButtonRelease ||
                                        event->type() == QEvent::MouseButtonDblClick)) {
        state_.viewPiece = -1;
        DrawSelect();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void Form6::Picture1_MouseDown(QMouseEvent* event) {
    picture1_->setCursor(Qt::CrossCursor);
    state_.pressX = static_cast<float>(event->position().x() * kTwipsPerPixel);
    state_.pressY = static_cast<float>(event->position().y() * kTwipsPerPixel);
    state_.pressButton = static_cast<int16_t>(ButtonNumber(event->button()));
    state_.pressShift = static_cast<int16_t>(KeyMask(event->modifiers()));
}

void Form6::Picture1_MouseUp(QMouseEvent* event) {
    const Style& style = state_.style;
    const int pieces = static_cast<int>(style.PiecesList.size());
    const QPointF at = event->position();
    const int released = PaletteCell(at.x() * kTwipsPerPixel, at.y() * kTwipsPerPixel, style);
    const int pressed = PaletteCell(state_.pressX, state_.pressY, style);
    // The point of the release as a point of the main board, through the screen.
    DiagramView* board = form1_.picMain();
    const QPointF onBoard = board->mapFromGlobal(picture1_->mapToGlobal(at));
    int target = board->rect().contains(onBoard.toPoint())
                     ? PixToInd(onBoard.x() * kTwipsPerPixel, onBoard.y() * kTwipsPerPixel, style)
                     : -1;

    auto finish = [this] {
        picture1_->unsetCursor();
        form1_.MoveCaretToEnd();
        state_.pressX = -1.0f;
        state_.pressY = -1.0f;
    };
    if (pressed < 1 || pressed > pieces) return finish();
    if (released == pressed) {
        if (!(state_.viewPiece < 0 && state_.clickedSquare >= 0)) {
            state_.viewPiece = static_cast<int16_t>(pressed);
            DrawSelect();
            return finish();
        }
        // A square of the board waits for a piece.
        target = state_.clickedSquare;
    } else if (released > 0) {
        return finish(); // a drag inside the palette
    }

    state_.viewPiece = static_cast<int16_t>(pressed);
    DrawSelect();
    if (target < 0) target = state_.clickedSquare;
    const int squares = state_.board().squares();
    if (target < 0 || target >= squares || state_.vet[target][1] < 0) return finish();
    state_.clickedSquare = static_cast<int16_t>(target);
    const int square = ScreenSquare(target, squares, state_.reversedBoard);
    Land(state_.vet, square, pressed, pieces, style.BorderWidth);
    form1_.PicMove();
    finish();
}

} // namespace marlith
