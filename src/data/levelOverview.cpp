#include "data/levelOverview.h"

#include "data/clsTileSet.h"
#include "native/marvek.h"
#include "specials/clsSpecialSet.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace marvek {
namespace {

constexpr std::uint32_t opaqueMask = 0x00FFFFFFu;
constexpr std::uint32_t transparent = 0xFF000000u;
// What the view draws an undefined ID's number in, made opaque.
constexpr std::uint32_t undefinedColour = 0x00FF3F3Fu;
constexpr std::uint32_t plainDot = 0x00FFFFFFu;

// The mean of the pixels' colours, opaque; with skipTransparent, pixels the
// blits skip do not count. Nothing counted gives nothing.
std::optional<std::uint32_t> averageColour(std::int32_t surface, bool skipTransparent) {
    const std::uint32_t* pixels = surfaceGetDataPtr(surface);
    const std::int64_t count =
        std::int64_t{surfaceGetWidth(surface)} * std::int64_t{surfaceGetHeight(surface)};
    if (pixels == nullptr || count <= 0) {
        return std::nullopt;
    }
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
    std::uint64_t counted = 0;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = pixels[i];
        if (skipTransparent && (pixel & transparent) == transparent) {
            continue;
        }
        red += (pixel >> 16) & 0xFF;
        green += (pixel >> 8) & 0xFF;
        blue += pixel & 0xFF;
        ++counted;
    }
    if (counted == 0) {
        return std::nullopt;
    }
    const auto mean = [counted](std::uint64_t sum) {
        return static_cast<std::uint32_t>((sum + counted / 2) / counted);
    };
    return (mean(red) << 16) | (mean(green) << 8) | mean(blue);
}

std::uint32_t specialColour(const clsSpecial& special) {
    if (special.Color != clsSpecial::noColor) {
        return static_cast<std::uint32_t>(special.Color) & opaqueMask;
    }
    if (special.surface.surface() != 0) {
        if (const auto colour = averageColour(special.surface.surface(), true)) {
            return *colour;
        }
    }
    return plainDot;
}

// Small cells are filled whole by a dot so that it stays visible; larger
// ones keep a rim of the tile's colour.
constexpr bool dotFillsCell(std::int32_t cellPixels) {
    return cellPixels < 4;
}

// The top pixel row of a row of cells. Sizes is a constant for the common
// small cells, so that each cell's pixels are plain stores; 0 takes the
// size at run time.
template <std::int32_t Size>
void fillCellRow(const Cell* cells, std::int32_t count, std::uint32_t* out,
                 const OverviewColours& colours, std::int32_t runtimeSize = Size) {
    const std::int32_t size = Size != 0 ? Size : runtimeSize;
    const bool dots = dotFillsCell(size);
    const std::uint32_t* tiles = colours.tiles.data();
    const std::size_t tileCount = colours.tiles.size();
    for (std::int32_t x = 0; x < count; ++x) {
        const Cell cell = cells[x];
        // A negative tile turns huge here and so counts as beyond the set.
        const auto tile = static_cast<std::size_t>(cell.tile);
        std::uint32_t colour = tile < tileCount ? tiles[tile] : 0;
        if (dots && cell.special != 0) {
            colour = colours.specials[cell.special];
        }
        if constexpr (Size != 0) {
            for (std::int32_t i = 0; i < Size; ++i) {
                out[i] = colour;
            }
        } else {
            std::fill_n(out, size, colour);
        }
        out += size;
    }
}

} // namespace

OverviewColours overviewColours(const clsTileSet& tileSet, const clsSpecialSet& specialSet) {
    OverviewColours colours;
    colours.tiles.reserve(static_cast<std::size_t>(tileSet.count()));
    for (std::int32_t i = 0; i < tileSet.count(); ++i) {
        // A tile is drawn whole, so every pixel counts.
        colours.tiles.push_back(averageColour(tileSet.Tile(i).surface(), false).value_or(0));
    }
    for (std::size_t id = 0; id < colours.specials.size(); ++id) {
        const clsSpecial* special = specialSet.getSpecialLUT(static_cast<std::int32_t>(id));
        colours.specials[id] = special != nullptr ? specialColour(*special) : undefinedColour;
    }
    return colours;
}

