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

std::int32_t SelectTool::press(ToolContext& context) {
    if (context.shift != 0 || !context.level.contains(context.cell.x(), context.cell.y())) {
        return 0;
    }
    anchor_ = context.cell;
    spanTo(context.level, context.cell);
    return selecting;
}

void SelectTool::drag(ToolContext& context) {
    spanTo(context.level, context.cell);
}

void SelectTool::selectAll(const clsLevel& level) {
    clsRectangle all;
    all.width = level.width - 1;
    all.height = level.height - 1;
    selection_ = all;
}

void SelectTool::spanTo(const clsLevel& level, QPoint cell) {
    const QPoint end = clampedToMap(level, cell);
    clsRectangle area;
    area.left = std::min(anchor_.x(), end.x());
    area.top = std::min(anchor_.y(), end.y());
    area.width = std::abs(end.x() - anchor_.x());
    area.height = std::abs(end.y() - anchor_.y());
    selection_ = area;
}

} // namespace marvek
