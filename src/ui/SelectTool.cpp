#include "ui/SelectTool.h"

#include "data/clsLevel.h"

#include <algorithm>
#include <cstdlib>

namespace marvek {
namespace {

QPoint clampedToMap(const clsLevel& level, QPoint cell) {
    return {std::clamp(cell.x(), 0, std::max(level.width - 1, 0)),
            std::clamp(cell.y(), 0, std::max(level.height - 1, 0))};
}

} // namespace

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

clsRectangle SelectTool::wholeLevel(const clsLevel& level) {
    clsRectangle all;
    all.width = level.width - 1;
    all.height = level.height - 1;
    return all;
}

void SelectTool::spanTo(ToolContext& context) {
    const QPoint end = clampedToMap(context.level, context.cell);
    clsRectangle area;
    area.left = std::min(anchor_.x(), end.x());
    area.top = std::min(anchor_.y(), end.y());
    area.width = std::abs(end.x() - anchor_.x());
    area.height = std::abs(end.y() - anchor_.y());
    context.select(area);
}

} // namespace marvek
