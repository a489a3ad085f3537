#include "data/floodFill.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace marvek {
namespace {

std::int32_t wrapped(std::int64_t offset, std::int32_t size) {
    const auto remainder = static_cast<std::int32_t>(offset % size);
    return remainder < 0 ? remainder + size : remainder;
}

// A cell to grow a run from, and the run of the row it was found from
// (that row is done where the two runs overlap).
struct Seed {
    std::int32_t x;
    std::int32_t y;
    std::int32_t fromY;
    std::int32_t fromLeft;
    std::int32_t fromRight;
};

// Cell states while filling, one byte each so that eight are tested at once.
// Reached cells keep bit 0, which is what the region's flags say.
constexpr std::uint8_t other = 0;
constexpr std::uint8_t reached = 1;
constexpr std::uint8_t candidate = 2;
constexpr std::uint64_t ones = 0x0101010101010101ULL;
constexpr std::uint64_t candidates = ones * candidate;

std::uint64_t eightAt(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// True when none of the eight bytes is a candidate.
bool noCandidate(std::uint64_t word) {
    const std::uint64_t equal = word ^ candidates;
    return ((equal - ones) & ~equal & (ones << 7)) == 0;
}

// Pushes a seed for each run of candidates of a row between left and right,
// both included; found is what each seed carries but its x.
void seedRuns(const std::uint8_t* row, std::int32_t left, std::int32_t right, Seed found,
              std::vector<Seed>& stack) {
    bool inRun = false;
    std::int32_t x = left;
    while (x <= right) {
        if (x + 16 <= right + 1) {
            const std::uint64_t first = eightAt(row + x);
            const std::uint64_t second = eightAt(row + x + 8);
            if (first == candidates && second == candidates) {
                if (!inRun) {
                    found.x = x;
                    stack.push_back(found);
                    inRun = true;
                }
                x += 16;
                continue;
            }
            if (noCandidate(first) && noCandidate(second)) {
                inRun = false;
                x += 16;
                continue;
            }
        }
        const bool match = row[x] == candidate;
        if (match && !inRun) {
            found.x = x;
            stack.push_back(found);
        }
        inRun = match;
        ++x;
    }
}

// Scanline fill over the cell states: each seed grows into the whole run of
// its row, and the rows above and below get one seed per run of candidates
// beside it, except where the row it came from is done already. The stack
// holds runs, not cells, so it stays small, and stretches of alike cells
// are passed over sixteen at a time.
std::int64_t scanFill(std::uint8_t* state, std::int32_t width, std::int32_t height,
                      std::int32_t startX, std::int32_t startY) {
    const auto rowOf = [&](std::int32_t y) {
        return state + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    };
    std::vector<Seed> stack;
    stack.reserve(static_cast<std::size_t>(height) * 4);
    // The first seed has no row it came from.
    stack.push_back({startX, startY, startY, 0, -1});
    std::int64_t count = 0;
    while (!stack.empty()) {
        const Seed seed = stack.back();
        stack.pop_back();
        std::uint8_t* row = rowOf(seed.y);
        if (row[seed.x] != candidate) {
            continue;
        }
        std::int32_t left = seed.x;
        while (left > 0 && row[left - 1] == candidate) {
            --left;
        }
        std::int32_t right = seed.x;
        while (right + 16 < width && eightAt(row + right + 1) == candidates &&
               eightAt(row + right + 9) == candidates) {
            right += 16;
        }
        while (right + 1 < width && row[right + 1] == candidate) {
            ++right;
        }
        std::memset(row + left, reached, static_cast<std::size_t>(right - left + 1));
        count += right - left + 1;
        for (const std::int32_t next : {seed.y - 1, seed.y + 1}) {
            if (next < 0 || next >= height) {
                continue;
            }
            const Seed found{0, next, seed.y, left, right};
            if (next != seed.fromY || seed.fromRight < seed.fromLeft) {
                seedRuns(rowOf(next), left, right, found, stack);
                continue;
            }
            // Back toward the row this run was found from: only past its run.
            if (left < seed.fromLeft) {
                seedRuns(rowOf(next), left, std::min(right, seed.fromLeft - 1), found, stack);
            }
            if (right > seed.fromRight) {
                seedRuns(rowOf(next), std::max(left, seed.fromRight + 1), right, found, stack);
            }
        }
    }
    return count;
}

// The pattern's cell as a word over a level cell's bytes, and the mask of
// the bytes it replaces, whatever the byte order.
std::uint32_t wordOf(const Cell& cell) {
    std::uint32_t word = 0;
    std::memcpy(&word, &cell, sizeof word);
    return word;
}

} // namespace

CellRegion::CellRegion(std::int32_t width, std::int32_t height)
    : width_(width), height_(height),
      inside_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0) {}

