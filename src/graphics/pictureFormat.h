#pragma once

#include <cstdint>

namespace marvek {

// How raw bitplanes are read as a picture: `count` sub-images of width x
// height pixels and `planes` planes, one straight after another from byte
// `offset`, shown side by side `across` to a row.
struct PictureFormat {
    std::int32_t width = 16;
    std::int32_t height = 16;
    std::int32_t planes = 5;
    std::int32_t offset = 0;
    std::int32_t count = 1;
    std::int32_t across = 1;
    // Indices 0..15 of the file are shown and exported as 16..31, so that
    // pictures drawn with the upper half of a palette keep their colours.
    bool shiftColours = false;

    bool operator==(const PictureFormat&) const = default;
};

enum class PictureParameter { width, height, planes, offset, count, across };

struct ParameterRange {
    std::int32_t minimum;
    std::int32_t maximum;
};

// The limits of each parameter; the offset's maximum is only the largest
// 32-bit value.
ParameterRange parameterRange(PictureParameter parameter);
// The value brought inside the parameter's range.
std::int32_t clampParameter(PictureParameter parameter, std::int64_t value);
// The format with each value brought inside its range.
PictureFormat clampedFormat(const PictureFormat& format);
// True when every value lies inside its range.
bool isValidFormat(const PictureFormat& format);

// The offset box's step: width / 8 rounded (half to even), the bytes of one
// row of one plane; at least 1.
std::int32_t offsetStep(std::int32_t width);

// The grid of sub-images: columns, rows and the picture's size in pixels.
struct PictureGrid {
    std::int64_t columns = 0;
    std::int64_t rows = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
};
// min(across, count) columns; as many rows as the count needs.
PictureGrid pictureGrid(const PictureFormat& format);

// Bits of one sub-image: width x height x planes.
std::uint64_t subImageBits(const PictureFormat& format);
// The first byte after the last sub-image's last bit.
std::uint64_t pictureEnd(const PictureFormat& format);

} // namespace marvek
