#include "EditorFixture.h"

#include "app/browserLayouts.h"
#include "configuration/clsConfiguration.h"
#include "data/clsLevel.h"
#include "graphics/clsBitmap.h"
#include "graphics/clsPalette.h"
#include "graphics/paletteEditing.h"
#include "graphics/pictureFiles.h"
#include "io/packedFile.h"
#include "ui/PictureBox.h"
#include "ui/frmGraphics.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace marvek::test {
namespace {

using GraphicsWindows = EditorFixture;

// The file's data, unpacked when packed.
std::vector<std::uint8_t> unpacked(const fs::path& file) {
    return readPictureFile(file);
}

// A 24-bit bitmap, which has no palette to offer.
fs::path writeTrueColourBitmap(const fs::path& path) {
    clsBackBuffer picture;
    picture.Create(16, 16, 1);
    clsBitmap bitmap;
    bitmap.createFromBackBuffer(picture);
    bitmap.writeToFile(path);
    return path;
}

void setNumber(QWidget& window, const char* name, int value) {
    child<QLineEdit>(window, name).setText(QString::number(value));
}

// Types the number as a user does and moves on to the file list.
void typeNumber(QWidget& window, const char* name, const QString& text) {
    auto& box = child<QLineEdit>(window, name);
    box.setFocus();
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Backspace);
    QTest::keyClicks(&box, text);
    child<QListWidget>(window, "lstFiles").setFocus();
}

TEST_F(GraphicsWindows, TheBrowserShowsExportsAndImportsTheTiles) {
    frmMain& window = startEditor();
    const fs::path tiles = dataFolder() / "L1BM";
    const auto before = unpacked(tiles);
    const fs::path exported = root_.path() / "tiles.bmp";
    whenModal([&](QWidget& browser) {
        auto& files = child<QListWidget>(browser, "lstFiles");
        const auto found = files.findItems("L1BM", Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1);
        auto& palettes = child<QComboBox>(browser, "cmbPalette");
        EXPECT_EQ(palettes.itemText(0), "Grey");
        EXPECT_EQ(palettes.itemText(1), "After");
        EXPECT_EQ(palettes.itemText(2), "World 1");
        palettes.setCurrentText("World 1");
        setNumber(browser, "txtWidth", 16);
        setNumber(browser, "txtHeight", 16);
        setNumber(browser, "txtBitPlanes", 5);
        setNumber(browser, "txtSubImages", static_cast<int>(before.size() / 160));
        setNumber(browser, "txtXCount", 20);
        files.setCurrentItem(found.front());
        const auto& image = child<PictureBox>(browser, "picImage").image();
        EXPECT_EQ(image.width(), 320);
        EXPECT_GT(image.height(), 16 * 9);

        // A box the user empties draws from its limit until it is left;
        // then it shows the limit.
        // Focus moves only within the active window.
        browser.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&browser));
        auto& width = child<QLineEdit>(browser, "txtWidth");
        width.setFocus();
        width.selectAll();
        QTest::keyClick(&width, Qt::Key_Backspace);
        EXPECT_EQ(width.text(), "");
        EXPECT_EQ(static_cast<frmGraphics&>(browser).format().width, 1);
        typeNumber(browser, "txtBitPlanes", "9");
        EXPECT_EQ(child<QLineEdit>(browser, "txtBitPlanes").text(), "8");
        typeNumber(browser, "txtXCount", "700");
        EXPECT_EQ(child<QLineEdit>(browser, "txtXCount").text(), "640");
        typeNumber(browser, "txtWidth", "0");
        EXPECT_EQ(width.text(), "1");
        // The offset's step is one plane row.
        setNumber(browser, "txtWidth", 64);
        child<QAbstractSpinBox>(browser, "udOffset").stepUp();
        EXPECT_EQ(child<QLineEdit>(browser, "txtOffset").text(), "8");
        setNumber(browser, "txtOffset", 0);
        setNumber(browser, "txtWidth", 16);
        setNumber(browser, "txtBitPlanes", 5);
        setNumber(browser, "txtXCount", 20);

        dialogs_->fileAnswers = {{toQString(root_.path() / "tiles")}, {toQString(exported)}};
        messages_->answers = {messageAnswer::yes};
        child<QPushButton>(browser, "cmdExport").click();
        EXPECT_EQ(dialogs_->fileRequests[0].title, "Export Bitmap");
        EXPECT_EQ(dialogs_->fileRequests[0].initialName, "L1BM.bmp");
        child<QPushButton>(browser, "cmdImport").click();
        EXPECT_EQ(dialogs_->fileRequests[1].title, "Import Bitmap");
        // The PNG just exported is among what the dialog shows first.
        EXPECT_EQ(dialogs_->fileRequests[1].filters.front(), "Pictures (*.bmp *.png)");
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    ASSERT_EQ(messages_->shown.size(), 2U) << "the question and the notice that it is done";
    EXPECT_EQ(messages_->shown[0].style, messageStyle::yesNoQuestion);
    EXPECT_EQ(messages_->shown[1].style, messageStyle::information);
    EXPECT_TRUE(fs::exists(exported));
    EXPECT_EQ(unpacked(tiles), before) << "export then import gives back the same bytes";
}

