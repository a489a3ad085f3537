#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace marvek {

// The size of a run-length compressed BMP's picture.
struct RunLengthImage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    int bitsPerPixel = 8; // 8 for RLE8, 4 for RLE4
};

// Decoded pixels in the layout of an uncompressed file: rows bottom-up, each
// padded to four bytes; pixels the data skips or never reaches are 0.
struct RunLengthResult {
    std::vector<std::uint8_t> rows;
    std::string failure; // why the data was refused; rows are then empty
};

// Decodes RLE8 or RLE4 data. Runs and literal stretches that pass the end of
// a row or of the picture are cut off rather than refused, as image editors
// read them; data that stops before the picture is filled is refused.
RunLengthResult decodeRunLength(std::span<const std::uint8_t> data, const RunLengthImage& image);

} // namespace marvek
