#pragma once

#include "data/openLevel.h"

#include <filesystem>

namespace marvek::tool {

// A full 300 x 84 level with tiles, a sprite sheet and specials of every
// drawn kind, made in memory so that the benchmark runs without game data.
OpenedLevel makeBenchWorld(const std::filesystem::path& applicationFolder);

// The data folder's first level opened with the "world1" configuration.
// Throws FileError.
OpenedLevel loadBenchWorld(const std::filesystem::path& applicationFolder,
                           const std::filesystem::path& dataFolder);

} // namespace marvek::tool
