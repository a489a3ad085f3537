#pragma once

// BMP files made and read by hand, so that our readers and writers are
// checked against the format rather than against each other.

#include "support/TempDir.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

namespace marvek::test {

inline void putLittle(std::vector<std::uint8_t>& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

// The two headers as standard writers make them, a colour table of 0x00RRGGBB
// entries (its length is the count of colours used) and the pixel bytes.
inline std::vector<std::uint8_t> bitmapFile(std::int32_t width, std::int32_t height,
                                            std::uint16_t bits,
                                            const std::vector<std::uint32_t>& table,
                                            const std::vector<std::uint8_t>& pixelBytes) {
    const auto offset = static_cast<std::uint32_t>(54 + table.size() * 4);
    const auto imageBytes = static_cast<std::uint32_t>(pixelBytes.size());
    std::vector<std::uint8_t> out{'B', 'M'};
    for (const std::uint32_t value :
         {offset + imageBytes, 0u, offset, 40u, static_cast<std::uint32_t>(width),
          static_cast<std::uint32_t>(height)}) {
        putLittle(out, value, 4);
    }
    putLittle(out, 1, 2);
    putLittle(out, bits, 2);
    for (const std::uint32_t value :
         {0u, imageBytes, 2835u, 2835u, static_cast<std::uint32_t>(table.size()), 0u}) {
        putLittle(out, value, 4);
    }
    for (const std::uint32_t colour : table) {
        putLittle(out, colour, 4);
    }
    out.insert(out.end(), pixelBytes.begin(), pixelBytes.end());
    return out;
}

// Encodes 0x00RRGGBB pixels given top row first as an uncompressed BMP of 8,
// 24 or 32 bits. 8-bit files get a colour table of the distinct colours.
inline std::vector<std::uint8_t> encodeBitmap(std::int32_t width, std::int32_t height,
                                              std::uint16_t bits, bool topDown,
                                              const std::vector<std::uint32_t>& pixels) {
    std::vector<std::uint32_t> table;
    if (bits == 8) {
        table = pixels;
        std::sort(table.begin(), table.end());
        table.erase(std::unique(table.begin(), table.end()), table.end());
    }
    const std::size_t rowBytes = (static_cast<std::size_t>(width) * bits + 31) / 32 * 4;
    std::vector<std::uint8_t> rows;
    for (std::int32_t fileRow = 0; fileRow < height; ++fileRow) {
        const std::int32_t y = topDown ? fileRow : height - 1 - fileRow;
        const std::size_t rowStart = rows.size();
        for (std::int32_t x = 0; x < width; ++x) {
            const std::uint32_t pixel = pixels[static_cast<std::size_t>(y * width + x)];
            if (bits == 8) {
                const auto index = std::lower_bound(table.begin(), table.end(), pixel);
                rows.push_back(static_cast<std::uint8_t>(index - table.begin()));
            } else {
                putLittle(rows, bits == 32 ? pixel | 0xAB000000u : pixel, bits / 8);
            }
        }
        rows.resize(rowStart + rowBytes, 0);
    }
    return bitmapFile(width, topDown ? -height : height, bits, table, rows);
}

// A bottom-up 24-bit BMP; colourAt gives 0xRRGGBB for each pixel.
inline void
writeBitmap24(const std::filesystem::path& path, std::int32_t width, std::int32_t height,
              const std::function<std::uint32_t(std::int32_t, std::int32_t)>& colourAt) {
    std::vector<std::uint32_t> pixels;
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            pixels.push_back(colourAt(x, y));
        }
    }
    std::filesystem::create_directories(path.parent_path());
    writeBytes(path, encodeBitmap(width, height, 24, false, pixels));
}

} // namespace marvek::test
