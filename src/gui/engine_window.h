// What the Popeye and Crafty windows share: the list of results, the clock
// label, the timer that ticks only while a run is on, the engine program, and
// a close box that only hides the window while the main window lives.
#pragma once

#include "engines/engine_process.h"

#include <QElapsedTimer>
#include <QRect>
#include <QWidget>
#include <functional>
#include <optional>

class QLabel;
class QListWidget;
class QPushButton;
class QTimer;

namespace marlith {

struct AppState;

class EngineWindow : public QWidget {
    Q_OBJECT
  public:
    ~EngineWindow() override;

    virtual void tick() = 0;
    // Ends the run under way at once: the engine goes, its files go, and the
    // list says so.
    virtual void stopRun() = 0;
    // The rows of the list go to the clipboard, or to the printer (to a new
    // "Solution.pdf" in the documents folder when there is none).
    void copySolution();
    void printSolution();

    // Shows the "Warning" message box (replaced by tests).
    std::function<void(const QString&)> warn;
    // Tells where a page went without a printer (replaced by tests).
    std::function<void(const QString&)> inform;

  protected:
    EngineWindow(AppState& state, QWidget* parent, const QString& name, const QString& title);

    // The solution list, in the face colour of the buttons.
    QListWidget* makeSolutionList(QRect geometry);
    // The clock label shows the time when a new second has begun.
    void showClock(const std::optional<QString>& shown);
    // The rows of a result replace the list, and the window comes back.
    void showRows(const QStringList& rows);
    // A run starts: "Stop" stands where the start button was.
    void beginRun(QPushButton* start);
    // The run is over: the start button works again, "Hide" is "Close" again.
    void endRun(QPushButton* start, QPushButton* hide);
    // The engine is gone without a result: the list shows what it said and
    // how it ended, and the run is over.
    void showEnded(const QString& engine, QPushButton* start, QPushButton* hide);
    // The solution list follows the window's size, less the room of the other controls.
    void stretchSolutionList(int lessWidthTwips, int lessHeightTwips);

    void closeEvent(QCloseEvent* event) override;
    // Escape stops a run.
    void keyPressEvent(QKeyEvent* event) override;
    // The labels of the focused boxes show a border; the window calls
    // watchFocus once all its controls stand.
    virtual void focusChanged() = 0;
    void watchFocus();
    // Buttons and labels as wide as their captions need at this desktop's font.
    void widenToCaptions();
    // Tab goes from each control to the next.
    void chainTabs(const QList<QWidget*>& controls);

    AppState& state_;
    QLabel* clockLabel_ = nullptr;
    QListWidget* solutionList_ = nullptr;
    QTimer* pollTimer_ = nullptr;
    QPushButton* stopButton_ = nullptr;
    EngineProcess engine_;
    QElapsedTimer clock_;
};

} // namespace marlith
