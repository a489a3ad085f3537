#pragma once

#include "tool/sample/LevelMap.h"
#include "tool/sample/Theme.h"

#include <cstdint>
#include <vector>

namespace marvek::sample {

// The special each tile brings with it (the level's IFFC table), 1024
// entries. The worlds share their tile numbers and special IDs.
std::vector<std::uint8_t> sampleDefaultSpecials();

// A 300 x 84 platform level: sky and clouds, hills, ground with pits of the
// world's liquid, floating platforms, ladders, pipes, pick-ups, enemies and
// the player's start. levelIndex (1, 2, ...) picks a different layout.
LevelMap buildLevel(const WorldTheme& theme, int levelIndex);

} // namespace marvek::sample
