#pragma once

#include "data/clsLevel.h"
#include "data/clsTileSet.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "specials/clsSpecialSet.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// Everything that belongs to an open level, loaded together.
struct OpenedLevel {
    static constexpr std::int32_t spriteSheetSize = 320;
    static constexpr int graphicsPlanes = 5;

    clsLevel level;
    clsPalette palette;
    clsTileSet tileSet;
    clsSurface spriteSheet;
    clsSpecialSet specialSet;
    std::filesystem::path tileFile;
    std::filesystem::path spriteFile;
    // The level configuration's name, as the request gave it.
    std::string configuration;
    // What the readers repaired in the files, each "FILE: what", in the
    // order the files were read.
    std::vector<std::string> repairs;
};

struct OpenLevelRequest {
    std::filesystem::path applicationFolder;
    std::filesystem::path dataFolder;
    // A bare name is looked up in the data folder, a path as it is (both
    // ignoring case when the exact name is missing).
    std::filesystem::path levelFile;
    std::string configuration;
    bool loadUnknownSpecials = false;
};

// Told each stage's status text ("Loading level...", "Loading tiles...", ...).
using OpenLevelProgress = std::function<void(std::string_view)>;

// Loads a level with a level configuration: palette, level, tiles, sprite
// sheet, then the specials of common.cfg (unless the configuration says
// noCommon), the configuration itself and, when asked, unknown.cfg. Any
// failure is a FileError naming the file at fault and why; nothing is
// returned then, so the caller's open level stays as it was.
OpenedLevel openLevel(const OpenLevelRequest& request, const OpenLevelProgress& progress = {});

// Reads the tile set and the sprite sheet again with the level's palette
// and sets the specials up with them, after a palette change. All or
// nothing: on a FileError naming the file the graphics stay as they were.
void reloadGraphics(OpenedLevel& opened, const std::filesystem::path& applicationFolder);

// Where openLevel looks for the level file.
std::filesystem::path levelFilePath(const std::filesystem::path& dataFolder,
                                    const std::filesystem::path& levelFile);

} // namespace marvek
