// The main window's recovery copy, recent levels, dropped files and the
// level named on the command line.
#include "EditorFixture.h"

#include "app/LevelLock.h"
#include "ui/LevelDocument.h"

#include "app/autosave.h"
#include "app/recentLevels.h"
#include "data/clsLevel.h"
#include "data/levelRecovery.h"
#include "io/packedFile.h"
#include "ui/PictureBox.h"
#include "ui/frmOptions.h"

#include <QAction>
#include <QDateTime>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QUrl>

namespace marvek::test {
namespace {

using namespace std::chrono_literals;

// A timer the test fires by hand.
class HandTimer final : public SingleShotTimer {
public:
    void start(std::chrono::milliseconds delay) override {
        active = true;
        lastDelay = delay;
    }
    void stop() override { active = false; }
    bool isActive() const override { return active; }
    void onTimeout(std::function<void()> handler) override { handler_ = std::move(handler); }
    void fire() {
        active = false;
        handler_();
    }

    bool active = false;
    std::chrono::milliseconds lastDelay{0};

private:
    std::function<void()> handler_;
};

struct SavedLevel {
    clsLevel level;
    clsPalette palette;
};

SavedLevel readLevel(const fs::path& file) {
    SavedLevel read;
    auto stream = getFileBits(file);
    if (!read.level.loadFromBits(stream, read.palette)) {
        throw std::runtime_error(file.string() + ": not a level");
    }
    return read;
}

std::vector<std::uint32_t> entries(const clsPalette& palette) {
    std::vector<std::uint32_t> all;
    for (std::int32_t i = 0; i < palette.Count(); ++i) {
        all.push_back(palette.Entry(i));
    }
    return all;
}

void paintCorner(frmMain& window, std::int16_t tile) {
    window.currentDocument()->edit("Paint", {0, 0, 0, 0},
                                   [tile](clsLevel& level) { level.cellAt(0, 0).tile = tile; });
}

void clickOk(QWidget& dialog) {
    dialog.findChild<QPushButton*>("cmdOk")->click();
}

void setAge(const fs::path& file, std::chrono::seconds age) {
    fs::last_write_time(file, fs::file_time_type::clock::now() - age);
}

class Recovery : public EditorFixture {
protected:
    frmMain& startWithHandTimer() {
        frmMain& window = startEditor();
        auto timer = std::make_unique<HandTimer>();
        timer_ = timer.get();
        window.currentDocument()->setAutosaveTimer(std::move(timer));
        return window;
    }

    // The level as a recovery copy: the given corner tile and a changed colour.
    void leaveRecoveryCopy(std::int16_t tile, std::uint32_t colour) {
        SavedLevel kept = readLevel(level());
        kept.level.fileName = level().string();
        kept.level.cellAt(0, 0).tile = tile;
        kept.palette.setEntry(1, colour);
        writeRecoveryCopy(kept.level, kept.palette);
    }

    fs::path level() const { return dataFolder() / "L1MA1"; }
    fs::path copy() const { return dataFolder() / "L1MA1.recovered"; }

