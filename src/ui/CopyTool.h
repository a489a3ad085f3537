#pragma once

#include "ui/AreaDragTool.h"

namespace marvek {

// Shift and the left button: in Tiles mode the dragged cells' tiles become
// the brush; in Specials mode a press picks the special under the pointer.
class CopyTool final : public AreaDragTool {
public:
    CopyTool();
    QString name() const override { return "Copy"; }
    bool press(ToolContext& context) override;
    bool dragsIn(std::int32_t mode) const override;

private:
    void finish(ToolContext& context, const clsRectangle& area) override;
};

} // namespace marvek
