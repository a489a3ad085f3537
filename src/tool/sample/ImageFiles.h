#pragma once

#include "graphics/clsPalette.h"
#include "tool/sample/Canvas.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace marvek::sample {

// The canvas in the game's bitplane layout (plane after plane, no padding).
std::vector<std::uint8_t> planarBytes(const Canvas& canvas, int planes);

// An 8-bit BMP of the canvas with the palette as its colour table.
void writeBitmap(const Canvas& canvas, const clsPalette& palette,
                 const std::filesystem::path& path);

} // namespace marvek::sample