    HandTimer* timer_ = nullptr;
};

TEST_F(Recovery, UnsavedWorkIsKeptAfterTheTimerAndGoesOnSaveOrDiscard) {
    frmMain& window = startWithHandTimer();
    EXPECT_FALSE(timer_->active) << "nothing unsaved yet";
    paintCorner(window, 7);
    ASSERT_TRUE(timer_->active);
    EXPECT_LE(timer_->lastDelay, 30s);
    EXPECT_FALSE(fs::exists(copy())) << "not a write per edit";
    paintCorner(window, 8);
    timer_->fire();
    ASSERT_TRUE(fs::exists(copy()));
    EXPECT_EQ(readLevel(copy()).level.cellAt(0, 0).tile, 8);
    EXPECT_NE(readLevel(level()).level.cellAt(0, 0).tile, 8) << "never over the level";

    EXPECT_TRUE(window.files().save());
    EXPECT_FALSE(fs::exists(copy()));
    EXPECT_FALSE(timer_->active);

    // Undo after a save is unsaved work again; closing without saving drops it.
    window.editUndo();
    ASSERT_TRUE(timer_->active);
    timer_->fire();
    EXPECT_EQ(readLevel(copy()).level.cellAt(0, 0).tile, 7);
    messages_->answers = {messageAnswer::no};
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(fs::exists(copy()));
}

TEST_F(Recovery, ALongStrokeIsKeptAlsoAfterTheCopyMadeDuringIt) {
    frmMain& window = startWithHandTimer();
    auto& view = *window.findChild<PictureBox*>("picLevel");
    const auto cellPoint = [&](int x, int y) {
        const int pitch = window.openedLevel()->level.tileSpacing;
        const clsCamera& camera = window.levelCamera();
        return QPoint((x * pitch + 8 - camera.x) * 2, (y * pitch + 8 - camera.y) * 2);
    };
    QTest::mousePress(&view, Qt::LeftButton, {}, cellPoint(2, 3));
    ASSERT_TRUE(timer_->active);
    timer_->fire();
    const auto brushTile = static_cast<std::int16_t>(window.brush().at(0, 0));
    QMouseEvent move(QEvent::MouseMove, cellPoint(6, 3), view.mapToGlobal(cellPoint(6, 3)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &move);
    ASSERT_TRUE(timer_->active) << "the stroke's later cells wait for the next copy";
    timer_->fire();
    EXPECT_EQ(readLevel(copy()).level.cellAt(6, 3).tile, brushTile);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, cellPoint(6, 3));
}

TEST_F(Recovery, WorkNotSavedStaysKeptUntilAnotherLevelReallyReplacesIt) {
    frmMain& window = startWithHandTimer();
    paintCorner(window, 6);
    timer_->fire();
    ASSERT_TRUE(fs::exists(copy()));

    // No to saving, then a level that does not open, or no level chosen:
    // the work is still open, and still kept.
    const fs::path damaged = dataFolder() / "L1MA7";
    writeText(damaged, "not a level");
    dialogs_->fileAnswers = {{toQString(damaged)}};
    messages_->answers = {messageAnswer::no};
    whenModal(clickOk);
    EXPECT_FALSE(window.files().open());
    messages_->answers = {messageAnswer::no};
    EXPECT_FALSE(window.files().open());
    EXPECT_TRUE(window.openedLevel()->level.modified);
    EXPECT_TRUE(fs::exists(copy()));

    dialogs_->fileAnswers = {{toQString(dataFolder() / "L1MA2")}};
    messages_->answers = {messageAnswer::no};
    whenModal(clickOk);
    ASSERT_TRUE(window.files().open());
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA2[*]");
    EXPECT_FALSE(fs::exists(copy())) << "given up once another level replaced it";
}

TEST_F(Recovery, SaveAsTakesTheCopyOffTheFormerFile) {
    frmMain& window = startWithHandTimer();
    paintCorner(window, 9);
    timer_->fire();
    ASSERT_TRUE(fs::exists(copy()));
    const fs::path other = dataFolder() / "L1MA8";
    dialogs_->fileAnswers = {{toQString(other)}};
    ASSERT_TRUE(window.files().saveAs());
    EXPECT_FALSE(fs::exists(copy())) << "the work it held is saved";
    EXPECT_EQ(readLevel(other).level.cellAt(0, 0).tile, 9);

    // A copy the user left on an unchanged level is not this work's.
    leaveRecoveryCopy(5, 0x123456);
    setAge(level(), 1h);
    dialogs_->fileAnswers = {{toQString(level())}};
    messages_->answers = {messageAnswer::no};
    whenModal(clickOk);
    ASSERT_TRUE(window.files().open());
    ASSERT_EQ(messages_->shown.size(), 1U) << "the copy was offered";
    dialogs_->fileAnswers = {{toQString(other)}};
    ASSERT_TRUE(window.files().saveAs());
    EXPECT_TRUE(fs::exists(copy()));
}

TEST_F(Recovery, AFailingRecoveryCopyIsToldOnceAndAgainWhenItWorks) {
    frmMain& window = startWithHandTimer();
    paintCorner(window, 5);
    fs::create_directory(copy()); // nothing can be written in its place
    timer_->fire();
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_TRUE(messages_->shown[0].text.contains(toQString(copy())));
    EXPECT_EQ(messages_->shown[0].style, messageStyle::exclamation);
    EXPECT_TRUE(window.statusBar()->currentMessage().contains("could not be written"));
    EXPECT_TRUE(window.openedLevel()->level.modified);

    paintCorner(window, 6);
    EXPECT_TRUE(timer_->active) << "the next change tries again";
    timer_->fire();
    EXPECT_EQ(messages_->shown.size(), 1U) << "no box at every retry";

    fs::remove(copy());
    paintCorner(window, 7);
    timer_->fire();
    ASSERT_EQ(messages_->shown.size(), 2U);
    EXPECT_TRUE(messages_->shown[1].text.contains("written again"));
    EXPECT_EQ(readLevel(copy()).level.cellAt(0, 0).tile, 7);
    paintCorner(window, 8);
    timer_->fire();
    EXPECT_EQ(messages_->shown.size(), 2U) << "working is only told after a failure";
}

TEST_F(Recovery, ALevelAnotherEditorHoldsOpensReadOnlyAndLeavesItsCopyAlone) {
    // The other editor's lock, and its work kept beside the level.
    const LevelLock other(level());
    ASSERT_TRUE(other.held());
    leaveRecoveryCopy(9, 0x00123456);
    setAge(level(), 1h);
    const auto theirCopy = readBytes(copy());
    const auto saved = readBytes(level());

    messages_->answers = {messageAnswer::yes};
    frmMain& window = startWithHandTimer();
    ASSERT_EQ(messages_->shown.size(), 1U) << "asked about the lock, not about the copy";
    EXPECT_EQ(messages_->shown[0].style, messageStyle::yesNoQuestion);
    EXPECT_TRUE(
        messages_->shown[0].text.contains("L1MA1 is open in another editor (process " +
                                          QString::number(QCoreApplication::applicationPid())));
    EXPECT_TRUE(window.isReadOnly());
    EXPECT_TRUE(window.windowTitle().contains("(read-only)"));

    paintCorner(window, 5);
    EXPECT_FALSE(window.files().save());
    EXPECT_FALSE(window.files().saveAs());
    EXPECT_TRUE(dialogs_->fileRequests.empty());
    ASSERT_EQ(messages_->shown.size(), 3U);
    EXPECT_TRUE(messages_->shown[1].text.contains("read-only"));
    timer_->fire();
    EXPECT_TRUE(window.files().keepUnsavedWork().contains("not kept"));
    messages_->answers = {messageAnswer::no};
    EXPECT_TRUE(window.close());
    EXPECT_EQ(readBytes(level()), saved);
    EXPECT_EQ(readBytes(copy()), theirCopy) << "only the holder writes or removes it";
}

TEST_F(Recovery, DecliningALevelAnotherEditorHoldsKeepsTheOpenOne) {
    frmMain& window = startEditor();
    EXPECT_FALSE(window.isReadOnly());
    EXPECT_FALSE(LevelLock(level()).held()) << "the editor holds its level";

    const fs::path second = dataFolder() / "L1MA2";
    const LevelLock other(second);
    dialogs_->fileAnswers = {{toQString(second)}};
    messages_->answers = {messageAnswer::no};
    answerModals({clickOk});
    EXPECT_FALSE(window.files().open());
    ASSERT_EQ(messages_->shown.size(), 2U);
    EXPECT_TRUE(messages_->shown[1].text.contains("left to that editor"));
    EXPECT_EQ(window.openedLevel()->level.fileName, level().string());
    EXPECT_FALSE(LevelLock(level()).held()) << "still held after the refusal";

    windows_.reset();
    EXPECT_TRUE(LevelLock(level()).held()) << "let go when the editor ends";
}

TEST_F(Recovery, SaveAsHoldsTheNewFileAndLeavesAFileAnotherEditorHolds) {
    frmMain& window = startEditor();
    paintCorner(window, 5);
    const fs::path theirs = dataFolder() / "L1MA2";
    const auto theirBytes = readBytes(theirs);
    {
        const LevelLock other(theirs);
        dialogs_->fileAnswers = {{toQString(theirs)}};
        EXPECT_FALSE(window.files().saveAs());
        ASSERT_EQ(messages_->shown.size(), 1U);
        EXPECT_TRUE(messages_->shown[0].text.contains("L1MA2 is open in another editor"));
        EXPECT_EQ(readBytes(theirs), theirBytes);
        EXPECT_TRUE(window.isWindowModified());
        EXPECT_EQ(window.openedLevel()->level.fileName, level().string());
    }

    const fs::path mine = dataFolder() / "L1MA9";
    dialogs_->fileAnswers = {{toQString(mine)}};
    ASSERT_TRUE(window.files().saveAs());
    EXPECT_FALSE(LevelLock(mine).held()) << "the new file is held from the save on";
    EXPECT_TRUE(LevelLock(level()).held()) << "the former file is let go";
}

TEST_F(Recovery, ANewerCopyIsOfferedAndYesGivesBackItsCellsAndPalette) {
    frmMain& window = startEditor();
    const SavedLevel saved = readLevel(level());
    const std::uint32_t colour = saved.palette.Entry(1) ^ 0x00F0F0F0U;
    leaveRecoveryCopy(13, colour);
    setAge(level(), 1h);
    const SavedLevel expected = readLevel(copy());
    ASSERT_NE(entries(expected.palette), entries(saved.palette));

    messages_->answers = {messageAnswer::yes};
    ASSERT_TRUE(window.useConfig(level(), "world1", false));
    ASSERT_EQ(messages_->shown.size(), 1U);
    const QString date =
        QFileInfo(toQString(copy())).lastModified().toString("yyyy-MM-dd HH:mm:ss");
    EXPECT_EQ(messages_->shown[0].text,
              "Marvek kept unsaved changes to L1MA1 from " + date + ". Open them?");
    EXPECT_EQ(messages_->shown[0].style, messageStyle::yesNoQuestion);

    const OpenedLevel& opened = *window.openedLevel();
    EXPECT_TRUE(opened.level.modified);
    EXPECT_EQ(opened.level.fileName, level().string()) << "Save goes to the level itself";
    EXPECT_EQ(opened.level.cellAt(0, 0).tile, 13);
    EXPECT_TRUE(std::ranges::equal(
        opened.level.cells(), expected.level.cells(),
        [](const Cell& a, const Cell& b) { return a.tile == b.tile && a.special == b.special; }));
    EXPECT_EQ(entries(opened.palette), entries(expected.palette));
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_TRUE(window.isWindowModified());

    // Saving makes it the level and the copy goes.
    ASSERT_TRUE(window.files().save());
    EXPECT_FALSE(fs::exists(copy()));
    EXPECT_EQ(readLevel(level()).level.cellAt(0, 0).tile, 13);
}

TEST_F(Recovery, NoOpensTheSavedLevelAndAnOlderCopyIsNotOffered) {
    frmMain& window = startEditor();
    const std::int16_t savedTile = readLevel(level()).level.cellAt(0, 0).tile;
    leaveRecoveryCopy(14, 0x00123456U);
    setAge(level(), 1h);
    const auto kept = readBytes(copy());

    messages_->answers = {messageAnswer::no};
    ASSERT_TRUE(window.useConfig(level(), "world1", false));
    EXPECT_EQ(messages_->shown.size(), 1U);
    EXPECT_EQ(window.openedLevel()->level.cellAt(0, 0).tile, savedTile);
    EXPECT_FALSE(window.openedLevel()->level.modified);
    EXPECT_EQ(readBytes(copy()), kept) << "the copy stays for another time";

    // A copy older than the level was overtaken by a save.
    setAge(copy(), 2h);
    ASSERT_TRUE(window.useConfig(level(), "world1", false));
    EXPECT_EQ(messages_->shown.size(), 1U) << "nothing asked";
    EXPECT_EQ(window.openedLevel()->level.cellAt(0, 0).tile, savedTile);
}

TEST_F(Recovery, ACopyThatDoesNotReadLeavesTheSavedLevelOpen) {
    frmMain& window = startEditor();
    const std::int16_t savedTile = readLevel(level()).level.cellAt(0, 0).tile;
    writeBytes(copy(), {'I', 'M', 'P', '!', 0, 0, 0, 1});
    setAge(level(), 1h);
    messages_->answers = {messageAnswer::yes};
    ASSERT_TRUE(window.useConfig(level(), "world1", false));
    ASSERT_EQ(messages_->shown.size(), 2U);
    EXPECT_TRUE(messages_->shown[1].text.contains(toQString(copy())))
        << messages_->shown[1].text.toStdString();
    EXPECT_EQ(window.openedLevel()->level.cellAt(0, 0).tile, savedTile);
    EXPECT_FALSE(window.openedLevel()->level.modified);
}

using RecentLevelsMenu = EditorFixture;

QMenu& recentMenu(QWidget& window) {
    return child<QMenu>(window, "mnuFileRecent");
}

QStringList captions(QMenu& menu) {
    QStringList all;
    for (const QAction* action : menu.actions()) {
        all << action->text();
    }
    return all;
}

TEST_F(RecentLevelsMenu, OpenedLevelsAreListedLatestFirstAndChosenAgain) {
    frmMain& window = startEditor();
    EXPECT_FALSE(recentMenu(window).isEnabled()) << "the default level is not one the user chose";
    for (const char* name : {"L1MA2", "L1MA1", "L1MA2"}) {
        dialogs_->fileAnswers = {{toQString(dataFolder() / name)}};
        whenModal(clickOk);
        ASSERT_TRUE(window.files().open());
    }
    EXPECT_EQ(captions(recentMenu(window)),
              (QStringList{"&1 L1MA2 (world1)", "&2 L1MA1 (world1)"}));

    // Kept in the settings file at once, and the options' OK keeps them.
    const auto inFile = [this] {
        clsConfiguration settings;
        settings.LoadConfiguration(settingsFile());
        return RecentLevels::readFrom(settings).levels();
    };
    ASSERT_EQ(inFile().size(), 2U);
    EXPECT_EQ(inFile()[0].file, dataFolder() / "L1MA2");
    whenModal(clickOk);
    window.toolsOptions();
    EXPECT_EQ(inFile().size(), 2U);

    // Choosing the second opens it with its configuration, and it comes first.
    child<QAction>(window, "itmFileRecent2").trigger();
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_EQ(captions(recentMenu(window)),
              (QStringList{"&1 L1MA1 (world1)", "&2 L1MA2 (world1)"}));
    EXPECT_TRUE(messages_->shown.empty());
}

TEST_F(RecentLevelsMenu, ALevelThatIsGoneIsTakenOffWithAMessage) {
    const fs::path gone = dataFolder() / "L1MA2";
    frmMain& window = startEditor();
    for (const fs::path& file : {dataFolder() / "L1MA1", gone}) {
        dialogs_->fileAnswers = {{toQString(file)}};
        whenModal(clickOk);
        ASSERT_TRUE(window.files().open());
    }
    EXPECT_EQ(recentMenu(window).actions().size(), 2);
    fs::remove(gone);
    paintCorner(window, 3);

    EXPECT_FALSE(window.files().openRecent(0));
    ASSERT_EQ(messages_->shown.size(), 1U) << "nothing asked about the changes first";
    EXPECT_EQ(messages_->shown[0].text,
              toQString(gone) + " no longer exists, so it was taken off the recent levels.");
    EXPECT_EQ(messages_->shown[0].style, messageStyle::exclamation);
    EXPECT_EQ(captions(recentMenu(window)), (QStringList{"&1 L1MA1 (world1)"}));
    EXPECT_TRUE(window.openedLevel()->level.modified) << "the open level is untouched";
}

TEST_F(RecentLevelsMenu, ADroppedLevelOpensInANewTabOrBringsItsOpenTabForward) {
    frmMain& window = startEditor();
    paintCorner(window, 4);
    QMimeData data;
    // As a desktop delivers it: the drag comes in, then the drop.
    const auto dropOn = [&](QWidget& target, const fs::path& file) {
        data.setUrls({QUrl::fromLocalFile(toQString(file))});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &drop);
    };

