#include "EditorFixture.h"

#include "data/cellClipboard.h"
#include "data/floodFill.h"
#include "ui/EditCommands.h"
#include "ui/HistoryPanel.h"
#include "ui/PictureBox.h"
#include "ui/systemClipboard.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <cstring>

namespace marvek::test {
namespace {

class EditingTools : public EditorFixture {
protected:
    ~EditingTools() override {
        if (window_ != nullptr && QTestPrivate::qtestMouseButtons.testFlag(Qt::LeftButton)) {
            QTest::mouseRelease(&view(), Qt::LeftButton);
        }
    }

    frmMain& start(int undoLevels = 64) {
        writeSettings(dataFolder().string());
        const auto bytes = readBytes(settingsFile());
        std::string text(bytes.begin(), bytes.end());
        const std::string usual = "undoLevels = 64;";
        text.replace(text.find(usual), usual.size(),
                     "undoLevels = " + std::to_string(undoLevels) + ";");
        writeText(settingsFile(), text);
        EXPECT_FALSE(startProgram(*shared_, *windows_).has_value());
        window_ = windows_->mainWindow();
        window_->resize(1280, 800);
        // Shortcuts reach only the active window.
        window_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_));
        return *window_;
    }

    const clsLevel& level() const { return window_->openedLevel()->level; }
    PictureBox& view() const { return *window_->findChild<PictureBox*>("picLevel"); }
    PictureBox& palette() const { return *window_->findChild<PictureBox*>("picPalette"); }
    QAction& action(const char* name) const { return child<QAction>(*window_, name); }

    QPoint cell(int x, int y) const {
        const clsCamera& camera = window_->levelCamera();
        return {PictureBox::border + (16 * x + 8 - camera.x) * 2,
                PictureBox::border + (16 * y + 8 - camera.y) * 2};
    }

    std::vector<std::uint8_t> grid() const {
        std::vector<std::uint8_t> bytes(level().cellBytes());
        std::memcpy(bytes.data(), level().cells().data(), bytes.size());
        return bytes;
    }

    void chooseBrushTile(int tile) const {
        QTest::mouseClick(
            &palette(), Qt::LeftButton, {},
            {PictureBox::border + 16 * (tile % 20) + 8, PictureBox::border + 16 * (tile / 20) + 8});
        ASSERT_EQ(window_->brush().at(0, 0), tile);
    }

    void hover(QPoint at) const {
        QMouseEvent move(QEvent::MouseMove, QPointF(at), view().mapToGlobal(QPointF(at)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&view(), &move);
        // The view redraws once the events are through.
        QApplication::processEvents();
    }

    void dragOnView(QPoint from, QPoint to) const {
        QTest::mousePress(&view(), Qt::LeftButton, {}, from);
        QTest::mouseMove(&view(), to);
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, to);
    }

    // Ctrl held on its own first, as a real keyboard sends it.
    void ctrlKey(Qt::Key key) const {
        QTest::keyPress(window_, Qt::Key_Control);
        QTest::keyClick(window_, key, Qt::ControlModifier);
        QTest::keyRelease(window_, Qt::Key_Control);
    }

    frmMain* window_ = nullptr;
};

TEST_F(EditingTools, FastDragsPaintAndPlaceEveryCellOfTheLine) {
    start();
    chooseBrushTile(7);
    EXPECT_EQ(window_->tool(), frmMain::Tool::brush) << "the tool at start";
    QTest::mousePress(&view(), Qt::LeftButton, {}, cell(2, 3));
    QTest::mouseMove(&view(), cell(12, 3));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, cell(12, 3));
    for (int x = 2; x <= 12; ++x) {
        EXPECT_EQ(level().cellAt(x, 3).tile, 7) << x;
    }
    EXPECT_NE(level().cellAt(13, 3).tile, 7);
    EXPECT_NE(level().cellAt(1, 3).tile, 7);
    window_->editUndo();
    EXPECT_TRUE(window_->history().nextUndo().empty()) << "the stroke is one step";

    // Specials along a diagonal, one step per cell.
    QTest::keyClick(window_, Qt::Key_S);
    const auto id = static_cast<std::uint8_t>(window_->selectedSpecial()->Id);
    QTest::mousePress(&view(), Qt::LeftButton, {}, cell(4, 1));
    QTest::mouseMove(&view(), cell(9, 6));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, cell(9, 6));
    for (int i = 0; i <= 5; ++i) {
        EXPECT_EQ(level().cellAt(4 + i, 1 + i).special, id) << i;
    }
    EXPECT_EQ(window_->history().nextUndo(), "Place Special");
}

