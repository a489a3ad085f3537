#pragma once

#include <algorithm>
#include <cstdint>

namespace marvek {

// The fourth byte of a pixel counts transparency: 0 opaque, 255 invisible.
inline constexpr std::uint32_t opaqueTransparency = 0;
inline constexpr std::uint32_t invisibleTransparency = 255;

constexpr std::uint32_t transparencyOf(std::uint32_t pixel) noexcept {
    return pixel >> 24;
}

// round(value / 255) for value in 0 .. 255 * 255, without a division.
constexpr std::uint32_t divideBy255(std::uint32_t value) noexcept {
    const std::uint32_t biased = value + 128;
    return (biased + (biased >> 8)) >> 8;
}

// Each colour channel becomes round((source * (255 - t) + destination * t) / 255),
// t being the source's fourth byte; the result keeps the destination's fourth
// byte, so drawing over an opaque image leaves it opaque.
constexpr std::uint32_t blendPixel(std::uint32_t source, std::uint32_t destination) noexcept {
    const std::uint32_t t = transparencyOf(source);
    std::uint32_t result = destination & 0xFF000000u;
    for (int shift = 0; shift < 24; shift += 8) {
        const std::uint32_t s = (source >> shift) & 0xFF;
        const std::uint32_t d = (destination >> shift) & 0xFF;
        result |= divideBy255(s * (255 - t) + d * t) << shift;
    }
    return result;
}

// What drawing `source` over `destination` gives under the transparency rule.
constexpr std::uint32_t drawPixel(std::uint32_t source, std::uint32_t destination) noexcept {
    switch (transparencyOf(source)) {
    case opaqueTransparency:
        return source;
    case invisibleTransparency:
        return destination;
    default:
        return blendPixel(source, destination);
    }
}

// A half-open rectangle [left, right) x [top, bottom) of pixels.
struct PixelRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    constexpr bool empty() const noexcept { return left >= right || top >= bottom; }
    constexpr std::int32_t width() const noexcept { return right - left; }
    constexpr std::int32_t height() const noexcept { return bottom - top; }
};

// The part of the rectangle at (x, y) of width x height that lies inside a
// surface of surfaceWidth x surfaceHeight. 64-bit sums keep huge or negative
// arguments from overflowing.
constexpr PixelRect clipRect(std::int64_t x, std::int64_t y, std::int64_t width,
                             std::int64_t height, std::int32_t surfaceWidth,
                             std::int32_t surfaceHeight) noexcept {
    if (width <= 0 || height <= 0) {
        return {};
    }
    const std::int64_t left = std::max<std::int64_t>(x, 0);
    const std::int64_t top = std::max<std::int64_t>(y, 0);
    const std::int64_t right = std::min<std::int64_t>(x + width, surfaceWidth);
    const std::int64_t bottom = std::min<std::int64_t>(y + height, surfaceHeight);
    if (left >= right || top >= bottom) {
        return {};
    }
    return {static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
            static_cast<std::int32_t>(right), static_cast<std::int32_t>(bottom)};
}

} // namespace marvek
