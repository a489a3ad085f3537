#pragma once

#include "ui/LevelTool.h"

namespace marvek {

// Fills the 4-connected region of cells that share the clicked cell's tile
// (Tiles mode) or special (Specials mode); the region a click would fill is
// tinted while the pointer rests on the view.
class BucketFillTool final : public LevelTool {
public:
    QString name() const override { return "Bucket Fill"; }
    bool press(ToolContext& context) override;
    bool dragsIn(std::int32_t /*mode*/) const override { return false; }
    void drag(ToolContext& /*context*/) override {}
    void preview(const ToolPreview& view) const override;
};

} // namespace marvek
