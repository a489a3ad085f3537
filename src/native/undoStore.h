#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace marvek {

// Bounded undo and redo histories of memory snapshots. Each side holds at
// most `maximum` snapshots; when one is full, its oldest snapshot gives way.
class UndoStore {
public:
    static constexpr std::size_t defaultMaximum = 50;

    void setMaximum(std::size_t maximum);
    void clear() noexcept;

    // Records size bytes at cells as the newest undo snapshot; forgets redo.
    void add(const void* cells, std::size_t size);
    // Each restores the newest snapshot of one side over cells and moves what
    // cells held onto the other side. False when that side is empty.
    bool undo(void* cells);
    bool redo(void* cells);
    // The same for a grid of size bytes; false, cells untouched, when the
    // newest snapshot was taken of a grid of another size.
    bool undo(void* cells, std::size_t size);
    bool redo(void* cells, std::size_t size);

    std::size_t undoCount() const noexcept { return undo_.size(); }
    std::size_t redoCount() const noexcept { return redo_.size(); }

private:
    using Snapshot = std::vector<std::uint8_t>;
    using History = std::deque<Snapshot>;

    bool restore(History& from, History& to, void* cells);
    static bool fits(const History& from, std::size_t size) noexcept;
    void push(History& history, Snapshot snapshot);

    History undo_;
    History redo_;
    std::size_t maximum_ = defaultMaximum;
};

} // namespace marvek
