#include "data/clsTileSet.h"

#include "graphics/checkedInt32.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsPalette.h"
#include "graphics/clsRectangle.h"
#include "io/clsBitStream.h"
#include "native/marvek.h"

#include <stdexcept>
#include <string>

namespace marvek {
namespace {

constexpr std::int32_t bytesPerPlane = clsTileSet::tileSize * clsTileSet::tileSize / 8;
constexpr std::int32_t noTransparentIndex = -1;

} // namespace

std::int32_t tileCountOf(std::int32_t size, int planes) {
    if (planes < 1 || planes > clsSurface::maximumPlanes || size <= 0) {
        return 0;
    }
    const std::int32_t tileBytes = planes * bytesPerPlane;
    const std::int32_t whole = size / tileBytes;
    const std::int32_t rest = size % tileBytes;
    const bool roundsUp = 2 * rest > tileBytes || (2 * rest == tileBytes && whole % 2 == 1);
    return roundsUp ? whole + 1 : whole;
}

void clsTileSet::loadFrom(clsBitStream& stream, const clsPalette& palette, int planes) {
    tiles_.clear();
    if (!stream.bufferGet()->hasStorage()) {
        return;
    }
    const std::int32_t total = tileCountOf(stream.Size(), planes);
    tiles_.resize(static_cast<std::size_t>(total));
    for (auto& tile : tiles_) {
        tile.planarLoadFromBits(stream, tileSize, tileSize, planes);
        tile.planarToSurface(palette, noTransparentIndex);
    }
}

const clsSurface& clsTileSet::Tile(std::int32_t index) const {
    if (index < 0 || index >= count()) {
        throw std::out_of_range("tile " + std::to_string(index) + " of " + std::to_string(count()));
    }
    return tiles_[static_cast<std::size_t>(index)];
}

void clsTileSet::renderTo(clsBackBuffer& backBuffer, const clsCamera& camera) const {
    backBuffer.Clear();
    // Division truncates toward zero and the remainder keeps camera y's sign.
    std::int64_t index = std::int64_t{camera.y / tileSize} * browserColumns;
    const std::int32_t yOffset = camera.y % tileSize;
    const std::int32_t rows = camera.viewHeight / tileSize + 2;
    for (std::int32_t row = 0; row < rows; ++row) {
        renderRow(backBuffer, index, tileSize * row - yOffset);
    }
}

void clsTileSet::renderRow(clsBackBuffer& backBuffer, std::int64_t& index, std::int32_t y) const {
    for (std::int32_t column = 0; column < browserColumns; ++column) {
        if (index < 0 || index >= count()) {
            return;
        }
        renderBlitFast(backBuffer.surface(), tiles_[static_cast<std::size_t>(index)].surface(),
                       tileSize * column, y);
        ++index;
    }
}

void clsTileSet::renderSelected(clsBackBuffer& backBuffer, const clsRectangle& selection,
                                const clsCamera& camera, std::int32_t alphaBlending) const {
    clsRectangle box;
    selection.copyTo(box);
    box.Normalize();
    renderBoxFill(backBuffer.surface(), checkedInt32(std::int64_t{tileSize} * box.left - camera.x),
                  checkedInt32(std::int64_t{tileSize} * box.top - camera.y),
                  checkedInt32(std::int64_t{tileSize} * (std::int64_t{box.width} + 1)),
                  checkedInt32(std::int64_t{tileSize} * (std::int64_t{box.height} + 1)),
                  createBGRA(255, 0, 0, 80), alphaBlending);
}

} // namespace marvek
