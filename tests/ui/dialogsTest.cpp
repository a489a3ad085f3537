#include "EditorFixture.h"

#include "ui/frmOpenLevel.h"
#include "ui/frmOptions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <set>

namespace marvek::test {
namespace {

using Dialogs = EditorFixture;

std::set<QString> entries(const QComboBox& list) {
    std::set<QString> names;
    for (int i = 0; i < list.count(); ++i) {
        names.insert(list.itemText(i));
    }
    return names;
}

// Types into a number box as a user does, then moves on to another control.
void typeAndLeave(QLineEdit& box, QWidget& next, const QString& text) {
    box.setFocus();
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Backspace);
    EXPECT_EQ(box.text(), "") << "an emptied box stays empty while typing";
    QTest::keyClicks(&box, text);
    EXPECT_EQ(box.text(), text) << "nothing changes what is being typed";
    next.setFocus();
}

TEST_F(Dialogs, NumberBoxesTakeWhatIsTypedAndKeepToTheirLimitsWhenLeft) {
    writeSettings(dataFolder().string());
    const auto before = readBytes(settingsFile());
    shared_->settings.LoadConfiguration(settingsFile());
    whenModal([](QWidget& options) {
        auto& sensitivity = child<QLineEdit>(options, "txtMoveSens");
        auto& undo = child<QLineEdit>(options, "txtUndoLevels");
        // Focus moves only within the active window.
        options.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&options));
        typeAndLeave(sensitivity, undo, "25");
        EXPECT_EQ(sensitivity.text(), "25");
        typeAndLeave(sensitivity, undo, "0");
        EXPECT_EQ(sensitivity.text(), "1");
        typeAndLeave(sensitivity, undo, "45");
        EXPECT_EQ(sensitivity.text(), "30");
        typeAndLeave(sensitivity, undo, "abc");
        EXPECT_EQ(sensitivity.text(), "1");
        typeAndLeave(undo, sensitivity, "2000");
        EXPECT_EQ(undo.text(), "1024");
        child<QAbstractSpinBox>(options, "udUndoLevels").stepDown();
        EXPECT_EQ(undo.text(), "1023");
        child<QAbstractSpinBox>(options, "udMoveSens").stepDown();
        EXPECT_EQ(sensitivity.text(), "1") << "the arrows keep to the range";
        child<QPushButton>(options, "cmdCancel").click();
    });
    EXPECT_FALSE(windows_->options().showModal());
    EXPECT_TRUE(windows_->options().cancelled());
    EXPECT_EQ(readBytes(settingsFile()), before);

    // OK limits a box the user has not left.
    whenModal([](QWidget& options) {
        child<QLineEdit>(options, "txtMoveSens").setText("");
        child<QLineEdit>(options, "txtUndoLevels").setText("5000");
        child<QPushButton>(options, "cmdOk").click();
    });
    EXPECT_TRUE(windows_->options().showModal());
    EXPECT_EQ(settingNumber(shared_->settings, settingKey::moveSensitivity, 0), 1);
    EXPECT_EQ(settingNumber(shared_->settings, settingKey::undoLevels, 0), 1024);
}

TEST_F(Dialogs, OptionsShowEveryCaptionAndToolTip) {
    frmOptions& options = windows_->options();
    options.show();
    EXPECT_EQ(options.windowTitle(), "Options");
    EXPECT_EQ(child<QLabel>(options, "lblDataPath").text(), "Thornwick data path");
    EXPECT_EQ(child<QLabel>(options, "lblInfo").text(),
              "The data path must point to a valid Thornwick CD32 \"TWDATA\" folder.");
    EXPECT_EQ(child<QPushButton>(options, "cmdBrowseDataPath").text(), "Browse...");
    EXPECT_EQ(child<QPushButton>(options, "cmdOk").text(), "OK");
    EXPECT_TRUE(child<QPushButton>(options, "cmdOk").isDefault());
    EXPECT_EQ(child<QComboBox>(options, "cmbDefLevel").toolTip(),
              "The default level to load when Marvek starts.");
    EXPECT_EQ(child<QComboBox>(options, "cmbDefConfig").toolTip(),
              "The default level configuration to load when Marvek starts.");
    EXPECT_EQ(child<QComboBox>(options, "cmbEditorFont").toolTip(),
              "The font used to display text in the editor.");
    EXPECT_EQ(child<QLineEdit>(options, "txtMoveSens").toolTip(),
              "MOvement sensitivty when scrolling through the level using the mouse.");
    EXPECT_EQ(child<QLineEdit>(options, "txtUndoLevels").toolTip(),
              "The number of undo levels remembered. Each level takes about 100 Kb of memory.");
    EXPECT_EQ(child<QCheckBox>(options, "chkAlphaBlend").toolTip(),
              "When disabled, will replace alpha blending effects with a faster alternating "
              "pixel effect.");
    EXPECT_EQ(child<QCheckBox>(options, "chkAutoSpecials").text(), "Auto-place specials");
    EXPECT_EQ(child<QCheckBox>(options, "chkAutoSpecials").toolTip(),
              "When enabled, will place the appropriate specials along with tiles.");
    // No data path yet: the sample data beside the application is offered.
    EXPECT_EQ(child<QLineEdit>(options, "txtDataPath").text(), toQString(dataFolder()));
    EXPECT_EQ(child<QComboBox>(options, "cmbDefLevel").currentText(), "L1MA1");
    EXPECT_EQ(entries(child<QComboBox>(options, "cmbEditorFont")),
              (std::set<QString>{"bold", "game"}));
    options.hide();

    // A data folder that does not exist leaves the level list empty and off.
    shared_->settings.WriteSetting("thornwickData", (root_.path() / "gone").string(), false);
    options.show();
    EXPECT_EQ(child<QComboBox>(options, "cmbDefLevel").count(), 0);
    EXPECT_FALSE(child<QComboBox>(options, "cmbDefLevel").isEnabled());
    options.hide();
}

