// marvek-tool: the command-line companion of the editor.
#include "tool/commandLine.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

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
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const auto parsed = marvek::tool::parseToolCommandLine(arguments, MARVEK_VERSION);
    int status = parsed.exit.status;
    if (parsed.command) {
        status = parsed.command->run();
    } else {
        std::fputs(parsed.exit.text.c_str(), parsed.exit.toStandardError ? stderr : stdout);
    }
    return outputWritten() ? status : 1;
}
