#pragma once

// What the readers fill in, without failing, when a game file holds less
// than it says: the level's chunks, the tile set's last tile, the sprite
// sheet's picture. Each text says what was repaired, for a warning that
// names the file.

#include "data/clsLevel.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace marvek {

// The repairs of a level file of fileSize bytes whose chunks were read as
// given: a BODY shorter than the map's width x height cells, and any chunk
// whose data (as much as its reader takes) reaches past the end of the file.
std::vector<std::string> levelRepairs(std::span<const LevelChunk> chunks, std::int32_t fileSize,
                                      std::int32_t width, std::int32_t height);

// A tile set of fileSize bytes whose last tile is read partly past the end.
std::optional<std::string> tileSetRepair(std::int32_t fileSize, int planes);

// A planar picture of fileSize bytes shorter than width x height pixels of
// the planes.
std::optional<std::string> pictureRepair(std::int32_t fileSize, std::int32_t width,
                                         std::int32_t height, int planes);

} // namespace marvek
