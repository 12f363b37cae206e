#include "editing/board_edit.h"

#include "drawing/diagram.h"

namespace marlith {

int ButtonNumber(Qt::MouseButtons buttons) {
    if (buttons & Qt::LeftButton) return kLeftButton;
    if (buttons & Qt::RightButton) return kRightButton;
    if (buttons & Qt::MiddleButton) return kMiddleButton;
    return 0;
}

int KeyMask(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? kMaskShift : 0) |
           (modifiers & Qt::ControlModifier ? kMaskCtrl : 0) |
           (modifiers & Qt::AltModifier ? kMaskAlt : 0);
}

void Land(VetArray& vet, int square, int content, int piecesCount, int columns) {
    if (content > piecesCount) content -= piecesCount + 1;
    vet[square][1] = static_cast<int16_t>(content + (piecesCount + 1) * SqrColor(square, columns));
}

BoardEdit ReleaseOnBoard(const BoardPress& press, double x, double y, VetArray& vet,
                         const Style& style, int reversedBoard, int viewPiece) {
    BoardEdit edit;
    if (IsStroke(press)) return edit;
    const int screenA = PixToInd(press.x, press.y, style);
    const int screenB = PixToInd(x, y, style);
    if (screenA < 0 || screenB < 0) return edit;
    const int squares = BoardSquares(style.BorderHeight, style.BorderWidth);
    if (screenA >= squares || screenB >= squares) return edit;
    const int a = ScreenSquare(screenA, squares, reversedBoard);
    const int b = ScreenSquare(screenB, squares, reversedBoard);
    const int pieces = static_cast<int>(style.PiecesList.size());
    const int columns = style.BorderWidth;
    const int emptyOfA = (pieces + 1) * SqrColor(a, columns);

    if (press.button == kLeftButton && a != b) {
        const int moved = vet[a][1];
        if (press.shift != kMaskCtrl) vet[a][1] = static_cast<int16_t>(emptyOfA);
        Land(vet, b, moved, pieces, columns);
        edit.picMove = true;
    } else if (press.button == kLeftButton) {
        if (viewPiece >= 0) {
            Land(vet, b, viewPiece, pieces, columns);
            edit.picMove = true;
        }
        edit.clicked = true;
        edit.clickedSquare = screenB;
    } else if (press.button == kRightButton && a == b) {
        vet[a][1] = static_cast<int16_t>(emptyOfA);
        edit.picMove = true;
    }
    return edit;
}

} // namespace marlith
