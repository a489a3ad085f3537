#include "data/cellRange.h"
#include "data/levelNavigation.h"
#include "data/levelOverview.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "native/marvek.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <vector>

namespace marvek::test {
namespace {

constexpr std::int32_t tileKinds = 8;
constexpr std::uint32_t rgb = 0x00FFFFFFu;

class Overview : public ::testing::Test {
protected:
    std::uint32_t tileColour(std::int32_t tile) const {
        return surfaceGetPixel(tiles_.Tile(tile).surface(), 0, 0) & rgb;
    }
    std::uint32_t at(const clsLevelOverview& overview, std::int32_t x, std::int32_t y) const {
        return overview.pixels()[std::size_t(y) * std::size_t(overview.width()) + std::size_t(x)];
    }
    OverviewColours colours() const { return overviewColours(tiles_, specials_); }

    TempDir folder_;
    clsLevel level_ = columnLevel(20, 10, tileKinds);
    clsTileSet tiles_ = solidTiles(tileKinds);
    // Index 9 fills 16 x 16 of a 32 x 32 sprite; the rest is see-through.
    clsSpecialSet specials_ = specialSet(folder_, R"(
        box { Id = 2; Kind = "box"; Color = "0,255,0"; Tag = "enemy"; }
        sprite { Id = 4; Kind = "sprite"; imgOffset = "64,0"; imgSize = "32,32"; Tag = "pickup"; }
    )",
                                         spriteSheet({{64, 0, 16, 9}}));
};

TEST_F(Overview, EachCellIsASquareOfItsTilesColourAndSpecialsAreDotsInTheirs) {
    level_.cellAt(4, 5).special = 2;
    level_.cellAt(6, 1).special = 4;
    level_.cellAt(19, 9).special = 40;
    level_.cellAt(3, 3).tile = 900; // beyond the set
    clsLevelOverview overview;
    overview.drawAll(level_, colours(), 3);
    ASSERT_EQ(overview.width(), 60);
    ASSERT_EQ(overview.height(), 30);
    EXPECT_EQ(at(overview, 3 * 7 + 2, 3 * 2), tileColour(7));
    EXPECT_EQ(at(overview, 3 * 7, 3 * 2 + 2), tileColour(7));
    EXPECT_EQ(at(overview, 3 * 3 + 1, 3 * 3 + 1), 0U) << "a tile the set lacks is black";
    EXPECT_EQ(at(overview, 3 * 4 + 1, 3 * 5 + 1), 0x0000FF00U) << "a box special's own colour";
    // The sprite's see-through pixels do not count in its colour.
    const std::uint32_t spriteInk =
        surfaceGetPixel(specials_.getSpecialLUT(4)->surface.surface(), 0, 0) & rgb;
    EXPECT_EQ(at(overview, 3 * 6 + 1, 3 * 1 + 1), spriteInk);
    EXPECT_NE(spriteInk, 0U);
    EXPECT_EQ(at(overview, 3 * 19 + 2, 3 * 9 + 2), 0x00FF3F3FU) << "undefined: light red";
    // Tile colours come out opaque.
    for (const std::uint32_t pixel : overview.pixels()) {
        ASSERT_EQ(pixel & ~rgb, 0U);
    }
}

TEST_F(Overview, LargeCellsKeepARimOfTheTileAroundTheDotAndSizesAreClamped) {
    level_.cellAt(2, 2).special = 2;
    clsLevelOverview overview;
    overview.drawAll(level_, colours(), 8);
    EXPECT_EQ(at(overview, 16, 16), tileColour(2)) << "rim";
    EXPECT_EQ(at(overview, 16 + 4, 16 + 4), 0x0000FF00U) << "dot";
    EXPECT_EQ(at(overview, 16 + 6, 16 + 6), tileColour(2)) << "rim";
    overview.drawAll(level_, colours(), 0);
    EXPECT_EQ(overview.cellPixels(), 1);
    overview.drawAll(level_, colours(), 99);
    EXPECT_EQ(overview.cellPixels(), clsLevelOverview::largestCell);
}

TEST_F(Overview, RedrawingChangedCellsTouchesOnlyThemAndMatchesAWholeDrawing) {
    const OverviewColours palette = colours();
    clsLevelOverview overview;
    overview.drawAll(level_, palette, 2);
    const std::vector<std::uint32_t> before(overview.pixels().begin(), overview.pixels().end());
    const std::vector<Cell> cellsBefore(level_.cells().begin(), level_.cells().end());
    level_.cellAt(7, 3).tile = 1;
    level_.cellAt(7, 3).special = 2;

    const auto changed = changedCells(cellsBefore, level_);
    ASSERT_TRUE(changed.has_value());
    EXPECT_EQ(*changed, (CellRange{7, 3, 7, 3}));
    overview.drawCells(level_, palette, *changed);
    int differing = 0;
    for (std::int32_t y = 0; y < overview.height(); ++y) {
        for (std::int32_t x = 0; x < overview.width(); ++x) {
            const bool inCell = x / 2 == 7 && y / 2 == 3;
            const std::size_t i = std::size_t(y) * std::size_t(overview.width()) + std::size_t(x);
            if (!inCell) {
                ASSERT_EQ(overview.pixels()[i], before[i]) << x << ", " << y;
            } else if (overview.pixels()[i] != before[i]) {
                ++differing;
            }
        }
    }
    EXPECT_EQ(differing, 4);
    clsLevelOverview whole;
    whole.drawAll(level_, palette, 2);
    EXPECT_TRUE(std::ranges::equal(whole.pixels(), overview.pixels()));

    // A range reaching past the level is cut to it.
    level_.cellAt(0, 0).tile = 5;
    overview.drawCells(level_, palette, {-4, -4, 0, 0});
    EXPECT_EQ(at(overview, 0, 0), tileColour(5));
}

TEST(ChangedCells, FindTheSmallestRangeHoldingEveryChange) {
    clsLevel level = columnLevel(10, 6, 3);
    const std::vector<Cell> before(level.cells().begin(), level.cells().end());
    EXPECT_FALSE(changedCells(before, level).has_value());
    level.cellAt(8, 1).special = 3;
    level.cellAt(1, 2).tile = 2;
    level.cellAt(4, 4).tile = 7;
    EXPECT_EQ(changedCells(before, level), (CellRange{1, 1, 8, 4}));
    level.cellAt(9, 5).tile = 1;
    EXPECT_EQ(changedCells(before, level), (CellRange{1, 1, 9, 5}));
    const std::vector<Cell> smaller(before.begin(), before.end() - 10);
    EXPECT_EQ(changedCells(smaller, level), (CellRange{0, 0, 9, 5})) << "another size: all";
}

// The range a cell-by-cell search finds, for comparison.
std::optional<CellRange> slowChangedCells(const std::vector<Cell>& before, const clsLevel& after) {
    std::optional<CellRange> found;
    for (std::int32_t y = 0; y < after.height; ++y) {
        for (std::int32_t x = 0; x < after.width; ++x) {
            const Cell& was = before[std::size_t(y) * std::size_t(after.width) + std::size_t(x)];
            const Cell& now = after.cellAt(x, y);
            if (was.tile != now.tile || was.special != now.special) {
                found = unite(found, CellRange{x, y, x, y});
            }
        }
    }
    return found;
}

TEST(ChangedCells, AgreeWithACellByCellSearchAndCoverEveryChange) {
    std::mt19937 random(23);
    for (int round = 0; round < 300; ++round) {
        clsLevel level = columnLevel(1 + int(random() % 17), 1 + int(random() % 9), 3);
        const std::vector<Cell> before(level.cells().begin(), level.cells().end());
        const int changes = int(random() % 5);
        for (int i = 0; i < changes; ++i) {
            Cell& cell = level.cells()[random() % level.cells().size()];
            if (random() % 2 == 0) {
                cell.special ^= 1;
            } else {
                cell.tile = static_cast<std::int16_t>(cell.tile ^ 1);
            }
        }
        const auto expected = slowChangedCells(before, level);
        ASSERT_EQ(changedCells(before, level), expected) << "round " << round;
        if (expected) {
            EXPECT_TRUE(wholeLevel(level).covers(*expected));
            EXPECT_FALSE(expected->covers(unite(*expected, CellRange{-1, 0, 0, 0})));
        }
    }
}

TEST(ChangedCells, AWatchTellsEachChangeOnce) {
    clsLevel level = columnLevel(10, 6, 3);
    CellWatch watch;
    watch.reset(level);
    EXPECT_FALSE(watch.takeChanges(level).has_value());
    level.cellAt(2, 1).tile = 7;
    level.cellAt(5, 3).special = 1;
    EXPECT_EQ(watch.takeChanges(level), (CellRange{2, 1, 5, 3}));
    EXPECT_FALSE(watch.takeChanges(level).has_value()) << "taken already";
    level.cellAt(9, 0).special = 4;
    EXPECT_EQ(watch.takeChanges(level), (CellRange{9, 0, 9, 0}));
    clsLevel wider = columnLevel(12, 6, 3);
    EXPECT_EQ(watch.takeChanges(wider), (CellRange{0, 0, 11, 5})) << "another size: all";
    EXPECT_FALSE(watch.takeChanges(wider).has_value());
}

clsCamera cameraOver(std::int32_t levelWidth, std::int32_t levelHeight) {
    clsCamera camera;
    camera.viewWidth = 100;
    camera.viewHeight = 50;
    camera.levelWidth = levelWidth;
    camera.levelHeight = levelHeight;
    return camera;
}

TEST(ViewSteps, MoveByACellAPageOrToAnEdgeAndStopAtTheLimits) {
    clsCamera camera = cameraOver(320, 160);
    const auto after = [&camera](ViewStep step) {
        stepCamera(camera, step, 16);
        return std::pair(camera.x, camera.y);
    };
    EXPECT_EQ(after(ViewStep::left), std::pair(0, 0));
    EXPECT_EQ(after(ViewStep::up), std::pair(0, 0));
    EXPECT_EQ(after(ViewStep::right), std::pair(16, 0));
    EXPECT_EQ(after(ViewStep::down), std::pair(16, 16));
    EXPECT_EQ(after(ViewStep::pageDown), std::pair(16, 66));
    EXPECT_EQ(after(ViewStep::pageDown), std::pair(16, 110));
    EXPECT_EQ(after(ViewStep::pageUp), std::pair(16, 60));
    EXPECT_EQ(after(ViewStep::rightEdge), std::pair(220, 60));
    EXPECT_EQ(after(ViewStep::right), std::pair(220, 60));
    EXPECT_EQ(after(ViewStep::leftEdge), std::pair(0, 60));
    EXPECT_EQ(after(ViewStep::bottomRight), std::pair(220, 110));
    EXPECT_EQ(after(ViewStep::topLeft), std::pair(0, 0));
    stepCamera(camera, ViewStep::right, 17);
    EXPECT_EQ(camera.x, 17) << "a cell is the grid's pitch";
}

TEST(ViewSteps, CentringAndTheVisibleCellsFollowTheCameraAndItsLimits) {
    clsCamera camera = cameraOver(320, 160);
    centreCamera(camera, 10, 5, 16);
    EXPECT_EQ(camera.x, 10 * 16 + 8 - 50);
    EXPECT_EQ(camera.y, 5 * 16 + 8 - 25);
    EXPECT_EQ(visibleCells(camera, 16, 20, 10), (CellRange{7, 3, 13, 7}));
    centreCamera(camera, 19, 9, 16);
    EXPECT_EQ(camera.x, 220);
    EXPECT_EQ(camera.y, 110);
    EXPECT_EQ(visibleCells(camera, 16, 20, 10), (CellRange{13, 6, 19, 9}));
    // A view larger than the level shows the whole level.
    clsCamera wide = cameraOver(64, 32);
    wide.checkPosition();
    EXPECT_EQ(visibleCells(wide, 16, 4, 2), (CellRange{0, 0, 3, 1}));
}

TEST(ViewSteps, AWheelNotchIsThreeCells) {
    EXPECT_EQ(wheelPixels(120, 16), 48);
    EXPECT_EQ(wheelPixels(-240, 17), -102);
    EXPECT_EQ(wheelPixels(40, 16), 16) << "a fine wheel's part of a notch";
}

TEST(ViewSteps, ACellFrameIsTwoPixelsInsideTheCell) {
    renderInit();
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(64, 64, 1));
    buffer.Clear();
    clsCamera camera = cameraOver(640, 640);
    camera.Move(8, 0);
    drawCellFrame(buffer, camera, 16, 1, 1, createBGRA(255, 255, 0, 0));
    const std::uint32_t yellow = createBGRA(255, 255, 0, 0);
    EXPECT_EQ(surfaceGetPixel(buffer.surface(), 8, 16), yellow);
    EXPECT_EQ(surfaceGetPixel(buffer.surface(), 9, 17), yellow);
    EXPECT_EQ(surfaceGetPixel(buffer.surface(), 23, 31), yellow);
    EXPECT_NE(surfaceGetPixel(buffer.surface(), 10, 18), yellow);
    EXPECT_NE(surfaceGetPixel(buffer.surface(), 7, 16), yellow);
}

TEST(PlacedSpecials, ListEveryCellWithASpecialRowByRowAndCountEachId) {
    clsLevel level = columnLevel(5, 3, 1);
    level.cellAt(4, 0).special = 7;
    level.cellAt(1, 2).special = 7;
    level.cellAt(0, 1).special = 63;
    const auto placed = placedSpecials(level);
    EXPECT_EQ(placed, (std::vector<PlacedSpecial>{{4, 0, 7}, {0, 1, 63}, {1, 2, 7}}));
    const auto counts = specialCounts(placed);
    EXPECT_EQ(counts[7], 2);
    EXPECT_EQ(counts[63], 1);
    EXPECT_EQ(counts[0], 0);
}

} // namespace
} // namespace marvek::test
