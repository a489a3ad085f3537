#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace marvek {

// Positions far off the surface (a huge configured offset, a far camera) are
// pinned to the 32-bit range the library takes; it clips them away as well.
inline std::int32_t screenCoordinate(std::int64_t position) noexcept {
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(position, std::numeric_limits<std::int32_t>::min(),
                                 std::numeric_limits<std::int32_t>::max()));
}

} // namespace marvek
