#pragma once

#include "data/openLevel.h"

#include <filesystem>

namespace marvek::tool {

// The first sample level, written to a temporary folder and opened with the
// application folder's "world1" configuration, so that the benchmark runs
// on a real-looking level without game data. Throws FileError.
OpenedLevel makeBenchWorld(const std::filesystem::path& applicationFolder);

// The data folder's first level opened with the "world1" configuration.
// Throws FileError.
OpenedLevel loadBenchWorld(const std::filesystem::path& applicationFolder,
                           const std::filesystem::path& dataFolder);

} // namespace marvek::tool
