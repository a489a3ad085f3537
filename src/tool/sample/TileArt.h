#pragma once

#include "tool/sample/Canvas.h"
#include "tool/sample/Theme.h"

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
inline constexpr std::int32_t count = 80;
} // namespace tile

inline constexpr std::int32_t tileSize = 16;

// The world's tiles, tile::count pictures of 16 x 16 in tile-number order.
std::vector<Canvas> drawTileSet(const WorldTheme& theme);

} // namespace marvek::sample
