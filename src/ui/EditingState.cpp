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

} // namespace marvek
