#include "EditorFixture.h"

#include "ui/LevelDocument.h"

#include "configuration/clsConfiguration.h"
#include "data/levelNavigation.h"
#include "support/expect.h"
#include "ui/OverviewPanel.h"
#include "ui/PictureBox.h"
#include "ui/SpecialsListPanel.h"

#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableView>
#include <QTest>

namespace marvek::test {
namespace {

class Navigation : public ShownEditorFixture {
protected:
    Navigation() {
        auto cursor = std::make_unique<ScriptedScreenCursor>();
        cursor_ = cursor.get();
        shared_->cursor = std::move(cursor);
    }
    ~Navigation() override {
        if (window_ == nullptr) {
            return;
        }
        for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            if (QTestPrivate::qtestMouseButtons.testFlag(button)) {
                QTest::mouseRelease(&view(), button);
            }
        }
    }

    const clsCamera& camera() const { return window_->levelCamera(); }
    std::pair<int, int> at() const { return {camera().x, camera().y}; }
    int farRight() const { return camera().levelWidth - camera().viewWidth; }
    int farDown() const { return camera().levelHeight - camera().viewHeight; }

    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&view(), static_cast<Qt::Key>(key), modifiers);
    }
    void wheel(QPoint delta, Qt::KeyboardModifiers modifiers = {}) {
        QWheelEvent event(QPointF(20, 20), view().mapToGlobal(QPointF(20, 20)), QPoint(), delta,
                          Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view(), &event);
    }

    ScriptedScreenCursor* cursor_ = nullptr;
};

TEST_F(Navigation, KeysMoveTheViewByTheirStepsAndStopAtTheEdges) {
    start();
    ASSERT_EQ(window_->focusWidget(), &view()) << "the level view takes the keys";
    press(Qt::Key_Left);
    press(Qt::Key_Up);
    EXPECT_EQ(at(), std::pair(0, 0));
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_EQ(at(), std::pair(16, 16));
    press(Qt::Key_PageDown);
    EXPECT_EQ(camera().y, std::min(16 + camera().viewHeight, farDown()));
    press(Qt::Key_PageUp);
    press(Qt::Key_PageUp);
    EXPECT_EQ(camera().y, 0);
    press(Qt::Key_End);
    EXPECT_EQ(at(), std::pair(farRight(), 0));
    press(Qt::Key_Right);
    EXPECT_EQ(camera().x, farRight());
    press(Qt::Key_Home);
    EXPECT_EQ(at(), std::pair(0, 0));
    press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(at(), std::pair(farRight(), farDown()));
    press(Qt::Key_Down);
    EXPECT_EQ(camera().y, farDown());
    press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(at(), std::pair(0, 0));
    // With the grid on, a step is a grid cell.
    QTest::keyClick(&view(), Qt::Key_G);
    press(Qt::Key_Right);
    EXPECT_EQ(camera().x, 17);
}

TEST_F(Navigation, TheWheelScrollsThreeCellsANotchDownOrAcrossWithShift) {
    start();
    wheel({0, -120});
    EXPECT_EQ(at(), std::pair(0, 48));
    wheel({0, 240});
    EXPECT_EQ(at(), std::pair(0, 0)) << "stops at the top";
    wheel({0, -120}, Qt::ShiftModifier);
    EXPECT_EQ(at(), std::pair(48, 0));
    wheel({-120, 0});
    EXPECT_EQ(at(), std::pair(96, 0));
    for (int i = 0; i < 300; ++i) {
        wheel({0, -120});
    }
    EXPECT_EQ(at(), std::pair(96, farDown()));
}

