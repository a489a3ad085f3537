#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace marvek {

// The whole file at a UTF-8 path, or nothing when it cannot be read or is
// larger than maxBytes.
std::optional<std::vector<std::uint8_t>> readFileBytes(const char* path,
                                                       std::size_t maxBytes) noexcept;

} // namespace marvek
