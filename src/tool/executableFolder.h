#pragma once

#include <filesystem>

namespace marvek::tool {

// The folder of the running marvek-tool, which is the application folder
// unless a command is told otherwise; the working folder when the system
// does not say.
std::filesystem::path executableFolder();

// Where the resources (config/, fonts/, pal/, ...) are when no --app names a
// folder: beside the executable in a build tree, ../share/marvek once installed.
std::filesystem::path defaultApplicationFolder();

} // namespace marvek::tool
