#pragma once

#include "data/CellBlock.h"
#include "data/TileGrid.h"
#include "data/cellRange.h"
#include "data/clsRenderOptions.h"
#include "graphics/clsRectangle.h"

#include <QPoint>
#include <QString>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace marvek {

class clsBackBuffer;
class clsCamera;
class clsLevel;
class clsSpecial;
class clsTileSet;

// What the user puts down: the brush's tiles, and for a brush made by
// Paste the whole cells with their specials.
struct BrushPattern {
    const TileGrid& tiles;
    const CellBlock* cells = nullptr;
    // In Specials mode, pasted cells whose specials alone go down.
    const CellBlock* specials = nullptr;
};

using LevelChange = std::function<void(clsLevel&)>;

// What a tool works with while handling one pointer event. The level is
// read-only: a tool changes it only through edit and continueEdit, naming
// the cells it may touch.
struct ToolContext {
    const clsLevel& level;
    std::int32_t mode;
    // The modifier mask of the event: 1 Shift, 2 Ctrl, 4 Alt.
    int shift;
    // The level cell under the pointer; it may lie outside the map.
    QPoint cell;
    BrushPattern brush;
    const clsSpecial* selectedSpecial;
    bool autoPlaceSpecials;
    // A named undo step.
    std::function<void(const std::string&, const CellRange&, const LevelChange&)> edit;
    // More cells of the step the press began.
    std::function<void(const CellRange&, const LevelChange&)> continueEdit;
    // The level's cell selection, or none.
    std::function<void(std::optional<clsRectangle>)> select;
};

// The cells of a normalised rectangle.
inline CellRange rangeOf(const clsRectangle& area) {
    return {area.left, area.top, area.left + area.width, area.top + area.height};
}

// What a tool draws over the level view while the pointer rests on it.
struct ToolPreview {
    const clsLevel& level;
    clsBackBuffer& backBuffer;
    const clsCamera& camera;
    const clsTileSet& tileSet;
    const clsRenderOptions& options;
    std::int32_t mode;
    QPoint cell;
    // The pointer in back-buffer pixels.
    std::int32_t pixelX;
    std::int32_t pixelY;
    BrushPattern brush;
    const clsSpecial* selectedSpecial;
};

// An editing tool of the level view. The view keeps the gestures that work
// with every tool (scrolling, Shift-copy, Ctrl-fill, Shift-pick) and hands a
// tool the rest of the left button's work.
class LevelTool {
public:
    LevelTool() = default;
    LevelTool(const LevelTool&) = delete;
    LevelTool& operator=(const LevelTool&) = delete;
    virtual ~LevelTool() = default;

    // The name the tool bar and the status bar show.
    virtual QString name() const = 0;
    // A left press; true when it begins a drag of this tool.
    virtual bool press(ToolContext& context) = 0;
    // True when the tool's drag takes the pointer in this mode.
    virtual bool dragsIn(std::int32_t mode) const = 0;
    // The pointer moved with the left button held during that drag.
    virtual void drag(ToolContext& context) = 0;
    // The left button let go at the end of that drag.
    virtual void release(ToolContext& /*context*/) {}
    virtual void preview(const ToolPreview& view) const = 0;
};

} // namespace marvek
