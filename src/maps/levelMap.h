#pragma once

#include "data/clsLevel.h"
#include "data/clsTileSet.h"
#include "graphics/clsPalette.h"
#include "maps/TiledMap.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace marvek {

// A level as its packed file holds it: the cells and kept chunks, the
// palette, and the magic the file is packed with.
struct LevelFile {
    clsLevel level;
    clsPalette palette;
    std::string magic = "IMP!";
};

namespace tiledNames {
inline constexpr const char* tilesLayer = "Tiles";
inline constexpr const char* specialsLayer = "Specials";
// The tile set property that says which layer a tile set is for.
inline constexpr const char* layerProperty = "layer";
} // namespace tiledNames

// Every tile number a level file keeps, so every one has a tile in the map.
inline constexpr std::int32_t mapTileCount = clsLevel::largestFileTile + 1;
inline constexpr std::int32_t mapSpecialCount = 64;
inline constexpr std::uint32_t tilesFirstGid = 1;
inline constexpr std::uint32_t specialsFirstGid = tilesFirstGid + mapTileCount;

// A map that cannot be a level; what() says why, naming the layer and cell
// where it applies.
class MapRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The map lacks properties that the level file needs and no level was given
// to take them from.
class MissingMapProperties : public MapRefusal {
public:
    explicit MissingMapProperties(std::vector<std::string> names);
    const std::vector<std::string>& names() const noexcept { return names_; }

private:
    std::vector<std::string> names_;
};

// The map of a level: its two layers over tile sets at tilesFirstGid and
// specialsFirstGid (kept in the files named), the rest of the file as
// properties.
TiledMap mapFromLevel(const LevelFile& file, const std::string& tilesSource,
                      const std::string& specialsSource);

// What a map makes of a level, and what of the map it left out.
struct LevelFromMap {
    LevelFile file;
    // Each as "layer \"Background\"", "map property \"author\"", ...
    std::vector<std::string> ignored;
};

// The level a map holds. Properties the map lacks come from base when one
// is given. Throws MapRefusal (MissingMapProperties for lacking properties).
LevelFromMap levelFromMap(const TiledMap& map, const LevelFile* base);

// Refuses (MapRefusal) a map whose size is not that of the level it
// replaces, or without one, not a size a level file can state.
void checkMapSize(const TiledMap& map, const clsLevel* replaced);

} // namespace marvek
