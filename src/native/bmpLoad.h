#pragma once

#include "native/surface.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace marvek {

// No acceptable BMP is larger than its largest pixel array plus headers.
inline constexpr std::size_t maxBitmapFileBytes =
    static_cast<std::size_t>(maxSurfacePixels) * 4 + (std::size_t{1} << 20);

// Decodes an 8-bit (uncompressed or RLE8), 24- or 32-bit BMP, bottom-up or
// top-down, the last row's padding optional, into an opaque surface (fourth
// byte 0). nullptr for anything else or anything malformed.
std::unique_ptr<Surface> loadBitmapSurface(std::span<const std::uint8_t> file) noexcept;

} // namespace marvek
