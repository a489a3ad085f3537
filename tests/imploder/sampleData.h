#pragma once

// Inputs shaped like the game's files, for packing tests and benchmarks.

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace marvek::testing {

inline std::vector<std::uint8_t> randomBytes(std::size_t length, unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_int_distribution<int> byte(0, 255);
    std::vector<std::uint8_t> data(length);
    for (auto& value : data) {
        value = static_cast<std::uint8_t>(byte(generator));
    }
    return data;
}

// A level's cell grid: big-endian 16-bit words, runs of one tile, rows that
// repeat with small changes, the odd special in the top bits.
inline std::vector<std::uint8_t> levelLikeBytes(std::size_t length, unsigned seed) {
    std::mt19937 generator(seed);
    constexpr std::size_t kRowWords = 300;
    std::vector<std::uint16_t> row(kRowWords);
    std::vector<std::uint8_t> data;
    data.reserve(length);
    while (data.size() < length) {
        for (std::size_t x = 0; x < kRowWords;) {
            const std::size_t runLength = 1 + generator() % 12;
            const auto tile = static_cast<std::uint16_t>(generator() % 64);
            for (std::size_t i = 0; i < runLength && x < kRowWords; ++i, ++x) {
                if (generator() % 3 == 0) {
                    row[x] = tile;
                }
            }
        }
        if (generator() % 8 == 0) {
            row[generator() % kRowWords] |=
                static_cast<std::uint16_t>((1 + generator() % 63) << 10);
        }
        for (std::size_t x = 0; x < kRowWords && data.size() < length; ++x) {
            data.push_back(static_cast<std::uint8_t>(row[x] >> 8));
            if (data.size() < length) {
                data.push_back(static_cast<std::uint8_t>(row[x]));
            }
        }
    }
    return data;
}

// Interleaved bitplanes of 16 x 16 tiles: mostly sparse bytes with repeated
// patterns, some noise.
inline std::vector<std::uint8_t> bitplaneLikeBytes(std::size_t length, unsigned seed) {
    std::mt19937 generator(seed);
    std::vector<std::uint8_t> data;
    data.reserve(length);
    std::vector<std::uint8_t> pattern(32);
    while (data.size() < length) {
        if (generator() % 4 == 0) {
            for (auto& value : pattern) {
                const unsigned kind = generator() % 4;
                value = kind == 0 ? 0 : kind == 1 ? 0xFF : static_cast<std::uint8_t>(generator());
            }
        }
        for (std::size_t i = 0; i < pattern.size() && data.size() < length; ++i) {
            data.push_back(generator() % 16 == 0 ? static_cast<std::uint8_t>(generator())
                                                 : pattern[i]);
        }
    }
    return data;
}

} // namespace marvek::testing
