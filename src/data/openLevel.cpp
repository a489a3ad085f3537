#include "data/openLevel.h"

#include "configuration/ConfigurationError.h"
#include "data/fileRepairs.h"
#include "data/levelConfiguration.h"
#include "io/FileError.h"
#include "io/findFile.h"
#include "io/packedFile.h"
#include "io/pathProblem.h"
#include "specials/SpecialDefinitionError.h"

#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace marvek {
namespace {

namespace fs = std::filesystem;

// The errors of the configuration store and of special definitions, turned
// into the FileError every caller of openLevel expects. Call inside a catch.
[[noreturn]] void rethrowNamingFile(const std::vector<fs::path>& candidates) {
    try {
        throw;
    } catch (const ConfigurationError& error) {
        const fs::path file = error.file().empty() ? candidates.front() : error.file();
        throw FileError(file, error.located());
    } catch (const SpecialDefinitionError& error) {
        // Its message starts with the configuration the definition came from.
        const std::string message = error.what();
        for (const fs::path& file : candidates) {
            const std::string prefix = file.string() + ": ";
            if (message.starts_with(prefix)) {
                throw FileError(file, message.substr(prefix.size()));
            }
        }
        throw FileError(candidates.front(), message);
    }
}

void report(const OpenLevelProgress& progress, std::string_view status) {
    if (progress) {
        progress(status);
    }
}

void noteRepair(OpenedLevel& opened, const fs::path& file, const std::string& repair) {
    opened.repairs.push_back(file.string() + ": " + repair);
}

// The file's data, unpacked when packed.
clsBitStream readGameFile(const fs::path& path, const std::string& role) {
    if (const auto broken = brokenPathReason(path)) {
        throw FileError(path, *broken);
    }
    std::error_code error;
    if (!fs::exists(path, error)) {
        throw FileError(path, "the " + role + " file does not exist");
    }
    if (fs::is_directory(path, error)) {
        throw FileError(path, "the " + role + " file is a folder");
    }
    std::string unpackFailure;
    clsBitStream stream = getFileBits(path, &unpackFailure);
    if (!unpackFailure.empty()) {
        throw FileError(path, "the " + role + " file does not unpack: " + unpackFailure);
    }
    return stream;
}

void loadLevel(OpenedLevel& opened, const fs::path& applicationFolder, const fs::path& path) {
    // The level's own palette normally replaces this one.
    const fs::path palettePath = findFile(applicationFolder, "pal/world1.pal");
    opened.palette.loadRawFrom(palettePath);
    clsBitStream stream = readGameFile(path, "level");
    std::vector<LevelChunk> chunks;
    if (!opened.level.loadFromBits(stream, opened.palette, &chunks)) {
        throw FileError(path, "not a level file (wrong WGMP length, a map size that makes "
                              "no sense or thousands of chunks)");
    }
    if (!opened.level.hasSensibleSize()) {
        throw FileError(path, "the level file holds no map");
    }
    if (opened.palette.Count() == 0) {
        throw FileError(palettePath, "the palette file does not exist and the level has no "
                                     "palette of its own");
    }
    opened.level.fileName = path.string();
    for (const std::string& repair :
         levelRepairs(chunks, stream.Size(), opened.level.width, opened.level.height)) {
        noteRepair(opened, path, repair);
    }
}

void loadTiles(OpenedLevel& opened, const fs::path& path) {
    clsBitStream stream = readGameFile(path, "tile set");
    opened.tileSet.loadFrom(stream, opened.palette, OpenedLevel::graphicsPlanes);
    opened.tileFile = path;
    if (const auto repair = tileSetRepair(stream.Size(), OpenedLevel::graphicsPlanes)) {
        noteRepair(opened, path, *repair);
    }
}

void loadSprites(OpenedLevel& opened, const fs::path& path) {
    clsBitStream stream = readGameFile(path, "sprite set");
    constexpr std::int32_t size = OpenedLevel::spriteSheetSize;
    if (!opened.spriteSheet.planarLoadFromBits(stream, size, size, OpenedLevel::graphicsPlanes)) {
        throw FileError(path, "the sprite set cannot be read as a 320 x 320 image");
    }
    opened.spriteSheet.setPalette(opened.palette);
    opened.spriteFile = path;
    if (const auto repair = pictureRepair(stream.Size(), size, size, OpenedLevel::graphicsPlanes)) {
        noteRepair(opened, path, "the sprite set is short: " + *repair);
    }
}

std::vector<fs::path> specialFiles(const OpenLevelRequest& request,
                                   const LevelConfiguration& configuration,
                                   const fs::path& configurationFile) {
    const fs::path configFolder = request.applicationFolder / "config";
    std::vector<fs::path> files;
    if (configuration.noCommon == 0) {
        files.push_back(findFile(configFolder, "common.cfg"));
    }
    files.push_back(configurationFile);
    if (request.loadUnknownSpecials) {
        files.push_back(findFile(configFolder, "unknown.cfg"));
    }
    return files;
}

void loadSpecials(OpenedLevel& opened, const std::vector<fs::path>& files,
                  const fs::path& applicationFolder) {
    for (const fs::path& file : files) {
        try {
            opened.specialSet.loadFrom(file);
        } catch (const FileError&) {
            throw;
        } catch (...) {
            rethrowNamingFile({file});
        }
    }
    try {
        opened.specialSet.Init(opened.spriteSheet, opened.palette, applicationFolder);
    } catch (const FileError&) {
        throw;
    } catch (...) {
        rethrowNamingFile(files);
    }
}

LevelConfiguration readConfiguration(const fs::path& path) {
    try {
        return readLevelConfiguration(path);
    } catch (const FileError&) {
        throw;
    } catch (...) {
        rethrowNamingFile({path});
    }
}

} // namespace

void reloadGraphics(OpenedLevel& opened, const fs::path& applicationFolder) {
    OpenedLevel fresh;
    fresh.palette = opened.palette;
    loadTiles(fresh, opened.tileFile);
    loadSprites(fresh, opened.spriteFile);
    // The set keeps its specials, so the editor's choice of one stays valid.
    opened.specialSet.Init(fresh.spriteSheet, fresh.palette, applicationFolder);
    opened.tileSet = std::move(fresh.tileSet);
    opened.spriteSheet = std::move(fresh.spriteSheet);
}

fs::path levelFilePath(const fs::path& dataFolder, const fs::path& levelFile) {
    if (levelFile.has_parent_path()) {
        return findFile(levelFile.parent_path(), levelFile.filename());
    }
    return findFile(dataFolder, levelFile);
}

OpenedLevel openLevel(const OpenLevelRequest& request, const OpenLevelProgress& progress) {
    const fs::path configurationFile =
        configurationPath(request.applicationFolder, request.configuration);
    const LevelConfiguration configuration = readConfiguration(configurationFile);
    OpenedLevel opened;
    opened.configuration = request.configuration;
    report(progress, "Loading level...");
    loadLevel(opened, request.applicationFolder,
              levelFilePath(request.dataFolder, request.levelFile));
    report(progress, "Loading tiles...");
    loadTiles(opened, findFile(request.dataFolder, configuration.tileSet));
    report(progress, "Loading sprites...");
    loadSprites(opened, findFile(request.dataFolder, configuration.spriteSet));
    report(progress, "Loading specials...");
    loadSpecials(opened, specialFiles(request, configuration, configurationFile),
                 request.applicationFolder);
    return opened;
}

} // namespace marvek
