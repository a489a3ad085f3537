#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsFont.h"
#include "graphics/clsRectangle.h"
#include "graphics/pngFile.h"
#include "native/handles.h"
#include "support/TempDir.h"
#include "support/bitmapFiles.h"
#include "support/images.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

namespace marvek::test {
namespace {

clsCamera cameraOver(std::int32_t levelWidth, std::int32_t levelHeight, std::int32_t viewWidth,
                     std::int32_t viewHeight) {
    clsCamera camera;
    camera.levelWidth = levelWidth;
    camera.levelHeight = levelHeight;
    camera.viewWidth = viewWidth;
    camera.viewHeight = viewHeight;
    return camera;
}

std::pair<std::int32_t, std::int32_t> at(const clsCamera& camera) {
    return {camera.x, camera.y};
}

std::array<std::int32_t, 4> sides(const clsRectangle& r) {
    return {r.left, r.top, r.width, r.height};
}

TEST(clsCamera, StaysInsideTheLevelOrEndsNegativeWhenTheViewIsLarger) {
    auto camera = cameraOver(4800, 1344, 640, 480);
    camera.Move(1000, 500);
    EXPECT_EQ(at(camera), std::pair(1000, 500));
    camera.Move(-5, 2000);
    EXPECT_EQ(at(camera), std::pair(0, 1344 - 480));
    camera.Move(4160, 864);
    EXPECT_EQ(at(camera), std::pair(4160, 864));
    camera.Move(10, 20);
    camera.moveRelative(-50, 0);
    EXPECT_EQ(at(camera), std::pair(0, 20)) << "moveRelative adds, then checks";
    camera.moveRelative(5000, 16);
    EXPECT_EQ(at(camera), std::pair(4160, 36));
    EXPECT_THROW(camera.moveRelative(std::numeric_limits<std::int32_t>::max(), 0),
                 std::overflow_error);

    auto small = cameraOver(320, 200, 640, 480);
    small.Move(100, -7);
    EXPECT_EQ(at(small), std::pair(-320, -280));
}

TEST(clsRectangle, NormalizeFlipsNegativeExtentsAndAddAreaKeepsItsHistoricalFormulas) {
    auto flipped = clsRectangle{10, 20, -4, -5};
    flipped.Normalize();
    EXPECT_EQ(sides(flipped), (std::array{6, 15, 4, 5}));
    auto flat = clsRectangle{10, 20, 0, 3};
    flat.Normalize();
    EXPECT_EQ(sides(flat), (std::array{10, 20, 0, 3}));
    auto grown = clsRectangle{0, 0, 3, 20};
    grown.addArea(5, 5, 10, 10);
    EXPECT_EQ(sides(grown), (std::array{0, 0, 15, 15}));
    // The absolute new left is added to the right edge: 4 + max(3, 12).
    auto offset = clsRectangle{10, 10, 2, 2};
    offset.addArea(-4, 1, 7, 1);
    EXPECT_EQ(sides(offset), (std::array{-4, 1, 16, 13}));
}

class FakeTarget : public clsPresentTarget {
public:
    void present(const std::uint32_t* pixels, std::int32_t width, std::int32_t height) override {
        ++calls;
        this->width = width;
        this->height = height;
        shown.assign(pixels, pixels + static_cast<std::size_t>(width) * height);
    }
    std::uint32_t at(std::int32_t x, std::int32_t y) const {
        return shown.at(static_cast<std::size_t>(y) * width + x);
    }