TEST_F(EditingTools, KeysChooseToolsTheStatusBarNamesThemAndEscapeDropsTheSelection) {
    start();
    const auto& label = child<QLabel>(*window_, "lblTool");
    EXPECT_EQ(label.text(), "Tool: Brush");
    QTest::keyClick(window_, Qt::Key_F);
    EXPECT_EQ(window_->tool(), frmMain::Tool::bucketFill);
    EXPECT_EQ(label.text(), "Tool: Bucket Fill");
    EXPECT_TRUE(action("itmToolBucketFill").isChecked());
    QTest::keyClick(window_, Qt::Key_R);
    EXPECT_EQ(label.text(), "Tool: Select");
    dragOnView(cell(5, 2), cell(2, 4));
    ASSERT_TRUE(window_->cellSelection().has_value());
    EXPECT_EQ(window_->cellSelection()->left, 2);
    EXPECT_EQ(window_->cellSelection()->width, 3);
    EXPECT_EQ(window_->cellSelection()->height, 2);
    EXPECT_TRUE(action("itmEditCopy").isEnabled());
    QTest::keyClick(window_, Qt::Key_Escape);
    EXPECT_EQ(window_->tool(), frmMain::Tool::brush);
    EXPECT_FALSE(window_->cellSelection().has_value());
    EXPECT_FALSE(action("itmEditCut").isEnabled());

    // The modifier gestures stay with every tool: Shift-copy makes the brush.
    QTest::keyClick(window_, Qt::Key_R);
    QTest::mousePress(&view(), Qt::LeftButton, Qt::ShiftModifier, cell(1, 1));
    QTest::mouseMove(&view(), cell(2, 1));
    QTest::mouseRelease(&view(), Qt::LeftButton, Qt::ShiftModifier, cell(2, 1));
    EXPECT_EQ(window_->brush().width(), 2);
    EXPECT_FALSE(window_->cellSelection().has_value()) << "no select drag began";
}

