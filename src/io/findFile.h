#pragma once

#include <filesystem>

namespace marvek {

// folder / relative when it exists, else the entry matched ignoring case
// (findIgnoringCase); when nothing matches, folder / relative all the same,
// so that an error about the file names what was looked for.
std::filesystem::path findFile(const std::filesystem::path& folder,
                               const std::filesystem::path& relative);

} // namespace marvek
