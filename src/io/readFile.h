#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace marvek {

// Larger files are refused before a byte is read: far beyond any file the
// game or this program writes, small enough to hold in memory at once.
inline constexpr std::uintmax_t maximumReadBytes = std::uintmax_t{64} << 20;
// A level, tile set or sprite sheet is a few hundred KB; the largest level a
// reader accepts (a million cells) stays well below this.
inline constexpr std::uintmax_t maximumGameFileBytes = std::uintmax_t{8} << 20;

// Reads a whole file. Anything but a regular file (a folder, a named pipe, a
// device) is refused before it is opened, so that reading never waits for a
// writer, and so is a file larger than maximumBytes. Throws FileError naming
// path and the reason, the system's own where it gives one.
std::vector<std::uint8_t> readWholeFile(const std::filesystem::path& path,
                                        std::uintmax_t maximumBytes = maximumReadBytes);

// The file's first count bytes, fewer when it is shorter; refused as
// readWholeFile refuses, whatever its size.
std::vector<std::uint8_t> readFileStart(const std::filesystem::path& path, std::size_t count);

} // namespace marvek
