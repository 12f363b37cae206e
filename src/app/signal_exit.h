// The end of the session and the signals that end a program (SIGTERM,
// SIGINT, SIGHUP) run the same stop sequence as closing the main window;
// SIGXFSZ is ignored, so a file-size limit fails a write instead.
#pragma once

class QWidget;

namespace marlith {

void closeOnSignals(QWidget& mainWindow);

} // namespace marlith