void clsLevelOverview::drawAll(const clsLevel& level, const OverviewColours& colours,
                               std::int32_t cellPixels) {
    cellPixels_ = std::clamp(cellPixels, 1, largestCell);
    levelWidth_ = std::max(level.width, 0);
    levelHeight_ = std::max(level.height, 0);
    if (level.cells().size() != std::size_t(levelWidth_) * std::size_t(levelHeight_)) {
        levelWidth_ = 0;
        levelHeight_ = 0;
    }
    width_ = levelWidth_ * cellPixels_;
    height_ = levelHeight_ * cellPixels_;
    // Every pixel is drawn below, so the old ones need no clearing.
    pixels_.resize(std::size_t(width_) * std::size_t(height_));
    const auto rowBytes = std::size_t(width_) * sizeof(std::uint32_t);
    for (std::int32_t y = 0; y < levelHeight_; ++y) {
        const Cell* cells = level.cells().data() + std::size_t(y) * std::size_t(levelWidth_);
        std::uint32_t* row = pixels_.data() + std::size_t(y) * std::size_t(cellPixels_) * width_;
        // One pixel row of the cells, then copies of it.
        switch (cellPixels_) {
        case 1:
            fillCellRow<1>(cells, levelWidth_, row, colours);
            break;
        case 2:
            fillCellRow<2>(cells, levelWidth_, row, colours);
            break;
        case 3:
            fillCellRow<3>(cells, levelWidth_, row, colours);
            break;
        default:
            fillCellRow<0>(cells, levelWidth_, row, colours, cellPixels_);
            break;
        }
        for (std::int32_t copy = 1; copy < cellPixels_; ++copy) {
            std::memcpy(row + std::size_t(copy) * width_, row, rowBytes);
        }
        if (!dotFillsCell(cellPixels_)) {
            for (std::int32_t x = 0; x < levelWidth_; ++x) {
                if (cells[x].special != 0) {
                    drawDot(colours.specials[cells[x].special], x, y);
                }
            }
        }
    }
}

void clsLevelOverview::drawCells(const clsLevel& level, const OverviewColours& colours,
                                 const CellRange& range) {
    if (level.width != levelWidth_ || level.height != levelHeight_ ||
        level.cells().size() != pixels_.size() / std::size_t(cellPixels_ * cellPixels_)) {
        return;
    }
    const std::int32_t left = std::max(range.left, 0);
    const std::int32_t top = std::max(range.top, 0);
    const std::int32_t right = std::min(range.right, levelWidth_ - 1);
    const std::int32_t bottom = std::min(range.bottom, levelHeight_ - 1);
    for (std::int32_t y = top; y <= bottom; ++y) {
        for (std::int32_t x = left; x <= right; ++x) {
            drawCell(level.cellAt(x, y), colours, x, y);
        }
    }
}

void clsLevelOverview::drawCell(const Cell& cell, const OverviewColours& colours, std::int32_t x,
                                std::int32_t y) {
    const auto tile = static_cast<std::size_t>(cell.tile);
    const std::uint32_t colour = tile < colours.tiles.size() ? colours.tiles[tile] : 0;
    std::uint32_t* corner =
        pixels_.data() + std::size_t(y) * std::size_t(cellPixels_) * width_ + x * cellPixels_;
    for (std::int32_t row = 0; row < cellPixels_; ++row) {
        std::fill_n(corner + std::size_t(row) * width_, cellPixels_, colour);
    }
    if (cell.special != 0) {
        drawDot(colours.specials[cell.special], x, y);
    }
}

void clsLevelOverview::drawDot(std::uint32_t colour, std::int32_t x, std::int32_t y) {
    const std::int32_t inset = dotFillsCell(cellPixels_) ? 0 : cellPixels_ / 4;
    const std::int32_t size = cellPixels_ - 2 * inset;
    std::uint32_t* corner = pixels_.data() +
                            (std::size_t(y) * std::size_t(cellPixels_) + inset) * width_ +
                            x * cellPixels_ + inset;
    for (std::int32_t row = 0; row < size; ++row) {
        std::fill_n(corner + std::size_t(row) * width_, size, colour);
    }
}

} // namespace marvek
