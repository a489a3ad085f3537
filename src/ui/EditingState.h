#pragma once

#include "data/CellBlock.h"
#include "data/TileGrid.h"
#include "graphics/clsRectangle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

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
    // A brush of tiles, copied or pasted: no longer the palette's.
    void useTiles(TileGrid tiles);
    // A brush of pasted cells that stamps their specials too.
    void useCells(CellBlock cells);
    // In Specials mode, pasted cells whose specials alone the brush puts down.
    void useSpecials(CellBlock cells) { specialsBrush = std::move(cells); }
    // Chooses the special of this ID, or the set's first when the set lacks it.
    void pickSpecial(const clsSpecialSet& set, std::int32_t id);
    // The brush's first tile, unless the brush is still the one a level opens
    // with (tile 1, the palette's corner chosen): nobody chose that one.
    std::optional<std::int32_t> chosenTile() const;
};

} // namespace marvek
