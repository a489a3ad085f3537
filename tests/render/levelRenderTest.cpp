#include "renderTestSupport.h"

#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"

#include <gtest/gtest.h>

namespace marvek {
namespace {

using test::pixelAt;
using test::pixelOf;

constexpr std::uint32_t outline = 0x00BF0000;
constexpr std::int32_t tileKinds = 8;

class LevelView : public ::testing::Test {
protected:
    std::uint32_t tileColour(std::int32_t tile) const { return pixelOf(tiles_.Tile(tile)); }

    void render(std::int32_t flags) {
        level_.renderTo(buffer_, camera_, tiles_, specials_, flags, options_);
    }

    // Draws the view with and without extra flags and tells whether the
    // pixel differs between the two.
    bool flagChangesPixel(std::int32_t flags, std::int32_t extra, std::int32_t x, std::int32_t y) {
        render(flags | renderFlags::clear);
        const std::uint32_t without = pixelAt(buffer_, x, y);
        render(flags | extra | renderFlags::clear);
        return pixelAt(buffer_, x, y) != without;
    }

    test::TempDir folder_;
    clsLevel level_ = test::columnLevel(20, 10, tileKinds);
    clsTileSet tiles_ = test::solidTiles(tileKinds);
    clsSpecialSet specials_ = test::specialSet(folder_, R"(
        big { Id = 1; Kind = "sprite"; imgOffset = "0,0"; imgSize = "32,32"; Tag = "enemy"; }
        box { Id = 2; Kind = "box"; Color = "0,255,0"; Tag = "enemy"; }
        number { Id = 3; Kind = "number"; Tag = "pickup"; }
        small { Id = 4; Kind = "sprite"; imgOffset = "64,0"; imgSize = "16,16"; noExport = 1;
                Tag = "pickup"; }
        hidden { Id = 5; Kind = "box"; Color = "0,0,255"; }
    )");
    clsFont font_ = test::blockFont(folder_);
    clsRenderOptions options_{font_};
    clsBackBuffer buffer_ = test::backBuffer(64, 48);
    clsCamera camera_;
};

TEST_F(LevelView, TheCameraPicksTheFirstCellAndItsOffset) {
    camera_.x = 20;
    camera_.y = 18;
    render(renderFlags::tiles | renderFlags::clear);
    // Column 1 starts 4 pixels left of the view, column 2 at x 12.
    EXPECT_EQ(pixelAt(buffer_, 0, 0), tileColour(1));
    EXPECT_EQ(pixelAt(buffer_, 11, 0), tileColour(1));
    EXPECT_EQ(pixelAt(buffer_, 12, 0), tileColour(2));
    EXPECT_EQ(pixelAt(buffer_, 63, 47), tileColour(5));
}

TEST_F(LevelView, TheGridLeavesALineBetweenCells) {
    level_.tileSpacing = 17;
    render(renderFlags::tiles | renderFlags::clear);
    EXPECT_EQ(pixelAt(buffer_, 15, 15), tileColour(0));
    EXPECT_EQ(pixelAt(buffer_, 16, 0), 0u);
    EXPECT_EQ(pixelAt(buffer_, 0, 16), 0u);
    EXPECT_EQ(pixelAt(buffer_, 17, 17), tileColour(1));
    EXPECT_EQ(pixelAt(buffer_, 34, 0), tileColour(2));
}

TEST_F(LevelView, TheViewStopsAtTheMapsEdges) {
    camera_.x = 20 * 16 - 64;
    camera_.y = 10 * 16 - 48;
    render(renderFlags::tiles | renderFlags::clear);
    EXPECT_EQ(pixelAt(buffer_, 63, 47), tileColour(19 % tileKinds));

    // A view larger than the map: the camera ends negative.
    level_ = test::columnLevel(2, 1, tileKinds);
    camera_.x = -10;
    camera_.y = -5;
    render(renderFlags::tiles | renderFlags::clear);
    EXPECT_EQ(pixelAt(buffer_, 9, 5), 0u);
    EXPECT_EQ(pixelAt(buffer_, 10, 5), tileColour(0));
    EXPECT_EQ(pixelAt(buffer_, 41, 20), tileColour(1));
    EXPECT_EQ(pixelAt(buffer_, 42, 5), 0u);
    EXPECT_EQ(pixelAt(buffer_, 10, 21), 0u);
}

TEST_F(LevelView, TilesOutsideTheSetAreSkipped) {
    level_.cellAt(0, 0).tile = -1;
    level_.cellAt(1, 0).tile = tileKinds;
    render(renderFlags::tiles | renderFlags::clear);
    EXPECT_EQ(pixelAt(buffer_, 0, 0), 0u);
    EXPECT_EQ(pixelAt(buffer_, 16, 0), 0u);
    EXPECT_EQ(pixelAt(buffer_, 32, 0), tileColour(2));
}

TEST_F(LevelView, WithoutClearTheOldFrameStays) {
    surfaceFill(buffer_.surface(), 0x00123456);
    render(renderFlags::specials);
    EXPECT_EQ(pixelAt(buffer_, 5, 5), 0x00123456u);
}

TEST_F(LevelView, LargeSpecialsReachIntoTheViewFromAboveAndLeft) {
    ASSERT_EQ(specials_.maxWidth(), 32);
    level_.setSpecial(0, 0, 1);
    camera_.x = 24;
    camera_.y = 20;
    // The cell lies at (-24, -20); its 32 x 32 sprite covers the corner.
    render(renderFlags::specials | renderFlags::clear);
    const std::uint32_t sprite = pixelAt(buffer_, 0, 0);
    EXPECT_NE(sprite, 0u);
    EXPECT_EQ(pixelAt(buffer_, 7, 11), sprite);
    EXPECT_EQ(pixelAt(buffer_, 8, 0), 0u);
    EXPECT_EQ(pixelAt(buffer_, 0, 12), 0u);
}

TEST_F(LevelView, LaterSpecialsCoverEarlierOnes) {
    level_.setSpecial(1, 0, 1);
    level_.setSpecial(2, 0, 4);
    render(renderFlags::specials | renderFlags::clear);
    const std::uint32_t big = pixelAt(buffer_, 16, 0);
    EXPECT_NE(pixelAt(buffer_, 32, 0), big);
    EXPECT_EQ(pixelAt(buffer_, 32, 16), big);
}

TEST_F(LevelView, OversizeMarksAndOutlinesOnlyWithTheirFlags) {
    level_.setSpecial(1, 1, 1);
    level_.setSpecial(0, 0, 4);
    const std::int32_t base = renderFlags::tiles | renderFlags::specials;
    EXPECT_TRUE(flagChangesPixel(base, renderFlags::oversizeMarks, 20, 20));
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::oversizeMarks, 36, 36));
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::oversizeMarks, 5, 5));

    render(base | renderFlags::outlines | renderFlags::clear);
    // The big sprite's bounds are its 32 x 32 picture at (16, 16).
    EXPECT_EQ(pixelAt(buffer_, 16, 30), outline);
    EXPECT_EQ(pixelAt(buffer_, 47, 30), outline);
    EXPECT_EQ(pixelAt(buffer_, 30, 47), outline);
    EXPECT_NE(pixelAt(buffer_, 30, 30), outline);
    EXPECT_EQ(pixelAt(buffer_, 15, 0), outline);
    render(base | renderFlags::clear);
    EXPECT_NE(pixelAt(buffer_, 16, 30), outline);
}

