// marvek-tool: the command-line companion of the editor.
#include "tool/commands.h"

#include <cstdio>
#include <string_view>

namespace {

void printUsage(std::FILE* out) {
    std::fprintf(out, "usage: marvek-tool COMMAND [ARGS]\ncommands:\n");
    for (const auto& command : marvek::tool::commands()) {
        std::fprintf(out, "  %s\n", command.usage);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        printUsage(stderr);
        return 2;
    }
    const std::string_view name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        printUsage(stdout);
        return 0;
    }
    for (const auto& command : marvek::tool::commands()) {
        if (name == command.name) {
            return command.run(marvek::tool::Arguments(argv + 2, argv + argc), command.usage);
        }
    }
    std::fprintf(stderr, "marvek-tool: unknown command '%s'\n", argv[1]);
    printUsage(stderr);
    return 2;
}
