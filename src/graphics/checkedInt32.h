#pragma once

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace marvek {

// Arithmetic on the view and rectangle values is done in 64 bits and then
// brought back; a result that does not fit is an error, not a wrap-around.
inline std::int32_t checkedInt32(std::int64_t value) {
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throw std::overflow_error("value out of the 32-bit range");
    }
    return static_cast<std::int32_t>(value);
}

} // namespace marvek
