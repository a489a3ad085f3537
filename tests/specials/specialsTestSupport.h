#pragma once

#include "configuration/clsConfiguration.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "specials/clsSpecial.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace marvek::test {

inline void writeText(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

// A bottom-up 24-bit BMP; colourAt gives 0xRRGGBB for each pixel.
inline void
writeBitmap24(const std::filesystem::path& path, std::int32_t width, std::int32_t height,
              const std::function<std::uint32_t(std::int32_t, std::int32_t)>& colourAt) {
    const auto rowBytes = static_cast<std::uint32_t>((width * 3 + 3) / 4 * 4);
    const std::uint32_t imageBytes = rowBytes * static_cast<std::uint32_t>(height);
    std::vector<std::uint8_t> file{'B', 'M'};
    const auto put = [&file](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    };
    const std::uint32_t fileHeader[] = {54 + imageBytes, 0, 54};
    for (const std::uint32_t value : fileHeader) {
        put(value, 4);
    }
    put(40, 4);
    put(static_cast<std::uint32_t>(width), 4);
    put(static_cast<std::uint32_t>(height), 4);
    put(1, 2);
    put(24, 2);
    const std::uint32_t infoTail[] = {0, imageBytes, 2835, 2835, 0, 0};
    for (const std::uint32_t value : infoTail) {
        put(value, 4);
    }
    for (std::int32_t row = height - 1; row >= 0; --row) {
        const std::size_t start = file.size();
        for (std::int32_t x = 0; x < width; ++x) {
            put(colourAt(x, row), 3);
        }
        file.resize(start + rowBytes, 0);
    }
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()),
               static_cast<std::streamsize>(file.size()));
}

// Four colours: index 0 black, 1 red, 2 green, 3 blue (0x00BBGGRR).
inline clsPalette fourColourPalette() {
    clsPalette palette;
    for (const std::uint32_t colour : {0x000000u, 0x0000FFu, 0x00FF00u, 0xFF0000u}) {
        palette.addEntry(colour);
    }
    return palette;
}

// The game's 320 x 320 sheet, all index 0 but for `index` at (x, y).
inline clsSurface spriteSheet(std::int32_t x = 0, std::int32_t y = 0, std::uint8_t index = 0) {
    clsSurface sheet;
    sheet.planarCreateEmpty(320, 320);
    sheet.ptrPlanar()[y * 320 + x] = index;
    return sheet;
}

// A special read from the body of one section, as a configuration gives it.
inline clsSpecial specialFrom(const std::string& body) {
    clsConfiguration configuration;
    configuration.InputConfiguration("s {" + body + "}");
    clsSpecial special;
    special.loadFromDict(*std::get<SectionPtr>(configuration.ReadSetting("s", 0, true)), "test.cfg",
                         "s");
    return special;
}

} // namespace marvek::test
