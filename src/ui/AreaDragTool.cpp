#include "ui/AreaDragTool.h"

namespace marvek {

bool AreaDragTool::press(ToolContext& context) {
    area_ = clsRectangle();
    area_.left = context.cell.x();
    area_.top = context.cell.y();
    area_.colour = static_cast<std::int32_t>(colour_);
    dragging_ = true;
    return true;
}

void AreaDragTool::drag(ToolContext& context) {
    area_ = stretchArea(area_, context.cell.x(), context.cell.y());
}

void AreaDragTool::release(ToolContext& context) {
    dragging_ = false;
    clsRectangle area = area_;
    area.Normalize();
    finish(context, area);
}

} // namespace marvek
