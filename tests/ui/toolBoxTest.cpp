// The level view's tools on their own: which one a press reaches, and the
// Shift-copy and Ctrl-fill drags from press to release.
#include "ui/ToolBox.h"
#include "data/clsLevel.h"
#include "ui/EditingState.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace marvek::test {
namespace {

constexpr int shift = 1;
constexpr int ctrl = 2;

// A small level and a context that keeps what the tools asked for.
class ToolBoxTest : public ::testing::Test {
protected:
    ToolBoxTest() {
        level_.width = 8;
        level_.height = 5;
        level_.resizeCells();
        for (std::int32_t y = 0; y < level_.height; ++y) {
            for (std::int32_t x = 0; x < level_.width; ++x) {
                level_.cellAt(x, y).tile = static_cast<std::int16_t>(10 * y + x);
            }
        }
        level_.setSpecial(3, 2, 7);
    }

    ToolContext context(int mask, std::int32_t x, std::int32_t y) {
        return ToolContext{
            level_,
            editing_.mode,
            mask,
            QPoint(x, y),
            BrushPattern{editing_.brush, nullptr, nullptr},
            nullptr,
            false,
            [this](const std::string& name, const CellRange& range, const LevelChange& change) {
                steps_.push_back(name);
                ranges_.push_back(range);
                change(level_);
            },
            [](const CellRange&, const LevelChange&) {},
            [](std::optional<clsRectangle>) {},
            [this](TileGrid tiles) { copied_ = std::move(tiles); },
            [this](std::int32_t id) { picked_ = id; },
        };
    }

    // Press, drag and release of one tool, as the view hands them on.
    LevelTool& dragWith(int mask, QPoint from, QPoint to) {
        LevelTool& tool = tools_.forPress(mask, false);
        ToolContext press = context(mask, from.x(), from.y());
        EXPECT_TRUE(tool.press(press));
        ToolContext move = context(mask, to.x(), to.y());
        tool.drag(move);
        tool.release(move);
        return tool;
    }

