#include "graphics/clsBitmap.h"
#include "graphics/clsSurface.h"
#include "native/marvek.h"
#include "support/TempDir.h"
#include "support/expect.h"
#include "support/images.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <random>
#include <utility>
#include <vector>

namespace marvek::test {
namespace {

const std::uint32_t transparent = createBGRA(0, 0, 0, 255);

TEST(PlanarToSurface, MapsIndicesThroughThePaletteAndAnEmptyOneKeepsTheOldSurface) {
    auto image = planarImage(4, 1, {0, 1, 2, 7});
    const auto palette = paletteOf({0x000000FF, 0x00102030, 0x00FFFFFF});
    ASSERT_TRUE(image.planarToSurface(palette, 0));
    EXPECT_EQ(std::pair(image.width(), image.height()), std::pair(4, 1));
    // Index 0 is transparent here, and so is an index beyond the palette.
    expectPixels(image.surface(), {{0, 0, transparent},
                                   {1, 0, createBGRA(0x30, 0x20, 0x10, 0)},
                                   {2, 0, createBGRA(255, 255, 255, 0)},
                                   {3, 0, transparent}});
    EXPECT_EQ(image.palette().Count(), 3);
    ASSERT_TRUE(image.planarToSurface(palette, -1));
    EXPECT_EQ(surfaceGetPixel(image.surface(), 0, 0), createBGRA(255, 0, 0, 0));

    const auto before = image.surface();
    EXPECT_FALSE(image.planarToSurface(clsPalette{}, -1));
    EXPECT_EQ(image.surface(), before);
    EXPECT_EQ(surfaceGetPixel(before, 1, 0), createBGRA(0x30, 0x20, 0x10, 0));
    EXPECT_EQ(image.palette().Count(), 3);
}

TEST(PlanarCopyFrom, TakesARectangleInsideTheSource) {
    // 4 x 3, each pixel 10 * row + column.
    const auto source = planarImage(4, 3, {0, 1, 2, 3, 10, 11, 12, 13, 20, 21, 22, 23});
    clsSurface part;
    ASSERT_TRUE(part.planarCopyFrom(source, 1, 1, 3, 2));
    EXPECT_EQ(part.planarWidth(), 3);
    EXPECT_EQ(part.planarHeight(), 2);
    EXPECT_EQ(planarOf(part), (std::vector<std::uint8_t>{11, 12, 13, 21, 22, 23}));
    EXPECT_FALSE(part.planarCopyFrom(source, 2, 0, 3, 1)) << "passes the right edge";
    EXPECT_FALSE(part.planarCopyFrom(source, 0, -1, 1, 1));
    EXPECT_EQ(part.planarWidth(), 3) << "a refused copy leaves the image";
}

// The graphics browser stores pictures drawn with colours 16 to 31 this way.
TEST(PlanarShiftColors, ClampsBelowZeroAndWrapsAbove255) {
    auto image = planarImage(4, 1, {0, 15, 16, 31});
    image.planarShiftColors(-16);
    EXPECT_EQ(planarOf(image), (std::vector<std::uint8_t>{0, 0, 0, 15}));
    auto high = planarImage(1, 1, {250});
    high.planarShiftColors(16);
    EXPECT_EQ(planarOf(high), (std::vector<std::uint8_t>{10}));
}

TEST(PlanarBlit, PastesRowsAndLeavesOutWhatFallsOutside) {
    const auto stamp = planarImage(2, 2, {1, 2, 3, 4});
    auto canvas = planarImage(3, 3, std::vector<std::uint8_t>(9, 0));
    canvas.planarBlit(stamp, 1, 1);
    EXPECT_EQ(planarOf(canvas), (std::vector<std::uint8_t>{0, 0, 0, 0, 1, 2, 0, 3, 4}));
    canvas.planarBlit(stamp, -1, -1);
    EXPECT_EQ(planarOf(canvas), (std::vector<std::uint8_t>{4, 0, 0, 0, 1, 2, 0, 3, 4}));
    canvas.planarBlit(stamp, 2, -1);
    canvas.planarBlit(stamp, 5, 0);
    canvas.planarBlit(stamp, INT32_MIN, INT32_MAX);
    EXPECT_EQ(planarOf(canvas), (std::vector<std::uint8_t>{4, 0, 3, 0, 1, 2, 0, 3, 4}));
    canvas.planarBlit(canvas, 1, 0); // reads the image as it was before the paste
    EXPECT_EQ(planarOf(canvas), (std::vector<std::uint8_t>{4, 4, 0, 0, 0, 1, 0, 0, 3}));
}

TEST(SurfaceFromFile, LoadsABitmapAndKeepsTheOldSurfaceOnFailure) {
    TempDir folder;
    auto image = planarImage(5, 3, std::vector<std::uint8_t>(15, 1));
    image.setPalette(paletteOf({0, 0x00336699}));
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.createFromPlanarSurface(image));
    bitmap.writeToFile(folder / "five.bmp");

