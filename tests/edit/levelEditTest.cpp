#include "data/clsLevel.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>
#include <vector>

namespace marvek {
namespace {

constexpr std::int16_t A = 11;
constexpr std::int16_t B = 22;
constexpr std::uint8_t defaultOfA = 7;

clsRectangle rectangle(std::int32_t left, std::int32_t top, std::int32_t width,
                       std::int32_t height) {
    clsRectangle r;
    r.left = left;
    r.top = top;
    r.width = width;
    r.height = height;
    return r;
}

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

    std::vector<Cell> snapshot() const { return {level_.cells().begin(), level_.cells().end()}; }

    static bool same(const std::vector<Cell>& a, const std::vector<Cell>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](Cell x, Cell y) {
            return x.tile == y.tile && x.special == y.special;
        });
    }

    clsLevel level_;
    clsCamera camera_;
};

using Row = std::vector<std::int16_t>;

TEST_F(LevelEdit, APatternRepeatsAcrossTheRectangle) {
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), rectangle(0, 1, 4, 0), false);
    EXPECT_EQ(row(1), (Row{A, B, A, B, A, 0}));
    EXPECT_EQ(row(0), (Row{0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(level_.modified);
}

TEST_F(LevelEdit, TheRectangleWalkAtEveryEdge) {
    const TileGrid columns = gridOf(1, 2, {A, B});
    // Rows above the map are skipped, yet the pattern still moves on.
    level_.fillTileRectangle(columns, rectangle(0, -1, 0, 2), false);
    EXPECT_EQ(tile(0, 0), B);
    EXPECT_EQ(tile(0, 1), A);

    // A rectangle that starts left of the map changes no cell.
    const auto before = snapshot();
    level_.fillTileRectangle(columns, rectangle(-1, 0, 3, 3), false);
    level_.fillSpecialRectangle(clsSpecial{}, rectangle(-1, 0, 3, 3));
    EXPECT_TRUE(same(snapshot(), before));

    // Right and bottom: the walk stops at the edge without wrapping.
    level_.fillTileRectangle(gridOf(1, 1, {B}), rectangle(4, 2, 5, 5), false);
    EXPECT_EQ(row(2), (Row{0, 0, 0, 0, B, B}));
    EXPECT_EQ(row(3), (Row{0, 0, 0, 0, B, B}));
}

TEST_F(LevelEdit, AutoPlaceBringsEachTilesDefaultSpecial) {
    level_.setSpecial(1, 0, 40);
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), rectangle(0, 0, 1, 0), false);
    EXPECT_EQ(level_.getSpecial(1, 0), 40);
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), rectangle(0, 0, 1, 0), true);
    EXPECT_EQ(level_.getSpecial(0, 0), defaultOfA);
    EXPECT_EQ(level_.getSpecial(1, 0), 0);
}

TEST_F(LevelEdit, SpecialsAndTheirRangeChecks) {
    clsSpecial special;
    special.Id = 256 + 44;
    level_.fillSpecialRectangle(special, rectangle(5, 3, 2, 2));
    EXPECT_EQ(level_.getSpecial(5, 3), 44);
    EXPECT_EQ(level_.getSpecial(4, 3), 0);
    EXPECT_THROW(level_.getSpecial(6, 0), std::out_of_range);
    EXPECT_THROW(level_.getSpecial(0, -1), std::out_of_range);
    EXPECT_THROW(level_.setSpecial(-1, 0, 1), std::out_of_range);
    EXPECT_EQ(level_.getDefaultSpecial(A), defaultOfA);
    EXPECT_EQ(level_.getDefaultSpecial(64), 0);
    EXPECT_EQ(level_.getDefaultSpecial(-1), 0);
}

TEST(TileGridTest, ChecksItsIndicesAndSize) {
    TileGrid grid(2, 3);
    grid.at(1, 2) = 5;
    EXPECT_EQ(std::as_const(grid).at(1, 2), 5);
    EXPECT_THROW(grid.at(2, 0), std::out_of_range);
    EXPECT_THROW(grid.at(0, -1), std::out_of_range);
    EXPECT_THROW(TileGrid(-1, 1), std::length_error);
    EXPECT_THROW(TileGrid(1 << 13, 1 << 12), std::length_error);
}

TEST_F(LevelEdit, GetTilesReadsZeroOutsideTheMap) {
    level_.fillTileRectangle(gridOf(2, 1, {A, B}), rectangle(0, 0, 5, 3), false);
    const TileGrid tiles = level_.getTiles(rectangle(4, -1, 2, 1));
    ASSERT_EQ(tiles.width(), 3);
    ASSERT_EQ(tiles.height(), 2);
    EXPECT_EQ(tiles.at(0, 0), 0);
    EXPECT_EQ(tiles.at(0, 1), A);
    EXPECT_EQ(tiles.at(1, 1), B);
    EXPECT_EQ(tiles.at(2, 1), 0);
    EXPECT_TRUE(level_.getTiles(rectangle(0, 0, -1, 0)).empty());
}

TEST_F(LevelEdit, TheSelectMapLandsOnTheCellUnderThePointer) {
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
}

TEST_F(LevelEdit, TheSelectMapSkipsOutsideCellsOneByOne) {
    const TileGrid map = gridOf(3, 2, {A, B, A, B, A, B});
    // A negative camera position divides toward zero: column -1, not -2.
    camera_.x = -20;
    level_.placeSelectMap(map, 0, 48, camera_, false);
    EXPECT_EQ(row(3), (Row{B, A, 0, 0, 0, 0}));

    camera_.x = 0;
    level_.placeSelectMap(map, 5 * 16, 0, camera_, false);
    EXPECT_EQ(row(0), (Row{0, 0, 0, 0, 0, A}));
    EXPECT_EQ(row(1), (Row{0, 0, 0, 0, 0, B}));

    // Tiles keep their low 16 bits.
    level_.placeSelectMap(gridOf(1, 1, {0x12345}), 0, 0, camera_, true);
    EXPECT_EQ(tile(0, 0), 0x2345);
    EXPECT_EQ(level_.getSpecial(0, 0), 0);
}

TEST_F(LevelEdit, UndoAndRedoWalkTheHistory) {
    const auto original = snapshot();
    EXPECT_FALSE(level_.restoreUndo());
    EXPECT_TRUE(same(snapshot(), original));

    level_.addUndo();
    level_.setSpecial(0, 0, 1);
    const auto first = snapshot();
    level_.addUndo();
    level_.setSpecial(1, 0, 2);
    const auto second = snapshot();
    level_.modified = false;

    EXPECT_TRUE(level_.restoreUndo());
    EXPECT_TRUE(same(snapshot(), first));
    EXPECT_TRUE(level_.restoreUndo());
    EXPECT_TRUE(same(snapshot(), original));
    EXPECT_FALSE(level_.restoreUndo());
    EXPECT_FALSE(level_.modified);

    EXPECT_TRUE(level_.restoreRedo());
    EXPECT_TRUE(level_.restoreRedo());
    EXPECT_TRUE(same(snapshot(), second));
    EXPECT_FALSE(level_.canRedo());

    // A new step after an undo forgets what could have been redone.
    EXPECT_TRUE(level_.restoreUndo());
    level_.addUndo();
    EXPECT_FALSE(level_.canRedo());
    EXPECT_FALSE(level_.restoreRedo());
    EXPECT_TRUE(same(snapshot(), first));
}

TEST_F(LevelEdit, TheOldestSnapshotGivesWayWhenTheStoreIsFull) {
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
} // namespace marvek
