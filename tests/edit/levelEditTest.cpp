#include "data/clsLevel.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"
#include "support/images.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

namespace marvek::test {
namespace {

constexpr std::int16_t A = 11;
constexpr std::int16_t B = 22;
constexpr std::uint8_t defaultOfA = 7;

TileGrid gridOf(std::int32_t width, std::int32_t height, const std::vector<std::int32_t>& values) {
    TileGrid grid(width, height);
    for (std::int32_t i = 0; i < width * height; ++i) {
        grid.at(i % width, i / width) = values[static_cast<std::size_t>(i)];
    }
    return grid;
}

class LevelEdit : public ::testing::Test {
protected:
    void SetUp() override {
        undoInit();
        undoSetMax(10);
        level_.width = 6;
        level_.height = 4;
        level_.resizeCells();
        std::vector<std::uint8_t> defaults(64);
        defaults[A] = defaultOfA;
        level_.setDefaultSpecials(defaults);
    }
    void TearDown() override { undoSetMax(50); }

    std::int16_t tile(std::int32_t x, std::int32_t y) const { return level_.cellAt(x, y).tile; }

    // The tiles of one row, left to right.
    std::vector<std::int16_t> row(std::int32_t y) const {
        std::vector<std::int16_t> tiles;
        for (std::int32_t x = 0; x < level_.width; ++x) {
            tiles.push_back(tile(x, y));
        }
        return tiles;
    }

    // Every cell's tile and special.
    std::vector<std::pair<std::int16_t, std::uint8_t>> snapshot() const {
        std::vector<std::pair<std::int16_t, std::uint8_t>> cells;
        for (const Cell& cell : level_.cells()) {
            cells.emplace_back(cell.tile, cell.special);
        }
        return cells;
    }

    clsLevel level_;
    clsCamera camera_;
};

using Row = std::vector<std::int16_t>;

TEST_F(LevelEdit, APatternRepeatsAcrossTheRectangleAndTheWalkStopsAtEveryEdge) {
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), clsRectangle{0, 1, 4, 0}, false);
    EXPECT_EQ(row(1), (Row{A, B, A, B, A, 0}));
    EXPECT_EQ(row(0), (Row{0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(level_.modified);

    const TileGrid columns = gridOf(1, 2, {A, B});
    // Rows above the map are skipped, yet the pattern still moves on.
    level_.fillTileRectangle(columns, clsRectangle{0, -1, 0, 2}, false);
    EXPECT_EQ(std::pair(tile(0, 0), tile(0, 1)), std::pair(B, A));
    // A rectangle that starts left of the map changes no cell.
    const auto before = snapshot();
    level_.fillTileRectangle(columns, clsRectangle{-1, 0, 3, 3}, false);
    level_.fillSpecialRectangle(clsSpecial{}, clsRectangle{-1, 0, 3, 3});
    EXPECT_EQ(snapshot(), before);
    // Right and bottom: the walk stops at the edge without wrapping.
    level_.fillTileRectangle(gridOf(1, 1, {B}), clsRectangle{4, 2, 5, 5}, false);
    EXPECT_EQ(row(2), (Row{0, 0, 0, 0, B, B}));
    EXPECT_EQ(row(3), (Row{0, 0, 0, 0, B, B}));
}

TEST_F(LevelEdit, AutoPlaceBringsEachTilesDefaultSpecial) {
    level_.setSpecial(1, 0, 40);
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), clsRectangle{0, 0, 1, 0}, false);
    EXPECT_EQ(level_.getSpecial(1, 0), 40);
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), clsRectangle{0, 0, 1, 0}, true);
    EXPECT_EQ(std::pair(level_.getSpecial(0, 0), level_.getSpecial(1, 0)),
              (std::pair<std::uint8_t, std::uint8_t>(defaultOfA, 0)));
}

TEST_F(LevelEdit, SpecialsAndTheirRangeChecks) {
    clsSpecial special;
    special.Id = 256 + 44;
    level_.fillSpecialRectangle(special, clsRectangle{5, 3, 2, 2});
    EXPECT_EQ(std::pair(level_.getSpecial(5, 3), level_.getSpecial(4, 3)),
              (std::pair<std::uint8_t, std::uint8_t>(44, 0)));
    EXPECT_THROW(level_.getSpecial(6, 0), std::out_of_range);
    EXPECT_THROW(level_.getSpecial(0, -1), std::out_of_range);
    EXPECT_THROW(level_.setSpecial(-1, 0, 1), std::out_of_range);
    EXPECT_EQ(std::tuple(level_.getDefaultSpecial(A), level_.getDefaultSpecial(64),
                         level_.getDefaultSpecial(-1)),
              (std::tuple<std::uint8_t, std::uint8_t, std::uint8_t>(defaultOfA, 0, 0)));

    TileGrid grid(2, 3);
    grid.at(1, 2) = 5;
    EXPECT_EQ(std::as_const(grid).at(1, 2), 5);
    EXPECT_THROW(grid.at(2, 0), std::out_of_range);
    EXPECT_THROW(grid.at(0, -1), std::out_of_range);
    EXPECT_THROW(TileGrid(-1, 1), std::length_error);
    EXPECT_THROW(TileGrid(1 << 13, 1 << 12), std::length_error);
}

