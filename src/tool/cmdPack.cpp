// marvek-tool pack IN OUT [--mode N]: pack a file.
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/packedFile.h"
#include "native/imploder/format.h"
#include "native/marvek.h"
#include "tool/commands.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace marvek::tool {
namespace {

class Pack : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser.add_option("IN", input_, "The file to pack.")->required();
        parser.add_option("OUT", output_, "The packed file to write.")->required();
        parser
            .add_option("--mode", mode_,
                        "The packer's mode (default: the smallest output any mode gives).")
            ->check(CLI::Range(0, static_cast<int>(imploder::kClassicModeCount) - 1));
    }

    int run() override {
        return reportFailure([this] {
            const std::filesystem::path input = input_;
            const std::vector<std::uint8_t> data = readWholeFile(input);
            if (data.empty()) {
                throw FileError(input, "the file is empty");
            }
            implodeBytesToFile(data, output_, mode_);
        });
    }

private:
    std::string input_;
    std::string output_;
    std::int32_t mode_ = IMP_MODE_BEST;
};

} // namespace

std::unique_ptr<ToolCommand> makePack() {
    return std::make_unique<Pack>();
}

} // namespace marvek::tool
