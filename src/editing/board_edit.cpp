#include "editing/board_edit.h"

#include "drawing/diagram.h"

namespace marlith {

int buttonNumber(Qt::MouseButtons buttons) {
    if (buttons & Qt::LeftButton) return kLeftButton;
    if (buttons & Qt::RightButton) return kRightButton;
    if (buttons & Qt::MiddleButton) return kMiddleButton;
    return 0;
}

int keyMask(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? kMaskShift : 0) |
           (modifiers & Qt::ControlModifier ? kMaskCtrl : 0) |
           (modifiers & Qt::AltModifier ? kMaskAlt : 0);
}

void landPiece(SquareVector& squareVector, int square, int content, int piecesCount, int columns) {
    squareVector[square].wanted = static_cast<int16_t>(
        sheetCell(cellContent(content, piecesCount), squareColor(square, columns), piecesCount));
}

BoardEdit editOnRelease(const BoardPress& press, double x, double y, SquareVector& squareVector,
                        const Style& style, int reversedBoard, int chosenPiece) {
    BoardEdit edit;
    if (isStroke(press)) return edit;
    const int screenA = squareAt(press.x, press.y, style);
    const int screenB = squareAt(x, y, style);
    if (screenA < 0 || screenB < 0) return edit;
    const int squares = boardSquares(style.BorderHeight, style.BorderWidth);
    if (screenA >= squares || screenB >= squares) return edit;
    const int a = screenSquare(screenA, squares, reversedBoard);
    const int b = screenSquare(screenB, squares, reversedBoard);
    const int pieces = static_cast<int>(style.PiecesList.size());
    const int columns = style.BorderWidth;
    const int emptyOfA = sheetCell(0, squareColor(a, columns), pieces);

    if (press.button == kLeftButton && a != b) {
        const int moved = squareVector[a].wanted;
        if (press.shift != kMaskCtrl) squareVector[a].wanted = static_cast<int16_t>(emptyOfA);
        landPiece(squareVector, b, moved, pieces, columns);
        edit.squaresChanged = true;
    } else if (press.button == kLeftButton) {
        if (chosenPiece >= 0) {
            landPiece(squareVector, b, chosenPiece, pieces, columns);
            edit.squaresChanged = true;
        }
        edit.clicked = true;
        edit.clickedSquare = screenB;
    } else if (press.button == kRightButton && a == b) {
        squareVector[a].wanted = static_cast<int16_t>(emptyOfA);
        edit.squaresChanged = true;
    }
    return edit;
}

} // namespace marlith
