#include "data/UndoHistory.h"

#include "data/clsLevel.h"

#include <algorithm>
#include <utility>

namespace marvek {

UndoHistory::UndoHistory() {
    clear();
}

void UndoHistory::clear() {
    store_.clear();
    undoNames_.clear();
    redoNames_.clear();
    states_.assign(1, nextState_++);
    redoStates_.clear();
    saved_ = state();
    dropped_ = false;
}

void UndoHistory::setMaximum(std::int32_t maximum) {
    maximum_ = static_cast<std::size_t>(std::max(maximum, 0));
    store_.setMaximum(maximum_);
    for (auto* names : {&undoNames_, &redoNames_}) {
        while (names->size() > maximum_) {
            names->pop_front();
            dropped_ = dropped_ || names == &undoNames_;
        }
    }
    trimStates();
}

void UndoHistory::record(const clsLevel& level, std::string name) {
    store_.add(level.cells().data(), level.cellBytes());
    redoNames_.clear();
    dropped_ = push(undoNames_, std::move(name), maximum_) || dropped_;
    states_.push_back(nextState_++);
    redoStates_.clear();
    trimStates();
}

std::string UndoHistory::undo(clsLevel& level) {
    if (undoNames_.empty() || !store_.undo(level.cells().data(), level.cellBytes())) {
        return {};
    }
    std::string name = std::move(undoNames_.back());
    undoNames_.pop_back();
    push(redoNames_, name, maximum_);
    redoStates_.push_back(states_.back());
    states_.pop_back();
    trimStates();
    return name;
}

std::string UndoHistory::redo(clsLevel& level) {
    if (redoNames_.empty() || !store_.redo(level.cells().data(), level.cellBytes())) {
        return {};
    }
    std::string name = std::move(redoNames_.back());
    redoNames_.pop_back();
    dropped_ = push(undoNames_, name, maximum_) || dropped_;
    states_.push_back(redoStates_.back());
    redoStates_.pop_back();
    trimStates();
    return name;
}

std::string UndoHistory::nextUndo() const {
    return undoNames_.empty() ? std::string() : undoNames_.back();
}

std::string UndoHistory::nextRedo() const {
    return redoNames_.empty() ? std::string() : redoNames_.back();
}

std::vector<std::string> UndoHistory::steps() const {
    std::vector<std::string> all(undoNames_.begin(), undoNames_.end());
    all.insert(all.end(), redoNames_.rbegin(), redoNames_.rend());
    return all;
}

void UndoHistory::renameNewest(std::string name) {
    if (!undoNames_.empty()) {
        undoNames_.back() = std::move(name);
    }
}

bool UndoHistory::push(std::deque<std::string>& names, std::string name, std::size_t maximum) {
    if (maximum == 0) {
        return true;
    }
    names.push_back(std::move(name));
    if (names.size() > maximum) {
        names.pop_front();
        return true;
    }
    return false;
}

void UndoHistory::trimStates() {
    while (states_.size() > undoNames_.size() + 1) {
        states_.pop_front();
    }
    while (redoStates_.size() > redoNames_.size()) {
        redoStates_.pop_front();
    }
}

} // namespace marvek
