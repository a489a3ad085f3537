#pragma once

#include <filesystem>

namespace marvek {

class clsLevel;
class clsPalette;

// Where a level's unsaved work is kept after a crash: NAME.recovered beside
// the level's file.
std::filesystem::path recoveryPath(const clsLevel& level);

// Packs the level into its recovery file (atomically, never over the level
// file itself) and returns that path. Throws FileError.
std::filesystem::path writeRecoveryCopy(const clsLevel& level, const clsPalette& palette);

} // namespace marvek
