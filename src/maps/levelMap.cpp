#include "maps/levelMap.h"

#include "maps/levelProperties.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace marvek {
namespace {

// Tiled keeps a tile's flips and rotation in a gid's top bits.
constexpr std::uint32_t transformBits = 0xF0000000u;
constexpr std::uint32_t firstTransformed = 0x10000000u;
constexpr std::uint32_t tileMask = static_cast<std::uint32_t>(clsLevel::largestFileTile);
constexpr std::uint32_t specialMask = mapSpecialCount - 1;
// Deliberately the cell count a standard level's file states (300 x 84).
constexpr std::int64_t standardCells = 25'200;

std::string inQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

std::string cellName(const std::string& layer, std::size_t index, std::int32_t width) {
    const auto w = static_cast<std::size_t>(width);
    return "layer " + inQuotes(layer) + ", cell (" + std::to_string(index % w) + ", " +
           std::to_string(index / w) + ")";
}

std::string layerOf(const TiledTileSet& tileSet) {
    const TiledProperty* property = findProperty(tileSet.properties, tiledNames::layerProperty);
    return property != nullptr ? property->value : std::string();
}

// Turns a layer's gids into local tile numbers of the tile set meant for it.
// What each tile set is and may do is worked out once, not for each cell.
class LayerReader {
public:
    LayerReader(const TiledMap& map, const TiledTileLayer& layer, std::uint32_t count)
        : map_(map), layer_(layer), count_(count) {
        for (const TiledTileSetReference& reference : map.tileSets) {
            const auto tiles = static_cast<std::uint32_t>(std::max(reference.tileSet.tileCount, 0));
            ranges_.push_back({reference.firstGid, reference.firstGid + std::uint64_t{tiles},
                               layerOf(reference.tileSet) == layer.name, &reference.tileSet});
        }
        findPlainGids();
    }

    // The cell's number within the layer's tile set; emptyNumber for gid 0.
    std::uint32_t number(std::size_t index, std::uint32_t emptyNumber) const {
        const std::uint32_t gid = layer_.gids[index];
        if (gid - plainFirst_ < plainCount_) {
            return gid - plainFirst_;
        }
        return gid == 0 ? emptyNumber : checkedNumber(index);
    }

    // The gids that need no check but that they lie in first..first+count:
    // the layer's own tile set, up to the tiles a level keeps and the next
    // tile set's first gid. Level maps hold nothing else (and 0 where a
    // layer may be empty), which one pass over the layer can tell.
    std::uint32_t plainFirst() const { return plainFirst_; }
    std::uint32_t plainCount() const { return plainCount_; }

private:
    struct Range {
        std::uint32_t first;
        std::uint64_t end;
        bool allowed;
        const TiledTileSet* tileSet;
    };

    void findPlainGids() {
        for (const Range& range : ranges_) {
            if (!range.allowed || range.first == 0 || rangeOf(range.first) != &range) {
                continue;
            }
            std::uint64_t end = std::min(
                {range.end, range.first + std::uint64_t{count_}, std::uint64_t{firstTransformed}});
            for (const Range& other : ranges_) {
                if (other.first > range.first) {
                    end = std::min<std::uint64_t>(end, other.first);
                }
            }
            if (end > range.first) {
                plainFirst_ = range.first;
                plainCount_ = static_cast<std::uint32_t>(end - range.first);
                return;
            }
        }
    }