bool CellRegion::contains(std::int32_t x, std::int32_t y) const noexcept {
    return x >= 0 && y >= 0 && x < width_ && y < height_ && (row(y)[x] & 1) != 0;
}

CellRegion floodRegion(const clsLevel& level, std::int32_t x, std::int32_t y, RegionKey key) {
    const std::span<const Cell> cells = level.cells();
    if (!level.contains(x, y) || cells.size() != static_cast<std::size_t>(level.width) *
                                                     static_cast<std::size_t>(level.height)) {
        return {};
    }
    CellRegion region(level.width, level.height);
    std::uint8_t* state = region.inside_.data();
    const std::size_t size = cells.size();
    const Cell& clicked = level.cellAt(x, y);
    if (key == RegionKey::tile) {
        const std::int16_t wanted = clicked.tile;
        for (std::size_t i = 0; i < size; ++i) {
            state[i] = cells[i].tile == wanted ? candidate : other;
        }
    } else {
        const std::uint8_t wanted = clicked.special;
        for (std::size_t i = 0; i < size; ++i) {
            state[i] = cells[i].special == wanted ? candidate : other;
        }
    }
    region.count_ = scanFill(state, level.width, level.height, x, y);
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
    const std::int32_t width = level.width;
    const std::uint32_t mask = wordOf(
        Cell{-1, specials == PatternSpecials::keep ? std::uint8_t{0} : std::uint8_t{0xFF}, 0});
    // Each pattern row laid out along a whole level row once, so the fill
    // itself is one blend per cell. A pattern taller than the level needs
    // only the rows that level rows take, one per level row.
    const bool slotPerPatternRow = pattern.height() <= level.height;
    const std::int32_t slots = slotPerPatternRow ? pattern.height() : level.height;
    const auto patternRowOf = [&](std::int32_t y) {
        return wrapped(std::int64_t{y} - anchorY, pattern.height());
    };
    std::vector<std::uint32_t> laidOut(static_cast<std::size_t>(slots) *
                                       static_cast<std::size_t>(width));
    const std::int32_t firstColumn = wrapped(-std::int64_t{anchorX}, pattern.width());
    for (std::int32_t slot = 0; slot < slots; ++slot) {
        const std::int32_t py = slotPerPatternRow ? slot : patternRowOf(slot);
        std::uint32_t* out =
            laidOut.data() + static_cast<std::size_t>(slot) * static_cast<std::size_t>(width);
        std::int32_t px = firstColumn;
        for (std::int32_t x = 0; x < width; ++x) {
            Cell cell = pattern.at(px, py);
            if (specials == PatternSpecials::tileDefaults) {
                cell.special = level.getDefaultSpecial(cell.tile);
            }
            cell.spare = 0;
            out[x] = wordOf(cell) & mask;
            if (++px == pattern.width()) {
                px = 0;
            }
        }
    }
    Cell* cells = level.cells().data();
    for (std::int32_t y = 0; y < region.height(); ++y) {
        const std::uint8_t* inside = region.row(y);
        const std::int32_t slot = slotPerPatternRow ? patternRowOf(y) : y;
        const std::uint32_t* from =
            laidOut.data() + static_cast<std::size_t>(slot) * static_cast<std::size_t>(width);
        auto* row = reinterpret_cast<unsigned char*>(cells + static_cast<std::size_t>(y) *
                                                                 static_cast<std::size_t>(width));
        for (std::int32_t x = 0; x < width; ++x) {
            std::uint32_t word = 0;
            std::memcpy(&word, row + std::size_t{4} * static_cast<std::size_t>(x), sizeof word);
            const std::uint32_t select = 0U - (inside[x] & 1U);
            word = (word & ~(mask & select)) | (from[x] & select);
            std::memcpy(row + std::size_t{4} * static_cast<std::size_t>(x), &word, sizeof word);
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
            if ((inside[x] & 1) != 0) {
                row[x].special = id;
            }
        }
    }
    level.modified = true;
}

} // namespace marvek
