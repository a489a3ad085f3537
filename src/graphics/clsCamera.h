#pragma once

#include <cstdint>

namespace marvek {

// A view's top-left over the level, in level pixels, kept inside the level.
class clsCamera {
public:
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t viewWidth = 0;
    std::int32_t viewHeight = 0;
    std::int32_t levelWidth = 0;
    std::int32_t levelHeight = 0;

    void Move(std::int32_t newX, std::int32_t newY);
    void moveRelative(std::int32_t dx, std::int32_t dy);
    // Negative positions become 0 first; then a view reaching past the level
    // is pulled back, which wins: a view larger than the level ends negative.
    void checkPosition();
    // Keeps the cell at the view's top-left there, and the offset into it,
    // when the distance between cell origins changes (the grid shown or
    // hidden). The position is checked by whoever sets the new limits.
    void changePitch(std::int32_t oldPitch, std::int32_t newPitch);
};

} // namespace marvek
