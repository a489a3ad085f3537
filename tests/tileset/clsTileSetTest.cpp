#include "data/clsTileSet.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsPalette.h"
#include "graphics/clsRectangle.h"
#include "io/clsBitStream.h"
#include "native/marvek.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace marvek {
namespace {

constexpr int gamePlanes = 5;
constexpr std::int32_t bytesPerTile = 160;

clsPalette distinctPalette() {
    clsPalette palette;
    for (std::uint32_t i = 0; i < 32; ++i) {
        palette.addEntry(i * 8 | (255 - i * 8) << 8 | 0x40 << 16);
    }
    return palette;
}

std::uint32_t pixelOf(const clsPalette& palette, std::int32_t index) {
    const auto colour = palette.Entry(index);
    return createBGRA(getRed(colour), getGreen(colour), getBlue(colour), 0);
}

clsBitStream streamOver(std::vector<std::uint8_t> bytes) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer->data().begin());
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    return stream;
}

// Tile i is filled with colour index i % 32.
std::vector<std::uint8_t> uniformTiles(std::int32_t count) {
    std::vector<std::uint8_t> bytes;
    for (std::int32_t tile = 0; tile < count; ++tile) {
        for (int plane = 0; plane < gamePlanes; ++plane) {
            const bool set = ((tile % 32) >> plane) & 1;
            bytes.insert(bytes.end(), 32, set ? 0xFF : 0x00);
        }
    }
    return bytes;
}

clsTileSet loadTiles(std::vector<std::uint8_t> bytes, const clsPalette& palette) {
    auto stream = streamOver(std::move(bytes));
    clsTileSet tiles;
    tiles.loadFrom(stream, palette, gamePlanes);
    return tiles;
}

TEST(TileSet, CountRoundsHalfTilesToEven) {
    EXPECT_EQ(tileCountOf(160000, gamePlanes), 1000);
    EXPECT_EQ(tileCountOf(160080, gamePlanes), 1000);
    EXPECT_EQ(tileCountOf(160081, gamePlanes), 1001);
    EXPECT_EQ(tileCountOf(240, gamePlanes), 2) << "1.5 tiles round up to the even 2";
    EXPECT_EQ(tileCountOf(79, gamePlanes), 0);
    EXPECT_EQ(tileCountOf(0, gamePlanes), 0);
    EXPECT_EQ(tileCountOf(160, 0), 0);
    EXPECT_EQ(tileCountOf(160, 9), 0);
}

TEST(TileSet, PartialLastTileIsReadPastTheEnd) {
    const clsPalette palette = distinctPalette();
    const clsTileSet tiles = loadTiles(std::vector<std::uint8_t>(160081, 0xFF), palette);
    ASSERT_EQ(tiles.count(), 1001);
    const auto full = tiles.Tile(999).surface();
    EXPECT_EQ(surfaceGetPixel(full, 15, 15), pixelOf(palette, 31));
    // 81 bytes are left for the last tile: planes 0 and 1 and 136 pixels of plane 2.
    const auto last = tiles.Tile(1000).surface();
    EXPECT_EQ(surfaceGetPixel(last, 7, 8), pixelOf(palette, 7));
    EXPECT_EQ(surfaceGetPixel(last, 8, 8), pixelOf(palette, 3));
    EXPECT_THROW(tiles.Tile(1001), std::out_of_range);
    EXPECT_THROW(tiles.Tile(-1), std::out_of_range);
}

TEST(TileSet, EmptyStreamGivesNoTiles) {
    clsTileSet tiles = loadTiles(uniformTiles(3), distinctPalette());
    clsBitStream empty;
    tiles.loadFrom(empty, distinctPalette(), gamePlanes);
    EXPECT_EQ(tiles.count(), 0);
}

class TileBrowser : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(backBuffer.Create(320, 32, 1)); }

    std::uint32_t pixel(std::int32_t x, std::int32_t y) const {
        return surfaceGetPixel(backBuffer.surface(), x, y);
    }
    std::uint32_t tileColour(std::int32_t tile) const { return pixelOf(palette, tile % 32); }

    clsPalette palette = distinctPalette();
    clsTileSet tiles = loadTiles(uniformTiles(70), palette);
    clsBackBuffer backBuffer;
    clsCamera camera;
};

TEST_F(TileBrowser, StartsAtTheRowUnderTheCamera) {
    camera.y = 40;
    camera.viewHeight = 32;
    backBuffer.Clear();
    const auto cleared = pixel(319, 31);
    tiles.renderTo(backBuffer, camera);
    // Row 2 (tiles 40..59) begins 8 pixels above the top.
    EXPECT_EQ(pixel(0, 0), tileColour(40));
    EXPECT_EQ(pixel(16, 7), tileColour(41));
    EXPECT_EQ(pixel(319, 7), tileColour(59));
    EXPECT_EQ(pixel(0, 8), tileColour(60));
    EXPECT_EQ(pixel(9 * 16 + 15, 23), tileColour(69));
    // Tile 70 does not exist: the row stops there.
    EXPECT_EQ(pixel(10 * 16, 8), cleared);
    EXPECT_EQ(pixel(0, 24), cleared);
}

TEST_F(TileBrowser, SelectionIsNormalisedBeforeItIsDrawn) {
    backBuffer.Clear();
    const auto cleared = pixel(0, 0);
    clsRectangle selection;
    selection.left = 3;
    selection.top = 2;
    selection.width = -2;
    selection.height = -1;
    camera.y = 8;
    tiles.renderSelected(backBuffer, selection, camera, 1);
    // Tiles (1, 1) to (3, 2): pixels 16..63 across, 8..39 down with the camera.
    EXPECT_NE(pixel(16, 8), cleared);
    EXPECT_NE(pixel(63, 31), cleared);
    EXPECT_EQ(pixel(15, 8), cleared);
    EXPECT_EQ(pixel(64, 8), cleared);
    EXPECT_EQ(pixel(16, 7), cleared);
    EXPECT_EQ(selection.left, 3) << "the caller's rectangle is left alone";
}

} // namespace
} // namespace marvek
