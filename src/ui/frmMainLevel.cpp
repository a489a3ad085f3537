// The main window and the level in front: start-up, the tabs followed, a
// level just opened, the options that reach every level.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/openLevel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelFileCommands.h"
#include "ui/LevelTabs.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/PictureBox.h"

#include <QStatusBar>
#include <QTabBar>

namespace marvek {

bool frmMain::initialLoad() {
    loadOptions();
    restorePanels();
    if (!files_->openStartupLevels()) {
        return false;
    }
    // Without a window manager nobody hands the window the keyboard, and
    // menu shortcuts only work in the active window.
    activateWindow();
    return true;
}

void frmMain::connectTabs() {
    const LevelTabs* tabs = tabs_.get();
    connect(tabs, &LevelTabs::currentChanged, this, &frmMain::documentShown);
    connect(tabs, &LevelTabs::currentStateChanged, this, &frmMain::updateCommands);
    connect(tabs, &LevelTabs::currentSelectionChanged, this, &frmMain::updateSelectionCommands);
    connect(tabs, &LevelTabs::currentCellsChanged, this, &frmMain::refreshPanels);
    connect(tabs, &LevelTabs::currentGraphicsChanged, this, [this] {
        palette_->refresh();
        showLevelInPanels();
    });
    connect(tabs, &LevelTabs::currentViewMoved, this, &frmMain::refreshNavigation);
    connect(tabs, &LevelTabs::cellStatus, this, [this](const QString& text) {
        if (text.isEmpty()) {
            statusBar()->clearMessage();
        } else {
            statusBar()->showMessage(text);
        }
    });
    connect(tabs, &LevelTabs::brushChanged, palette_, &PaletteStrip::redraw);
    connect(tabs, &LevelTabs::notice, this,
            [this](const QString& text) { statusBar()->showMessage(text); });
    connect(tabs, &LevelTabs::closeRequested, this, [this](int index) { files_->closeTab(index); });
    connect(files_.get(), &LevelFileCommands::levelOpened, this, &frmMain::showNewLevel);
}

void frmMain::documentShown() {
    LevelDocument* document = currentDocument();
    palette_->showLevel(document != nullptr ? &document->opened() : nullptr);
    showLevelInPanels();
    updateCommands();
    if (LevelView* view = currentView()) {
        refreshNavigation();
        view->picture().setFocus();
    }
}

void frmMain::showNewLevel() {
    if (const OpenedLevel* opened = openedLevel()) {
        editing_.resetFor(opened->specialSet);
    }
    editing_.mode = tabMode_->currentIndex() + 1;
    editing_.moveSensitivity =
        static_cast<float>(settingNumber(shared_.settings, settingKey::moveSensitivity, 10)) /
        10.0F;
    documentShown();
}

void frmMain::loadOptions() {
    const clsConfiguration& settings = shared_.settings;
    editing_.alphaBlending = settingNumber(settings, settingKey::alphaBlending, 1) != 0;
    editing_.autoPlaceSpecials = settingNumber(settings, settingKey::autoPlaceSpecials, 1) != 0;
    editing_.specialsInTilesMode = settingNumber(settings, settingKey::specialsInTilesMode, 1) != 0;
    for (int i = 0; i < tabs_->count(); ++i) {
        tabs_->document(i).setUndoMaximum(settingNumber(settings, settingKey::undoLevels, 64));
    }
    editing_.moveSensitivity =
        static_cast<float>(settingNumber(settings, settingKey::moveSensitivity, 10)) / 10.0F;
    clsFont font;
    const auto fontPath = editorFontPath(shared_);
    if (font.loadFromFile(fontPath)) {
        shared_.editorFont = std::move(font);
    } else if (shared_.editorFont.handle() != 0) {
        shared_.messages->show(
            this, toQString(fontPath) + ": the editor font does not load; the previous font stays.",
            messageStyle::exclamation);
    }
}

} // namespace marvek