TEST_F(EditingTools, BucketFillTintsAndFillsOneRegionWithTheAnchoredBrush) {
    start();
    // A 2 x 2 brush from the palette: tiles 1, 2 over 21, 22.
    QTest::mousePress(&palette(), Qt::LeftButton, {},
                      {PictureBox::border + 24, PictureBox::border + 8});
    QTest::mouseMove(&palette(), {PictureBox::border + 40, PictureBox::border + 24});
    QTest::mouseRelease(&palette(), Qt::LeftButton, {},
                        {PictureBox::border + 40, PictureBox::border + 24});
    ASSERT_EQ(window_->brush().width(), 2);
    const std::int32_t clickX = 5;
    const std::int32_t clickY = 2;
    const CellRegion region = floodRegion(level(), clickX, clickY, RegionKey::tile);
    ASSERT_GT(region.count(), 4) << "the sample's sky is one wide region";
    ASSERT_LT(region.count(), level().width * level().height);

    QTest::keyClick(window_, Qt::Key_F);
    QPoint outside(0, 10);
    while (region.contains(outside.x(), outside.y())) {
        outside.rx()++;
    }
    hover(cell(outside.x(), outside.y()));
    const QImage elsewhere = view().image().copy();
    hover(cell(clickX, clickY));
    const QImage tinted = view().image().copy();
    // A cell of the region far from the pointer is tinted only when the
    // pointer rests on the region.
    const QPoint far = cell(clickX + 1, clickY) - QPoint(PictureBox::border, PictureBox::border);
    EXPECT_NE(tinted.pixel(far), elsewhere.pixel(far));

    const auto before = grid();
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(clickX, clickY));
    // Auto-place cleared the specials of the sample's sky, faint in Tiles
    // mode: the step says so.
    EXPECT_EQ(window_->history().nextUndo(), "Bucket Fill, 19 specials removed");
    EXPECT_EQ(action("itmEditUndo").text(), "&Undo Bucket Fill, 19 specials removed");
    const TileGrid& brush = window_->brush();
    for (std::int32_t y = 0; y < level().height; ++y) {
        for (std::int32_t x = 0; x < level().width; ++x) {
            const std::size_t at = static_cast<std::size_t>(y * level().width + x) * 4;
            if (region.contains(x, y)) {
                const int expected =
                    brush.at(((x - clickX) % 2 + 2) % 2, ((y - clickY) % 2 + 2) % 2);
                ASSERT_EQ(level().cellAt(x, y).tile, expected) << x << "," << y;
            } else {
                ASSERT_EQ(
                    std::memcmp(&before[at], &level().cells()[static_cast<std::size_t>(at / 4)], 4),
                    0)
                    << "outside the region " << x << "," << y;
            }
        }
    }
    EXPECT_EQ(level().cellAt(clickX, clickY).tile, brush.at(0, 0));
    window_->editUndo();
    EXPECT_EQ(grid(), before);

    // In Specials mode the cells of one special take the selected one.
    QTest::keyClick(window_, Qt::Key_S);
    // The palette's second row: the first is "no special".
    const clsSpecialSet& set = window_->openedLevel()->specialSet;
    QTest::mouseClick(&palette(), Qt::LeftButton, {},
                      {40, PictureBox::border + set.rowBottoms().front() + 1});
    const auto id = static_cast<std::uint8_t>(window_->selectedSpecial()->Id);
    const CellRegion specials = floodRegion(level(), clickX, clickY, RegionKey::special);
    ASSERT_NE(level().cellAt(clickX, clickY).special, id);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(clickX, clickY));
    EXPECT_EQ(window_->history().nextUndo(), "Bucket Fill");
    std::int64_t changed = 0;
    for (std::int32_t y = 0; y < level().height; ++y) {
        for (std::int32_t x = 0; x < level().width; ++x) {
            const Cell& now = level().cellAt(x, y);
            Cell old;
            std::memcpy(&old, &before[static_cast<std::size_t>(y * level().width + x) * 4], 4);
            ASSERT_EQ(now.tile, old.tile);
            changed += now.special != old.special ? 1 : 0;
            ASSERT_EQ(now.special, specials.contains(x, y) ? id : old.special);
        }
    }
    EXPECT_EQ(changed, specials.count());
}

