#pragma once

// Choosing tiles in the tile palette: 20 tiles a row, the last row holding
// what is left over.

#include "graphics/clsRectangle.h"

#include <cstdint>

namespace marvek {

// Rows the palette shows for count tiles, a last partial row included.
std::int32_t tilePaletteRows(std::int32_t count);
// True when the palette cell (column, row) shows a tile.
bool tilePaletteHolds(std::int32_t count, std::int32_t column, std::int32_t row);
// The dragged selection, anchored at (left, top) with the far corner at
// (left + width, top + height), limited so that it covers only tiles: the far
// corner stays inside the palette, and a rectangle that would reach past
// the last tile of a partial last row stops a row above it, or, when it
// starts on that row, at its last tile. The anchor must hold a tile.
clsRectangle limitTileSelection(const clsRectangle& selection, std::int32_t count);

} // namespace marvek
