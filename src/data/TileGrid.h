#pragma once

#include <cstdint>
#include <vector>

namespace marvek {

// A small rectangle of tile numbers indexed (x, y): a brush pattern, a select
// map, tiles copied out of a level.
class TileGrid {
public:
    // Keeps a runaway selection from asking for gigabytes.
    static constexpr std::int64_t maximumEntries = std::int64_t{1} << 24;

    TileGrid() = default;
    // All entries 0. Throws std::length_error for a negative size or more
    // than maximumEntries entries.
    TileGrid(std::int32_t width, std::int32_t height);

    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    bool empty() const noexcept { return values_.empty(); }

    // Throw std::out_of_range outside the grid.
    std::int32_t& at(std::int32_t x, std::int32_t y);
    std::int32_t at(std::int32_t x, std::int32_t y) const;

private:
    std::size_t indexOf(std::int32_t x, std::int32_t y) const;

    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::vector<std::int32_t> values_;
};

} // namespace marvek
