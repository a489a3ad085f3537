#pragma once

#include "tool/sample/LevelMap.h"
#include "tool/sample/Theme.h"

#include <cstdint>
#include <vector>

namespace marvek::sample {

// The special each tile brings with it (the level's IFFC table), 1024
// entries. The worlds share their tile numbers and special IDs.
std::vector<std::uint8_t> sampleDefaultSpecials();

// A 300 x 84 platform level over the whole height: a sky gradient with
// clouds, rolling ground and tall plateaus with ladders, pits of the world's
// liquid, stone towers, two tiers of floating islands joined by bridges and
// linked to the ground by chains of platforms or ladders, pipes, pick-ups,
// enemies and the player's start. levelIndex (1, 2, ...) picks a different
// layout.
LevelMap buildLevel(const WorldTheme& theme, int levelIndex);

} // namespace marvek::sample
