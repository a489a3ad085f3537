#pragma once

#include <span>
#include <string>
#include <vector>

namespace marvek::tool {

using Arguments = std::vector<std::string>;

// A command returns the process exit status: 0 on success, 1 on a failure of
// its work, 2 on bad arguments (after printing its usage line).
struct Command {
    const char* name;
    const char* usage;
    int (*run)(const Arguments& arguments, const char* usage);
};

std::span<const Command> commands();

} // namespace marvek::tool
