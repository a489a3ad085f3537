#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace marvek {

// Writes bytes to a temporary file beside path and renames it over path only
// when it is complete, so a failure never leaves a half-written target.
// Throws FileError naming path.
void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

// Reads a whole file. Throws FileError naming path.
std::vector<std::uint8_t> readWholeFile(const std::filesystem::path& path);

} // namespace marvek