TEST_F(Navigation, TheStatusBarNamesTheCellUnderAStillPointerAfterEachMoveAndEdit) {
    start();
    const auto status = [this] { return window_->statusBar()->currentMessage(); };
    // The pointer rests on cell (5, 4) from here on.
    const QPointF rest(PictureBox::border + 2 * (16 * 5 + 8),
                       PictureBox::border + 2 * (16 * 4 + 8));
    QMouseEvent move(QEvent::MouseMove, rest, view().mapToGlobal(rest), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&view(), &move);
    EXPECT_TRUE(status().startsWith("Cell (5, 4)")) << status().toStdString();
    press(Qt::Key_Right);
    EXPECT_TRUE(status().startsWith("Cell (6, 4)")) << status().toStdString();
    wheel({0, -120});
    EXPECT_TRUE(status().startsWith("Cell (6, 7)")) << status().toStdString();
    window_->centreView(200, 60);
    const CellRange shown = visibleCells(camera(), 16, 300, 84);
    EXPECT_TRUE(
        status().startsWith(QString("Cell (%1, %2)").arg(shown.left + 5).arg(shown.top + 4)))
        << status().toStdString();

    // An undo under the pointer names the tile the cell holds again.
    const clsLevel& level = window_->openedLevel()->level;
    const int x = shown.left + 5;
    const int y = shown.top + 4;
    const int before = level.cellAt(x, y).tile;
    const std::int16_t other = before == 7 ? std::int16_t{8} : std::int16_t{7};
    window_->currentDocument()->edit("Paint", {x, y, x, y},
                                     [&](clsLevel& edited) { edited.cellAt(x, y).tile = other; });
    QApplication::processEvents();
    EXPECT_TRUE(status().contains(QString("Tile %1 ").arg(other))) << status().toStdString();
    window_->editUndo();
    QApplication::processEvents();
    EXPECT_TRUE(status().contains(QString("Tile %1 ").arg(before))) << status().toStdString();
}

TEST_F(Navigation, ScrollBarsFollowEveryMoveAndMoveTheViewWhenDragged) {
    start();
    auto& across = child<QScrollBar>(*window_, "scrlLevelX");
    auto& down = child<QScrollBar>(*window_, "scrlLevelY");
    EXPECT_EQ(across.maximum(), farRight());
    EXPECT_EQ(down.maximum(), farDown());
    cursor_->position = {500, 400};
    QTest::mousePress(&view(), Qt::RightButton, {}, QPoint(50, 50));
    cursor_->position = {530, 420};
    QTest::mouseMove(&view(), QPoint(60, 60));
    QTest::mouseRelease(&view(), Qt::RightButton, {}, QPoint(60, 60));
    EXPECT_EQ(at(), std::pair(30, 20));
    EXPECT_EQ(across.value(), 30);
    EXPECT_EQ(down.value(), 20);
    across.setValue(400);
    down.setValue(down.maximum());
    EXPECT_EQ(at(), std::pair(400, farDown()));
    // Zooming out widens the view; the bars' range follows.
    QTest::keyClick(&view(), Qt::Key_Z);
    EXPECT_EQ(across.maximum(), farRight());
    EXPECT_EQ(across.value(), camera().x);
}

TEST_F(Navigation, AMiddleDragPansTheLevelWithThePointerAndLeavesTheLevelAlone) {
    start();
    press(Qt::Key_End, Qt::ControlModifier);
    const auto start = at();
    const auto cells = window_->openedLevel()->level.cells();
    const std::vector<Cell> before(cells.begin(), cells.end());
    QTest::mousePress(&view(), Qt::MiddleButton, {}, QPoint(200, 200));
    QTest::mouseMove(&view(), QPoint(300, 260));
    EXPECT_EQ(at(), std::pair(start.first - 50, start.second - 30)) << "zoom 2: half the move";
    QTest::mouseRelease(&view(), Qt::MiddleButton, {}, QPoint(300, 260));
    QTest::mouseMove(&view(), QPoint(100, 100));
    EXPECT_EQ(at(), std::pair(start.first - 50, start.second - 30)) << "the pan has ended";
    EXPECT_FALSE(changedCells(before, window_->openedLevel()->level).has_value());
    EXPECT_FALSE(action("itmEditUndo").isEnabled());
}

