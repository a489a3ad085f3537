#include "graphics/clsSurface.h"
#include "io/clsBitStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <random>
#include <vector>

namespace marvek {
namespace {

std::shared_ptr<clsDataBuffer> bufferOf(const std::vector<std::uint8_t>& bytes) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer->data().begin());
    return buffer;
}

clsBitStream streamOver(const std::vector<std::uint8_t>& bytes, std::uint8_t spare = 0) {
    auto buffer = bufferOf(bytes);
    buffer->putByte(buffer->Size(), spare);
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    return stream;
}

std::vector<std::uint8_t> allBytes(const clsBitStream& stream) {
    const auto buffer = stream.bufferGet();
    const auto* first = buffer->ptrData();
    return {first, first + buffer->Size() + 1};
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

clsSurface imageOf(std::int32_t width, std::int32_t height,
                   const std::vector<std::uint8_t>& pixels) {
    clsSurface image;
    EXPECT_TRUE(image.planarCreateEmpty(width, height));
    std::copy(pixels.begin(), pixels.end(), image.ptrPlanar());
    return image;
}

std::vector<std::uint8_t> planarOf(const clsSurface& image) {
    return {image.planarPixels().begin(), image.planarPixels().end()};
}

TEST(PlanarLayout, TwoPixelsTwoPlanesInBothDirections) {
    // Indices 1 and 2: plane 0 holds 1, 0 and plane 1 holds 0, 1.
    const auto image = imageOf(2, 1, {1, 2});
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    ASSERT_TRUE(image.planarWriteTo(stream, 2));
    EXPECT_EQ(allBytes(stream), (std::vector<std::uint8_t>{0x90}));
    EXPECT_EQ(stream.byteOffset(), 0);
    EXPECT_EQ(stream.bitOffset(), 4);

    auto reader = streamOver({0x90});
    clsSurface decoded;
    ASSERT_TRUE(decoded.planarLoadFromBits(reader, 2, 1, 2));
    EXPECT_EQ(planarOf(decoded), (std::vector<std::uint8_t>{1, 2}));
}

TEST(PlanarLayout, TileOfFivePlanesIsOneHundredSixtyBytes) {
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

    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    ASSERT_TRUE(imageOf(16, 16, pixels).planarWriteTo(stream, 5));
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
}

TEST(PlanarLayout, RefusesMoreThanEightPlanesAndBadSizes) {
    auto stream = streamOver({0xFF, 0xFF});
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
    EXPECT_EQ(ours.byteOffset(), reference.byteOffset());
    EXPECT_EQ(ours.bitOffset(), reference.bitOffset());
}

TEST_P(PlanarAgreesWithBitByBit, WhenWriting) {
    const Case c = GetParam();
    std::mt19937 random(11);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(c.width) * c.height);
    std::generate(pixels.begin(), pixels.end(),
                  [&] { return static_cast<std::uint8_t>(random()); });
    const std::vector<std::uint8_t> old(static_cast<std::size_t>(c.dataBytes), 0xA5);
    const auto image = imageOf(c.width, c.height, pixels);

    for (const bool expand : {false, true}) {
        auto ours = streamOver(old, c.spare);
        auto reference = streamOver(old, c.spare);
        ours.autoExpand = reference.autoExpand = expand;
        ours.getBits(c.leadingBits);
        reference.getBits(c.leadingBits);

        ASSERT_TRUE(image.planarWriteTo(ours, c.planes));
        referenceWrite(reference, pixels, c.planes);

        EXPECT_EQ(allBytes(ours), allBytes(reference)) << "autoExpand " << expand;
        EXPECT_EQ(ours.byteOffset(), reference.byteOffset()) << "autoExpand " << expand;
        EXPECT_EQ(ours.bitOffset(), reference.bitOffset()) << "autoExpand " << expand;
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
} // namespace marvek
