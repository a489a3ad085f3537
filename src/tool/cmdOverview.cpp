// marvek-tool overview LEVEL OUT.png ...: the editor's overview of a level.
#include "data/levelOverview.h"
#include "data/openLevel.h"
#include "graphics/pictureFiles.h"
#include "graphics/pngFile.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "native/marvek.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <cstdio>
#include <optional>
#include <string>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

struct OverviewArguments {
    std::string level;
    fs::path output;
    fs::path dataFolder;
    std::string configuration;
    std::int32_t cellPixels = 2;
    fs::path applicationFolder = defaultApplicationFolder();
};

std::optional<std::int32_t> cellPixelsFrom(const std::string& text) {
    try {
        std::size_t used = 0;
        const int value = std::stoi(text, &used);
        if (used == text.size() && value >= 1 && value <= clsLevelOverview::largestCell) {
            return value;
        }
    } catch (const std::exception&) {
        // Not a number: the usage line says what is wanted.
    }
    return std::nullopt;
}

std::optional<OverviewArguments> parseArguments(const Arguments& arguments) {
    const auto split = splitArguments(arguments, {});
    if (!split || split->positional.size() != 2) {
        return std::nullopt;
    }
    OverviewArguments parsed;
    parsed.level = split->positional[0];
    parsed.output = split->positional[1];
    for (const auto& [name, value] : split->options) {
        if (name == "--data") {
            parsed.dataFolder = value;
        } else if (name == "--config") {
            parsed.configuration = value;
        } else if (name == "--app") {
            parsed.applicationFolder = value;
        } else if (name == "--cell") {
            const auto cell = cellPixelsFrom(value);
            if (!cell) {
                return std::nullopt;
            }
            parsed.cellPixels = *cell;
        } else {
            return std::nullopt;
        }
    }
    if (parsed.dataFolder.empty() || parsed.configuration.empty()) {
        return std::nullopt;
    }
    return parsed;
}

int drawOverview(const OverviewArguments& parsed) {
    if (lowerExtension(parsed.output) != ".png") {
        throw FileError(parsed.output, "the output must end in .png");
    }
    renderInit();
    const OpenedLevel opened = openLevel(
        {parsed.applicationFolder, parsed.dataFolder, parsed.level, parsed.configuration, false});
    clsLevelOverview overview;
    overview.drawAll(opened.level, overviewColours(opened.tileSet, opened.specialSet),
                     parsed.cellPixels);
    const auto png = encodePng(overview.pixels(), overview.width(), overview.height());
    writeFileAtomically(parsed.output, png);
    return 0;
}

} // namespace

int runOverview(const Arguments& arguments, const char* usage) {
    const std::optional<OverviewArguments> parsed = parseArguments(arguments);
    if (!parsed) {
        std::fprintf(stderr, "usage: marvek-tool %s\n", usage);
        return 2;
    }
    try {
        return drawOverview(*parsed);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    }
}

} // namespace marvek::tool
