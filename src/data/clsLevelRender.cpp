#include "data/clsLevel.h"

#include "data/SpecialPainter.h"
#include "data/clsTileSet.h"
#include "data/screenCoordinate.h"
#include "graphics/checkedInt32.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"
#include "specials/clsSpecialSet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace marvek {
namespace {

constexpr std::uint32_t frameColour = 0x00BF0000;

// The definition drawn for each value a cell's special byte can hold, or null.
using SpecialTable = std::array<const clsSpecial*, 256>;

// Cell offsets from the view's first cell, both ends included.
struct CellSpan {
    std::int64_t from = 0;
    std::int64_t to = -1;
};

// Which cells a view shows and where they land on the surface.
struct ViewCells {
    std::int32_t spacing = clsTileSet::tileSize;
    std::int32_t firstColumn = 0;
    std::int32_t firstRow = 0;
    std::int32_t offX = 0;
    std::int32_t offY = 0;
    // Further columns and rows after the first, clamped to the map.
    std::int32_t cols = -1;
    std::int32_t rows = -1;

    std::int64_t screenX(std::int64_t c) const { return std::int64_t{spacing} * c - offX; }
    std::int64_t screenY(std::int64_t r) const { return std::int64_t{spacing} * r - offY; }
};

// The screen position of the grid cell under the pointer.
std::pair<std::int64_t, std::int64_t> cellUnderPointer(const clsCamera& camera,
                                                       std::int32_t spacing, std::int32_t pixelX,
                                                       std::int32_t pixelY) {
    const std::int32_t offX = camera.x % spacing;
    const std::int32_t offY = camera.y % spacing;
    return {(std::int64_t{pixelX} + offX) / spacing * spacing - offX,
            (std::int64_t{pixelY} + offY) / spacing * spacing - offY};
}

// Keeps a span to offsets whose cell lies in the map.
CellSpan insideMap(CellSpan span, std::int32_t first, std::int32_t mapSize) {
    return {std::max<std::int64_t>(span.from, -std::int64_t{first}),
            std::min<std::int64_t>(span.to, std::int64_t{mapSize} - 1 - first)};
}

// The counts are inclusive upper bounds clamped the way the view always has:
// first to the map's size less one, then to what is left after the first cell.
std::int32_t clampedCount(std::int32_t count, std::int32_t first, std::int32_t mapSize) {
    std::int64_t clamped = std::min(count, mapSize - 1);
    if (first + clamped > mapSize - 1) {
        clamped = std::int64_t{mapSize} - first - 1;
    }
    return static_cast<std::int32_t>(std::max<std::int64_t>(clamped, -1));
}

ViewCells viewOf(const clsLevel& level, const clsCamera& camera, const clsBackBuffer& backBuffer) {
    ViewCells view;
    view.spacing = level.tileSpacing;
    view.firstColumn = camera.x / view.spacing;
    view.firstRow = camera.y / view.spacing;
    view.offX = camera.x % view.spacing;
    view.offY = camera.y % view.spacing;
    view.cols = clampedCount(backBuffer.width() / view.spacing + 1, view.firstColumn, level.width);
    view.rows = clampedCount(backBuffer.height() / view.spacing + 1, view.firstRow, level.height);
    return view;
}

// The whole map, one cell a cellSize step from the surface's corner.
ViewCells wholeMap(const clsLevel& level, std::int32_t cellSize) {
    ViewCells view;
    view.spacing = cellSize;
    view.cols = level.width - 1;
    view.rows = level.height - 1;
    return view;
}

// Specials of cells above or left of the view can reach into it: the span
// grows by the largest special's size in cells.
CellSpan withSpecialMargin(std::int32_t count, std::int32_t largest, std::int32_t spacing) {
    return {-(largest / spacing), static_cast<std::int64_t>(std::nearbyint(
                                      static_cast<double>(largest) / spacing + count))};
}

std::size_t cellIndex(const clsLevel& level, const ViewCells& view, std::int64_t c,
                      std::int64_t r) {
    return static_cast<std::size_t>((view.firstRow + r) * level.width + view.firstColumn + c);
}

void drawTiles(const clsLevel& level, const ViewCells& view, const clsTileSet& tileSet,
               std::int32_t surface) {
    const CellSpan columns = insideMap({0, view.cols}, view.firstColumn, level.width);
    const CellSpan rows = insideMap({0, view.rows}, view.firstRow, level.height);
    const auto cells = level.cells();
    const std::int32_t tileCount = tileSet.count();
    for (std::int64_t r = rows.from; r <= rows.to; ++r) {
        const auto y = static_cast<std::int32_t>(view.screenY(r));
        const std::size_t rowStart = cellIndex(level, view, 0, r);
        for (std::int64_t c = columns.from; c <= columns.to; ++c) {
            const std::int32_t tile = cells[rowStart + static_cast<std::size_t>(c)].tile;
            if (tile >= 0 && tile < tileCount) {
                renderBlitFast(surface, tileSet.Tile(tile).surface(),
                               static_cast<std::int32_t>(view.screenX(c)), y);
            }
        }
    }
}

struct SpecialPass {
    const SpecialTable& table;
    SpecialMarks marks;
    bool showUndefined = false;
};

// Row by row, left to right, so that a lower or further right special covers
// an earlier one.
void drawSpecials(const clsLevel& level, const ViewCells& view, CellSpan columns, CellSpan rows,
                  const SpecialPainter& painter, const SpecialPass& pass) {
    columns = insideMap(columns, view.firstColumn, level.width);
    rows = insideMap(rows, view.firstRow, level.height);
    const auto cells = level.cells();
    for (std::int64_t r = rows.from; r <= rows.to; ++r) {
        for (std::int64_t c = columns.from; c <= columns.to; ++c) {
            const std::uint8_t id = cells[cellIndex(level, view, c, r)].special;
            if (id == 0) {
                continue;
            }
            if (const clsSpecial* special = pass.table[id]) {
                painter.draw(*special, view.screenX(c), view.screenY(r), pass.marks);
            } else if (pass.showUndefined) {
                painter.drawUndefined(id, view.screenX(c), view.screenY(r));
            }
        }
    }
}

// Each pixel halfway between what was under the specials and what they drew.
void blendHalfway(std::int32_t surface, const std::vector<std::uint32_t>& under) {
    std::uint32_t* drawn = surfaceGetDataPtr(surface);
    if (drawn == nullptr) {
        return;
    }
    // Per byte: the mean without carrying into the next byte.
    std::transform(under.begin(), under.end(), drawn, drawn,
                   [](std::uint32_t below, std::uint32_t over) {
                       return (below & over) + (((below ^ over) & 0xFEFEFEFEu) >> 1);
                   });
}

SpecialTable definedSpecials(const clsSpecialSet& specialSet) {
    SpecialTable table{};
    for (std::int32_t id = 1; id <= clsSpecial::maximumId; ++id) {
        table[static_cast<std::size_t>(id)] = specialSet.getSpecialLUT(id);
    }
    return table;
}

// Without renderAll a special needs its tag chosen and noExport 0, whatever
// its kind; renderAll draws every special the set defines.
SpecialTable exportedSpecials(const clsSpecialSet& specialSet, const TagChoice& tagChoice,
                              bool renderAll) {
    SpecialTable table = definedSpecials(specialSet);
    if (renderAll) {
        return table;
    }
    for (const clsSpecial*& special : table) {
        if (special != nullptr &&
            (special->noExport != 0 || !isTagChosen(tagChoice, special->Tag))) {
            special = nullptr;
        }
    }
    return table;
}

} // namespace

