#include "data/levelExport.h"
#include "data/openLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsFont.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/packedFile.h"
#include "native/marvek.h"
#include "specials/clsSpecialSet.h"
#include "support/tool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <tuple>

namespace marvek::test {
namespace {

const std::filesystem::path resourceFolder = std::filesystem::path(MARVEK_SOURCE_DIR) / "resources";
const std::filesystem::path configFolder = resourceFolder / "config";
constexpr int sampleWorlds = 3;
constexpr int levelsPerWorld = 2;

std::string worldName(int world) {
    return "world" + std::to_string(world);
}
std::string levelName(int world, int index) {
    return "L" + std::to_string(world) + "MA" + std::to_string(index);
}

// One generated data folder shared by the tests of a program run.
const std::filesystem::path& dataFolder() {
    static const TempDir folder;
    static const bool written =
        runTool("sample-data " + shellQuoted(folder / "data")).exitCode == 0;
    (void)written;
    static const std::filesystem::path data = folder / "data";
    return data;
}

// Visits every definition of the configurations, read as the editor reads them.
void forEachSpecial(std::initializer_list<std::string> names,
                    const std::function<void(const clsSpecial&)>& visit) {
    clsSpecialSet set;
    for (const std::string& name : names) {
        set.loadFrom(configFolder / (name + ".cfg"));
    }
    for (std::int32_t i = 0; i < set.count(); ++i) {
        visit(set.getSpecial(i));
    }
}

TEST(Resources, CommittedFilesAreWhatTheToolDrawsAndBadArgumentsAreRefused) {
    const TempDir drawn;
    ASSERT_EQ(runTool("draw-resources " + shellQuoted(drawn.path())).exitCode, 0);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(drawn.path())) {
        if (entry.is_regular_file()) {
            const auto relative = std::filesystem::relative(entry.path(), drawn.path());
            EXPECT_EQ(readBytes(entry.path()), readBytes(resourceFolder / relative)) << relative;
            ++files;
        }
    }
    EXPECT_GE(files, 2u + sampleWorlds + 2u);
    EXPECT_EQ(runTool("draw-resources").exitCode, 2);
    EXPECT_EQ(runTool("sample-data").exitCode, 2);
    EXPECT_EQ(runTool("sample-data a b").exitCode, 2);
    writeBytes(drawn / "file", {1});
    EXPECT_EQ(runTool("sample-data " + shellQuoted(drawn / "file" / "below")).exitCode, 1);
    for (const char* name : {"game.bmp", "bold.bmp"}) {
        const std::int32_t font =
            fontLoadFromBitmap((resourceFolder / "fonts" / name).string().c_str());
        ASSERT_NE(font, 0) << name;
        EXPECT_EQ(fontGetCharWidth(font), 8);
        EXPECT_EQ(fontGetCharHeight(font), 8);
        fontDestroy(font);
    }
}

// A sprite rectangle that misses its picture on the sheet would show as
// nothing; unknown.cfg numbers every ID.
TEST(Resources, SpriteDefinitionsFrameTheirPicturesAndUnknownNumbersEveryId) {
    clsBitStream stream;
    stream.loadFromFile(dataFolder() / "L1ET");
    clsSurface sheet;
    ASSERT_TRUE(sheet.planarLoadFromBits(stream, 320, 320, 5));
    forEachSpecial({"common", "world1", "world2", "world3"}, [&](const clsSpecial& special) {
        SCOPED_TRACE(special.label());
        if (special.Kind != SpecialKind::sprite) {
            return;
        }
        const auto [x, y] = special.imgOffset;
        const auto [width, height] = special.imgSize;
        ASSERT_TRUE(x >= 0 && y >= 0 && x + width <= 320 && y + height <= 320);
        // Painted in each half of the rectangle, and in a quarter of it at least.
        int painted = 0, left = 0, top = 0;
        for (std::int32_t j = 0; j < height; ++j) {
            for (std::int32_t i = 0; i < width; ++i) {
                const bool ink =
                    sheet.planarPixels()[static_cast<std::size_t>((y + j) * 320 + x + i)];
                painted += ink;
                left += ink && 2 * i < width;
                top += ink && 2 * j < height;
            }
        }
        EXPECT_GT(painted, width * height / 4);
        EXPECT_TRUE(left > 0 && left < painted && top > 0 && top < painted)
            << "the rectangle misses the picture";
    });

    std::int32_t id = 0;
    forEachSpecial({"unknown"}, [&](const clsSpecial& special) {
        EXPECT_EQ(std::tuple(special.Id, special.Kind, special.Tag),
                  std::tuple(++id, SpecialKind::number, "unknown"));
    });
    EXPECT_EQ(id, 63);
}

TEST(SampleData, EveryRunWritesTheSameBytesAndATitlePicture) {
    ASSERT_TRUE(std::filesystem::exists(dataFolder() / "MPIC"));
    const TempDir second;
    ASSERT_EQ(runTool("sample-data " + shellQuoted(second.path())).exitCode, 0);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dataFolder())) {
        const auto name = entry.path().filename();
        EXPECT_EQ(readBytes(entry.path()), readBytes(second / name.string())) << name;
        ++files;
    }
    // MPIC, and per world a tile set, a sprite sheet and the levels.
    EXPECT_EQ(files, 1u + sampleWorlds * (2u + levelsPerWorld));
    // The title picture: five planes and a palette, packed.
    clsBitStream stream = getFileBits(dataFolder() / "MPIC");
    EXPECT_EQ(stream.Size(), 320 * 256 * 5 / 8 + 64);
    clsSurface picture;
    ASSERT_TRUE(picture.planarLoadFromBits(stream, 320, 256, 5));
    clsPalette palette;
    palette.loadFrom(stream, 5);
    EXPECT_TRUE(picture.planarToSurface(palette, -1));
}

