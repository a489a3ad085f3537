#pragma once

#include "io/readFile.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace marvek {

// Writes bytes to a temporary file beside path, flushes it to disk and
// renames it over path only when it is complete, so a failure or a power cut
// never leaves a half-written target. A symbolic link is followed (the file
// it points to is replaced, the link stays), the new file keeps the old one's
// permission bits, a read-only target is refused, and temporary files that
// killed writes of the same target left behind are removed first.
// Throws FileError naming path.
void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

// Called with the complete temporary file just before it replaces the
// target. Only tests pass one, to kill a write at that moment.
using BeforeReplace = void (*)(const std::filesystem::path& temporary);
void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                         BeforeReplace beforeReplace);

// The temporary files beside target that writes of it by processes no longer
// running left behind.
std::vector<std::filesystem::path> staleTemporaryFiles(const std::filesystem::path& target);

} // namespace marvek
