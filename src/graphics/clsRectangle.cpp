#include "graphics/clsRectangle.h"

#include "graphics/checkedInt32.h"

#include <algorithm>
#include <cstdlib>

namespace marvek {
namespace {

// Moves the start back over a negative extent and makes the extent positive.
void normalizeSpan(std::int32_t& start, std::int32_t& extent) {
    if (extent < 0) {
        start = checkedInt32(std::int64_t{start} + extent);
        extent = checkedInt32(-std::int64_t{extent});
    }
}

} // namespace

void clsRectangle::Normalize() {
    normalizeSpan(left, width);
    normalizeSpan(top, height);
}

void clsRectangle::addArea(std::int32_t areaX, std::int32_t areaY, std::int32_t areaWidth,
                           std::int32_t areaHeight) {
    // Deliberately odd, kept exactly as the editor has always done it: the old
    // bottom is top + width (not height), and each new extent is the absolute
    // new left or top plus the far edge.
    const std::int64_t newLeft = std::min(areaX, left);
    const std::int64_t newTop = std::min(areaY, top);
    const std::int64_t right =
        std::max(std::int64_t{areaX} + areaWidth, std::int64_t{left} + width);
    const std::int64_t bottom =
        std::max(std::int64_t{areaY} + areaHeight, std::int64_t{top} + width);
    left = checkedInt32(newLeft);
    top = checkedInt32(newTop);
    width = checkedInt32(std::llabs(newLeft) + right);
    height = checkedInt32(std::llabs(newTop) + bottom);
}

} // namespace marvek
