#pragma once

#include "data/cellRange.h"
#include "data/clsLevel.h"
#include "data/specialChanges.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace marvek {

// The cells one undo step changed, as they are on the side of the step the
// grid is not at. A step either keeps the grid's blocks it is told of (it
// costs what the edit costs) or the whole grid, its size included (a step
// that may resize the level). Swapping puts the kept cells in place and
// keeps what they replaced, so the same step then takes the grid back.
class CellStep {
public:
    // Square blocks of this many cells a side; those at the grid's right and
    // bottom edges may be smaller.
    static constexpr std::int32_t blockSide = 32;

    // A step that keeps only the blocks keep() names, over level's grid.
    static CellStep blocks(const clsLevel& level);
    // A step that keeps level's whole grid now.
    static CellStep whole(const clsLevel& level);

    // Keeps the cells of each block that range reaches, as they are now,
    // unless the step kept that block already. Cells outside the grid are
    // left out; a whole step keeps everything already.
    void keep(const clsLevel& level, const CellRange& range);
    // The step is done: level is as the step left it.
    void close(const clsLevel& level);
    // True when level is the grid this step can be swapped into.
    bool fits(const clsLevel& level) const noexcept;
    // Puts the kept cells in level and keeps those they replaced. Returns the
    // smallest range covering every cell that differed, or nothing when none
    // did; a change of size covers the whole level.
    std::optional<CellRange> swap(clsLevel& level);

    // What the step did to the specials in range: the kept cells against
    // level's now. Meaningful before the step is swapped.
    SpecialChanges specialChanges(const clsLevel& now, const CellRange& range) const;
    // The memory the kept cells take.
    std::size_t bytes() const noexcept { return cells_.size() * sizeof(Cell); }

private:
    struct Size {
        std::int32_t width = 0;
        std::int32_t height = 0;
        bool operator==(const Size&) const = default;
    };
    // A kept block: its number in the grid's row-major order of blocks and
    // where its cells start in cells_.
    struct Block {
        std::int32_t number = 0;
        std::size_t start = 0;
    };

    CellStep(Size size, bool whole) : size_(size), whole_(whole) {}

    std::int32_t blocksAcross() const noexcept;
    // The block's cells in the grid, clipped at its edges.
    CellRange blockCells(std::int32_t number) const noexcept;
    // The kept block with number, or nullptr.
    const Block* findBlock(std::int32_t number) const noexcept;
    // The kept cell at (x, y), which a kept block holds.
    const Cell& keptCell(const Block& block, std::int32_t x, std::int32_t y) const noexcept;
    // Adds what the step did to the specials of the block's cells in range.
    void countBlock(const Block& block, const clsLevel& now, const CellRange& range,
                    SpecialChanges& found) const;
    std::optional<CellRange> swapWhole(clsLevel& level);

    // The grid the step's cells belong to; for a whole step, the one it
    // holds (its size may not be the grid's on the other side).
    Size size_;
    // The size the grid has on the step's other side, once known.
    std::optional<Size> other_;
    bool whole_ = false;
    // Sorted by number.
    std::vector<Block> blocks_;
    std::vector<Cell> cells_;
};

} // namespace marvek
