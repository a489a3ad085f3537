#pragma once

#include "data/CellBlock.h"
#include "data/TileGrid.h"
#include "graphics/clsRectangle.h"

#include <cstdint>
#include <optional>
#include <string>

namespace marvek {

class clsSpecial;
class clsSpecialSet;

// Editing modes, the mode tabs' order.
namespace editingMode {
constexpr std::int32_t tiles = 1;
constexpr std::int32_t specials = 2;
} // namespace editingMode

// The editing tools; the Brush is the tool at start.
enum class EditTool { brush, bucketFill, select };

// What the user edits with, the same whichever level is in front.
struct EditingState {
    std::int32_t mode = editingMode::tiles;
    EditTool tool = EditTool::brush;
    TileGrid brush = singleTile(1);
    // The cells a brush made by Paste stamps, specials and all.
    std::optional<CellBlock> brushCells;
    // Cells pasted in Specials mode: the brush puts down their specials.
    std::optional<CellBlock> specialsBrush;
    // By ID: each level has its own set of specials.
    std::optional<std::int32_t> specialId;
    clsRectangle paletteSelection;
    // False once the brush no longer comes from the tile palette.
    bool paletteSelectionVisible = true;
    bool alphaBlending = true;
    bool autoPlaceSpecials = true;
    // Specials drawn faint over the tiles in Tiles mode.
    bool specialsInTilesMode = true;
    float moveSensitivity = 1.0F;

    static TileGrid singleTile(std::int32_t tile) {
        TileGrid grid(1, 1);
        grid.at(0, 0) = tile;
        return grid;
    }
    // The chosen special in that set, or null when the set lacks it.
    const clsSpecial* special(const clsSpecialSet& set) const;
    // A step of tiles whose specials auto-place chooses: its name says what
    // it did to the specials already there.
    bool autoPlacing(const std::string& step) const {
        return mode == editingMode::tiles && autoPlaceSpecials && !brushCells &&
               (step == "Paint" || step == "Fill" || step == "Bucket Fill");
    }
    // The brush back to tile 1 and the first special of the set.
    void resetFor(const clsSpecialSet& set);
};

} // namespace marvek