TEST_F(Navigation, AClickInTheOverviewCentresTheViewAndItsRectangleFollows) {
    start();
    auto& overview = child<OverviewPanel>(*window_, "picOverview");
    ASSERT_TRUE(overview.isVisible()) << "shown by default";
    ASSERT_GT(overview.overview().cellPixels(), 0);
    const QPointF target = overview.cellPosition(150, 40);
    QTest::mouseClick(&overview, Qt::LeftButton, {}, target.toPoint() + QPoint(1, 1));
    EXPECT_EQ(camera().x, 150 * 16 + 8 - camera().viewWidth / 2);
    EXPECT_EQ(camera().y, std::min(40 * 16 + 8 - camera().viewHeight / 2, farDown()));
    const CellRange shown = visibleCells(camera(), 16, 300, 84);
    EXPECT_LE(shown.left, 150);
    EXPECT_GE(shown.right, 150);
    // The status bar names the view's cells.
    EXPECT_EQ(child<QLabel>(*window_, "lblViewRange").text(), QString("View (%1, %2) - (%3, %4)")
                                                                  .arg(shown.left)
                                                                  .arg(shown.top)
                                                                  .arg(shown.right)
                                                                  .arg(shown.bottom));
    // A drag keeps centring.
    QTest::mousePress(&overview, Qt::LeftButton, {}, overview.cellPosition(0, 0).toPoint());
    EXPECT_EQ(at(), std::pair(0, 0));
}

TEST_F(Navigation, AnEditUndoAndRedoChangeTheOverviewOfThatCellOnly) {
    start();
    const auto& panel = child<OverviewPanel>(*window_, "picOverview");
    const clsLevelOverview& overview = panel.overview();
    const std::vector<std::uint32_t> before(overview.pixels().begin(), overview.pixels().end());
    const std::int16_t other =
        window_->openedLevel()->level.cellAt(100, 50).tile == 3 ? std::int16_t{4} : std::int16_t{3};
    window_->currentDocument()->edit("Paint", {100, 50, 100, 50}, [other](clsLevel& level) {
        level.cellAt(100, 50).tile = other;
        level.cellAt(100, 50).special = 0;
    });
    const std::int32_t cell = overview.cellPixels();
    int changed = 0;
    for (std::int32_t y = 0; y < overview.height(); ++y) {
        for (std::int32_t x = 0; x < overview.width(); ++x) {
            const std::size_t i = std::size_t(y) * std::size_t(overview.width()) + std::size_t(x);
            if (x / cell != 100 || y / cell != 50) {
                ASSERT_EQ(overview.pixels()[i], before[i]) << x << ", " << y;
            } else if (overview.pixels()[i] != before[i]) {
                ++changed;
            }
        }
    }
    EXPECT_GT(changed, 0);
    window_->editUndo();
    EXPECT_TRUE(std::ranges::equal(overview.pixels(), before));
    window_->editRedo();
    EXPECT_FALSE(std::ranges::equal(overview.pixels(), before));
}

TEST_F(Navigation, TheViewMenuTogglesWithTheLettersAndKeepsItsChecksTrue) {
    start();
    for (const char* name : {"itmViewZoom", "itmViewGrid", "itmViewOutlines", "itmViewOversize",
                             "itmViewUndefined", "itmViewOverview", "itmViewSpecialsList"}) {
        EXPECT_TRUE(action(name).isCheckable()) << name;
    }
    EXPECT_TRUE(action("itmViewZoom").text().endsWith("\tZ"));
    EXPECT_TRUE(action("itmViewOverview").text().endsWith("\tM"));
    EXPECT_TRUE(action("itmViewOutlines").isChecked());
    action("itmViewOutlines").trigger();
    EXPECT_EQ(window_->renderFlags() & 8, 0);
    EXPECT_FALSE(action("itmViewOutlines").isChecked());
    QTest::keyClick(&view(), Qt::Key_B);
    EXPECT_EQ(window_->renderFlags() & 8, 8);
    EXPECT_TRUE(action("itmViewOutlines").isChecked());
    QTest::keyClick(&view(), Qt::Key_Z);
    EXPECT_FALSE(action("itmViewZoom").isChecked());
    action("itmViewGrid").trigger();
    EXPECT_EQ(window_->openedLevel()->level.tileSpacing, 17);
    EXPECT_TRUE(action("itmViewGrid").isChecked());

    // A letter typed into the specials filter stays there.
    action("itmViewSpecialsList").trigger();
    auto& filter = child<QLineEdit>(*window_, "txtSpecialsFilter");
    ASSERT_TRUE(filter.isVisible());
    filter.setFocus();
    QTest::keyClicks(&filter, "bmz");
    EXPECT_EQ(filter.text(), "bmz");
    EXPECT_EQ(window_->renderFlags() & 8, 8);
    EXPECT_TRUE(child<QDockWidget>(*window_, "dockOverview").isVisible());
    EXPECT_FALSE(window_->zoomed()) << "the z stayed in the field too";
}

