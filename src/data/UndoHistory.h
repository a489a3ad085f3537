#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace marvek {

class clsLevel;

// The edited level's undo and redo steps, each with the name a menu shows
// ("Paint", "Fill"). The grids themselves live in the native undo store,
// which holds one level's snapshots at a time; the names follow it step for
// step, under the same bound.
class UndoHistory {
public:
    // Empties the store and the names: call before another level is edited.
    void clear();
    // The bound of each side; the oldest steps give way.
    void setMaximum(std::int32_t maximum);

    // Snapshots the level's grid before a change called name.
    void record(const clsLevel& level, std::string name);
    // A new name for the newest step done, once it is known what the step
    // did (a stroke goes on after its snapshot); nothing when there is none.
    void renameNewest(std::string name);
    // Each takes back the newest step of its side and returns its name;
    // empty, level unchanged, when there is none.
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

private:
    // True when the oldest name gave way.
    static bool push(std::deque<std::string>& names, std::string name, std::size_t maximum);

    std::deque<std::string> undoNames_;
    std::deque<std::string> redoNames_;
    std::size_t maximum_ = 50;
    bool dropped_ = false;
};

} // namespace marvek
