#include "EditorFixture.h"

#include "app/autosave.h"
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

} // namespace
} // namespace marvek::test
