#include "data/cellRange.h"

#include <algorithm>

namespace marvek {
namespace {

bool sameCell(const Cell& a, const Cell& b) noexcept {
    return a.tile == b.tile && a.special == b.special;
}

// The columns that differ anywhere in rows top to bottom.
std::pair<std::int32_t, std::int32_t> changedColumns(std::span<const Cell> before,
                                                     std::span<const Cell> after,
                                                     std::int32_t width, std::int32_t top,
                                                     std::int32_t bottom) {
    std::int32_t left = width - 1;
    std::int32_t right = 0;
    for (std::int32_t y = top; y <= bottom; ++y) {
        const std::size_t rowStart = std::size_t(y) * std::size_t(width);
        // Only columns outside those found so far can widen the range.
        for (std::int32_t x = 0; x < left; ++x) {
            if (!sameCell(before[rowStart + std::size_t(x)], after[rowStart + std::size_t(x)])) {
                left = x;
                break;
            }
        }
        for (std::int32_t x = width - 1; x > right; --x) {
            if (!sameCell(before[rowStart + std::size_t(x)], after[rowStart + std::size_t(x)])) {
                right = x;
                break;
            }
        }
    }
    return {left, right};
}

} // namespace

CellRange wholeLevel(const clsLevel& level) noexcept {
    return {0, 0, level.width - 1, level.height - 1};
}

CellRange unite(const CellRange& a, const CellRange& b) noexcept {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

CellRange unite(const std::optional<CellRange>& a, const CellRange& b) noexcept {
    return a ? unite(*a, b) : b;
}

std::optional<CellRange> changedCells(std::span<const Cell> before, std::span<const Cell> after,
                                      std::int32_t width) {
    const std::int32_t columns = std::max(width, 1);
    const auto rows = static_cast<std::int32_t>(after.size() / std::size_t(columns));
    if (before.size() != after.size() || after.size() % std::size_t(columns) != 0) {
        return CellRange{0, 0, columns - 1, std::max(rows, 1) - 1};
    }
    const auto first = std::mismatch(before.begin(), before.end(), after.begin(), sameCell);
    if (first.first == before.end()) {
        return std::nullopt;
    }
    const auto last = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), sameCell);
    const auto firstIndex = std::size_t(first.first - before.begin());
    const auto lastIndex = std::size_t(before.rend() - last.first) - 1;
    const auto top = static_cast<std::int32_t>(firstIndex / std::size_t(columns));
    const auto bottom = static_cast<std::int32_t>(lastIndex / std::size_t(columns));
    if (top == bottom) {
        return CellRange{static_cast<std::int32_t>(firstIndex % std::size_t(columns)), top,
                         static_cast<std::int32_t>(lastIndex % std::size_t(columns)), bottom};
    }
    const auto [left, right] = changedColumns(before, after, columns, top, bottom);
    return CellRange{left, top, right, bottom};
}

std::optional<CellRange> changedCells(std::span<const Cell> before, const clsLevel& after) {
    if (before.size() != after.cells().size()) {
        return wholeLevel(after);
    }
    return changedCells(before, after.cells(), after.width);
}

void CellWatch::reset(const clsLevel& level) {
    seen_.assign(level.cells().begin(), level.cells().end());
}

std::optional<CellRange> CellWatch::takeChanges(const clsLevel& level) {
    const auto changed = changedCells(seen_, level);
    if (!changed) {
        return changed;
    }
    if (seen_.size() != level.cells().size()) {
        reset(level);
        return changed;
    }
    const auto width = std::size_t(level.width);
    for (std::int32_t y = changed->top; y <= changed->bottom; ++y) {
        const std::size_t start = std::size_t(y) * width + std::size_t(changed->left);
        const std::size_t count = std::size_t(changed->right - changed->left) + 1;
        std::copy_n(level.cells().begin() + std::ptrdiff_t(start), count,
                    seen_.begin() + std::ptrdiff_t(start));
    }
    return changed;
}

} // namespace marvek
