#pragma once

#include <cstdint>

namespace marvek {

// An integer rectangle for selections and dirty areas. colour and tag are
// carried along by copies and not interpreted here.
class clsRectangle {
public:
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t colour = 0;
    std::int32_t tag = 0;

    void copyTo(clsRectangle& target) const { target = *this; }
    // Turns a negative width or height into a positive one over the same area.
    void Normalize();
    // Grows the rectangle towards another area (see the definition for the
    // exact, historical formulas).
    void addArea(std::int32_t areaX, std::int32_t areaY, std::int32_t areaWidth,
                 std::int32_t areaHeight);
};

} // namespace marvek
