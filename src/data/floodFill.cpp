#include "data/floodFill.h"

#include <stdexcept>

namespace marvek {
namespace {

std::int32_t wrapped(std::int64_t offset, std::int32_t size) {
    const auto remainder = static_cast<std::int32_t>(offset % size);
    return remainder < 0 ? remainder + size : remainder;
}

// A cell's value in the chosen key, widened so both keys compare alike.
template <RegionKey key> std::int32_t keyOf(const Cell& cell) {
    if constexpr (key == RegionKey::tile) {
        return cell.tile;
    } else {
        return cell.special;
    }
}

struct Seed {
    std::int32_t x;
    std::int32_t y;
};

// Scanline fill: each seed grows into the whole run of its row, and the rows
// above and below get one seed per run of matching cells under it. The stack
// holds runs, not cells, so it stays small and never allocates per cell.
template <RegionKey key>
std::int64_t scanFill(const Cell* cells, std::uint8_t* inside, std::int32_t width,
                      std::int32_t height, Seed start) {
    const auto index = [width](std::int32_t x, std::int32_t y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    };
    const std::int32_t wanted = keyOf<key>(cells[index(start.x, start.y)]);
    const auto matches = [&](std::size_t at) {
        return inside[at] == 0 && keyOf<key>(cells[at]) == wanted;
    };
    std::vector<Seed> stack;
    stack.reserve(static_cast<std::size_t>(height) * 4);
    stack.push_back(start);
    std::int64_t count = 0;
    while (!stack.empty()) {
        const Seed seed = stack.back();
        stack.pop_back();
        const std::size_t rowStart = index(0, seed.y);
        if (!matches(rowStart + static_cast<std::size_t>(seed.x))) {
            continue;
        }
        std::int32_t left = seed.x;
        while (left > 0 && matches(rowStart + static_cast<std::size_t>(left - 1))) {
            --left;
        }
        std::int32_t right = seed.x;
        while (right + 1 < width && matches(rowStart + static_cast<std::size_t>(right + 1))) {
            ++right;
        }
        for (std::int32_t x = left; x <= right; ++x) {
            inside[rowStart + static_cast<std::size_t>(x)] = 1;
        }
        count += right - left + 1;
        for (const std::int32_t next : {seed.y - 1, seed.y + 1}) {
            if (next < 0 || next >= height) {
                continue;
            }
            const std::size_t nextStart = index(0, next);
            bool inRun = false;
            for (std::int32_t x = left; x <= right; ++x) {
                const bool match = matches(nextStart + static_cast<std::size_t>(x));
                if (match && !inRun) {
                    stack.push_back({x, next});
                }
                inRun = match;
            }
        }
    }
    return count;
}

} // namespace

CellRegion::CellRegion(std::int32_t width, std::int32_t height)
    : width_(width), height_(height),
      inside_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0) {}

bool CellRegion::contains(std::int32_t x, std::int32_t y) const noexcept {
    return x >= 0 && y >= 0 && x < width_ && y < height_ && row(y)[x] != 0;
}

CellRegion floodRegion(const clsLevel& level, std::int32_t x, std::int32_t y, RegionKey key) {
    if (!level.contains(x, y) ||
        level.cells().size() !=
            static_cast<std::size_t>(level.width) * static_cast<std::size_t>(level.height)) {
        return {};
    }
    CellRegion region(level.width, level.height);
    const Cell* cells = level.cells().data();
    region.count_ = key == RegionKey::tile
                        ? scanFill<RegionKey::tile>(cells, region.inside_.data(), level.width,
                                                    level.height, {x, y})
                        : scanFill<RegionKey::special>(cells, region.inside_.data(), level.width,
                                                       level.height, {x, y});
    return region;
}

void fillRegion(clsLevel& level, const CellRegion& region, const CellBlock& pattern,
                std::int32_t anchorX, std::int32_t anchorY, PatternSpecials specials) {
    if (region.width() != level.width || region.height() != level.height) {
        throw std::invalid_argument("the fill region belongs to a level of another size");
    }
    if (pattern.empty() || region.empty()) {
        return;
    }
    const std::int32_t patternWidth = pattern.width();
    const std::span<Cell> cells = level.cells();
    for (std::int32_t y = 0; y < region.height(); ++y) {
        const std::uint8_t* inside = region.row(y);
        Cell* row =
            cells.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(level.width);
        const Cell* source = &pattern.at(0, wrapped(std::int64_t{y} - anchorY, pattern.height()));
        // The pattern column walks along with x instead of a division per cell.
        std::int32_t px = wrapped(-std::int64_t{anchorX}, patternWidth);
        for (std::int32_t x = 0; x < region.width(); ++x) {
            if (inside[x] != 0) {
                const Cell& from = source[px];
                row[x].tile = from.tile;
                if (specials == PatternSpecials::carried) {
                    row[x].special = from.special;
                } else if (specials == PatternSpecials::tileDefaults) {
                    row[x].special = level.getDefaultSpecial(from.tile);
                }
            }
            if (++px == patternWidth) {
                px = 0;
            }
        }
    }
    level.modified = true;
}

void fillRegionSpecial(clsLevel& level, const CellRegion& region, std::uint8_t id) {
    if (region.width() != level.width || region.height() != level.height) {
        throw std::invalid_argument("the fill region belongs to a level of another size");
    }
    const std::span<Cell> cells = level.cells();
    for (std::int32_t y = 0; y < region.height(); ++y) {
        const std::uint8_t* inside = region.row(y);
        Cell* row =
            cells.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(level.width);
        for (std::int32_t x = 0; x < region.width(); ++x) {
            if (inside[x] != 0) {
                row[x].special = id;
            }
        }
    }
    level.modified = true;
}

} // namespace marvek
