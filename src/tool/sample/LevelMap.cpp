#include "tool/sample/LevelMap.h"

#include <utility>

namespace marvek::sample {

LevelMap::LevelMap(std::vector<std::uint8_t> defaultSpecials)
    : tiles_(static_cast<std::size_t>(width * height), 0),
      specials_(static_cast<std::size_t>(width * height), 0),
      defaultSpecials_(std::move(defaultSpecials)) {}

bool LevelMap::contains(std::int32_t x, std::int32_t y) const noexcept {
    return x >= 0 && y >= 0 && x < width && y < height;
}

std::size_t LevelMap::indexOf(std::int32_t x, std::int32_t y) const noexcept {
    return static_cast<std::size_t>(y * width + x);
}

std::int16_t LevelMap::tileAt(std::int32_t x, std::int32_t y) const noexcept {
    return contains(x, y) ? tiles_[indexOf(x, y)] : std::int16_t{-1};
}

std::uint8_t LevelMap::specialAt(std::int32_t x, std::int32_t y) const noexcept {
    return contains(x, y) ? specials_[indexOf(x, y)] : std::uint8_t{0};
}

void LevelMap::setTile(std::int32_t x, std::int32_t y, std::int16_t tile) {
    if (!contains(x, y)) {
        return;
    }
    tiles_[indexOf(x, y)] = tile;
    const auto index = static_cast<std::size_t>(tile);
    if (index < defaultSpecials_.size() && defaultSpecials_[index] != 0) {
        specials_[indexOf(x, y)] = defaultSpecials_[index];
    }
}

bool LevelMap::placeSpecial(std::int32_t x, std::int32_t y, std::uint8_t special) {
    if (!contains(x, y) || specials_[indexOf(x, y)] != 0) {
        return false;
    }
    specials_[indexOf(x, y)] = special;
    return true;
}

} // namespace marvek::sample
