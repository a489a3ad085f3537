#include "data/UndoHistory.h"
#include "data/cellRange.h"
#include "data/clsLevel.h"
#include "native/marvek.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace marvek::test {
namespace {

clsLevel blankLevel(std::int32_t width, std::int32_t height) {
    clsLevel level;
    level.width = width;
    level.height = height;
    level.resizeCells();
    return level;
}

// One named step that writes tile into every cell.
void paintAll(UndoHistory& history, clsLevel& level, std::int16_t tile, const std::string& name) {
    history.record(level, name);
    for (Cell& cell : level.cells()) {
        cell.tile = tile;
    }
}

bool allTiles(const clsLevel& level, std::int16_t tile) {
    for (const Cell& cell : level.cells()) {
        if (cell.tile != tile) {
            return false;
        }
    }
    return true;
}

TEST(UndoHistory, TwoHistoriesOfLevelsOfDifferentSizesNeverMeet) {
    clsLevel small = blankLevel(3, 2);
    clsLevel large = blankLevel(40, 30);
    UndoHistory smallHistory;
    UndoHistory largeHistory;
    paintAll(largeHistory, large, 5, "Fill");
    paintAll(smallHistory, small, 1, "Paint");
    paintAll(largeHistory, large, 6, "Fill");
    paintAll(smallHistory, small, 2, "Paint");

    EXPECT_EQ(largeHistory.undo(large), "Fill");
    EXPECT_TRUE(allTiles(large, 5));
    EXPECT_TRUE(allTiles(small, 2)) << "the other level is left alone";
    EXPECT_EQ(smallHistory.undo(small), "Paint");
    EXPECT_EQ(smallHistory.undo(small), "Paint");
    EXPECT_TRUE(allTiles(small, 0));
    EXPECT_TRUE(allTiles(large, 5));
    EXPECT_EQ(largeHistory.undo(large), "Fill");
    EXPECT_TRUE(allTiles(large, 0));
    EXPECT_EQ(smallHistory.redo(small), "Paint");
    EXPECT_TRUE(allTiles(small, 1));
    EXPECT_EQ(largeHistory.nextRedo(), "Fill");

    // The C interface's store is another one again.
    undoInit();
    EXPECT_EQ(undoCount(), 0);
    EXPECT_EQ(largeHistory.redo(large), "Fill");
    EXPECT_TRUE(allTiles(large, 5));

    // A grid of another size than the step's is refused, not overrun.
    EXPECT_EQ(largeHistory.undo(small), "");
    EXPECT_TRUE(allTiles(small, 1));
    EXPECT_EQ(largeHistory.nextUndo(), "Fill");
}

TEST(UndoHistory, TheSavedStepComesBackByUndoAndRedoOnly) {
    clsLevel level = blankLevel(4, 4);
    UndoHistory history;
    EXPECT_TRUE(history.atSavedStep()) << "a new history is the level as read";
    paintAll(history, level, 1, "Paint");
    EXPECT_FALSE(history.atSavedStep());
    history.undo(level);
    EXPECT_TRUE(history.atSavedStep());
    history.redo(level);
    history.markSaved();
    paintAll(history, level, 2, "Paint");
    paintAll(history, level, 3, "Paint");
    EXPECT_FALSE(history.atSavedStep());
    history.undo(level);
    history.undo(level);
    EXPECT_TRUE(history.atSavedStep()) << "back at the step saved";
    history.undo(level);
    EXPECT_FALSE(history.atSavedStep());
    history.redo(level);
    EXPECT_TRUE(history.atSavedStep());

    // Another step in place of the saved one's redo: that state is gone.
    history.undo(level);
    paintAll(history, level, 9, "Paint");
    history.undo(level);
    EXPECT_FALSE(history.atSavedStep());
    history.redo(level);
    EXPECT_FALSE(history.atSavedStep());

    // A bound that drops the saved state's step: it never returns.
    history.clear();
    history.setMaximum(2);
    paintAll(history, level, 1, "Paint");
    paintAll(history, level, 2, "Paint");
    paintAll(history, level, 3, "Paint");
    while (!history.undo(level).empty()) {
        EXPECT_FALSE(history.atSavedStep());
    }
    EXPECT_TRUE(allTiles(level, 1));
    EXPECT_TRUE(history.droppedSteps());
}

// A level's grid with its size, to compare whole states.
struct Grid {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<Cell> cells;

