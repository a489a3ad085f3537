#include "ui/SelectTool.h"

#include "data/clsLevel.h"

namespace marvek {

bool SelectTool::press(ToolContext& context) {
    if (context.shift != 0 || !context.level.contains(context.cell.x(), context.cell.y())) {
        return false;
    }
    anchor_ = context.cell;
    spanTo(context);
    return true;
}

void SelectTool::drag(ToolContext& context) {
    spanTo(context);
}

void SelectTool::spanTo(ToolContext& context) {
    context.select(
        areaOnMap(context.level, anchor_.x(), anchor_.y(), context.cell.x(), context.cell.y()));
}

} // namespace marvek
