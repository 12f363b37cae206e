// The Popeye window. Its fields make the problem file; a run starts
// the solver and a timer waits for the protocol, which fills the list.
#pragma once

#include "engines/popeye.h"

#include "gui/engine_window.h"

#include <QElapsedTimer>
#include <array>

class QComboBox;
class QLabel;
class QPushButton;

namespace marlith {

struct PieceLists;

class PopeyeWindow : public EngineWindow {
    Q_OBJECT
  public:
    PopeyeWindow(AppState& state, QWidget* parent);

    // The piece lists of the board go into the boxes of the pieces.
    void setPieceLists(const PieceLists& lists);
    // A game's "[Stipulation]" header fills the stipulation and the moves.
    void takeGameHeaders(const QStringList& headers);

    void clearAll();
    void solve();
    void setParam(size_t box);
    void chooseEntry(size_t box);
    void tick() override;
    void stopRun() override;

    int16_t running() const { return running_; }
    // The box of this number, as PopeyeFields counts them.
    QComboBox* paramBox(int index) const { return boxes_.box(static_cast<size_t>(index)); }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void focusChanged() override;
    void fitCaptions();
    // The protocol's new rows join the list, which keeps a bounded tail.
    void showProtocolRows();
    // The run's work files go.
    void removeWorkFiles();
    // The timer runs while there is something to do, and no longer.
    void wake();

    PopeyeBoxes<QLabel*> labels_{};
    PopeyeBoxes<QComboBox*> boxes_{};
    QPushButton* clearAllButton_ = nullptr;
    QPushButton* solveButton_ = nullptr;
    QPushButton* closeButton_ = nullptr;
    QPushButton* copySolutionButton_ = nullptr;
    QPushButton* printSolutionButton_ = nullptr;
    int16_t running_ = 0;
    int16_t pendingBox_ = -1;
    // Pixels by which the captions pushed the rest of the window right.
    int extraWidth_ = 0;
    // The list of box i is open: only then is its "activated" a choice from
    // the list; otherwise it is typed text, taken as typed.
    std::array<bool, PopeyeFields::kCount> listOpen_{};
    PopeyeRun run_;
    // The list shows the protocol (no longer "Calculating..."), and says
    // that its first rows were left out.
    bool protocolShown_ = false;
    bool cutNoteShown_ = false;
    // Since the rows last joined the list.
    QElapsedTimer rowsShown_;
};

} // namespace marlith