    // The number of a gid other than 0, or why it cannot be.
    std::uint32_t checkedNumber(std::size_t index) const {
        const std::uint32_t gid = layer_.gids[index];
        if ((gid & transformBits) != 0) {
            refuse(index, "the tile is flipped or rotated, which a level cannot hold");
        }
        const Range* range = rangeOf(gid);
        if (range == nullptr) {
            refuse(index, "gid " + std::to_string(gid) + " belongs to no tile set");
        }
        const TiledTileSet& tileSet = *range->tileSet;
        if (gid >= range->end) {
            refuse(index, "gid " + std::to_string(gid) + " lies past the end of tile set " +
                              inQuotes(tileSet.name) + " (" + std::to_string(tileSet.tileCount) +
                              " tiles from gid " + std::to_string(range->first) + ")");
        }
        if (!range->allowed) {
            refuse(index, "gid " + std::to_string(gid) + " is a tile of tile set " +
                              inQuotes(tileSet.name) + ", which this layer may not use");
        }
        const std::uint32_t local = gid - range->first;
        if (local >= count_) {
            refuse(index, "tile " + std::to_string(local) + " of tile set " +
                              inQuotes(tileSet.name) + " is past the last one a level keeps (" +
                              std::to_string(count_ - 1) + ")");
        }
        return local;
    }

    // The tile set a gid falls in: the one with the largest first gid not
    // above it.
    const Range* rangeOf(std::uint32_t gid) const {
        const Range* found = nullptr;
        for (const Range& range : ranges_) {
            if (range.first <= gid && (found == nullptr || range.first > found->first)) {
                found = &range;
            }
        }
        return found;
    }

    [[noreturn]] void refuse(std::size_t index, const std::string& why) const {
        throw MapRefusal(cellName(layer_.name, index, map_.width) + ": " + why);
    }

    const TiledMap& map_;
    const TiledTileLayer& layer_;
    std::uint32_t count_;
    std::vector<Range> ranges_;
    std::uint32_t plainFirst_ = 0;
    std::uint32_t plainCount_ = 0;
};

void checkShape(const TiledMap& map) {
    if (map.infinite) {
        throw MapRefusal("the map is infinite; a level has a fixed size");
    }
    if (map.tileWidth != clsTileSet::tileSize || map.tileHeight != clsTileSet::tileSize) {
        throw MapRefusal("the map's tiles are " + std::to_string(map.tileWidth) + " x " +
                         std::to_string(map.tileHeight) + " pixels; a level's are 16 x 16");
    }
    const std::int64_t cells = std::int64_t{map.width} * map.height;
    if (map.width < 1 || map.height < 1 || cells > clsLevel::maximumCells) {
        throw MapRefusal("the map's size, " + std::to_string(map.width) + " x " +
                         std::to_string(map.height) + " cells, cannot be a level");
    }
}

const TiledTileLayer* findLayer(const TiledMap& map, const char* name) {
    const auto found = std::ranges::find(map.layers, std::string(name), &TiledTileLayer::name);
    return found != map.layers.end() ? &*found : nullptr;
}

void checkCellCount(const TiledMap& map, const TiledTileLayer& layer) {
    const auto cells = static_cast<std::size_t>(map.width) * static_cast<std::size_t>(map.height);
    if (layer.gids.size() != cells) {
        throw MapRefusal("layer " + inQuotes(layer.name) + " holds " +
                         std::to_string(layer.gids.size()) + " cells; the map has " +
                         std::to_string(map.width) + " x " + std::to_string(map.height) + " = " +
                         std::to_string(cells));
    }
}

void readTiles(const TiledMap& map, const TiledTileLayer& layer, clsLevel& level) {
    checkCellCount(map, layer);
    const LayerReader reader(map, layer, mapTileCount);
    constexpr std::uint32_t empty = UINT32_MAX;
    const auto cells = level.cells();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::uint32_t tile = reader.number(i, empty);
        if (tile == empty) {
            throw MapRefusal(cellName(layer.name, i, map.width) +
                             " is empty; every cell of a level has a tile");
        }
        cells[i].tile = static_cast<std::int16_t>(tile);
    }
}

void readSpecials(const TiledMap& map, const TiledTileLayer& layer, clsLevel& level) {
    checkCellCount(map, layer);
    const LayerReader reader(map, layer, mapSpecialCount);
    const auto cells = level.cells();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        cells[i].special = static_cast<std::uint8_t>(reader.number(i, 0));
    }
}

