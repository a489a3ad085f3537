#include "native/bmpLoad.h"
#include "native/fileBytes.h"
#include "native/marvek.h"
#include "native/pixels.h"
#include "native/surface.h"

#include <algorithm>
#include <new>

namespace marvek {

namespace {

// A font image is a 16 x 16 grid of equal cells holding character codes 0 to
// 255 row by row; any pixel that is not black is ink.
constexpr std::int32_t cellsPerSide = 16;
constexpr std::uint32_t rgbMask = 0x00FFFFFFu;

std::int32_t registerFont(std::unique_ptr<Surface> glyphs) noexcept {
    const std::int32_t charWidth = glyphs->width / cellsPerSide;
    const std::int32_t charHeight = glyphs->height / cellsPerSide;
    const std::int32_t surface = registerSurface(std::move(glyphs));
    if (surface == 0) {
        return 0;
    }
    std::int32_t font = 0;
    try {
        font = fontTable().add(std::make_unique<Font>(Font{surface, charWidth, charHeight}));
    } catch (const std::bad_alloc&) {
    }
    if (font == 0) {
        surfaceDestroy(surface);
    }
    return font;
}

void drawGlyph(Surface& target, const Surface& glyphs, const Font& font, unsigned char character,
               std::int64_t x, std::int64_t y, std::uint32_t colour) noexcept {
    const PixelRect area =
        clipRect(x, y, font.charWidth, font.charHeight, target.width, target.height);
    const std::int32_t cellLeft = (character % cellsPerSide) * font.charWidth;
    const std::int32_t cellTop = (character / cellsPerSide) * font.charHeight;
    for (std::int32_t row = area.top; row < area.bottom; ++row) {
        const std::uint32_t* ink =
            glyphs.row(cellTop + static_cast<std::int32_t>(row - y)) + cellLeft + (area.left - x);
        std::uint32_t* pixels = target.row(row) + area.left;
        for (std::int32_t i = 0; i < area.width(); ++i) {
            if ((ink[i] & rgbMask) != 0) {
                pixels[i] = drawPixel(colour, pixels[i]);
            }
        }
    }
}

} // namespace

} // namespace marvek

using namespace marvek;

extern "C" {

int32_t fontLoadFromBitmap(const char* path) {
    const auto bytes = readFileBytes(path, maxBitmapFileBytes);
    if (!bytes) {
        return 0;
    }
    auto glyphs = loadBitmapSurface(*bytes);
    if (glyphs == nullptr || glyphs->width % cellsPerSide != 0 ||
        glyphs->height % cellsPerSide != 0) {
        return 0;
    }
    return registerFont(std::move(glyphs));
}

int32_t fontLoadFromSurface(int32_t surface) {
    const Surface* source = findSurface(surface);
    if (source == nullptr || source->width % cellsPerSide != 0 ||
        source->height % cellsPerSide != 0) {
        return 0;
    }
    auto glyphs = Surface::create(source->width, source->height);
    if (glyphs == nullptr) {
        return 0;
    }
    std::transform(source->pixels.begin(), source->pixels.end(), glyphs->pixels.begin(),
                   [](std::uint32_t pixel) { return pixel & rgbMask; });
    return registerFont(std::move(glyphs));
}

int32_t fontGetCharWidth(int32_t font) {
    const Font* found = fontTable().find(font);
    return found == nullptr ? 0 : found->charWidth;
}

int32_t fontGetCharHeight(int32_t font) {
    const Font* found = fontTable().find(font);
    return found == nullptr ? 0 : found->charHeight;
}

int32_t fontGetSurface(int32_t font) {
    const Font* found = fontTable().find(font);
    return found == nullptr ? 0 : found->surface;
}

void fontDestroy(int32_t font) {
    const std::unique_ptr<Font> removed = fontTable().remove(font);
    if (removed != nullptr) {
        surfaceDestroy(removed->surface);
    }
}

void renderText(int32_t destination, int32_t font, int32_t x, int32_t y, uint32_t colour,
                const char* text) {
    Surface* target = findSurface(destination);
    const Font* found = fontTable().find(font);
    if (target == nullptr || found == nullptr || text == nullptr ||
        transparencyOf(colour) == invisibleTransparency) {
        return;
    }
    // The glyph surface may have been destroyed behind the font's back.
    const Surface* glyphs = findSurface(found->surface);
    if (glyphs == nullptr) {
        return;
    }
    std::int64_t penX = x;
    for (const char* c = text; *c != '\0' && penX < target->width; ++c, penX += found->charWidth) {
        drawGlyph(*target, *glyphs, *found, static_cast<unsigned char>(*c), penX, y, colour);
    }
}

} // extern "C"