    clsLevel level_;
    EditingState editing_;
    ToolBox tools_{editing_};
    std::vector<std::string> steps_;
    std::vector<CellRange> ranges_;
    std::optional<TileGrid> copied_;
    std::optional<std::int32_t> picked_;
};

TEST_F(ToolBoxTest, ShiftAndCtrlCallUpTheirToolsOverTheChosenOne) {
    for (const EditTool chosen : {EditTool::brush, EditTool::bucketFill, EditTool::select}) {
        editing_.tool = chosen;
        const QString name = tools_.chosen().name();
        EXPECT_EQ(tools_.forPress(0, false).name(), name);
        EXPECT_EQ(tools_.forPress(shift, false).name(), "Copy");
        EXPECT_EQ(tools_.forPress(shift, true).name(), "Copy");
        EXPECT_EQ(tools_.forPress(ctrl, false).name(), "Fill");
        // The mask is compared whole, and Ctrl during another drag is a plain press.
        EXPECT_EQ(tools_.forPress(shift | ctrl, false).name(), name);
        EXPECT_EQ(tools_.forPress(ctrl, true).name(), name);
    }
    EXPECT_EQ(tools_.dragNumber(tools_.forPress(shift, false)), 4);
    EXPECT_EQ(tools_.dragNumber(tools_.forPress(ctrl, false)), 6);
    EXPECT_EQ(tools_.dragNumber(tools_.chosen()), 3);
    EXPECT_TRUE(tools_.forPress(ctrl, false).ownsModifiers());
    EXPECT_FALSE(tools_.chosen().ownsModifiers());
}

TEST_F(ToolBoxTest, ACopyDragOutlinesItsAreaAndMakesTheTilesTheBrush) {
    LevelTool& copy = tools_.forPress(shift, false);
    ToolContext press = context(shift, 5, 3);
    ASSERT_TRUE(copy.press(press));
    ASSERT_NE(copy.draggedArea(), nullptr);
    ToolContext move = context(shift, 2, 1);
    copy.drag(move);
    EXPECT_EQ(copy.draggedArea()->width, -3) << "not normalised while dragged";
    copy.release(move);
    EXPECT_EQ(copy.draggedArea(), nullptr);
    ASSERT_TRUE(copied_.has_value());
    ASSERT_EQ(copied_->width(), 4);
    ASSERT_EQ(copied_->height(), 3);
    EXPECT_EQ(copied_->at(0, 0), 12);
    EXPECT_EQ(copied_->at(3, 2), 35);
    EXPECT_TRUE(steps_.empty()) << "the level stays as it was";

    // Cancelled, it neither outlines nor copies.
    copied_.reset();
    ASSERT_TRUE(copy.press(press));
    copy.cancel();
    EXPECT_EQ(copy.draggedArea(), nullptr);
    EXPECT_FALSE(copied_.has_value());
}

TEST_F(ToolBoxTest, InSpecialsModeShiftPicksTheSpecialUnderThePointer) {
    editing_.mode = editingMode::specials;
    LevelTool& copy = tools_.forPress(shift, false);
    EXPECT_FALSE(copy.dragsIn(editingMode::specials));
    ToolContext onSpecial = context(shift, 3, 2);
    EXPECT_FALSE(copy.press(onSpecial)) << "a pick begins no drag";
    EXPECT_EQ(picked_, 7);
    ToolContext offMap = context(shift, 30, 2);
    EXPECT_FALSE(copy.press(offMap));
    EXPECT_EQ(picked_, 0);
    EXPECT_EQ(copy.draggedArea(), nullptr);
}

TEST_F(ToolBoxTest, ACtrlDragFillsTheNormalisedRectangleAsOneNamedStep) {
    editing_.brush = EditingState::singleTile(99);
    dragWith(ctrl, {6, 4}, {4, 2});
    ASSERT_EQ(steps_, std::vector<std::string>{"Fill"});
    EXPECT_EQ(ranges_.front(), (CellRange{4, 2, 6, 4}));
    for (std::int32_t y = 0; y < level_.height; ++y) {
        for (std::int32_t x = 0; x < level_.width; ++x) {
            const bool inside = x >= 4 && x <= 6 && y >= 2;
            EXPECT_EQ(level_.cellAt(x, y).tile, inside ? 99 : 10 * y + x) << x << "," << y;
        }
    }

    // In Specials mode without a chosen special nothing is filled.
    editing_.mode = editingMode::specials;
    dragWith(ctrl, {0, 0}, {1, 1});
    EXPECT_EQ(steps_.size(), 1U);
}

TEST(EditingStateTest, TheBrushALevelOpensWithNamesNoTile) {
    EditingState editing;
    EXPECT_FALSE(editing.chosenTile().has_value());
    // Tile 1 chosen again elsewhere than the palette's corner is a choice.
    editing.paletteSelectionVisible = false;
    EXPECT_EQ(editing.chosenTile(), 1);

    TileGrid copied(2, 1);
    copied.at(0, 0) = 5;
    copied.at(1, 0) = 6;
    editing.paletteSelectionVisible = true;
    editing.useCells(CellBlock(1, 1));
    editing.useTiles(copied);
    EXPECT_EQ(editing.chosenTile(), 5);
    EXPECT_FALSE(editing.paletteSelectionVisible);
    EXPECT_FALSE(editing.brushCells.has_value()) << "a brush of tiles carries no cells";

    CellBlock pasted(1, 2);
    pasted.at(0, 1) = Cell{8, 3, 0};
    editing.useCells(pasted);
    EXPECT_EQ(editing.brush.height(), 2);
    EXPECT_EQ(editing.brush.at(0, 1), 8);
    ASSERT_TRUE(editing.brushCells.has_value());
    EXPECT_EQ(*editing.brushCells, pasted);
}

} // namespace
} // namespace marvek::test
