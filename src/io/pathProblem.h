#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace marvek {

// The system's reason, in lower case, when the path itself cannot be followed
// (a loop of symbolic links, a part that is no folder); nothing when it leads
// somewhere or simply names nothing.
std::optional<std::string> brokenPathReason(const std::filesystem::path& path);

// Why a file that would not open for reading did not: the broken path's
// reason, "the file does not exist", or "cannot open the file".
std::string unopenedFileReason(const std::filesystem::path& path);

} // namespace marvek
