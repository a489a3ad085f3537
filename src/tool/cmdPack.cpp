// marvek-tool pack IN OUT [--mode N]: pack a file.
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/packedFile.h"
#include "native/imploder/format.h"
#include "native/marvek.h"
#include "tool/commands.h"

#include <charconv>
#include <cstdio>
#include <optional>

namespace marvek::tool {
namespace {

std::optional<std::int32_t> parseMode(const std::string& text) {
    std::int32_t mode = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), mode);
    const bool valid = error == std::errc() && end == text.data() + text.size() && mode >= 0 &&
                       static_cast<std::size_t>(mode) < imploder::kClassicModeCount;
    return valid ? std::optional(mode) : std::nullopt;
}

// The mode the arguments ask for, or nothing when they make no sense.
std::optional<std::int32_t> modeFrom(const Arguments& arguments) {
    if (arguments.size() == 2) {
        return IMP_MODE_BEST;
    }
    if (arguments.size() == 4 && arguments[2] == "--mode") {
        return parseMode(arguments[3]);
    }
    return std::nullopt;
}

} // namespace

int runPack(const Arguments& arguments, const char* usage) {
    const std::optional<std::int32_t> mode = modeFrom(arguments);
    if (!mode) {
        std::fprintf(stderr, "usage: marvek-tool %s\n", usage);
        return 2;
    }
    try {
        const std::filesystem::path input = arguments[0];
        const std::vector<std::uint8_t> data = readWholeFile(input);
        if (data.empty()) {
            throw FileError(input, "the file is empty");
        }
        implodeBytesToFile(data, arguments[1], *mode);
        return 0;
    } catch (const FileError& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    }
}

} // namespace marvek::tool
