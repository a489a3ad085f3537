// Arbitrary arguments through the editor's command-line parsing. A parse
// either says what to open (a non-empty level when there is one, a
// configuration only with a level) or ends with text and status 0 (help, the
// version) or 2 (a mistake, on standard error).
#include "app/commandLine.h"
#include "common/arguments.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QStringList arguments{"marvek"};
    for (const std::string& argument : marvek::fuzz::argumentsOf(data, size)) {
        arguments << QString::fromUtf8(argument.data(), static_cast<qsizetype>(argument.size()));
    }
    const marvek::ParsedCommandLine parsed = marvek::parseCommandLine(arguments, "0.0.0");
    if (parsed.run) {
        const bool levelNamed = parsed.run->level.has_value();
        if ((levelNamed && parsed.run->level->empty()) ||
            (parsed.run->configuration && !levelNamed)) {
            std::abort();
        }
        return 0;
    }
    const auto& exit = parsed.exit;
    const bool help = exit.status == 0 && !exit.toStandardError;
    const bool mistake = exit.status == marvek::exitBadArguments && exit.toStandardError;
    if ((!help && !mistake) || exit.text.isEmpty()) {
        std::abort();
    }
    return 0;
}
