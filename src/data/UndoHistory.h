#pragma once

#include "native/undoStore.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace marvek {

class clsLevel;

// One level's undo and redo steps, each with the name a menu shows ("Paint",
// "Fill"). Each history keeps its own whole-grid snapshots, so histories of
// several open levels, of any sizes, never meet; the names follow the
// snapshots step for step, under the same bound.
class UndoHistory {
public:
    UndoHistory();

    // Forgets every step: call before another level is edited.
    void clear();
    // The bound of each side; the oldest steps give way.
    void setMaximum(std::int32_t maximum);

    // Snapshots the level's grid before a change called name.
    void record(const clsLevel& level, std::string name);
    // A new name for the newest step done, once it is known what the step
    // did (a stroke goes on after its snapshot); nothing when there is none.
    void renameNewest(std::string name);
    // Each takes back the newest step of its side and returns its name;
    // empty, level unchanged, when there is none (or the level's grid is not
    // the size the step was recorded at).
    std::string undo(clsLevel& level);
    std::string redo(clsLevel& level);

    // The name of the step undo or redo would take back, empty when none.
    std::string nextUndo() const;
    std::string nextRedo() const;

    // Every kept step's name, oldest first: the steps done, then those that
    // redo would bring back, the next one first.
    std::vector<std::string> steps() const;
    // How many of steps() are in the grid now.
    std::size_t applied() const noexcept { return undoNames_.size(); }
    // True once the bound has made the oldest step give way, so that the
    // first kept state is no longer the level as it was opened.
    bool droppedSteps() const noexcept { return dropped_; }

    // The grid's state as a number: each recorded step makes a new one, and
    // undo and redo return to the number the state had before. Two equal
    // numbers mean equal grids (as far as this history changed them).
    std::uint64_t state() const noexcept { return states_.back(); }
    // Remembers the current state as the one last loaded or saved; clear()
    // makes the state at that moment the saved one.
    void markSaved() noexcept { saved_ = state(); }
    // True while the grid is back at the saved state. A saved state whose
    // step gave way to the bound, or that a new step cut off from redo,
    // never comes back.
    bool atSavedStep() const noexcept { return state() == saved_; }

private:
    // True when the oldest name gave way.
    static bool push(std::deque<std::string>& names, std::string name, std::size_t maximum);
    // Keeps states_ (one per state undo can reach, the current last) and
    // redoStates_ in step with the names.
    void trimStates();

    UndoStore store_;
    std::deque<std::string> undoNames_;
    std::deque<std::string> redoNames_;
    std::deque<std::uint64_t> states_;
    std::deque<std::uint64_t> redoStates_;
    std::uint64_t nextState_ = 0;
    std::uint64_t saved_ = 0;
    std::size_t maximum_ = 50;
    bool dropped_ = false;
};

} // namespace marvek
