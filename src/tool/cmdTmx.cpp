// marvek-tool tmx export|import: a level as a Tiled map and back.
#include "data/openLevel.h"
#include "graphics/clsFont.h"
#include "io/findFile.h"
#include "io/packedFile.h"
#include "io/programFolders.h"
#include "maps/tiledMapFiles.h"
#include "native/marvek.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> optionValue(const SplitArguments& split, std::string_view name) {
    std::optional<std::string> value;
    for (const auto& [option, given] : split.options) {
        if (option == name) {
            value = given;
        }
    }
    return value;
}

bool onlyOptions(const SplitArguments& split, std::initializer_list<std::string_view> names) {
    return std::ranges::all_of(split.options, [&](const auto& option) {
        return std::ranges::find(names, option.first) != names.end();
    });
}

int exportMap(const SplitArguments& split) {
    const auto dataFolder = optionValue(split, "--data");
    const auto configuration = optionValue(split, "--config");
    if (split.positional.size() != 3 || !dataFolder || !configuration ||
        !onlyOptions(split, {"--data", "--config", "--format", "--app"})) {
        return 2;
    }
    const fs::path applicationFolder =
        optionValue(split, "--app").value_or(findResourceFolder(executableFolder()).string());
    TiledExport request;
    request.mapFile = split.positional[2];
    request.format = layerFormatNamed(optionValue(split, "--format").value_or("csv"));
    request.configurationName = *configuration;
    renderInit();
    const OpenedLevel opened =
        openLevel({applicationFolder, *dataFolder, split.positional[1], *configuration, false});
    request.tileSetName = opened.tileFile.filename().string();
    LevelFile file{opened.level, opened.palette, packedMagicOf(opened.level.fileName)};
    clsFont font;
    const fs::path fontPath = findFile(applicationFolder, "fonts/game.bmp");
    if (!font.loadFromFile(fontPath)) {
        std::fprintf(stderr,
                     "marvek-tool: %s: no usable font, so the specials tile set will show no "
                     "numbers\n",
                     fontPath.c_str());
    }
    const clsRenderOptions options =
        font.handle() != 0 ? clsRenderOptions(font) : clsRenderOptions();
    exportTiledMap(file, opened.tileSet, opened.specialSet, options, request);
    return 0;
}

int importMap(const SplitArguments& split) {
    if (split.positional.size() != 3 || !onlyOptions(split, {"--base"})) {
        return 2;
    }
    std::optional<LevelFile> base;
    if (const auto basePath = optionValue(split, "--base")) {
        base = readLevelFile(*basePath);
    }
    const TiledImport imported = importTiledMap(split.positional[1], base ? &*base : nullptr);
    if (!imported.warning.empty()) {
        std::fprintf(stderr, "marvek-tool: %s\n", imported.warning.c_str());
    }
    writeLevelFile(imported.file, split.positional[2]);
    return 0;
}

} // namespace

int runTmx(const Arguments& arguments, const char* usage) {
    const auto split = splitArguments(arguments, {});
    int status = 2;
    try {
        if (split && !split->positional.empty() && split->positional[0] == "export") {
            status = exportMap(*split);
        } else if (split && !split->positional.empty() && split->positional[0] == "import") {
            status = importMap(*split);
        }
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    }
    if (status == 2) {
        std::fprintf(stderr, "usage: marvek-tool %s\n", usage);
    }
    return status;
}

} // namespace marvek::tool
