#include "native/handles.h"
#include "native/marvek.h"
#include "support/bitmapFiles.h"
#include "support/expect.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <vector>

namespace marvek::test {
namespace {

constexpr std::uint32_t background = 0x00102030;

UniqueSurface filledSurface(std::int32_t width, std::int32_t height, std::uint32_t colour) {
    UniqueSurface surface(surfaceCreate(width, height));
    surfaceFill(surface.get(), colour);
    return surface;
}

std::vector<std::uint32_t> pixelsOf(const UniqueSurface& surface) {
    const std::uint32_t* data = surfaceGetDataPtr(surface.get());
    return {data, data + surfaceGetWidth(surface.get()) * surfaceGetHeight(surface.get())};
}

// A 3 x 2 picture: opaque, transparent and translucent pixels.
UniqueSurface samplePicture() {
    UniqueSurface picture(surfaceCreate(3, 2));
    const std::uint32_t pixels[] = {0x00FF0000, 0xFF000000, 0x800000FF,
                                    0x0000FF00, 0x00FFFFFF, 0x40FFFF00};
    std::copy(std::begin(pixels), std::end(pixels), surfaceGetDataPtr(picture.get()));
    return picture;
}

// A font of 2 x 3 cells in which every glyph has ink on its left column only.
UniqueFont sampleFont() {
    const TempDir folder;
    writeBitmap24(folder / "font.bmp", 32, 48,
                  [](std::int32_t x, std::int32_t) { return x % 2 == 0 ? 0xFFFFFFu : 0u; });
    return UniqueFont(fontLoadFromBitmap((folder / "font.bmp").c_str()));
}

using DrawAt = std::function<void(std::int32_t destination, std::int32_t x, std::int32_t y)>;

struct DrawCase {
    const char* name;
    DrawAt draw;
};

// Drawing clipped by the destination must give what drawing into a larger
// surface gives, cut to the destination's window.
void expectClipsLikeCrop(const DrawCase& drawCase) {
    constexpr std::int32_t width = 7, height = 5, margin = 8;
    for (std::int32_t y = -6; y <= height + 1; ++y) {
        for (std::int32_t x = -6; x <= width + 1; ++x) {
            const UniqueSurface clipped = filledSurface(width, height, background);
            const UniqueSurface roomy =
                filledSurface(width + 2 * margin, height + 2 * margin, background);
            drawCase.draw(clipped.get(), x, y);
            drawCase.draw(roomy.get(), x + margin, y + margin);
            for (std::int32_t row = 0; row < height; ++row) {
                for (std::int32_t column = 0; column < width; ++column) {
                    ASSERT_EQ(surfaceGetPixel(clipped.get(), column, row),
                              surfaceGetPixel(roomy.get(), column + margin, row + margin))
                        << drawCase.name << " at " << x << "," << y << " pixel " << column << ","
                        << row;
                }
            }
        }
    }
}

// Extreme arguments must touch nothing.
void expectExtremesDrawNothing(const DrawCase& drawCase) {
    const std::int32_t extremes[][2] = {
        {INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, 0}, {0, INT_MIN},
        {INT_MAX, 0},       {0, INT_MAX},       {-100, 2},    {2, 100}};
    for (const auto& [x, y] : extremes) {
        const UniqueSurface surface = filledSurface(7, 5, background);
        drawCase.draw(surface.get(), x, y);
        EXPECT_EQ(pixelsOf(surface), pixelsOf(filledSurface(7, 5, background)))
            << drawCase.name << " at " << x << "," << y;
    }
}

class ClippingTest : public ::testing::Test {
protected:
    UniqueSurface picture = samplePicture();
    UniqueFont font = sampleFont();