void chooseFile(QWidget& browser, const QString& name) {
    auto& files = child<QListWidget>(browser, "lstFiles");
    files.setCurrentItem(files.findItems(name, Qt::MatchExactly).front());
}

// Opens the browser on L1BM read as 16 x 16 tiles, 20 across, with World 1.
void showTiles(QWidget& browser, int count) {
    chooseFile(browser, "L1BM");
    child<QComboBox>(browser, "cmbPalette").setCurrentText("World 1");
    setNumber(browser, "txtWidth", 16);
    setNumber(browser, "txtHeight", 16);
    setNumber(browser, "txtBitPlanes", 5);
    setNumber(browser, "txtOffset", 0);
    setNumber(browser, "txtSubImages", count);
    setNumber(browser, "txtXCount", 20);
}

TEST_F(GraphicsWindows, TheBrowserNeverShowsOrExportsAPictureItCannotDraw) {
    frmMain& window = startEditor();
    whenModal([&](QWidget& widget) {
        auto& browser = static_cast<frmGraphics&>(widget);
        showTiles(browser, 40);
        const auto& problem = child<QLabel>(browser, "lblProblem");
        auto& exportButton = child<QPushButton>(browser, "cmdExport");
        const auto& image = child<PictureBox>(browser, "picImage");
        ASSERT_TRUE(exportButton.isEnabled());
        EXPECT_TRUE(problem.isHidden());
        EXPECT_EQ(image.image().width(), 320);

        // Too large to draw: said in the window, nothing shown or exported.
        setNumber(browser, "txtWidth", 1024);
        setNumber(browser, "txtXCount", 64);
        setNumber(browser, "txtSubImages", 64);
        EXPECT_FALSE(problem.isHidden());
        EXPECT_TRUE(problem.text().contains("the picture would be 65536 x 16 pixels; at most"))
            << problem.text().toStdString();
        EXPECT_FALSE(exportButton.isEnabled());
        EXPECT_TRUE(image.image().isNull());
        EXPECT_TRUE(image.isHidden()) << "no empty black box either";
        EXPECT_EQ(browser.picture().planarWidth(), 0);

        // A palette whose file is missing is named, not drawn black.
        setNumber(browser, "txtWidth", 16);
        ASSERT_TRUE(exportButton.isEnabled());
        child<QComboBox>(browser, "cmbPalette").setCurrentText("World 4");
        EXPECT_TRUE(problem.text().contains("world4.pal")) << problem.text().toStdString();
        EXPECT_FALSE(exportButton.isEnabled());
        EXPECT_EQ(browser.picture().planarWidth(), 0);

        child<QComboBox>(browser, "cmbPalette").setCurrentText("World 2");
        EXPECT_TRUE(problem.isHidden());
        EXPECT_TRUE(exportButton.isEnabled());
        EXPECT_FALSE(image.isHidden());
        EXPECT_GT(browser.picture().palette().Count(), 0);
        browser.reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    EXPECT_TRUE(messages_->shown.empty());
}

TEST_F(GraphicsWindows, ADataFolderGoneSinceStartUpLeavesTheListEmptyAndTheEditorRunning) {
    frmMain& window = startEditor();
    fs::rename(dataFolder(), root_.path() / "moved");
    int filesListed = -1;
    whenModal([&](QWidget& browser) {
        filesListed = child<QListWidget>(browser, "lstFiles").count();
        static_cast<frmGraphics&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    EXPECT_EQ(filesListed, 0);
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_TRUE(messages_->shown[0].text.startsWith(toQString(dataFolder())))
        << messages_->shown[0].text.toStdString();
    EXPECT_TRUE(messages_->fatal.empty());
}

TEST_F(GraphicsWindows, ImportOverAGameFileAsksAndKeepsOnlyTheFirstOriginal) {
    frmMain& window = startEditor();
    const fs::path tiles = dataFolder() / "L1BM";
    const fs::path original = dataFolder() / "L1BM.orig";
    const auto before = readBytes(tiles);
    const fs::path png = root_.path() / "tiles.png";
    whenModal([&](QWidget& browser) {
        showTiles(browser, 40);
        dialogs_->fileAnswers = {
            {toQString(png)}, {toQString(png)}, {toQString(png)}, {toQString(png)}};
        child<QPushButton>(browser, "cmdExport").click();
        ASSERT_TRUE(fs::exists(png));
        // No: nothing is written.
        messages_->answers = {messageAnswer::no};
        child<QPushButton>(browser, "cmdImport").click();
        EXPECT_EQ(readBytes(tiles), before);
        EXPECT_FALSE(fs::exists(original));
        // Yes: replaced, the original kept and the user told.
        messages_->answers = {messageAnswer::yes};
        child<QPushButton>(browser, "cmdImport").click();
        EXPECT_TRUE(fs::exists(original));
        // Again: the first original stays.
        messages_->answers = {messageAnswer::yes};
        setNumber(browser, "txtOffset", 160);
        child<QPushButton>(browser, "cmdImport").click();
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    ASSERT_EQ(messages_->shown.size(), 5U);
    EXPECT_EQ(messages_->shown[0].style, messageStyle::yesNoQuestion);
    EXPECT_TRUE(messages_->shown[0].text.contains("L1BM.orig"));
    EXPECT_EQ(messages_->shown[2].style, messageStyle::information);
    EXPECT_TRUE(messages_->shown[2].text.contains("kept as"));
    EXPECT_FALSE(messages_->shown[4].text.contains("kept as"));
    EXPECT_EQ(readBytes(original), before);
    EXPECT_NE(unpacked(tiles), readPictureFile(original)) << "the second import moved the tiles";
}

TEST_F(GraphicsWindows, AnImportWithoutAPaletteWritesNothing) {
    frmMain& window = startEditor();
    const fs::path tiles = dataFolder() / "L1BM";
    const auto before = readBytes(tiles);
    const fs::path truecolour = writeTrueColourBitmap(root_.path() / "photo.bmp");
    whenModal([&](QWidget& browser) {
        auto& files = child<QListWidget>(browser, "lstFiles");
        files.setCurrentItem(files.findItems("L1BM", Qt::MatchExactly).front());
        dialogs_->fileAnswers = {{toQString(truecolour)}};
        child<QPushButton>(browser, "cmdImport").click();
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    ASSERT_EQ(messages_->shown.size(), 1U) << "refused before any question";
    EXPECT_TRUE(messages_->shown[0].text.contains("no palette"))
        << messages_->shown[0].text.toStdString();
    EXPECT_FALSE(fs::exists(dataFolder() / "L1BM.orig"));
    EXPECT_EQ(readBytes(tiles), before);
}

TEST_F(GraphicsWindows, APaletteChangeReachesTheSavedLevel) {
    frmMain& window = startEditor();
    const std::uint32_t chosen = 0x00F08040;
    dialogs_->colourAnswers = {chosen};
    whenModal([&](QWidget& editor) {
        // A 24-bit bitmap is refused with the message.
        const fs::path truecolour = writeTrueColourBitmap(root_.path() / "photo.bmp");
        dialogs_->fileAnswers = {{toQString(truecolour)}};
        child<QPushButton>(editor, "cmdImport").click();
        auto& boxes = child<PictureBox>(editor, "picPalette");
        const clsRectangle first = PaletteGrid::box(0);
        QTest::mouseClick(
            &boxes, Qt::LeftButton, {},
            QPoint(first.left + 5 + PictureBox::border, first.top + 5 + PictureBox::border));
        child<QPushButton>(editor, "cmdOk").click();
    });
    window.findChild<QAction*>("itmEditPalette")->trigger();
    ASSERT_FALSE(messages_->shown.empty());
    EXPECT_EQ(messages_->shown[0].text, "The bitmap was invalid or did not have a palette.");
    const std::uint32_t stored = quantiseColour(chosen);
    EXPECT_EQ(window.openedLevel()->palette.Entry(0), stored);
    EXPECT_TRUE(window.isWindowModified());

    window.findChild<QAction*>("itmFileSave")->trigger();
    clsLevel reread;
    clsPalette palette;
    auto stream = getFileBits(dataFolder() / "L1MA1");
    ASSERT_TRUE(reread.loadFromBits(stream, palette));
    EXPECT_EQ(palette.Entry(0), stored);
}

TEST_F(GraphicsWindows, CancelLeavesThePaletteAsItWas) {
    frmMain& window = startEditor();
    const std::uint32_t before = window.openedLevel()->palette.Entry(3);
    dialogs_->colourAnswers = {0x00FFFFFF};
    whenModal([&](QWidget& editor) {
        const clsRectangle box = PaletteGrid::box(3);
        QTest::mouseClick(
            &child<PictureBox>(editor, "picPalette"), Qt::LeftButton, {},
            QPoint(box.left + 4 + PictureBox::border, box.top + 4 + PictureBox::border));
        child<QPushButton>(editor, "cmdCancel").click();
    });
    window.findChild<QAction*>("itmEditPalette")->trigger();
    EXPECT_EQ(window.openedLevel()->palette.Entry(3), before);
    EXPECT_FALSE(window.isWindowModified());
}

QString text(QWidget& window, const char* name) {
    return child<QLineEdit>(window, name).text();
}

TEST_F(GraphicsWindows, TheBrowserReadsTheLevelsGraphicsAsTheLevelDoesAndRemembersEachFile) {
    frmMain& window = startEditor();
    const int tiles = window.openedLevel()->tileSet.count();
    whenModal([&](QWidget& browser) {
        chooseFile(browser, "L1BM");
        EXPECT_EQ(text(browser, "txtWidth"), "16");
        EXPECT_EQ(text(browser, "txtHeight"), "16");
        EXPECT_EQ(text(browser, "txtBitPlanes"), "5");
        EXPECT_EQ(text(browser, "txtSubImages"), QString::number(tiles));
        EXPECT_EQ(text(browser, "txtXCount"), "20");
        EXPECT_EQ(child<QComboBox>(browser, "cmbPalette").currentText(), "Level L1MA1")
            << "in the level's own colours";
        EXPECT_EQ(child<PictureBox>(browser, "picImage").image().width(), 320);
        EXPECT_EQ(static_cast<frmGraphics&>(browser).picture().palette().Entry(3),
                  window.openedLevel()->palette.Entry(3));
        chooseFile(browser, "L1ET");
        EXPECT_EQ(text(browser, "txtWidth"), "320");
        EXPECT_EQ(text(browser, "txtHeight"), "320");
        EXPECT_EQ(text(browser, "txtSubImages"), "1");
        // The user's own reading of a file wins over the known one.
        chooseFile(browser, "L1BM");
        setNumber(browser, "txtOffset", 160);
        child<QComboBox>(browser, "cmbPalette").setCurrentText("World 2");
        chooseFile(browser, "MPIC");
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();

    // Kept in the settings file for the next session.
    clsConfiguration saved;
    saved.LoadConfiguration(settingsFile());
    const BrowserLayouts layouts = readBrowserLayouts(saved);
    ASSERT_TRUE(layouts.contains("L1BM"));
    EXPECT_EQ(layouts.at("L1BM").format.offset, 160);
    EXPECT_EQ(layouts.at("L1BM").format.count, tiles);
    EXPECT_EQ(layouts.at("L1BM").palette, "World 2");

    whenModal([&](QWidget& browser) {
        chooseFile(browser, "L1ET");
        chooseFile(browser, "L1BM");
        EXPECT_EQ(text(browser, "txtOffset"), "160");
        EXPECT_EQ(child<QComboBox>(browser, "cmbPalette").currentText(), "World 2");
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
}

TEST(BrowserLayouts, ReadBackAsWrittenAndSkipWhatDoesNotRead) {
    clsConfiguration settings;
    settings.NewConfiguration();
    const BrowserLayouts layouts{{"L1BM", {{16, 16, 5, 0, 197, 20, false}, "World 1"}},
                                 {"my tiles.bin", {{8, 4, 3, 12, 2, 1, true}, ""}},
                                 {"SHEET", {{320, 320, 5, 0, 1, 1, false}, "pal 2.bmp"}}};
    writeBrowserLayouts(settings, layouts);
    EXPECT_EQ(readBrowserLayouts(settings), layouts);

    settings.WriteSetting(settingKey::graphicsLayouts,
                          std::string("A/x/16/5/0/1/1/0/Grey/B/9999/16/5/0/1/1/0/Grey/C/1"), false);
    const BrowserLayouts read = readBrowserLayouts(settings);
    EXPECT_FALSE(read.contains("A")) << "not a number";
    ASSERT_TRUE(read.contains("B"));
    EXPECT_EQ(read.at("B").format.width, 1024) << "brought inside its range";
    EXPECT_FALSE(read.contains("C")) << "cut short";
}

TEST_F(GraphicsWindows, AnImportOverTheLevelsTileSetShowsInTheLevelAtOnce) {
    frmMain& window = startEditor();
    const int tiles = window.openedLevel()->tileSet.count();
    const QImage before = child<PictureBox>(window, "picLevel").image().copy();
    const fs::path shifted = root_.path() / "shifted.png";
    whenModal([&](QWidget& browser) {
        // Every tile moved one place down the set.
        showTiles(browser, tiles - 1);
        setNumber(browser, "txtOffset", 160);
        dialogs_->fileAnswers = {{toQString(shifted)}, {toQString(shifted)}};
        child<QPushButton>(browser, "cmdExport").click();
        setNumber(browser, "txtOffset", 0);
        messages_->answers = {messageAnswer::yes};
        child<QPushButton>(browser, "cmdImport").click();
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    ASSERT_TRUE(fs::exists(dataFolder() / "L1BM.orig"));
    // The view redraws once the events are through.
    QApplication::processEvents();
    EXPECT_NE(child<PictureBox>(window, "picLevel").image(), before);
    EXPECT_EQ(window.openedLevel()->tileSet.count(), tiles);
}

TEST_F(GraphicsWindows, PictureExportsAskAboutTheFileTheyWrite) {
    frmMain& window = startEditor();
    const fs::path folder = root_.path() / "pictures";
    fs::create_directories(folder);
    writeText(folder / "tiles.bmp", "mine");
    writeText(folder / "pal.bmp", "mine too");
    whenModal([&](QWidget& browser) {
        showTiles(browser, 40);
        // "tiles" writes tiles.bmp: asked about, No brings the dialog back.
        dialogs_->fileAnswers = {{toQString(folder / "tiles")}, {}};
        messages_->answers = {messageAnswer::no};
        child<QPushButton>(browser, "cmdExport").click();
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    ASSERT_EQ(messages_->shown.size(), 1U);
    EXPECT_EQ(messages_->shown[0].text,
              toQString(folder / "tiles.bmp") + " already exists. Do you want to replace it?");
    ASSERT_EQ(dialogs_->fileRequests.size(), 2U);
    EXPECT_EQ(dialogs_->fileRequests[1].initialName, "tiles.bmp");
    EXPECT_EQ(dialogs_->fileRequests[1].folder, toQString(folder));
    EXPECT_EQ(dialogs_->fileRequests[0].flags & clsCommonDialog::overwritePrompt, 0)
        << "the dialog's own question would be about the name typed";
    const auto kept = readBytes(folder / "tiles.bmp");
    EXPECT_EQ(std::string(kept.begin(), kept.end()), "mine");

    // The palette editor's export: Yes replaces.
    dialogs_->fileAnswers = {{toQString(folder / "pal")}};
    messages_->answers = {messageAnswer::yes};
    whenModal([&](QWidget& editor) {
        EXPECT_EQ(editor.windowTitle(), "Edit Palette");
        child<QPushButton>(editor, "cmdExport").click();
        child<QPushButton>(editor, "cmdCancel").click();
    });
    window.findChild<QAction*>("itmEditPalette")->trigger();
    ASSERT_EQ(messages_->shown.size(), 2U);
    EXPECT_TRUE(messages_->shown[1].text.startsWith(toQString(folder / "pal.bmp")));
    EXPECT_EQ(readBytes(folder / "pal.bmp").at(0), 'B');
}

TEST_F(GraphicsWindows, PictureDialogsKeepTheirOwnFolderAndLevelDialogsStayInTheDataFolder) {
    frmMain& window = startEditor();
    const fs::path elsewhere = root_.path() / "pictures";
    fs::create_directories(elsewhere);
    const fs::path png = elsewhere / "tiles.png";
    whenModal([&](QWidget& browser) {
        showTiles(browser, 40);
        dialogs_->fileAnswers = {{toQString(png)}, {}};
        child<QPushButton>(browser, "cmdExport").click();
        child<QPushButton>(browser, "cmdImport").click();
        static_cast<QDialog&>(browser).reject();
    });
    window.findChild<QAction*>("itmToolsGraphics")->trigger();
    ASSERT_TRUE(fs::exists(png));
    ASSERT_EQ(dialogs_->fileRequests.size(), 2U);
    EXPECT_EQ(dialogs_->fileRequests[1].folder, toQString(elsewhere))
        << "where the last picture went";

    window.findChild<QAction*>("itmFileOpen")->trigger();
    ASSERT_EQ(dialogs_->fileRequests.size(), 3U);
    EXPECT_EQ(dialogs_->fileRequests[2].folder, toQString(dataFolder()));

    // A level dialog leaves the picture folder as it was.
    clsCommonDialog& dialogs = *dialogs_;
    dialogs.setLastFolder(toQString(root_.path()));
    EXPECT_EQ(dialogs.pictureFolder(), toQString(elsewhere));
}

} // namespace
} // namespace marvek::test
