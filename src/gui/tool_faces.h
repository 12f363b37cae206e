// The faces of the tool buttons: drawn once, each button with a resting and
// a pressed face. A face is drawn for a screen's pixel ratio: its logical size
// stays the same, its pixels grow with the ratio.
#pragma once

#include <QPixmap>
#include <array>

namespace marlith {

// The application's pixel ratio, at which faces are drawn unless asked otherwise.
qreal screenPixelRatio();

// Faces of the first strip (Save, Graphic, History, Image, HTML,
// Copy, Paste, Print, Engine), resting at i and pressed at i + 9.
std::array<QPixmap, 18> firstStripFaces(qreal ratio = screenPixelRatio());
// Faces of the second strip (New, Start, Right, Left, Up, Down,
// Rotate, Horizontal Mirror, Diagonal Mirror); the four arrows are half size.
std::array<QPixmap, 18> secondStripFaces(qreal ratio = screenPixelRatio());
// The Rec button, off and on.
std::array<QPixmap, 2> recModeFaces(qreal ratio = screenPixelRatio());
// The step buttons of the book panel (first, back, forward, last),
// 16 by 16, resting at i and pressed at i + 4.
std::array<QPixmap, 8> stepButtonFaces(qreal ratio = screenPixelRatio());
// The Style window's browse button (a folder under a magnifying glass),
// resting and pressed, 19 by 19.
std::array<QPixmap, 2> browseFaces(qreal ratio = screenPixelRatio());
// The padlock of the picture size: open and raised, closed and sunken.
std::array<QPixmap, 2> padlockFaces(qreal ratio = screenPixelRatio());
// The program's icon.
QPixmap programIcon(qreal ratio = screenPixelRatio());

} // namespace marlith
