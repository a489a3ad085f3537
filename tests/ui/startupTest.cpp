#include "EditorFixture.h"

#include "ui/frmOptions.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace marvek::test {
namespace {

QPushButton& button(QWidget& window, const char* name) {
    auto* found = window.findChild<QPushButton*>(name);
    if (found == nullptr) {
        throw std::runtime_error(std::string("no button ") + name);
    }
    return *found;
}

using Startup = EditorFixture;

TEST_F(Startup, FirstRunLeadsThroughTheOptionsToTheDefaultLevel) {
    whenModal([](QWidget& options) {
        EXPECT_EQ(options.objectName(), "frmOptions");
        button(options, "cmdOk").click();
    });
    ASSERT_FALSE(startProgram(*shared_, *windows_).has_value());

    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_EQ(messages_->shown[0].text, firstRunMessage);
    EXPECT_EQ(messages_->shown[0].style, messageStyle::information);
    // Every key, in the order the dialog writes them, with CR LF line ends.
    const std::string data = dataFolder().string();
    const std::string expected = "thornwickData = \"" + data +
                                 "\";\r\nmoveSensitivity = 10;\r\ndefaultLevel = \"L1MA1\";\r\n"
                                 "defaultConfig = \"world1\";\r\neditorFont = \"game\";\r\n"
                                 "alphaBlending = 1;\r\nundoLevels = 64;\r\n"
                                 "autoPlaceSpecials = 1;\r\n";
    const auto written = readBytes(settingsFile());
    EXPECT_EQ(std::string(written.begin(), written.end()), expected);

    const frmMain* window = windows_->mainWindow();
    ASSERT_NE(window, nullptr);
    ASSERT_NE(window->openedLevel(), nullptr);
    EXPECT_EQ(window->windowTitle(), "Marvek - L1MA1[*]");
    EXPECT_TRUE(window->zoomed());
}

TEST_F(Startup, CancelAtEitherOptionsDialogEndsWithoutWriting) {
    whenModal([](QWidget& options) { button(options, "cmdCancel").click(); });
    EXPECT_EQ(startProgram(*shared_, *windows_), exitCancelled);
    EXPECT_FALSE(fs::exists(settingsFile()));
    EXPECT_EQ(windows_->mainWindow(), nullptr);

    // A data folder that went away: the message, then the options again.
    writeSettings((root_.path() / "gone").string());
    const auto before = readBytes(settingsFile());
    whenModal([](QWidget& options) { button(options, "cmdCancel").click(); });
    EXPECT_EQ(startProgram(*shared_, *windows_), exitCancelled);
    ASSERT_FALSE(messages_->shown.empty());
    EXPECT_EQ(messages_->shown.back().text, dataPathMessage);
    EXPECT_EQ(readBytes(settingsFile()), before);
}

TEST_F(Startup, AFolderThatStillDoesNotExistAsksAgain) {
    writeSettings((root_.path() / "gone").string());
    // OK with the same missing folder, then a real one.
    answerModals({[](QWidget& options) { button(options, "cmdOk").click(); },
                  [this](QWidget& again) {
                      // Browsing checks for MPIC and lists the folder's levels.
                      dialogs_->folderAnswers = {toQString(root_.path()), toQString(dataFolder())};
                      button(again, "cmdBrowseDataPath").click();
                      button(again, "cmdBrowseDataPath").click();
                      // The first OK wrote the empty level list's "" as the level.
                      auto* levels = again.findChild<QComboBox*>("cmbDefLevel");
                      EXPECT_TRUE(levels->isEnabled());
                      levels->setCurrentText("L1MA1");
                      button(again, "cmdOk").click();
                  }});
    EXPECT_FALSE(startProgram(*shared_, *windows_).has_value());
    ASSERT_EQ(messages_->shown.size(), 3U);
    EXPECT_EQ(messages_->shown[1].text, dataPathMessage);
    EXPECT_EQ(messages_->shown[2].text,
              "The path you specified is not a valid Thornwick CD32 data path.");
    EXPECT_EQ(messages_->shown[2].style, messageStyle::exclamation);
    EXPECT_EQ(dialogs_->folderPrompts.front(), "Please select a Thornwick CD32 data folder");
}

TEST_F(Startup, ABrokenSettingsFileIsFatalAndLeftAlone) {
    writeText(settingsFile(), "thornwickData = \"x\"\r\nundoLevels = 64;\r\n");
    const auto before = readBytes(settingsFile());
    EXPECT_EQ(startProgram(*shared_, *windows_), exitFailed);
    ASSERT_EQ(messages_->fatal.size(), 1U);
    const QString fatal = messages_->fatal[0];
    EXPECT_TRUE(fatal.contains(toQString(settingsFile()))) << fatal.toStdString();
    EXPECT_TRUE(fatal.contains("line 1")) << fatal.toStdString();
    EXPECT_TRUE(fatal.contains("Invalid assignment")) << fatal.toStdString();
    EXPECT_EQ(readBytes(settingsFile()), before);

    writeText(settingsFile(), "thornwickData = \"" + dataFolder().string() + "\";\r\n");
    EXPECT_EQ(startProgram(*shared_, *windows_), exitFailed);
    ASSERT_EQ(messages_->fatal.size(), 2U);
    EXPECT_TRUE(messages_->fatal[1].contains("\"editorFont\""))
        << messages_->fatal[1].toStdString();
}

TEST_F(Startup, ADefaultLevelThatDoesNotLoadSaysSoAndEnds) {
    writeSettings(dataFolder().string(), "L9MA9");
    EXPECT_EQ(startProgram(*shared_, *windows_), exitFailed);
    ASSERT_EQ(messages_->shown.size(), 1U);
    const QString text = messages_->shown[0].text;
    EXPECT_TRUE(
        text.startsWith("The default level is invalid and cannot be loaded. Please reconfigure."));
    EXPECT_TRUE(text.contains("L9MA9")) << "the message names the file";
    EXPECT_EQ(messages_->shown[0].style, messageStyle::exclamation);
    EXPECT_EQ(windows_->mainWindow(), nullptr);

    // A configuration with a syntax error names its file and line.
    writeText(appFolder() / "config" / "broken.cfg", "tileSet = \"L1BM\";\nspriteSet = 5b;\n");
    writeSettings(dataFolder().string(), "L1MA1", "broken");
    EXPECT_EQ(startProgram(*shared_, *windows_), exitFailed);
    const QString broken = messages_->shown.back().text;
    EXPECT_TRUE(broken.contains("broken.cfg")) << broken.toStdString();
    EXPECT_TRUE(broken.contains("line 2")) << broken.toStdString();
}

} // namespace
} // namespace marvek::test
