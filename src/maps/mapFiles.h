#pragma once

#include "maps/TiledMap.h"
#include "maps/layerData.h"

#include <functional>
#include <string>
#include <string_view>

namespace marvek {

// Tiled's file formats: the map as XML (TMX) or JSON (TMJ), a tile set as
// XML (TSX) or JSON (TSJ). Writers take the tile sets' references as they
// are; readers hand each external tile set's source to the loader given.

// The version of Tiled whose files these are written as.
inline constexpr std::string_view tiledVersion = "1.8.2";

std::string writeTmx(const TiledMap& map, LayerFormat format);
std::string writeTmj(const TiledMap& map, LayerFormat format);
std::string writeTsx(const TiledTileSet& tileSet);

// Reads an external tile set's file, named by its source as the map gives it.
using TileSetLoader = std::function<TiledTileSet(const std::string& source)>;

// Each throws std::runtime_error saying what is wrong (and in which layer).
TiledMap readTmx(std::string_view text, const TileSetLoader& loadTileSet);
TiledMap readTmj(std::string_view text, const TileSetLoader& loadTileSet);
TiledTileSet readTsx(std::string_view text);
TiledTileSet readTsj(std::string_view text);

} // namespace marvek
