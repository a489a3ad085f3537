#pragma once

#include "tool/sample/Canvas.h"

#include <cstdint>
#include <string_view>

namespace marvek::sample {

// Font images in the layout the native library reads: a 16 x 16 grid of
// 8 x 8 cells for the codes 0-255, colour 1 ink on colour 0.
Canvas drawGameFont();
// The game font with every stroke doubled one pixel to the right.
Canvas drawBoldFont();

// Writes text in the game font's glyphs, each pixel a scale x scale block,
// 6 x scale pixels a character.
void drawText(Canvas& canvas, std::int32_t x, std::int32_t y, std::string_view text,
              std::uint8_t colour, std::int32_t scale = 1);

} // namespace marvek::sample
