// marvek-tool export LEVEL OUT ...: the level bitmap export without a window.
#include "data/levelExport.h"
#include "data/openLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsFont.h"
#include "graphics/pictureFiles.h"
#include "io/FileError.h"
#include "io/findFile.h"
#include "native/marvek.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <cstdio>
#include <optional>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

struct ExportArguments {
    std::string level;
    fs::path output;
    fs::path dataFolder;
    std::string configuration;
    std::optional<std::string> tags;
    bool allSpecials = false;
    fs::path applicationFolder = defaultApplicationFolder();
};

// Stores the value of a "--name VALUE" option; false for an unknown name.
bool takeOption(ExportArguments& parsed, const std::string& name, const std::string& value) {
    if (name == "--data") {
        parsed.dataFolder = value;
    } else if (name == "--config") {
        parsed.configuration = value;
    } else if (name == "--tags") {
        parsed.tags = value;
    } else if (name == "--app") {
        parsed.applicationFolder = value;
    } else {
        return false;
    }
    return true;
}

std::optional<ExportArguments> parseArguments(const Arguments& arguments) {
    ExportArguments parsed;
    std::vector<std::string> positional;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--all-specials") {
            parsed.allSpecials = true;
        } else if (argument.starts_with("--")) {
            if (i + 1 == arguments.size() || !takeOption(parsed, argument, arguments[i + 1])) {
                return std::nullopt;
            }
            ++i;
        } else {
            positional.push_back(argument);
        }
    }
    if (positional.size() != 2 || parsed.dataFolder.empty() || parsed.configuration.empty()) {
        return std::nullopt;
    }
    parsed.level = positional[0];
    parsed.output = positional[1];
    return parsed;
}

TagChoice tagChoiceFrom(const std::string& list) {
    TagChoice choice;
    std::size_t start = 0;
    while (start <= list.size()) {
        const std::size_t comma = std::min(list.find(',', start), list.size());
        if (comma > start) {
            choice.emplace_back(list.substr(start, comma - start), true);
        }
        start = comma + 1;
    }
    return choice;
}

ExportChoice exportChoice(const ExportArguments& parsed, const clsSpecialSet& specialSet,
                          const clsFont& font) {
    ExportChoice choice;
    choice.tags = parsed.tags ? tagChoiceFrom(*parsed.tags) : defaultTagChoice(specialSet);
    choice.renderAll = parsed.allSpecials;
    if (font.handle() != 0) {
        choice.options = clsRenderOptions(font);
    }
    return choice;
}

int exportLevel(const ExportArguments& parsed) {
    const std::string extension = lowerExtension(parsed.output);
    if (extension != ".bmp" && extension != ".png") {
        throw FileError(parsed.output, "the output must end in .bmp or .png");
    }
    renderInit();
    const OpenedLevel opened = openLevel(
        {parsed.applicationFolder, parsed.dataFolder, parsed.level, parsed.configuration, false});
    // Without the font, special numbers are left out rather than failing.
    clsFont font;
    const fs::path fontPath = findFile(parsed.applicationFolder, "fonts/game.bmp");
    if (!font.loadFromFile(fontPath)) {
        std::fprintf(stderr,
                     "marvek-tool: %s: no usable font, so the numbers of the specials will be "
                     "missing from the picture\n",
                     fontPath.c_str());
    }
    const clsBackBuffer picture = renderLevelExport(opened.level, opened.tileSet, opened.specialSet,
                                                    exportChoice(parsed, opened.specialSet, font));
    writeExportPicture(picture, parsed.output);
    return 0;
}

} // namespace

int runExport(const Arguments& arguments, const char* usage) {
    const std::optional<ExportArguments> parsed = parseArguments(arguments);
    if (!parsed) {
        std::fprintf(stderr, "usage: marvek-tool %s\n", usage);
        return 2;
    }
    try {
        return exportLevel(*parsed);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    }
}

} // namespace marvek::tool
