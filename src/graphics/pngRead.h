#pragma once

#include "graphics/clsSurface.h"

#include <cstdint>
#include <span>

namespace marvek {

// True when the bytes start with the PNG signature.
bool isPngData(std::span<const std::uint8_t> bytes) noexcept;

// An indexed PNG (a palette of at most 256 colours, 1 to 8 bits a pixel,
// interlaced or not) as a planar picture: one byte an index, rows from the
// top, the palette's colours in order. Throws std::invalid_argument saying
// why any other PNG, or a damaged one, is refused.
clsSurface decodeIndexedPng(std::span<const std::uint8_t> bytes);

} // namespace marvek