TEST_F(Navigation, OpenPanelsAreKeptInTheSettingsAndSurviveTheOptionsDialog) {
    start();
    auto& overview = child<QDockWidget>(*window_, "dockOverview");
    const int shortView = view().height();
    QTest::keyClick(&view(), Qt::Key_M);
    QApplication::processEvents();
    EXPECT_FALSE(overview.isVisible());
    // The level view takes the room the panel leaves.
    EXPECT_GT(view().height(), shortView + 40);
    EXPECT_EQ(window_->levelBuffer().height(), std::lrint((view().height() - 4) / 2.0));
    EXPECT_FALSE(action("itmViewOverview").isChecked());
    action("itmViewSpecialsList").trigger();
    clsConfiguration saved;
    saved.LoadConfiguration(settingsFile());
    EXPECT_EQ(std::get<std::string>(saved.ReadSetting("openPanels", 0, false)), "specials");

    whenModal([](QWidget& dialog) { static_cast<QDialog&>(dialog).accept(); });
    window_->toolsOptions();
    clsConfiguration afterOptions;
    afterOptions.LoadConfiguration(settingsFile());
    EXPECT_EQ(std::get<std::string>(afterOptions.ReadSetting("openPanels", 0, false)), "specials");

    // Closing a panel by its own button counts too.
    child<QDockWidget>(*window_, "dockSpecials").close();
    EXPECT_FALSE(action("itmViewSpecialsList").isChecked());
    clsConfiguration closed;
    closed.LoadConfiguration(settingsFile());
    EXPECT_EQ(std::get<std::string>(closed.ReadSetting("openPanels", 0, false)), "");

    action("itmViewHistory").trigger();
    EXPECT_TRUE(action("itmViewHistory").isChecked());
    clsConfiguration withHistory;
    withHistory.LoadConfiguration(settingsFile());
    EXPECT_EQ(std::get<std::string>(withHistory.ReadSetting("openPanels", 0, false)), "history");
}

TEST_F(Navigation, ClosingTheOverviewBesideTheSpecialsListTakesTheViewRangeOffTheStatusBar) {
    start();
    action("itmViewSpecialsList").trigger();
    const auto& range = child<QLabel>(*window_, "lblViewRange");
    EXPECT_TRUE(range.isVisible());
    child<QDockWidget>(*window_, "dockOverview").close();
    QApplication::processEvents();
    EXPECT_FALSE(range.isVisible());
    EXPECT_FALSE(action("itmViewOverview").isChecked());
    QTest::keyClick(&view(), Qt::Key_M);
    EXPECT_TRUE(range.isVisible());
}

TEST_F(Navigation, TheSpecialsListHasARowPerPlacedSpecialAndARowMovesTheView) {
    start();
    action("itmViewSpecialsList").trigger();
    const clsLevel& level = window_->openedLevel()->level;
    const auto placed = placedSpecials(level);
    ASSERT_FALSE(placed.empty()) << "the sample level has specials";
    auto& list = child<SpecialsListPanel>(*window_, "specialsList");
    auto& table = child<QTableView>(*window_, "lstSpecials");
    EXPECT_EQ(list.visibleRows(), int(placed.size()));
    EXPECT_TRUE(child<QLabel>(*window_, "lblSpecialCounts")
                    .text()
                    .startsWith(QString("%1 specials of ").arg(placed.size())));

    // Sorted by cell, row by row: the last row is the last special.
    const PlacedSpecial last = placed.back();
    table.selectRow(int(placed.size()) - 1);
    const std::int32_t pitch = level.tileSpacing;
    EXPECT_EQ(camera().x, std::clamp(last.x * pitch + 8 - camera().viewWidth / 2, 0, farRight()));
    EXPECT_EQ(camera().y, std::clamp(last.y * pitch + 8 - camera().viewHeight / 2, 0, farDown()));

    const int lastRow = int(placed.size()) - 1;
    EXPECT_EQ(table.model()->index(lastRow, 0).data().toInt(), last.id);
    EXPECT_EQ(table.model()->index(lastRow, 4).data().toInt(), specialCounts(placed)[last.id])
        << "how many of its kind";

    // It follows edits.
    const bool wasEmpty = level.cellAt(0, 0).special == 0;
    window_->currentDocument()->edit("Place Special", {0, 0, 0, 0},
                                     [](clsLevel& changed) { changed.cellAt(0, 0).special = 2; });
    EXPECT_EQ(list.visibleRows(), int(placed.size()) + (wasEmpty ? 1 : 0));
    auto& filter = child<QLineEdit>(*window_, "txtSpecialsFilter");
    filter.setText("no such special at all");
    EXPECT_EQ(list.visibleRows(), 0);
    filter.clear();
    EXPECT_EQ(list.visibleRows(), int(placedSpecials(level).size()));
}

