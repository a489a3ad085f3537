#include "data/clsTileSet.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "native/marvek.h"
#include "support/expect.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace marvek::test {
namespace {

constexpr int gamePlanes = 5;

std::uint32_t pixelOf(std::uint32_t colour) {
    return createBGRA(getRed(colour), getGreen(colour), getBlue(colour), 0);
}

TEST(TileSet, CountRoundsHalfTilesToEven) {
    EXPECT_EQ(tileCountOf(160000, gamePlanes), 1000);
    EXPECT_EQ(tileCountOf(160080, gamePlanes), 1000);
    EXPECT_EQ(tileCountOf(160081, gamePlanes), 1001);
    EXPECT_EQ(tileCountOf(240, gamePlanes), 2) << "1.5 tiles round up to the even 2";
    EXPECT_EQ(tileCountOf(79, gamePlanes), 0);
    EXPECT_EQ(tileCountOf(160, 0), 0);
    EXPECT_EQ(tileCountOf(160, 9), 0);
}

TEST(TileSet, PartialLastTileIsReadPastTheEndAndAnEmptyStreamGivesNone) {
    const clsPalette palette = gamePalette();
    auto stream = streamOver(std::vector<std::uint8_t>(160081, 0xFF));
    clsTileSet tiles;
    tiles.loadFrom(stream, palette, gamePlanes);
    ASSERT_EQ(tiles.count(), 1001);
    EXPECT_EQ(surfaceGetPixel(tiles.Tile(999).surface(), 15, 15), pixelOf(palette.Entry(31)));
    // 81 bytes are left for the last tile: planes 0 and 1 and 136 pixels of plane 2.
    const auto last = tiles.Tile(1000).surface();
    EXPECT_EQ(surfaceGetPixel(last, 7, 8), pixelOf(palette.Entry(7)));
    EXPECT_EQ(surfaceGetPixel(last, 8, 8), pixelOf(palette.Entry(3)));
    EXPECT_THROW(tiles.Tile(1001), std::out_of_range);
    EXPECT_THROW(tiles.Tile(-1), std::out_of_range);
    clsBitStream empty;
    tiles.loadFrom(empty, palette, gamePlanes);
    EXPECT_EQ(tiles.count(), 0);
}

class TileBrowser : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(backBuffer.Create(320, 32, 1));
        backBuffer.Clear();
    }

    std::uint32_t pixel(std::int32_t x, std::int32_t y) const {
        return surfaceGetPixel(backBuffer.surface(), x, y);
    }
    std::uint32_t tileColour(std::int32_t tile) const {
        return surfaceGetPixel(tiles.Tile(tile).surface(), 0, 0);
    }

    clsTileSet tiles = solidTiles(70);
    clsBackBuffer backBuffer;
    clsCamera camera;
};

TEST_F(TileBrowser, StartsAtTheRowUnderTheCamera) {
    camera.y = 40;
    camera.viewHeight = 32;
    tiles.renderTo(backBuffer, camera);
    // Row 2 (tiles 40..59) begins 8 pixels above the top; tile 70 does not
    // exist, so the row stops there.
    const Pixel drawn[] = {{0, 0, tileColour(40)},
                           {16, 7, tileColour(41)},
                           {319, 7, tileColour(59)},
                           {0, 8, tileColour(60)},
                           {159, 23, tileColour(69)},
                           {160, 8, 0},
                           {0, 24, 0}};
    expectPixels(backBuffer.surface(), drawn);
}

TEST_F(TileBrowser, SelectionIsNormalisedBeforeItIsDrawn) {
    const clsRectangle selection = clsRectangle{3, 2, -2, -1};
    camera.y = 8;
    tiles.renderSelected(backBuffer, selection, camera, 1);
    // Tiles (1, 1) to (3, 2): pixels 16..63 across, 8..39 down with the camera.
    EXPECT_TRUE(pixel(16, 8) != 0 && pixel(63, 31) != 0);
    expectPixels(backBuffer.surface(), {{15, 8, 0}, {64, 8, 0}, {16, 7, 0}});
}

} // namespace
} // namespace marvek::test
