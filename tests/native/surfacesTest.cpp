#include "native/handles.h"
#include "native/marvek.h"

#include <gtest/gtest.h>

#include <climits>
#include <numeric>
#include <vector>

namespace marvek {
namespace {

// A w x h surface whose pixels count up from 1, top row first.
UniqueSurface countingSurface(std::int32_t width, std::int32_t height) {
    UniqueSurface surface(surfaceCreate(width, height));
    std::uint32_t* data = surfaceGetDataPtr(surface.get());
    std::iota(data, data + width * height, 1u);
    return surface;
}

TEST(SurfaceTest, NewSurfacesAreBlackAndRefuseSillySizes) {
    const UniqueSurface surface(surfaceCreate(3, 2));
    ASSERT_TRUE(surface);
    EXPECT_EQ(surfaceGetWidth(surface.get()), 3);
    EXPECT_EQ(surfaceGetHeight(surface.get()), 2);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 2, 1), 0u);
    for (const auto& [w, h] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {INT_MAX, INT_MAX}, {65536, 1}}) {
        EXPECT_EQ(surfaceCreate(w, h), 0) << w << " x " << h;
    }
}

TEST(SurfaceTest, PixelAccessIgnoresPositionsOutside) {
    const UniqueSurface surface(surfaceCreate(2, 2));
    surfaceSetPixel(surface.get(), 1, 1, 0x11223344);
    surfaceSetPixel(surface.get(), 2, 0, 0xFFFFFFFF);
    surfaceSetPixel(surface.get(), -1, 0, 0xFFFFFFFF);
    surfaceSetPixel(surface.get(), 0, INT_MIN, 0xFFFFFFFF);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 1, 1), 0x11223344u);
    EXPECT_EQ(surfaceGetDataPtr(surface.get())[3], 0x11223344u);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 2), 0u);
    surfaceFill(surface.get(), 0xCAFEBABE);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 0), 0xCAFEBABEu);
    surfaceClear(surface.get());
    EXPECT_EQ(surfaceGetPixel(surface.get(), 1, 1), 0u);
}

TEST(SurfaceTest, StaleHandlesNeverReachANewerSurface) {
    const std::int32_t first = surfaceCreate(4, 4);
    surfaceDestroy(first);
    const UniqueSurface second(surfaceCreate(4, 4)); // likely reuses the slot
    surfaceFill(second.get(), 0x12345678);
    EXPECT_NE(first, second.get());
    EXPECT_EQ(surfaceGetWidth(first), 0);
    EXPECT_EQ(surfaceGetDataPtr(first), nullptr);
    surfaceFill(first, 0);
    surfaceDestroy(first);
    surfaceDestroy(0);
    EXPECT_EQ(surfaceGetPixel(second.get(), 0, 0), 0x12345678u);
}

TEST(SurfaceTest, OwnersReleaseOnceAndMove) {
    UniqueSurface owner(surfaceCreate(1, 1));
    const std::int32_t handle = owner.get();
    UniqueSurface moved = std::move(owner);
    EXPECT_FALSE(owner);
    EXPECT_EQ(moved.get(), handle);
    moved.reset();
    EXPECT_EQ(surfaceGetWidth(handle), 0);
}

TEST(CopyToBitmapTest, CopiesTopDownOneToOne) {
    const UniqueSurface surface = countingSurface(3, 2);
    std::vector<std::uint32_t> bits(6, 0);
    surfaceCopyToBitmap(surface.get(), bits.data());
    EXPECT_EQ(bits, (std::vector<std::uint32_t>{1, 2, 3, 4, 5, 6}));
}

TEST(CopyToBitmapTest, DoubleFillsTwoByTwoBlocks) {
    const UniqueSurface surface = countingSurface(2, 2);
    std::vector<std::uint32_t> bits(4 * 4, 0);
    surfaceCopyToBitmapDouble(surface.get(), bits.data(), 4, 4);
    EXPECT_EQ(bits, (std::vector<std::uint32_t>{1, 1, 2, 2, //
                                                1, 1, 2, 2, //
                                                3, 3, 4, 4, //
                                                3, 3, 4, 4}));
}

TEST(CopyToBitmapTest, DoubleWritesOnlyWhatFits) {
    const UniqueSurface surface = countingSurface(2, 2);
    constexpr std::uint32_t untouched = 0xEEEEEEEE;
    std::vector<std::uint32_t> narrow(3 * 3, untouched);
    surfaceCopyToBitmapDouble(surface.get(), narrow.data(), 3, 3);
    EXPECT_EQ(narrow, (std::vector<std::uint32_t>{1, 1, 2, //
                                                  1, 1, 2, //
                                                  3, 3, 4}));
    std::vector<std::uint32_t> wide(5 * 5, untouched);
    surfaceCopyToBitmapDouble(surface.get(), wide.data(), 5, 5);
    EXPECT_EQ(wide[4], untouched);
    EXPECT_EQ(wide[3 * 5 + 3], 4u);
    EXPECT_EQ(wide[4 * 5 + 0], untouched);
    surfaceCopyToBitmapDouble(surface.get(), wide.data(), -5, 5);
    surfaceCopyToBitmapDouble(surface.get(), nullptr, 5, 5);
}

TEST(ColourTest, WindowsColoursAndSurfacePixelsAreDifferentForms) {
    const std::uint32_t pixel = createBGRA(0x11, 0x22, 0x33, 0x44);
    EXPECT_EQ(pixel, 0x44112233u);
    EXPECT_EQ(getRed(pixel), 0x33) << "the low byte, blue in a surface pixel";
    const std::uint32_t windowsColour = 0x00332211;
    EXPECT_EQ(getRed(windowsColour), 0x11);
    EXPECT_EQ(getGreen(windowsColour), 0x22);
    EXPECT_EQ(getBlue(windowsColour), 0x33);
    EXPECT_EQ(byteSwapInt(0x12345678u), 0x78563412u);
}

} // namespace
} // namespace marvek
