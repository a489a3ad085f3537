#include "graphics/clsSurface.h"
#include "graphics/clsBitmap.h"
#include "native/marvek.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace marvek {
namespace {

const std::uint32_t transparent = createBGRA(0, 0, 0, 255);

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

clsPalette paletteOf(std::initializer_list<std::uint32_t> colours) {
    clsPalette palette;
    for (const auto colour : colours) {
        palette.addEntry(colour);
    }
    return palette;
}

TEST(PlanarToSurface, MapsIndicesThroughThePalette) {
    auto image = imageOf(4, 1, {0, 1, 2, 7});
    const auto palette = paletteOf({0x000000FF, 0x00102030, 0x00FFFFFF});

    ASSERT_TRUE(image.planarToSurface(palette, 0));

    EXPECT_EQ(image.width(), 4);
    EXPECT_EQ(image.height(), 1);
    EXPECT_EQ(surfaceGetPixel(image.surface(), 0, 0), transparent);
    EXPECT_EQ(surfaceGetPixel(image.surface(), 1, 0), createBGRA(0x30, 0x20, 0x10, 0));
    EXPECT_EQ(surfaceGetPixel(image.surface(), 2, 0), createBGRA(255, 255, 255, 0));
    EXPECT_EQ(surfaceGetPixel(image.surface(), 3, 0), transparent) << "index beyond the palette";
    EXPECT_EQ(image.palette().Count(), 3);

    ASSERT_TRUE(image.planarToSurface(palette, -1));
    EXPECT_EQ(surfaceGetPixel(image.surface(), 0, 0), createBGRA(255, 0, 0, 0));
}

TEST(PlanarToSurface, EmptyPaletteKeepsTheOldSurface) {
    auto image = imageOf(2, 2, {1, 1, 1, 1});
    ASSERT_TRUE(image.planarToSurface(paletteOf({0, 0x00FF0000}), -1));
    const auto before = image.surface();

    EXPECT_FALSE(image.planarToSurface(clsPalette{}, -1));

    EXPECT_EQ(image.surface(), before);
    EXPECT_EQ(surfaceGetPixel(before, 1, 1), createBGRA(0, 0, 255, 0));
    EXPECT_EQ(image.palette().Count(), 2);
}

TEST(PlanarShiftColors, ClampsBelowZeroAndWrapsAbove) {
    std::vector<std::uint8_t> indices(32);
    std::iota(indices.begin(), indices.end(), 0);
    auto image = imageOf(32, 1, indices);
    image.planarShiftColors(-16);
    const auto shifted = planarOf(image);
    EXPECT_TRUE(std::all_of(shifted.begin(), shifted.begin() + 16, [](auto c) { return c == 0; }));
    for (int i = 16; i < 32; ++i) {
        EXPECT_EQ(shifted[static_cast<std::size_t>(i)], i - 16);
    }

    auto high = imageOf(1, 1, {250});
    high.planarShiftColors(16);
    EXPECT_EQ(planarOf(high), std::vector<std::uint8_t>{10});
}

TEST(PlanarCopyFrom, TakesARectangleInsideTheSource) {
    // 4 x 3, each pixel 10 * row + column.
    const auto source = imageOf(4, 3, {0, 1, 2, 3, 10, 11, 12, 13, 20, 21, 22, 23});
    clsSurface part;
    ASSERT_TRUE(part.planarCopyFrom(source, 1, 1, 3, 2));
    EXPECT_EQ(part.planarWidth(), 3);
    EXPECT_EQ(part.planarHeight(), 2);
    EXPECT_EQ(planarOf(part), (std::vector<std::uint8_t>{11, 12, 13, 21, 22, 23}));

    EXPECT_FALSE(part.planarCopyFrom(source, 2, 0, 3, 1)) << "passes the right edge";
    EXPECT_FALSE(part.planarCopyFrom(source, 0, -1, 1, 1));
    EXPECT_EQ(part.planarWidth(), 3) << "a refused copy leaves the image";
}

TEST(PlanarBlit, PastesRowsAndLeavesOutWhatFallsOutside) {
    const auto stamp = imageOf(2, 2, {1, 2, 3, 4});
    auto canvas = imageOf(3, 3, std::vector<std::uint8_t>(9, 0));

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
    test::TempDir folder;
    auto image = imageOf(5, 3, std::vector<std::uint8_t>(15, 1));
    image.setPalette(paletteOf({0, 0x00336699}));
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.createFromPlanarSurface(image));
    bitmap.writeToFile(folder / "five.bmp");

    clsSurface loaded;
    ASSERT_TRUE(loaded.loadFromFile(folder / "five.bmp"));
    EXPECT_EQ(loaded.width(), 5);
    EXPECT_EQ(loaded.height(), 3);
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

} // namespace
} // namespace marvek
