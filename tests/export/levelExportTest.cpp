#include "exportTestSupport.h"
#include "openlevel/testWorld.h"

#include "data/levelExport.h"
#include "data/openLevel.h"
#include "graphics/clsBackBuffer.h"
#include "io/FileError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marvek {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class LevelExport : public ::testing::Test {
protected:
    OpenedLevel open(bool unknown = false) const {
        return openLevel({world.app(), world.data(), "L1MA1", "world1", unknown});
    }

    // The colour in the middle of a cell of the top row.
    std::uint32_t cellColour(const test::BitmapPixels& bitmap, std::int32_t x) const {
        return bitmap.colourAt(x * 16 + 8, 8);
    }

    std::uint32_t colour(std::int32_t index) const {
        return test::TestWorld::palette().Entry(index);
    }

    test::BitmapPixels exported(const OpenedLevel& opened, const ExportChoice& choice) const {
        const auto path = world.root() / "out.bmp";
        writeExportBitmap(
            renderLevelExport(opened.level, opened.tileSet, opened.specialSet, choice), path);
        return test::BitmapPixels(path);
    }

    test::TestWorld world;
};

TEST_F(LevelExport, EachTagIsOfferedOnceWithTheUsualFiveChosen) {
    EXPECT_THAT(defaultTagChoice(open(true).specialSet),
                ElementsAre(Pair("enemy", true), Pair("Enemy", false), Pair("hazard", true),
                            Pair("unknown", false)));
    EXPECT_THAT(defaultTagChoice(clsSpecialSet()), IsEmpty());
}

TEST_F(LevelExport, TheBitmapExtensionIsAddedUnlessPresentInAnyCase) {
    EXPECT_EQ(withBitmapExtension("map"), "map.bmp");
    EXPECT_EQ(withBitmapExtension("MAP.BMP"), "MAP.BMP");
    EXPECT_EQ(withBitmapExtension("map.Bmp"), "map.Bmp");
    EXPECT_EQ(withBitmapExtension("map.bmp.png"), "map.bmp.png.bmp");
    EXPECT_EQ(withBitmapExtension("bmp"), "bmp.bmp");
}

TEST_F(LevelExport, DrawsTheWholeLevelWithTheChosenTagsOnly) {
    OpenedLevel opened = open(true);
    opened.level.tileSpacing = 17; // the grid of the view plays no part
    ExportChoice choice;
    choice.tags = defaultTagChoice(opened.specialSet);

    const test::BitmapPixels plain = exported(opened, choice);
    ASSERT_TRUE(plain.isBitmap32());
    EXPECT_EQ(plain.width(), test::TestWorld::width * 16);
    EXPECT_EQ(plain.height(), test::TestWorld::height * 16);
    const std::uint32_t tile = colour(3);
    EXPECT_EQ(cellColour(plain, 0), colour(20)); // "enemy"
    EXPECT_EQ(cellColour(plain, 1), tile);       // "Enemy" is not chosen
    EXPECT_EQ(cellColour(plain, 2), tile);       // noExport
    EXPECT_EQ(cellColour(plain, 3), tile);       // "unknown" is not chosen
    EXPECT_EQ(cellColour(plain, 4), tile);       // no definition
    EXPECT_EQ(plain.colourAt(plain.width() - 1, plain.height() - 1), tile);

    choice.renderAll = true;
    EXPECT_EQ(cellColour(exported(opened, choice), 2), colour(22));
}

TEST_F(LevelExport, AnUnwritableFileIsAnErrorNamingIt) {
    const OpenedLevel opened = open();
    const auto path = world.root() / "missing" / "out.bmp";
    try {
        writeExportBitmap(renderLevelExport(opened.level, opened.tileSet, opened.specialSet, {}),
                          path);
        FAIL() << "written";
    } catch (const FileError& error) {
        EXPECT_EQ(error.path(), path);
    }
}

} // namespace
} // namespace marvek