// The export of a level is its full size and holds many colours: a picture,
// not an empty or single-colour frame.
void expectExports(const OpenedLevel& opened) {
    clsFont font;
    ASSERT_TRUE(font.loadFromFile(resourceFolder / "fonts" / "game.bmp"));
    const clsBackBuffer picture =
        renderLevelExport(opened.level, opened.tileSet, opened.specialSet,
                          {defaultTagChoice(opened.specialSet), false, clsRenderOptions(font)});
    EXPECT_EQ(std::pair(picture.width(), picture.height()), std::pair(300 * 16, 84 * 16));
    const std::uint32_t* pixels = surfaceGetDataPtr(picture.surface());
    const std::set<std::uint32_t> colours(pixels, pixels + picture.width() * picture.height());
    EXPECT_GE(colours.size(), 16u);
    const TempDir folder;
    writeExportBitmap(picture, folder / "level.bmp");
    EXPECT_EQ(std::filesystem::file_size(folder / "level.bmp"), 54u + 300u * 16 * 84 * 16 * 4);
}

// Every sample level opens with its world's configuration as in the editor,
// and uses no special that is not defined: one would show up as unknown.
TEST(SampleData, EveryLevelOpensAtTheGameSizesAndUsesOnlyDefinedSpecials) {
    for (int world = 1; world <= sampleWorlds; ++world) {
        for (int index = 1; index <= levelsPerWorld; ++index) {
            SCOPED_TRACE(levelName(world, index));
            EXPECT_TRUE(isFileIMP(dataFolder() / levelName(world, index)));
            const OpenedLevel opened = openLevel(
                {resourceFolder, dataFolder(), levelName(world, index), worldName(world), false});
            EXPECT_EQ(std::pair(opened.level.width, opened.level.height), std::pair(300, 84));
            EXPECT_EQ(opened.palette.Count(), clsPalette::gameEntries);
            EXPECT_EQ(opened.level.defaultSpecials().size(), clsLevel::fileDefaultSpecials);
            EXPECT_EQ(std::filesystem::file_size(opened.tileFile), 160u * opened.tileSet.count())
                << "whole 16 x 16 tiles of 5 planes";
            EXPECT_EQ(std::filesystem::file_size(opened.spriteFile), 320u * 320u * 5u / 8u);
            std::map<std::int32_t, int> counts;
            for (const Cell& cell : opened.level.cells()) {
                if (cell.special != 0) {
                    ++counts[cell.special];
                    EXPECT_TRUE(opened.specialSet.specialExists(cell.special))
                        << "special " << int(cell.special) << " on the map";
                }
            }
            for (const std::uint8_t special : opened.level.defaultSpecials()) {
                EXPECT_TRUE(special == 0 || opened.specialSet.specialExists(special))
                    << "default special " << int(special);
            }
            EXPECT_EQ(counts[1], 1) << "one player start";
            EXPECT_EQ(counts[2], 1) << "one exit";
            EXPECT_GE(counts.size(), 10u) << "a level with something to do";
            expectExports(opened);
        }
    }
}

} // namespace
} // namespace marvek::test
