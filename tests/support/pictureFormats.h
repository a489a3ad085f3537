#pragma once

#include "graphics/pictureFormat.h"

#include <cstdint>

namespace marvek::test {

inline PictureFormat pictureFormat(std::int32_t width, std::int32_t height, std::int32_t planes,
                                   std::int32_t count = 1, std::int32_t across = 1,
                                   std::int32_t offset = 0) {
    PictureFormat format;
    format.width = width;
    format.height = height;
    format.planes = planes;
    format.count = count;
    format.across = across;
    format.offset = offset;
    return format;
}

} // namespace marvek::test
