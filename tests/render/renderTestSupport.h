#pragma once

#include "data/clsLevel.h"
#include "data/clsTileSet.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsFont.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "level/levelTestSupport.h"
#include "native/marvek.h"
#include "specials/clsSpecialSet.h"
#include "specials/specialsTestSupport.h"
#include "support/TempDir.h"

#include <cstdint>
#include <string>
#include <vector>

namespace marvek::test {

inline constexpr int tilePlanes = 5;

// 32 colours, none of them black, so that no tile looks like a cleared pixel.
inline clsPalette brightPalette() {
    clsPalette palette;
    for (std::uint32_t i = 0; i < 32; ++i) {
        palette.addEntry((40 + i * 6) | (200 - i * 5) << 8 | (i * 7 + 10) << 16);
    }
    return palette;
}

// Tile i is one solid colour, palette index i % 31 + 1.
inline clsTileSet solidTiles(std::int32_t count, const clsPalette& palette = brightPalette()) {
    std::vector<std::uint8_t> bytes;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t index = i % 31 + 1;
        for (int plane = 0; plane < tilePlanes; ++plane) {
            bytes.insert(bytes.end(), 32, ((index >> plane) & 1) != 0 ? 0xFF : 0x00);
        }
    }
    clsBitStream stream = streamOver(bytes);
    clsTileSet tiles;
    tiles.loadFrom(stream, palette, tilePlanes);
    return tiles;
}

inline std::uint32_t pixelOf(const clsSurface& surface) {
    return surfaceGetPixel(surface.surface(), 0, 0);
}

inline std::uint32_t pixelAt(const clsBackBuffer& buffer, std::int32_t x, std::int32_t y) {
    return surfaceGetPixel(buffer.surface(), x, y);
}

inline clsBackBuffer backBuffer(std::int32_t width, std::int32_t height) {
    clsBackBuffer buffer;
    buffer.Create(width, height, 1);
    return buffer;
}

// A level whose tile in each cell is its column modulo `tiles`.
inline clsLevel columnLevel(std::int32_t width, std::int32_t height, std::int32_t tiles) {
    clsLevel level;
    level.width = width;
    level.height = height;
    level.resizeCells();
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            level.cellAt(x, y).tile = static_cast<std::int16_t>(x % tiles);
        }
    }
    return level;
}

// The sheet holds solid squares at (0, 0) of index 5, 32 x 32, and at
// (64, 0) of index 9, 16 x 16.
inline clsSurface squaresSheet() {
    clsSurface sheet;
    sheet.planarCreateEmpty(320, 320);
    for (std::int32_t y = 0; y < 32; ++y) {
        for (std::int32_t x = 0; x < 32; ++x) {
            sheet.ptrPlanar()[y * 320 + x] = 5;
            if (x < 16 && y < 16) {
                sheet.ptrPlanar()[y * 320 + 64 + x] = 9;
            }
        }
    }
    return sheet;
}

// A set from one configuration's "Specials" body, set up over squaresSheet.
inline clsSpecialSet specialSet(const TempDir& folder, const std::string& specials) {
    writeText(folder / "level.cfg", "Specials {" + specials + "}");
    clsSpecialSet set;
    set.loadFrom(folder / "level.cfg");
    set.Init(squaresSheet(), brightPalette(), folder.path());
    return set;
}

// Every glyph a solid 2 x 3 block of ink.
inline clsFont blockFont(const TempDir& folder) {
    writeBitmap24(folder / "block.bmp", 32, 48,
                  [](std::int32_t, std::int32_t) { return 0xFFFFFFu; });
    clsFont font;
    font.loadFromFile(folder / "block.bmp");
    return font;
}

} // namespace marvek::test
