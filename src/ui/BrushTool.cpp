#include "ui/BrushTool.h"

#include "data/clsLevel.h"
#include "data/lineWalk.h"
#include "graphics/clsRectangle.h"
#include "specials/clsSpecial.h"
#include "ui/EditingState.h"

namespace marvek {
namespace {

constexpr std::uint32_t pastedSpecialsTint = 0xA0FFD040;

} // namespace

bool BrushTool::press(ToolContext& context) {
    lastCell_ = context.cell;
    strokeMode_ = 0;
    const CellRange range = footprint(context, context.cell);
    if (context.mode == editingMode::tiles) {
        context.edit("Paint", range, [&](clsLevel& level) {
            putDown(context, level, context.cell.x(), context.cell.y());
        });
        strokeMode_ = context.mode;
        return true;
    }
    // Placing specials takes a plain click; other masks do nothing.
    if (context.shift != 0) {
        return false;
    }
    context.edit(
        context.brush.specials != nullptr ? "Place Specials" : "Place Special", range,
        [&](clsLevel& level) { putDown(context, level, context.cell.x(), context.cell.y()); });
    strokeMode_ = context.mode;
    return true;
}

void BrushTool::drag(ToolContext& context) {
    const QPoint from = lastCell_;
    const CellRange range = unite(footprint(context, from), footprint(context, context.cell));
    context.continueEdit(range, [&](clsLevel& level) {
        walkLine(from.x(), from.y(), context.cell.x(), context.cell.y(),
                 [&](std::int32_t x, std::int32_t y) {
                     // The stroke's previous cell was put down by the last event.
                     if (x != from.x() || y != from.y()) {
                         putDown(context, level, x, y);
                     }
                 });
    });
    lastCell_ = context.cell;
}

CellRange BrushTool::footprint(const ToolContext& context, QPoint cell) {
    std::int32_t width = 1;
    std::int32_t height = 1;
    if (context.mode != editingMode::tiles && context.brush.specials != nullptr) {
        width = context.brush.specials->width();
        height = context.brush.specials->height();
    } else if (context.mode == editingMode::tiles) {
        width = context.brush.cells != nullptr ? context.brush.cells->width()
                                               : context.brush.tiles.width();
        height = context.brush.cells != nullptr ? context.brush.cells->height()
                                                : context.brush.tiles.height();
    }
    return {cell.x(), cell.y(), cell.x() + std::max(width, 1) - 1,
            cell.y() + std::max(height, 1) - 1};
}

void BrushTool::putDown(const ToolContext& context, clsLevel& level, std::int32_t x,
                        std::int32_t y) {
    if (context.mode == editingMode::tiles) {
        if (context.brush.cells != nullptr) {
            stampCells(level, *context.brush.cells, x, y);
        } else {
            stampTiles(level, context.brush.tiles, x, y, context.autoPlaceSpecials);
        }
    } else if (context.brush.specials != nullptr) {
        stampSpecials(level, *context.brush.specials, x, y);
    } else if (context.selectedSpecial != nullptr && level.contains(x, y)) {
        level.setSpecial(x, y, static_cast<std::uint8_t>(context.selectedSpecial->Id));
    }
}

void BrushTool::preview(const ToolPreview& view) const {
    if (view.mode == editingMode::tiles) {
        view.level.renderSelectMap(view.backBuffer, view.camera, view.tileSet, view.brush.tiles,
                                   view.pixelX, view.pixelY);
    } else if (view.brush.specials != nullptr) {
        // Where the pasted specials will go.
        clsRectangle area;
        area.left = view.cell.x();
        area.top = view.cell.y();
        area.width = view.brush.specials->width() - 1;
        area.height = view.brush.specials->height() - 1;
        area.colour = static_cast<std::int32_t>(pastedSpecialsTint);
        view.level.renderTileRect(view.backBuffer, view.camera, area, view.options.alphaBlending);
    } else if (view.selectedSpecial != nullptr) {
        view.level.renderSelectedSpecial(view.backBuffer, view.camera, *view.selectedSpecial,
                                         view.pixelX, view.pixelY, view.options);
    }
}

} // namespace marvek
