#include "editing/position_undo.h"

namespace marlith {

void PositionUndo::reset(const QString& text) {
    steps_.assign(1, Step{text, QString()});
    index_ = 0;
}

bool PositionUndo::record(const QString& text) {
    if (text == current()) return false;
    steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(index_) + 1, steps_.end());
    steps_.push_back(Step{text, QString()});
    // maxSteps changes can be taken back, so maxSteps + 1 texts are kept.
    if (steps_.size() > maxSteps_ + 1) steps_.pop_front();
    index_ = steps_.size() - 1;
    return true;
}

void PositionUndo::replaceCurrent(const QString& text) {
    steps_[index_].text = text;
}

void PositionUndo::mergeLastTwo() {
    if (index_ < 2) return; // the first step has nothing before it but the start
    steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(index_) - 1);
    --index_;
}

void PositionUndo::noteHistoryRow(const QString& row) {
    if (index_ > 0) steps_[index_].historyRow = row;
}

std::optional<PositionUndo::Step> PositionUndo::undo() {
    if (!canUndo()) return std::nullopt;
    return steps_[index_--];
}

std::optional<PositionUndo::Step> PositionUndo::redo() {
    if (!canRedo()) return std::nullopt;
    return steps_[++index_];
}

} // namespace marlith
