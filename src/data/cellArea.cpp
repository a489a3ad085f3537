#include "data/cellArea.h"

#include "data/clsLevel.h"

#include <algorithm>
#include <cstdlib>

namespace marvek {

CellRange rangeOf(const clsRectangle& area) noexcept {
    return {area.left, area.top, area.left + area.width, area.top + area.height};
}

clsRectangle levelArea(const clsLevel& level) noexcept {
    clsRectangle all;
    all.width = level.width - 1;
    all.height = level.height - 1;
    return all;
}

clsRectangle areaOnMap(const clsLevel& level, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                       std::int32_t y1) noexcept {
    const std::int32_t lastX = std::max(level.width - 1, 0);
    const std::int32_t lastY = std::max(level.height - 1, 0);
    x0 = std::clamp(x0, 0, lastX);
    x1 = std::clamp(x1, 0, lastX);
    y0 = std::clamp(y0, 0, lastY);
    y1 = std::clamp(y1, 0, lastY);
    clsRectangle area;
    area.left = std::min(x0, x1);
    area.top = std::min(y0, y1);
    area.width = std::abs(x1 - x0);
    area.height = std::abs(y1 - y0);
    return area;
}

clsRectangle stretchArea(const clsRectangle& anchored, std::int32_t x, std::int32_t y) noexcept {
    clsRectangle area = anchored;
    area.width = std::min(x, areaLastColumn) - area.left;
    area.height = std::min(y, areaLastRow) - area.top;
    return area;
}

} // namespace marvek
