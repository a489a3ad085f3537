// The main window's menu commands: opening, saving, undo and the options.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/levelRecovery.h"
#include "data/openLevel.h"
#include "ui/HistoryPanel.h"
#include "ui/frmEditPalette.h"
#include "ui/frmGraphics.h"
#include "ui/frmOpenLevel.h"
#include "ui/frmOptions.h"
#include "ui/frmStatus.h"

#include <QAction>
#include <QFileInfo>
#include <QStatusBar>

#include <exception>

namespace marvek {
namespace {

const QString openQuestion = "The level has been modified since you last saved it. Do you want "
                             "to save it first before loading another?";

QString stepCaption(const QString& command, const std::string& step) {
    return step.empty() ? command : command + " " + toQString(step);
}

} // namespace

bool frmMain::saveIfModified(const QString& question, bool* cancelled) {
    *cancelled = false;
    if (!opened_ || !opened_->level.modified) {
        return true;
    }
    switch (shared_.messages->show(this, question, messageStyle::yesNoCancelQuestion)) {
    case messageAnswer::yes:
        return fileSave();
    case messageAnswer::no:
        // The kept copy goes only when the work really goes: the level that
        // replaces it may still fail to open.
        return true;
    default:
        *cancelled = true;
        return true;
    }
}

bool frmMain::fileOpen() {
    releaseModifiers();
    bool cancelled = false;
    if (!saveIfModified(openQuestion, &cancelled) || cancelled) {
        return false;
    }
    const auto chosen =
        shared_.dialogs->openFile(this, "Open Thornwick Level", "All files (*.*)|*.*", QString(),
                                  clsCommonDialog::openFlags, 1);
    if (chosen.empty()) {
        return false;
    }
    return openChosenLevel(toPath(chosen.begin()->second));
}

bool frmMain::openChosenLevel(const std::filesystem::path& file) {
    if (!dialogs_.openLevel.showModal()) {
        return false;
    }
    const QString configuration = dialogs_.openLevel.configuration();
    QString failure;
    if (!useConfig(file, configuration, dialogs_.openLevel.loadUnknown(), &failure)) {
        shared_.messages->show(this, "The level could not be opened.\n\n" + failure,
                               messageStyle::exclamation);
        return false;
    }
    showNewLevel();
    rememberRecent(file, configuration);
    return true;
}

bool frmMain::fileSave() {
    releaseModifiers();
    if (!opened_) {
        return false;
    }
    if (refuseReadOnlySave()) {
        return false;
    }
    clsLevel& level = opened_->level;
    if (level.fileName.empty()) {
        return fileSaveAs();
    }
    dialogs_.status.setStatus("Saving level...");
    try {
        level.saveToFile(level.fileName, opened_->palette);
    } catch (const std::exception& error) {
        dialogs_.status.hideStatus();
        shared_.messages->show(
            this, "The level was not saved.\n\n" + QString::fromStdString(error.what()),
            messageStyle::exclamation);
        updateCommands();
        return false;
    }
    dialogs_.status.hideStatus();
    dropRecoveryCopy();
    updateCommands();
    return true;
}

bool frmMain::fileSaveAs() {
    if (!opened_) {
        return false;
    }
    if (refuseReadOnlySave()) {
        return false;
    }
    clsLevel& level = opened_->level;
    // Refused before the dialog: no name can make such a level savable.
    if (const std::string reason = level.whyNotSavable(); !reason.empty()) {
        shared_.messages->show(this, "The level was not saved.\n\n" + toQString(reason),
                               messageStyle::exclamation);
        return false;
    }
    const QString previousFolder = shared_.dialogs->lastFolder();
    const QString chosen =
        shared_.dialogs->saveFile(this, "Save Thornwick Level As", "All files (*.*)|*.*",
                                  toQString(level.fileName), clsCommonDialog::saveFlags, 1);
    if (chosen.isEmpty()) {
        return false;
    }
    const std::string previous = level.fileName;
    const bool hadUnsavedWork = level.modified;
    level.fileName = toPath(chosen).string();
    if (!fileSave()) {
        // Save goes on meaning the file the level came from, and the next
        // dialog opens where the last good choice was.
        level.fileName = previous;
        shared_.dialogs->setLastFolder(previousFolder);
        updateCommands();
        return false;
    }
    // The work kept beside the former file is saved now; left there, it
    // would be offered again whenever that file is opened.
    const std::filesystem::path former(previous);
    if (hadUnsavedWork && !previous.empty() && previous != level.fileName &&
        !removeRecoveryCopy(former)) {
        statusBar()->showMessage("The recovery copy " + toQString(recoveryPath(former)) +
                                 " could not be removed.");
    }
    return true;
}

void frmMain::editLevel(const std::string& stepName, const std::function<void(clsLevel&)>& change) {
    if (!opened_) {
        return;
    }
    history_.record(opened_->level, stepName);
    // Specials are faint in Tiles mode: the step's name says what
    // auto-place took.
    if (autoPlacing(stepName)) {
        stepWatch_.emplace(opened_->level, stepName);
    } else {
        stepWatch_.reset();
    }
    change(opened_->level);
    nameStepBySpecials();
    opened_->level.modified = true;
    updateCommands();
    renderLevel();
}

bool frmMain::autoPlacing(const std::string& stepName) const {
    // Pasted cells bring their own specials; Cut and Delete mean to clear.
    return mode_ == tilesMode && autoPlaceSpecials_ && !brushCells_ &&
           (stepName == "Paint" || stepName == "Fill" || stepName == "Bucket Fill");
}

void frmMain::nameStepBySpecials() {
    if (stepWatch_) {
        history_.renameNewest(stepWatch_->stepName(opened_->level));
    }
}

void frmMain::editUndo() {
    takeBack(&UndoHistory::undo);
}

void frmMain::editRedo() {
    takeBack(&UndoHistory::redo);
}

void frmMain::takeBack(std::string (UndoHistory::*side)(clsLevel&)) {
    releaseModifiers();
    stepWatch_.reset();
    if (opened_ && !(history_.*side)(opened_->level).empty()) {
        // The grid no longer matches the file, whichever way it went.
        opened_->level.modified = true;
        renderLevel();
    }
    updateCommands();
}

void frmMain::toolsOptions() {
    const QString formerData =
        toQString(settingText(shared_.settings, settingKey::thornwickData, {}));
    dialogs_.options.showModal();
    // File dialogs follow a new data folder until the user chooses another.
    if (shared_.dialogs->lastFolder() == formerData) {
        shared_.dialogs->setLastFolder(
            toQString(settingText(shared_.settings, settingKey::thornwickData, {})));
    }
    loadOptions();
    // Fewer undo levels drop the oldest steps: the menu and History follow.
    updateCommands();
    renderLevel();
    renderPalette();
}

void frmMain::toolsGraphics() {
    if (!dialogs_.graphics.showModal(opened_.get()) || !opened_) {
        return;
    }
    // An import replaced the level's own graphics: show the new pictures.
    try {
        reloadGraphics(*opened_, shared_.applicationFolder);
    } catch (const std::exception& error) {
        shared_.messages->show(this,
                               "The level's graphics could not be read again, so it shows them "
                               "as they were.\n\n" +
                                   QString::fromStdString(error.what()),
                               messageStyle::exclamation);
        return;
    }
    updatePaletteScroll();
    showLevelInPanels();
    renderLevel();
    renderPalette();
}

void frmMain::editPalette() {
    if (!opened_) {
        return;
    }
    dialogs_.editPalette.Setup(opened_->palette);
    if (!dialogs_.editPalette.showModal()) {
        return;
    }
    const clsPalette previous = opened_->palette;
    opened_->palette = dialogs_.editPalette.palette();
    dialogs_.status.setStatus("Reloading graphics...");
    try {
        reloadGraphics(*opened_, shared_.applicationFolder);
    } catch (const std::exception& error) {
        opened_->palette = previous;
        dialogs_.status.hideStatus();
        shared_.messages->show(this,
                               "The graphics could not be read again with the new palette, so "
                               "the palette stays as it was.\n\n" +
                                   QString::fromStdString(error.what()),
                               messageStyle::exclamation);
        return;
    }
    dialogs_.status.hideStatus();
    opened_->level.modified = true;
    updateCommands();
    showLevelInPanels();
    renderLevel();
    renderPalette();
}

void frmMain::updateCommands() {
    if (opened_) {
        const QString name = QFileInfo(toQString(opened_->level.fileName)).completeBaseName();
        setWindowTitle(QString(applicationTitle) + " - " + name.toUpper() +
                       (isReadOnly() ? " (read-only)" : "") + "[*]");
        setWindowModified(opened_->level.modified);
        if (opened_->level.modified) {
            autosave_->changed();
        }
    }
    const std::string undo = history_.nextUndo();
    const std::string redo = history_.nextRedo();
    itmEditUndo_->setText(stepCaption("&Undo", undo));
    itmEditUndo_->setEnabled(!undo.empty());
    itmEditRedo_->setText(stepCaption("&Redo", redo));
    itmEditRedo_->setEnabled(!redo.empty());
    if (historyPanel_ != nullptr) {
        historyPanel_->historyChanged(history_);
    }
    updateSelectionCommands();
}

QString frmMain::keepUnsavedWork() {
    if (!opened_ || !opened_->level.modified) {
        return {};
    }
    if (isReadOnly()) {
        return "Your unsaved changes were not kept: another editor holds the level.";
    }
    try {
        const auto path = writeRecoveryCopy(opened_->level, opened_->palette);
        return "Your unsaved changes were kept in " + toQString(path) + ".";
    } catch (const std::exception& error) {
        return "Your unsaved changes could not be kept: " + QString::fromStdString(error.what());
    }
}

} // namespace marvek
