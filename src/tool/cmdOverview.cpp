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

#include <CLI/CLI.hpp>

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

void drawOverview(const OverviewArguments& parsed) {
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
}

class Overview : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser.add_option("LEVEL", parsed_.level, "The level's name in the data folder.")
            ->required();
        parser.add_option("OUT.png", parsed_.output, "The PNG picture to write.")->required();
        parser.add_option("--data", parsed_.dataFolder, "The game's data folder.")->required();
        parser.add_option("--config", parsed_.configuration, "The level configuration's name.")
            ->required();
        parser.add_option("--cell", parsed_.cellPixels, "Pixels a side for each cell (default 2).")
            ->check(CLI::Range(1, clsLevelOverview::largestCell));
        parser.add_option("--app", parsed_.applicationFolder,
                          "The folder holding config/, fonts/, pal/ and bitmaps/.");
    }

    int run() override {
        return reportFailure([this] { drawOverview(parsed_); });
    }

private:
    OverviewArguments parsed_;
};

} // namespace

std::unique_ptr<ToolCommand> makeOverview() {
    return std::make_unique<Overview>();
}

} // namespace marvek::tool