// A cell whole, as the word that holds it (little-endian machines only).
constexpr std::uint32_t cellWord(std::uint32_t tile, std::uint32_t special) {
    return (tile & 0xFFFFu) | (special & 0xFFu) << 16;
}
static_assert(sizeof(Cell) == sizeof(std::uint32_t) &&
              (std::endian::native != std::endian::little ||
               std::bit_cast<Cell>(cellWord(3, 5)) == Cell{3, 5, 0}));

// The gids of a layer that need no check but that they lie in
// first..first+count (LayerReader::plainFirst).
struct PlainGids {
    std::uint32_t first;
    std::uint32_t count;
};

// The cells of both layers, written without a branch so that compilers
// vectorise it; false when any gid lies outside the plain ones.
bool writePlainCells(std::span<const std::uint32_t> tiles, PlainGids tileGids,
                     std::span<const std::uint32_t> specials, PlainGids specialGids,
                     std::span<Cell> cells) {
    auto* const bytes = reinterpret_cast<unsigned char*>(cells.data());
    unsigned plain = 1;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::uint32_t tile = tiles[i] - tileGids.first;
        const std::uint32_t gid = specials[i];
        const std::uint32_t empty = gid == 0 ? 1 : 0;
        const std::uint32_t special = (gid - specialGids.first) & (empty - 1);
        plain &=
            (tile < tileGids.count ? 1u : 0u) & (empty | (special < specialGids.count ? 1u : 0u));
        if constexpr (std::endian::native == std::endian::little) {
            // Cells are copied as bytes, which the compiler vectorises.
            const std::uint32_t word = cellWord(tile, special);
            std::memcpy(bytes + i * sizeof word, &word, sizeof word);
        } else {
            cells[i] = Cell{static_cast<std::int16_t>(tile), static_cast<std::uint8_t>(special), 0};
        }
    }
    return plain != 0;
}

// Both layers in one pass, which is all a level's own map needs: each gid
// of the layer's tile set, a special or 0. False when any cell needs the
// checks of readTiles and readSpecials, which then say what is wrong.
bool readPlainCells(const TiledMap& map, const TiledTileLayer& tiles,
                    const TiledTileLayer& specials, clsLevel& level) {
    const auto cells = level.cells();
    if (tiles.gids.size() != cells.size() || specials.gids.size() != cells.size()) {
        return false;
    }
    const LayerReader tileReader(map, tiles, mapTileCount);
    const LayerReader specialReader(map, specials, mapSpecialCount);
    return writePlainCells(tiles.gids, {tileReader.plainFirst(), tileReader.plainCount()},
                           specials.gids, {specialReader.plainFirst(), specialReader.plainCount()},
                           cells);
}

std::vector<std::string> ignoredParts(const TiledMap& map) {
    std::vector<std::string> ignored;
    for (const TiledProperty& property : map.properties) {
        if (!isLevelProperty(property.name)) {
            ignored.push_back("map property " + inQuotes(property.name));
        }
    }
    bool seenTiles = false;
    bool seenSpecials = false;
    for (const TiledTileLayer& layer : map.layers) {
        bool& seen = layer.name == tiledNames::tilesLayer ? seenTiles : seenSpecials;
        const bool ours =
            layer.name == tiledNames::tilesLayer || layer.name == tiledNames::specialsLayer;
        if (!ours || seen) {
            ignored.push_back("tile layer " + inQuotes(layer.name));
        }
        if (ours) {
            seen = true;
        }
    }
    ignored.insert(ignored.end(), map.ignored.begin(), map.ignored.end());
    return ignored;
}

std::uint32_t tileGid(std::uint32_t tile) {
    return tilesFirstGid + (tile & tileMask);
}

std::uint32_t specialGid(std::uint32_t special) {
    special &= specialMask;
    return special == 0 ? 0 : specialsFirstGid + special;
}

