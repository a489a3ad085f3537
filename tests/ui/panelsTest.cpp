#include "EditorFixture.h"

#include "data/floodFill.h"
#include "data/levelNavigation.h"
#include "data/levelOverview.h"
#include "specials/clsSpecialSet.h"
#include "ui/HistoryPanel.h"
#include "ui/OverviewPanel.h"
#include "ui/PictureBox.h"
#include "ui/SpecialsListPanel.h"

#include <QAction>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <tuple>

namespace marvek::test {
namespace {

constexpr int cellXRole = Qt::UserRole + 1;
constexpr int cellYRole = Qt::UserRole + 2;

// A listed row: cell, ID and the count shown beside it.
using Row = std::tuple<int, int, int, int>;

class Panels : public ShownEditorFixture {
protected:
    QTableView& table() const { return child<QTableView>(*window_, "lstSpecials"); }
    const clsLevel& level() const { return window_->openedLevel()->level; }
    std::pair<int, int> at() const { return {window_->levelCamera().x, window_->levelCamera().y}; }
    QPoint cell(int x, int y) const {
        const clsCamera& camera = window_->levelCamera();
        return {PictureBox::border + (16 * x + 8 - camera.x) * 2,
                PictureBox::border + (16 * y + 8 - camera.y) * 2};
    }

    std::vector<Row> listed() const {
        std::vector<Row> rows;
        const QAbstractItemModel& model = *table().model();
        for (int row = 0; row < model.rowCount(); ++row) {
            rows.emplace_back(model.index(row, 0).data(cellXRole).toInt(),
                              model.index(row, 0).data(cellYRole).toInt(),
                              model.index(row, 0).data().toInt(),
                              model.index(row, 4).data().toInt());
        }
        return rows;
    }
    // What the list shows of the level as it is, by cell.
    std::vector<Row> expected() const {
        const auto placed = placedSpecials(level());
        const auto counts = specialCounts(placed);
        std::vector<Row> rows;
        for (const PlacedSpecial& special : placed) {
            rows.emplace_back(special.x, special.y, special.id, counts[special.id]);
        }
        return rows;
    }
    std::pair<int, int> currentCell() const {
        const QModelIndex current = table().currentIndex();
        return {current.data(cellXRole).toInt(), current.data(cellYRole).toInt()};
    }
    // Somewhere without a special.
    QPoint emptyCell(int fromRow) const {
        for (int y = fromRow; y < level().height; ++y) {
            for (int x = 0; x < level().width; ++x) {
                if (level().cellAt(x, y).special == 0) {
                    return {x, y};
                }
            }
        }
        return {-1, -1};
    }
};

TEST_F(Panels, TheSpecialsListKeepsTheChosenRowTheListAndTheViewWhereTheyWereThroughEdits) {
    start();
    action("itmViewSpecialsList").trigger();
    ASSERT_EQ(listed(), expected());
    ASSERT_GT(listed().size(), 40U) << "the sample level has specials";
    const int middle = int(listed().size()) / 2;
    table().selectRow(middle);
    const auto chosen = currentCell();
    const auto parked = at();
    table().scrollTo(table().model()->index(middle - 5, 0), QAbstractItemView::PositionAtTop);
    const auto topCell = [this] {
        const QModelIndex top = table().indexAt(QPoint(0, 0));
        return std::pair(top.data(cellXRole).toInt(), top.data(cellYRole).toInt());
    };
    const auto top = topCell();
    const auto unmoved = [&](const char* edit) {
        EXPECT_EQ(listed(), expected()) << edit;
        EXPECT_EQ(currentCell(), chosen) << edit;
        EXPECT_TRUE(table().selectionModel()->isRowSelected(table().currentIndex().row())) << edit;
        EXPECT_EQ(at(), parked) << edit << ": the level view stays";
        EXPECT_EQ(topCell(), top) << edit << ": the list stays";
    };

    const QPoint first = emptyCell(0);
    window_->editLevel("Place Special",
                       [&](clsLevel& edited) { edited.cellAt(first.x(), first.y()).special = 2; });
    unmoved("a row above");
    const Row front = listed().front();
    window_->editLevel("Erase", [&](clsLevel& edited) {
        edited.cellAt(std::get<0>(front), std::get<1>(front)).special = 0;
    });
    unmoved("a row gone above");
    window_->editLevel("Place Special", [&](clsLevel& edited) {
        std::uint8_t& id = edited.cellAt(chosen.first, chosen.second).special;
        id = id == 2 ? 3 : 2;
    });
    unmoved("another special in the chosen cell");
    // Many rows at once, all over the list.
    window_->editLevel("Fill Specials", [](clsLevel& edited) {
        for (std::int32_t x = 0; x < edited.width; x += 2) {
            edited.cellAt(x, 0).special = edited.cellAt(x, 0).special == 0 ? 4 : 0;
            edited.cellAt(x, edited.height - 1).special = 5;
        }
    });
    unmoved("rows everywhere");
    while (!window_->history().nextUndo().empty()) {
        window_->editUndo();
    }
    unmoved("undone");

    // A special taken from the chosen cell takes the choice with it.
    window_->editLevel(
        "Erase", [&](clsLevel& edited) { edited.cellAt(chosen.first, chosen.second).special = 0; });
    EXPECT_FALSE(table().selectionModel()->hasSelection());
    EXPECT_EQ(at(), parked);
}

TEST_F(Panels, ABucketFillWithTheListOpenCountsEverySpecialInAnyOrder) {
    start();
    action("itmViewSpecialsList").trigger();
    QTest::keyClick(window_, Qt::Key_S);
    const clsSpecialSet& set = window_->openedLevel()->specialSet;
    QTest::mouseClick(&child<PictureBox>(*window_, "picPalette"), Qt::LeftButton, {},
                      {40, PictureBox::border + set.rowBottoms().front() + 1});
    window_->chooseTool(frmMain::Tool::bucketFill);
    const auto placedBefore = placedSpecials(level()).size();
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(5, 2));
    const auto placed = placedSpecials(level());
    ASSERT_GT(placed.size(), placedBefore + 1000) << "the sky holds thousands of cells";
    EXPECT_EQ(listed(), expected());
    const auto counts = specialCounts(placed);
    const auto kinds = std::ranges::count_if(counts, [](std::int32_t n) { return n != 0; });
    auto& footer = child<QLabel>(*window_, "lblSpecialCounts");
    EXPECT_EQ(footer.text(), QString("%1 specials of %2 kinds").arg(placed.size()).arg(kinds));
    window_->editUndo();
    EXPECT_EQ(listed(), expected());

