#include "ui/RectangleFillTool.h"

#include "data/CellBlock.h"
#include "data/clsLevel.h"
#include "native/marvek.h"
#include "ui/EditingState.h"

namespace marvek {

RectangleFillTool::RectangleFillTool() : AreaDragTool(createBGRA(0, 255, 0, 80)) {}

void RectangleFillTool::finish(ToolContext& context, const clsRectangle& area) {
    const CellRange range = rangeOf(area);
    const BrushPattern& brush = context.brush;
    if (context.mode == editingMode::tiles && brush.cells != nullptr) {
        // Pasted cells bring their own specials, as they do when painted.
        context.edit("Fill", range,
                     [&](clsLevel& level) { fillCellRectangle(level, *brush.cells, area); });
    } else if (context.mode == editingMode::tiles) {
        context.edit("Fill", range, [&](clsLevel& level) {
            level.fillTileRectangle(brush.tiles, area, context.autoPlaceSpecials);
        });
    } else if (context.selectedSpecial != nullptr) {
        const clsSpecial& special = *context.selectedSpecial;
        context.edit("Fill Specials", range,
                     [&](clsLevel& level) { level.fillSpecialRectangle(special, area); });
    }
}

} // namespace marvek
