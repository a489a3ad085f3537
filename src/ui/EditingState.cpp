#include "ui/EditingState.h"

#include "specials/clsSpecialSet.h"

namespace marvek {

const clsSpecial* EditingState::special(const clsSpecialSet& set) const {
    if (!specialId) {
        return nullptr;
    }
    if (const clsSpecial* found = set.getSpecialLUT(*specialId)) {
        return found;
    }
    // The lookup table leaves out ID 0, which a set may still define.
    for (std::int32_t i = 0; i < set.count(); ++i) {
        if (set.getSpecial(i).Id == *specialId) {
            return &set.getSpecial(i);
        }
    }
    return nullptr;
}

void EditingState::resetFor(const clsSpecialSet& set) {
    brush = singleTile(1);
    brushCells.reset();
    specialsBrush.reset();
    paletteSelection = clsRectangle();
    paletteSelectionVisible = true;
    specialId.reset();
    if (set.count() > 0) {
        specialId = set.getSpecial(0).Id;
    }
}

void EditingState::useTiles(TileGrid tiles) {
    brush = std::move(tiles);
    brushCells.reset();
    paletteSelectionVisible = false;
}

void EditingState::useCells(CellBlock cells) {
    useTiles(cells.tiles());
    brushCells = std::move(cells);
}

void EditingState::pickSpecial(const clsSpecialSet& set, std::int32_t id) {
    specialsBrush.reset();
    if (set.getSpecialLUT(id) != nullptr) {
        specialId = id;
    } else if (set.count() > 0) {
        specialId = set.getSpecial(0).Id;
    }
}

std::optional<std::int32_t> EditingState::chosenTile() const {
    const clsRectangle& chosen = paletteSelection;
    const bool startingBrush = paletteSelectionVisible && chosen.left == 0 && chosen.top == 0 &&
                               chosen.width == 0 && chosen.height == 0 && brush.width() == 1 &&
                               brush.height() == 1 && brush.at(0, 0) == 1;
    if (brush.empty() || startingBrush) {
        return std::nullopt;
    }
    return brush.at(0, 0);
}

} // namespace marvek