TEST_F(Navigation, TypingInTheSpecialsFilterLeavesTheViewWhereItIs) {
    start();
    action("itmViewSpecialsList").trigger();
    auto& table = child<QTableView>(*window_, "lstSpecials");
    const int rows = table.model()->rowCount();
    ASSERT_GT(rows, 1);
    const QString firstName = table.model()->index(0, 1).data().toString();
    int other = rows - 1;
    while (other > 0 && table.model()->index(other, 1).data().toString() == firstName) {
        --other;
    }
    ASSERT_GT(other, 0) << "the sample level has specials of two kinds";
    const QString otherName = table.model()->index(other, 1).data().toString();

    table.selectRow(0);
    press(Qt::Key_End, Qt::ControlModifier);
    const auto parked = at();
    // The chosen row goes as the filter is typed; the view stays.
    QTest::keyClicks(&child<QLineEdit>(*window_, "txtSpecialsFilter"), otherName);
    ASSERT_GT(table.model()->rowCount(), 0);
    EXPECT_EQ(at(), parked);
    // A row clicked after the filter still moves the view there.
    const QModelIndex first = table.model()->index(0, 0);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(first).center());
    const int x = first.data(Qt::UserRole + 1).toInt();
    EXPECT_EQ(camera().x, std::clamp(x * 16 + 8 - camera().viewWidth / 2, 0, farRight()));
}

TEST_F(Navigation, GoToCellCentresTheViewThereAndTheCornerShowsTheCorner) {
    start();
    whenModal([](QWidget& dialog) {
        child<QSpinBox>(dialog, "udCellX").setValue(299);
        child<QSpinBox>(dialog, "udCellY").setValue(83);
        static_cast<QDialog&>(dialog).accept();
    });
    action("itmEditGoToCell").trigger();
    EXPECT_EQ(at(), std::pair(farRight(), farDown()));
    EXPECT_EQ(action("itmEditGoToCell").shortcut(), QKeySequence("Ctrl+G"));
    whenModal([](QWidget& dialog) {
        child<QSpinBox>(dialog, "udCellX").setValue(1000);
        static_cast<QDialog&>(dialog).reject();
    });
    window_->editGoToCell();
    EXPECT_EQ(at(), std::pair(farRight(), farDown())) << "cancel leaves the view";
}

TEST_F(Navigation, GoToCellKeepsANumberPastTheLevelAndSaysTheRange) {
    start();
    const auto parked = at();
    QString typed;
    QString said;
    bool okEnabled = true;
    bool stillOpen = false;
    whenModal([&](QWidget& dialog) {
        auto& column = child<QSpinBox>(dialog, "udCellX");
        column.setFocus();
        column.selectAll();
        QTest::keyClicks(&column, "999");
        typed = column.text();
        said = child<QLabel>(dialog, "lblRange").text();
        okEnabled = child<QPushButton>(dialog, "cmdOK").isEnabled();
        QTest::keyClick(&column, Qt::Key_Return);
        stillOpen = dialog.isVisible();
        static_cast<QDialog&>(dialog).reject();
    });
    action("itmEditGoToCell").trigger();
    EXPECT_EQ(typed, "999");
    EXPECT_EQ(said, "There is no column 999: x goes from 0 to 299.");
    EXPECT_FALSE(okEnabled);
    EXPECT_TRUE(stillOpen) << "Enter does not take a cell the level lacks";
    EXPECT_EQ(at(), parked);
}

} // namespace
} // namespace marvek::test