TEST_F(LevelView, UndefinedIdsShowInLightRedOnlyWithTheirFlag) {
    level_.setSpecial(1, 0, 12);
    const std::int32_t base = renderFlags::specials;
    EXPECT_FALSE(flagChangesPixel(base, 0, 16, 0));
    render(base | renderFlags::undefinedIds | renderFlags::clear);
    // "12" in the 2 x 3 block font: four pixels wide.
    const std::uint32_t text = pixelAt(buffer_, 16, 0);
    const std::uint32_t red = (text >> 16) & 0xFF;
    EXPECT_GT(red, (text >> 8) & 0xFF);
    EXPECT_GT(red, text & 0xFF);
    EXPECT_EQ(pixelAt(buffer_, 19, 2), text);
    EXPECT_EQ(pixelAt(buffer_, 20, 0), 0u);
    EXPECT_EQ(pixelAt(buffer_, 16, 3), 0u);

    // ID 0 is "no special", never a number.
    level_.setSpecial(1, 0, 0);
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::undefinedIds, 16, 0));
}

TEST_F(LevelView, BoxesAndNumbersTintTheirCell) {
    level_.setSpecial(0, 0, 2);
    level_.setSpecial(1, 0, 3);
    const std::int32_t base = renderFlags::tiles;
    EXPECT_TRUE(flagChangesPixel(base, renderFlags::specials, 15, 15));
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::specials, 0, 16));
    // The number "3" is one glyph wide.
    EXPECT_TRUE(flagChangesPixel(base, renderFlags::specials, 17, 2));
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::specials, 18, 0));
}

TEST_F(LevelView, TheSelectedSpecialSnapsToTheCellUnderThePointer) {
    camera_.x = 20;
    const clsSpecial& box = *specials_.getSpecialLUT(2);
    level_.renderSelectedSpecial(buffer_, camera_, box, 30, 20, options_);
    // Screen cells start at x -4, 12, 28, ... and y 0, 16, 32, ...
    EXPECT_EQ(pixelAt(buffer_, 27, 20), 0u);
    EXPECT_NE(pixelAt(buffer_, 28, 16), 0u);
    EXPECT_NE(pixelAt(buffer_, 43, 31), 0u);
    EXPECT_EQ(pixelAt(buffer_, 44, 31), 0u);
    EXPECT_EQ(pixelAt(buffer_, 28, 32), 0u);
    EXPECT_EQ(pixelAt(buffer_, 28, 15), 0u);

    // A sprite gets its outline and, when oversized, the white box, always.
    buffer_.Clear();
    const clsSpecial& big = *specials_.getSpecialLUT(1);
    level_.renderSelectedSpecial(buffer_, camera_, big, 0, 0, options_);
    EXPECT_EQ(pixelAt(buffer_, 27, 5), outline);
    const std::uint32_t picture = pixelAt(buffer_, 20, 20);
    EXPECT_NE(pixelAt(buffer_, 5, 5), picture);
}

