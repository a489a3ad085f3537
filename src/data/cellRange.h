#pragma once

#include "data/clsLevel.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace marvek {

// Cells from (left, top) to (right, bottom), both corners included.
struct CellRange {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    bool operator==(const CellRange&) const = default;

    bool contains(std::int32_t x, std::int32_t y) const noexcept {
        return x >= left && x <= right && y >= top && y <= bottom;
    }
    // True when every cell of inner lies in this range.
    bool covers(const CellRange& inner) const noexcept {
        return inner.left >= left && inner.right <= right && inner.top >= top &&
               inner.bottom <= bottom;
    }
};

// Every cell of the level.
CellRange wholeLevel(const clsLevel& level) noexcept;

// The smallest range holding both.
CellRange unite(const CellRange& a, const CellRange& b) noexcept;
// A range grown by another that may be absent.
CellRange unite(const std::optional<CellRange>& a, const CellRange& b) noexcept;

// What a panel that waits while hidden owes its level: all of it, or the
// cells changed since it last caught up.
class OwedCells {
public:
    struct Debt {
        bool all = false;
        std::optional<CellRange> range;
    };

    void oweAll() noexcept {
        all_ = true;
        range_.reset();
    }
    void owe(const CellRange& range) noexcept {
        if (!all_) {
            range_ = unite(range_, range);
        }
    }
    // What is owed, which is then settled.
    Debt take() noexcept {
        Debt debt{all_, range_};
        settle();
        return debt;
    }
    void settle() noexcept {
        all_ = false;
        range_.reset();
    }

private:
    bool all_ = false;
    std::optional<CellRange> range_;
};

// The smallest range holding every cell that differs between two grids of
// width cells a row; nothing when they are equal. Grids of different
// lengths count as wholly changed.
std::optional<CellRange> changedCells(std::span<const Cell> before, std::span<const Cell> after,
                                      std::int32_t width);
// The same against the level's cells now.
std::optional<CellRange> changedCells(std::span<const Cell> before, const clsLevel& after);

// A copy of a level's cells that tells which of them changed since it last
// looked: for whoever cannot be told by the edit itself, and for tests that
// check what an edit said it changed.
class CellWatch {
public:
    // Takes the level's cells as they are now.
    void reset(const clsLevel& level);
    // The range of cells that changed since the last look, then takes them.
    std::optional<CellRange> takeChanges(const clsLevel& level);

private:
    std::vector<Cell> seen_;
};

} // namespace marvek
