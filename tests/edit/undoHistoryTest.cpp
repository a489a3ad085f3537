#include "data/UndoHistory.h"
#include "data/clsLevel.h"
#include "native/marvek.h"

#include <gtest/gtest.h>

#include <string>

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

} // namespace
} // namespace marvek::test
