#pragma once

#include "graphics/clsRectangle.h"
#include "ui/LevelTool.h"

#include <optional>

namespace marvek {

// Drags out a rectangle of cells, the selection that Cut, Copy, Delete and
// Replace Tile work on. It stays after the tool changes, until dropped.
class SelectTool final : public LevelTool {
public:
    static constexpr std::int32_t selecting = 7;

    QString name() const override { return "Select"; }
    std::int32_t press(ToolContext& context) override;
    void drag(ToolContext& context) override;
    void preview(const ToolPreview& /*view*/) const override {}

    // Normalised and inside the map; none before a drag or after drop().
    const std::optional<clsRectangle>& selection() const noexcept { return selection_; }
    void selectAll(const clsLevel& level);
    void drop() noexcept { selection_.reset(); }

private:
    void spanTo(const clsLevel& level, QPoint cell);

    QPoint anchor_;
    std::optional<clsRectangle> selection_;
};

} // namespace marvek
