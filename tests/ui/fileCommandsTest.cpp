#include "EditorFixture.h"

#include "ui/LevelDocument.h"

#include "data/clsLevel.h"
#include "io/packedFile.h"
#include "ui/MarvekApplication.h"
#include "ui/ProgramEnd.h"
#include "ui/frmStatus.h"

#include <QAction>
#include <QPushButton>

#include <algorithm>

namespace marvek::test {
namespace {

using FileCommands = EditorFixture;

void run(QWidget& window, const char* command) {
    auto* action = window.findChild<QAction*>(command);
    if (action == nullptr) {
        throw std::runtime_error(std::string("no command ") + command);
    }
    action->trigger();
}

std::vector<std::uint8_t> unpacked(const fs::path& file) {
    const ExplodeResult result = explodeFile(file);
    if (!result.buffer) {
        throw std::runtime_error(file.string() + ": " + result.failure);
    }
    const auto data = result.buffer->data();
    return {data.begin(), data.end()};
}

std::string magic(const fs::path& file) {
    const auto bytes = readBytes(file);
    return {bytes.begin(), bytes.begin() + 4};
}

void paintCorner(frmMain& window, std::int16_t tile) {
    window.currentDocument()->edit("Paint", {0, 0, 0, 0},
                                   [tile](clsLevel& level) { level.cellAt(0, 0).tile = tile; });
}

void clickOkOnOpenLevel(QWidget& dialog) {
    EXPECT_EQ(dialog.objectName(), "frmOpenLevel");
    dialog.findChild<QPushButton*>("cmdOk")->click();
}

TEST_F(FileCommands, SavingAnUnchangedLevelKeepsItsBytesAndMagic) {
    const fs::path file = dataFolder() / "L1MA1";
    const auto before = unpacked(file);
    const std::string magicBefore = magic(file);
    frmMain& window = startEditor();
    run(window, "itmFileSave");
    EXPECT_TRUE(messages_->shown.empty());
    EXPECT_EQ(unpacked(file), before);
    EXPECT_EQ(magic(file), magicBefore);
    EXPECT_TRUE(dialogs_->fileRequests.empty()) << "a named level saves without asking";
}

TEST_F(FileCommands, SaveAsWritesTheNewFileAndFollowsIt) {
    frmMain& window = startEditor();
    paintCorner(window, 7);
    EXPECT_TRUE(window.isWindowModified());
    const fs::path copy = dataFolder() / "L1MA9";
    dialogs_->fileAnswers = {{toQString(copy)}};
    run(window, "itmFileSaveAs");
    ASSERT_EQ(dialogs_->fileRequests.size(), 1U);
    const auto& request = dialogs_->fileRequests[0];
    EXPECT_EQ(request.title, "Save Thornwick Level As");
    EXPECT_EQ(request.filters, QStringList{"All files (*)"});
    EXPECT_EQ(request.flags, 0x8006);
    EXPECT_EQ(request.initialName, "L1MA1");
    EXPECT_EQ(magic(copy), "IMP!") << "a new file gets IMP!";
    EXPECT_EQ(unpacked(copy)[0], 'W');
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA9[*]");
    EXPECT_EQ(window.openedLevel()->level.fileName, copy.string());
}

TEST_F(FileCommands, AFailedSaveNamesTheFileAndKeepsTheLevelModified) {
    frmMain& window = startEditor();
    paintCorner(window, 7);
    const fs::path nowhere = dataFolder() / "missing" / "L1MA1";
    dialogs_->fileAnswers = {{toQString(nowhere)}};
    run(window, "itmFileSaveAs");
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_TRUE(messages_->shown[0].text.contains(toQString(nowhere)));
    EXPECT_EQ(messages_->shown[0].style, messageStyle::exclamation);
    EXPECT_TRUE(window.openedLevel()->level.modified);
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(window.openedLevel()->level.fileName, (dataFolder() / "L1MA1").string())
        << "Save goes on meaning the level's own file";
    EXPECT_EQ(dialogs_->lastFolder(), toQString(dataFolder()))
        << "the next file dialog opens where the last good choice was";
}

// The reader fills in what a short body lacks, so such a level opens.
void claimSize(const fs::path& file, std::uint32_t width, std::uint32_t height) {
    auto bytes = unpacked(file);
    const auto setLong = [&bytes](const char* id, std::uint32_t value) {
        auto at = std::search(bytes.begin(), bytes.end(), id, id + 4) + 8;
        for (int shift = 24; shift >= 0; shift -= 8) {
            *at++ = static_cast<std::uint8_t>(value >> shift);
        }
    };
    setLong("XBLK", width);
    setLong("YBLK", height);
    writeBytes(file, bytes);
}

TEST_F(FileCommands, ALevelTheFormatCannotHoldIsNeverSaved) {
    const fs::path file = dataFolder() / "L1MA1";
    claimSize(file, 1024, 1024);
    const auto before = readBytes(file);
    frmMain& window = startEditor();
    ASSERT_EQ(window.openedLevel()->level.width, 1024);
    messages_->shown.clear(); // the repairs made while loading
    paintCorner(window, 7);

    run(window, "itmFileSave");
    run(window, "itmFileSaveAs");
    ASSERT_EQ(messages_->shown.size(), 2U);
    for (const auto& shown : messages_->shown) {
        EXPECT_TRUE(shown.text.contains("1024 x 1024 = 1048576 cells")) << shown.text.toStdString();
        EXPECT_TRUE(shown.text.contains("25,200")) << shown.text.toStdString();
        EXPECT_EQ(shown.style, messageStyle::exclamation);
    }
    EXPECT_TRUE(dialogs_->fileRequests.empty()) << "no name can make it savable";
    EXPECT_EQ(readBytes(file), before);
    EXPECT_TRUE(window.isWindowModified());
}

TEST_F(FileCommands, FileDialogsFollowTheDataFolderUntilTheUserChoosesAnother) {
    frmMain& window = startEditor();
    EXPECT_EQ(dialogs_->lastFolder(), toQString(dataFolder()));
    const fs::path moved = root_.path() / "moved";
    fs::copy(dataFolder(), moved, fs::copy_options::recursive);
    const auto browseTo = [this](const fs::path& folder) {
        whenModal([this, folder](QWidget& options) {
            dialogs_->folderAnswers = {toQString(folder)};
            child<QPushButton>(options, "cmdBrowseDataPath").click();
            child<QPushButton>(options, "cmdOk").click();
        });
    };
    browseTo(moved);
    window.toolsOptions();
    EXPECT_EQ(dialogs_->lastFolder(), toQString(moved));

    // A file the user chose elsewhere wins over the data folder.
    dialogs_->fileAnswers = {{toQString(root_.path() / "L1MA7")}};
    run(window, "itmFileSaveAs");
    browseTo(dataFolder());
    window.toolsOptions();
    EXPECT_EQ(dialogs_->lastFolder(), toQString(root_.path()));
}

TEST_F(FileCommands, OpenAsksAboutChangesAndHonoursEachAnswer) {
    frmMain& window = startEditor();
    const fs::path second = dataFolder() / "L1MA2";
    const auto savedFirst = unpacked(dataFolder() / "L1MA1");

    // Cancel: nothing is asked for and nothing changes.
    paintCorner(window, 9);
    messages_->answers = {messageAnswer::cancel};
    EXPECT_FALSE(window.files().open());
    EXPECT_TRUE(dialogs_->fileRequests.empty());
    EXPECT_EQ(window.openedLevel()->level.cellAt(0, 0).tile, 9);

    // No: the other level opens and the change is dropped.
    messages_->answers = {messageAnswer::no};
    dialogs_->fileAnswers = {{toQString(second)}};
    whenModal(clickOkOnOpenLevel);
    EXPECT_TRUE(window.files().open());
    EXPECT_EQ(messages_->shown.back().text,
              "The level has been modified since you last saved it. Do you want to save it first "
              "before loading another?");
    EXPECT_EQ(messages_->shown.back().style, messageStyle::yesNoCancelQuestion);
    const auto& request = dialogs_->fileRequests.back();
    EXPECT_EQ(request.title, "Open Thornwick Level");
    EXPECT_EQ(request.flags, 0x281204);
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA2[*]");
    EXPECT_EQ(unpacked(dataFolder() / "L1MA1"), savedFirst);
    EXPECT_FALSE(window.history().nextUndo().size()) << "a new level starts a new history";

    // Yes: the change is saved before the next level opens.
    paintCorner(window, 11);
    messages_->answers = {messageAnswer::yes};
    dialogs_->fileAnswers = {{toQString(dataFolder() / "L1MA1")}};
    whenModal(clickOkOnOpenLevel);
    EXPECT_TRUE(window.files().open());
    EXPECT_EQ(window.windowTitle(), "Marvek - L1MA1[*]");
    clsLevel reread;
    clsPalette palette;
    auto stream = getFileBits(second);
    ASSERT_TRUE(reread.loadFromBits(stream, palette));
    EXPECT_EQ(reread.cellAt(0, 0).tile, 11);
}

TEST_F(FileCommands, AFailedOpenKeepsTheLevelItsEditsAndItsHistory) {
    frmMain& window = startEditor();
    paintCorner(window, 5);
    const OpenedLevel* before = window.openedLevel();
    messages_->answers = {messageAnswer::no};
    const fs::path notALevel = dataFolder() / "MPIC";
    dialogs_->fileAnswers = {{toQString(notALevel)}};
    whenModal(clickOkOnOpenLevel);
    EXPECT_FALSE(window.files().open());
    ASSERT_FALSE(messages_->shown.empty());
    EXPECT_TRUE(messages_->shown.back().text.contains(toQString(notALevel)))
        << messages_->shown.back().text.toStdString();
    EXPECT_EQ(window.openedLevel(), before);
    EXPECT_EQ(window.openedLevel()->level.cellAt(0, 0).tile, 5);
    EXPECT_TRUE(window.isEnabled());
    EXPECT_FALSE(windows_->status()->isVisible());
    EXPECT_EQ(window.history().nextUndo(), "Paint");
    run(window, "itmEditUndo");
    EXPECT_NE(window.openedLevel()->level.cellAt(0, 0).tile, 5) << "the history still fits";
    EXPECT_EQ(window.history().nextRedo(), "Paint");
    run(window, "itmEditRedo");
    EXPECT_EQ(window.openedLevel()->level.cellAt(0, 0).tile, 5);
}

TEST_F(FileCommands, UndoAndRedoNameTheirStepAndAreOffWhenEmpty) {
    frmMain& window = startEditor();
    auto* undo = window.findChild<QAction*>("itmEditUndo");
    auto* redo = window.findChild<QAction*>("itmEditRedo");
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_FALSE(redo->isEnabled());
    paintCorner(window, 3);
    EXPECT_TRUE(undo->isEnabled());
    EXPECT_EQ(undo->text(), "&Undo Paint");
    EXPECT_EQ(undo->shortcut(), QKeySequence("Ctrl+Z"));
    EXPECT_EQ(redo->shortcuts(),
              (QList<QKeySequence>{QKeySequence("Ctrl+Y"), QKeySequence("Ctrl+Shift+Z")}));
    undo->trigger();
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_EQ(redo->text(), "&Redo Paint");
}

TEST_F(FileCommands, ClosingAsksAndOnlyAFinishedSaveLetsGo) {
    frmMain& window = startEditor();
    paintCorner(window, 4);
    messages_->answers = {messageAnswer::cancel};
    EXPECT_FALSE(window.close());
    EXPECT_EQ(messages_->shown.back().text,
              "The level has been modified since you last saved it. Do you want to save it "
              "before quitting?");

    // Yes with a save that fails keeps the window open and the work.
    const fs::path file = dataFolder() / "L1MA1";
    const fs::path aside = dataFolder() / "aside";
    fs::rename(file, aside);
    fs::create_directory(file);
    messages_->answers = {messageAnswer::yes};
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.openedLevel()->level.modified);
    EXPECT_EQ(messages_->shown.back().style, messageStyle::exclamation);
    fs::remove(file);
    fs::rename(aside, file);