    std::vector<DrawCase> cases() const {
        const std::int32_t source = picture.get();
        const std::int32_t glyphs = font.get();
        return {
            {"blit", [source](auto d, auto x, auto y) { renderBlit(d, source, x, y, 3, 2); }},
            {"blit oversized",
             [source](auto d, auto x, auto y) { renderBlit(d, source, x, y, INT_MAX, INT_MAX); }},
            {"blitFast", [source](auto d, auto x, auto y) { renderBlitFast(d, source, x, y); }},
            {"boxFill blended",
             [](auto d, auto x, auto y) { renderBoxFill(d, x, y, 4, 3, 0x80FFFFFF, 1); }},
            {"boxFill pattern",
             [](auto d, auto x, auto y) { renderBoxFill(d, x, y, 4, 3, 0x80FFFFFF, 0); }},
            {"box", [](auto d, auto x, auto y) { renderBox(d, x, y, 4, 3, 0x00BF0000); }},
            {"text",
             [glyphs](auto d, auto x, auto y) { renderText(d, glyphs, x, y, 0x00FFFFFF, "AB"); }},
        };
    }
};

TEST_F(ClippingTest, EveryEdgeClipsLikeACrop) {
    ASSERT_TRUE(font);
    for (const DrawCase& drawCase : cases()) {
        expectClipsLikeCrop(drawCase);
    }
}

TEST_F(ClippingTest, ExtremeArgumentsTouchNothing) {
    for (const DrawCase& drawCase : cases()) {
        expectExtremesDrawNothing(drawCase);
    }
    const UniqueSurface surface = filledSurface(7, 5, background);
    renderBlit(surface.get(), picture.get(), 0, 0, -3, 2);
    renderBoxFill(surface.get(), 3, 3, -2, -2, 0x00FFFFFF, 1);
    renderBoxFill(surface.get(), INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0x00FFFFFF, 1);
    renderBox(surface.get(), 3, 3, INT_MIN, 4, 0x00FFFFFF);
    renderBox(surface.get(), -1, -1, INT_MAX, INT_MAX, 0x00FFFFFF);
    EXPECT_EQ(pixelsOf(surface), pixelsOf(filledSurface(7, 5, background)));
}

TEST(BlitTest, SkipsTransparentCopiesOpaqueBlendsTranslucentOrCopiesEveryByteFast) {
    const UniqueSurface picture = samplePicture();
    const UniqueSurface surface = filledSurface(3, 2, 0xAA000000);
    renderBlit(surface.get(), picture.get(), 0, 0, 3, 2);
    // (255 * 127 + 0 * 128) / 255 = 127, destination's fourth byte kept;
    // 0x40 leaves 191/255 of the colour: round(255 * 191 / 255) = 191.
    expectPixels(surface.get(),
                 {{0, 0, 0x00FF0000}, {1, 0, 0xAA000000}, {2, 0, 0xAA00007F}, {2, 1, 0xAABFBF00}});
    // Only the requested part of the source.
    const UniqueSurface part = filledSurface(3, 2, background);
    renderBlit(part.get(), picture.get(), 0, 0, 1, 1);
    EXPECT_EQ(pixelsOf(part), (std::vector<std::uint32_t>{0x00FF0000u, background, background,
                                                          background, background, background}));

    const UniqueSurface fast = filledSurface(5, 4, background);
    renderBlitFast(fast.get(), picture.get(), 1, 1);
    expectPixels(fast.get(),
                 {{2, 1, 0xFF000000}, {3, 2, 0x40FFFF00}, {0, 0, background}, {4, 3, background}});
}

TEST(BoxTest, FillReplacesBlendsOrSkipsByFourthByte) {
    const UniqueSurface surface = filledSurface(2, 1, 0x00000000);
    renderBoxFill(surface.get(), 0, 0, 1, 1, 0x00123456, 0);
    renderBoxFill(surface.get(), 1, 0, 1, 1, 0x7FFFFFFF, 1);
    renderBoxFill(surface.get(), 0, 0, 2, 1, 0xFFFFFFFF, 1);
    renderBoxFill(surface.get(), 0, 0, 2, 1, 0xFFFFFFFF, 0);
    expectPixels(surface.get(), {{0, 0, 0x00123456}, {1, 0, 0x00808080}});
}

TEST(BoxTest, PatternColoursPixelsWhoseCoordinatesSumToEven) {
    const UniqueSurface surface = filledSurface(6, 4, background);
    renderBoxFill(surface.get(), 1, 1, 4, 2, createBGRA(255, 0, 0, 80), 0);
    for (std::int32_t y = 0; y < 4; ++y) {
        for (std::int32_t x = 0; x < 6; ++x) {
            const bool inside = x >= 1 && x < 5 && y >= 1 && y < 3;
            const std::uint32_t expected = inside && (x + y) % 2 == 0 ? 0x00FF0000u : background;
            EXPECT_EQ(surfaceGetPixel(surface.get(), x, y), expected) << x << "," << y;
        }
    }
}

TEST(BoxTest, OutlineIsOnePixelAndBlendsCornersOnce) {
    const UniqueSurface surface = filledSurface(5, 4, 0);
    renderBox(surface.get(), 0, 0, 5, 4, 0x7FFFFFFF);
    for (std::int32_t y = 0; y < 4; ++y) {
        for (std::int32_t x = 0; x < 5; ++x) {
            const bool edge = x == 0 || y == 0 || x == 4 || y == 3;
            EXPECT_EQ(surfaceGetPixel(surface.get(), x, y), edge ? 0x00808080u : 0u)
                << x << "," << y;
        }
    }
    const UniqueSurface line = filledSurface(3, 1, 0);
    renderBox(line.get(), 0, 0, 3, 1, 0x7FFFFFFF);
    EXPECT_EQ(surfaceGetPixel(line.get(), 1, 0), 0x00808080u);
}

TEST(TextTest, GlyphsTakeTheColourAndAdvanceByTheCellWidth) {
    const UniqueFont font = sampleFont();
    ASSERT_TRUE(font);
    const UniqueSurface surface = filledSurface(6, 3, background);
    renderText(surface.get(), font.get(), 0, 0, 0x00FF0000, "abc");
    for (std::int32_t x = 0; x < 6; ++x) {
        EXPECT_EQ(surfaceGetPixel(surface.get(), x, 1), x % 2 == 0 ? 0x00FF0000u : background) << x;
    }
    renderText(surface.get(), font.get(), 0, 0, 0xFF00FF00, "abc");
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 0), 0x00FF0000u) << "invisible colour";
}

TEST(DrawingTest, UnknownHandlesAreHarmless) {
    const UniqueSurface picture = samplePicture();
    std::int32_t stale = surfaceCreate(4, 4);
    surfaceDestroy(stale);
    for (const std::int32_t handle : {0, -1, stale, 0x7FFFFFFF}) {
        renderBlit(handle, picture.get(), 0, 0, 3, 2);
        renderBlit(picture.get(), handle, 0, 0, 3, 2);
        renderBlitFast(handle, picture.get(), 0, 0);
        renderBlitFast(picture.get(), handle, 0, 0);
        renderBoxFill(handle, 0, 0, 2, 2, 0, 1);
        renderBox(handle, 0, 0, 2, 2, 0);
        renderText(handle, handle, 0, 0, 0, "x");
        renderText(picture.get(), handle, 0, 0, 0, "x");
    }
    EXPECT_EQ(pixelsOf(picture), pixelsOf(samplePicture()));
}

} // namespace
} // namespace marvek::test