// The gids of both layers, in one pass that compilers vectorise: the
// vectors are sized first, and on little-endian machines each cell is read
// as the word that holds it.
std::pair<std::vector<std::uint32_t>, std::vector<std::uint32_t>> layerGids(const clsLevel& level) {
    const auto cells = level.cells();
    std::vector<std::uint32_t> tiles(cells.size());
    std::vector<std::uint32_t> specials(cells.size());
    const auto* const bytes = reinterpret_cast<const unsigned char*>(cells.data());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if constexpr (std::endian::native == std::endian::little) {
            std::uint32_t word = 0;
            std::memcpy(&word, bytes + i * sizeof word, sizeof word);
            tiles[i] = tileGid(word);
            specials[i] = specialGid(word >> 16);
        } else {
            tiles[i] = tileGid(static_cast<std::uint32_t>(cells[i].tile));
            specials[i] = specialGid(cells[i].special);
        }
    }
    return {std::move(tiles), std::move(specials)};
}

} // namespace

MissingMapProperties::MissingMapProperties(std::vector<std::string> names)
    : MapRefusal([&] {
          std::string text =
              "the map lacks the propert" + std::string(names.size() == 1 ? "y " : "ies ");
          for (std::size_t i = 0; i < names.size(); ++i) {
              text += (i == 0 ? "" : ", ") + inQuotes(names[i]);
          }
          return text + ", which the level file needs";
      }()),
      names_(std::move(names)) {}

TiledMap mapFromLevel(const LevelFile& file, const std::string& tilesSource,
                      const std::string& specialsSource) {
    const clsLevel& level = file.level;
    TiledMap map;
    map.width = level.width;
    map.height = level.height;
    map.properties = levelProperties(file);
    map.tileSets = {{tilesFirstGid, tilesSource, {}}, {specialsFirstGid, specialsSource, {}}};
    // Moved in: an initializer list would copy each layer's cells.
    auto [tiles, specials] = layerGids(level);
    map.layers.reserve(2);
    map.layers.push_back({tiledNames::tilesLayer, std::move(tiles)});
    map.layers.push_back({tiledNames::specialsLayer, std::move(specials)});
    return map;
}

LevelFromMap levelFromMap(const TiledMap& map, const LevelFile* base) {
    checkShape(map);
    const TiledTileLayer* tiles = findLayer(map, tiledNames::tilesLayer);
    if (tiles == nullptr) {
        throw MapRefusal("the map has no tile layer \"Tiles\"");
    }
    LevelFromMap result;
    clsLevel& level = result.file.level;
    level.width = map.width;
    level.height = map.height;
    level.resizeCells();
    const TiledTileLayer* specials = findLayer(map, tiledNames::specialsLayer);
    if (specials == nullptr || !readPlainCells(map, *tiles, *specials, level)) {
        readTiles(map, *tiles, level);
        if (specials != nullptr) {
            readSpecials(map, *specials, level);
        }
    }
    applyLevelProperties(map.properties, base, result.file);
    result.ignored = ignoredParts(map);
    return result;
}

void checkMapSize(const TiledMap& map, const clsLevel* replaced) {
    if (replaced != nullptr) {
        if (map.width != replaced->width || map.height != replaced->height) {
            throw MapRefusal("the map is " + std::to_string(map.width) + " x " +
                             std::to_string(map.height) + " cells; the level is " +
                             std::to_string(replaced->width) + " x " +
                             std::to_string(replaced->height));
        }
        return;
    }
    if (std::int64_t{map.width} * map.height != standardCells) {
        throw MapRefusal("the map is " + std::to_string(map.width) + " x " +
                         std::to_string(map.height) +
                         " cells; a level file holds 25200 cells (such as 300 x 84)");
    }
}

const TiledProperty* findProperty(const std::vector<TiledProperty>& properties,
                                  const std::string& name) {
    const auto found = std::ranges::find(properties, name, &TiledProperty::name);
    return found != properties.end() ? &*found : nullptr;
}

} // namespace marvek
