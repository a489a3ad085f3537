// marvek-tool graphics export|import ...: the graphics browser's decoding and
// encoding of raw bitplane pictures, for scripts and batch work.
#include "graphics/paletteChoices.h"
#include "graphics/pictureCodec.h"
#include "graphics/pictureFiles.h"
#include "io/FileError.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <CLI/CLI.hpp>

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
    fs::path applicationFolder = defaultApplicationFolder();
};

struct NumberOption {
    const char* name;
    const char* description;
    PictureParameter parameter;
    std::int32_t PictureFormat::*field;
    bool required;
};

constexpr NumberOption numberOptions[] = {
    {"--width", "Each picture's width in pixels.", PictureParameter::width, &PictureFormat::width,
     true},
    {"--height", "Each picture's height in pixels.", PictureParameter::height,
     &PictureFormat::height, true},
    {"--planes", "Bitplanes a pixel.", PictureParameter::planes, &PictureFormat::planes, true},
    {"--offset", "Where the first picture starts, in bytes (default 0).", PictureParameter::offset,
     &PictureFormat::offset, false},
    {"--count", "How many pictures (default 1).", PictureParameter::count, &PictureFormat::count,
     false},
    {"--across", "Pictures side by side in a row (default 1).", PictureParameter::across,
     &PictureFormat::across, false},
};

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
    if (bytes.empty()) {
        throw FileError(parsed.input, "the file is empty");
    }
    if (static_cast<std::uint64_t>(parsed.format.offset) >= bytes.size()) {
        throw FileError(parsed.input, "the offset " + std::to_string(parsed.format.offset) +
                                          " lies past the end of the file (" +
                                          std::to_string(bytes.size()) + " bytes)");
    }
    clsPalette palette = choosePalette(paletteChoice(parsed), bytes, parsed.format);
    clsSurface picture = decodePicture(bytes, parsed.format);
    picture.setPalette(std::move(palette));
    writePictureFile(picture, parsed.output);
}

class Graphics : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser
            .add_option("ACTION", parsed_.action,
                        "export (a file into a picture) or import (a picture into a file).")
            ->required()
            ->check(CLI::IsMember({"export", "import"}));
        parser.add_option("IN", parsed_.input, "The file to read.")->required();
        parser.add_option("OUT", parsed_.output, "The file to write.")->required();
        for (const NumberOption& option : numberOptions) {
            const ParameterRange range = parameterRange(option.parameter);
            parser.add_option(option.name, parsed_.format.*option.field, option.description)
                ->required(option.required)
                ->check(CLI::Range(range.minimum, range.maximum));
        }
        parser.add_option("--palette", parsed_.palette,
                          "A palette's name as the graphics browser lists it, or a palette "
                          "file (default: Grey).");
        parser.add_flag("--shift-colours", parsed_.format.shiftColours,
                        "Moves colours 0-15 of the file to 16-31 of the picture.");
        parser.add_option("--app", parsed_.applicationFolder,
                          "The folder holding config/, fonts/, pal/ and bitmaps/.");
    }

    int run() override {
        return reportFailure([this] {
            if (parsed_.action == "export") {
                exportPicture(parsed_);
            } else {
                importPicture(parsed_.input, parsed_.output, parsed_.format,
                              paletteChoice(parsed_));
            }
        });
    }

private:
    GraphicsArguments parsed_;
};

} // namespace

std::unique_ptr<ToolCommand> makeGraphics() {
    return std::make_unique<Graphics>();
}

} // namespace marvek::tool