    messages_->answers = {messageAnswer::yes};
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.openedLevel()->level.modified);
}

TEST_F(FileCommands, ClosingWithoutSavingAnswersNo) {
    frmMain& window = startEditor();
    const auto before = unpacked(dataFolder() / "L1MA1");
    paintCorner(window, 4);
    messages_->answers = {messageAnswer::no};
    EXPECT_TRUE(window.close());
    EXPECT_EQ(unpacked(dataFolder() / "L1MA1"), before);
}

// The level file's cells, read as the editor reads them.
clsLevel levelIn(const fs::path& file) {
    clsLevel level;
    clsPalette palette;
    auto stream = getFileBits(file);
    if (!level.loadFromBits(stream, palette)) {
        throw std::runtime_error(file.string() + " does not load");
    }
    return level;
}

TEST_F(FileCommands, AnUnexpectedErrorKeepsTheUnsavedLevelShowsItAndEndsTheProgram) {
    frmMain& window = startEditor();
    EXPECT_TRUE(window.files().keepUnsavedWork().isEmpty()) << "nothing to keep";
    paintCorner(window, 6);
    const auto original = readBytes(dataFolder() / "L1MA1");

    auto& application = static_cast<MarvekApplication&>(*QCoreApplication::instance());
    ProgramEnd ending(*shared_, *windows_);
    application.setErrorHandler(
        [&ending](const QString& description) { ending.afterError(description); });
    class Failing : public QObject {
    protected:
        bool event(QEvent*) override { throw std::runtime_error("something broke"); }
    } failing;
    QCoreApplication::postEvent(&failing, new QEvent(QEvent::User));
    // Should the program go on, the test still ends, with a status of its own.
    QTimer goingOn;
    goingOn.setSingleShot(true);
    QObject::connect(&goingOn, &QTimer::timeout, [] { QCoreApplication::exit(-5); });
    goingOn.start(10000);
    const int status = QCoreApplication::exec();
    application.setErrorHandler({});
    EXPECT_EQ(status, exitFailed);
    EXPECT_TRUE(application.hasFailed());

    const fs::path kept = dataFolder() / "L1MA1.recovered";
    ASSERT_EQ(messages_->fatal.size(), 1U);
    const QString shown = messages_->fatal[0];
    EXPECT_TRUE(shown.contains("something broke"));
    EXPECT_TRUE(shown.contains(toQString(kept))) << shown.toStdString();
    EXPECT_EQ(levelIn(kept).cellAt(0, 0).tile, 6);
    EXPECT_EQ(readBytes(dataFolder() / "L1MA1"), original) << "never over the level itself";
}

