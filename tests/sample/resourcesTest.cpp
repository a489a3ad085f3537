#include "sample/sampleSupport.h"

#include "configuration/clsConfiguration.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/clsBitStream.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace marvek {
namespace {

using namespace test;

std::vector<std::filesystem::path> specialFiles() {
    std::vector<std::filesystem::path> files{configFolder / "common.cfg"};
    for (int world = 1; world <= sampleWorlds; ++world) {
        files.push_back(configFolder / (worldName(world) + ".cfg"));
    }
    return files;
}

// Every definition of a configuration, read as the editor reads it.
std::vector<clsSpecial> specialsOf(const std::filesystem::path& path) {
    clsConfiguration configuration;
    configuration.LoadConfiguration(path);
    std::vector<clsSpecial> specials;
    const SectionPtr section = sectionOf(configuration.Root(true)->find("Specials"));
    EXPECT_TRUE(section) << path;
    if (section) {
        for (const auto& [key, value] : *section) {
            specials.emplace_back();
            specials.back().loadFromDict(*sectionOf(&value), path, key);
        }
    }
    return specials;
}

TEST(Resources, CommittedFilesAreWhatTheToolDraws) {
    const TempDir drawn;
    ASSERT_EQ(runTool("draw-resources " + quoted(drawn.path())), 0);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(drawn.path())) {
        if (entry.is_regular_file()) {
            const auto relative = std::filesystem::relative(entry.path(), drawn.path());
            EXPECT_EQ(readBytes(entry.path()), readBytes(resourceFolder / relative)) << relative;
            ++files;
        }
    }
    EXPECT_GE(files, 2u + sampleWorlds + 2u);
}

TEST(Resources, FontsLoadWithEightPixelCells) {
    for (const char* name : {"game.bmp", "bold.bmp"}) {
        const auto path = resourceFolder / "fonts" / name;
        const std::int32_t font = fontLoadFromBitmap(path.string().c_str());
        ASSERT_NE(font, 0) << name;
        EXPECT_EQ(fontGetCharWidth(font), 8);
        EXPECT_EQ(fontGetCharHeight(font), 8);
        fontDestroy(font);
    }
}

TEST(Resources, WorldPalettesHoldThirtyTwoColours) {
    for (int world = 1; world <= sampleWorlds; ++world) {
        const auto path = resourceFolder / "pal" / (worldName(world) + ".pal");
        EXPECT_EQ(std::filesystem::file_size(path), 128u) << path;
    }
}

TEST(Resources, SpecialDefinitionsUseEveryKindAndTheExportTags) {
    std::set<SpecialKind> kinds;
    std::set<std::string> tags;
    bool oversizedSprite = false;
    bool hidden = false;
    for (const auto& path : specialFiles()) {
        for (const clsSpecial& special : specialsOf(path)) {
            kinds.insert(special.Kind);
            tags.insert(special.Tag);
            oversizedSprite |= special.Kind == SpecialKind::sprite && special.imgSize.height > 16 &&
                               special.Offset.y < 0;
            hidden |= special.noExport != 0;
        }
    }
    EXPECT_EQ(kinds.size(), 5u);
    for (const char* tag : {"enemy", "hazard", "pickup", "graphic", "playerstart"}) {
        EXPECT_TRUE(tags.contains(tag)) << tag;
    }
    EXPECT_TRUE(oversizedSprite);
    EXPECT_TRUE(hidden);
}

// A sprite rectangle that misses its picture on the sheet shows as nothing.
TEST(Resources, SpriteRectanglesFrameAPictureOnTheSheet) {
    const auto sheetFile = sampleFolder() / "data" / "L1ET";
    clsBitStream stream;
    stream.loadFromFile(sheetFile);
    clsSurface sheet;
    ASSERT_TRUE(sheet.planarLoadFromBits(stream, 320, 320, 5));
    const auto pixel = [&](std::int32_t x, std::int32_t y) {
        return sheet.planarPixels()[static_cast<std::size_t>(y * 320 + x)];
    };
    for (const auto& path : specialFiles()) {
        for (const clsSpecial& special : specialsOf(path)) {
            if (special.Kind != SpecialKind::sprite) {
                continue;
            }
            SCOPED_TRACE(special.label());
            const auto [x, y] = special.imgOffset;
            const auto [width, height] = special.imgSize;
            ASSERT_TRUE(x >= 0 && y >= 0 && width > 0 && height > 0 && x + width <= 320 &&
                        y + height <= 320);
            int painted = 0;
            std::int32_t left = width, right = -1, top = height, bottom = -1;
            for (std::int32_t j = 0; j < height; ++j) {
                for (std::int32_t i = 0; i < width; ++i) {
                    if (pixel(x + i, y + j) != 0) {
                        ++painted;
                        left = std::min(left, i);
                        right = std::max(right, i);
                        top = std::min(top, j);
                        bottom = std::max(bottom, j);
                    }
                }
            }
            EXPECT_GT(painted, width * height / 4);
            EXPECT_GE(2 * (right - left + 1), width) << "the rectangle misses the picture";
            EXPECT_GE(2 * (bottom - top + 1), height) << "the rectangle misses the picture";
        }
    }
}

TEST(Resources, ImageSpecialsFindTheirBitmaps) {
    for (const auto& path : specialFiles()) {
        for (const clsSpecial& special : specialsOf(path)) {
            if (special.Kind == SpecialKind::image) {
                const auto file = resourceFolder / "bitmaps" / special.imgFile;
                const std::int32_t surface = surfaceLoadFromBitmap(file.string().c_str());
                EXPECT_NE(surface, 0) << file;
                surfaceDestroy(surface);
            }
        }
    }
}

TEST(Resources, UnknownConfigurationNumbersEveryId) {
    const auto specials = specialsOf(configFolder / "unknown.cfg");
    ASSERT_EQ(specials.size(), 63u);
    for (std::size_t i = 0; i < specials.size(); ++i) {
        EXPECT_EQ(specials[i].Id, static_cast<std::int32_t>(i + 1));
        EXPECT_EQ(specials[i].Kind, SpecialKind::number);
        EXPECT_EQ(specials[i].Tag, "unknown");
    }
}

TEST(Resources, SampleDataCommandRejectsBadArguments) {
    EXPECT_EQ(runTool("sample-data"), 2);
    EXPECT_EQ(runTool("sample-data a b"), 2);
    EXPECT_EQ(runTool("draw-resources"), 2);
    const TempDir folder;
    writeBytes(folder / "file", {1});
    EXPECT_EQ(runTool("sample-data " + quoted(folder / "file" / "below")), 1);
}

} // namespace
} // namespace marvek
