#include "ui/BucketFillTool.h"

#include "data/clsLevel.h"
#include "data/editOverlays.h"
#include "data/floodFill.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"
#include "ui/frmMain.h"

namespace marvek {
namespace {

RegionKey keyFor(std::int32_t mode) {
    return mode == frmMain::tilesMode ? RegionKey::tile : RegionKey::special;
}

} // namespace

std::int32_t BucketFillTool::press(ToolContext& context) {
    if (context.shift != 0 || !context.level.contains(context.cell.x(), context.cell.y())) {
        return 0;
    }
    const std::int32_t x = context.cell.x();
    const std::int32_t y = context.cell.y();
    const CellRegion region = floodRegion(context.level, x, y, keyFor(context.mode));
    if (context.mode == frmMain::tilesMode) {
        const BrushPattern& brush = context.brush;
        const CellBlock pattern =
            brush.cells != nullptr ? *brush.cells : CellBlock::fromTiles(brush.tiles);
        // A pasted brush brings its own specials; a palette brush the tiles'.
        const PatternSpecials specials = brush.cells != nullptr      ? PatternSpecials::carried
                                         : context.autoPlaceSpecials ? PatternSpecials::tileDefaults
                                                                     : PatternSpecials::keep;
        context.edit("Bucket Fill",
                     [&](clsLevel& level) { fillRegion(level, region, pattern, x, y, specials); });
    } else if (context.selectedSpecial != nullptr) {
        const auto id = static_cast<std::uint8_t>(context.selectedSpecial->Id);
        context.edit("Bucket Fill", [&](clsLevel& level) { fillRegionSpecial(level, region, id); });
    }
    return 0;
}

void BucketFillTool::preview(const ToolPreview& view) const {
    const CellRegion region =
        floodRegion(view.level, view.cell.x(), view.cell.y(), keyFor(view.mode));
    renderRegionTint(view.backBuffer, view.camera, view.level.tileSpacing, region,
                     createBGRA(0, 160, 255, 140), view.options.alphaBlending);
}

} // namespace marvek
