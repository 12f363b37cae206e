// MainWindow's part in the engines: finding them at start, opening their windows,
// and their clean-up at the end.
#include "gui/main_window.h"

#include "engines/crafty.h"
#include "engines/engine_files.h"
#include "gui/book_panel.h"
#include "gui/child_window_place.h"
#include "gui/crafty_window.h"
#include "gui/diagram_view.h"
#include "gui/popeye_window.h"
#include "gui/tool_button.h"
#include "position/piece_listing.h"

#include <QAction>
#include <QLineEdit>

namespace marlith {

namespace {

// The board's pieces by colour and square, named by the dictionary.
PieceLists boardPieces(const AppState& state) {
    const Style& style = state.style;
    return listPieces(state.squares, state.board(), style.PiecesList, style.EnglishNotation,
                      state.fullDictionary, ListingMode::Dictionary);
}

} // namespace

void MainWindow::detectEngines() {
    const QString& folder = state_.programFolder;
    state_.popeyeProgram = findPopeye(folder);
    state_.craftyProgram = findCrafty(folder);
    state_.popeyeLists = {};
    state_.pyDatDictionary.clear();
    if (!state_.popeyeProgram.isEmpty()) {
        // The program folder's own table goes before the one that ships.
        QString tablePath = findPyDat(folder);
        if (tablePath.isEmpty() && !state_.shippedFolder.isEmpty())
            tablePath = findPyDat(state_.shippedFolder);
        PyDat table = readPyDat(tablePath);
        state_.popeyeLists = std::move(table.lists);
        state_.pyDatDictionary = table.dictionary;
    }
    const EngineMenu menu = locateEngines(!state_.popeyeProgram.isEmpty(),
                                          !state_.craftyProgram.isEmpty(), state_.recentEngine);
    state_.recentEngine = menu.recentEngine;
    QAction* py = action(QStringLiteral("popeyeAction"));
    QAction* crafty = action(QStringLiteral("craftyAction"));
    py->setCheckable(true);
    crafty->setCheckable(true);
    py->setEnabled(menu.popeyeEnabled);
    crafty->setEnabled(menu.craftyEnabled);
    py->setChecked(menu.popeyeChecked);
    crafty->setChecked(menu.craftyChecked);
    firstStripButtons_[8]->setVisible(menu.toolShown);
    // A second instance leaves the logs to the first, whose engine may run.
    if (menu.craftyEnabled && !state_.otherInstanceRunning) clearLeftovers(folder);
}

void MainWindow::cleanUpEngines() {
    // A run under way ends with the program, its files with it.
    if (popeyeWindow_) popeyeWindow_->stopRun();
    if (craftyWindow_) craftyWindow_->stopRun();
    if (action(QStringLiteral("craftyAction"))->isEnabled())
        deleteCraftyWorkFiles(state_.programFolder);
}

PopeyeWindow* MainWindow::popeyeWindow() {
    if (!popeyeWindow_) {
        popeyeWindow_ = new PopeyeWindow(state_, this);
        popeyeWindow_->warn = [this](const QString& text) { warn(text); };
        setChildWindow(ChildWindow::Popeye, popeyeWindow_);
        // While the window is open its pieces follow the board (which the
        // position box's change has rebuilt by then).
        connect(positionEdit_, &QLineEdit::textChanged, popeyeWindow_, [this] {
            if (popeyeWindow_->isVisible()) popeyeWindow_->setPieceLists(boardPieces(state_));
        });
        // A game of a book may give the stipulation.
        connect(bookPanel_, &BookPanel::headersShown, popeyeWindow_,
                [this] { popeyeWindow_->takeGameHeaders(bookPanel_->gameHeaders()); });
        if (state_.book.isOpen()) popeyeWindow_->takeGameHeaders(bookPanel_->gameHeaders());
    }
    return popeyeWindow_;
}

CraftyWindow* MainWindow::craftyWindow() {
    if (!craftyWindow_) {
        craftyWindow_ = new CraftyWindow(state_, this);
        craftyWindow_->warn = [this](const QString& text) { warn(text); };
        setChildWindow(ChildWindow::Crafty, craftyWindow_);
    }
    return craftyWindow_;
}

void MainWindow::openPopeye() {
    refreshPosition();
    popeyeWindow()->setPieceLists(boardPieces(state_));
    state_.recentEngine = QStringLiteral("Popeye");
    action(QStringLiteral("craftyAction"))->setChecked(false);
    action(QStringLiteral("popeyeAction"))->setChecked(true);
    placeBesideDiagram(*popeyeWindow_, *this, *diagramView_);
    popeyeWindow_->show();
    popeyeWindow_->raise();
    popeyeWindow_->activateWindow();
}

void MainWindow::openCrafty() {
    refreshPosition();
    const QString fen =
        craftyFen(positionEdit_->text(), state_.style.PiecesList, state_.style.EnglishNotation);
    state_.recentEngine = QStringLiteral("Crafty");
    action(QStringLiteral("craftyAction"))->setChecked(true);
    action(QStringLiteral("popeyeAction"))->setChecked(false);
    craftyWindow()->positionEdit()->setText(fen);
    placeBesideDiagram(*craftyWindow_, *this, *diagramView_);
    craftyWindow_->show();
    craftyWindow_->raise();
    craftyWindow_->activateWindow();
}

} // namespace marlith