    int calls = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> shown;
};

// Three columns, two rows, every pixel different.
void paintPattern(const clsBackBuffer& buffer) {
    for (std::int32_t y = 0; y < 2; ++y) {
        for (std::int32_t x = 0; x < 3; ++x) {
            surfaceSetPixel(buffer.surface(), x, y, createBGRA(10 * x + 1, 20 * y + 2, 3, 0));
        }
    }
}

TEST(clsBackBuffer, PresentShowsTheSurfaceTopDownRepeatingEachPixelZoomTimes) {
    for (const std::int32_t zoom : {1, 2, 3, 4}) {
        SCOPED_TRACE(zoom);
        clsBackBuffer buffer;
        ASSERT_TRUE(buffer.Create(3, 2, zoom));
        EXPECT_EQ(buffer.bitmapWidth(), 3 * zoom);
        EXPECT_EQ(buffer.bitmapHeight(), 2 * zoom);
        paintPattern(buffer);
        FakeTarget target;
        buffer.Present(target);
        ASSERT_EQ(target.calls, 1);
        ASSERT_EQ(target.width, 3 * zoom);
        ASSERT_EQ(target.height, 2 * zoom);
        for (std::int32_t y = 0; y < 2 * zoom; ++y) {
            for (std::int32_t x = 0; x < 3 * zoom; ++x) {
                EXPECT_EQ(target.at(x, y),
                          createBGRA(10 * (x / zoom) + 1, 20 * (y / zoom) + 2, 3, 0))
                    << x << "," << y;
            }
        }
        buffer.Clear();
        buffer.Present(target);
        EXPECT_EQ(target.shown, std::vector<std::uint32_t>(6 * zoom * zoom, 0));
    }
}

TEST(clsBackBuffer, ResizeKeepsTheZoomAndFailureLeavesItEmpty) {
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(3, 2, 2));
    ASSERT_TRUE(buffer.Resize(5, 4));
    EXPECT_EQ(std::tuple(buffer.width(), buffer.bitmapHeight(), surfaceGetWidth(buffer.surface())),
              std::tuple(5, 8, 5));
    EXPECT_FALSE(buffer.Resize(0, 4));
    EXPECT_FALSE(buffer.isUsable() || buffer.surface());
    FakeTarget target;
    buffer.Present(target);
    buffer.Clear();
    EXPECT_EQ(target.calls, 0);
    EXPECT_TRUE(buffer.Resize(2, 2));
    EXPECT_EQ(buffer.bitmapWidth(), 4);
}

TEST(clsFont, LoadsTheCellSizeDrawsThroughTheLibraryAndAFailedLoadFreesTheOldFont) {
    // 16 x 16 cells of 2 x 3 pixels with ink in the top left pixel of 'A'.
    const TempDir folder;
    writeBitmap24(folder / "editor.bmp", 32, 48, [](std::int32_t x, std::int32_t y) {
        return x == ('A' % 16) * 2 && y == ('A' / 16) * 3 ? 0xFFFFFFu : 0u;
    });
    clsFont font;
    ASSERT_TRUE(font.loadFromFile(folder / "editor.bmp"));
    EXPECT_EQ(std::pair(font.charWidth(), font.charHeight()), std::pair(2, 3));
    const UniqueSurface surface(surfaceCreate(4, 3));
    renderText(surface.get(), font.handle(), 2, 0, 0x00FF0000, "A");
    EXPECT_EQ(surfaceGetPixel(surface.get(), 2, 0), 0x00FF0000u);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 3, 0), 0u);

    const auto old = font.handle();
    EXPECT_FALSE(font.loadFromFile(folder / "missing.bmp"));
    EXPECT_EQ(std::tuple(font.handle(), font.charWidth(), font.getSurface(), fontGetCharWidth(old)),
              std::tuple(0, 0, 0, 0));
}

TEST(clsFont, AnIndexedPngLoadsAsTheSameBitmapWould) {
    // 16 x 16 cells of 3 x 2 pixels; index 1 is ink, index 2 lies past the
    // two-colour palette and is black, as in an 8-bit bitmap.
    const TempDir folder;
    std::vector<std::uint8_t> indices(48 * 32, 0);
    const auto at = [](int x, int y) { return static_cast<std::size_t>(y * 48 + x); };
    indices[at(('B' % 16) * 3 + 1, ('B' / 16) * 2)] = 1;
    indices[at(('B' % 16) * 3 + 2, ('B' / 16) * 2)] = 2;
    writeBytes(folder / "font.png", encodeIndexedPng(indices, 48, 32, paletteOf({0, 0x00FF8040})));
    clsFont font;
    ASSERT_TRUE(font.loadFromFile(folder / "font.png"));
    EXPECT_EQ(std::pair(font.charWidth(), font.charHeight()), std::pair(3, 2));
    const UniqueSurface surface(surfaceCreate(3, 1));
    renderText(surface.get(), font.handle(), 0, 0, 0x00123456, "B");
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 0), 0u);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 1, 0), 0x00123456u);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 2, 0), 0u);

    // A true-colour PNG loads nothing.
    writeBytes(folder / "rgb.png", encodePng(std::vector<std::uint32_t>(48 * 32), 48, 32));
    EXPECT_FALSE(font.loadFromFile(folder / "rgb.png"));
}

} // namespace
} // namespace marvek::test
