#pragma once

#include "tool/sample/Canvas.h"
#include "tool/sample/Theme.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace marvek::sample {

// Where a picture lies on the 320 x 320 sprite sheet. The level
// configurations in config/ give the same rectangles as imgOffset/imgSize.
struct SpriteRect {
    std::string_view name;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

inline constexpr std::int32_t spriteSheetSize = 320;

std::span<const SpriteRect> spriteRects();

// The sheet: colour 0 is transparent, every picture has a dark rim. The
// worlds share the drawings; only their palettes differ.
Canvas drawSpriteSheet();

// One picture by name, on a clear canvas of its size.
Canvas drawSprite(std::string_view name);

} // namespace marvek::sample
