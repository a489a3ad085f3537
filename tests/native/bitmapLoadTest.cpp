#include "bitmapFiles.h"

#include "native/handles.h"
#include "native/marvek.h"

#include <gtest/gtest.h>

#include <tuple>

namespace marvek {
namespace {

using testing::encodeBitmap;
using testing::TempFile;

// 5 x 3: an odd width exercises row padding for every depth.
const std::vector<std::uint32_t> samplePixels = {
    0x102030, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF, //
    0x000000, 0x808080, 0x123456, 0x654321, 0xABCDEF, //
    0x010203, 0xFEDCBA, 0x00FFFF, 0xFF00FF, 0x7F7F7F,
};

UniqueSurface load(const std::vector<std::uint8_t>& bytes) {
    const TempFile file(bytes);
    return UniqueSurface(surfaceLoadFromBitmap(file.path().c_str()));
}

class BitmapDepthTest : public ::testing::TestWithParam<std::tuple<std::uint16_t, bool>> {};

TEST_P(BitmapDepthTest, LoadsEveryPixelOpaqueAndTopRowFirst) {
    const auto [bits, topDown] = GetParam();
    const UniqueSurface surface = load(encodeBitmap(5, 3, bits, topDown, samplePixels));
    ASSERT_TRUE(surface);
    ASSERT_EQ(surfaceGetWidth(surface.get()), 5);
    ASSERT_EQ(surfaceGetHeight(surface.get()), 3);
    const std::uint32_t* data = surfaceGetDataPtr(surface.get());
    for (std::size_t i = 0; i < samplePixels.size(); ++i) {
        EXPECT_EQ(data[i], samplePixels[i]) << "pixel " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Depths, BitmapDepthTest,
                         ::testing::Combine(::testing::Values(8, 24, 32), ::testing::Bool()));

TEST(BitmapLoadTest, RefusesEveryTruncation) {
    for (const std::uint16_t bits : {8, 24, 32}) {
        const auto whole = encodeBitmap(5, 3, bits, false, samplePixels);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const std::vector<std::uint8_t> part(whole.begin(),
                                                 whole.begin() + static_cast<long>(length));
            EXPECT_FALSE(load(part)) << bits << " bits cut to " << length;
        }
    }
}

TEST(BitmapLoadTest, RefusesHostileHeaders) {
    const auto good = encodeBitmap(5, 3, 24, false, samplePixels);
    const auto patched = [&good](std::size_t offset, std::uint32_t value, int bytes) {
        auto copy = good;
        for (int i = 0; i < bytes; ++i) {
            copy[offset + static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(value >> (8 * i));
        }
        return copy;
    };
    EXPECT_FALSE(load(patched(0, 'X', 1))) << "magic";
    EXPECT_FALSE(load(patched(18, 0, 4))) << "zero width";
    EXPECT_FALSE(load(patched(18, 0xFFFFFFFBu, 4))) << "negative width";
    EXPECT_FALSE(load(patched(22, 0, 4))) << "zero height";
    EXPECT_FALSE(load(patched(22, 0x80000000u, 4))) << "most negative height";
    EXPECT_FALSE(load(patched(18, 30000, 4))) << "width beyond the data";
    EXPECT_FALSE(load(patched(18, 0x7FFFFFFF, 4))) << "huge width";
    EXPECT_FALSE(load(patched(28, 16, 2))) << "16 bits";
    EXPECT_FALSE(load(patched(30, 1, 4))) << "run-length compressed";
    EXPECT_FALSE(load(patched(10, 0xFFFFFFF0u, 4))) << "pixel offset past the end";
    EXPECT_FALSE(load(patched(14, 12, 4))) << "old core header";
    EXPECT_FALSE(load(std::vector<std::uint8_t>(200, 0x42))) << "garbage";
}

TEST(BitmapLoadTest, PaletteIndexBeyondShortTableReadsBlack) {
    auto bytes = encodeBitmap(5, 3, 8, true, samplePixels);
    const std::size_t pixelOffset = 14 + 40 + 15 * 4;
    bytes[pixelOffset] = 200; // the table has 15 entries
    const UniqueSurface surface = load(bytes);
    ASSERT_TRUE(surface);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 0), 0u);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 1, 0), 0xFF0000u);
}

TEST(BitmapLoadTest, MissingFileAndNullPathGiveNoSurface) {
    EXPECT_EQ(surfaceLoadFromBitmap("/nonexistent/marvek/none.bmp"), 0);
    EXPECT_EQ(surfaceLoadFromBitmap(nullptr), 0);
}

} // namespace
} // namespace marvek
