#pragma once

#include <cstdint>

namespace marvek {

// Whatever shows a back buffer's picture (a picture box, a test).
class clsPresentTarget {
public:
    virtual ~clsPresentTarget() = default;

    // pixels: width x height words, rows top to bottom, bytes blue, green,
    // red, alpha. Valid only during the call.
    virtual void present(const std::uint32_t* pixels, std::int32_t width, std::int32_t height) = 0;

protected:
    clsPresentTarget() = default;
    clsPresentTarget(const clsPresentTarget&) = default;
    clsPresentTarget& operator=(const clsPresentTarget&) = default;
};

} // namespace marvek
