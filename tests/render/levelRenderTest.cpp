#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "native/marvek.h"
#include "support/expect.h"
#include "support/world.h"

#include <gtest/gtest.h>

namespace marvek::test {
namespace {

constexpr std::uint32_t outline = 0x00BF0000;
constexpr std::int32_t tileKinds = 8;

class LevelView : public ::testing::Test {
protected:
    void SetUp() override { buffer_.Create(64, 48, 1); }

    std::uint32_t pixel(std::int32_t x, std::int32_t y) const {
        return surfaceGetPixel(buffer_.surface(), x, y);
    }
    std::uint32_t tileColour(std::int32_t tile) const {
        return surfaceGetPixel(tiles_.Tile(tile).surface(), 0, 0);
    }
    void render(std::int32_t flags) {
        level_.renderTo(buffer_, camera_, tiles_, specials_, flags | renderFlags::clear, options_);
    }
    void expect(std::span<const Pixel> pixels) const { expectPixels(buffer_.surface(), pixels); }
    void expect(std::initializer_list<Pixel> pixels) const {
        expectPixels(buffer_.surface(), pixels);
    }

    // Draws the view with and without extra flags and tells whether the
    // pixel differs between the two.
    bool flagChangesPixel(std::int32_t flags, std::int32_t extra, std::int32_t x, std::int32_t y) {
        render(flags);
        const std::uint32_t without = pixel(x, y);
        render(flags | extra);
        return pixel(x, y) != without;
    }

    TempDir folder_;
    clsLevel level_ = columnLevel(20, 10, tileKinds);
    clsTileSet tiles_ = solidTiles(tileKinds);
    // The sheet holds solid squares of index 5, 32 x 32, and of index 9, 16 x 16.
    clsSpecialSet specials_ = specialSet(folder_, R"(
        big { Id = 1; Kind = "sprite"; imgOffset = "0,0"; imgSize = "32,32"; Tag = "enemy"; }
        box { Id = 2; Kind = "box"; Color = "0,255,0"; Tag = "enemy"; }
        number { Id = 3; Kind = "number"; Tag = "pickup"; }
        small { Id = 4; Kind = "sprite"; imgOffset = "64,0"; imgSize = "16,16"; noExport = 1;
                Tag = "pickup"; }
        hidden { Id = 5; Kind = "box"; Color = "0,0,255"; }
        secret { Id = 6; Kind = "box"; Color = "255,0,0"; Tag = "enemy"; noExport = 1; }
    )",
                                         spriteSheet({{0, 0, 32, 5}, {64, 0, 16, 9}}));
    clsFont font_ = blockFont(folder_, 2, 3);
    clsRenderOptions options_{font_};
    clsBackBuffer buffer_;
    clsCamera camera_;
};

TEST_F(LevelView, TheCameraPicksTheFirstCellAndItsOffsetUpToTheMapsEdgesAndTheGridSpacing) {
    camera_.x = 20;
    camera_.y = 18;
    render(renderFlags::tiles);
    // Column 1 starts 4 pixels left of the view, column 2 at x 12.
    const Pixel offset[] = {{0, 0, tileColour(1)},
                            {11, 0, tileColour(1)},
                            {12, 0, tileColour(2)},
                            {63, 47, tileColour(5)}};
    expect(offset);
    camera_.x = 20 * 16 - 64;
    camera_.y = 10 * 16 - 48;
    render(renderFlags::tiles);
    expect({{63, 47, tileColour(19 % tileKinds)}});
    // A view larger than the map: the camera ends negative.
    level_ = columnLevel(2, 1, tileKinds);
    camera_.x = -10;
    camera_.y = -5;
    render(renderFlags::tiles);
    expect({{9, 5, 0}, {10, 5, tileColour(0)}, {41, 20, tileColour(1)}, {42, 5, 0}, {10, 21, 0}});
    // The grid leaves a line between cells.
    level_ = columnLevel(20, 10, tileKinds);
    camera_.x = camera_.y = 0;
    level_.tileSpacing = 17;
    render(renderFlags::tiles);
    const Pixel grid[] = {{15, 15, tileColour(0)},
                          {16, 0, 0},
                          {0, 16, 0},
                          {17, 17, tileColour(1)},
                          {34, 0, tileColour(2)}};
    expect(grid);
}

TEST_F(LevelView, TilesOutsideTheSetAreSkippedAndWithoutClearTheOldFrameStays) {
    level_.cellAt(0, 0).tile = -1;
    level_.cellAt(1, 0).tile = tileKinds;
    render(renderFlags::tiles);
    expect({{0, 0, 0}, {16, 0, 0}, {32, 0, tileColour(2)}});
    surfaceFill(buffer_.surface(), 0x00123456);
    level_.renderTo(buffer_, camera_, tiles_, specials_, renderFlags::specials, options_);
    expect({{5, 5, 0x00123456}});
}

TEST_F(LevelView, LargeSpecialsReachIntoTheViewFromAboveAndLeftAndLaterOnesCoverEarlier) {
    ASSERT_EQ(specials_.maxWidth(), 32);
    level_.setSpecial(0, 0, 1);
    camera_.x = 24;
    camera_.y = 20;
    // The cell lies at (-24, -20); its 32 x 32 sprite covers the corner.
    render(renderFlags::specials);
    const std::uint32_t big = pixel(0, 0);
    EXPECT_NE(big, 0u);
    expect({{7, 11, big}, {8, 0, 0}, {0, 12, 0}});

    level_.setSpecial(0, 0, 0);
    level_.setSpecial(1, 0, 1);
    level_.setSpecial(2, 0, 4);
    camera_.x = camera_.y = 0;
    render(renderFlags::specials);
    EXPECT_NE(pixel(32, 0), big);
    expect({{16, 0, big}, {32, 16, big}});
}

TEST_F(LevelView, OversizeMarksAndOutlinesOnlyWithTheirFlags) {
    level_.setSpecial(1, 1, 1);
    level_.setSpecial(0, 0, 4);
    const std::int32_t base = renderFlags::tiles | renderFlags::specials;
    EXPECT_TRUE(flagChangesPixel(base, renderFlags::oversizeMarks, 20, 20));
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::oversizeMarks, 36, 36));
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::oversizeMarks, 5, 5));
    render(base | renderFlags::outlines);
    // The big sprite's bounds are its 32 x 32 picture at (16, 16).
    expect({{16, 30, outline}, {47, 30, outline}, {30, 47, outline}, {15, 0, outline}});
    EXPECT_NE(pixel(30, 30), outline);
    render(base);
    EXPECT_NE(pixel(16, 30), outline);
}