TEST_F(FileCommands, TheSessionsEndAsksAsQuitDoesOrKeepsTheWorkWhenItMayNotAsk) {
    frmMain& window = startEditor();
    ProgramEnd ending(*shared_, *windows_);
    EXPECT_TRUE(ending.sessionEnding(true)) << "nothing to ask about";
    EXPECT_TRUE(messages_->shown.empty());
    EXPECT_TRUE(ending.beforeTermination().isEmpty());

    paintCorner(window, 8);
    messages_->answers = {messageAnswer::cancel};
    EXPECT_FALSE(ending.sessionEnding(true));
    EXPECT_EQ(messages_->shown.back().style, messageStyle::yesNoCancelQuestion);
    const fs::path kept = dataFolder() / "L1MA1.recovered";
    EXPECT_FALSE(fs::exists(kept));

    EXPECT_TRUE(ending.sessionEnding(false));
    EXPECT_EQ(messages_->shown.size(), 1U) << "no question when the session forbids it";
    EXPECT_EQ(levelIn(kept).cellAt(0, 0).tile, 8);

    messages_->answers = {messageAnswer::yes};
    EXPECT_TRUE(ending.sessionEnding(true));
    EXPECT_EQ(levelIn(dataFolder() / "L1MA1").cellAt(0, 0).tile, 8);
}

TEST_F(FileCommands, TheStatusWindowNeverShowsAnEmptyLine) {
    frmMain& window = startEditor();
    QStringList shownFirst;
    class FirstLine : public QObject {
    public:
        explicit FirstLine(QStringList& lines) : lines_(lines) {}
        bool eventFilter(QObject* watched, QEvent* event) override {
            if (event->type() == QEvent::Show) {
                lines_ << static_cast<frmStatus*>(watched)->status();
            }
            return false;
        }

    private:
        QStringList& lines_;
    } filter(shownFirst);
    windows_->status()->installEventFilter(&filter);
    messages_->answers = {messageAnswer::no};
    dialogs_->fileAnswers = {{toQString(dataFolder() / "L1MA2")}};
    whenModal(clickOkOnOpenLevel);
    EXPECT_TRUE(window.files().open());
    windows_->status()->removeEventFilter(&filter);
    EXPECT_EQ(shownFirst, QStringList{"Loading level data"});
}

} // namespace
} // namespace marvek::test
