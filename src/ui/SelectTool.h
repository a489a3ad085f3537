#pragma once

#include "graphics/clsRectangle.h"
#include "ui/LevelTool.h"

namespace marvek {

// Drags out a rectangle of cells, the level's selection that Cut, Copy,
// Delete and Replace Tile work on. It stays after the tool changes, until
// dropped.
class SelectTool final : public LevelTool {
public:
    QString name() const override { return "Select"; }
    bool press(ToolContext& context) override;
    bool dragsIn(std::int32_t /*mode*/) const override { return true; }
    void drag(ToolContext& context) override;
    void preview(const ToolPreview& /*view*/) const override {}

    // The whole map, normalised.
    static clsRectangle wholeLevel(const clsLevel& level);

private:
    void spanTo(ToolContext& context);

    QPoint anchor_;
};

} // namespace marvek
