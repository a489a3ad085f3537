#include "graphics/pictureFormat.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace marvek {

ParameterRange parameterRange(PictureParameter parameter) {
    switch (parameter) {
    case PictureParameter::width:
    case PictureParameter::height:
    case PictureParameter::count:
        return {1, 1024};
    case PictureParameter::planes:
        return {1, 8};
    case PictureParameter::across:
        return {1, 640};
    case PictureParameter::offset:
        break;
    }
    return {0, std::numeric_limits<std::int32_t>::max()};
}

std::int32_t clampParameter(PictureParameter parameter, std::int64_t value) {
    const ParameterRange range = parameterRange(parameter);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, range.minimum, range.maximum));
}

PictureFormat clampedFormat(const PictureFormat& format) {
    PictureFormat clamped = format;
    clamped.width = clampParameter(PictureParameter::width, format.width);
    clamped.height = clampParameter(PictureParameter::height, format.height);
    clamped.planes = clampParameter(PictureParameter::planes, format.planes);
    clamped.offset = clampParameter(PictureParameter::offset, format.offset);
    clamped.count = clampParameter(PictureParameter::count, format.count);
    clamped.across = clampParameter(PictureParameter::across, format.across);
    return clamped;
}

bool isValidFormat(const PictureFormat& format) {
    const PictureFormat clamped = clampedFormat(format);
    return clamped.width == format.width && clamped.height == format.height &&
           clamped.planes == format.planes && clamped.offset == format.offset &&
           clamped.count == format.count && clamped.across == format.across;
}

std::int32_t offsetStep(std::int32_t width) {
    const auto bytes = static_cast<std::int32_t>(std::nearbyint(width / 8.0));
    return std::max(bytes, 1);
}

PictureGrid pictureGrid(const PictureFormat& format) {
    PictureGrid grid;
    if (format.count < 1 || format.across < 1) {
        return grid;
    }
    grid.columns = std::min(format.across, format.count);
    grid.rows = (std::int64_t{format.count} + format.across - 1) / format.across;
    grid.width = grid.columns * format.width;
    grid.height = grid.rows * format.height;
    return grid;
}

std::uint64_t subImageBits(const PictureFormat& format) {
    return static_cast<std::uint64_t>(std::max(format.width, 0)) *
           static_cast<std::uint64_t>(std::max(format.height, 0)) *
           static_cast<std::uint64_t>(std::max(format.planes, 0));
}

std::uint64_t pictureEnd(const PictureFormat& format) {
    const std::uint64_t bits =
        subImageBits(format) * static_cast<std::uint64_t>(std::max(format.count, 0));
    return static_cast<std::uint64_t>(std::max(format.offset, 0)) + (bits + 7) / 8;
}

} // namespace marvek
