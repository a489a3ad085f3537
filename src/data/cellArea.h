#pragma once

// Rectangles of level cells as the editor drags them out: anchored at one
// cell, the far corner following the pointer.

#include "data/cellRange.h"
#include "graphics/clsRectangle.h"

#include <cstdint>

namespace marvek {

class clsLevel;

// The last column and row a copy or fill rectangle reaches: the game's
// standard level size, whatever the open level's.
inline constexpr std::int32_t areaLastColumn = 299;
inline constexpr std::int32_t areaLastRow = 84;

// The cells of a normalised rectangle.
CellRange rangeOf(const clsRectangle& area) noexcept;
// The whole map, normalised.
clsRectangle levelArea(const clsLevel& level) noexcept;
// The normalised rectangle between two cells, each first moved onto the map.
clsRectangle areaOnMap(const clsLevel& level, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                       std::int32_t y1) noexcept;
// A copy or fill rectangle anchored at its left and top with the far corner
// moved to (x, y): width and height go negative for a drag up or left, and
// only the high side stops, at areaLastColumn and areaLastRow; the level
// operations skip what lies off the map.
clsRectangle stretchArea(const clsRectangle& anchored, std::int32_t x, std::int32_t y) noexcept;

} // namespace marvek
