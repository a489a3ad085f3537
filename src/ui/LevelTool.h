#pragma once

#include "data/CellBlock.h"
#include "data/TileGrid.h"
#include "data/clsRenderOptions.h"

#include <QPoint>
#include <QString>

#include <cstdint>
#include <functional>
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

// What a tool works with while handling one pointer event.
struct ToolContext {
    clsLevel& level;
    std::int32_t mode;
    // The modifier mask of the event: 1 Shift, 2 Ctrl, 4 Alt.
    int shift;
    // The level cell under the pointer; it may lie outside the map.
    QPoint cell;
    BrushPattern brush;
    const clsSpecial* selectedSpecial;
    bool autoPlaceSpecials;
    // The main window's one way of changing the level: a named undo step.
    std::function<void(const std::string&, const std::function<void(clsLevel&)>&)> edit;
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

// An editing tool of the level view. The main window keeps the gestures
// that work with every tool (scrolling, Shift-copy, Ctrl-fill, Shift-pick)
// and hands a tool the rest of the left button's work.
class LevelTool {
public:
    LevelTool() = default;
    LevelTool(const LevelTool&) = delete;
    LevelTool& operator=(const LevelTool&) = delete;
    virtual ~LevelTool() = default;

    // The name the tool bar and the status bar show.
    virtual QString name() const = 0;
    // A left press; returns the drag state the press begins, 0 for none.
    virtual std::int32_t press(ToolContext& context) = 0;
    // The pointer moved with the left button held during that drag.
    virtual void drag(ToolContext& context) = 0;
    // The left button let go at the end of that drag.
    virtual void release(ToolContext& /*context*/) {}
    virtual void preview(const ToolPreview& view) const = 0;
};

} // namespace marvek
