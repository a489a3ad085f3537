#pragma once

#include "data/TileGrid.h"
#include "data/clsLevel.h"

#include <cstdint>
#include <vector>

namespace marvek {

class clsRectangle;

// A rectangle of whole cells, tiles and specials, cut out of a level: what
// the clipboard carries and what a pasted brush stamps.
class CellBlock {
public:
    CellBlock() = default;
    // All cells tile 0, special 0. Throws std::length_error for a negative
    // size or more than TileGrid::maximumEntries cells.
    CellBlock(std::int32_t width, std::int32_t height);
    // The tiles of a brush with no specials of their own.
    static CellBlock fromTiles(const TileGrid& tiles);

    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    bool empty() const noexcept { return cells_.empty(); }
    // Throw std::out_of_range outside the block.
    Cell& at(std::int32_t x, std::int32_t y);
    const Cell& at(std::int32_t x, std::int32_t y) const;
    const std::vector<Cell>& cells() const noexcept { return cells_; }
    // The tile numbers alone, as a brush.
    TileGrid tiles() const;

    bool operator==(const CellBlock&) const = default;

private:
    std::size_t indexOf(std::int32_t x, std::int32_t y) const;

    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::vector<Cell> cells_;
};

// The cells of a normalised rectangle; cells outside the map read as empty.
CellBlock copyCells(const clsLevel& level, const clsRectangle& area);
// Tile 0 and special 0 in every cell of the rectangle inside the map.
void clearCells(clsLevel& level, const clsRectangle& area);
// Special 0 in every cell of the rectangle inside the map; tiles stay.
void clearSpecials(clsLevel& level, const clsRectangle& area);
// The block's specials with its top-left at (column, row): each cell the
// block gives a special takes it, every other cell and every tile stays.
void stampSpecials(clsLevel& level, const CellBlock& block, std::int32_t column, std::int32_t row);
// True when some cell of the block has a special.
bool holdsSpecials(const CellBlock& block);
// The block with its top-left at (column, row), tiles and specials as they
// are; cells outside the map are skipped.
void stampCells(clsLevel& level, const CellBlock& block, std::int32_t column, std::int32_t row);
// The block repeated over a normalised rectangle from its top-left corner,
// tiles and specials as they are, over the cells the tile fill covers: none
// when the left edge lies off the map, else the part on the map.
void fillCellRectangle(clsLevel& level, const CellBlock& pattern, const clsRectangle& area);
// The brush with its top-left at (column, row), as a brush of the tile
// palette paints: default specials only with autoPlaceSpecials.
void stampTiles(clsLevel& level, const TileGrid& brush, std::int32_t column, std::int32_t row,
                bool autoPlaceSpecials);

// How many cells of the area (the whole map when area is null) hold tile.
std::int64_t countTile(const clsLevel& level, std::int32_t tile, const clsRectangle* area);
// Puts tile to in every cell of the area (whole map when null) that holds
// tile from; specials stay. Returns the cells changed.
std::int64_t replaceTile(clsLevel& level, std::int32_t from, std::int32_t to,
                         const clsRectangle* area);

} // namespace marvek
