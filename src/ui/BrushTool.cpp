#include "ui/BrushTool.h"

#include "data/clsLevel.h"
#include "data/lineWalk.h"
#include "graphics/clsRectangle.h"
#include "specials/clsSpecial.h"
#include "ui/frmMain.h"

namespace marvek {
namespace {

constexpr std::uint32_t pastedSpecialsTint = 0xA0FFD040;

} // namespace

std::int32_t BrushTool::press(ToolContext& context) {
    lastCell_ = context.cell;
    if (context.mode == frmMain::tilesMode) {
        context.edit("Paint",
                     [&](clsLevel&) { putDown(context, context.cell.x(), context.cell.y()); });
        return painting;
    }
    // Placing specials takes a plain click; other masks do nothing.
    if (context.shift != 0) {
        return 0;
    }
    context.edit(context.brush.specials != nullptr ? "Place Specials" : "Place Special",
                 [&](clsLevel&) { putDown(context, context.cell.x(), context.cell.y()); });
    return placing;
}

void BrushTool::drag(ToolContext& context) {
    const QPoint from = lastCell_;
    walkLine(from.x(), from.y(), context.cell.x(), context.cell.y(),
             [&](std::int32_t x, std::int32_t y) {
                 // The stroke's previous cell was put down by the last event.
                 if (x != from.x() || y != from.y()) {
                     putDown(context, x, y);
                 }
             });
    lastCell_ = context.cell;
}

void BrushTool::putDown(ToolContext& context, std::int32_t x, std::int32_t y) {
    clsLevel& level = context.level;
    if (context.mode == frmMain::tilesMode) {
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
    if (view.mode == frmMain::tilesMode) {
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
