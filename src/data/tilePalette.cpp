#include "data/tilePalette.h"

#include "data/clsTileSet.h"

#include <algorithm>

namespace marvek {
namespace {

constexpr std::int32_t columns = clsTileSet::browserColumns;

} // namespace

std::int32_t tilePaletteRows(std::int32_t count) {
    return count <= 0 ? 0 : (count + columns - 1) / columns;
}

bool tilePaletteHolds(std::int32_t count, std::int32_t column, std::int32_t row) {
    return column >= 0 && column < columns && row >= 0 &&
           std::int64_t{row} * columns + column < count;
}

clsRectangle limitTileSelection(const clsRectangle& selection, std::int32_t count) {
    clsRectangle limited = selection;
    const std::int32_t lastRow = std::max(tilePaletteRows(count) - 1, 0);
    const std::int32_t right = std::clamp(selection.left + selection.width, 0, columns - 1);
    std::int32_t bottom = std::clamp(selection.top + selection.height, 0, lastRow);
    const std::int32_t lastColumnOfLastRow = (count - 1) % columns;
    std::int32_t farRight = right;
    if (std::max(selection.top, bottom) == lastRow &&
        std::max(selection.left, right) > lastColumnOfLastRow) {
        if (selection.top == lastRow) {
            farRight = std::min(right, lastColumnOfLastRow);
        } else {
            bottom = lastRow - 1;
        }
    }
    limited.width = farRight - selection.left;
    limited.height = bottom - selection.top;
    return limited;
}

} // namespace marvek
