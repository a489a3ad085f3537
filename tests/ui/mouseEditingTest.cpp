#include "EditorFixture.h"

#include "ui/PictureBox.h"

#include <QAction>
#include <QMouseEvent>
#include <QStatusBar>
#include <QTest>

#include <cstring>

namespace marvek::test {
namespace {

class MouseEditing : public EditorFixture {
protected:
    MouseEditing() {
        auto cursor = std::make_unique<ScriptedScreenCursor>();
        cursor_ = cursor.get();
        shared_->cursor = std::move(cursor);
    }

    ~MouseEditing() override {
        if (window_ == nullptr) {
            return;
        }
        // QTest remembers held buttons across tests.
        for (const auto button : {Qt::LeftButton, Qt::RightButton}) {
            if (QTestPrivate::qtestMouseButtons.testFlag(button)) {
                QTest::mouseRelease(&view(), button);
            }
        }
    }

    // Start-up with the usual settings but this move sensitivity.
    frmMain& start(int moveSensitivity = 10) {
        writeSettings(dataFolder().string());
        const auto bytes = readBytes(settingsFile());
        std::string text(bytes.begin(), bytes.end());
        const std::string usual = "moveSensitivity = 10;";
        text.replace(text.find(usual), usual.size(),
                     "moveSensitivity = " + std::to_string(moveSensitivity) + ";");
        writeText(settingsFile(), text);
        EXPECT_FALSE(startProgram(*shared_, *windows_).has_value());
        window_ = windows_->mainWindow();
        window_->resize(1280, 800);
        QApplication::processEvents();
        return *window_;
    }

    const clsLevel& level() const { return window_->openedLevel()->level; }
    PictureBox& view() const { return *window_->findChild<PictureBox*>("picLevel"); }
    PictureBox& palette() const { return *window_->findChild<PictureBox*>("picPalette"); }

    // The middle of a level cell in the zoomed view.
    QPoint cell(int x, int y) const {
        const clsCamera& camera = window_->levelCamera();
        return {PictureBox::border + (16 * x + 8 - camera.x) * 2,
                PictureBox::border + (16 * y + 8 - camera.y) * 2};
    }
    // The middle of a tile palette cell, or a row of the special palette.
    static QPoint paletteCell(int column, int row) {
        return {PictureBox::border + 16 * column + 8, PictureBox::border + 16 * row + 8};
    }

    std::vector<std::uint8_t> grid() const {
        std::vector<std::uint8_t> bytes(level().cellBytes());
        std::memcpy(bytes.data(), level().cells().data(), bytes.size());
        return bytes;
    }

    void drag(Qt::KeyboardModifiers modifiers, QPoint from, QPoint to) const {
        QTest::mousePress(&view(), Qt::LeftButton, modifiers, from);
        QTest::mouseMove(&view(), to);
        QTest::mouseRelease(&view(), Qt::LeftButton, modifiers, to);
    }

