#pragma once

#include "ui/LevelTool.h"

namespace marvek {

// Paints the brush in Tiles mode and places the chosen special in Specials
// mode, along every cell of the line between two pointer positions.
class BrushTool final : public LevelTool {
public:
    QString name() const override { return "Brush"; }
    bool press(ToolContext& context) override;
    bool dragsIn(std::int32_t mode) const override { return mode == strokeMode_; }
    void drag(ToolContext& context) override;
    void preview(const ToolPreview& view) const override;

private:
    static void putDown(const ToolContext& context, clsLevel& level, std::int32_t x,
                        std::int32_t y);
    // The cells a put-down at (x, y) may touch.
    static CellRange footprint(const ToolContext& context, QPoint cell);

    QPoint lastCell_;
    // The mode the stroke began in; 0 when no stroke is on.
    std::int32_t strokeMode_ = 0;
};

} // namespace marvek
