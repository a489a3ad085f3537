#pragma once

#include "data/CellBlock.h"
#include "data/TileGrid.h"
#include "data/cellArea.h"
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
    // The brush becomes these tiles, copied from the level.
    std::function<void(TileGrid)> useTiles;
    // The special of this ID becomes the chosen one (the set's first when
    // the set lacks it).
    std::function<void(std::int32_t)> pickSpecial;
};

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

// An editing tool of the level view: the one chosen in the Tools menu, or
// the one a modifier key calls up whatever the chosen tool (Shift-copy,
// Ctrl-fill). The view turns the left button's events into cells for it; a
// drag's state is the tool's own.
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
    // The drag ends without its release (another mode, tab or tool).
    virtual void cancel() {}
    // True for a drag that Shift or Ctrl began: letting go of the key does
    // not drop it, and its release lets go of the key's hold.
    virtual bool ownsModifiers() const { return false; }
    // The rectangle the drag outlines, in its own colour; null when none.
    virtual const clsRectangle* draggedArea() const { return nullptr; }
    // Drawn while the pointer rests on the level and no modifier is held.
    virtual void preview(const ToolPreview& /*view*/) const {}
};

} // namespace marvek
