#include "sample/sampleSupport.h"

#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/packedFile.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace marvek {
namespace {

using namespace test;

std::filesystem::path dataFolder() {
    return sampleFolder() / "data";
}

std::string stringSetting(const clsConfiguration& configuration, const std::string& key) {
    const Value value = configuration.ReadSetting(key, std::string(), false);
    const auto* text = std::get_if<std::string>(&value);
    return text ? *text : std::string();
}

TEST(SampleData, EveryRunWritesTheSameBytes) {
    ASSERT_TRUE(std::filesystem::exists(dataFolder() / "MPIC"));
    const TempDir second;
    ASSERT_EQ(runTool("sample-data " + quoted(second.path())), 0);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dataFolder())) {
        const auto name = entry.path().filename();
        EXPECT_EQ(readBytes(entry.path()), readBytes(second / name.string())) << name;
        ++files;
    }
    // MPIC, and per world a tile set, a sprite sheet and the levels.
    EXPECT_EQ(files, 1u + sampleWorlds * (2u + levelsPerWorld));
}

TEST(SampleData, LevelsUnpackAndLoadAtTheGameSize) {
    for (int world = 1; world <= sampleWorlds; ++world) {
        for (int index = 1; index <= levelsPerWorld; ++index) {
            const auto path = dataFolder() / levelName(world, index);
            SCOPED_TRACE(path.string());
            EXPECT_TRUE(isFileIMP(path));
            clsBitStream stream = getFileBits(path);
            clsLevel level;
            clsPalette palette;
            ASSERT_TRUE(level.loadFromBits(stream, palette));
            EXPECT_EQ(level.width, 300);
            EXPECT_EQ(level.height, 84);
            EXPECT_EQ(palette.Count(), clsPalette::gameEntries);
            EXPECT_EQ(level.defaultSpecials().size(), clsLevel::fileDefaultSpecials);
        }
    }
}

TEST(SampleData, TitlePictureIsAPackedFivePlanePictureWithPalette) {
    clsBitStream stream = getFileBits(dataFolder() / "MPIC");
    EXPECT_EQ(stream.Size(), 320 * 256 * 5 / 8 + 64);
    clsSurface picture;
    ASSERT_TRUE(picture.planarLoadFromBits(stream, 320, 256, 5));
    clsPalette palette;
    palette.loadFrom(stream, 5);
    EXPECT_EQ(palette.Count(), 32);
    EXPECT_TRUE(picture.planarToSurface(palette, -1));
}

TEST(SampleData, WorldConfigurationsNameFilesOfTheRightSize) {
    for (int world = 1; world <= sampleWorlds; ++world) {
        SCOPED_TRACE(worldName(world));
        clsConfiguration configuration;
        configuration.LoadConfiguration(configFolder / (worldName(world) + ".cfg"));
        const auto tiles = dataFolder() / stringSetting(configuration, "tileSet");
        const auto sprites = dataFolder() / stringSetting(configuration, "spriteSet");
        ASSERT_TRUE(std::filesystem::is_regular_file(tiles));
        ASSERT_TRUE(std::filesystem::is_regular_file(sprites));
        const auto tileBytes = std::filesystem::file_size(tiles);
        EXPECT_GT(tileBytes, 0u);
        EXPECT_EQ(tileBytes % 160, 0u) << "whole 16 x 16 tiles of 5 planes";
        EXPECT_EQ(std::filesystem::file_size(sprites), 320u * 320u * 5u / 8u);
    }
}

// An ID on the map or in a tile's default specials without a definition
// would show up as unknown in the editor.
TEST(SampleData, EverySpecialUsedIsDefined) {
    const std::set<std::int32_t> common = definedIds(configFolder / "common.cfg");
    for (int world = 1; world <= sampleWorlds; ++world) {
        std::set<std::int32_t> defined = definedIds(configFolder / (worldName(world) + ".cfg"));
        defined.insert(common.begin(), common.end());
        for (int index = 1; index <= levelsPerWorld; ++index) {
            SCOPED_TRACE(levelName(world, index));
            clsBitStream stream = getFileBits(dataFolder() / levelName(world, index));
            clsLevel level;
            clsPalette palette;
            ASSERT_TRUE(level.loadFromBits(stream, palette));
            std::map<std::int32_t, int> counts;
            for (const Cell& cell : level.cells()) {
                if (cell.special != 0) {
                    ++counts[cell.special];
                    EXPECT_TRUE(defined.contains(cell.special))
                        << "special " << int(cell.special) << " on the map";
                }
            }
            for (const std::uint8_t special : level.defaultSpecials()) {
                EXPECT_TRUE(special == 0 || defined.contains(special))
                    << "default special " << int(special);
            }
            EXPECT_EQ(counts[1], 1) << "one player start";
            EXPECT_EQ(counts[2], 1) << "one exit";
            EXPECT_GE(counts.size(), 10u) << "a level with something to do";
        }
    }
}

} // namespace
} // namespace marvek
