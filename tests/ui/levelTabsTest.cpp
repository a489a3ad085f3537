#include "EditorFixture.h"

#include "app/autosave.h"
#include "data/clsLevel.h"
#include "ui/ToolBox.h"

#include <QStackedWidget>
#include <QTabBar>

namespace marvek::test {
namespace {

// The tabs alone, over the sample levels, with no main window around them.
class LevelTabsAlone : public EditorFixture {
protected:
    LevelTabsAlone() {
        shared_->runDataFolder = dataFolder();
        tabs_ = std::make_unique<LevelTabs>(ViewServices{*shared_, editing_, tools_}, parent_);
        parent_.resize(800, 600);
        parent_.show();
    }

    LevelDocument& open(const char* name) {
        OpenLevelRequest request;
        request.applicationFolder = appFolder();
        request.dataFolder = dataFolder();
        request.levelFile = name;
        request.configuration = "world1";
        return tabs_->add(std::make_unique<LevelDocument>(
            std::make_unique<OpenedLevel>(openLevel(request)), "world1", appFolder(),
            std::make_unique<QtSingleShotTimer>()));
    }

    static void paint(LevelDocument& document, std::int16_t tile) {
        document.edit("Paint", {0, 0, 0, 0},
                      [tile](clsLevel& level) { level.cellAt(0, 0).tile = tile; });
    }

    // How often each of the signals for the level in front was heard.
    struct Heard {
        int changed = 0;
        int state = 0;
        int cells = 0;
        int moved = 0;
    };
    void listen(Heard& heard) const {
        QObject::connect(tabs_.get(), &LevelTabs::currentChanged, [&heard] { ++heard.changed; });
        QObject::connect(tabs_.get(), &LevelTabs::currentStateChanged, [&heard] { ++heard.state; });
        QObject::connect(tabs_.get(), &LevelTabs::currentCellsChanged,
                         [&heard](const CellRange&) { ++heard.cells; });
        QObject::connect(tabs_.get(), &LevelTabs::currentViewMoved, [&heard] { ++heard.moved; });
    }

    QWidget parent_;
    EditingState editing_;
    ToolBox tools_{editing_};
    std::unique_ptr<LevelTabs> tabs_;
};

TEST_F(LevelTabsAlone, OnlyTheLevelInFrontSpeaksWhileEveryTabTitleFollowsItsOwnLevel) {
    LevelDocument& first = open("L1MA1");
    LevelDocument& second = open("L1MA2");
    ASSERT_EQ(tabs_->count(), 2);
    EXPECT_EQ(tabs_->current(), &second) << "a new tab comes to the front";
    Heard heard;
    listen(heard);

    paint(first, 3);
    EXPECT_EQ(heard.state, 0) << "the level behind says nothing to the window";
    EXPECT_EQ(heard.cells, 0);
    EXPECT_EQ(tabs_->bar().tabText(0), "L1MA1 *") << "but its tab shows the change";
    paint(second, 4);
    EXPECT_GT(heard.state, 0);
    EXPECT_EQ(heard.cells, 1);
    EXPECT_EQ(tabs_->bar().tabText(1), "L1MA2 *");

    second.undo();
    EXPECT_EQ(tabs_->bar().tabText(1), "L1MA2") << "back at the step the file holds";
    tabs_->switchTo(0);
    EXPECT_EQ(heard.changed, 1);
    EXPECT_EQ(tabs_->views().currentIndex(), 0) << "the view follows its tab";
    EXPECT_EQ(tabs_->currentView()->document().file(), first.file());
}

TEST_F(LevelTabsAlone, AnOpenFileIsFoundByAnyCaseAndTheStepsGoRoundTheEnds) {
    open("L1MA1");
    open("L1MA2");
    open("L2MA1");
    EXPECT_EQ(tabs_->indexOf("l1ma2"), 1);
    EXPECT_EQ(tabs_->indexOf(dataFolder() / "L2MA1"), 2);
    EXPECT_EQ(tabs_->indexOf("L3MA1"), std::nullopt);

    tabs_->step(1);
    EXPECT_EQ(tabs_->currentIndex(), 0);
    tabs_->step(-1);
    EXPECT_EQ(tabs_->currentIndex(), 2);

    // The tab after the closed one comes forward, with its view.
    tabs_->switchTo(1);
    tabs_->remove(1);
    EXPECT_EQ(tabs_->count(), 2);
    EXPECT_EQ(tabs_->current()->file(), tabs_->currentView()->document().file());
    EXPECT_EQ(tabs_->bar().tabText(tabs_->currentIndex()), "L2MA1");
}

TEST_F(LevelTabsAlone, GoingWithSeveralTabsOpenTellsNobodyOfTheViewsShownInTurn) {
    open("L1MA1");
    open("L1MA2");
    open("L2MA1");
    tabs_->switchTo(0);
    Heard heard;
    listen(heard);
    // Whoever listens may be half gone already: the window that owns the tabs.
    tabs_.reset();
    EXPECT_EQ(heard.changed, 0);
    EXPECT_EQ(heard.moved, 0);
}

} // namespace
} // namespace marvek::test
