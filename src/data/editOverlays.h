#pragma once

#include <cstdint>

namespace marvek {

class clsBackBuffer;
class clsCamera;
class clsRectangle;
class CellRegion;

// Marks over the level view for the editing tools, drawn after the level.
// spacing is the level's tile pitch; only cells inside the view are visited.

// A translucent box over every visible cell of the region, a run of cells
// in a row as one box.
void renderRegionTint(clsBackBuffer& backBuffer, const clsCamera& camera, std::int32_t spacing,
                      const CellRegion& region, std::uint32_t colour, bool alphaBlending);
// A dashed black and white frame around a normalised rectangle of cells,
// seen on any tile.
void renderDashedFrame(clsBackBuffer& backBuffer, const clsCamera& camera, std::int32_t spacing,
                       const clsRectangle& area);

} // namespace marvek
