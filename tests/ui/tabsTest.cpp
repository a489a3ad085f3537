#include "EditorFixture.h"

#include "app/qtPaths.h"
#include "data/clsLevel.h"
#include "ui/PictureBox.h"
#include "ui/ProgramEnd.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QWheelEvent>

namespace marvek::test {
namespace {

const QString closingQuestion = "The level has been modified since you last saved it. Do you "
                                "want to save it before quitting?";

class Tabs : public EditorFixture {
protected:
    frmMain& start() {
        frmMain& window = startEditor();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return window;
    }

    // File > Open in New Tab with the level dialog's OK.
    void openInNewTab(frmMain& window, const char* name) {
        dialogs_->fileAnswers = {{toQString(dataFolder() / name)}};
        whenModal([](QWidget& dialog) { dialog.findChild<QPushButton*>("cmdOk")->click(); });
        child<QAction>(window, "itmFileOpenInNewTab").trigger();
        // Keys reach only the active window; without a window manager the
        // dialog's hand-back may come late.
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    static void paint(frmMain& window, std::int16_t tile) {
        window.currentDocument()->edit("Paint", {0, 0, 0, 0},
                                       [tile](clsLevel& level) { level.cellAt(0, 0).tile = tile; });
    }
    static std::int16_t corner(const LevelDocument& document) {
        return document.level().cellAt(0, 0).tile;
    }
    static QString tabText(frmMain& window, int index) {
        return child<QTabBar>(window, "tabLevels").tabText(index);
    }
};

TEST_F(Tabs, LevelsOpenSideBySideWithTheirOwnHistoryAndTheKeysSwitchBetweenThem) {
    frmMain& window = start();
    const std::int16_t first = corner(*window.currentDocument());
    paint(window, 11);
    openInNewTab(window, "L1MA2");
    ASSERT_EQ(window.tabs().count(), 2);
    EXPECT_TRUE(messages_->shown.empty()) << "the first level stays as it is, unasked";
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA2[*]");
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(tabText(window, 0), "L1MA1 *");
    EXPECT_EQ(tabText(window, 1), "L1MA2");
    paint(window, 12);
    window.editUndo();
    EXPECT_TRUE(window.history().nextUndo().empty());

    QTest::keyClick(&window, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(window.tabs().currentIndex(), 0);
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_EQ(corner(*window.currentDocument()), 11) << "undo in the other tab left it alone";
    EXPECT_EQ(window.history().nextUndo(), "Paint");
    QTest::keyClick(&window, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(window.tabs().currentIndex(), 1);
    QTest::keyClick(&window, Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(window.tabs().currentIndex(), 0);
    window.editUndo();
    EXPECT_EQ(corner(*window.currentDocument()), first);

    // The same file again only brings its tab forward.
    dialogs_->fileAnswers = {{toQString(dataFolder() / "L1MA2")}};
    child<QAction>(window, "itmFileOpenInNewTab").trigger();
    EXPECT_EQ(window.tabs().count(), 2);
    EXPECT_EQ(window.tabs().currentIndex(), 1);
}

TEST_F(Tabs, ClosingATabAsksForItsLevelAndTheLastTabStays) {
    frmMain& window = start();
    openInNewTab(window, "L1MA2");
    paint(window, 13);
    messages_->answers = {messageAnswer::cancel};
    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(window.tabs().count(), 2);
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_EQ(messages_->shown[0].text, closingQuestion);

    // No lets the work go, and its recovery copy with it.
    writeBytes(dataFolder() / "L1MA2.recovered", readBytes(dataFolder() / "L1MA2"));
    messages_->answers = {messageAnswer::no};
    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(window.tabs().count(), 1);
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_FALSE(fs::exists(dataFolder() / "L1MA2.recovered"));

    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(window.tabs().count(), 1) << "the last tab stays";

    // A middle click closes the tab under it.
    openInNewTab(window, "L1MA2");
    auto& bar = child<QTabBar>(window, "tabLevels");
    QTest::mouseClick(&bar, Qt::MiddleButton, {}, bar.tabRect(0).center());
    EXPECT_EQ(window.tabs().count(), 1);
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA2[*]");
}

TEST_F(Tabs, QuitAsksForEachModifiedLevelAndATerminationKeepsThemAll) {
    frmMain& window = start();
    paint(window, 14);
    openInNewTab(window, "L1MA2");
    paint(window, 15);
    openInNewTab(window, "L2MA1");

    // Cancel at the second question stops the quit.
    messages_->answers = {messageAnswer::no, messageAnswer::cancel};
    EXPECT_FALSE(window.close());
    EXPECT_EQ(messages_->shown.size(), 2U);
    EXPECT_TRUE(window.isVisible());

    ProgramEnd ending(*shared_, *windows_);
    const QString kept = ending.beforeTermination();
    for (const char* name : {"L1MA1", "L1MA2"}) {
        const fs::path copy = dataFolder() / (std::string(name) + ".recovered");
        EXPECT_TRUE(fs::exists(copy)) << name;
        EXPECT_TRUE(kept.contains(toQString(copy))) << kept.toStdString();
    }
    EXPECT_FALSE(fs::exists(dataFolder() / "L2MA1.recovered")) << "nothing unsaved there";

    messages_->answers = {messageAnswer::no, messageAnswer::no};
    EXPECT_TRUE(window.close());
    EXPECT_EQ(messages_->shown.size(), 4U);
}

TEST_F(Tabs, UndoBackToTheSavedStepClearsTheStarAndAPaletteChangeIsAStep) {
    frmMain& window = start();
    LevelDocument& document = *window.currentDocument();
    paint(window, 16);
    EXPECT_TRUE(window.isWindowModified());
    window.editUndo();
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(tabText(window, 0), "L1MA1");
    messages_->answers = {};
    EXPECT_TRUE(window.close()) << "nothing to ask about";
    EXPECT_TRUE(messages_->shown.empty());

    clsPalette palette = document.opened().palette;
    const std::uint32_t before = palette.Entry(1);
    palette.setEntry(1, before ^ 0x00FFFFFFU);
    document.changePalette(palette);
    EXPECT_EQ(window.history().nextUndo(), "Edit Palette");
    EXPECT_TRUE(window.isWindowModified());
    window.editUndo();
    EXPECT_EQ(document.opened().palette.Entry(1), before);
    EXPECT_FALSE(window.isWindowModified());
    window.editRedo();
    EXPECT_EQ(document.opened().palette.Entry(1), before ^ 0x00FFFFFFU);
}

TEST_F(Tabs, AFileChangedOnDiskIsNoticedAndSaveAsksBeforeOverwritingIt) {
    frmMain& window = start();
    const fs::path file = dataFolder() / "L1MA1";
    paint(window, 17);
    // Another program writes the file a little later than this editor read it.
    const auto bytes = readBytes(file);
    writeBytes(file, bytes);
    fs::last_write_time(file, fs::last_write_time(file) + std::chrono::seconds(5));
    EXPECT_TRUE(QTest::qWaitFor([&] { return tabText(window, 0).contains("changed on disk"); }));

    messages_->answers = {messageAnswer::no};
    EXPECT_FALSE(window.files().save());
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_TRUE(messages_->shown[0].text.contains("changed by another program"));
    EXPECT_EQ(readBytes(file), bytes);

    // Reload asks first when there are unsaved changes, then reads the file.
    messages_->answers = {messageAnswer::yes};
    EXPECT_TRUE(window.files().reload());
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(tabText(window, 0), "L1MA1");
    paint(window, 18);
    messages_->answers = {};
    EXPECT_TRUE(window.files().save()) << "no question for a file this editor read last";
}

TEST_F(Tabs, ZoomKeepsTheCellUnderThePointerOrTheViewsCentre) {
    frmMain& window = start();
    LevelView& view = *window.currentView();
    PictureBox& picture = view.picture();
    window.centreView(150, 40);
    const QPoint at(300, 200);
    const auto cellUnder = [&view](QPoint point) {
        return QPoint((int(point.x() * 100 / view.zoom()) + view.camera().x) / 16,
                      (int(point.y() * 100 / view.zoom()) + view.camera().y) / 16);
    };
    const QPoint before = cellUnder(at);
    for (const int wanted : {300, 400, 400}) {
        QWheelEvent turn(QPointF(at + QPoint(PictureBox::border, PictureBox::border)), QPointF(),
                         QPoint(), QPoint(0, 120), Qt::NoButton, Qt::ControlModifier,
                         Qt::NoScrollPhase, false);
        QApplication::sendEvent(&picture, &turn);
        EXPECT_EQ(view.zoom(), wanted);
        EXPECT_EQ(cellUnder(at), before);
    }
    EXPECT_EQ(child<QLabel>(window, "lblZoom").text(), "Zoom 400%");

    const auto centre = [&view] {
        const CellRange shown = view.shownCells();
        return QPoint((shown.left + shown.right) / 2, (shown.top + shown.bottom) / 2);
    };
    const QPoint middle = centre();
    for (const int wanted : {300, 200, 100, 50, 25, 25}) {
        QTest::keyClick(&window, Qt::Key_Minus, Qt::ControlModifier);
        EXPECT_EQ(view.zoom(), wanted);
        if (wanted > 50) {
            EXPECT_LE((centre() - middle).manhattanLength(), 1) << wanted;
        }
    }
    // Every gesture works at every zoom: a click paints the cell under it.
    QApplication::processEvents();
    const QPoint target(10, 10);
    const QPoint pixel((16 * target.x() + 8 - view.camera().x) / 4 + PictureBox::border,
                       (16 * target.y() + 8 - view.camera().y) / 4 + PictureBox::border);
    QTest::mouseClick(&picture, Qt::LeftButton, {}, pixel);
    EXPECT_EQ(window.openedLevel()->level.cellAt(target.x(), target.y()).tile, 1);
    EXPECT_EQ(window.history().nextUndo(), "Paint");
    // Without the palette strip, a whole level fits a 1280-pixel window.
    child<QAction>(window, "itmViewPaletteStrip").trigger();
    window.resize(1280, 800);
    QApplication::processEvents();
    EXPECT_EQ(view.shownCells().left, 0);
    EXPECT_EQ(view.shownCells().right, 299);
    child<QAction>(window, "itmViewPaletteStrip").trigger();
    QTest::keyClick(&window, Qt::Key_Equal, Qt::ControlModifier);
    EXPECT_EQ(view.zoom(), 50);
    QTest::keyClick(&window, Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(view.zoom(), 200);
    QTest::keyClick(&window, Qt::Key_Z);
    EXPECT_EQ(view.zoom(), 100);
    EXPECT_EQ(window.levelBuffer().zoom(), 1);
}

} // namespace
} // namespace marvek::test
