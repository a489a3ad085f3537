#include "data/CellStep.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace marvek {
namespace {

// The cells of range that lie in a width x height grid; nothing when none do.
std::optional<CellRange> clipped(const CellRange& range, std::int32_t width,
                                 std::int32_t height) noexcept {
    const CellRange inside{std::max(range.left, 0), std::max(range.top, 0),
                           std::min(range.right, width - 1), std::min(range.bottom, height - 1)};
    if (inside.left > inside.right || inside.top > inside.bottom) {
        return std::nullopt;
    }
    return inside;
}

CellRange intersect(const CellRange& a, const CellRange& b) noexcept {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

std::int32_t columns(const CellRange& range) noexcept {
    return range.right - range.left + 1;
}

// Swaps the cells of one row between the grid and a kept copy, and widens
// found by those that differed.
void swapRow(Cell* grid, Cell* kept, std::int32_t count, std::int32_t left, std::int32_t y,
             std::optional<CellRange>& found) {
    Cell* const end = grid + count;
    const auto first = std::mismatch(grid, end, kept);
    if (first.first == end) {
        return;
    }
    const auto last =
        std::mismatch(std::make_reverse_iterator(end), std::make_reverse_iterator(first.first),
                      std::make_reverse_iterator(kept + count));
    Cell* const stop = last.first.base();
    std::swap_ranges(first.first, stop, first.second);
    const auto firstX = left + static_cast<std::int32_t>(first.first - grid);
    const auto lastX = left + static_cast<std::int32_t>(stop - grid) - 1;
    found = unite(found, CellRange{firstX, y, lastX, y});
}

void countChange(SpecialChanges& found, std::uint8_t was, std::uint8_t is) noexcept {
    if (was != 0 && was != is) {
        ++(is == 0 ? found.removed : found.replaced);
    }
}

} // namespace

CellStep CellStep::blocks(const clsLevel& level) {
    return CellStep({level.width, level.height}, false);
}

CellStep CellStep::whole(const clsLevel& level) {
    CellStep step({level.width, level.height}, true);
    step.cells_.assign(level.cells().begin(), level.cells().end());
    return step;
}

std::int32_t CellStep::blocksAcross() const noexcept {
    return (size_.width + blockSide - 1) / blockSide;
}

CellRange CellStep::blockCells(std::int32_t number) const noexcept {
    const std::int32_t left = (number % blocksAcross()) * blockSide;
    const std::int32_t top = (number / blocksAcross()) * blockSide;
    return {left, top, std::min(left + blockSide, size_.width) - 1,
            std::min(top + blockSide, size_.height) - 1};
}

const CellStep::Block* CellStep::findBlock(std::int32_t number) const noexcept {
    const auto found = std::ranges::lower_bound(blocks_, number, {}, &Block::number);
    return found != blocks_.end() && found->number == number ? &*found : nullptr;
}

const Cell& CellStep::keptCell(const Block& block, std::int32_t x, std::int32_t y) const noexcept {
    const CellRange cells = blockCells(block.number);
    const auto offset =
        std::size_t(y - cells.top) * std::size_t(columns(cells)) + std::size_t(x - cells.left);
    return cells_[block.start + offset];
}

void CellStep::keep(const clsLevel& level, const CellRange& range) {
    const auto inside = clipped(range, size_.width, size_.height);
    if (whole_ || !inside || !fits(level)) {
        return;
    }
    const std::int32_t across = blocksAcross();
    std::vector<std::int32_t> added;
    for (std::int32_t row = inside->top / blockSide; row <= inside->bottom / blockSide; ++row) {
        for (std::int32_t column = inside->left / blockSide; column <= inside->right / blockSide;
             ++column) {
            if (findBlock(row * across + column) == nullptr) {
                added.push_back(row * across + column);
            }
        }
    }
    cells_.reserve(cells_.size() + added.size() * std::size_t(blockSide * blockSide));
    const auto grid = level.cells();
    for (const std::int32_t number : added) {
        const CellRange cells = blockCells(number);
        const Block block{number, cells_.size()};
        for (std::int32_t y = cells.top; y <= cells.bottom; ++y) {
            const auto from =
                grid.begin() +
                std::ptrdiff_t(std::size_t(y) * std::size_t(size_.width) + std::size_t(cells.left));
            cells_.insert(cells_.end(), from, from + columns(cells));
        }
        blocks_.insert(std::ranges::upper_bound(blocks_, number, {}, &Block::number), block);
    }
}

void CellStep::close(const clsLevel& level) {
    if (whole_ && !other_) {
        other_ = Size{level.width, level.height};
    }
}

bool CellStep::fits(const clsLevel& level) const noexcept {
    const Size size{level.width, level.height};
    const bool consistent =
        level.cells().size() == std::size_t(size.width) * std::size_t(size.height);
    if (whole_) {
        return consistent && (!other_ || *other_ == size);
    }
    return consistent && size == size_;
}

std::optional<CellRange> CellStep::swap(clsLevel& level) {
    if (whole_) {
        return swapWhole(level);
    }
    std::optional<CellRange> found;
    Cell* const grid = level.cells().data();
    for (const Block& block : blocks_) {
        const CellRange cells = blockCells(block.number);
        Cell* kept = cells_.data() + block.start;
        for (std::int32_t y = cells.top; y <= cells.bottom; ++y) {
            swapRow(grid + std::size_t(y) * std::size_t(size_.width) + std::size_t(cells.left),
                    kept, columns(cells), cells.left, y, found);
            kept += columns(cells);
        }
    }
    return found;
}

std::optional<CellRange> CellStep::swapWhole(clsLevel& level) {
    const Size now{level.width, level.height};
    if (now == size_) {
        std::optional<CellRange> found;
        Cell* const grid = level.cells().data();
        for (std::int32_t y = 0; y < size_.height; ++y) {
            const std::size_t start = std::size_t(y) * std::size_t(size_.width);
            swapRow(grid + start, cells_.data() + start, size_.width, 0, y, found);
        }
        other_ = now;
        return found;
    }
    std::vector<Cell> replaced(level.cells().begin(), level.cells().end());
    level.width = size_.width;
    level.height = size_.height;
    level.resizeCells();
    std::ranges::copy(cells_, level.cells().begin());
    cells_ = std::move(replaced);
    other_ = size_;
    size_ = now;
    return wholeLevel(level);
}

void CellStep::countBlock(const Block& block, const clsLevel& now, const CellRange& range,
                          SpecialChanges& found) const {
    const CellRange cells = intersect(blockCells(block.number), range);
    const auto grid = now.cells();
    for (std::int32_t y = cells.top; y <= cells.bottom; ++y) {
        for (std::int32_t x = cells.left; x <= cells.right; ++x) {
            const std::size_t at = std::size_t(y) * std::size_t(size_.width) + std::size_t(x);
            countChange(found, keptCell(block, x, y).special, grid[at].special);
        }
    }
}

SpecialChanges CellStep::specialChanges(const clsLevel& now, const CellRange& range) const {
    SpecialChanges found;
    const auto inside = clipped(range, size_.width, size_.height);
    if (!inside || !(Size{now.width, now.height} == size_)) {
        return found;
    }
    if (whole_) {
        for (std::int32_t y = inside->top; y <= inside->bottom; ++y) {
            for (std::int32_t x = inside->left; x <= inside->right; ++x) {
                const std::size_t at = std::size_t(y) * std::size_t(size_.width) + std::size_t(x);
                countChange(found, cells_[at].special, now.cells()[at].special);
            }
        }
        return found;
    }
    const std::int32_t across = blocksAcross();
    for (std::int32_t row = inside->top / blockSide; row <= inside->bottom / blockSide; ++row) {
        for (std::int32_t column = inside->left / blockSide; column <= inside->right / blockSide;
             ++column) {
            if (const Block* block = findBlock(row * across + column)) {
                countBlock(*block, now, *inside, found);
            }
        }
    }
    return found;
}

} // namespace marvek
