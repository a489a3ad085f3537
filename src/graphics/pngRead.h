#pragma once

#include "graphics/clsSurface.h"

#include <cstdint>
#include <span>
#include <vector>

namespace marvek {

// True when the bytes start with the PNG signature.
bool isPngData(std::span<const std::uint8_t> bytes) noexcept;

// An indexed PNG (a palette of at most 256 colours, 1 to 8 bits a pixel,
// interlaced or not) as a planar picture: one byte an index, rows from the
// top, the palette's colours in order. Throws std::invalid_argument saying
// why any other PNG, or a damaged one, is refused.
clsSurface decodeIndexedPng(std::span<const std::uint8_t> bytes);

// True when the PNG has a palette (decodeIndexedPng takes it). Throws
// std::invalid_argument for a file that is no PNG or whose header is damaged.
bool isIndexedPng(std::span<const std::uint8_t> bytes);

// A picture by the colour of each pixel.
struct ColourPicture {
    // Stands for a fully transparent pixel; no colour has a top byte.
    static constexpr std::uint32_t transparent = 0xFF000000;
    std::int32_t width = 0;
    std::int32_t height = 0;
    // Windows colour values (0x00BBGGRR) or transparent, rows from the top.
    std::vector<std::uint32_t> pixels;
};

// Any PNG (true colour, grey, with or without alpha, 8 or 16 bits a
// channel; a palette too) by its colours: a pixel of alpha 0 is transparent,
// any other takes its colour whatever its alpha. Throws std::invalid_argument
// saying why a damaged or oversized PNG is refused.
ColourPicture decodePngColours(std::span<const std::uint8_t> bytes);

} // namespace marvek