    clsSurface loaded;
    ASSERT_TRUE(loaded.loadFromFile(folder / "five.bmp"));
    EXPECT_EQ(std::pair(loaded.width(), loaded.height()), std::pair(5, 3));
    EXPECT_EQ(surfaceGetPixel(loaded.surface(), 4, 2), createBGRA(0x99, 0x66, 0x33, 0));

    const auto before = loaded.surface();
    EXPECT_FALSE(loaded.loadFromFile(folder / "missing.bmp"));
    EXPECT_EQ(loaded.surface(), before);
    EXPECT_EQ(loaded.width(), 5);

    ASSERT_TRUE(loaded.createEmpty(7, 2));
    EXPECT_NE(loaded.surface(), 0);
    EXPECT_EQ(surfaceGetWidth(before), 0) << "the replaced surface is destroyed";
    EXPECT_EQ(loaded.width(), 7);
}

std::pair<std::int32_t, int> cursor(const clsBitStream& stream) {
    return {stream.byteOffset(), stream.bitOffset()};
}

// The layout by definition, one stream bit at a time.
std::vector<std::uint8_t> referenceRead(clsBitStream& stream, std::size_t pixels, int planes) {
    std::vector<std::uint8_t> result(pixels, 0);
    for (int plane = 0; plane < planes; ++plane) {
        for (auto& pixel : result) {
            if (stream.getBit() != 0) {
                pixel ^= static_cast<std::uint8_t>(1u << plane);
            }
        }
    }
    return result;
}

void referenceWrite(clsBitStream& stream, const std::vector<std::uint8_t>& pixels, int planes) {
    for (int plane = 0; plane < planes; ++plane) {
        for (const auto pixel : pixels) {
            stream.putBit((pixel >> plane) & 1);
        }
    }
}

TEST(PlanarLayout, TileOfFivePlanesIsOneHundredSixtyBytesAndBadSizesAreRefused) {
    std::vector<std::uint8_t> pixels(256, 0);
    pixels[0] = 31;   // first bit of every plane
    pixels[255] = 5;  // last bit of planes 0 and 2
    pixels[9] = 0xE2; // bits above plane 4 are dropped; plane 1 keeps bit 9
    std::vector<std::uint8_t> expected(160, 0);
    for (int plane = 0; plane < 5; ++plane) {
        expected[static_cast<std::size_t>(32 * plane)] = 0x80;
    }
    expected[31] = 0x01;
    expected[95] = 0x01;
    expected[32 + 1] = 0x40;

    clsBitStream stream = growingStream();
    ASSERT_TRUE(planarImage(16, 16, pixels).planarWriteTo(stream, 5));
    expected.push_back(0); // the buffer's spare byte
    EXPECT_EQ(allBytes(stream), expected);
    EXPECT_EQ(stream.byteOffset(), 160);

    expected.pop_back();
    auto reader = streamOver(expected);
    clsSurface tile;
    ASSERT_TRUE(tile.planarLoadFromBits(reader, 16, 16, 5));
    pixels[9] = 0x02;
    EXPECT_EQ(planarOf(tile), pixels);
    EXPECT_TRUE(reader.endOfStream());
    // More than eight planes and bad sizes are refused.
    stream = streamOver({0xFF, 0xFF});
    clsSurface image;
    EXPECT_FALSE(image.planarLoadFromBits(stream, 2, 1, 9));
    EXPECT_FALSE(image.planarLoadFromBits(stream, -1, 1, 1));
    EXPECT_FALSE(image.planarLoadFromBits(stream, 1 << 14, 1 << 14, 1));
    EXPECT_EQ(stream.byteOffset(), 0);
    EXPECT_FALSE(image.planarWriteTo(stream, 9));
    EXPECT_TRUE(image.planarLoadFromBits(stream, 0, 0, 8));
}

struct Case {
    std::int32_t width;
    std::int32_t height;
    int planes;
    int leadingBits; // cursor position inside the first byte
    int dataBytes;   // length of the stream's data
    std::uint8_t spare;
};

void PrintTo(const Case& c, std::ostream* out) {
    *out << c.width << "x" << c.height << "x" << c.planes << " after " << c.leadingBits
         << " bits of " << c.dataBytes << " bytes";
}

// Whole-byte shortcuts must agree with the stream's own single-bit calls:
// unaligned starts, planes that end mid-byte, and runs that pass the end of
// the data, where reading and writing wrap around the spare byte.
class PlanarAgreesWithBitByBit : public ::testing::TestWithParam<Case> {};

TEST_P(PlanarAgreesWithBitByBit, WhenReading) {
    const Case c = GetParam();
    std::mt19937 random(7);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(c.dataBytes));
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(random()); });
    auto ours = streamOver(bytes, c.spare);
    auto reference = streamOver(bytes, c.spare);
    ours.getBits(c.leadingBits);
    reference.getBits(c.leadingBits);
    clsSurface image;
    ASSERT_TRUE(image.planarLoadFromBits(ours, c.width, c.height, c.planes));
    const auto expected =
        referenceRead(reference, static_cast<std::size_t>(c.width) * c.height, c.planes);
    EXPECT_EQ(planarOf(image), expected);
    EXPECT_EQ(cursor(ours), cursor(reference));
}

