#include "data/UndoHistory.h"

#include "data/clsLevel.h"

#include <algorithm>
#include <utility>

namespace marvek {

UndoHistory::UndoHistory() {
    clear();
}

void UndoHistory::clear() {
    undo_.clear();
    redo_.clear();
    states_.assign(1, nextState_++);
    redoStates_.clear();
    lastChanged_.reset();
    saved_ = state();
    dropped_ = false;
}

void UndoHistory::setMaximum(std::int32_t maximum) {
    maximum_ = static_cast<std::size_t>(std::max(maximum, 0));
    for (Side* side : {&undo_, &redo_}) {
        while (side->size() > maximum_) {
            side->pop_front();
            dropped_ = dropped_ || side == &undo_;
        }
    }
    trimStates();
}

void UndoHistory::record(const clsLevel& level, std::string name) {
    add(level, {std::move(name), CellStep::whole(level)});
}

void UndoHistory::begin(const clsLevel& level, std::string name) {
    add(level, {std::move(name), CellStep::blocks(level)});
}

void UndoHistory::add(const clsLevel& level, Step step) {
    if (!undo_.empty()) {
        undo_.back().cells.close(level);
    }
    redo_.clear();
    dropped_ = push(undo_, std::move(step)) || dropped_;
    states_.push_back(nextState_++);
    redoStates_.clear();
    trimStates();
}

void UndoHistory::keep(const clsLevel& level, const CellRange& range) {
    if (!undo_.empty()) {
        undo_.back().cells.keep(level, range);
    }
}

SpecialChanges UndoHistory::specialChanges(const clsLevel& now, const CellRange& range) const {
    return undo_.empty() ? SpecialChanges{} : undo_.back().cells.specialChanges(now, range);
}

std::optional<std::string> UndoHistory::takeBack(Side& from, Side& to, clsLevel& level) {
    lastChanged_.reset();
    if (from.empty() || !from.back().cells.fits(level)) {
        return std::nullopt;
    }
    lastChanged_ = from.back().cells.swap(level);
    Step step = std::move(from.back());
    from.pop_back();
    std::string name = step.name;
    const bool dropped = push(to, std::move(step));
    dropped_ = dropped_ || (dropped && &to == &undo_);
    return name;
}

std::string UndoHistory::undo(clsLevel& level) {
    std::optional<std::string> name = takeBack(undo_, redo_, level);
    if (name) {
        redoStates_.push_back(states_.back());
        states_.pop_back();
        trimStates();
    }
    return name.value_or(std::string());
}

std::string UndoHistory::redo(clsLevel& level) {
    std::optional<std::string> name = takeBack(redo_, undo_, level);
    if (name) {
        states_.push_back(redoStates_.back());
        redoStates_.pop_back();
        trimStates();
    }
    return name.value_or(std::string());
}

std::string UndoHistory::nextUndo() const {
    return undo_.empty() ? std::string() : undo_.back().name;
}

std::string UndoHistory::nextRedo() const {
    return redo_.empty() ? std::string() : redo_.back().name;
}

std::vector<std::string> UndoHistory::steps() const {
    std::vector<std::string> all;
    all.reserve(size());
    for (const Step& step : undo_) {
        all.push_back(step.name);
    }
    for (auto step = redo_.rbegin(); step != redo_.rend(); ++step) {
        all.push_back(step->name);
    }
    return all;
}

std::size_t UndoHistory::bytes() const noexcept {
    std::size_t total = 0;
    for (const Side* side : {&undo_, &redo_}) {
        for (const Step& step : *side) {
            total += step.cells.bytes();
        }
    }
    return total;
}

void UndoHistory::renameNewest(std::string name) {
    if (!undo_.empty()) {
        undo_.back().name = std::move(name);
    }
}

bool UndoHistory::push(Side& side, Step step) const {
    if (maximum_ == 0) {
        return true;
    }
    side.push_back(std::move(step));
    if (side.size() > maximum_) {
        side.pop_front();
        return true;
    }
    return false;
}

void UndoHistory::trimStates() {
    while (states_.size() > undo_.size() + 1) {
        states_.pop_front();
    }
    while (redoStates_.size() > redo_.size()) {
        redoStates_.pop_front();
    }
}

} // namespace marvek
