#pragma once

#include "ui/LevelTool.h"

namespace marvek {

// Paints the brush in Tiles mode and places the chosen special in Specials
// mode, along every cell of the line between two pointer positions.
class BrushTool final : public LevelTool {
public:
    static constexpr std::int32_t painting = 3;
    static constexpr std::int32_t placing = 5;

    QString name() const override { return "Brush"; }
    std::int32_t press(ToolContext& context) override;
    void drag(ToolContext& context) override;
    void preview(const ToolPreview& view) const override;

private:
    static void putDown(ToolContext& context, std::int32_t x, std::int32_t y);

    QPoint lastCell_;
};

} // namespace marvek
