#include "data/levelNavigation.h"

#include "data/clsLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "native/marvek.h"

#include <algorithm>
#include <cmath>

namespace marvek {
namespace {

constexpr std::int32_t notch = 120;
constexpr std::int32_t cellsPerNotch = 3;

} // namespace

void stepCamera(clsCamera& camera, ViewStep step, std::int32_t pitch) {
    const std::int32_t farRight = camera.levelWidth - camera.viewWidth;
    const std::int32_t farDown = camera.levelHeight - camera.viewHeight;
    switch (step) {
    case ViewStep::left:
        camera.moveRelative(-pitch, 0);
        break;
    case ViewStep::right:
        camera.moveRelative(pitch, 0);
        break;
    case ViewStep::up:
        camera.moveRelative(0, -pitch);
        break;
    case ViewStep::down:
        camera.moveRelative(0, pitch);
        break;
    case ViewStep::pageUp:
        camera.moveRelative(0, -camera.viewHeight);
        break;
    case ViewStep::pageDown:
        camera.moveRelative(0, camera.viewHeight);
        break;
    case ViewStep::leftEdge:
        camera.Move(0, camera.y);
        break;
    case ViewStep::rightEdge:
        camera.Move(farRight, camera.y);
        break;
    case ViewStep::topLeft:
        camera.Move(0, 0);
        break;
    case ViewStep::bottomRight:
        camera.Move(farRight, farDown);
        break;
    }
}

void centreCamera(clsCamera& camera, std::int32_t x, std::int32_t y, std::int32_t pitch) {
    camera.Move(x * pitch + pitch / 2 - camera.viewWidth / 2,
                y * pitch + pitch / 2 - camera.viewHeight / 2);
}

CellRange visibleCells(const clsCamera& camera, std::int32_t pitch, std::int32_t levelWidth,
                       std::int32_t levelHeight) {
    const std::int32_t step = std::max(pitch, 1);
    const std::int32_t lastColumn = std::max(levelWidth - 1, 0);
    const std::int32_t lastRow = std::max(levelHeight - 1, 0);
    const std::int32_t left = std::min(std::max(camera.x, 0) / step, lastColumn);
    const std::int32_t top = std::min(std::max(camera.y, 0) / step, lastRow);
    const std::int32_t right = (camera.x + camera.viewWidth - 1) / step;
    const std::int32_t bottom = (camera.y + camera.viewHeight - 1) / step;
    return {left, top, std::clamp(right, left, lastColumn), std::clamp(bottom, top, lastRow)};
}

std::int32_t wheelPixels(std::int32_t delta, std::int32_t pitch) {
    return static_cast<std::int32_t>(
        std::nearbyint(double(delta) * cellsPerNotch * pitch / double(notch)));
}

void drawCellFrame(clsBackBuffer& backBuffer, const clsCamera& camera, std::int32_t pitch,
                   std::int32_t x, std::int32_t y, std::uint32_t colour) {
    const std::int32_t left = x * pitch - camera.x;
    const std::int32_t top = y * pitch - camera.y;
    renderBox(backBuffer.surface(), left, top, pitch, pitch, colour);
    renderBox(backBuffer.surface(), left + 1, top + 1, pitch - 2, pitch - 2, colour);
}

std::vector<PlacedSpecial> placedSpecials(const clsLevel& level) {
    std::vector<PlacedSpecial> placed;
    const std::span<const Cell> cells = level.cells();
    const auto width = static_cast<std::size_t>(std::max(level.width, 1));
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i].special != 0) {
            placed.push_back({static_cast<std::int32_t>(i % width),
                              static_cast<std::int32_t>(i / width), cells[i].special});
        }
    }
    return placed;
}

std::array<std::int32_t, 256> specialCounts(const std::vector<PlacedSpecial>& placed) {
    std::array<std::int32_t, 256> counts{};
    for (const PlacedSpecial& special : placed) {
        ++counts[special.id];
    }
    return counts;
}

} // namespace marvek