TEST_F(EditingTools, CutCellsTravelToAnotherLevelWithTheirSpecials) {
    start();
    // A special of our own in the area to cut.
    QTest::keyClick(window_, Qt::Key_S);
    const auto id = static_cast<std::uint8_t>(window_->selectedSpecial()->Id);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(4, 3));
    QTest::keyClick(window_, Qt::Key_T);
    QTest::keyClick(window_, Qt::Key_R);
    dragOnView(cell(3, 2), cell(5, 3));
    const CellBlock cut = copyCells(level(), *window_->cellSelection());
    ASSERT_EQ(cut.at(1, 1).special, id);

    ctrlKey(Qt::Key_X);
    EXPECT_EQ(window_->history().nextUndo(), "Cut");
    for (int x = 3; x <= 5; ++x) {
        EXPECT_EQ(level().cellAt(x, 2), Cell{});
        EXPECT_EQ(level().cellAt(x, 3), Cell{});
    }
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(data, nullptr);
    ASSERT_TRUE(data->hasFormat(cellsMimeType));
    EXPECT_EQ(data->text().toStdString(), cellsAsText(cut));

    messages_->answers = {messageAnswer::no};
    dialogs_->fileAnswers = {{toQString(dataFolder() / "L1MA2")}};
    whenModal([](QWidget& dialog) { dialog.findChild<QPushButton*>("cmdOk")->click(); });
    ASSERT_TRUE(window_->files().open());
    ASSERT_EQ(window_->windowTitle(), "Marvek - L1MA2[*]");
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));

    QTest::keyClick(window_, Qt::Key_F);
    ctrlKey(Qt::Key_V);
    EXPECT_EQ(window_->tool(), frmMain::Tool::brush);
    ASSERT_NE(window_->brushCells(), nullptr);
    EXPECT_EQ(*window_->brushCells(), cut);
    EXPECT_FALSE(window_->paletteSelectionVisible()) << "the palette no longer names the brush";
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(10, 4));
    for (int dy = 0; dy < 2; ++dy) {
        for (int dx = 0; dx < 3; ++dx) {
            EXPECT_EQ(level().cellAt(10 + dx, 4 + dy), cut.at(dx, dy)) << dx << "," << dy;
        }
    }

    // Damaged cells on the clipboard are refused with the reason.
    auto damaged = std::make_unique<QMimeData>();
    damaged->setData(cellsMimeType, QByteArray("MVKC\0\1\0\2", 8));
    QGuiApplication::clipboard()->setMimeData(damaged.release());
    window_->editCommands().paste();
    ASSERT_FALSE(messages_->shown.empty());
    EXPECT_NE(messages_->shown.back().text.indexOf("Nothing was pasted"), -1);
    EXPECT_EQ(*window_->brushCells(), cut) << "the brush stays";

    // So is a tile number past the open tile set's last tile.
    ASSERT_LT(window_->openedLevel()->tileSet.count(), 1024);
    QGuiApplication::clipboard()->setText("0\n1023\n");
    window_->editCommands().paste();
    EXPECT_NE(messages_->shown.back().text.indexOf(
                  "line 2 of the clipboard's text holds tile 1023, past the tile set's last tile"),
              -1)
        << messages_->shown.back().text.toStdString();
    EXPECT_EQ(*window_->brushCells(), cut) << "the brush stays";
}

TEST_F(EditingTools, InSpecialsModeCutDeleteAndPasteWorkOnTheSpecialsAlone) {
    start();
    QTest::keyClick(window_, Qt::Key_S);
    const auto id = static_cast<std::uint8_t>(window_->selectedSpecial()->Id);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(4, 3));
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(8, 3));
    QTest::keyClick(window_, Qt::Key_R);
    dragOnView(cell(3, 2), cell(5, 3));
    const CellBlock selected = copyCells(level(), *window_->cellSelection());

    // Cut: the clipboard has tiles and specials, the level loses only the specials.
    ctrlKey(Qt::Key_X);
    EXPECT_EQ(window_->history().nextUndo(), "Cut Specials");
    const auto cut = cellsFromClipboard(clsLevel::largestFileTile + 1);
    EXPECT_EQ(cut.block, selected);
    for (int x = 3; x <= 5; ++x) {
        for (int y = 2; y <= 3; ++y) {
            EXPECT_EQ(level().cellAt(x, y).tile, selected.at(x - 3, y - 2).tile) << x << "," << y;
            EXPECT_EQ(level().cellAt(x, y).special, 0) << x << "," << y;
        }
    }

    // Paste: the brush puts down the pasted specials where it is clicked, tiles stay.
    ctrlKey(Qt::Key_V);
    EXPECT_EQ(window_->mode(), frmMain::specialsMode);
    EXPECT_EQ(window_->tool(), frmMain::Tool::brush);
    ASSERT_NE(window_->specialsBrush(), nullptr);
    const auto before = grid();
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(20, 6));
    EXPECT_EQ(window_->history().nextUndo(), "Place Specials");
    ASSERT_EQ(selected.at(1, 1).special, id);
    auto expected = before;
    for (int dy = 0; dy < 2; ++dy) {
        for (int dx = 0; dx < 3; ++dx) {
            if (const std::uint8_t special = selected.at(dx, dy).special; special != 0) {
                expected[static_cast<std::size_t>((6 + dy) * level().width + 20 + dx) * 4 + 2] =
                    special;
            }
        }
    }
    EXPECT_EQ(grid(), expected) << "the pasted specials, and no tile";

    // Delete of a selection over a placed special: the special goes, the tiles stay.
    dragOnView(cell(7, 3), cell(9, 3));
    const auto beforeDelete = grid();
    QTest::keyClick(window_, Qt::Key_Delete);
    EXPECT_EQ(window_->history().nextUndo(), "Delete Specials");
    auto afterDelete = beforeDelete;
    afterDelete[static_cast<std::size_t>(3 * level().width + 8) * 4 + 2] = 0;
    EXPECT_EQ(grid(), afterDelete);

    // Choosing a special from the palette ends the pasted brush.
    QTest::mouseClick(&palette(), Qt::LeftButton, {}, {40, PictureBox::border + 1});
    EXPECT_EQ(window_->specialsBrush(), nullptr);

    // In Tiles mode Delete clears the whole cells, as before.
    QTest::keyClick(window_, Qt::Key_T);
    dragOnView(cell(3, 2), cell(3, 2));
    QTest::keyClick(window_, Qt::Key_Delete);
    EXPECT_EQ(window_->history().nextUndo(), "Delete");
    EXPECT_EQ(level().cellAt(3, 2), Cell{});
}