    // A move with no button held, which QTest only makes on a real screen.
    void hover(QPoint at) const {
        QMouseEvent move(QEvent::MouseMove, QPointF(at), view().mapToGlobal(QPointF(at)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&view(), &move);
    }

    void selectSpecial(std::int32_t id) const {
        const clsSpecialSet& set = window_->openedLevel()->specialSet;
        std::int32_t top = 0;
        for (std::int32_t i = 0; set.getSpecial(i).Id != id; ++i) {
            top = set.rowBottoms()[static_cast<std::size_t>(i)];
        }
        QTest::mouseClick(&palette(), Qt::LeftButton, {}, {40, PictureBox::border + top + 1});
        ASSERT_EQ(window_->selectedSpecial()->Id, id);
    }

    // Undo gives back the grid before the step, redo the grid after it.
    void expectUndoAndRedo(const std::vector<std::uint8_t>& before, const std::string& step) {
        const auto after = grid();
        EXPECT_EQ(window_->history().nextUndo(), step);
        EXPECT_EQ(action("itmEditUndo").text(), QString::fromStdString("&Undo " + step));
        window_->editUndo();
        EXPECT_EQ(grid(), before) << step;
        EXPECT_EQ(action("itmEditRedo").text(), QString::fromStdString("&Redo " + step));
        window_->editRedo();
        EXPECT_EQ(grid(), after) << step;
    }

    QAction& action(const char* name) const { return *window_->findChild<QAction*>(name); }

    ScriptedScreenCursor* cursor_ = nullptr;
    frmMain* window_ = nullptr;
};

TEST_F(MouseEditing, AClickPaintsTheBrushOnceAsOneStep) {
    start();
    const auto before = grid();
    ASSERT_NE(level().cellAt(3, 2).tile, 1);
    EXPECT_FALSE(action("itmEditUndo").isEnabled());
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(3, 2));
    EXPECT_EQ(level().cellAt(3, 2).tile, 1);
    EXPECT_EQ(window_->dragState(), 0);
    EXPECT_TRUE(window_->isWindowModified());
    expectUndoAndRedo(before, "Paint");
    window_->editUndo();
    EXPECT_EQ(window_->history().nextUndo(), "") << "one step only";
    EXPECT_FALSE(action("itmEditUndo").isEnabled());
}

TEST_F(MouseEditing, APaletteDragMakesTheBrushUpToColumnNineteenAndAStrokeIsOneStep) {
    start();
    QTest::mousePress(&palette(), Qt::LeftButton, {}, paletteCell(2, 1));
    QTest::mouseMove(&palette(), paletteCell(25, 2));
    EXPECT_EQ(window_->paletteSelection().width, 17);
    QTest::mouseRelease(&palette(), Qt::LeftButton, {}, paletteCell(25, 2));
    const TileGrid& brush = window_->brush();
    ASSERT_EQ(brush.width(), 18);
    ASSERT_EQ(brush.height(), 2);
    EXPECT_EQ(brush.at(0, 0), 22);
    EXPECT_EQ(brush.at(17, 1), 59);

    const auto before = grid();
    QTest::mousePress(&view(), Qt::LeftButton, {}, cell(1, 1));
    QTest::mouseMove(&view(), cell(2, 1));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, cell(2, 1));
    EXPECT_EQ(level().cellAt(1, 1).tile, 22);
    EXPECT_EQ(level().cellAt(2, 1).tile, 22);
    EXPECT_EQ(level().cellAt(19, 2).tile, 59);
    expectUndoAndRedo(before, "Paint");
}

TEST_F(MouseEditing, EveryTileOfAPartialLastPaletteRowCanBeChosenAndNoneBeyond) {
    start();
    const std::int32_t count = window_->openedLevel()->tileSet.count();
    const int lastRow = (count - 1) / 20;
    const int lastColumn = (count - 1) % 20;
    ASSERT_LT(lastColumn, 19) << "the sample tile set ends in a partial row";
    QTest::mouseClick(&palette(), Qt::LeftButton, {}, paletteCell(lastColumn, lastRow));
    ASSERT_EQ(window_->brush().width(), 1);
    EXPECT_EQ(window_->brush().at(0, 0), count - 1);
    QTest::mouseClick(&palette(), Qt::LeftButton, {}, paletteCell(0, lastRow));
    EXPECT_EQ(window_->brush().at(0, 0), lastRow * 20);

    // Past the last tile nothing starts.
    QTest::mouseClick(&palette(), Qt::LeftButton, {}, paletteCell(lastColumn + 1, lastRow));
    EXPECT_EQ(window_->brush().at(0, 0), lastRow * 20);
    EXPECT_EQ(window_->dragState(), 0);

    // A drag along the last row stops at its last tile.
    QTest::mousePress(&palette(), Qt::LeftButton, {}, paletteCell(1, lastRow));
    QTest::mouseMove(&palette(), paletteCell(19, lastRow));
    QTest::mouseRelease(&palette(), Qt::LeftButton, {}, paletteCell(19, lastRow));
    ASSERT_EQ(window_->brush().height(), 1);
    EXPECT_EQ(window_->brush().at(window_->brush().width() - 1, 0), count - 1);
}

TEST_F(MouseEditing, AShiftCopyTakesTheHighlightOffThePalette) {
    start();
    QTest::mouseClick(&palette(), Qt::LeftButton, {}, paletteCell(4, 0));
    EXPECT_TRUE(window_->paletteSelectionVisible());
    const QImage chosen = palette().image().copy();
    drag(Qt::ShiftModifier, cell(0, 0), cell(1, 0));
    EXPECT_FALSE(window_->paletteSelectionVisible());
    // The red tint over tile 4 is gone from what the palette shows.
    const QPoint tile4(16 * 4 + 8, 8);
    EXPECT_NE(palette().image().pixel(tile4), chosen.pixel(tile4));
    QTest::mouseClick(&palette(), Qt::LeftButton, {}, paletteCell(4, 0));
    EXPECT_EQ(palette().image().pixel(tile4), chosen.pixel(tile4));
}

TEST_F(MouseEditing, ShiftDragCopiesTilesUpToColumn299AndAShiftClickOneCell) {
    start();
    const auto before = grid();
    QTest::mousePress(&view(), Qt::LeftButton, Qt::ShiftModifier, cell(5, 3));
    QTest::mouseMove(&view(), {20000, cell(5, 6).y()});
    EXPECT_TRUE(window_->selectionVisible());
    EXPECT_EQ(window_->selection().width, 294);
    EXPECT_EQ(window_->selection().height, 3);
    QTest::mouseRelease(&view(), Qt::LeftButton, Qt::ShiftModifier, {20000, cell(5, 6).y()});
    EXPECT_FALSE(window_->selectionVisible());
    const TileGrid& brush = window_->brush();
    ASSERT_EQ(brush.width(), 295);
    ASSERT_EQ(brush.height(), 4);
    EXPECT_EQ(brush.at(0, 0), level().cellAt(5, 3).tile);
    EXPECT_EQ(brush.at(294, 3), level().cellAt(299, 6).tile);

    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ShiftModifier, cell(7, 2));
    ASSERT_EQ(window_->brush().width(), 1);
    ASSERT_EQ(window_->brush().height(), 1);
    EXPECT_EQ(window_->brush().at(0, 0), level().cellAt(7, 2).tile);
    EXPECT_EQ(grid(), before);
    EXPECT_FALSE(action("itmEditUndo").isEnabled());
}