    // Nothing is asked about the modified level: it stays in its tab.
    whenModal([](QWidget& dialog) {
        EXPECT_EQ(dialog.objectName(), "frmOpenLevel");
        clickOk(dialog);
    });
    dropOn(window, dataFolder() / "L1MA2");
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA2[*]");
    EXPECT_EQ(window.tabs().count(), 2);
    EXPECT_TRUE(messages_->shown.empty());
    EXPECT_EQ(recentMenu(window).actions().size(), 1);

    // The open level, even named in other capitals, only comes forward.
    dropOn(window, dataFolder() / "l1ma1");
    EXPECT_EQ(window.tabs().count(), 2);
    EXPECT_EQ(window.tabs().currentIndex(), 0);
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_TRUE(window.isWindowModified()) << "its edits are still there";

    // Two files at once are not a level.
    QMimeData two;
    two.setUrls({QUrl::fromLocalFile("/a"), QUrl::fromLocalFile("/b")});
    QDragEnterEvent refused(QPoint(10, 10), Qt::CopyAction, &two, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &refused);
    EXPECT_FALSE(refused.isAccepted());
}

TEST_F(RecentLevelsMenu, TheCommandLineLevelOpensWithItsConfigurationForThisRunOnly) {
    // The level lives outside the data folder of the settings.
    const fs::path elsewhere = root_.path() / "elsewhere";
    fs::create_directories(elsewhere);
    fs::copy(dataFolder() / "L1MA2", elsewhere / "L1MA2");
    for (const auto& entry : fs::directory_iterator(dataFolder())) {
        if (!fs::exists(elsewhere / entry.path().filename())) {
            fs::copy(entry.path(), elsewhere / entry.path().filename(),
                     fs::copy_options::recursive);
        }
    }
    shared_->startupLevel = elsewhere / "L1MA2";
    shared_->startupConfiguration = "world1";
    shared_->runDataFolder = elsewhere;
    frmMain& window = startEditor();
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA2[*]");
    EXPECT_EQ(window.openedLevel()->tileFile.parent_path(), elsewhere);
    EXPECT_EQ(captions(recentMenu(window)), (QStringList{"&1 L1MA2 (world1)"}));

    whenModal(clickOk);
    window.toolsOptions();
    clsConfiguration settings;
    settings.LoadConfiguration(settingsFile());
    EXPECT_EQ(settingText(settings, settingKey::thornwickData, {}), dataFolder().string());
}

TEST_F(RecentLevelsMenu, ACommandLineLevelThatDoesNotOpenFallsBackToTheDefault) {
    const fs::path elsewhere = root_.path() / "elsewhere";
    fs::create_directories(elsewhere);
    shared_->startupLevel = elsewhere / "NOSUCH";
    shared_->runDataFolder = elsewhere;
    frmMain& window = startEditor();
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_TRUE(messages_->shown[0].text.contains("NOSUCH"));
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_EQ(dialogs_->lastFolder().toStdString(), dataFolder().string())
        << "file dialogs open in the folder in use";
}

TEST_F(RecentLevelsMenu, ACommandLineFolderWithoutTheDefaultLevelGivesWayAfterTheOptions) {
    const fs::path empty = root_.path() / "empty";
    fs::create_directories(empty);
    shared_->runDataFolder = empty;
    int optionsShown = 0;
    const auto answer = [&optionsShown](QWidget& dialog) {
        ++optionsShown;
        dialog.findChild<QPushButton*>(optionsShown == 1 ? "cmdOk" : "cmdCancel")->click();
    };
    answerModals({answer, answer});
    frmMain& window = startEditor();
    EXPECT_EQ(optionsShown, 1) << "OK in the options is enough";
    EXPECT_TRUE(messages_->shown.front().text.contains(toQString(empty / "L1MA1")));
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_EQ(window.openedLevel()->tileFile.parent_path(), dataFolder());
    // The answer still waiting goes to a dialog of this test.
    window.toolsOptions();
    EXPECT_EQ(optionsShown, 2);
}

TEST_F(RecentLevelsMenu, ACommandLineFolderThatDoesNotExistGivesWayToTheSettingsOne) {
    // As a mistyped "marvek /wrong/L1MA2" names it: the options cannot change
    // this run's folder, so asking for them would never end.
    const fs::path gone = root_.path() / "gone";
    shared_->startupLevel = gone / "L1MA2";
    shared_->runDataFolder = gone;
    int optionsShown = 0;
    whenModal([&optionsShown](QWidget& dialog) {
        ++optionsShown;
        dialog.findChild<QPushButton*>("cmdCancel")->click();
    });
    frmMain& window = startEditor();
    EXPECT_EQ(optionsShown, 0);
    ASSERT_EQ(messages_->shown.size(), 2U);
    EXPECT_TRUE(messages_->shown[0].text.startsWith(toQString(gone) + ": "));
    EXPECT_TRUE(messages_->shown[1].text.contains("L1MA2"));
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_EQ(dialogs_->lastFolder().toStdString(), dataFolder().string());
    // The answer still waiting goes to a dialog of this test.
    window.toolsOptions();
    EXPECT_EQ(optionsShown, 1);
}

} // namespace
} // namespace marvek::test