TEST_F(EditingTools, ACtrlDragFillWithPastedCellsPutsDownTheirOwnSpecials) {
    start();
    // A tile whose default special differs from the one the pasted cell carries.
    std::int16_t tile = 1;
    while (tile < 1023 && level().getDefaultSpecial(tile) == 0) {
        ++tile;
    }
    const std::uint8_t carried = level().getDefaultSpecial(tile) == 7 ? 9 : 7;
    CellBlock pasted(2, 1);
    pasted.at(0, 0) = Cell{tile, carried, 0};
    pasted.at(1, 0) = Cell{tile, 0, 0};
    putCellsOnClipboard(pasted);
    ctrlKey(Qt::Key_V);
    ASSERT_NE(window_->brushCells(), nullptr);

    const auto before = grid();
    QTest::keyPress(window_, Qt::Key_Control);
    QTest::mousePress(&view(), Qt::LeftButton, Qt::ControlModifier, cell(10, 4));
    QTest::mouseMove(&view(), cell(14, 5));
    QTest::mouseRelease(&view(), Qt::LeftButton, Qt::ControlModifier, cell(14, 5));
    QTest::keyRelease(window_, Qt::Key_Control);
    EXPECT_EQ(window_->history().nextUndo(), "Fill");
    for (int y = 4; y <= 5; ++y) {
        for (int x = 10; x <= 14; ++x) {
            const Cell& now = level().cellAt(x, y);
            EXPECT_EQ(now.tile, tile) << x << "," << y;
            EXPECT_EQ(now.special, (x - 10) % 2 == 0 ? carried : 0) << x << "," << y;
        }
    }
    Cell past;
    std::memcpy(&past, &before[static_cast<std::size_t>(4 * level().width + 15) * 4], 4);
    EXPECT_EQ(level().cellAt(15, 4), past) << "the column past the rectangle stays";
    window_->editUndo();
    EXPECT_EQ(grid(), before);
}

