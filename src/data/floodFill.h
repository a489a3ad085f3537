#pragma once

#include "data/CellBlock.h"
#include "data/clsLevel.h"

#include <cstdint>
#include <vector>

namespace marvek {

// What makes two cells part of one region.
enum class RegionKey { tile, special };

// The cells of a level that a bucket fill reaches: one flag per map cell,
// row by row as the level's cells lie.
class CellRegion {
public:
    CellRegion() = default;
    CellRegion(std::int32_t width, std::int32_t height);

    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    std::int64_t count() const noexcept { return count_; }
    bool empty() const noexcept { return count_ == 0; }
    // False outside the map.
    bool contains(std::int32_t x, std::int32_t y) const noexcept;
    // Flags of one row, width() of them; bit 0 is set for a cell of the
    // region, the other bits mean nothing.
    const std::uint8_t* row(std::int32_t y) const noexcept {
        return inside_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }

private:
    friend CellRegion floodRegion(const clsLevel&, std::int32_t, std::int32_t, RegionKey);

    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int64_t count_ = 0;
    std::vector<std::uint8_t> inside_;
};

// The 4-connected region of cells that share the tile (or the special) of
// cell (x, y); diagonal neighbours are not connected. Empty for a cell
// outside the map.
CellRegion floodRegion(const clsLevel& level, std::int32_t x, std::int32_t y, RegionKey key);

// How a pattern fill treats the specials of its cells.
enum class PatternSpecials {
    keep,         // tiles only
    tileDefaults, // each tile's default special (auto-place)
    carried,      // the pattern's own specials
};

// Fills the region with the pattern repeated, anchored so that the cell
// (anchorX, anchorY) takes the pattern's top-left: cell (x, y) takes
// pattern((x - anchorX) mod w, (y - anchorY) mod h), never a negative index.
void fillRegion(clsLevel& level, const CellRegion& region, const CellBlock& pattern,
                std::int32_t anchorX, std::int32_t anchorY, PatternSpecials specials);
// Puts special id in every cell of the region.
void fillRegionSpecial(clsLevel& level, const CellRegion& region, std::uint8_t id);

} // namespace marvek
