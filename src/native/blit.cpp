#include "native/marvek.h"
#include "native/pixels.h"
#include "native/surface.h"

#include <algorithm>
#include <cstring>

namespace marvek {

namespace {

// A colour drawn over a rectangle, blended by its fourth byte.
void drawRect(Surface& surface, std::int64_t x, std::int64_t y, std::int64_t width,
              std::int64_t height, std::uint32_t colour) noexcept {
    const PixelRect area = clipRect(x, y, width, height, surface.width, surface.height);
    if (area.empty() || transparencyOf(colour) == invisibleTransparency) {
        return;
    }
    for (std::int32_t row = area.top; row < area.bottom; ++row) {
        std::uint32_t* pixels = surface.row(row);
        for (std::int32_t column = area.left; column < area.right; ++column) {
            pixels[column] = drawPixel(colour, pixels[column]);
        }
    }
}

// The fast stand-in for blending: pixels whose destination x + y is even take
// the colour's red, green and blue; the others are left. Anchoring the phase
// to the destination makes neighbouring boxes mesh into one pattern.
void drawPattern(Surface& surface, std::int64_t x, std::int64_t y, std::int64_t width,
                 std::int64_t height, std::uint32_t colour) noexcept {
    const PixelRect area = clipRect(x, y, width, height, surface.width, surface.height);
    const std::uint32_t rgb = colour & 0x00FFFFFFu;
    for (std::int32_t row = area.top; row < area.bottom; ++row) {
        std::uint32_t* pixels = surface.row(row);
        for (std::int32_t column = area.left + ((area.left + row) & 1); column < area.right;
             column += 2) {
            pixels[column] = (pixels[column] & 0xFF000000u) | rgb;
        }
    }
}

void copyRows(Surface& target, const Surface& picture, const PixelRect& area, std::int32_t x,
              std::int32_t y, std::size_t rowBytes) noexcept {
    for (std::int32_t row = area.top; row < area.bottom; ++row) {
        std::memcpy(target.row(row) + area.left, picture.row(row - y) + (area.left - x), rowBytes);
    }
}

} // namespace

} // namespace marvek

using namespace marvek;

extern "C" {

int32_t renderInit(void) {
    return 1;
}

void renderBlit(int32_t destination, int32_t source, int32_t x, int32_t y, int32_t width,
                int32_t height) {
    Surface* target = findSurface(destination);
    const Surface* picture = findSurface(source);
    if (target == nullptr || picture == nullptr) {
        return;
    }
    const PixelRect area =
        clipRect(x, y, std::min(width, picture->width), std::min(height, picture->height),
                 target->width, target->height);
    for (std::int32_t row = area.top; row < area.bottom; ++row) {
        const std::uint32_t* from = picture->row(row - y) + (area.left - x);
        std::uint32_t* to = target->row(row) + area.left;
        for (std::int32_t i = 0; i < area.width(); ++i) {
            to[i] = drawPixel(from[i], to[i]);
        }
    }
}

void renderBlitFast(int32_t destination, int32_t source, int32_t x, int32_t y) {
    Surface* target = findSurface(destination);
    const Surface* picture = findSurface(source);
    if (target == nullptr || picture == nullptr || target == picture) {
        return;
    }
    const PixelRect area =
        clipRect(x, y, picture->width, picture->height, target->width, target->height);
    // Level tiles are 16 pixels wide: a copy of constant size compiles to a
    // few moves instead of a library call per row.
    constexpr std::int32_t tileWidth = 16;
    if (area.width() == tileWidth) {
        copyRows(*target, *picture, area, x, y, tileWidth * sizeof(std::uint32_t));
    } else {
        copyRows(*target, *picture, area, x, y,
                 static_cast<std::size_t>(area.width()) * sizeof(std::uint32_t));
    }
}

void renderBoxFill(int32_t destination, int32_t x, int32_t y, int32_t width, int32_t height,
                   uint32_t colour, int32_t alphaBlending) {
    Surface* target = findSurface(destination);
    if (target == nullptr) {
        return;
    }
    const std::uint32_t transparency = transparencyOf(colour);
    if (alphaBlending == 0 && transparency != opaqueTransparency &&
        transparency != invisibleTransparency) {
        drawPattern(*target, x, y, width, height, colour);
    } else {
        drawRect(*target, x, y, width, height, colour);
    }
}

void renderBox(int32_t destination, int32_t x, int32_t y, int32_t width, int32_t height,
               uint32_t colour) {
    Surface* target = findSurface(destination);
    if (target == nullptr || width <= 0 || height <= 0) {
        return;
    }
    // Four edges that never overlap, so a translucent outline blends evenly.
    const std::int64_t right = std::int64_t{x} + width - 1;
    const std::int64_t bottom = std::int64_t{y} + height - 1;
    drawRect(*target, x, y, width, 1, colour);
    if (height > 1) {
        drawRect(*target, x, bottom, width, 1, colour);
    }
    drawRect(*target, x, std::int64_t{y} + 1, 1, std::int64_t{height} - 2, colour);
    if (width > 1) {
        drawRect(*target, right, std::int64_t{y} + 1, 1, std::int64_t{height} - 2, colour);
    }
}

} // extern "C"
