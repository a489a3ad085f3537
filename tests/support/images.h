#pragma once

#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace marvek::test {

inline clsPalette paletteOf(std::initializer_list<std::uint32_t> colours) {
    clsPalette palette;
    for (const std::uint32_t colour : colours) {
        palette.addEntry(colour);
    }
    return palette;
}

// 32 different colours, none black, of 4-bit components as the game's files
// keep them.
inline clsPalette gamePalette() {
    clsPalette palette;
    for (std::uint32_t i = 0; i < clsPalette::gameEntries; ++i) {
        palette.addEntry((i % 16) * 17 | (i / 16) * 0xFF00u | 0x880000u);
    }
    return palette;
}

inline clsSurface planarImage(std::int32_t width, std::int32_t height,
                              const std::vector<std::uint8_t>& pixels) {
    clsSurface image;
    image.planarCreateEmpty(width, height);
    std::copy(pixels.begin(), pixels.end(), image.ptrPlanar());
    return image;
}

inline std::vector<std::uint8_t> planarOf(const clsSurface& image) {
    return {image.planarPixels().begin(), image.planarPixels().end()};
}

struct Square {
    std::int32_t x, y, size;
    std::uint8_t index;
};

// The game's 320 x 320 sprite sheet: index 0 but for the squares.
inline clsSurface spriteSheet(std::initializer_list<Square> squares = {}) {
    clsSurface sheet;
    sheet.planarCreateEmpty(320, 320);
    for (const Square& square : squares) {
        for (std::int32_t y = square.y; y < square.y + square.size; ++y) {
            std::fill_n(sheet.ptrPlanar() + y * 320 + square.x, square.size, square.index);
        }
    }
    return sheet;
}

} // namespace marvek::test
