// Editing on the diagram: what a press and a release on the board do to the
// square vector. Nothing is painted here; the caller passes the vector on
// to the text (commitBoardEdit).
#pragma once

#include "position/fen.h"
#include "styles/style.h"

#include <Qt>

namespace marlith {

// Key mask of a press: 1 Shift, 2 Ctrl, 4 Alt, added together.
inline constexpr int kMaskShift = 1;
inline constexpr int kMaskCtrl = 2;
inline constexpr int kMaskAlt = 4;
// Buttons as the mouse events give them.
inline constexpr int kLeftButton = 1;
inline constexpr int kRightButton = 2;
inline constexpr int kMiddleButton = 4;

// The button of a mouse event as numbered here (0 for none), and the mask of
// its keys.
int buttonNumber(Qt::MouseButtons buttons);
int keyMask(Qt::KeyboardModifiers modifiers);

struct BoardPress {
    double x = -1; // twips on the diagram
    double y = -1;
    int button = 0;
    int shift = 0;
};

// Shift alone at the press starts a stroke of the overlay, not an edit.
inline bool isStroke(const BoardPress& press) {
    return press.shift == kMaskShift;
}

struct BoardEdit {
    bool squaresChanged = false; // the vector changed: pass it on to the text
    int clickedSquare = -1;      // the square clicked, as numbered on the screen
    bool clicked = false;        // clickedSquare is to be taken over
};

// The edit of a release at (x, y) after `press`: a left drag moves (Ctrl
// alone copies), a left click sets the chosen piece, a right click empties.
// A gesture that starts or ends off the squares does nothing.
BoardEdit editOnRelease(const BoardPress& press, double x, double y, SquareVector& squareVector,
                        const Style& style, int reversedBoard, int chosenPiece);

// Puts piece `content` on board square `square` as the sheet cell of that
// square's colour, as an edit leaves it until the next buildBoard.
void landPiece(SquareVector& squareVector, int square, int content, int piecesCount, int columns);

} // namespace marlith
