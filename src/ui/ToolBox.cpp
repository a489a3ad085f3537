#include "ui/ToolBox.h"

#include "ui/EditingState.h"

namespace marvek {
namespace {

constexpr int shiftMask = 1;
constexpr int ctrlMask = 2;

} // namespace

LevelTool& ToolBox::chosen() {
    switch (editing_.tool) {
    case EditTool::bucketFill:
        return bucketFill_;
    case EditTool::select:
        return select_;
    case EditTool::brush:
        break;
    }
    return brush_;
}

std::int32_t ToolBox::dragNumber(const LevelTool& tool) const {
    if (&tool == &copy_) {
        return 4;
    }
    return &tool == &rectangleFill_ ? 6 : 3;
}

LevelTool& ToolBox::forPress(int shift, bool dragging) {
    if (shift == shiftMask) {
        return copy_;
    }
    // Ctrl during another drag is a plain press.
    if (shift == ctrlMask && !dragging) {
        return rectangleFill_;
    }
    return chosen();
}

} // namespace marvek
