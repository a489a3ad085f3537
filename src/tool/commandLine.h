#pragma once

#include "tool/commands.h"

#include <memory>
#include <string>
#include <vector>

namespace marvek::tool {

inline constexpr int exitBadArguments = 2;

// The command line asked for no work: help, the version or a mistake.
struct ToolExit {
    int status = 0;
    std::string text;
    bool toStandardError = false;
};

// Either the command to run, its arguments taken, or what to print and the
// status to end with.
struct ParsedToolCommandLine {
    std::unique_ptr<ToolCommand> command;
    ToolExit exit;
};

// arguments are those after the program's name.
ParsedToolCommandLine parseToolCommandLine(const std::vector<std::string>& arguments,
                                           const std::string& version);

} // namespace marvek::tool