TEST_F(LevelView, UndefinedIdsShowInLightRedOnlyWithTheirFlagBoxesAndNumbersTintTheirCell) {
    level_.setSpecial(1, 0, 12);
    const std::int32_t base = renderFlags::specials;
    EXPECT_FALSE(flagChangesPixel(base, 0, 16, 0));
    render(base | renderFlags::undefinedIds);
    // "12" in the 2 x 3 block font: four pixels wide.
    const std::uint32_t text = pixel(16, 0);
    const std::uint32_t red = (text >> 16) & 0xFF;
    EXPECT_GT(red, (text >> 8) & 0xFF);
    EXPECT_GT(red, text & 0xFF);
    expect({{19, 2, text}, {20, 0, 0}, {16, 3, 0}});
    // ID 0 is "no special", never a number.
    level_.setSpecial(1, 0, 0);
    EXPECT_FALSE(flagChangesPixel(base, renderFlags::undefinedIds, 16, 0));
    // Boxes and numbers tint their cell.
    level_.setSpecial(0, 0, 2);
    level_.setSpecial(1, 0, 3);
    EXPECT_TRUE(flagChangesPixel(renderFlags::tiles, renderFlags::specials, 15, 15));
    EXPECT_FALSE(flagChangesPixel(renderFlags::tiles, renderFlags::specials, 0, 16));
    // The number "3" is one glyph wide.
    EXPECT_TRUE(flagChangesPixel(renderFlags::tiles, renderFlags::specials, 17, 2));
    EXPECT_FALSE(flagChangesPixel(renderFlags::tiles, renderFlags::specials, 18, 0));
}

TEST_F(LevelView, UndefinedNumbersStayInsideTheirCellsOnADarkPatch) {
    // Glyphs as wide as half a cell: "255" needs two lines, and without
    // the patches "255" and "63" side by side read as one number.
    const clsFont wide = blockFont(folder_, 8, 8);
    options_ = clsRenderOptions(wide);
    level_.setSpecial(1, 0, 255);
    level_.setSpecial(2, 0, 63);
    render(renderFlags::tiles | renderFlags::specials | renderFlags::undefinedIds);
    const std::uint32_t text = pixel(16, 0);
    EXPECT_GT((text >> 16) & 0xFF, (text >> 8) & 0xFF) << "light red";
    const std::uint32_t patch = pixel(24, 8);
    EXPECT_NE(patch, text);
    EXPECT_NE(patch, tileColour(1));
    // "25" on the first line, "5" under it, and the last column and row of
    // the cell left to the tile.
    expect({{23, 7, text}, {24, 0, text}, {16, 8, text}, {30, 14, patch}});
    expect({{31, 0, tileColour(1)}, {16, 15, tileColour(1)}, {31, 8, tileColour(1)}});
    expect({{32, 0, text}, {46, 6, text}, {47, 0, tileColour(2)}, {32, 8, tileColour(2)}});
}