TEST_F(MouseEditing, CtrlDragFillsTheRectangleWithTheSpecialAndACtrlClickOneCell) {
    start();
    QTest::keyClick(window_, Qt::Key_S);
    ASSERT_EQ(window_->mode(), frmMain::specialsMode);
    selectSpecial(4);
    const auto before = grid();
    drag(Qt::ControlModifier, cell(4, 3), cell(2, 2));
    for (int y = 1; y <= 4; ++y) {
        for (int x = 1; x <= 5; ++x) {
            const bool inside = x >= 2 && x <= 4 && y >= 2 && y <= 3;
            const std::uint8_t old =
                before[static_cast<std::size_t>(y * level().width + x) * 4 + 2];
            EXPECT_EQ(level().getSpecial(x, y), inside ? 4 : old) << x << "," << y;
        }
    }
    expectUndoAndRedo(before, "Fill Specials");

    const auto beforeClick = grid();
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ControlModifier, cell(8, 1));
    auto expected = beforeClick;
    expected[static_cast<std::size_t>(1 * level().width + 8) * 4 + 2] = 4;
    EXPECT_EQ(grid(), expected);
}

TEST_F(MouseEditing, CtrlDragInTilesModeRepeatsTheBrushAndPlacingSpecialsIsOneStep) {
    start();
    drag(Qt::ShiftModifier, cell(0, 0), cell(1, 0));
    const std::int32_t a = level().cellAt(0, 0).tile;
    const std::int32_t b = level().cellAt(1, 0).tile;
    auto before = grid();
    drag(Qt::ControlModifier, cell(3, 4), cell(7, 4));
    for (int x = 3; x <= 7; ++x) {
        EXPECT_EQ(level().cellAt(x, 4).tile, (x - 3) % 2 == 0 ? a : b) << x;
    }
    expectUndoAndRedo(before, "Fill");

    QTest::keyClick(window_, Qt::Key_S);
    selectSpecial(3);
    before = grid();
    QTest::mousePress(&view(), Qt::LeftButton, {}, cell(10, 5));
    QTest::mouseMove(&view(), cell(11, 5));
    QTest::mouseMove(&view(), cell(11, 6));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, cell(11, 6));
    EXPECT_EQ(level().getSpecial(10, 5), 3);
    EXPECT_EQ(level().getSpecial(11, 5), 3);
    EXPECT_EQ(level().getSpecial(11, 6), 3);
    expectUndoAndRedo(before, "Place Special");
}

