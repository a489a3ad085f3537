// A level written to its file or to another, after the questions first.
#include "ui/LevelSaver.h"

#include "app/LevelLock.h"
#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "data/levelRecovery.h"
#include "data/openLevel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelTabs.h"
#include "ui/frmStatus.h"

#include <QFileInfo>
#include <QMainWindow>
#include <QStatusBar>

#include <exception>

namespace marvek {
namespace {

namespace fs = std::filesystem;

QString fileName(const LevelDocument& document) {
    return QFileInfo(toQString(document.file())).fileName();
}

} // namespace

LevelSaver::LevelSaver(SharedObjects& shared, frmStatus& status, LevelTabs& tabs,
                       QMainWindow& window)
    : shared_(shared), status_(status), tabs_(tabs), window_(window) {}

bool LevelSaver::saveIfModified(LevelDocument& document, const QString& question, bool* cancelled) {
    *cancelled = false;
    if (!document.modified()) {
        return true;
    }
    switch (shared_.messages->show(&window_, question, messageStyle::yesNoCancelQuestion)) {
    case messageAnswer::yes:
        return save(document);
    case messageAnswer::no:
        // The kept copy goes only when the work really goes: the level that
        // replaces it may still fail to open.
        return true;
    default:
        *cancelled = true;
        return true;
    }
}

bool LevelSaver::save(LevelDocument& document) {
    if (refuseReadOnly(document)) {
        return false;
    }
    if (document.file().empty()) {
        return saveAs(document);
    }
    if (document.changedOnDisk() &&
        shared_.messages->show(&window_,
                               fileName(document) +
                                   " was changed by another program since Marvek read it. "
                                   "Save over those changes?",
                               messageStyle::yesNoQuestion) != messageAnswer::yes) {
        return false;
    }
    const bool written = write(document);
    tabs_.fileStateChanged(document);
    return written;
}

bool LevelSaver::saveAs(LevelDocument& document) {
    if (refuseReadOnly(document)) {
        return false;
    }
    // Refused before the dialog: no name can make such a level savable.
    if (const std::string reason = document.level().whyNotSavable(); !reason.empty()) {
        tellNotSaved(toQString(reason));
        return false;
    }
    const QString previousFolder = shared_.dialogs->lastFolder();
    const QString chosen =
        shared_.dialogs->saveFile(&window_, "Save Thornwick Level As", "All files (*.*)|*.*",
                                  toQString(document.file()), clsCommonDialog::saveFlags, 1);
    if (chosen.isEmpty()) {
        return false;
    }
    std::unique_ptr<LevelLock> targetLock;
    if (!lockTarget(document, toPath(chosen), targetLock)) {
        return false;
    }
    const fs::path previous = document.file();
    const bool hadUnsavedWork = document.modified();
    document.rename(toPath(chosen));
    // The file dialog asked before a file was overwritten.
    if (!write(document)) {
        // Save goes on meaning the file the level came from, and the next
        // dialog opens where the last good choice was.
        document.rename(previous);
        shared_.dialogs->setLastFolder(previousFolder);
        tabs_.fileStateChanged(document);
        return false;
    }
    if (targetLock) {
        document.setLock(std::move(targetLock));
    }
    tabs_.fileStateChanged(document);
    // The work kept beside the former file is saved now; left there, it
    // would be offered again whenever that file is opened.
    if (hadUnsavedWork && !previous.empty() && previous != document.file() &&
        !removeRecoveryCopy(previous)) {
        window_.statusBar()->showMessage("The recovery copy " + toQString(recoveryPath(previous)) +
                                         " could not be removed.");
    }
    return true;
}

bool LevelSaver::write(LevelDocument& document) {
    status_.setStatus("Saving level...");
    try {
        document.save();
    } catch (const std::exception& error) {
        status_.hideStatus();
        tellNotSaved(QString::fromStdString(error.what()));
        return false;
    }
    status_.hideStatus();
    return true;
}

void LevelSaver::tellNotSaved(const QString& why) {
    shared_.messages->show(&window_, "The level was not saved.\n\n" + why,
                           messageStyle::exclamation);
}

bool LevelSaver::refuseReadOnly(const LevelDocument& document) {
    if (!document.isReadOnly()) {
        return false;
    }
    tellNotSaved(toQString(document.lock()->level().filename()) +
                 " is open read-only: another editor (process " +
                 QString::number(document.lock()->holder()->process) + ") holds it.");
    return true;
}

bool LevelSaver::lockTarget(const LevelDocument& document, const fs::path& target,
                            std::unique_ptr<LevelLock>& fresh) {
    if (document.lock() != nullptr && document.lock()->isFor(target)) {
        return true;
    }
    QString holder;
    if (const auto tab = tabs_.indexOf(target); tab && &tabs_.document(*tab) != &document) {
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
    tellNotSaved(toQString(target.filename()) + " is open in " + holder +
                 ". Save under another name.");
    return false;
}

} // namespace marvek
