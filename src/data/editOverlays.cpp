#include "data/editOverlays.h"

#include "data/floodFill.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"
#include "native/marvek.h"

#include <algorithm>

namespace marvek {
namespace {

constexpr std::int32_t dash = 4;

// Dashes along a line of length pixels from (x, y), across or down.
void dashedLine(std::int32_t surface, std::int32_t x, std::int32_t y, std::int32_t length,
                bool across) {
    const std::uint32_t black = createBGRA(0, 0, 0, 0);
    const std::uint32_t white = createBGRA(255, 255, 255, 0);
    for (std::int32_t at = 0; at < length; at += dash) {
        const std::int32_t size = std::min(dash, length - at);
        const std::uint32_t colour = (at / dash) % 2 == 0 ? black : white;
        if (across) {
            renderBoxFill(surface, x + at, y, size, 1, colour, 1);
        } else {
            renderBoxFill(surface, x, y + at, 1, size, colour, 1);
        }
    }
}

} // namespace

void renderRegionTint(clsBackBuffer& backBuffer, const clsCamera& camera, std::int32_t spacing,
                      const CellRegion& region, std::uint32_t colour, bool alphaBlending) {
    if (spacing <= 0 || region.empty() || !backBuffer.isUsable()) {
        return;
    }
    const std::int32_t firstColumn = std::max(camera.x / spacing, 0);
    const std::int32_t firstRow = std::max(camera.y / spacing, 0);
    const std::int32_t lastColumn =
        std::min((camera.x + backBuffer.width()) / spacing, region.width() - 1);
    const std::int32_t lastRow =
        std::min((camera.y + backBuffer.height()) / spacing, region.height() - 1);
    for (std::int32_t y = firstRow; y <= lastRow; ++y) {
        const std::uint8_t* inside = region.row(y);
        std::int32_t x = firstColumn;
        while (x <= lastColumn) {
            if ((inside[x] & 1) == 0) {
                ++x;
                continue;
            }
            const std::int32_t start = x;
            while (x <= lastColumn && (inside[x] & 1) != 0) {
                ++x;
            }
            // With the grid shown the tint covers the gap between the run's
            // cells too, so a region reads as one area.
            const std::int32_t width = (x - start) * spacing - (spacing - 16);
            renderBoxFill(backBuffer.surface(), start * spacing - camera.x, y * spacing - camera.y,
                          width, 16, colour, alphaBlending ? 1 : 0);
        }
    }
}

void renderDashedFrame(clsBackBuffer& backBuffer, const clsCamera& camera, std::int32_t spacing,
                       const clsRectangle& area) {
    if (!backBuffer.isUsable()) {
        return;
    }
    const std::int32_t left = area.left * spacing - camera.x;
    const std::int32_t top = area.top * spacing - camera.y;
    const std::int32_t width = (area.width + 1) * spacing;
    const std::int32_t height = (area.height + 1) * spacing;
    const std::int32_t surface = backBuffer.surface();
    dashedLine(surface, left, top, width, true);
    dashedLine(surface, left, top + height - 1, width, true);
    dashedLine(surface, left, top, height, false);
    dashedLine(surface, left + width - 1, top, height, false);
}

} // namespace marvek
