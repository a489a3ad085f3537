#pragma once

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

private:
    void spanTo(ToolContext& context);

    QPoint anchor_;
};

} // namespace marvek
