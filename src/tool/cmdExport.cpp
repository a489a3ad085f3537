// marvek-tool export LEVEL OUT ...: the level bitmap export without a window.
#include "data/levelExport.h"
#include "data/openLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsFont.h"
#include "graphics/pictureFiles.h"
#include "io/FileError.h"
#include "native/marvek.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <CLI/CLI.hpp>

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

void exportLevel(const ExportArguments& parsed) {
    const std::string extension = lowerExtension(parsed.output);
    if (extension != ".bmp" && extension != ".png") {
        throw FileError(parsed.output, "the output must end in .bmp or .png");
    }
    renderInit();
    const OpenedLevel opened = openLevel(
        {parsed.applicationFolder, parsed.dataFolder, parsed.level, parsed.configuration, false});
    const clsFont font = loadGameFont(
        parsed.applicationFolder, "the numbers of the specials will be missing from the picture");
    const clsBackBuffer picture = renderLevelExport(opened.level, opened.tileSet, opened.specialSet,
                                                    exportChoice(parsed, opened.specialSet, font));
    writeExportPicture(picture, parsed.output);
}

class Export : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser.add_option("LEVEL", parsed_.level, "The level's name in the data folder.")
            ->required();
        parser.add_option("OUT", parsed_.output, "The picture to write: .bmp or .png.")->required();
        parser.add_option("--data", parsed_.dataFolder, "The game's data folder.")->required();
        parser.add_option("--config", parsed_.configuration, "The level configuration's name.")
            ->required();
        parser.add_option_function<std::string>(
            "--tags", [this](const std::string& tags) { parsed_.tags = tags; },
            "The tags of the specials to draw, separated by commas (default: the chosen ones).");
        parser.add_flag("--all-specials", parsed_.allSpecials,
                        "Draws every special the set defines, whatever its tag.");
        parser.add_option("--app", parsed_.applicationFolder,
                          "The folder holding config/, fonts/, pal/ and bitmaps/.");
    }

    int run() override {
        return reportFailure([this] { exportLevel(parsed_); });
    }

private:
    ExportArguments parsed_;
};

} // namespace

std::unique_ptr<ToolCommand> makeExport() {
    return std::make_unique<Export>();
}

} // namespace marvek::tool
