#include "EditorFixture.h"

#include "app/autosave.h"
#include "data/cellRange.h"
#include "support/world.h"

namespace marvek::test {
namespace {

// A timer that never fires by itself.
class IdleTimer final : public SingleShotTimer {
public:
    void start(std::chrono::milliseconds /*delay*/) override {}
    void stop() override {}
    bool isActive() const override { return false; }
    void onTimeout(std::function<void()> /*handler*/) override {}
};

std::unique_ptr<LevelDocument> documentOf(clsLevel level) {
    auto opened = std::make_unique<OpenedLevel>();
    opened->level = std::move(level);
    return std::make_unique<LevelDocument>(std::move(opened), "world1", fs::path(),
                                           std::make_unique<IdleTimer>());
}

void paint(LevelDocument& document, std::int32_t x, std::int32_t y, std::int16_t tile) {
    document.edit("Paint", {x, y, x, y}, [=](clsLevel& level) { level.cellAt(x, y).tile = tile; });
}

TEST(LevelDocument, TwoLevelsOfDifferentSizesKeepHistoriesOfTheirOwn) {
    auto wide = documentOf(sampleLevel(300, 84));
    auto small = documentOf(sampleLevel(20, 10));
    const std::int16_t wideTile = wide->level().cellAt(299, 83).tile;
    const std::int16_t smallTile = small->level().cellAt(0, 0).tile;
    paint(*wide, 299, 83, 900);
    paint(*small, 0, 0, 901);
    paint(*small, 19, 9, 902);

    ASSERT_TRUE(wide->undo());
    EXPECT_EQ(wide->level().cellAt(299, 83).tile, wideTile);
    EXPECT_EQ(small->level().cellAt(0, 0).tile, 901) << "the other level is untouched";
    EXPECT_FALSE(wide->undo()) << "the other's steps are not this one's";
    ASSERT_TRUE(small->undo());
    ASSERT_TRUE(small->undo());
    EXPECT_EQ(small->level().cellAt(0, 0).tile, smallTile);
    EXPECT_TRUE(wide->redo());
    EXPECT_EQ(wide->level().cellAt(299, 83).tile, 900);
    EXPECT_EQ(small->history().nextRedo(), "Paint");
}

TEST(LevelDocument, ModifiedFollowsTheStepTheFileHolds) {
    TempDir folder;
    clsLevel level = sampleLevel();
    level.fileName = (folder.path() / "L1").string();
    level.saveToFile(level.fileName, clsPalette());
    auto document = documentOf(std::move(level));
    std::vector<bool> told;
    QObject::connect(document.get(), &LevelDocument::modifiedChanged,
                     [&told](bool modified) { told.push_back(modified); });

    paint(*document, 1, 1, 5);
    EXPECT_TRUE(document->modified());
    document->undo();
    EXPECT_FALSE(document->modified()) << "back at the file's step";
    document->redo();
    document->save();
    paint(*document, 2, 2, 6);
    document->undo();
    EXPECT_FALSE(document->modified()) << "the saved step is the one after the first paint";
    document->undo();
    EXPECT_TRUE(document->modified());
    paint(*document, 3, 3, 7);
    while (document->undo()) {
    }
    EXPECT_TRUE(document->modified()) << "the saved step went with the redo side";
    EXPECT_EQ(told, (std::vector<bool>{true, false, true, false, true, false, true}));

    // A stroke's later cells keep one step, and move off the saved state.
    document->save();
    document->continueEdit({4, 4, 4, 4}, [](clsLevel& edited) { edited.cellAt(4, 4).tile = 8; });
    EXPECT_TRUE(document->modified());

    // The bound drops the oldest steps: the saved state lies beyond them.
    document->setUndoMaximum(1);
    document->save();
    paint(*document, 5, 5, 9);
    paint(*document, 6, 6, 9);
    document->undo();
    EXPECT_TRUE(document->modified());
    EXPECT_FALSE(document->undo());
}

// Collects what a document signals, and fails on any range that misses a
// changed cell.
class Listener {
public:
    explicit Listener(LevelDocument& document) {
        QObject::connect(&document, &LevelDocument::cellsChanged,
                         [this](const CellRange& range) { ranges.push_back(range); });
        document.setRangeFault([](const std::string& step) {
            ADD_FAILURE() << "\"" << step << "\" signalled too few cells";
        });
    }

