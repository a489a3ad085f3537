#pragma once

#include "graphics/clsRectangle.h"
#include "ui/LevelTool.h"

#include <cstdint>

namespace marvek {

// A modifier gesture that drags out a rectangle of cells, outlined in its
// colour while the button is held, and acts on it when the button is let go,
// whether or not the key still is.
class AreaDragTool : public LevelTool {
public:
    bool press(ToolContext& context) override;
    void drag(ToolContext& context) override;
    void release(ToolContext& context) override;
    void cancel() override { dragging_ = false; }
    bool ownsModifiers() const override { return true; }
    const clsRectangle* draggedArea() const override { return dragging_ ? &area_ : nullptr; }

protected:
    explicit AreaDragTool(std::uint32_t colour) : colour_(colour) {}
    // The button was let go over the normalised rectangle.
    virtual void finish(ToolContext& context, const clsRectangle& area) = 0;

private:
    std::uint32_t colour_;
    clsRectangle area_;
    bool dragging_ = false;
};

} // namespace marvek
