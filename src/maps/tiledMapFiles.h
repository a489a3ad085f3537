#pragma once

#include "data/clsRenderOptions.h"
#include "maps/layerData.h"
#include "maps/levelMap.h"

#include <filesystem>
#include <string>
#include <vector>

namespace marvek {

class clsSpecialSet;
class clsTileSet;

// A level written as a Tiled map, and the files that go with it.
struct TiledExport {
    // Ends in ".tmx" (XML), ".tmj" or ".json" (JSON).
    std::filesystem::path mapFile;
    LayerFormat format = LayerFormat::csv;
    // The tile set file's name ("L1BM"): the levels of a world share
    // NAME.tsx and NAME.png beside their maps.
    std::string tileSetName;
    // The configuration's name ("world1"), for NAME-specials.tsx and .png.
    std::string configurationName;
};

// True for a name Tiled's map formats use (".tmx", ".tmj", ".json", any case).
bool isTiledMapName(const std::filesystem::path& path);

// Writes the two tile sets (.tsx and .png) beside the map, then the map,
// each atomically. Throws FileError naming the file that failed.
void exportTiledMap(const LevelFile& file, const clsTileSet& tileSet,
                    const clsSpecialSet& specialSet, const clsRenderOptions& options,
                    const TiledExport& request);

// The map's text alone (the tile sets named as exportTiledMap names them).
std::string tiledMapText(const LevelFile& file, const TiledExport& request);

// A map read as a level, and the one warning it calls for.
struct TiledImport {
    LevelFile file;
    // "FILE: left out what a level cannot hold: layer \"Trees\", ...", or
    // empty when the map held nothing else.
    std::string warning;
};

// Reads a map (and its external tile sets) as a level. With base, the map
// must be of base's size and base gives what the map's properties lack;
// without, the map must have the size a level file states. Throws
// FileError naming the map (or tile set) and why, with the layer and cell
// where one is at fault.
TiledImport importTiledMap(const std::filesystem::path& mapFile, const LevelFile* base);

// The level packed with its magic, through the atomic writer. Throws
// FileError.
void writeLevelFile(const LevelFile& file, const std::filesystem::path& path);

// A level file read as it is (cells, kept chunks, palette, magic). Throws
// FileError naming the file when it is not a level.
LevelFile readLevelFile(const std::filesystem::path& path);

} // namespace marvek
