#pragma once

#include "support/TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>

namespace marvek::test {

inline std::string shellQuoted(const std::filesystem::path& path) {
    return "\"" + path.string() + "\"";
}

struct ToolRun {
    int exitCode = -1;
    std::string output;
    std::string errors;
};

// Runs marvek-tool with the arguments, in the working folder when one is
// given, and collects what it printed.
inline ToolRun runTool(const std::string& arguments,
                       const std::filesystem::path& workingFolder = {}) {
    const TempDir folder;
    const std::string change =
        workingFolder.empty() ? std::string() : "cd " + shellQuoted(workingFolder) + " && ";
    const std::string command = change + shellQuoted(MARVEK_TOOL_EXECUTABLE) + " " + arguments +
                                " >" + shellQuoted(folder / "out") + " 2>" +
                                shellQuoted(folder / "err");
    const int status = std::system(command.c_str());
    const auto output = readBytes(folder / "out");
    const auto errors = readBytes(folder / "err");
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            {output.begin(), output.end()},
            {errors.begin(), errors.end()}};
}

} // namespace marvek::test
