#include "data/CellBlock.h"

#include "graphics/clsRectangle.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace marvek {
namespace {

// The part of a normalised rectangle that lies on the map, as half-open
// column and row ranges; empty ranges when it misses the map.
struct MapSpan {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
};

MapSpan clampToMap(const clsLevel& level, const clsRectangle* area) {
    if (area == nullptr) {
        return {0, 0, level.width, level.height};
    }
    const auto clampColumn = [&](std::int64_t x) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(x, 0, level.width));
    };
    const auto clampRow = [&](std::int64_t y) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(y, 0, level.height));
    };
    return {clampColumn(area->left), clampRow(area->top),
            clampColumn(std::int64_t{area->left} + area->width + 1),
            clampRow(std::int64_t{area->top} + area->height + 1)};
}

template <typename Visit> void forEachCell(const MapSpan& span, Visit visit) {
    for (std::int32_t y = span.top; y < span.bottom; ++y) {
        for (std::int32_t x = span.left; x < span.right; ++x) {
            visit(x, y);
        }
    }
}

} // namespace

CellBlock::CellBlock(std::int32_t width, std::int32_t height) {
    if (width < 0 || height < 0 || std::int64_t{width} * height > TileGrid::maximumEntries) {
        throw std::length_error("cell block of " + std::to_string(width) + " x " +
                                std::to_string(height));
    }
    width_ = width;
    height_ = height;
    cells_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), Cell{});
}

CellBlock CellBlock::fromTiles(const TileGrid& tiles) {
    CellBlock block(tiles.width(), tiles.height());
    for (std::int32_t y = 0; y < tiles.height(); ++y) {
        for (std::int32_t x = 0; x < tiles.width(); ++x) {
            block.at(x, y).tile = static_cast<std::int16_t>(tiles.at(x, y));
        }
    }
    return block;
}

Cell& CellBlock::at(std::int32_t x, std::int32_t y) {
    return cells_[indexOf(x, y)];
}

const Cell& CellBlock::at(std::int32_t x, std::int32_t y) const {
    return cells_[indexOf(x, y)];
}

TileGrid CellBlock::tiles() const {
    TileGrid grid(width_, height_);
    for (std::int32_t y = 0; y < height_; ++y) {
        for (std::int32_t x = 0; x < width_; ++x) {
            grid.at(x, y) = at(x, y).tile;
        }
    }
    return grid;
}

std::size_t CellBlock::indexOf(std::int32_t x, std::int32_t y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        throw std::out_of_range("cell (" + std::to_string(x) + ", " + std::to_string(y) +
                                ") outside a block of " + std::to_string(width_) + " x " +
                                std::to_string(height_));
    }
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
}

CellBlock copyCells(const clsLevel& level, const clsRectangle& area) {
    CellBlock block(area.width + 1, area.height + 1);
    forEachCell(clampToMap(level, &area), [&](std::int32_t x, std::int32_t y) {
        Cell cell = level.cellAt(x, y);
        cell.spare = 0;
        block.at(x - area.left, y - area.top) = cell;
    });
    return block;
}

void clearCells(clsLevel& level, const clsRectangle& area) {
    forEachCell(clampToMap(level, &area),
                [&](std::int32_t x, std::int32_t y) { level.cellAt(x, y) = Cell{}; });
    level.modified = true;
}

void stampCells(clsLevel& level, const CellBlock& block, std::int32_t column, std::int32_t row) {
    for (std::int32_t dy = 0; dy < block.height(); ++dy) {
        for (std::int32_t dx = 0; dx < block.width(); ++dx) {
            const std::int64_t x = std::int64_t{column} + dx;
            const std::int64_t y = std::int64_t{row} + dy;
            if (x >= 0 && y >= 0 && x < level.width && y < level.height) {
                Cell& cell =
                    level.cellAt(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
                cell.tile = block.at(dx, dy).tile;
                cell.special = block.at(dx, dy).special;
            }
        }
    }
    level.modified = true;
}

void clearSpecials(clsLevel& level, const clsRectangle& area) {
    forEachCell(clampToMap(level, &area),
                [&](std::int32_t x, std::int32_t y) { level.cellAt(x, y).special = 0; });
    level.modified = true;
}

void stampSpecials(clsLevel& level, const CellBlock& block, std::int32_t column, std::int32_t row) {
    for (std::int32_t dy = 0; dy < block.height(); ++dy) {
        for (std::int32_t dx = 0; dx < block.width(); ++dx) {
            const std::int64_t x = std::int64_t{column} + dx;
            const std::int64_t y = std::int64_t{row} + dy;
            const std::uint8_t special = block.at(dx, dy).special;
            if (special != 0 && x >= 0 && y >= 0 && x < level.width && y < level.height) {
                level.cellAt(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)).special =
                    special;
            }
        }
    }
    level.modified = true;
}

bool holdsSpecials(const CellBlock& block) {
    return std::ranges::any_of(block.cells(), [](const Cell& cell) { return cell.special != 0; });
}

void stampTiles(clsLevel& level, const TileGrid& brush, std::int32_t column, std::int32_t row,
                bool autoPlaceSpecials) {
    for (std::int32_t dy = 0; dy < brush.height(); ++dy) {
        for (std::int32_t dx = 0; dx < brush.width(); ++dx) {
            const std::int64_t x = std::int64_t{column} + dx;
            const std::int64_t y = std::int64_t{row} + dy;
            if (x >= 0 && y >= 0 && x < level.width && y < level.height) {
                Cell& cell =
                    level.cellAt(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
                const std::int32_t tile = brush.at(dx, dy);
                cell.tile = static_cast<std::int16_t>(tile);
                if (autoPlaceSpecials) {
                    cell.special = level.getDefaultSpecial(tile);
                }
            }
        }
    }
    level.modified = true;
}

void fillCellRectangle(clsLevel& level, const CellBlock& pattern, const clsRectangle& area) {
    if (!pattern.empty() && area.left >= 0 && area.left < level.width) {
        forEachCell(clampToMap(level, &area), [&](std::int32_t x, std::int32_t y) {
            const Cell& from =
                pattern.at((x - area.left) % pattern.width(), (y - area.top) % pattern.height());
            Cell& cell = level.cellAt(x, y);
            cell.tile = from.tile;
            cell.special = from.special;
        });
    }
    level.modified = true;
}

std::int64_t countTile(const clsLevel& level, std::int32_t tile, const clsRectangle* area) {
    std::int64_t count = 0;
    forEachCell(clampToMap(level, area), [&](std::int32_t x, std::int32_t y) {
        count += level.cellAt(x, y).tile == tile ? 1 : 0;
    });
    return count;
}

std::int64_t replaceTile(clsLevel& level, std::int32_t from, std::int32_t to,
                         const clsRectangle* area) {
    std::int64_t count = 0;
    forEachCell(clampToMap(level, area), [&](std::int32_t x, std::int32_t y) {
        Cell& cell = level.cellAt(x, y);
        if (cell.tile == from) {
            cell.tile = static_cast<std::int16_t>(to);
            ++count;
        }
    });
    level.modified = true;
    return count;
}

} // namespace marvek
