#include "maps/tiledMapFiles.h"

#include "graphics/pngFile.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/findFile.h"
#include "io/packedFile.h"
#include "maps/mapFiles.h"
#include "maps/tileSetPictures.h"

#include <algorithm>
#include <cctype>

namespace marvek {
namespace {

namespace fs = std::filesystem;

std::string lowerExtension(const fs::path& path) {
    std::string extension = path.extension().string();
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

bool isJsonName(const fs::path& path) {
    const std::string extension = lowerExtension(path);
    return extension == ".tmj" || extension == ".json" || extension == ".tsj";
}

std::string tilesStem(const TiledExport& request) {
    return request.tileSetName;
}

std::string specialsStem(const TiledExport& request) {
    return request.configurationName + "-specials";
}

void writeText(const fs::path& path, const std::string& text) {
    writeFileAtomically(path,
                        std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

void writePicture(const fs::path& path, const TilePicture& picture, bool translucent) {
    std::vector<std::uint8_t> bytes;
    try {
        bytes = translucent ? encodeTranslucentPng(picture.pixels, picture.width, picture.height)
                            : encodePng(picture.pixels, picture.width, picture.height);
    } catch (const std::exception& error) {
        throw FileError(path, error.what());
    }
    writeFileAtomically(path, bytes);
}

std::string textOf(const fs::path& path) {
    const std::vector<std::uint8_t> bytes = readWholeFile(path);
    return {bytes.begin(), bytes.end()};
}

TiledTileSet loadTileSet(const fs::path& mapFolder, const std::string& source) {
    // Maps made on a system that ignores case may name the file otherwise.
    const fs::path path = findFile(mapFolder, source);
    const std::string text = textOf(path);
    try {
        return isJsonName(path) ? readTsj(text) : readTsx(text);
    } catch (const std::runtime_error& error) {
        throw FileError(path, error.what());
    }
}

TiledMap readMap(const fs::path& mapFile) {
    if (!isTiledMapName(mapFile)) {
        throw FileError(mapFile, "a Tiled map's name ends in .tmx, .tmj or .json");
    }
    const std::string text = textOf(mapFile);
    const TileSetLoader loader = [&](const std::string& source) {
        return loadTileSet(mapFile.parent_path(), source);
    };
    try {
        return isJsonName(mapFile) ? readTmj(text, loader) : readTmx(text, loader);
    } catch (const FileError&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw FileError(mapFile, error.what());
    }
}

std::string warningFor(const fs::path& mapFile, const std::vector<std::string>& ignored) {
    if (ignored.empty()) {
        return {};
    }
    std::string text = mapFile.string() + ": left out what a level cannot hold: ";
    for (std::size_t i = 0; i < ignored.size(); ++i) {
        text += (i == 0 ? "" : ", ") + ignored[i];
    }
    return text;
}

} // namespace

bool isTiledMapName(const fs::path& path) {
    const std::string extension = lowerExtension(path);
    return extension == ".tmx" || extension == ".tmj" || extension == ".json";
}

std::string tiledMapText(const LevelFile& file, const TiledExport& request) {
    const TiledMap map =
        mapFromLevel(file, tilesStem(request) + ".tsx", specialsStem(request) + ".tsx");
    return isJsonName(request.mapFile) ? writeTmj(map, request.format)
                                       : writeTmx(map, request.format);
}

void exportTiledMap(const LevelFile& file, const clsTileSet& tileSet,
                    const clsSpecialSet& specialSet, const clsRenderOptions& options,
                    const TiledExport& request) {
    if (!isTiledMapName(request.mapFile)) {
        throw FileError(request.mapFile, "a Tiled map's name ends in .tmx, .tmj or .json");
    }
    const fs::path folder = request.mapFile.parent_path();
    const std::string tiles = tilesStem(request);
    const std::string specials = specialsStem(request);
    writePicture(folder / (tiles + ".png"), tilesPicture(tileSet), false);
    writeText(folder / (tiles + ".tsx"), writeTsx(tilesTileSet(tiles, tiles + ".png")));
    writePicture(folder / (specials + ".png"), specialsPicture(specialSet, options), true);
    writeText(folder / (specials + ".tsx"),
              writeTsx(specialsTileSet(request.configurationName + " specials", specials + ".png",
                                       specialSet)));
    writeText(request.mapFile, tiledMapText(file, request));
}

TiledImport importTiledMap(const fs::path& mapFile, const LevelFile* base) {
    const TiledMap map = readMap(mapFile);
    try {
        LevelFromMap read = levelFromMap(map, base);
        checkMapSize(map, base != nullptr ? &base->level : nullptr);
        return {std::move(read.file), warningFor(mapFile, read.ignored)};
    } catch (const MissingMapProperties& error) {
        throw FileError(mapFile, std::string(error.what()) +
                                     "; name a level to take them from (--base LEVEL)");
    } catch (const MapRefusal& error) {
        throw FileError(mapFile, error.what());
    }
}

void writeLevelFile(const LevelFile& file, const fs::path& path) {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    try {
        file.level.writeTo(stream, file.palette);
    } catch (const std::exception& error) {
        throw FileError(path, error.what());
    }
    implodeToFileWithMagic(*stream.bufferGet(), path, file.magic);
}

LevelFile readLevelFile(const fs::path& path) {
    LevelFile file;
    std::string failure;
    clsBitStream stream = getFileBits(path, &failure);
    if (!file.level.loadFromBits(stream, file.palette)) {
        throw FileError(path, failure.empty() ? "this is not a level file" : failure);
    }
    file.magic = packedMagicOf(path);
    file.level.fileName = path.string();
    return file;
}

} // namespace marvek
