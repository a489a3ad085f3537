#pragma once

#include <filesystem>

namespace marvek::tool {

// The folder of the running marvek-tool, which is the application folder
// unless a command is told otherwise; the working folder when the system
// does not say.
std::filesystem::path executableFolder();

} // namespace marvek::tool
