// What outlives one change and one session: undo and redo of the position
// (every change the user makes is a step; typing becomes one at Enter, at a
// pause or before the next change), and the position, place and Popeye
// fields that the next start brings back.
#include "gui/history_window.h"
#include "gui/main_window.h"

#include "core/window_place.h"

#include <QAction>
#include <QLineEdit>
#include <QScreen>
#include <QTimer>

namespace marlith {

void MainWindow::setPositionText(const QString& text) {
    flushTyping();
    positionEdit_->setText(text);
    positionUndo_.record(positionEdit_->text());
    updateUndoItems();
}

void MainWindow::flushTyping() {
    typingPause_->stop();
    positionUndo_.record(positionEdit_->text());
    updateUndoItems();
}

void MainWindow::undoChange() {
    flushTyping();
    const std::optional<PositionUndo::Step> step = positionUndo_.undo();
    if (!step) return;
    // In Rec Mode the change had added a row; it goes too, if still last.
    if (!step->historyRow.isEmpty()) {
        HistoryWindow* history = historyWindow();
        if (history->rowCount() > 0 && history->rows().constLast() == step->historyRow)
            history->dropLastRow();
    }
    showUndoneText(positionUndo_.current());
}

void MainWindow::redoChange() {
    flushTyping();
    const std::optional<PositionUndo::Step> step = positionUndo_.redo();
    if (!step) return;
    if (!step->historyRow.isEmpty()) {
        historyWindow()->addRow(step->historyRow);
        action(QStringLiteral("undoRecAction"))->setEnabled(true);
    }
    showUndoneText(step->text);
}

void MainWindow::showUndoneText(const QString& text) {
    positionEdit_->setText(text);
    positionEdit_->end(false);
    updateUndoItems();
}

void MainWindow::updateUndoItems() {
    action(QStringLiteral("undoAction"))
        ->setEnabled(positionUndo_.canUndo() || typingPause_->isActive());
    action(QStringLiteral("redoAction"))->setEnabled(positionUndo_.canRedo());
}

void MainWindow::restoreSession() {
    if (!keptSession_.position.isEmpty()) positionEdit_->setText(keptSession_.position);
    positionUndo_.reset(positionEdit_->text());
    updateUndoItems();
    state_.popeyeFields = keptSession_.popeyeFields;
    state_.exportChoices = keptSession_.exportChoices;
    if (keptSession_.window.isEmpty()) return;
    // Wholly on the screen, which may have shrunk since.
    const QRect screen = this->screen()->availableGeometry();
    const QSize size = keptSession_.window.size().boundedTo(screen.size());
    resize(size);
    move(clampToScreen(screen, size, keptSession_.window.topLeft()));
}

} // namespace marlith
