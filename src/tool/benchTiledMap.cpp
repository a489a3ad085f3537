// The Tiled map formats against the XML and JSON libraries they are built
// on: writing and reading a level's map, each against parsing its text.
#include "tool/benchTiledMap.h"

#include "maps/levelMap.h"
#include "maps/mapFiles.h"
#include "maps/tileSetPictures.h"
#include "tool/benchTiming.h"

#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include <cstdio>
#include <functional>
#include <string>

namespace marvek::tool {
namespace {

TiledTileSet tileSetFor(const std::string& source) {
    TiledTileSet tileSet = tilesTileSet(source, source + ".png");
    if (source.starts_with("specials")) {
        tileSet.tileCount = mapSpecialCount;
        tileSet.properties.front().value = tiledNames::specialsLayer;
    }
    return tileSet;
}

void printRatio(const std::string& name, double ours, double reference) {
    std::printf("%s: %.1f %.1f %.3f\n", name.c_str(), ours, reference, ours / reference);
    std::fflush(stdout);
}

struct MapFormat {
    const char* name;
    std::string (*write)(const TiledMap&, LayerFormat);
    TiledMap (*read)(std::string_view, const TileSetLoader&);
    std::function<void(const std::string&)> parseOnly;
};

void benchFormat(const MapFormat& format, const LevelFile& file) {
    const TiledMap map = mapFromLevel(file, "tiles.tsx", "specials.tsx");
    const std::string text = format.write(map, LayerFormat::csv);
    const double parse = medianMicros([&] { format.parseOnly(text); });
    const double write = medianMicros([&] {
        const std::string written =
            format.write(mapFromLevel(file, "tiles.tsx", "specials.tsx"), LayerFormat::csv);
        keep(written.size());
    });
    const double read = medianMicros([&] {
        const LevelFromMap level = levelFromMap(format.read(text, tileSetFor), nullptr);
        keep(level.file.level.cells()[0].tile);
    });
    printRatio(std::string(format.name) + "-export", write, parse);
    printRatio(std::string(format.name) + "-import", read, parse);
}

} // namespace

void benchTiledMaps(const OpenedLevel& world) {
    const LevelFile file{world.level, world.palette, "IMP!"};
    benchFormat({"tmx", writeTmx, readTmx,
                 [](const std::string& text) {
                     pugi::xml_document document;
                     keep(document.load_buffer(text.data(), text.size()).status);
                 }},
                file);
    benchFormat({"tmj", writeTmj, readTmj,
                 [](const std::string& text) { keep(nlohmann::json::parse(text).size()); }},
                file);
}

} // namespace marvek::tool
