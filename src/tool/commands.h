#pragma once

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
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

// Arguments taken apart: "--name VALUE" options in their order, the given
// switches ("--name" alone) and the positional arguments.
struct SplitArguments {
    std::vector<std::string> positional;
    std::vector<std::pair<std::string, std::string>> options;
    std::vector<std::string> switches;

    bool hasSwitch(std::string_view name) const;
};
// None when an option is the last argument, without its value.
std::optional<SplitArguments> splitArguments(const Arguments& arguments,
                                             std::initializer_list<std::string_view> switches);

} // namespace marvek::tool
