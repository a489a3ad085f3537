#pragma once

#include "data/clsRenderOptions.h"
#include "maps/TiledMap.h"

#include <cstdint>
#include <vector>

namespace marvek {

class clsSpecialSet;
class clsTileSet;

// A picture in the surfaces' pixel form (0xTTRRGGBB, T counting
// transparency: 0 opaque, 255 invisible), rows from the top.
struct TilePicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> pixels;
};

// The 1024 tiles a level's cells can name, 32 a row: the tile set's own, and
// past its end black, as the level view shows a cell without a tile.
TilePicture tilesPicture(const clsTileSet& tileSet);

// Special IDs 0 to 63, 8 a row, each as the level view draws it in its cell:
// a box in its colour, a sprite's or image's picture fitted into the cell,
// a number special's ID, and an ID without a definition as its number in
// light red. The background stays transparent.
TilePicture specialsPicture(const clsSpecialSet& specialSet, const clsRenderOptions& options);

// The tile sets' descriptions for those pictures, saved as image.
TiledTileSet tilesTileSet(const std::string& name, const std::string& image);
TiledTileSet specialsTileSet(const std::string& name, const std::string& image,
                             const clsSpecialSet& specialSet);

} // namespace marvek
