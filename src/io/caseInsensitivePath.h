#pragma once

#include <filesystem>
#include <optional>

namespace marvek {

// The file `relative` below `folder`, found under its exact name or else with
// each missing part of it matched ignoring case, so that names written on a
// case-blind system still open here ("L1MA1" finds "l1ma1"). "/" and "\" both
// separate parts. nullopt when nothing matches.
std::optional<std::filesystem::path> findIgnoringCase(const std::filesystem::path& folder,
                                                      const std::filesystem::path& relative);

} // namespace marvek
