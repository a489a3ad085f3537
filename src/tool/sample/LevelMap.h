#pragma once

#include <cstdint>
#include <vector>

namespace marvek::sample {

// A level being drawn: the tile and special of every cell, with the tiles'
// default specials, which placing a tile also puts on its cell.
class LevelMap {
public:
    static constexpr std::int32_t width = 300;
    static constexpr std::int32_t height = 84;

    explicit LevelMap(std::vector<std::uint8_t> defaultSpecials);

    bool contains(std::int32_t x, std::int32_t y) const noexcept;
    // Outside the map: tile -1, special 0.
    std::int16_t tileAt(std::int32_t x, std::int32_t y) const noexcept;
    std::uint8_t specialAt(std::int32_t x, std::int32_t y) const noexcept;

    // Puts the tile and, when the tile has one, its default special.
    void setTile(std::int32_t x, std::int32_t y, std::int16_t tile);
    // Puts a special on an empty cell; false when the cell is taken or outside.
    bool placeSpecial(std::int32_t x, std::int32_t y, std::uint8_t special);

    const std::vector<std::uint8_t>& defaultSpecials() const noexcept { return defaultSpecials_; }

private:
    std::size_t indexOf(std::int32_t x, std::int32_t y) const noexcept;

    std::vector<std::int16_t> tiles_;
    std::vector<std::uint8_t> specials_;
    std::vector<std::uint8_t> defaultSpecials_;
};

} // namespace marvek::sample