TEST_F(LevelEdit, GetTilesReadsZeroOutsideTheMap) {
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), clsRectangle{0, 0, 5, 3}, false);
    const TileGrid tiles = level_.getTiles(clsRectangle{4, -1, 2, 1});
    ASSERT_EQ(std::pair(tiles.width(), tiles.height()), std::pair(3, 2));
    EXPECT_EQ(std::tuple(tiles.at(0, 0), tiles.at(0, 1), tiles.at(1, 1), tiles.at(2, 1)),
              std::tuple(0, A, B, 0));
    EXPECT_TRUE(level_.getTiles(clsRectangle{0, 0, -1, 0}).empty());
}

TEST_F(LevelEdit, TheSelectMapLandsOnTheCellUnderThePointerAndSkipsOutsideCellsOneByOne) {
    const TileGrid one = gridOf(1, 1, {A});
    level_.placeSelectMap(one, 20, 0, camera_, false);
    EXPECT_EQ(tile(1, 0), A);
    level_.tileSpacing = 17;
    level_.placeSelectMap(gridOf(1, 1, {B}), 33, 17, camera_, false);
    EXPECT_EQ(tile(1, 1), B);
    camera_.y = 16;
    level_.placeSelectMap(one, 0, 19, camera_, true);
    EXPECT_EQ(tile(0, 2), A);
    EXPECT_EQ(level_.getSpecial(0, 2), defaultOfA);
    level_.tileSpacing = 16;
    camera_.y = 0;

    const TileGrid map = gridOf(3, 2, {A, B, A, B, A, B});
    // A negative camera position divides toward zero: column -1, not -2.
    camera_.x = -20;
    level_.placeSelectMap(map, 0, 48, camera_, false);
    EXPECT_EQ(row(3), (Row{B, A, 0, 0, 0, 0}));

    camera_.x = 0;
    level_.placeSelectMap(map, 5 * 16, 0, camera_, false);
    EXPECT_EQ(row(0), (Row{0, A, 0, 0, 0, A})); // column 1 from above
    EXPECT_EQ(row(1), (Row{0, B, 0, 0, 0, B}));
    // Tiles keep their low 16 bits.
    level_.placeSelectMap(gridOf(1, 1, {0x12345}), 0, 0, camera_, true);
    EXPECT_EQ(tile(0, 0), 0x2345);
    EXPECT_EQ(level_.getSpecial(0, 0), 0);
}

TEST_F(LevelEdit, UndoAndRedoWalkTheHistoryWithinTheStoresBound) {
    const auto original = snapshot();
    EXPECT_FALSE(level_.restoreUndo());
    EXPECT_EQ(snapshot(), original);

    level_.addUndo();
    level_.setSpecial(0, 0, 1);
    const auto first = snapshot();
    level_.addUndo();
    level_.setSpecial(1, 0, 2);
    const auto second = snapshot();
    level_.modified = false;

    EXPECT_TRUE(level_.restoreUndo());
    EXPECT_EQ(snapshot(), first);
    EXPECT_TRUE(level_.restoreUndo());
    EXPECT_EQ(snapshot(), original);
    EXPECT_FALSE(level_.restoreUndo());
    EXPECT_FALSE(level_.modified);

    EXPECT_TRUE(level_.restoreRedo());
    EXPECT_TRUE(level_.restoreRedo());
    EXPECT_EQ(snapshot(), second);
    EXPECT_FALSE(level_.canRedo());
    // A new step after an undo forgets what could have been redone.
    EXPECT_TRUE(level_.restoreUndo());
    level_.addUndo();
    EXPECT_FALSE(level_.canRedo());
    EXPECT_FALSE(level_.restoreRedo());
    EXPECT_EQ(snapshot(), first);
    // The oldest snapshot gives way when the store is full.
    undoInit();
    undoSetMax(2);
    for (std::uint8_t id = 1; id <= 3; ++id) {
        level_.addUndo();
        level_.setSpecial(0, 0, id);
    }
    EXPECT_TRUE(level_.restoreUndo());
    EXPECT_TRUE(level_.restoreUndo());
    EXPECT_EQ(level_.getSpecial(0, 0), 1);
    EXPECT_FALSE(level_.restoreUndo());
    EXPECT_EQ(level_.getSpecial(0, 0), 1);
}

} // namespace
} // namespace marvek::test
