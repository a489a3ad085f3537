#include "tool/commands.h"

#include "io/findFile.h"

#include <array>
#include <cstdio>
#include <exception>

namespace marvek::tool {

std::unique_ptr<ToolCommand> makeInfo();
std::unique_ptr<ToolCommand> makePack();
std::unique_ptr<ToolCommand> makeUnpack();
std::unique_ptr<ToolCommand> makeSampleData();
std::unique_ptr<ToolCommand> makeDrawResources();
std::unique_ptr<ToolCommand> makeExport();
std::unique_ptr<ToolCommand> makeOverview();
std::unique_ptr<ToolCommand> makeBench();
std::unique_ptr<ToolCommand> makeGraphics();
std::unique_ptr<ToolCommand> makeTmx();

std::span<const Command> commands() {
    static const std::array<Command, 10> table{{
        {"info", "info LEVEL", "Prints a level's size, chunks and the count of each special.",
         makeInfo},
        {"pack", "pack IN OUT [--mode 0-11]", "Packs a file.", makePack},
        {"unpack", "unpack IN OUT", "Unpacks a packed file.", makeUnpack},
        {"sample-data", "sample-data DIR", "Writes the sample data folder.", makeSampleData},
        {"draw-resources", "draw-resources DIR",
         "Draws the editor's own fonts, palettes and pictures into DIR.", makeDrawResources},
        {"export",
         "export LEVEL OUT --data DIR --config NAME [--tags a,b,...] [--all-specials] [--app DIR]",
         "Draws a level into a picture, as File > Export Bitmap does.", makeExport},
        {"overview", "overview LEVEL OUT.png --data DIR --config NAME [--cell 1-16] [--app DIR]",
         "Draws the editor's overview of a level into a PNG picture.", makeOverview},
        {"bench", "bench [--data DIR] [--app DIR]",
         "Measures rendering, packing and unpacking, each against a reference.", makeBench},
        {"graphics",
         "graphics export|import IN OUT --width W --height H --planes P [--offset N] [--count N] "
         "[--across N] [--palette NAME|FILE] [--shift-colours] [--app DIR]",
         "Turns raw bitplane pictures into BMP or PNG pictures and back.", makeGraphics},
        {"tmx",
         "tmx export LEVEL OUT.tmx|.tmj --data DIR --config NAME [--format "
         "csv|base64|zlib|gzip|zstd|xml] [--app DIR] | tmx import MAP OUT [--base LEVEL]",
         "Writes a level as a Tiled map, or a Tiled map back as a level.", makeTmx},
    }};
    return table;
}

int reportFailure(const std::function<void()>& work) {
    try {
        work();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    }
}

clsFont loadGameFont(const std::filesystem::path& applicationFolder, const char* withoutIt) {
    clsFont font;
    const std::filesystem::path fontPath = findFile(applicationFolder, "fonts/game.bmp");
    if (!font.loadFromFile(fontPath)) {
        std::fprintf(stderr, "marvek-tool: %s: no usable font, so %s\n", fontPath.c_str(),
                     withoutIt);
    }
    return font;
}

} // namespace marvek::tool