TEST_P(PlanarAgreesWithBitByBit, WhenWriting) {
    const Case c = GetParam();
    std::mt19937 random(11);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(c.width) * c.height);
    std::generate(pixels.begin(), pixels.end(),
                  [&] { return static_cast<std::uint8_t>(random()); });
    const std::vector<std::uint8_t> old(static_cast<std::size_t>(c.dataBytes), 0xA5);
    const auto image = planarImage(c.width, c.height, pixels);

    for (const bool expand : {false, true}) {
        auto ours = streamOver(old, c.spare);
        auto reference = streamOver(old, c.spare);
        ours.autoExpand = reference.autoExpand = expand;
        ours.getBits(c.leadingBits);
        reference.getBits(c.leadingBits);

        ASSERT_TRUE(image.planarWriteTo(ours, c.planes));
        referenceWrite(reference, pixels, c.planes);

        EXPECT_EQ(allBytes(ours), allBytes(reference)) << "autoExpand " << expand;
        EXPECT_EQ(cursor(ours), cursor(reference)) << "autoExpand " << expand;
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, PlanarAgreesWithBitByBit,
                         ::testing::Values(Case{16, 16, 5, 0, 200, 0},  // tile, room to spare
                                           Case{16, 16, 5, 0, 160, 0},  // ends with the data
                                           Case{3, 3, 3, 3, 40, 0},     // odd planes, unaligned
                                           Case{7, 5, 8, 5, 60, 0},     // all planes
                                           Case{17, 3, 5, 0, 12, 0x5A}, // passes the end
                                           Case{9, 9, 4, 6, 3, 0xC3},   // mostly past the end
                                           Case{4, 4, 2, 0, 0, 0x81},   // no data at all
                                           Case{320, 32, 5, 0, 6400, 0}));

} // namespace
} // namespace marvek::test
