#pragma once

#include "data/CellStep.h"
#include "data/cellRange.h"
#include "data/specialChanges.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace marvek {

class clsLevel;

// One level's undo and redo steps, each with the name a menu shows ("Paint",
// "Fill"). A step keeps the cells it changed as they were before it: the
// blocks of the grid its edits named, or the whole grid for a step that
// may change the level's size. Each history keeps its own steps, so
// histories of several open levels, of any sizes, never meet.
class UndoHistory {
public:
    UndoHistory();

    // Forgets every step: call before another level is edited.
    void clear();
    // The bound of each side; the oldest steps give way.
    void setMaximum(std::int32_t maximum);

    // Keeps the level's whole grid, its size included, before a change
    // called name.
    void record(const clsLevel& level, std::string name);
    // Begins a step called name that keeps only what keep() names.
    void begin(const clsLevel& level, std::string name);
    // The cells of range as they are before the newest step done changes
    // them: call before each change of a begun step.
    void keep(const clsLevel& level, const CellRange& range);
    // What the newest step done did to the specials in range so far.
    SpecialChanges specialChanges(const clsLevel& now, const CellRange& range) const;
    // A new name for the newest step done, once it is known what the step
    // did (a stroke goes on after its snapshot); nothing when there is none.
    void renameNewest(std::string name);
    // Each takes back the newest step of its side and returns its name;
    // empty, level unchanged, when there is none (or the level's grid is not
    // the size the step was recorded at).
    std::string undo(clsLevel& level);
    std::string redo(clsLevel& level);
    // The smallest range covering every cell the last undo or redo changed;
    // nothing when it changed none.
    const std::optional<CellRange>& lastChanged() const noexcept { return lastChanged_; }

    // The name of the step undo or redo would take back, empty when none.
    std::string nextUndo() const;
    std::string nextRedo() const;

    // Every kept step's name, oldest first: the steps done, then those that
    // redo would bring back, the next one first.
    std::vector<std::string> steps() const;
    // How many steps are kept, and how many of them are in the grid now.
    std::size_t size() const noexcept { return undo_.size() + redo_.size(); }
    std::size_t applied() const noexcept { return undo_.size(); }
    // The memory the kept cells take.
    std::size_t bytes() const noexcept;
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
    struct Step {
        std::string name;
        CellStep cells;
    };
    using Side = std::deque<Step>;

    void add(const clsLevel& level, Step step);
    // Moves the newest step of from onto to, swapping its cells with the
    // level's; its name, or nothing when it does not fit.
    std::optional<std::string> takeBack(Side& from, Side& to, clsLevel& level);
    // True when the oldest step gave way.
    bool push(Side& side, Step step) const;
    // Keeps states_ (one per state undo can reach, the current last) and
    // redoStates_ in step with the steps.
    void trimStates();

    Side undo_;
    Side redo_;
    std::deque<std::uint64_t> states_;
    std::deque<std::uint64_t> redoStates_;
    std::optional<CellRange> lastChanged_;
    std::uint64_t nextState_ = 0;
    std::uint64_t saved_ = 0;
    std::size_t maximum_ = 50;
    bool dropped_ = false;
};

} // namespace marvek