    bool operator==(const Grid&) const = default;
};

Grid gridOf(const clsLevel& level) {
    return {level.width, level.height, {level.cells().begin(), level.cells().end()}};
}

// No two neighbouring cells alike, so a misplaced block shows.
clsLevel patternedLevel(std::int32_t width, std::int32_t height, std::int16_t seed) {
    clsLevel level = blankLevel(width, height);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            level.cellAt(x, y) = {static_cast<std::int16_t>(seed + x + y * width),
                                  static_cast<std::uint8_t>((x * 7 + y * 3 + seed) % 5), 0};
        }
    }
    return level;
}

// Writes tile into the cells of range that the level holds, as a step
// that names the range first.
void paintRange(UndoHistory& history, clsLevel& level, const CellRange& range, std::int16_t tile) {
    history.keep(level, range);
    for (std::int32_t y = std::max(range.top, 0); y <= std::min(range.bottom, level.height - 1);
         ++y) {
        for (std::int32_t x = std::max(range.left, 0); x <= std::min(range.right, level.width - 1);
             ++x) {
            level.cellAt(x, y).tile = tile;
        }
    }
}

void blockStep(UndoHistory& history, clsLevel& level, const std::string& name,
               const CellRange& range, std::int16_t tile) {
    history.begin(level, name);
    paintRange(history, level, range, tile);
}

TEST(UndoHistory, MixedStepsTakeTheGridBackExactly) {
    // 70 x 45 leaves partial blocks at the right and bottom edges.
    clsLevel level = patternedLevel(70, 45, 3);
    UndoHistory history;
    std::vector<Grid> states{gridOf(level)};
    const auto done = [&] { states.push_back(gridOf(level)); };

    blockStep(history, level, "Paint", {69, 44, 69, 44}, 900);
    done();
    // A stroke over several blocks, one cell painted twice, one past the edge.
    history.begin(level, "Stroke");
    for (const auto& [x, y] : std::vector<std::pair<std::int32_t, std::int32_t>>{
             {5, 5}, {40, 5}, {66, 40}, {31, 31}, {32, 32}, {31, 31}, {75, 50}}) {
        paintRange(history, level, {x, y, x, y}, static_cast<std::int16_t>(901 + x));
    }
    done();
    blockStep(history, level, "Fill", {60, -3, 80, 44}, 902);
    done();
    blockStep(history, level, "Replace All", wholeLevel(level), 903);
    done();
    history.record(level, "Import");
    level = patternedLevel(70, 45, 11);
    done();
    history.record(level, "Resize");
    level = patternedLevel(33, 70, 17);
    done();
    blockStep(history, level, "Paint", {32, 69, 32, 69}, 904);
    done();
    blockStep(history, level, "Paint", {32, 69, 32, 69}, 904);
    done();

    const auto expectState = [&](std::size_t index, const Grid& before) {
        ASSERT_EQ(history.applied(), index);
        EXPECT_TRUE(gridOf(level) == states[index]) << "state " << index;
        EXPECT_EQ(history.lastChanged(), changedCells(before.cells, level)) << "state " << index;
    };
    while (history.applied() > 0) {
        const Grid before = gridOf(level);
        ASSERT_FALSE(history.undo(level).empty());
        expectState(history.applied(), before);
    }
    EXPECT_TRUE(history.undo(level).empty());
    while (history.applied() < states.size() - 1) {
        const Grid before = gridOf(level);
        ASSERT_FALSE(history.redo(level).empty());
        expectState(history.applied(), before);
    }
    // Jumps as a History entry makes them, each landing on its own state.
    for (const std::size_t target : {3U, 6U, 1U, 8U, 0U, 5U}) {
        while (history.applied() > target && !history.undo(level).empty()) {
        }
        while (history.applied() < target && !history.redo(level).empty()) {
        }
        ASSERT_EQ(history.applied(), target);
        EXPECT_TRUE(gridOf(level) == states[target]) << "jump to " << target;
    }

    // A step of blocks never writes into a grid of another size.
    clsLevel other = patternedLevel(20, 10, 5);
    history.redo(level);
    history.redo(level);
    ASSERT_EQ(history.applied(), 7U) << "the next undo is a step of blocks on 33 x 70";
    ASSERT_EQ(history.nextUndo(), "Paint");
    EXPECT_EQ(history.undo(other), "");
    EXPECT_TRUE(gridOf(other) == gridOf(patternedLevel(20, 10, 5)));
}