    std::vector<CellRange> ranges;
};

void setCell(LevelDocument& document, bool first, std::int32_t x, std::int32_t y, Cell cell) {
    const auto change = [=](clsLevel& level) { level.cellAt(x, y) = cell; };
    if (first) {
        document.edit("Paint", {x, y, x, y}, change, true);
    } else {
        document.continueEdit({x, y, x, y}, change);
    }
}

TEST(LevelDocument, UndoRedoAndHistoryJumpsSignalTheCellsThatDiffer) {
    auto document = documentOf(sampleLevel(300, 84));
    Listener listener(*document);
    const std::vector<Cell> opened(document->level().cells().begin(),
                                   document->level().cells().end());
    // A fill that names more cells than it changes, then a stroke over blocks.
    document->edit("Fill", {0, 0, 99, 50},
                   [](clsLevel& level) { level.cellAt(20, 21).tile = 1000; });
    setCell(*document, true, 40, 12, {1001, 0, 0});
    setCell(*document, false, 299, 83, {1002, 0, 0});
    setCell(*document, false, 70, 5, {1003, 0, 0});
    const std::vector<Cell> edited(document->level().cells().begin(),
                                   document->level().cells().end());

    std::vector<Cell> before = edited;
    ASSERT_TRUE(document->undo());
    EXPECT_EQ(listener.ranges.back(), (CellRange{40, 5, 299, 83}));
    EXPECT_EQ(listener.ranges.back(), changedCells(before, document->level()));
    ASSERT_TRUE(document->undo());
    EXPECT_EQ(listener.ranges.back(), (CellRange{20, 21, 20, 21})) << "not the range it named";
    EXPECT_EQ(changedCells(opened, document->level()), std::nullopt);

    const std::size_t told = listener.ranges.size();
    document->goToEntry(2);
    EXPECT_EQ(listener.ranges.size(), told + 1) << "one signal for the whole jump";
    EXPECT_EQ(listener.ranges.back(), changedCells(opened, document->level()));
    EXPECT_EQ(changedCells(edited, document->level()), std::nullopt);
    document->goToEntry(1);
    EXPECT_EQ(listener.ranges.back(), (CellRange{40, 5, 299, 83}));
    ASSERT_TRUE(document->redo());
    EXPECT_EQ(changedCells(edited, document->level()), std::nullopt);

    // A step that changed nothing signals nothing when taken back.
    document->edit("Paint", {1, 1, 1, 1}, [](clsLevel& /*level*/) {});
    const std::size_t quiet = listener.ranges.size();
    ASSERT_TRUE(document->undo());
    EXPECT_EQ(listener.ranges.size(), quiet);
}

TEST(LevelDocument, AStrokeIsNamedByWhatItDidToTheSpecialsBeforeIt) {
    clsLevel level = sampleLevel(300, 84);
    level.cellAt(10, 10).special = 5;
    level.cellAt(50, 40).special = 63;
    level.cellAt(11, 10).special = 0;
    auto document = documentOf(std::move(level));
    Listener listener(*document);

    setCell(*document, true, 10, 10, {1, 7, 0});
    EXPECT_EQ(document->history().nextUndo(), "Paint, 1 special replaced");
    setCell(*document, false, 10, 10, {1, 9, 0});
    setCell(*document, false, 11, 10, {1, 9, 0});
    EXPECT_EQ(document->history().nextUndo(), "Paint, 1 special replaced")
        << "a cell painted twice counts once; an empty one not at all";
    setCell(*document, false, 50, 40, {1, 0, 0});
    setCell(*document, false, 10, 10, {1, 5, 0});
    EXPECT_EQ(document->history().nextUndo(), "Paint, 1 special removed")
        << "the first cell is back as it was";
    ASSERT_TRUE(document->undo());
    EXPECT_EQ(document->level().cellAt(50, 40).special, 63);
    EXPECT_EQ(document->history().nextRedo(), "Paint, 1 special removed");
}

} // namespace
} // namespace marvek::test
