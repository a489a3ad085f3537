#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace marvek {

class clsBackBuffer;
class clsPalette;
class clsSurface;

// An opaque 24-bit PNG of surface pixels (top-down rows of blue, green, red
// and a transparency byte, which is dropped). Throws std::invalid_argument
// when the pixels do not make width x height.
std::vector<std::uint8_t> encodePng(std::span<const std::uint32_t> pixels, std::int32_t width,
                                    std::int32_t height);

// A 32-bit PNG with an alpha channel of surface pixels, whose fourth byte
// (transparency) becomes the PNG's opacity. Throws as encodePng does.
std::vector<std::uint8_t> encodeTranslucentPng(std::span<const std::uint32_t> pixels,
                                               std::int32_t width, std::int32_t height);

// An 8-bit indexed PNG whose colour table is the palette (black past its
// end). Throws std::invalid_argument as encodePng does.
std::vector<std::uint8_t> encodeIndexedPng(std::span<const std::uint8_t> indices,
                                           std::int32_t width, std::int32_t height,
                                           const clsPalette& palette);

// The back buffer's surface as a PNG file, written atomically. Throws
// FileError naming the file.
void writePngFile(const clsBackBuffer& backBuffer, const std::filesystem::path& path);
// A planar picture as an indexed PNG with its palette. Throws FileError.
void writePngFile(const clsSurface& picture, const std::filesystem::path& path);

} // namespace marvek
