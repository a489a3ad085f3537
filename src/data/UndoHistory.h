#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

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
    // Each takes back the newest step of its side and returns its name;
    // empty, level unchanged, when there is none.
    std::string undo(clsLevel& level);
    std::string redo(clsLevel& level);

    // The name of the step undo or redo would take back, empty when none.
    std::string nextUndo() const;
    std::string nextRedo() const;

private:
    static void push(std::deque<std::string>& names, std::string name, std::size_t maximum);

    std::deque<std::string> undoNames_;
    std::deque<std::string> redoNames_;
    std::size_t maximum_ = 50;
};

} // namespace marvek