TEST_F(MouseEditing, LettingGoOfTheKeyBeforeTheButtonStillCompletesACopyOrFill) {
    start();
    // Ctrl up mid-drag: the fill still lands where the button is let go.
    const std::int32_t brushTile = window_->brush().at(0, 0);
    QTest::mousePress(&view(), Qt::LeftButton, Qt::ControlModifier, cell(2, 2));
    QTest::keyRelease(window_, Qt::Key_Control);
    QTest::mouseMove(&view(), cell(4, 3));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, cell(4, 3));
    for (int y = 2; y <= 3; ++y) {
        for (int x = 2; x <= 4; ++x) {
            EXPECT_EQ(level().cellAt(x, y).tile, brushTile) << x << "," << y;
        }
    }
    EXPECT_EQ(window_->history().nextUndo(), "Fill");
    EXPECT_EQ(window_->dragState(), 0);
    EXPECT_FALSE(window_->selectionVisible());

    // Shift up mid-drag: the copy still becomes the brush.
    QTest::mousePress(&view(), Qt::LeftButton, Qt::ShiftModifier, cell(10, 5));
    QTest::keyRelease(window_, Qt::Key_Shift);
    QTest::mouseMove(&view(), cell(11, 6));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, cell(11, 6));
    ASSERT_EQ(window_->brush().width(), 2);
    ASSERT_EQ(window_->brush().height(), 2);
    EXPECT_EQ(window_->brush().at(1, 1), level().cellAt(11, 6).tile);

    // With no drag on, letting go of the key still ends what it began.
    QTest::keyPress(window_, Qt::Key_Control);
    QTest::keyRelease(window_, Qt::Key_Control);
    EXPECT_EQ(window_->dragState(), 0);
}

TEST_F(MouseEditing, ChoosingAToolEndsItsOwnDragButNotACopyOrFill) {
    start();
    const std::int32_t brushTile = window_->brush().at(0, 0);
    // The Brush's stroke ends when another tool is chosen.
    QTest::mousePress(&view(), Qt::LeftButton, {}, cell(2, 2));
    EXPECT_EQ(window_->dragState(), 3);
    QTest::keyClick(window_, Qt::Key_R);
    EXPECT_EQ(window_->dragState(), 0);
    QTest::mouseMove(&view(), cell(6, 2));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, cell(6, 2));
    EXPECT_EQ(level().cellAt(2, 2).tile, brushTile);
    EXPECT_NE(level().cellAt(6, 2).tile, brushTile);

    // Escape goes back to the Brush; the Ctrl-fill goes on to its release.
    QTest::mousePress(&view(), Qt::LeftButton, Qt::ControlModifier, cell(3, 5));
    QTest::keyClick(window_, Qt::Key_Escape);
    EXPECT_EQ(window_->tool(), frmMain::Tool::brush);
    EXPECT_EQ(window_->dragState(), 6);
    EXPECT_TRUE(window_->selectionVisible());
    QTest::mouseMove(&view(), cell(4, 5));
    QTest::mouseRelease(&view(), Qt::LeftButton, Qt::ControlModifier, cell(4, 5));
    EXPECT_EQ(window_->history().nextUndo(), "Fill");
    EXPECT_EQ(level().cellAt(4, 5).tile, brushTile);
}

