// Arbitrary arguments through marvek-tool's command-line parsing (never its
// work). A parse either hands over a command or ends with text and status 0
// (help, the version) or 2 (a mistake, on standard error); a call for help
// after a command's name, before any "--", is always answered.
#include "common/arguments.h"
#include "tool/commandLine.h"

#include <algorithm>
#include <cstdlib>

namespace {

bool callsForCommandHelp(const std::vector<std::string>& arguments) {
    if (arguments.size() < 2) {
        return false;
    }
    const auto all = marvek::tool::commands();
    const bool command = std::any_of(
        all.begin(), all.end(), [&](const auto& each) { return arguments.front() == each.name; });
    const auto end = std::find(arguments.begin() + 1, arguments.end(), "--");
    return command && std::any_of(arguments.begin() + 1, end, [](const std::string& each) {
               return each == "--help" || each == "-h";
           });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto arguments = marvek::fuzz::argumentsOf(data, size);
    const auto parsed = marvek::tool::parseToolCommandLine(arguments, "0.0.0");
    const auto& exit = parsed.exit;
    if (parsed.command) {
        if (callsForCommandHelp(arguments)) {
            std::abort();
        }
        return 0;
    }
    const bool help = exit.status == 0 && !exit.toStandardError;
    const bool mistake = exit.status == marvek::tool::exitBadArguments && exit.toStandardError;
    if ((!help && !mistake) || exit.text.empty()) {
        std::abort();
    }
    if (callsForCommandHelp(arguments) &&
        (!help || !exit.text.starts_with("usage: marvek-tool "))) {
        std::abort();
    }
    return 0;
}
