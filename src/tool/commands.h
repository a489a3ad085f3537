#pragma once

#include "graphics/clsFont.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <span>

namespace CLI {
class App;
}

namespace marvek::tool {

// One subcommand: its arguments bound to its own fields, then its work.
class ToolCommand {
public:
    virtual ~ToolCommand() = default;
    // Declares the command's arguments on its parser.
    virtual void addArguments(CLI::App& parser) = 0;
    // After a parse that succeeded: 0 on success, 1 on a failure of the work.
    virtual int run() = 0;
};

struct Command {
    const char* name;
    const char* usage;
    const char* summary;
    std::unique_ptr<ToolCommand> (*make)();
};

std::span<const Command> commands();

// Runs a command's work: 0 when it went through, 1 after printing why not.
int reportFailure(const std::function<void()>& work);

// The editor's font from the application folder. Without it a drawing
// leaves out the specials' numbers rather than failing; withoutIt says
// what the user will miss, in the warning printed then.
clsFont loadGameFont(const std::filesystem::path& applicationFolder, const char* withoutIt);

} // namespace marvek::tool
