#include "ui/BucketFillTool.h"

#include "data/clsLevel.h"
#include "data/editOverlays.h"
#include "data/floodFill.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"
#include "ui/EditingState.h"

namespace marvek {
namespace {

RegionKey keyFor(std::int32_t mode) {
    return mode == editingMode::tiles ? RegionKey::tile : RegionKey::special;
}

// The rows and columns the region reaches.
CellRange regionRange(const CellRegion& region) {
    CellRange range{region.width(), region.height(), -1, -1};
    for (std::int32_t y = 0; y < region.height(); ++y) {
        const std::uint8_t* flags = region.row(y);
        for (std::int32_t x = 0; x < region.width(); ++x) {
            if ((flags[x] & 1U) != 0) {
                range = unite(range, {x, y, x, y});
            }
        }
    }
    return range;
}

} // namespace

bool BucketFillTool::press(ToolContext& context) {
    if (context.shift != 0 || !context.level.contains(context.cell.x(), context.cell.y())) {
        return false;
    }
    const std::int32_t x = context.cell.x();
    const std::int32_t y = context.cell.y();
    const CellRegion region = floodRegion(context.level, x, y, keyFor(context.mode));
    if (context.mode == editingMode::tiles) {
        const BrushPattern& brush = context.brush;
        const CellBlock pattern =
            brush.cells != nullptr ? *brush.cells : CellBlock::fromTiles(brush.tiles);
        // A pasted brush brings its own specials; a palette brush the tiles'.
        const PatternSpecials specials = brush.cells != nullptr      ? PatternSpecials::carried
                                         : context.autoPlaceSpecials ? PatternSpecials::tileDefaults
                                                                     : PatternSpecials::keep;
        context.edit("Bucket Fill", regionRange(region),
                     [&](clsLevel& level) { fillRegion(level, region, pattern, x, y, specials); });
    } else if (context.selectedSpecial != nullptr) {
        const auto id = static_cast<std::uint8_t>(context.selectedSpecial->Id);
        context.edit("Bucket Fill", regionRange(region),
                     [&](clsLevel& level) { fillRegionSpecial(level, region, id); });
    }
    return false;
}

void BucketFillTool::preview(const ToolPreview& view) const {
    const CellRegion region =
        floodRegion(view.level, view.cell.x(), view.cell.y(), keyFor(view.mode));
    renderRegionTint(view.backBuffer, view.camera, view.level.tileSpacing, region,
                     createBGRA(0, 160, 255, 140), view.options.alphaBlending);
}

} // namespace marvek
