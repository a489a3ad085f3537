#include "io/FileError.h"
#include "maps/mapFiles.h"
#include "support/tool.h"
#include "tiled/tiledFixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace marvek::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

class TiledMapRefusal : public TiledMapTest {
protected:
    TiledMapRefusal() { exported_ = exportAs(original_, "L1MA1.tmx"); }

    // The exported map changed and saved as NAME.tmx beside its tile sets.
    std::filesystem::path changedMap(const std::function<void(TiledMap&)>& change) const {
        TiledMap map = readTmx(fileText(exported_), [this](const std::string& source) {
            return readTsx(fileText(folder_ / source));
        });
        change(map);
        const auto path = folder_ / "changed.tmx";
        writeFileText(path, writeTmx(map, LayerFormat::csv));
        return path;
    }

    // Why importing the map was refused.
    static std::string refusal(const std::filesystem::path& map, const LevelFile* base = nullptr) {
        try {
            importTiledMap(map, base);
        } catch (const FileError& error) {
            EXPECT_EQ(error.path(), map);
            return error.what();
        }
        ADD_FAILURE() << "the map was taken";
        return {};
    }

    static std::uint32_t& cell(TiledMap& map, std::size_t layer, std::int32_t x, std::int32_t y) {
        return map.layers[layer].gids[static_cast<std::size_t>(y * map.width + x)];
    }

    std::filesystem::path exported_;
};

TEST_F(TiledMapRefusal, ACellNamesItsLayerAndPlace) {
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { cell(map, 0, 3, 2) |= 0x80000000u; })),
                HasSubstr("layer \"Tiles\", cell (3, 2): the tile is flipped or rotated"));
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { cell(map, 1, 5, 7) = 1 | 0x20000000u; })),
                HasSubstr("layer \"Specials\", cell (5, 7): the tile is flipped or rotated"));
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { cell(map, 0, 0, 1) = 1025 + 12; })),
                HasSubstr("layer \"Tiles\", cell (0, 1): gid 1037 is a tile of tile set "
                          "\"world1 specials\", which this layer may not use"));
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { cell(map, 1, 299, 83) = 7; })),
                HasSubstr("layer \"Specials\", cell (299, 83): gid 7 is a tile of tile set "
                          "\"L1BM\""));
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { cell(map, 1, 1, 0) = 1025 + 64; })),
                HasSubstr("layer \"Specials\", cell (1, 0): gid 1089 lies past the end of tile "
                          "set \"world1 specials\""));
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { cell(map, 0, 2, 0) = 0; })),
                HasSubstr("layer \"Tiles\", cell (2, 0) is empty"));
}

TEST_F(TiledMapRefusal, TheMapsShapeMustBeALevels) {
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { map.infinite = true; })),
                HasSubstr("the map is infinite"));
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { map.tileWidth = 32; })),
                HasSubstr("the map's tiles are 32 x 16 pixels; a level's are 16 x 16"));
    EXPECT_THAT(refusal(changedMap([](TiledMap& map) { map.layers[0].name = "Ground"; })),
                HasSubstr("the map has no tile layer \"Tiles\""));
    // The same cells the other way round: a level file could state them, the
    // level they replace cannot take them.
    const auto turned = changedMap([](TiledMap& map) { std::swap(map.width, map.height); });
    EXPECT_THAT(refusal(turned, &original_),
                HasSubstr("the map is 84 x 300 cells; the level is 300 x 84"));
    const auto small = changedMap([](TiledMap& map) {
        map.width = map.height = 10;
        for (auto& layer : map.layers) {
            layer.gids.resize(100);
        }
    });
    EXPECT_THAT(refusal(small), HasSubstr("the map is 10 x 10 cells; a level file holds 25200"));
}

TEST_F(TiledMapRefusal, MissingPropertiesAreNamedOrTakenFromABase) {
    const auto bare = changedMap([](TiledMap& map) {
        std::erase_if(map.properties, [](const TiledProperty& property) {
            return property.name == "palette" || property.name == "cccl";
        });
    });
    EXPECT_THAT(refusal(bare), HasSubstr("the map lacks the properties \"palette\", \"cccl\""));
    LevelFile base = original_;
    base.level.setRemX(99);
    const TiledImport imported = importTiledMap(bare, &base);
    EXPECT_EQ(savedForm(imported.file), savedForm(original_));
    const auto out = folder_ / "based";
    EXPECT_EQ(runTool("tmx import " + shellQuoted(bare) + " " + shellQuoted(out) + " --base " +
                      shellQuoted(sampleData / "L1MA1"))
                  .exitCode,
              0);
    EXPECT_EQ(readWholeFile(out), readWholeFile(sampleData / "L1MA1"));
    // A property's bad value is named too.
    const auto odd = changedMap([](TiledMap& map) {
        for (auto& property : map.properties) {
            if (property.name == "magic") {
                property.value = "PP20";
            }
        }
    });
    EXPECT_THAT(refusal(odd), HasSubstr("map property \"magic\" is \"PP20\""));
}

TEST_F(TiledMapRefusal, WhatALevelCannotHoldIsLeftOutWithOneWarning) {
    std::string text = fileText(exported_);
    const std::string end = "</map>";
    text.insert(text.find(end), " <objectgroup id=\"3\" name=\"Enemies\"/>\n"
                                " <layer id=\"4\" name=\"Trees\" width=\"1\" height=\"1\">"
                                "<data encoding=\"csv\">1</data></layer>\n");
    text.insert(text.find("</properties>"), "  <property name=\"author\" value=\"me\"/>\n");
    const auto path = folder_ / "extra.tmx";
    writeFileText(path, text);
    const TiledImport imported = importTiledMap(path, nullptr);
    EXPECT_EQ(savedForm(imported.file), savedForm(original_));
    EXPECT_EQ(imported.warning, path.string() +
                                    ": left out what a level cannot hold: map property "
                                    "\"author\", tile layer \"Trees\", object layer \"Enemies\"");
}

TEST_F(TiledMapRefusal, TheToolWritesNothingForARefusedMap) {
    const auto map = changedMap([](TiledMap& map) { cell(map, 0, 4, 4) |= 0x40000000u; });
    const auto out = folder_ / "out";
    const ToolRun run = runTool("tmx import " + shellQuoted(map) + " " + shellQuoted(out));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, AllOf(HasSubstr(map.string()), HasSubstr("cell (4, 4)")));
    EXPECT_FALSE(std::filesystem::exists(out));
    // Broken files name themselves, the tile set included.
    writeFileText(folder_ / "L1BM.tsx", "<tileset");
    EXPECT_THAT(runTool("tmx import " + shellQuoted(exported_) + " " + shellQuoted(out)).errors,
                HasSubstr((folder_ / "L1BM.tsx").string() + ": this is not an XML file"));
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_EQ(runTool("tmx import only-one").exitCode, 2);
    EXPECT_EQ(runTool("tmx export L1MA1 x.tmx --data d --config c --format rle").exitCode, 2);
}

} // namespace
} // namespace marvek::test
