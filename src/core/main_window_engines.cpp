// Form1's part in the engines: finding them at start, opening their windows,
// and their clean-up at the end.
#include "core/main_window.h"

#include "core/tool_image.h"
#include "engines/crafty.h"
#include "engines/crafty_window.h"
#include "engines/engine_files.h"
#include "engines/popeye_window.h"
#include "position/piece_listing.h"

#include <QAction>
#include <QLineEdit>

namespace marlith {

void Form1::DetectEngines() {
    const QString& folder = state_.programFolder;
    state_.popeyeProgram = FindPopeye(folder);
    state_.craftyProgram = FindCrafty(folder);
    state_.pyDatLists = {};
    state_.pyDatDictionary.clear();
    if (!state_.popeyeProgram.isEmpty()) {
        PyDat table = ReadPyDat(FindPyDat(folder));
        state_.pyDatLists = std::move(table.lists);
        state_.pyDatDictionary = table.dictionary;
    }
    const EngineMenu menu = LocateEngines(!state_.popeyeProgram.isEmpty(),
                                          !state_.craftyProgram.isEmpty(), state_.recentEngine);
    state_.recentEngine = menu.recentEngine;
    QAction* py = action(QStringLiteral("MNpy"));
    QAction* crafty = action(QStringLiteral("MNCrafty"));
    py->setCheckable(true);
    crafty->setCheckable(true);
    py->setEnabled(menu.pyEnabled);
    crafty->setEnabled(menu.craftyEnabled);
    py->setChecked(menu.pyChecked);
    crafty->setChecked(menu.craftyChecked);
    image4_[8]->setVisible(menu.toolShown);
    // A second instance leaves the logs to the first, whose engine may run.
    if (menu.craftyEnabled && state_.prevInstanceFlag == 0) ClearLeftovers(folder);
}

void Form1::EngineCleanUp() {
    if (action(QStringLiteral("MNCrafty"))->isEnabled())
        DeleteCraftyWorkFiles(state_.programFolder);
}

Form8* Form1::form8() {
    if (!form8_) {
        form8_ = new Form8(state_, this);
        form8_->warn = [this](const QString& text) { warn(text); };
        setChildWindow(8, form8_);
    }
    return form8_;
}

Form9* Form1::form9() {
    if (!form9_) {
        form9_ = new Form9(state_, this);
        form9_->warn = [this](const QString& text) { warn(text); };
        setChildWindow(9, form9_);
    }
    return form9_;
}

void Form1::MNpy_Click() {
    MNRefresh_Click();
    const Style& style = state_.style;
    form8()->SetPieceLists(FEN2ALG(state_.vet, state_.board(), style.PiecesList,
                                   style.EnglishNotation, state_.fullDictionary,
                                   ListingMode::Dictionary));
    state_.recentEngine = QStringLiteral("Popeye");
    action(QStringLiteral("MNCrafty"))->setChecked(false);
    action(QStringLiteral("MNpy"))->setChecked(true);
    form8_->show();
    form8_->raise();
    form8_->activateWindow();
}

void Form1::MNCrafty_Click() {
    MNRefresh_Click();
    const QString fen =
        CraftyFen(text1_->text(), state_.style.PiecesList, state_.style.EnglishNotation);
    state_.recentEngine = QStringLiteral("Crafty");
    action(QStringLiteral("MNCrafty"))->setChecked(true);
    action(QStringLiteral("MNpy"))->setChecked(false);
    form9()->text1()->setText(fen);
    form9_->show();
    form9_->raise();
    form9_->activateWindow();
}

} // namespace marlith