bool clsLevel::gridIsConsistent() const noexcept {
    return hasSensibleSize() &&
           cells_.size() == static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

void clsLevel::renderTo(clsBackBuffer& backBuffer, const clsCamera& camera,
                        const clsTileSet& tileSet, const clsSpecialSet& specialSet,
                        std::int32_t flags, const clsRenderOptions& options) const {
    if ((flags & renderFlags::clear) != 0) {
        backBuffer.Clear();
    }
    if (tileSpacing <= 0 || !gridIsConsistent() || !backBuffer.isUsable()) {
        return;
    }
    const ViewCells view = viewOf(*this, camera, backBuffer);
    if ((flags & renderFlags::tiles) != 0) {
        drawTiles(*this, view, tileSet, backBuffer.surface());
    }
    if ((flags & renderFlags::specials) != 0) {
        const bool faint = (flags & renderFlags::faintSpecials) != 0;
        const std::vector<std::uint32_t>* under = faint ? &backBuffer.keepPixels() : nullptr;
        const SpecialTable table = definedSpecials(specialSet);
        const SpecialPass pass{
            table,
            {(flags & renderFlags::oversizeMarks) != 0, (flags & renderFlags::outlines) != 0},
            (flags & renderFlags::undefinedIds) != 0};
        drawSpecials(*this, view, withSpecialMargin(view.cols, specialSet.maxWidth(), tileSpacing),
                     withSpecialMargin(view.rows, specialSet.maxHeight(), tileSpacing),
                     SpecialPainter(backBuffer.surface(), tileSpacing, options), pass);
        if (under != nullptr) {
            blendHalfway(backBuffer.surface(), *under);
        }
    }
}

void clsLevel::renderTileRect(clsBackBuffer& backBuffer, const clsCamera& camera,
                              const clsRectangle& rectangle, bool alphaBlending) const {
    clsRectangle box;
    rectangle.copyTo(box);
    box.Normalize();
    const std::int64_t spacing = tileSpacing;
    renderBoxFill(backBuffer.surface(), checkedInt32(spacing * box.left - camera.x),
                  checkedInt32(spacing * box.top - camera.y),
                  checkedInt32(spacing * (std::int64_t{box.width} + 1)),
                  checkedInt32(spacing * (std::int64_t{box.height} + 1)),
                  static_cast<std::uint32_t>(box.colour), alphaBlending ? 1 : 0);
}

void clsLevel::renderSelectMap(clsBackBuffer& backBuffer, const clsCamera& camera,
                               const clsTileSet& tileSet, const TileGrid& selectMap,
                               std::int32_t pixelX, std::int32_t pixelY) const {
    if (tileSpacing <= 0 || selectMap.empty()) {
        return;
    }
    const std::int64_t spacing = tileSpacing;
    const auto [left, top] = cellUnderPointer(camera, tileSpacing, pixelX, pixelY);
    for (std::int32_t dy = 0; dy < selectMap.height(); ++dy) {
        for (std::int32_t dx = 0; dx < selectMap.width(); ++dx) {
            const std::int32_t tile = selectMap.at(dx, dy);
            if (tile >= 0 && tile < tileSet.count()) {
                renderBlitFast(backBuffer.surface(), tileSet.Tile(tile).surface(),
                               screenCoordinate(left + dx * spacing),
                               screenCoordinate(top + dy * spacing));
            }
        }
    }
    renderBox(backBuffer.surface(), screenCoordinate(left - 1), screenCoordinate(top - 1),
              checkedInt32(selectMap.width() * spacing + 1),
              checkedInt32(selectMap.height() * spacing + 1), frameColour);
}

void clsLevel::renderSelectedSpecial(clsBackBuffer& backBuffer, const clsCamera& camera,
                                     const clsSpecial& special, std::int32_t pixelX,
                                     std::int32_t pixelY, const clsRenderOptions& options) const {
    if (tileSpacing <= 0) {
        return;
    }
    const auto [x, y] = cellUnderPointer(camera, tileSpacing, pixelX, pixelY);
    SpecialPainter(backBuffer.surface(), tileSpacing, options)
        .draw(special, x, y, {.oversize = true, .outline = true});
}

void clsLevel::renderExportTo(clsBackBuffer& backBuffer, const clsTileSet& tileSet,
                              const clsSpecialSet& specialSet, const TagChoice& tagChoice,
                              bool renderAll, const clsRenderOptions& options) const {
    if (!gridIsConsistent() || !backBuffer.isUsable()) {
        return;
    }
    // The export is a map at one pixel a pixel: never the grid's spacing.
    constexpr std::int32_t cellSize = clsTileSet::tileSize;
    const ViewCells view = wholeMap(*this, cellSize);
    drawTiles(*this, view, tileSet, backBuffer.surface());
    const SpecialTable table = exportedSpecials(specialSet, tagChoice, renderAll);
    drawSpecials(*this, view, {0, view.cols}, {0, view.rows},
                 SpecialPainter(backBuffer.surface(), cellSize, options), {table, {}, false});
}

} // namespace marvek