TEST(UndoHistory, TheBoundDropsTheOldestStepsOfEachSide) {
    clsLevel level = patternedLevel(40, 40, 1);
    UndoHistory history;
    history.setMaximum(3);
    std::vector<Grid> states{gridOf(level)};
    for (std::int16_t step = 0; step < 5; ++step) {
        blockStep(history, level, "Paint " + std::to_string(step), {step * 8, 0, step * 8, 39},
                  step);
        states.push_back(gridOf(level));
    }
    EXPECT_EQ(history.steps(), (std::vector<std::string>{"Paint 2", "Paint 3", "Paint 4"}));
    EXPECT_TRUE(history.droppedSteps());
    while (!history.undo(level).empty()) {
    }
    EXPECT_TRUE(gridOf(level) == states[2]) << "back as far as the oldest kept step";

    // A smaller bound keeps the newest of the redo side, the next one first.
    history.setMaximum(2);
    EXPECT_EQ(history.nextRedo(), "Paint 2");
    EXPECT_EQ(history.size(), 2U);
    EXPECT_EQ(history.redo(level), "Paint 2");
    EXPECT_EQ(history.redo(level), "Paint 3");
    EXPECT_TRUE(history.redo(level).empty());
    EXPECT_TRUE(gridOf(level) == states[4]);

    // No steps at all: edits go ahead with nothing to take back.
    history.setMaximum(0);
    blockStep(history, level, "Paint", {0, 0, 0, 0}, 77);
    EXPECT_TRUE(history.undo(level).empty());
    EXPECT_EQ(level.cellAt(0, 0).tile, 77);
}

TEST(UndoHistory, StepsKeepWhatTheEditTouchedAndCountItsSpecials) {
    clsLevel level = blankLevel(1024, 1024);
    UndoHistory history;
    history.setMaximum(64);
    for (std::int16_t step = 0; step < 64; ++step) {
        blockStep(history, level, "Paint", {500, 500, 500, 500}, step);
    }
    const std::size_t block = std::size_t(CellStep::blockSide) * CellStep::blockSide * sizeof(Cell);
    EXPECT_EQ(history.bytes(), 64 * block) << "one block each, not the whole grid";

    // A stroke over a block corner keeps each of its four blocks once.
    level.cellAt(31, 31).special = 4;
    level.cellAt(32, 32).special = 5;
    history.begin(level, "Stroke");
    history.keep(level, {31, 31, 32, 32});
    level.cellAt(31, 31).special = 0;
    level.cellAt(32, 32).special = 6;
    history.keep(level, {33, 33, 33, 33});
    level.cellAt(33, 33).special = 1;
    EXPECT_EQ(history.bytes(), (63 + 4) * block) << "the oldest step gave way";
    const SpecialChanges changes = history.specialChanges(level, {0, 0, 63, 63});
    EXPECT_EQ(changes.removed, 1);
    EXPECT_EQ(changes.replaced, 1) << "a special put on an empty cell is neither";
    EXPECT_EQ(history.specialChanges(level, {32, 32, 32, 32}).removed, 0);
    EXPECT_EQ(history.specialChanges(level, {32, 32, 32, 32}).replaced, 1);
}

} // namespace
} // namespace marvek::test
