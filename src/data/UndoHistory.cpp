#include "data/UndoHistory.h"

#include "data/clsLevel.h"
#include "native/marvek.h"

#include <algorithm>
#include <utility>

namespace marvek {

void UndoHistory::clear() {
    undoInit();
    undoNames_.clear();
    redoNames_.clear();
}

void UndoHistory::setMaximum(std::int32_t maximum) {
    maximum_ = static_cast<std::size_t>(std::max(maximum, 0));
    undoSetMax(static_cast<std::int32_t>(maximum_));
    for (auto* names : {&undoNames_, &redoNames_}) {
        while (names->size() > maximum_) {
            names->pop_front();
        }
    }
}

void UndoHistory::record(const clsLevel& level, std::string name) {
    level.addUndo();
    redoNames_.clear();
    push(undoNames_, std::move(name), maximum_);
}

std::string UndoHistory::undo(clsLevel& level) {
    if (undoNames_.empty() || !level.restoreUndo()) {
        return {};
    }
    std::string name = std::move(undoNames_.back());
    undoNames_.pop_back();
    push(redoNames_, name, maximum_);
    return name;
}

std::string UndoHistory::redo(clsLevel& level) {
    if (redoNames_.empty() || !level.restoreRedo()) {
        return {};
    }
    std::string name = std::move(redoNames_.back());
    redoNames_.pop_back();
    push(undoNames_, name, maximum_);
    return name;
}

std::string UndoHistory::nextUndo() const {
    return undoNames_.empty() ? std::string() : undoNames_.back();
}

std::string UndoHistory::nextRedo() const {
    return redoNames_.empty() ? std::string() : redoNames_.back();
}

void UndoHistory::push(std::deque<std::string>& names, std::string name, std::size_t maximum) {
    if (maximum == 0) {
        return;
    }
    names.push_back(std::move(name));
    if (names.size() > maximum) {
        names.pop_front();
    }
}

} // namespace marvek
