// marvek-tool export LEVEL OUT ...: the level bitmap export without a window.
#include "data/levelExport.h"
#include "data/openLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsFont.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/findFile.h"
#include "native/marvek.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include <cstdio>
#include <cstring>
#include <optional>
#include <span>

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
    fs::path applicationFolder = executableFolder();
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

std::string lowerExtension(const fs::path& path) {
    std::string extension = path.extension().string();
    for (char& c : extension) {
        c = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return extension;
}

void writePng(const clsBackBuffer& backBuffer, const fs::path& path) {
    const std::int32_t width = backBuffer.width();
    const std::int32_t height = backBuffer.height();
    const std::uint32_t* source = surfaceGetDataPtr(backBuffer.surface());
    QImage image(width, height, QImage::Format_RGB32);
    if (source == nullptr || image.isNull()) {
        throw FileError(path, "there is no picture to write");
    }
    for (std::int32_t y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        const std::uint32_t* from = source + static_cast<std::size_t>(y) * width;
        // The surface's fourth byte counts transparency; the export is opaque.
        for (std::int32_t x = 0; x < width; ++x) {
            row[x] = from[x] | 0xFF000000u;
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) {
        throw FileError(path, "the PNG could not be made");
    }
    writeFileAtomically(path, std::span(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                        static_cast<std::size_t>(bytes.size())));
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
    if (extension == ".png") {
        writePng(picture, parsed.output);
    } else {
        writeExportBitmap(picture, parsed.output);
    }
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
