#pragma once

#include <cstdint>
#include <cstdlib>

namespace marvek {

// Calls visit(x, y) for every cell of the straight line from (x0, y0) to
// (x1, y1), both ends included, one step per cell along the longer axis
// (Bresenham), so a fast drag leaves no gaps between its pointer cells.
template <typename Visit>
void walkLine(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1, Visit visit) {
    const std::int64_t dx = std::llabs(std::int64_t{x1} - x0);
    const std::int64_t dy = -std::llabs(std::int64_t{y1} - y0);
    const std::int32_t stepX = x0 < x1 ? 1 : -1;
    const std::int32_t stepY = y0 < y1 ? 1 : -1;
    std::int64_t error = dx + dy;
    for (;;) {
        visit(x0, y0);
        if (x0 == x1 && y0 == y1) {
            return;
        }
        const std::int64_t twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            x0 += stepX;
        }
        if (twice <= dx) {
            error += dx;
            y0 += stepY;
        }
    }
}

} // namespace marvek
