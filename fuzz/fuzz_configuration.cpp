// Arbitrary bytes through the configuration parser. A parse may fail only with
// the store's own error; a tree that parses must survive writing and reading
// again, in both the pretty and the plain form, to exactly the same text.
#include "configuration/clsConfiguration.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <variant>

namespace {

// "name;" accepts a key with an inner blank that "name = value;" would refuse,
// so only trees without such keys are expected to read back.
bool keysReadBack(const marvek::Section& section) {
    for (const auto& [key, value] : section) {
        if (key.find(' ') != std::string::npos) {
            return false;
        }
        const auto* child = std::get_if<marvek::SectionPtr>(&value);
        if (child != nullptr && *child && !keysReadBack(**child)) {
            return false;
        }
    }
    return true;
}

void checkRoundTrip(const marvek::clsConfiguration& parsed, std::string_view lineEnd, bool pretty) {
    const std::string text = parsed.OutputConfiguration(lineEnd, pretty);
    marvek::clsConfiguration again;
    again.InputConfiguration(text);
    if (again.OutputConfiguration(lineEnd, pretty) != text) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    marvek::clsConfiguration configuration;
    try {
        configuration.InputConfiguration(
            std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const marvek::ConfigurationError&) {
        return 0;
    }
    if (keysReadBack(*configuration.Root(true))) {
        checkRoundTrip(configuration, "\r\n", true);
        checkRoundTrip(configuration, "", false);
    }
    return 0;
}
