#include "EditorFixture.h"

#include "ui/frmOptions.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace marvek::test {
namespace {

QPushButton& button(QWidget& window, const char* name) {
    auto* found = window.findChild<QPushButton*>(name);
    if (found == nullptr) {
        throw std::runtime_error(std::string("no button ") + name);
    }
    return *found;
}

std::string readText(const fs::path& path) {
    const auto bytes = readBytes(path);
    return {bytes.begin(), bytes.end()};
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

TEST_F(Startup, AFolderThatDoesNotExistOffersNoLevelUntilARealOneIsChosen) {
    writeSettings((root_.path() / "gone").string());
    whenModal([this](QWidget& options) {
        // OK with the same missing folder: nothing to open, so it says so.
        button(options, "cmdOk").click();
        EXPECT_TRUE(options.isVisible());
        // Browsing checks for MPIC and lists the folder's levels.
        dialogs_->folderAnswers = {toQString(root_.path()), toQString(dataFolder())};
        button(options, "cmdBrowseDataPath").click();
        button(options, "cmdBrowseDataPath").click();
        auto* levels = options.findChild<QComboBox*>("cmbDefLevel");
        EXPECT_TRUE(levels->isEnabled());
        EXPECT_EQ(levels->currentText(), "L1MA1");
        button(options, "cmdOk").click();
    });
    EXPECT_FALSE(startProgram(*shared_, *windows_).has_value());
    ASSERT_EQ(messages_->shown.size(), 3U);
    EXPECT_EQ(messages_->shown[0].text, dataPathMessage);
    EXPECT_TRUE(messages_->shown[1].text.startsWith("Please choose the default level."));
    EXPECT_EQ(messages_->shown[2].text,
              "The path you specified is not a valid Thornwick CD32 data path.");
    EXPECT_EQ(messages_->shown[2].style, messageStyle::exclamation);
    EXPECT_EQ(dialogs_->folderPrompts.front(), "Please select a Thornwick CD32 data folder");
    EXPECT_EQ(dialogs_->lastFolder(), toQString(dataFolder())) << "file dialogs open there";
}

TEST_F(Startup, AFolderTypedByHandNeverLocksTheUserOut) {
    // A data folder that went away, and the new one typed rather than
    // browsed to: the level list follows what is typed.
    writeSettings((root_.path() / "gone").string());
    whenModal([this](QWidget& options) {
        auto& path = child<QLineEdit>(options, "txtDataPath");
        auto& levels = child<QComboBox>(options, "cmbDefLevel");
        EXPECT_FALSE(levels.isEnabled());
        path.selectAll();
        QTest::keyClicks(&path, toQString(dataFolder()));
        EXPECT_TRUE(levels.isEnabled());
        EXPECT_EQ(levels.currentText(), "L1MA1");
        button(options, "cmdOk").click();
    });
    ASSERT_FALSE(startProgram(*shared_, *windows_).has_value());
    ASSERT_NE(windows_->mainWindow()->openedLevel(), nullptr);
    EXPECT_EQ(dialogs_->lastFolder(), toQString(dataFolder()));
    windows_->unloadWindows();

    // A settings file that names no level: the message with the file, then
    // the options, which will not write an empty name again.
    writeSettings(dataFolder().string(), "");
    messages_->shown.clear();
    whenModal([this](QWidget& options) {
        auto& levels = child<QComboBox>(options, "cmbDefLevel");
        EXPECT_EQ(levels.currentIndex(), -1);
        button(options, "cmdOk").click();
        EXPECT_TRUE(options.isVisible());
        levels.setCurrentText("L1MA2");
        button(options, "cmdOk").click();
    });
    ASSERT_FALSE(startProgram(*shared_, *windows_).has_value());
    ASSERT_EQ(messages_->shown.size(), 2U);
    EXPECT_TRUE(messages_->shown[0].text.startsWith(
        "The default level is invalid and cannot be loaded. Please reconfigure."));
    EXPECT_TRUE(messages_->shown[0].text.contains(toQString(dataFolder())))
        << messages_->shown[0].text.toStdString();
    EXPECT_TRUE(messages_->shown[1].text.startsWith("Please choose the default level."));
    EXPECT_EQ(windows_->mainWindow()->windowTitle(), "Marvek - L1MA2[*]");
    EXPECT_NE(readText(settingsFile()).find("defaultLevel = \"L1MA2\";"), std::string::npos);
}

TEST_F(Startup, ASettingsFileNamingAConfigurationInCapitalsKeepsIt) {
    writeSettings(dataFolder().string(), "L1MA1", "WORLD2");
    ASSERT_FALSE(startProgram(*shared_, *windows_).has_value());
    whenModal([](QWidget& options) {
        EXPECT_EQ(child<QComboBox>(options, "cmbDefConfig").currentText(), "world2");
        button(options, "cmdOk").click();
    });
    EXPECT_TRUE(windows_->options().showModal());
    EXPECT_NE(readText(settingsFile()).find("defaultConfig = \"world2\";"), std::string::npos)
        << readText(settingsFile());
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

TEST_F(Startup, ADefaultLevelThatDoesNotLoadLeadsToTheOptions) {
    writeSettings(dataFolder().string(), "L9MA9");
    whenModal([](QWidget& options) {
        EXPECT_EQ(options.objectName(), "frmOptions");
        button(options, "cmdCancel").click();
    });
    EXPECT_EQ(startProgram(*shared_, *windows_), exitCancelled);
    ASSERT_EQ(messages_->shown.size(), 1U);
    const QString text = messages_->shown[0].text;
    EXPECT_TRUE(
        text.startsWith("The default level is invalid and cannot be loaded. Please reconfigure."));
    EXPECT_TRUE(text.contains("L9MA9")) << "the message names the file";
    EXPECT_EQ(messages_->shown[0].style, messageStyle::exclamation);
    EXPECT_EQ(windows_->mainWindow(), nullptr);

    // A configuration with a syntax error names its file and line; choosing
    // another one in the options starts the editor.
    writeText(appFolder() / "config" / "broken.cfg", "tileSet = \"L1BM\";\nspriteSet = 5b;\n");
    writeSettings(dataFolder().string(), "L1MA1", "broken");
    whenModal([](QWidget& options) {
        child<QComboBox>(options, "cmbDefConfig").setCurrentText("world1");
        button(options, "cmdOk").click();
    });
    EXPECT_FALSE(startProgram(*shared_, *windows_).has_value());
    const QString broken = messages_->shown.back().text;
    EXPECT_TRUE(broken.contains("broken.cfg")) << broken.toStdString();
    EXPECT_TRUE(broken.contains("line 2")) << broken.toStdString();
    ASSERT_NE(windows_->mainWindow(), nullptr);
    EXPECT_NE(windows_->mainWindow()->openedLevel(), nullptr);
}

} // namespace
} // namespace marvek::test
