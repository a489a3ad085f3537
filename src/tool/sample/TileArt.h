#pragma once

#include "tool/sample/Canvas.h"
#include "tool/sample/Theme.h"

#include <array>
#include <cstdint>
#include <vector>

namespace marvek::sample {

// Tile numbers of the sample tile sets. Every world has the same tiles in
// the same places; its colours and a few details differ.
namespace tile {
inline constexpr std::int16_t sky0 = 0, sky1 = 1, sky2 = 2, sky3 = 3;
inline constexpr std::int16_t cloudTopLeft = 4, cloudTop = 5, cloudTopRight = 6,
                              cloudBottomLeft = 7, cloudBottom = 8, cloudBottomRight = 9;
inline constexpr std::int16_t hillLeft = 10, hillTop = 11, hillRight = 12, hillFill = 13;
inline constexpr std::int16_t grassTop = 20, grassLeft = 21, grassRight = 22, grassSingle = 23;
inline constexpr std::int16_t earth = 24, earthStones = 25, earthLeft = 26, earthRight = 27,
                              earthDeep = 28, earthBone = 29, bedrock = 30;
inline constexpr std::int16_t platformLeft = 40, platform = 41, platformRight = 42, brick = 43,
                              bonusBlock = 44, stoneBlock = 45, ladder = 46, pipeTopLeft = 47,
                              pipeTopRight = 48, pipeLeft = 49, pipeRight = 50, bridge = 51;
inline constexpr std::int16_t liquidSurface = 60, liquid = 61, spikesUp = 62, spikesDown = 63,
                              coin = 64, gem = 65, bush = 66, flower = 67, fence = 68,
                              trunkLeft = 69, trunkRight = 70, crownTopLeft = 71,
                              crownTopRight = 72, crownBottomLeft = 73, crownBottomRight = 74,
                              rock = 75, torch = 76, mushroom = 77, crate = 79;
// The tiles drawn from their own picture; copies over other sky bands follow.
inline constexpr std::int32_t pictureCount = 80;

// Tiles the sky shows through. Clouds are drawn over the sky2 band, the rest
// over sky3; each has a copy over the three other bands of the gradient, so
// it can stand anywhere in the sky without a box of the wrong colour.
inline constexpr std::array<std::int16_t, 39> seeThrough{cloudTopLeft,
                                                         cloudTop,
                                                         cloudTopRight,
                                                         cloudBottomLeft,
                                                         cloudBottom,
                                                         cloudBottomRight,
                                                         hillLeft,
                                                         hillTop,
                                                         hillRight,
                                                         hillFill,
                                                         grassLeft,
                                                         grassRight,
                                                         grassSingle,
                                                         platformLeft,
                                                         platform,
                                                         platformRight,
                                                         ladder,
                                                         pipeTopLeft,
                                                         pipeTopRight,
                                                         pipeLeft,
                                                         pipeRight,
                                                         bridge,
                                                         spikesUp,
                                                         spikesDown,
                                                         coin,
                                                         gem,
                                                         bush,
                                                         flower,
                                                         fence,
                                                         trunkLeft,
                                                         trunkRight,
                                                         crownTopLeft,
                                                         crownTopRight,
                                                         crownBottomLeft,
                                                         crownBottomRight,
                                                         rock,
                                                         torch,
                                                         mushroom,
                                                         crate};
inline constexpr std::int32_t skyBands = 4;
inline constexpr std::int32_t count =
    pictureCount + (skyBands - 1) * static_cast<std::int32_t>(seeThrough.size());
} // namespace tile

// The sky band (0 top ... 3 horizon) a tile's see-through pixels show.
std::int32_t homeSkyBand(std::int16_t which);
// The tile that shows `which` over sky band `band` (0 top ... 3 horizon):
// `which` itself over its own band or when no sky shows through it.
std::int16_t overSky(std::int16_t which, std::int32_t band);

inline constexpr std::int32_t tileSize = 16;

// The world's tiles, tile::count pictures of 16 x 16 in tile-number order.
std::vector<Canvas> drawTileSet(const WorldTheme& theme);

} // namespace marvek::sample
