#pragma once

#include "ui/AreaDragTool.h"

namespace marvek {

// Ctrl and the left button: fills the dragged rectangle with the brush,
// repeated from its top-left corner, in Tiles mode, and with the chosen
// special in Specials mode.
class RectangleFillTool final : public AreaDragTool {
public:
    RectangleFillTool();
    QString name() const override { return "Fill"; }
    bool dragsIn(std::int32_t /*mode*/) const override { return true; }

private:
    void finish(ToolContext& context, const clsRectangle& area) override;
};

} // namespace marvek
