#include "data/TileGrid.h"

#include <stdexcept>
#include <string>

namespace marvek {

TileGrid::TileGrid(std::int32_t width, std::int32_t height) {
    if (width < 0 || height < 0 || std::int64_t{width} * height > maximumEntries) {
        throw std::length_error("tile grid of " + std::to_string(width) + " x " +
                                std::to_string(height));
    }
    width_ = width;
    height_ = height;
    values_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
}

std::int32_t& TileGrid::at(std::int32_t x, std::int32_t y) {
    return values_[indexOf(x, y)];
}

std::int32_t TileGrid::at(std::int32_t x, std::int32_t y) const {
    return values_[indexOf(x, y)];
}

std::size_t TileGrid::indexOf(std::int32_t x, std::int32_t y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        throw std::out_of_range("tile grid entry (" + std::to_string(x) + ", " + std::to_string(y) +
                                ") outside " + std::to_string(width_) + " x " +
                                std::to_string(height_));
    }
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
}

} // namespace marvek
