#include "data/clsLevel.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace marvek {

bool clsLevel::hasSensibleSize() const noexcept {
    return width >= 1 && height >= 1 && static_cast<std::int64_t>(width) * height <= maximumCells;
}

bool clsLevel::contains(std::int32_t x, std::int32_t y) const noexcept {
    if (x < 0 || y < 0 || x >= width || y >= height) {
        return false;
    }
    const auto index =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    return index < cells_.size();
}

Cell& clsLevel::cellAt(std::int32_t x, std::int32_t y) {
    return const_cast<Cell&>(std::as_const(*this).cellAt(x, y));
}

const Cell& clsLevel::cellAt(std::int32_t x, std::int32_t y) const {
    if (!contains(x, y)) {
        throw std::out_of_range("level cell (" + std::to_string(x) + ", " + std::to_string(y) +
                                ") outside the map");
    }
    return cells_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
}

void clsLevel::resizeCells() {
    if (!hasSensibleSize()) {
        throw std::length_error("level size " + std::to_string(width) + " x " +
                                std::to_string(height) + " is not usable");
    }
    cells_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), Cell{});
}

void clsLevel::setCcclData(std::span<const std::uint8_t, ccclSize> data) {
    std::copy(data.begin(), data.end(), ccclData_.begin());
}

} // namespace marvek