TEST_F(EditingTools, HistoryClicksGiveBackEachStepsGridAndSurviveDroppedSteps) {
    start(3);
    action("itmViewHistory").trigger();
    HistoryPanel& panel = window_->historyPanel();
    EXPECT_TRUE(panel.isVisible());
    auto& list = child<QListWidget>(panel, "lstHistory");
    std::vector<std::vector<std::uint8_t>> grids{grid()};
    for (int step = 0; step < 4; ++step) {
        QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(2 + step, 2 + step));
        grids.push_back(grid());
    }
    // Four steps with room for three: the first state is gone.
    EXPECT_EQ(panel.entries(), (QStringList{"Earlier steps", "Paint", "Paint", "Paint"}));
    EXPECT_EQ(panel.currentEntry(), 3);
    const auto clickEntry = [&](int row) {
        list.scrollToItem(list.item(row));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualItemRect(list.item(row)).center());
    };
    clickEntry(1);
    EXPECT_EQ(grid(), grids[2]);
    EXPECT_EQ(panel.currentEntry(), 1);
    clickEntry(0);
    EXPECT_EQ(grid(), grids[1]);
    clickEntry(3);
    EXPECT_EQ(grid(), grids[4]);
    clickEntry(2);
    EXPECT_EQ(grid(), grids[3]);
    // A new step drops the steps ahead of it.
    QTest::keyClick(window_, Qt::Key_F);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(30, 2));
    EXPECT_EQ(panel.entries(),
              (QStringList{"Earlier steps", "Paint", "Paint", "Bucket Fill, 19 specials removed"}));
    EXPECT_EQ(panel.currentEntry(), 3);
}

TEST_F(EditingTools, FewerUndoLevelsInTheOptionsShowInTheHistoryAtOnce) {
    start();
    action("itmViewHistory").trigger();
    for (int step = 0; step < 4; ++step) {
        QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(2 + step, 2));
    }
    ASSERT_EQ(window_->historyPanel().entries().size(), 5);
    whenModal([](QWidget& options) {
        child<QLineEdit>(options, "txtUndoLevels").setText("2");
        child<QPushButton>(options, "cmdOk").click();
    });
    window_->toolsOptions();
    EXPECT_EQ(window_->historyPanel().entries(), (QStringList{"Earlier steps", "Paint", "Paint"}));
    EXPECT_EQ(window_->historyPanel().currentEntry(), 2);
    // The oldest kept state is one click away, and no further.
    auto& list = child<QListWidget>(window_->historyPanel(), "lstHistory");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualItemRect(list.item(0)).center());
    EXPECT_TRUE(window_->history().nextUndo().empty());
    EXPECT_EQ(window_->history().nextRedo(), "Paint");
}

TEST_F(EditingTools, ReplaceTileCountsTheCellsItChanges) {
    start();
    const std::int32_t from = level().cellAt(0, 0).tile;
    const std::int64_t inLevel = countTile(level(), from, nullptr);
    ASSERT_GT(inLevel, 1);
    const auto answer = [from](bool selectionOnly) {
        return [from, selectionOnly](QWidget& dialog) {
            ASSERT_EQ(dialog.objectName(), "frmReplaceTile");
            child<QSpinBox>(dialog, "udFrom").setValue(from);
            child<QSpinBox>(dialog, "udTo").setValue(9);
            child<QCheckBox>(dialog, "chkSelectionOnly").setChecked(selectionOnly);
            child<QPushButton>(dialog, "cmdOK").click();
        };
    };
    // In the selection only.
    QTest::keyClick(window_, Qt::Key_R);
    dragOnView(cell(0, 0), cell(1, 0));
    const clsRectangle selected = window_->cellSelection().value();
    const std::int64_t inSelection = countTile(level(), from, &selected);
    whenModal(answer(true));
    window_->editCommands().replaceTile();
    EXPECT_EQ(messages_->shown.back().text,
              QString("Replaced tile %1 with tile 9 in %2 cells in the selection.")
                  .arg(from)
                  .arg(inSelection));
    EXPECT_EQ(window_->history().nextUndo(), "Replace Tile");
    whenModal(answer(false));
    window_->editCommands().replaceTile();
    EXPECT_EQ(messages_->shown.back().text,
              QString("Replaced tile %1 with tile 9 in %2 cells in the level.")
                  .arg(from)
                  .arg(inLevel - inSelection));
    EXPECT_EQ(countTile(level(), from, nullptr), 0);
    // Nothing left to replace: told so, and no step.
    whenModal(answer(false));
    window_->editCommands().replaceTile();
    EXPECT_EQ(messages_->shown.back().text,
              QString("No cell in the level holds tile %1.").arg(from));
    window_->editUndo();
    window_->editUndo();
    EXPECT_EQ(countTile(level(), from, nullptr), inLevel);
}