TEST_F(LevelView, TheSelectMapPreviewAndItsFrame) {
    camera_.x = 20;
    TileGrid selectMap(2, 1);
    selectMap.at(0, 0) = 3;
    selectMap.at(1, 0) = 5;
    level_.renderSelectMap(buffer_, camera_, tiles_, selectMap, 30, 10);
    EXPECT_EQ(pixelAt(buffer_, 27, 5), outline);
    EXPECT_EQ(pixelAt(buffer_, 28, 5), tileColour(3));
    EXPECT_EQ(pixelAt(buffer_, 44, 5), tileColour(5));
    // The frame's right and bottom edges run over the preview's last pixels.
    EXPECT_EQ(pixelAt(buffer_, 59, 5), outline);
    EXPECT_EQ(pixelAt(buffer_, 30, 15), outline);
    EXPECT_EQ(pixelAt(buffer_, 60, 5), 0u);
}

TEST_F(LevelView, TheSelectMapPreviewIgnoresTheMapAndUnknownTiles) {
    level_ = test::columnLevel(1, 1, tileKinds);
    TileGrid selectMap(2, 1);
    selectMap.at(0, 0) = 500;
    selectMap.at(1, 0) = 2;
    level_.renderSelectMap(buffer_, camera_, tiles_, selectMap, 40, 20);
    EXPECT_EQ(pixelAt(buffer_, 33, 17), 0u);
    EXPECT_EQ(pixelAt(buffer_, 50, 17), tileColour(2));
}

TEST_F(LevelView, TileRectanglesAreNormalisedAndCoverWholeCells) {
    camera_.x = 4;
    clsRectangle rectangle;
    rectangle.left = 2;
    rectangle.top = 1;
    rectangle.width = -1;
    rectangle.colour = static_cast<std::int32_t>(createBGRA(0, 255, 0, 0));
    level_.renderTileRect(buffer_, camera_, rectangle, true);
    const auto green = static_cast<std::uint32_t>(rectangle.colour);
    EXPECT_EQ(pixelAt(buffer_, 11, 20), 0u);
    EXPECT_EQ(pixelAt(buffer_, 12, 16), green);
    EXPECT_EQ(pixelAt(buffer_, 43, 31), green);
    EXPECT_EQ(pixelAt(buffer_, 44, 20), 0u);
    EXPECT_EQ(pixelAt(buffer_, 20, 32), 0u);
}

class LevelExport : public LevelView {
protected:
    void SetUp() override {
        level_ = test::columnLevel(4, 3, tileKinds);
        level_.tileSpacing = 17;
        level_.setSpecial(0, 0, 2);
        level_.setSpecial(1, 0, 4);
        level_.setSpecial(2, 0, 5);
        level_.setSpecial(3, 0, 12);
        level_.setSpecial(0, 2, 1);
    }

    void exportWith(const TagChoice& tags, bool includeNoExport) {
        buffer_.Clear();
        level_.renderExportTo(buffer_, tiles_, specials_, tags, includeNoExport, options_);
    }

    bool tinted(std::int32_t x, std::int32_t y) const {
        return pixelAt(buffer_, x, y) != tileColour(x / 16 % tileKinds);
    }
};

TEST_F(LevelExport, DrawsEveryCellAtSixteenPixels) {
    exportWith({}, true);
    EXPECT_EQ(pixelAt(buffer_, 16, 0), tileColour(1));
    EXPECT_EQ(pixelAt(buffer_, 63, 47), tileColour(3));
    EXPECT_EQ(pixelAt(buffer_, 5, 5), tileColour(0));
    // Undefined IDs and the untagged special are never drawn.
    EXPECT_FALSE(tinted(48, 0));
    EXPECT_FALSE(tinted(32, 0));
}

TEST_F(LevelExport, ChoosesSpecialsByTag) {
    exportWith({{"enemy", false}, {"pickup", true}}, true);
    EXPECT_FALSE(tinted(5, 5));
    EXPECT_TRUE(tinted(16, 0));
    exportWith({{"enemy", true}, {"pickup", false}}, true);
    EXPECT_TRUE(tinted(5, 5));
    EXPECT_FALSE(tinted(16, 0));
    // No oversize box over the big sprite's own cell: its picture only.
    const std::uint32_t picture = pixelAt(buffer_, 20, 40);
    EXPECT_EQ(pixelAt(buffer_, 5, 37), picture);
}

TEST_F(LevelExport, LeavesOutNoExportSpritesUnlessAskedFor) {
    exportWith({{"pickup", true}}, false);
    EXPECT_FALSE(tinted(16, 0));
    exportWith({{"pickup", true}}, true);
    EXPECT_TRUE(tinted(16, 0));
}

} // namespace
} // namespace marvek
