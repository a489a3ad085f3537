#pragma once

#include "ui/BrushTool.h"
#include "ui/BucketFillTool.h"
#include "ui/CopyTool.h"
#include "ui/RectangleFillTool.h"
#include "ui/SelectTool.h"

#include <cstdint>

namespace marvek {

struct EditingState;

// The level views' tools: the one chosen in the Tools menu, and the ones
// that Shift and Ctrl call up over it.
class ToolBox {
public:
    explicit ToolBox(const EditingState& editing) : editing_(editing) {}

    LevelTool& chosen();
    // The tool that takes a left press with this modifier mask (compared
    // whole: Shift alone, Ctrl alone); dragging: another drag is on.
    LevelTool& forPress(int shift, bool dragging);
    // The number the window's dragState() reports for a drag of the tool:
    // 4 copying, 6 filling, 3 any chosen tool's.
    std::int32_t dragNumber(const LevelTool& tool) const;

private:
    const EditingState& editing_;
    BrushTool brush_;
    BucketFillTool bucketFill_;
    SelectTool select_;
    CopyTool copy_;
    RectangleFillTool rectangleFill_;
};

} // namespace marvek