TEST_F(LevelView, FaintSpecialsAreHalfwayBetweenTheTilesAndTheSpecials) {
    level_.setSpecial(0, 0, 4);
    level_.setSpecial(1, 1, 2);
    const std::int32_t shown = renderFlags::tiles | renderFlags::specials;
    render(renderFlags::tiles);
    const std::uint32_t tilesOnly[] = {pixel(5, 5), pixel(20, 20), pixel(40, 40)};
    render(shown);
    const std::uint32_t full[] = {pixel(5, 5), pixel(20, 20), pixel(40, 40)};
    render(shown | renderFlags::faintSpecials);
    const auto halfway = [](std::uint32_t a, std::uint32_t b) {
        std::uint32_t mean = 0;
        for (int shift = 0; shift < 32; shift += 8) {
            mean |= ((((a >> shift) & 0xFF) + ((b >> shift) & 0xFF)) / 2) << shift;
        }
        return mean;
    };
    ASSERT_NE(full[0], tilesOnly[0]);
    EXPECT_EQ(pixel(5, 5), halfway(tilesOnly[0], full[0])) << "a sprite";
    EXPECT_EQ(pixel(20, 20), halfway(tilesOnly[1], full[1])) << "a box";
    EXPECT_EQ(pixel(40, 40), tilesOnly[2]) << "no special, no change";
    // Without specials the flag draws nothing.
    render(renderFlags::tiles | renderFlags::faintSpecials);
    EXPECT_EQ(pixel(5, 5), tilesOnly[0]);
}

TEST_F(LevelView, TheSelectedSpecialSnapsToTheCellUnderThePointer) {
    camera_.x = 20;
    level_.renderSelectedSpecial(buffer_, camera_, *specials_.getSpecialLUT(2), 30, 20, options_);
    // Screen cells start at x -4, 12, 28, ... and y 0, 16, 32, ...
    expect({{27, 20, 0}, {44, 31, 0}, {28, 32, 0}, {28, 15, 0}});
    EXPECT_NE(pixel(28, 16), 0u);
    EXPECT_NE(pixel(43, 31), 0u);
    // A sprite gets its outline and, when oversized, the white box, always.
    buffer_.Clear();
    level_.renderSelectedSpecial(buffer_, camera_, *specials_.getSpecialLUT(1), 0, 0, options_);
    expect({{27, 5, outline}});
    EXPECT_NE(pixel(5, 5), pixel(20, 20));
}

TEST_F(LevelView, TheSelectMapPreviewAndItsFrameIgnoreTheMapAndUnknownTiles) {
    camera_.x = 20;
    TileGrid selectMap(2, 1);
    selectMap.at(0, 0) = 3;
    selectMap.at(1, 0) = 5;
    level_.renderSelectMap(buffer_, camera_, tiles_, selectMap, 30, 10);
    // The frame's right and bottom edges run over the preview's last pixels.
    const Pixel preview[] = {{27, 5, outline}, {28, 5, tileColour(3)}, {44, 5, tileColour(5)},
                             {59, 5, outline}, {30, 15, outline},      {60, 5, 0}};
    expect(preview);

    buffer_.Clear();
    level_ = columnLevel(1, 1, tileKinds);
    camera_.x = 0;
    selectMap.at(0, 0) = 500;
    selectMap.at(1, 0) = 2;
    level_.renderSelectMap(buffer_, camera_, tiles_, selectMap, 40, 20);
    expect({{33, 17, 0}, {50, 17, tileColour(2)}});
}

TEST_F(LevelView, TileRectanglesAreNormalisedAndCoverWholeCells) {
    camera_.x = 4;
    clsRectangle area = clsRectangle{2, 1, -1, 0};
    const std::uint32_t green = createBGRA(0, 255, 0, 0);
    area.colour = static_cast<std::int32_t>(green);
    level_.renderTileRect(buffer_, camera_, area, true);
    expect({{11, 20, 0}, {12, 16, green}, {43, 31, green}, {44, 20, 0}, {20, 32, 0}});
}

class LevelExport : public LevelView {
protected:
    void SetUp() override {
        LevelView::SetUp();
        level_ = columnLevel(4, 3, tileKinds);
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
        return pixel(x, y) != tileColour(x / 16 % tileKinds);
    }
};

TEST_F(LevelExport, DrawsTheChosenTagsLeavingOutNoExportOrEverySpecialWithRenderAll) {
    level_.setSpecial(3, 1, 6);
    exportWith({{"enemy", true}, {"pickup", true}}, false);
    expect({{16, 0, tileColour(1)}, {63, 47, tileColour(3)}});
    EXPECT_TRUE(tinted(5, 5));
    // noExport leaves out a box as well as a sprite.
    EXPECT_FALSE(tinted(16, 0));
    EXPECT_FALSE(tinted(53, 21));
    EXPECT_FALSE(tinted(32, 0)) << "untagged";
    EXPECT_FALSE(tinted(48, 0)) << "undefined";
    // No oversize box over the big sprite's own cell: its picture only.
    EXPECT_EQ(pixel(5, 37), pixel(20, 40));
    exportWith({{"enemy", false}, {"pickup", true}}, false);
    EXPECT_FALSE(tinted(5, 5));

    // Every special the set defines, whatever its tag and noExport.
    exportWith({}, true);
    EXPECT_TRUE(tinted(5, 5));
    EXPECT_TRUE(tinted(16, 0));
    EXPECT_TRUE(tinted(53, 21));
    EXPECT_TRUE(tinted(32, 0));
    EXPECT_FALSE(tinted(48, 0)) << "undefined IDs are never drawn";
}

} // namespace
} // namespace marvek::test