    // Sorted by the count, most first: a fill moves whole kinds.
    table().sortByColumn(4, Qt::DescendingOrder);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, cell(5, 2));
    auto rows = listed();
    EXPECT_TRUE(std::ranges::is_sorted(
        rows, [](const Row& a, const Row& b) { return std::get<3>(a) > std::get<3>(b); }));
    std::ranges::sort(rows, [](const Row& a, const Row& b) {
        return std::tie(std::get<1>(a), std::get<0>(a)) < std::tie(std::get<1>(b), std::get<0>(b));
    });
    EXPECT_EQ(rows, expected());
    // Sorted by name, the rows of an edit land among their kind.
    table().sortByColumn(1, Qt::AscendingOrder);
    window_->editUndo();
    rows = listed();
    EXPECT_EQ(rows.size(), expected().size());
    const QAbstractItemModel& model = *table().model();
    for (int row = 1; row < model.rowCount(); ++row) {
        ASSERT_LE(model.index(row - 1, 1)
                      .data()
                      .toString()
                      .compare(model.index(row, 1).data().toString(), Qt::CaseInsensitive),
                  0);
    }

    // Filtered, the footer says how many of all are shown.
    const QString name = model.index(0, 1).data().toString();
    child<QLineEdit>(*window_, "txtSpecialsFilter").setText(name);
    EXPECT_EQ(footer.text(), QString("%1 of %2 specials shown")
                                 .arg(model.rowCount())
                                 .arg(placedSpecials(level()).size()));
    EXPECT_LT(model.rowCount(), int(placedSpecials(level()).size()));
}

TEST_F(Panels, HiddenPanelsDoNothingUntilShownThenCatchUp) {
    start();
    const auto& overview = child<OverviewPanel>(*window_, "picOverview");
    ASSERT_TRUE(overview.isVisible());
    action("itmViewOverview").trigger();
    ASSERT_FALSE(overview.isVisible());
    const std::vector<std::uint32_t> drawn(overview.overview().pixels().begin(),
                                           overview.overview().pixels().end());
    window_->editLevel("Fill", [](clsLevel& edited) {
        for (std::int32_t x = 0; x < edited.width; ++x) {
            edited.cellAt(x, 3).tile = 1;
            edited.cellAt(x, 3).special = 2;
        }
    });
    EXPECT_TRUE(std::ranges::equal(overview.overview().pixels(), drawn)) << "nothing drawn";
    EXPECT_EQ(window_->historyPanel().entries().size(), 0) << "the History panel waits too";
    EXPECT_TRUE(listed().empty()) << "the list has never been shown";

    action("itmViewOverview").trigger();
    action("itmViewSpecialsList").trigger();
    action("itmViewHistory").trigger();
    const OpenedLevel& opened = *window_->openedLevel();
    clsLevelOverview whole;
    whole.drawAll(level(), overviewColours(opened.tileSet, opened.specialSet),
                  overview.overview().cellPixels());
    EXPECT_TRUE(std::ranges::equal(overview.overview().pixels(), whole.pixels()));
    EXPECT_EQ(listed(), expected());
    EXPECT_EQ(window_->historyPanel().entries(), (QStringList{"Opened", "Fill"}));

    // Hidden again, an undo waits for the next showing.
    action("itmViewSpecialsList").trigger();
    window_->editUndo();
    EXPECT_NE(listed(), expected());
    action("itmViewSpecialsList").trigger();
    EXPECT_EQ(listed(), expected());
}

TEST_F(Panels, OnlyThePictureOfTheOverviewMovesTheView) {
    start();
    auto& overview = child<OverviewPanel>(*window_, "picOverview");
    window_->centreView(100, 30);
    const auto parked = at();
    // The margin: a corner (not (0, 0), which QTest takes for the middle),
    // and beside the picture.
    QTest::mouseClick(&overview, Qt::LeftButton, {}, QPoint(1, 1));
    const QPointF right = overview.cellPosition(300, 42);
    if (right.x() + 2 < overview.width()) {
        QTest::mouseClick(&overview, Qt::LeftButton, {},
                          QPoint(overview.width() - 1, int(right.y())));
    }
    EXPECT_EQ(at(), parked);
    // A press in the margin dragged onto the picture is no drag either.
    QTest::mousePress(&overview, Qt::LeftButton, {}, QPoint(1, 1));
    QTest::mouseMove(&overview, overview.cellPosition(150, 40).toPoint());
    QTest::mouseRelease(&overview, Qt::LeftButton, {}, overview.cellPosition(150, 40).toPoint());
    EXPECT_EQ(at(), parked);
    QTest::mouseClick(&overview, Qt::LeftButton, {},
                      overview.cellPosition(200, 40).toPoint() + QPoint(1, 1));
    EXPECT_NE(at(), parked);
}

} // namespace
} // namespace marvek::test
