// marvek-tool unpack IN OUT: unpack a packed file.
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/packedFile.h"
#include "native/marvek.h"
#include "tool/commands.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <span>

namespace marvek::tool {
namespace {

std::vector<std::uint8_t> unpack(const std::filesystem::path& input) {
    const std::vector<std::uint8_t> file = readPackedBytes(input);
    std::uint8_t* unpacked = nullptr;
    std::size_t length = 0;
    const int32_t status = impExplode(file.data(), file.size(), &unpacked, &length);
    const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(unpacked, freeMemory);
    if (status == IMP_ERROR_ARGUMENT) {
        throw FileError(input, "the file is empty");
    }
    if (status != IMP_OK) {
        throw FileError(input, impStatusText(status));
    }
    return {unpacked, unpacked + length};
}

class Unpack : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser.add_option("IN", input_, "The packed file.")->required();
        parser.add_option("OUT", output_, "The file to write, unpacked.")->required();
    }

    int run() override {
        return reportFailure([this] { writeFileAtomically(output_, unpack(input_)); });
    }

private:
    std::string input_;
    std::string output_;
};

} // namespace

std::unique_ptr<ToolCommand> makeUnpack() {
    return std::make_unique<Unpack>();
}

} // namespace marvek::tool
