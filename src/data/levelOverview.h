#pragma once

#include "data/cellRange.h"
#include "data/clsLevel.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace marvek {

class clsSpecialSet;
class clsTileSet;

// The colours an overview is drawn in: one per tile (its average) and one
// per special ID (its own colour, else its picture's average; light red for
// an ID the set does not define). Worked out once per tile set and special
// set, not per drawing.
struct OverviewColours {
    std::vector<std::uint32_t> tiles;
    std::array<std::uint32_t, 256> specials{};
};

OverviewColours overviewColours(const clsTileSet& tileSet, const clsSpecialSet& specialSet);

// A whole level drawn small: each cell a square of cellPixels pixels in its
// tile's colour, each placed special a dot in its colour. The pixels have
// the surfaces' layout (top-down rows, blue, green, red, transparency 0).
class clsLevelOverview {
public:
    static constexpr std::int32_t largestCell = 16;

    // Draws every cell; cellPixels is clamped to 1..largestCell.
    void drawAll(const clsLevel& level, const OverviewColours& colours, std::int32_t cellPixels);
    // Draws only the cells of range that lie on the level, after an edit.
    // The level must have the size of the last drawAll.
    void drawCells(const clsLevel& level, const OverviewColours& colours, const CellRange& range);

    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    std::int32_t cellPixels() const noexcept { return cellPixels_; }
    std::int32_t levelWidth() const noexcept { return levelWidth_; }
    std::int32_t levelHeight() const noexcept { return levelHeight_; }
    std::span<const std::uint32_t> pixels() const noexcept { return pixels_; }

private:
    void drawCell(const Cell& cell, const OverviewColours& colours, std::int32_t x, std::int32_t y);
    void drawDot(std::uint32_t colour, std::int32_t x, std::int32_t y);

    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t cellPixels_ = 1;
    std::int32_t levelWidth_ = 0;
    std::int32_t levelHeight_ = 0;
    std::vector<std::uint32_t> pixels_;
};

} // namespace marvek