TEST_F(Dialogs, OpenLevelListsConfigurationsAndShowsTheirFiles) {
    writeText(appFolder() / "config" / "World4.CFG", "tileSet = \"L1BM\"; spriteSet = \"L1ET\";");
    writeText(appFolder() / "config" / "notes.txt", "tileSet = \"x\"; spriteSet = \"y\";");
    frmMain& window = startEditor();
    (void)window;
    frmOpenLevel& dialog = *windows_->openLevel();
    const auto& list = child<QComboBox>(dialog, "cmbConfig");
    QStringList names;
    for (int i = 0; i < list.count(); ++i) {
        names << list.itemText(i);
    }
    EXPECT_EQ(names, (QStringList{"notes", "world1", "world2", "world3", "world4"}));
    EXPECT_EQ(list.currentText(), "world1");
    const QString data = toQString(dataFolder());
    EXPECT_EQ(child<QLineEdit>(dialog, "txtTileSet").text(), data + "/L1BM");
    EXPECT_EQ(child<QLineEdit>(dialog, "txtSpriteset").text(), data + "/L1ET");
    child<QComboBox>(dialog, "cmbConfig").setCurrentText("world2");
    EXPECT_EQ(child<QLineEdit>(dialog, "txtTileSet").text(), data + "/L2BM");

    dialogs_->fileAnswers = {{}, {toQString(dataFolder() / "L3BM")}};
    child<QPushButton>(dialog, "cmdBrowseTileset").click();
    EXPECT_EQ(child<QLineEdit>(dialog, "txtTileSet").text(), data + "/L2BM") << "cancelled";
    child<QPushButton>(dialog, "cmdBrowseTileset").click();
    EXPECT_EQ(child<QLineEdit>(dialog, "txtTileSet").text(), toQString(dataFolder() / "L3BM"));
    EXPECT_EQ(dialogs_->fileRequests.back().title, "Select Tile Set");
    EXPECT_EQ(child<QCheckBox>(dialog, "chkLoadUnknown").text(), "Load unknown special IDs");
}

} // namespace
} // namespace marvek::test

namespace marvek::test {
namespace {

TEST(CommonDialog, RemembersTheFolderAndSortsSeveralFilesIgnoringCase) {
    TempDir folder;
    writeText(folder / "picture.bmp", "x");
    ScriptedCommonDialog dialogs;
    dialogs.setLastFolder("/last");
    const QString chosenFolder = toQString(folder.path());
    dialogs.fileAnswers = {{chosenFolder + "/b.bmp", chosenFolder + "/A.bmp"}, {}, {}};
    const auto chosen =
        dialogs.openFile(nullptr, "Import", "Bitmap files (*.bmp)|*.bmp|All files (*.*)|*.*",
                         QString(), clsCommonDialog::openFlags, 2);
    ASSERT_EQ(chosen.size(), 2U);
    EXPECT_EQ(chosen.at(0), chosenFolder + "/A.bmp");
    EXPECT_EQ(chosen.at(1), chosenFolder + "/b.bmp");
    EXPECT_EQ(dialogs.lastFolder(), chosenFolder);
    const auto& first = dialogs.fileRequests[0];
    EXPECT_EQ(first.filters, (QStringList{"Bitmap files (*.bmp)", "All files (*)"}));
    EXPECT_EQ(first.filterIndex, 1);
    EXPECT_EQ(first.folder, "/last");

    // An initial file that exists opens its own folder; one that does not
    // is still offered by name, in the last folder.
    EXPECT_TRUE(dialogs
                    .saveFile(nullptr, "Save", "All files (*.*)|*.*",
                              toQString(folder / "picture.bmp"), clsCommonDialog::saveFlags, 1)
                    .isEmpty());
    EXPECT_EQ(dialogs.fileRequests[1].folder, chosenFolder);
    EXPECT_EQ(dialogs.fileRequests[1].initialName, "picture.bmp");
    dialogs.setLastFolder("/elsewhere");
    EXPECT_TRUE(dialogs
                    .openFile(nullptr, "Open", "All files (*.*)|*.*", "/nowhere/level.bin",
                              clsCommonDialog::openFlags, 1)
                    .empty());
    EXPECT_EQ(dialogs.fileRequests[2].folder, "/elsewhere");
    EXPECT_EQ(dialogs.fileRequests[2].initialName, "level.bin");
    EXPECT_EQ(dialogs.lastFolder(), "/elsewhere") << "a cancel changes nothing";
    EXPECT_EQ(dialogs.getColor(nullptr, 0, 0x123456), -1);
}

TEST_F(Dialogs, TheKeyboardComesBackToTheWindowUnderAClosedDialog) {
    frmMain& window = startEditor();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    // Without a window manager nobody else would hand the keys back.
    whenModal([](QWidget& options) { options.findChild<QPushButton*>("cmdCancel")->click(); });
    window.toolsOptions();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

} // namespace
} // namespace marvek::test
