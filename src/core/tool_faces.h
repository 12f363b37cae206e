// The faces of the tool buttons: drawn once, each button with a resting and
// a pressed face.
#pragma once

#include <QPixmap>
#include <array>

namespace marlith {

// Image3: faces of the first strip (Save, Graphic, History, Image, HTML,
// Copy, Paste, Print, Engine), resting at i and pressed at i + 9.
std::array<QPixmap, 18> FirstStripFaces();
// Image5: faces of the second strip (New, Start, Right, Left, Up, Down,
// Rotate, Horizontal Mirror, Diagonal Mirror); the four arrows are half size.
std::array<QPixmap, 18> SecondStripFaces();
// Image8: the Rec button, off and on.
std::array<QPixmap, 2> RecFaces();
// Image1: the move buttons of the book panel (first, back, forward, last),
// 16 by 16, resting at i and pressed at i + 4.
std::array<QPixmap, 8> BookButtonFaces();
// The program's icon.
QPixmap ProgramIcon();

} // namespace marlith
