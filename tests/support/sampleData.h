#pragma once

// Data shaped like what the editor packs, made reproducibly from a seed.
// Shared by the packing tests and the benchmarks.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace marvek::test {

inline std::vector<std::uint8_t> randomBytes(std::size_t length, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(length);
    for (std::uint8_t& b : bytes) {
        b = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

inline std::vector<std::uint8_t> englishText(std::size_t length, std::uint32_t seed) {
    static const char* const kWords[] = {
        "the ",   "level ", "editor ", "tile ",  "special ",   "of ",  "and ",   "a ",
        "enemy ", "is ",    "placed ", "on ",    "ground ",    "sky ", "to ",    "platform ",
        "with ",  "each ",  "row ",    "world ", "Thornwick ", "in ",  "jumps ", "over ",
        "\n",     ". ",     "spikes ", "gem ",   "door ",      "key ", "start ", "exit "};
    std::mt19937 random(seed);
    std::string text;
    while (text.size() < length) {
        text += kWords[random() % std::size(kWords)];
    }
    return {text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length)};
}

// Runs of one byte, some longer than a single match can copy.
inline std::vector<std::uint8_t> byteRuns(std::size_t length, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes;
    while (bytes.size() < length) {
        const std::size_t run = 1 + random() % (random() % 8 == 0 ? 2000 : 40);
        bytes.insert(bytes.end(), std::min(run, length - bytes.size()),
                     static_cast<std::uint8_t>(random() % 4));
    }
    return bytes;
}

// Cells of a 300-wide level after a header: 16-bit big-endian words, tile in
// the low 10 bits, special in the top 6.
inline std::vector<std::uint8_t> levelLike(std::size_t length, std::uint32_t seed) {
    constexpr std::size_t kWidth = 300;
    constexpr std::size_t kHeader = 3188;
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes = {'F', 'O',  'R', 'M', 0,   0,   0xD1, 0x4C, 'T', 'W',  'L',
                                       'V', 'H',  'E', 'A', 'D', 0,   0,    0,    8,   0x01, 0x2C,
                                       0,   0x54, 'C', 'M', 'A', 'P', 0,    0,    3,   0};
    for (int i = 0; i < 256 * 3; ++i) {
        bytes.push_back(static_cast<std::uint8_t>((i / 3) * (1 + i % 3) & 0xF0));
    }
    while (bytes.size() < std::min(kHeader, length)) {
        // Special records: id, x, y, flags.
        bytes.push_back(static_cast<std::uint8_t>(1 + random() % 63));
        bytes.push_back(0);
        bytes.push_back(static_cast<std::uint8_t>(random() % kWidth));
        bytes.push_back(static_cast<std::uint8_t>(random() % 84));
    }
    std::vector<std::size_t> platformRow(kWidth / 20);
    for (std::size_t& row : platformRow) {
        row = 30 + random() % 35;
    }
    for (std::size_t cell = 0; bytes.size() < length; ++cell) {
        const std::size_t x = cell % kWidth;
        const std::size_t y = cell / kWidth;
        std::uint32_t tile = 0;
        if (y >= 70) {
            tile = y == 70 ? 200 + x % 4 : 210 + (y + x / 8) % 2;
        } else if (y == platformRow[x / 20 % platformRow.size()] && x % 20 < 12) {
            tile = x % 20 == 0 ? 100 : (x % 20 == 11 ? 102 : 101);
        } else if (y < 25 && (x / 7 + y / 3) % 11 == 0) {
            tile = 20 + (x + y) % 6; // clouds
        } else if (y > 40 && x % 37 < 3) {
            tile = 300 + (y % 3) * 3 + x % 37; // ladders and pillars
        }
        if (random() % 40 == 0) {
            tile = 400 + random() % 600;
        }
        std::uint32_t special = random() % 90 == 0 ? 1 + random() % 63 : 0;
        const std::uint32_t word = (special << 10) | tile;
        bytes.push_back(static_cast<std::uint8_t>(word >> 8));
        bytes.push_back(static_cast<std::uint8_t>(word));
    }
    bytes.resize(length); // the palette alone is longer than a short length
    return bytes;
}

// A 32-colour 320-pixel-wide picture as five bitplanes one after another,
// the way the game stores its graphics.
inline std::vector<std::uint8_t> bitplaneLike(std::size_t rows, std::uint32_t seed) {
    constexpr std::size_t kWidth = 320;
    constexpr std::size_t kPlanes = 5;
    std::mt19937 random(seed);
    std::vector<std::uint8_t> planes(kPlanes * rows * kWidth / 8, 0);
    for (std::size_t y = 0; y < rows; ++y) {
        for (std::size_t x = 0; x < kWidth; ++x) {
            std::size_t colour = (y / 12) % 8; // sky bands
            const long dx = static_cast<long>(x % 64) - 32;
            const long dy = static_cast<long>(y % 64) - 32;
            if (dx * dx + dy * dy < 300) {
                colour = 8 + (x / 64 + y / 64) % 8; // discs
            }
            if (y > rows * 3 / 4) {
                colour = 16 + ((x / 16 + y / 16) % 2) * 4 + (x % 16 == 0 ? 1 : 0); // bricks
            }
            if (random() % 50 == 0) {
                colour = random() % 32;
            }
            for (std::size_t plane = 0; plane < kPlanes; ++plane) {
                if ((colour >> plane) & 1) {
                    planes[((plane * rows + y) * kWidth + x) / 8] |=
                        static_cast<std::uint8_t>(0x80 >> (x % 8));
                }
            }
        }
    }
    return planes;
}

} // namespace marvek::test