TEST_F(EditingTools, PasteIsOfferedOnlyWhileTheClipboardHoldsCells) {
    start();
    QClipboard& clipboard = *QGuiApplication::clipboard();
    clipboard.clear();
    EXPECT_FALSE(action("itmEditPaste").isEnabled());
    clipboard.setText("a shopping list");
    EXPECT_FALSE(action("itmEditPaste").isEnabled());
    clipboard.setText("1\t2\n3\t4\n");
    EXPECT_TRUE(action("itmEditPaste").isEnabled()) << "a grid of tile numbers pastes";
    clipboard.clear();
    EXPECT_FALSE(action("itmEditPaste").isEnabled());
    // Cells copied in this editor.
    QTest::keyClick(window_, Qt::Key_R);
    dragOnView(cell(0, 0), cell(1, 1));
    ctrlKey(Qt::Key_C);
    EXPECT_TRUE(action("itmEditPaste").isEnabled());
}

TEST_F(EditingTools, ReplaceTileStartsOnlyWithTilesTheUserChoseAndShowsTheirPictures) {
    start();
    QClipboard& clipboard = *QGuiApplication::clipboard();
    clipboard.clear();
    const auto before = grid();
    // From the menu, with the brush the level opened with: nothing chosen,
    // so both boxes are empty and Enter replaces nothing.
    bool okEnabled = true;
    whenModal([&](QWidget& dialog) {
        EXPECT_EQ(child<QSpinBox>(dialog, "udFrom").text(), "none");
        EXPECT_EQ(child<QSpinBox>(dialog, "udTo").text(), "none");
        EXPECT_TRUE(child<PictureBox>(dialog, "picFrom").image().isNull());
        okEnabled = child<QPushButton>(dialog, "cmdOK").isEnabled();
        QTest::keyClick(&dialog, Qt::Key_Return);
        if (dialog.isVisible()) {
            static_cast<QDialog&>(dialog).reject();
        }
    });
    action("itmEditReplaceTile").trigger();
    EXPECT_FALSE(okEnabled);
    EXPECT_EQ(grid(), before);
    EXPECT_TRUE(window_->history().nextUndo().empty());

    // A brush chosen in the palette, then the key over a cell of the level.
    chooseBrushTile(5);
    const std::int32_t pointed = level().cellAt(2, 3).tile;
    ASSERT_NE(pointed, 5);
    hover(cell(2, 3));
    QImage fromPicture;
    QImage toPicture;
    whenModal([&](QWidget& dialog) {
        EXPECT_EQ(child<QSpinBox>(dialog, "udFrom").value(), pointed);
        EXPECT_EQ(child<QSpinBox>(dialog, "udTo").value(), 5);
        // Copies: a box shows memory that the next tile draws over.
        fromPicture = child<PictureBox>(dialog, "picFrom").image().copy();
        toPicture = child<PictureBox>(dialog, "picTo").image().copy();
        child<QSpinBox>(dialog, "udTo").setValue(pointed);
        EXPECT_EQ(child<PictureBox>(dialog, "picTo").image(), fromPicture) << "follows the number";
        static_cast<QDialog&>(dialog).reject();
    });
    // The pointer stays over the view: no menu was opened with the mouse.
    action("itmEditReplaceTile").trigger();
    EXPECT_EQ(action("itmEditReplaceTile").shortcut(), QKeySequence("Ctrl+H"));
    ASSERT_FALSE(fromPicture.isNull());
    EXPECT_EQ(fromPicture.size(), QSize(32, 32)) << "twice the tile's size, as the view shows it";
    EXPECT_NE(fromPicture, toPicture);
}

} // namespace
} // namespace marvek::test
