#include "data/clsLevel.h"

#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace marvek {
namespace {

// Calls visit(x, y, dx, dy) for each cell the rectangle walk reaches, with
// (dx, dy) the cell's place counted from the rectangle's corner. Clamping the
// ranges first visits exactly the cells of the row-by-row walk: rows outside
// the map are skipped, and a row stops at its first column outside.
template <typename Visit>
void walkRectangle(std::int32_t mapWidth, std::int32_t mapHeight, const clsRectangle& rectangle,
                   Visit visit) {
    const std::int64_t left = rectangle.left;
    const std::int64_t top = rectangle.top;
    if (left < 0 || left >= mapWidth) {
        return;
    }
    const std::int64_t right = std::min<std::int64_t>(left + rectangle.width, mapWidth - 1);
    const std::int64_t bottom = std::min<std::int64_t>(top + rectangle.height, mapHeight - 1);
    for (std::int64_t y = std::max<std::int64_t>(top, 0); y <= bottom; ++y) {
        for (std::int64_t x = left; x <= right; ++x) {
            visit(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y), x - left, y - top);
        }
    }
}

// One more than a rectangle's width or height: the cells it covers.
std::int32_t cellsCovered(std::int32_t span) {
    const std::int64_t cells = std::int64_t{span} + 1;
    if (cells > std::numeric_limits<std::int32_t>::max()) {
        throw std::length_error("rectangle too large to copy");
    }
    return static_cast<std::int32_t>(std::max<std::int64_t>(cells, 0));
}

// Non-negative remainder: the pattern repeats from the rectangle's corner.
std::int32_t wrapped(std::int64_t offset, std::int32_t size) {
    return static_cast<std::int32_t>(offset % size);
}

} // namespace

void clsLevel::fillTileRectangle(const TileGrid& pattern, const clsRectangle& rectangle,
                                 bool autoPlaceSpecials) {
    if (!pattern.empty()) {
        walkRectangle(
            width, height, rectangle,
            [&](std::int32_t x, std::int32_t y, std::int64_t dx, std::int64_t dy) {
                putTile(x, y,
                        pattern.at(wrapped(dx, pattern.width()), wrapped(dy, pattern.height())),
                        autoPlaceSpecials);
            });
    }
    modified = true;
}

void clsLevel::fillSpecialRectangle(const clsSpecial& special, const clsRectangle& rectangle) {
    const auto id = static_cast<std::uint8_t>(special.Id);
    walkRectangle(width, height, rectangle,
                  [&](std::int32_t x, std::int32_t y, std::int64_t, std::int64_t) {
                      cellAt(x, y).special = id;
                  });
    modified = true;
}

void clsLevel::setSpecial(std::int32_t x, std::int32_t y, std::uint8_t id) {
    cellAt(x, y).special = id;
    modified = true;
}

std::uint8_t clsLevel::getSpecial(std::int32_t x, std::int32_t y) const {
    return cellAt(x, y).special;
}

std::uint8_t clsLevel::getDefaultSpecial(std::int32_t tile) const noexcept {
    if (tile < 0 || static_cast<std::size_t>(tile) >= defaultSpecials_.size()) {
        return 0;
    }
    return defaultSpecials_[static_cast<std::size_t>(tile)];
}

TileGrid clsLevel::getTiles(const clsRectangle& rectangle) const {
    TileGrid tiles(cellsCovered(rectangle.width), cellsCovered(rectangle.height));
    walkRectangle(width, height, rectangle,
                  [&](std::int32_t x, std::int32_t y, std::int64_t dx, std::int64_t dy) {
                      tiles.at(static_cast<std::int32_t>(dx), static_cast<std::int32_t>(dy)) =
                          cellAt(x, y).tile;
                  });
    return tiles;
}

void clsLevel::placeSelectMap(const TileGrid& selectMap, std::int32_t pixelX, std::int32_t pixelY,
                              const clsCamera& camera, bool autoPlaceSpecials) {
    if (tileSpacing <= 0) {
        throw std::logic_error("tile spacing must be positive");
    }
    const std::int64_t column = (std::int64_t{camera.x} + pixelX) / tileSpacing;
    const std::int64_t row = (std::int64_t{camera.y} + pixelY) / tileSpacing;
    for (std::int32_t dy = 0; dy < selectMap.height(); ++dy) {
        for (std::int32_t dx = 0; dx < selectMap.width(); ++dx) {
            const std::int64_t x = column + dx;
            const std::int64_t y = row + dy;
            if (x < 0 || y < 0 || x >= width || y >= height) {
                continue;
            }
            putTile(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y),
                    selectMap.at(dx, dy), autoPlaceSpecials);
        }
    }
    modified = true;
}

void clsLevel::putTile(std::int32_t x, std::int32_t y, std::int32_t tile, bool autoPlaceSpecials) {
    Cell& cell = cellAt(x, y);
    // A cell keeps the tile number's low 16 bits.
    cell.tile = static_cast<std::int16_t>(tile);
    if (autoPlaceSpecials) {
        cell.special = getDefaultSpecial(tile);
    }
}

void clsLevel::addUndo() const {
    undoAdd(cells_.data(), cellBytes());
}

bool clsLevel::restoreUndo() {
    if (cells_.empty() || !canUndo()) {
        return false;
    }
    undoDoUndo(cells_.data());
    return true;
}

bool clsLevel::restoreRedo() {
    if (cells_.empty() || !canRedo()) {
        return false;
    }
    undoDoRedo(cells_.data());
    return true;
}

bool clsLevel::canUndo() noexcept {
    return undoCount() > 0;
}

bool clsLevel::canRedo() noexcept {
    return redoCount() > 0;
}

} // namespace marvek
