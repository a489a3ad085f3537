// The main window's menu commands: opening, saving and the options.
#include "ui/frmMain.h"

#include "app/LevelLock.h"
#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/levelRecovery.h"
#include "data/openLevel.h"
#include "ui/HistoryPanel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/frmGraphics.h"
#include "ui/frmOpenLevel.h"
#include "ui/frmOptions.h"
#include "ui/frmStatus.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QStatusBar>

#include <exception>

namespace marvek {
namespace {

const QString openQuestion = "The level has been modified since you last saved it. Do you want "
                             "to save it first before loading another?";

QString stepCaption(const QString& command, const std::string& step) {
    return step.empty() ? command : command + " " + toQString(step);
}

QString fileName(const LevelDocument& document) {
    return QFileInfo(toQString(document.file())).fileName();
}

} // namespace

bool frmMain::saveIfModified(LevelDocument& document, const QString& question, bool* cancelled) {
    *cancelled = false;
    if (!document.modified()) {
        return true;
    }
    switch (shared_.messages->show(this, question, messageStyle::yesNoCancelQuestion)) {
    case messageAnswer::yes:
        return saveDocument(document);
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
    LevelDocument* document = currentDocument();
    bool cancelled = false;
    if (document != nullptr &&
        (!saveIfModified(*document, openQuestion, &cancelled) || cancelled)) {
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

bool frmMain::fileOpenInNewTab() {
    releaseModifiers();
    const auto chosen =
        shared_.dialogs->openFile(this, "Open Thornwick Level", "All files (*.*)|*.*", QString(),
                                  clsCommonDialog::openFlags, 1);
    if (chosen.empty()) {
        return false;
    }
    return openChosenInNewTab(toPath(chosen.begin()->second));
}

bool frmMain::openChosenInNewTab(const std::filesystem::path& file) {
    if (const auto open = tabOf(file)) {
        switchToTab(*open);
        return true;
    }
    if (!dialogs_.openLevel.showModal()) {
        return false;
    }
    return openInNewTab(file, dialogs_.openLevel.configuration(), dialogs_.openLevel.loadUnknown());
}

bool frmMain::openChosenLevel(const std::filesystem::path& file) {
    // No file is held by two tabs.
    if (const auto open = tabOf(file); open && *open != currentTab()) {
        switchToTab(*open);
        return true;
    }
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

bool frmMain::fileReload() {
    releaseModifiers();
    LevelDocument* document = currentDocument();
    if (document == nullptr) {
        return false;
    }
    if (document->modified() &&
        shared_.messages->show(this,
                               fileName(*document) +
                                   " has unsaved changes. Read it again from its file and let "
                                   "them go?",
                               messageStyle::yesNoQuestion) != messageAnswer::yes) {
        return false;
    }
    QString failure;
    if (!useConfig(document->file(), document->configuration(), dialogs_.openLevel.loadUnknown(),
                   &failure)) {
        shared_.messages->show(this, "The level could not be opened.\n\n" + failure,
                               messageStyle::exclamation);
        return false;
    }
    showNewLevel();
    return true;
}

bool frmMain::fileSave() {
    releaseModifiers();
    LevelDocument* document = currentDocument();
    return document != nullptr && saveDocument(*document);
}

bool frmMain::refuseReadOnlySave(const LevelDocument& document) {
    if (!document.isReadOnly()) {
        return false;
    }
    shared_.messages->show(this,
                           "The level was not saved.\n\n" +
                               toQString(document.lock()->level().filename()) +
                               " is open read-only: another editor (process " +
                               QString::number(document.lock()->holder()->process) + ") holds it.",
                           messageStyle::exclamation);
    return true;
}

bool frmMain::lockSaveTarget(const LevelDocument& document, const std::filesystem::path& target,
                             std::unique_ptr<LevelLock>& fresh) {
    if (document.lock() != nullptr && document.lock()->isFor(target)) {
        return true;
    }
    QString holder;
    if (const auto tab = tabOf(target); tab && *tab != currentTab()) {
        holder = "another tab";
    } else {
        fresh = std::make_unique<LevelLock>(target);
        if (const auto& other = fresh->holder()) {
            holder = "another editor (process " + QString::number(other->process) + ")";
        }
    }
    if (holder.isEmpty()) {
        return true;
    }
    fresh.reset();
    shared_.messages->show(this,
                           "The level was not saved.\n\n" + toQString(target.filename()) +
                               " is open in " + holder + ". Save under another name.",
                           messageStyle::exclamation);
    return false;
}

bool frmMain::saveDocument(LevelDocument& document) {
    if (refuseReadOnlySave(document)) {
        return false;
    }
    if (document.file().empty()) {
        return fileSaveAs();
    }
    if (document.changedOnDisk() &&
        shared_.messages->show(this,
                               fileName(document) +
                                   " was changed by another program since Marvek read it. "
                                   "Save over those changes?",
                               messageStyle::yesNoQuestion) != messageAnswer::yes) {
        return false;
    }
    dialogs_.status.setStatus("Saving level...");
    try {
        document.save();
    } catch (const std::exception& error) {
        dialogs_.status.hideStatus();
        shared_.messages->show(
            this, "The level was not saved.\n\n" + QString::fromStdString(error.what()),
            messageStyle::exclamation);
        updateCommands();
        return false;
    }
    dialogs_.status.hideStatus();
    updateTabTitle(document);
    updateCommands();
    return true;
}

bool frmMain::fileSaveAs() {
    LevelDocument* document = currentDocument();
    if (document == nullptr || refuseReadOnlySave(*document)) {
        return false;
    }
    // Refused before the dialog: no name can make such a level savable.
    if (const std::string reason = document->level().whyNotSavable(); !reason.empty()) {
        shared_.messages->show(this, "The level was not saved.\n\n" + toQString(reason),
                               messageStyle::exclamation);
        return false;
    }
    const QString previousFolder = shared_.dialogs->lastFolder();
    const QString chosen =
        shared_.dialogs->saveFile(this, "Save Thornwick Level As", "All files (*.*)|*.*",
                                  toQString(document->file()), clsCommonDialog::saveFlags, 1);
    if (chosen.isEmpty()) {
        return false;
    }
    std::unique_ptr<LevelLock> targetLock;
    if (!lockSaveTarget(*document, toPath(chosen), targetLock)) {
        return false;
    }
    const std::filesystem::path previous = document->file();
    const bool hadUnsavedWork = document->modified();
    document->rename(toPath(chosen));
    dialogs_.status.setStatus("Saving level...");
    try {
        // The file dialog asked before a file was overwritten.
        document->save();
    } catch (const std::exception& error) {
        dialogs_.status.hideStatus();
        shared_.messages->show(
            this, "The level was not saved.\n\n" + QString::fromStdString(error.what()),
            messageStyle::exclamation);
        // Save goes on meaning the file the level came from, and the next
        // dialog opens where the last good choice was.
        document->rename(previous);
        shared_.dialogs->setLastFolder(previousFolder);
        updateCommands();
        return false;
    }
    dialogs_.status.hideStatus();
    if (targetLock) {
        document->setLock(std::move(targetLock));
    }
    updateTabTitle(*document);
    updateCommands();
    // The work kept beside the former file is saved now; left there, it
    // would be offered again whenever that file is opened.
    if (hadUnsavedWork && !previous.empty() && previous != document->file() &&
        !removeRecoveryCopy(previous)) {
        statusBar()->showMessage("The recovery copy " + toQString(recoveryPath(previous)) +
                                 " could not be removed.");
    }
    return true;
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
    if (LevelView* view = currentView()) {
        view->scheduleRedraw();
    }
    palette_->redraw();
}

void frmMain::toolsGraphics() {
    LevelDocument* document = currentDocument();
    if (!dialogs_.graphics.showModal(document != nullptr ? &document->opened() : nullptr) ||
        document == nullptr) {
        return;
    }
    // An import replaced the level's own graphics: show the new pictures.
    try {
        document->rereadGraphics();
    } catch (const std::exception& error) {
        shared_.messages->show(this,
                               "The level's graphics could not be read again, so it shows them "
                               "as they were.\n\n" +
                                   QString::fromStdString(error.what()),
                               messageStyle::exclamation);
    }
}

void frmMain::updateCommands() {
    const LevelDocument* document = currentDocument();
    if (document != nullptr) {
        const QString name = QFileInfo(toQString(document->file())).completeBaseName();
        setWindowTitle(QString(applicationTitle) + " - " + name.toUpper() +
                       (document->isReadOnly() ? " (read-only)" : "") + "[*]");
        setWindowModified(document->modified());
    }
    const UndoHistory& steps = history();
    const std::string undo = steps.nextUndo();
    const std::string redo = steps.nextRedo();
    itmEditUndo_->setText(stepCaption("&Undo", undo));
    itmEditUndo_->setEnabled(!undo.empty());
    itmEditRedo_->setText(stepCaption("&Redo", redo));
    itmEditRedo_->setEnabled(!redo.empty());
    itmFileReload_->setEnabled(document != nullptr && !document->file().empty());
    if (historyPanel_ != nullptr) {
        historyPanel_->historyChanged(steps);
    }
    updateSelectionCommands();
    showZoom();
}

void frmMain::showZoom() {
    if (lblZoom_ != nullptr) {
        lblZoom_->setText(QString("Zoom %1%").arg(zoom()));
    }
}

} // namespace marvek
