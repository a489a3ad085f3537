// marvek-tool tmx export|import: a level as a Tiled map and back.
#include "data/openLevel.h"
#include "graphics/clsFont.h"
#include "io/packedFile.h"
#include "maps/tiledMapFiles.h"
#include "native/marvek.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <optional>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

struct TmxArguments {
    std::string action;
    fs::path input;
    fs::path output;
    std::optional<fs::path> dataFolder;
    std::optional<std::string> configuration;
    std::string format = "csv";
    std::optional<fs::path> baseLevel;
    fs::path applicationFolder = defaultApplicationFolder();
    bool formatGiven = false;
    bool applicationGiven = false;
};

// Export and import take different options; CLI11 checks only each alone.
void checkCombination(const TmxArguments& parsed) {
    if (parsed.action == "export") {
        if (!parsed.dataFolder || !parsed.configuration) {
            throw CLI::ValidationError("export needs --data and --config");
        }
        if (parsed.baseLevel) {
            throw CLI::ValidationError("--base goes with import");
        }
    } else if (parsed.dataFolder || parsed.configuration || parsed.formatGiven ||
               parsed.applicationGiven) {
        throw CLI::ValidationError("import takes only --base");
    }
}

void exportMap(const TmxArguments& parsed) {
    TiledExport request;
    request.mapFile = parsed.output;
    request.format = layerFormatNamed(parsed.format);
    request.configurationName = *parsed.configuration;
    renderInit();
    const OpenedLevel opened = openLevel(
        {parsed.applicationFolder, *parsed.dataFolder, parsed.input, *parsed.configuration, false});
    request.tileSetName = opened.tileFile.filename().string();
    const LevelFile file{opened.level, opened.palette, packedMagicOf(opened.level.fileName)};
    const clsFont font =
        loadGameFont(parsed.applicationFolder, "the specials tile set will show no numbers");
    const clsRenderOptions options =
        font.handle() != 0 ? clsRenderOptions(font) : clsRenderOptions();
    exportTiledMap(file, opened.tileSet, opened.specialSet, options, request);
}

void importMap(const TmxArguments& parsed) {
    std::optional<LevelFile> base;
    if (parsed.baseLevel) {
        base = readLevelFile(*parsed.baseLevel);
    }
    const TiledImport imported = importTiledMap(parsed.input, base ? &*base : nullptr);
    if (!imported.warning.empty()) {
        std::fprintf(stderr, "marvek-tool: %s\n", imported.warning.c_str());
    }
    writeLevelFile(imported.file, parsed.output);
}

class Tmx : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser
            .add_option("ACTION", parsed_.action,
                        "export (a level into a Tiled map) or import (a map into a level).")
            ->required()
            ->check(CLI::IsMember({"export", "import"}));
        parser.add_option("IN", parsed_.input, "The level (export) or the map (import).")
            ->required();
        parser
            .add_option("OUT", parsed_.output,
                        "The map to write (.tmx, .tmj or .json), or the level (import).")
            ->required();
        parser.add_option("--data", parsed_.dataFolder, "The game's data folder (export).");
        parser.add_option("--config", parsed_.configuration,
                          "The level configuration's name (export).");
        parser
            .add_option("--format", parsed_.format,
                        "How layer data is written: csv (default), base64, zlib, gzip, zstd "
                        "or xml (export).")
            ->check(CLI::IsMember({"csv", "base64", "zlib", "gzip", "zstd", "xml"}))
            ->each([this](const std::string&) { parsed_.formatGiven = true; });
        parser
            .add_option("--app", parsed_.applicationFolder,
                        "The folder holding config/, fonts/, pal/ and bitmaps/ (export).")
            ->each([this](const std::string&) { parsed_.applicationGiven = true; });
        parser.add_option("--base", parsed_.baseLevel,
                          "A level whose fields fill in what the map does not keep (import).");
        parser.final_callback([this] { checkCombination(parsed_); });
    }

    int run() override {
        return reportFailure([this] {
            if (parsed_.action == "export") {
                exportMap(parsed_);
            } else {
                importMap(parsed_);
            }
        });
    }

private:
    TmxArguments parsed_;
};

} // namespace

std::unique_ptr<ToolCommand> makeTmx() {
    return std::make_unique<Tmx>();
}

} // namespace marvek::tool
