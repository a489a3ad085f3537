#pragma once

#include "graphics/paletteChoices.h"
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

// The browser's "Grey" and "After" palette choices.
inline PaletteChoice greyChoice() {
    return {"Grey", PaletteChoice::Kind::grey, {}};
}
inline PaletteChoice afterChoice() {
    return {"After", PaletteChoice::Kind::after, {}};
}

} // namespace marvek::test
