#pragma once

#include "data/levelOverview.h"

#include <array>
#include <cstdint>
#include <vector>

namespace marvek {

class clsBackBuffer;
class clsCamera;
class clsLevel;

// Ways the keyboard moves the level view.
enum class ViewStep {
    left,
    right,
    up,
    down,
    pageUp,
    pageDown,
    leftEdge,
    rightEdge,
    topLeft,
    bottomRight
};

// Moves the camera one step: a cell (pitch pixels) for the arrows, a view
// height for the pages, to an edge or corner for the others. The camera's
// own limits hold.
void stepCamera(clsCamera& camera, ViewStep step, std::int32_t pitch);

// Puts the centre of cell (x, y) in the middle of the view, as far as the
// camera's limits let it.
void centreCamera(clsCamera& camera, std::int32_t x, std::int32_t y, std::int32_t pitch);

// The level's cells that the view shows, wholly or in part.
CellRange visibleCells(const clsCamera& camera, std::int32_t pitch, std::int32_t levelWidth,
                       std::int32_t levelHeight);

// A wheel turn in pixels: a standard notch (120) is three cells.
std::int32_t wheelPixels(std::int32_t delta, std::int32_t pitch);

// A frame two pixels wide just inside cell (x, y) of the view.
void drawCellFrame(clsBackBuffer& backBuffer, const clsCamera& camera, std::int32_t pitch,
                   std::int32_t x, std::int32_t y, std::uint32_t colour);

struct PlacedSpecial {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint8_t id = 0;

    bool operator==(const PlacedSpecial&) const = default;
};

// Every cell holding a special, row by row.
std::vector<PlacedSpecial> placedSpecials(const clsLevel& level);

// How many cells hold each ID.
std::array<std::int32_t, 256> specialCounts(const std::vector<PlacedSpecial>& placed);

} // namespace marvek
