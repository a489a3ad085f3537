// marvek-tool: the command-line companion of the editor.
#include "tool/commands.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

void printUsage(std::FILE* out) {
    std::fprintf(out, "usage: marvek-tool COMMAND [ARGS]\ncommands:\n");
    for (const auto& command : marvek::tool::commands()) {
        std::fprintf(out, "  %s\n", command.usage);
    }
}

// Output that never arrived (a full disk, a closed pipe) is a failure too.
bool outputWritten() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
        return true;
    }
    std::fprintf(stderr, "marvek-tool: cannot write the output: %s\n",
                 errno != 0 ? std::strerror(errno) : "write error");
    return false;
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
        return outputWritten() ? 0 : 1;
    }
    for (const auto& command : marvek::tool::commands()) {
        if (name == command.name) {
            const int status =
                command.run(marvek::tool::Arguments(argv + 2, argv + argc), command.usage);
            return outputWritten() ? status : 1;
        }
    }
    std::fprintf(stderr, "marvek-tool: unknown command '%s'\n", argv[1]);
    printUsage(stderr);
    return 2;
}
