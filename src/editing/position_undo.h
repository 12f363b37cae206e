// The steps of the position that Undo takes back and Redo brings again: each
// step is the position text after one change, and the History row that the
// change recorded, if any, so that undoing it takes the row away too.
#pragma once

#include <QString>
#include <deque>
#include <optional>

namespace marlith {

class PositionUndo {
  public:
    struct Step {
        QString text;
        QString historyRow; // the row the change added to the History list, or empty
    };

    explicit PositionUndo(int maxSteps = 1000) : maxSteps_(maxSteps < 1 ? 1 : maxSteps) {}

    // Forgets every step: `text` is where undo ends.
    void reset(const QString& text);
    // A change to `text`; an equal text is no change. Steps that had been
    // undone are gone; the oldest falls out beyond the limit.
    bool record(const QString& text);
    // The text of the current step, changed without a step of its own (the
    // same position written anew, as a style change does).
    void replaceCurrent(const QString& text);
    // The current step takes the place of the one before it, as when typed
    // text is rewritten in its canonical form.
    void mergeLastTwo();
    // The current step added this History row.
    void noteHistoryRow(const QString& row);

    const QString& current() const { return steps_[index_].text; }
    bool canUndo() const { return index_ > 0; }
    bool canRedo() const { return index_ + 1 < steps_.size(); }

    // The step taken back (its row to remove), the text to show is current().
    std::optional<Step> undo();
    // The step brought again (its row to add back), the text is current().
    std::optional<Step> redo();

  private:
    std::deque<Step> steps_{Step{}};
    size_t index_ = 0;
    size_t maxSteps_;
};

} // namespace marlith
