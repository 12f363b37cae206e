// The colour chooser of the program, for the Style and Graphic windows.
#pragma once

#include <cstdint>

class QWidget;

namespace marlith {

struct AppState;

// Offers the colour (red in the low byte) and the run's custom colours; gives
// the colour picked, or -1 when the user cancels. The custom colours the user
// set are kept for the next call; the focus goes back to `focusAfter`.
int32_t pickColor(AppState& state, int32_t color, QWidget* parent, QWidget* focusAfter);

} // namespace marlith
