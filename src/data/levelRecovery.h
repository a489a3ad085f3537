#pragma once

#include <filesystem>

namespace marvek {

class clsLevel;
class clsPalette;
struct OpenedLevel;

// Where a level's unsaved work is kept after a crash: NAME.recovered beside
// the level's file.
std::filesystem::path recoveryPath(const clsLevel& level);
std::filesystem::path recoveryPath(const std::filesystem::path& levelFile);

// Packs the level into its recovery file (atomically, never over the level
// file itself) and returns that path. Throws FileError.
std::filesystem::path writeRecoveryCopy(const clsLevel& level, const clsPalette& palette);

// True when the level's recovery file was written after the level itself.
bool hasNewerRecoveryCopy(const std::filesystem::path& levelFile);

// Removes the recovery file, when there is one; false when it stays.
bool removeRecoveryCopy(const clsLevel& level);
bool removeRecoveryCopy(const std::filesystem::path& levelFile);

// Replaces the open level's cells and palette with those of its recovery
// file, reads the graphics again with that palette and marks the level
// modified. All or nothing: on a FileError naming the file the level stays
// as it was.
void restoreRecoveryCopy(OpenedLevel& opened, const std::filesystem::path& applicationFolder);

} // namespace marvek