TEST_F(MouseEditing, ARightDragScrollsBySensitivityWithThePointerHeldInPlace) {
    start(15);
    EXPECT_FLOAT_EQ(window_->moveSensitivity(), 1.5F);
    cursor_->position = {500, 400};
    QTest::mousePress(&view(), Qt::RightButton, {}, cell(10, 10));
    EXPECT_EQ(window_->dragState(), 1);
    EXPECT_EQ(view().cursor().shape(), Qt::SizeAllCursor);
    cursor_->position = {510, 400};
    QTest::mouseMove(&view(), cell(10, 10) + QPoint(10, 0));
    EXPECT_EQ(window_->levelCamera().x, 15);
    EXPECT_EQ(window_->levelCamera().y, 0);
    EXPECT_EQ(cursor_->position, QPoint(500, 400));
    cursor_->position = {507, 404};
    QTest::mouseMove(&view(), cell(10, 10) + QPoint(17, 4));
    EXPECT_EQ(window_->levelCamera().x, 15 + 10); // 10.5 rounds to even
    EXPECT_EQ(window_->levelCamera().y, 6);
    // Up past the top: the camera stays inside the level.
    cursor_->position = {500, 300};
    QTest::mouseMove(&view(), cell(10, 10));
    EXPECT_EQ(window_->levelCamera().y, 0);
    QTest::mouseRelease(&view(), Qt::RightButton, {}, cell(10, 10));
    EXPECT_EQ(window_->dragState(), 0);
    EXPECT_EQ(view().cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(action("itmEditUndo").isEnabled());
}

TEST_F(MouseEditing, SwitchingTabsMidDragEndsTheDrag) {
    start();
    const auto before = grid();
    QTest::mousePress(&view(), Qt::LeftButton, Qt::ControlModifier, cell(2, 2));
    EXPECT_EQ(window_->dragState(), 6);
    QTest::keyClick(window_, Qt::Key_S);
    EXPECT_EQ(window_->dragState(), 0);
    QTest::mouseMove(&view(), cell(5, 5));
    QTest::mouseRelease(&view(), Qt::LeftButton, Qt::ControlModifier, cell(5, 5));
    EXPECT_EQ(grid(), before);
    EXPECT_FALSE(action("itmEditUndo").isEnabled());
}

TEST_F(MouseEditing, PickingSelectsTheCellsSpecialOrTheFirstForAnUndefinedId) {
    // A level with an ID that no configuration defines.
    OpenedLevel prepared = openLevel({appFolder(), dataFolder(), "L1MA1", "world1", false});
    prepared.level.setSpecial(1, 1, 40);
    prepared.level.setSpecial(2, 1, 4);
    prepared.level.saveToFile(prepared.level.fileName, prepared.palette);
    start();
    QTest::keyClick(window_, Qt::Key_S);
    const auto before = grid();
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ShiftModifier, cell(2, 1));
    EXPECT_EQ(window_->selectedSpecial()->Id, 4);
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ShiftModifier, cell(1, 1));
    EXPECT_EQ(window_->selectedSpecial(), &window_->openedLevel()->specialSet.getSpecial(0));
    EXPECT_EQ(grid(), before);
    EXPECT_FALSE(action("itmEditUndo").isEnabled());
}

TEST_F(MouseEditing, TheStatusBarNamesTheCellUnderThePointer) {
    start();
    hover(cell(4, 2));
    const Cell& content = level().cellAt(4, 2);
    EXPECT_TRUE(window_->statusBar()->currentMessage().startsWith(
        QString("Cell (4, 2)    Tile %1    ").arg(content.tile)))
        << window_->statusBar()->currentMessage().toStdString();

    QTest::keyClick(window_, Qt::Key_S);
    selectSpecial(4);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(4, 2));
    hover(cell(4, 2));
    EXPECT_TRUE(window_->statusBar()->currentMessage().endsWith("Special 4: EXTRA LIFE"))
        << window_->statusBar()->currentMessage().toStdString();
}

TEST_F(MouseEditing, TheSavedFileHoldsWhatTheMouseDrew) {
    start();
    drag(Qt::ShiftModifier, cell(0, 0), cell(2, 1));
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(6, 6));
    drag(Qt::ControlModifier, cell(10, 2), cell(14, 8));
    QTest::keyClick(window_, Qt::Key_S);
    selectSpecial(4);
    drag({}, cell(3, 3), cell(5, 3));
    ASSERT_TRUE(window_->files().save());
    EXPECT_FALSE(window_->isWindowModified());
    const OpenedLevel saved = openLevel({appFolder(), dataFolder(), "L1MA1", "world1", false});
    std::vector<std::uint8_t> bytes(saved.level.cellBytes());
    std::memcpy(bytes.data(), saved.level.cells().data(), bytes.size());
    EXPECT_EQ(bytes, grid());
}

} // namespace
} // namespace marvek::test
