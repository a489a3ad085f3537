// marvek-tool graphics export|import ...: the graphics browser's decoding and
// encoding of raw bitplane pictures, for scripts and batch work.
#include "graphics/paletteChoices.h"
#include "graphics/pictureCodec.h"
#include "graphics/pictureFiles.h"
#include "io/FileError.h"
#include "io/programFolders.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

struct GraphicsArguments {
    std::string action;
    fs::path input;
    fs::path output;
    PictureFormat format;
    std::string palette = "Grey";
    fs::path applicationFolder = findResourceFolder(executableFolder());
};

struct NumberOption {
    const char* name;
    PictureParameter parameter;
    std::int32_t PictureFormat::*field;
    bool required;
};

constexpr NumberOption numberOptions[] = {
    {"--width", PictureParameter::width, &PictureFormat::width, true},
    {"--height", PictureParameter::height, &PictureFormat::height, true},
    {"--planes", PictureParameter::planes, &PictureFormat::planes, true},
    {"--offset", PictureParameter::offset, &PictureFormat::offset, false},
    {"--count", PictureParameter::count, &PictureFormat::count, false},
    {"--across", PictureParameter::across, &PictureFormat::across, false},
};

bool hasRequiredOptions(const std::vector<std::pair<std::string, std::string>>& given) {
    for (const NumberOption& option : numberOptions) {
        const bool found = std::any_of(given.begin(), given.end(),
                                       [&](const auto& pair) { return pair.first == option.name; });
        if (option.required && !found) {
            return false;
        }
    }
    return true;
}

// The whole text as a number inside the parameter's range.
std::optional<std::int32_t> parseNumber(const std::string& text, PictureParameter parameter) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const ParameterRange range = parameterRange(parameter);
    if (error != std::errc() || end != text.data() + text.size() || value < range.minimum ||
        value > range.maximum) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(value);
}

// Stores a "--name VALUE" option; false for an unknown name or a bad value.
bool takeOption(GraphicsArguments& parsed, const std::string& name, const std::string& value) {
    for (const NumberOption& option : numberOptions) {
        if (name == option.name) {
            const auto number = parseNumber(value, option.parameter);
            parsed.format.*option.field = number.value_or(0);
            return number.has_value();
        }
    }
    if (name == "--palette") {
        parsed.palette = value;
    } else if (name == "--app") {
        parsed.applicationFolder = value;
    } else {
        return false;
    }
    return true;
}

std::optional<GraphicsArguments> parseArguments(const Arguments& arguments) {
    const auto split = splitArguments(arguments, {"--shift-colours"});
    if (!split) {
        return std::nullopt;
    }
    GraphicsArguments parsed;
    parsed.format.shiftColours = split->hasSwitch("--shift-colours");
    for (const auto& [name, value] : split->options) {
        if (!takeOption(parsed, name, value)) {
            return std::nullopt;
        }
    }
    const auto& positional = split->positional;
    const bool known =
        positional.size() == 3 && (positional[0] == "export" || positional[0] == "import");
    if (!known || !hasRequiredOptions(split->options)) {
        return std::nullopt;
    }
    parsed.action = positional[0];
    parsed.input = positional[1];
    parsed.output = positional[2];
    return parsed;
}

// A listed palette by name, else a palette file: a BMP's colour table or a
// raw palette.
PaletteChoice paletteChoice(const GraphicsArguments& parsed) {
    const auto choices = listPaletteChoices(parsed.applicationFolder);
    if (const auto index = findPaletteChoice(choices, parsed.palette)) {
        return choices[*index];
    }
    const fs::path file = parsed.palette;
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        throw FileError(file, "no palette of that name and no such file");
    }
    return paletteFileChoice(file);
}

void exportPicture(const GraphicsArguments& parsed) {
    const std::string extension = lowerExtension(parsed.output);
    if (extension != ".bmp" && extension != ".png") {
        throw FileError(parsed.output, "the output must end in .bmp or .png");
    }
    const std::vector<std::uint8_t> bytes = readPictureFile(parsed.input);
    clsPalette palette = choosePalette(paletteChoice(parsed), bytes, parsed.format);
    clsSurface picture = decodePicture(bytes, parsed.format);
    picture.setPalette(std::move(palette));
    writePictureFile(picture, parsed.output);
}

} // namespace

int runGraphics(const Arguments& arguments, const char* usage) {
    const std::optional<GraphicsArguments> parsed = parseArguments(arguments);
    if (!parsed) {
        std::fprintf(stderr, "usage: marvek-tool %s\n", usage);
        return 2;
    }
    try {
        if (parsed->action == "export") {
            exportPicture(*parsed);
        } else {
            importPicture(parsed->input, parsed->output, parsed->format, paletteChoice(*parsed));
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    }
}

} // namespace marvek::tool
