#include "bitmapFiles.h"

#include "native/handles.h"
#include "native/marvek.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace marvek {
namespace {

UniqueFont loadFont(std::int32_t width, std::int32_t height) {
    const std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height), 0xFFFFFF);
    const testing::TempFile file(testing::encodeBitmap(width, height, 24, false, pixels));
    return UniqueFont(fontLoadFromBitmap(file.path().c_str()));
}

TEST(FontTest, CellsAreASixteenthOfTheImage) {
    const UniqueFont font = loadFont(128, 256);
    ASSERT_TRUE(font);
    EXPECT_EQ(fontGetCharWidth(font.get()), 8);
    EXPECT_EQ(fontGetCharHeight(font.get()), 16);
    EXPECT_EQ(surfaceGetWidth(fontGetSurface(font.get())), 128);
}

TEST(FontTest, RefusesImagesThatAreNotAGrid) {
    EXPECT_FALSE(loadFont(100, 256));
    EXPECT_FALSE(loadFont(128, 8));
    EXPECT_EQ(fontLoadFromBitmap("/nonexistent/font.bmp"), 0);
}

TEST(FontTest, DestroyingTheFontFreesItsSurfaceAndStaleHandlesAreHarmless) {
    UniqueFont font = loadFont(16, 16);
    const std::int32_t handle = font.get();
    const std::int32_t glyphs = fontGetSurface(handle);
    font.reset();
    EXPECT_EQ(surfaceGetWidth(glyphs), 0);
    EXPECT_EQ(fontGetCharWidth(handle), 0);
    EXPECT_EQ(fontGetSurface(handle), 0);
    fontDestroy(handle);
    fontDestroy(0);
}

class UndoStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        undoDestroy();
        undoInit();
        undoSetMax(3);
    }
    void TearDown() override { undoDestroy(); }

    std::array<std::int32_t, 2> cells{};

    void edit(std::int32_t value) {
        undoAdd(cells.data(), sizeof cells);
        cells = {value, -value};
    }
};

TEST_F(UndoStoreTest, UndoAndRedoWalkTheHistory) {
    edit(1);
    edit(2);
    undoDoUndo(cells.data());
    EXPECT_EQ(cells[0], 1);
    undoDoUndo(cells.data());
    EXPECT_EQ(cells[0], 0);
    EXPECT_EQ(undoCount(), 0);
    EXPECT_EQ(redoCount(), 2);
    undoDoUndo(cells.data());
    EXPECT_EQ(cells[0], 0) << "nothing left to undo";
    undoDoRedo(cells.data());
    undoDoRedo(cells.data());
    EXPECT_EQ(cells, (std::array<std::int32_t, 2>{2, -2}));
    EXPECT_EQ(undoCount(), 2);
    EXPECT_EQ(redoCount(), 0);
}

TEST_F(UndoStoreTest, OldestSnapshotGivesWayAndAddingForgetsRedo) {
    for (std::int32_t value = 1; value <= 5; ++value) {
        edit(value);
    }
    EXPECT_EQ(undoCount(), 3);
    for (int i = 0; i < 5; ++i) {
        undoDoUndo(cells.data());
    }
    EXPECT_EQ(cells[0], 2) << "the states before edits 3, 4 and 5 were kept";
    undoDoRedo(cells.data());
    edit(9);
    EXPECT_EQ(redoCount(), 0);
    undoSetMax(1);
    EXPECT_EQ(undoCount(), 1);
    undoDoUndo(cells.data());
    EXPECT_EQ(cells[0], 3);
}

TEST_F(UndoStoreTest, InitEmptiesButKeepsTheMaximum) {
    edit(1);
    undoDestroy();
    undoInit();
    EXPECT_EQ(undoCount(), 0);
    for (std::int32_t value = 1; value <= 5; ++value) {
        edit(value);
    }
    EXPECT_EQ(undoCount(), 3);
    undoAdd(nullptr, 8);
    undoDoUndo(nullptr);
    EXPECT_EQ(undoCount(), 3);
}

} // namespace
} // namespace marvek
