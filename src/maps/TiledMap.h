#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace marvek {

// A custom property as Tiled keeps it: a name, a type ("string", "int", ...)
// and the value as text.
struct TiledProperty {
    std::string name;
    std::string type = "string";
    std::string value;
};

// A tile set as far as a level needs it; the picture only for writing.
struct TiledTileSet {
    std::string name;
    std::int32_t tileCount = 0;
    std::int32_t columns = 0;
    std::int32_t tileWidth = 16;
    std::int32_t tileHeight = 16;
    std::string image;
    std::int32_t imageWidth = 0;
    std::int32_t imageHeight = 0;
    std::vector<TiledProperty> properties;
    // Per tile: its local ID and its properties.
    std::vector<std::pair<std::int32_t, std::vector<TiledProperty>>> tileProperties;
};

// A tile set as the map refers to it: its first gid and either the file it
// lives in or its contents.
struct TiledTileSetReference {
    std::uint32_t firstGid = 1;
    // The .tsx (or .tsj) beside the map; empty for an embedded tile set.
    std::string source;
    // The contents, read from the file or embedded.
    TiledTileSet tileSet;
};

struct TiledTileLayer {
    std::string name;
    std::vector<std::uint32_t> gids;
};

// An orthogonal map of tile layers: what is written, and what was read with
// the names of everything else it held (other layers, objects).
struct TiledMap {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t tileWidth = 16;
    std::int32_t tileHeight = 16;
    bool infinite = false;
    std::vector<TiledProperty> properties;
    std::vector<TiledTileSetReference> tileSets;
    std::vector<TiledTileLayer> layers;
    // What a reader found and left alone, each as "layer \"NAME\"" and the
    // like.
    std::vector<std::string> ignored;
};

// Room for the text of a map whose cells have numbers of a few digits, at
// most bytesPerCell each with their separators.
inline std::size_t expectedTextLength(const TiledMap& map, std::size_t bytesPerCell) {
    constexpr std::size_t rest = 4096;
    std::size_t cells = 0;
    for (const TiledTileLayer& layer : map.layers) {
        cells += layer.gids.size();
    }
    return cells * bytesPerCell + rest;
}

// The property of that name, or none.
const TiledProperty* findProperty(const std::vector<TiledProperty>& properties,
                                  const std::string& name);

} // namespace marvek
