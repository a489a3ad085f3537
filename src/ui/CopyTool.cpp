#include "ui/CopyTool.h"

#include "data/clsLevel.h"
#include "native/marvek.h"
#include "ui/EditingState.h"

namespace marvek {

CopyTool::CopyTool() : AreaDragTool(createBGRA(255, 0, 0, 80)) {}

bool CopyTool::press(ToolContext& context) {
    if (context.mode == editingMode::tiles) {
        return AreaDragTool::press(context);
    }
    const QPoint cell = context.cell;
    const clsLevel& level = context.level;
    context.pickSpecial(level.contains(cell.x(), cell.y()) ? level.getSpecial(cell.x(), cell.y())
                                                           : 0);
    return false;
}

bool CopyTool::dragsIn(std::int32_t mode) const {
    return mode == editingMode::tiles;
}

void CopyTool::finish(ToolContext& context, const clsRectangle& area) {
    context.useTiles(context.level.getTiles(area));
}

} // namespace marvek
