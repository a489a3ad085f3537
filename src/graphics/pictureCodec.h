#pragma once

#include "graphics/clsSurface.h"
#include "graphics/pictureFormat.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace marvek {

class clsBackBuffer;

// Surfaces are at most this many pixels a side.
inline constexpr std::int64_t maximumPictureSide = 32768;

// Why a picture of the format's grid cannot be made ("the picture would be
// ..."); empty when it can.
std::string pictureSizeRefusal(const PictureFormat& format);

// The picture the bytes give: sub-image i is read from bit offset * 8 +
// i * subImageBits and placed at column i % across, row i / across of the
// grid; bits past the end of the bytes read as 0, grid cells past the count
// stay 0. With shiftColours every index is moved up by 16. Throws
// std::length_error with pictureSizeRefusal's reason.
clsSurface decodePicture(std::span<const std::uint8_t> bytes, const PictureFormat& format);

// The lowest index a decoded picture shows: 16 with shiftColours, else 0.
std::int32_t firstShownIndex(const PictureFormat& format) noexcept;

// True when the picture holds the whole grid of sub-images; pixels right of
// and below the grid are ignored.
bool holdsGrid(const clsSurface& picture, const PictureFormat& format);

// The inverse of decodePicture: cuts the sub-images out of the picture in
// order (moving their indices down by 16 with shiftColours) and writes their
// bitplanes into the bytes from the offset on, growing the bytes to
// pictureEnd. Bits outside the sub-images keep their values. Throws
// std::invalid_argument unless the picture holds the grid.
void encodePicture(const clsSurface& picture, const PictureFormat& format,
                   std::vector<std::uint8_t>& bytes);

// Builds the picture's surface with the palette (no colour transparent) and
// draws it into the back buffer, made the picture's size at its own zoom.
// False when the
// palette is empty or no surface of that size can be made.
bool drawPicture(clsSurface& picture, const clsPalette& palette, clsBackBuffer& backBuffer);

} // namespace marvek
