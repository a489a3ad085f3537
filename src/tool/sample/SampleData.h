#pragma once

#include <filesystem>

namespace marvek::sample {

inline constexpr int levelsPerWorld = 2;

// A complete data folder in the game's formats: "MPIC", and per world a tile
// set, a sprite sheet and packed levels. Throws FileError.
void writeSampleData(const std::filesystem::path& folder);

// Only the first world's tile set, sprite sheet and first level: enough to
// open one level, for the benchmark. Throws FileError.
void writeFirstWorld(const std::filesystem::path& folder);

// The editor's own drawn resources below folder: fonts/, pal/ and bitmaps/.
// Throws FileError.
void writeResources(const std::filesystem::path& folder);

} // namespace marvek::sample
