#pragma once

// A few bytes of RLE8 data may describe a picture of up to 64 megapixels,
// and building one costs a thousand small ones while taking the same paths
// through the readers. The BMP targets leave out pictures between a
// megapixel and the readers' limit; larger ones stay in, as the readers
// refuse them before building anything.

#include "native/surface.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace marvek::fuzz {

inline bool isCostlyPicture(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t widthAt = 18;
    constexpr std::size_t heightAt = 22;
    if (size < heightAt + 4) {
        return false;
    }
    const auto side = [data](std::size_t at) {
        const auto value =
            static_cast<std::uint32_t>(data[at] | data[at + 1] << 8 | data[at + 2] << 16) |
            static_cast<std::uint32_t>(data[at + 3]) << 24;
        return std::llabs(static_cast<std::int32_t>(value));
    };
    constexpr std::int64_t megapixel = std::int64_t{1} << 20;
    const std::int64_t area = side(widthAt) * side(heightAt);
    return area > megapixel && area <= maxSurfacePixels;
}

} // namespace marvek::fuzz
