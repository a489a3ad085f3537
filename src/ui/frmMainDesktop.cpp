// The main window on the desktop: recent levels, level files dropped on it,
// and the recovery copy that keeps unsaved work through a crash or a kill.
#include "ui/frmMain.h"

#include "app/LevelLock.h"
#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/qtPaths.h"
#include "app/recentLevels.h"
#include "data/levelRecovery.h"
#include "data/openLevel.h"
#include "ui/RecentLevelsMenu.h"
#include "ui/frmOpenLevel.h"

#include <QDateTime>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>

#include <exception>
#include <optional>
#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

const QString openQuestion = "The level has been modified since you last saved it. Do you want "
                             "to save it first before loading another?";

// The one local file a drag carries, when it carries exactly one.
std::optional<fs::path> droppedFile(const QMimeData* data) {
    if (data == nullptr || !data->hasUrls() || data->urls().size() != 1 ||
        !data->urls().constFirst().isLocalFile()) {
        return std::nullopt;
    }
    return toPath(data->urls().constFirst().toLocalFile());
}

} // namespace

void frmMain::buildDesktopSupport() {
    setAcceptDrops(true);
    auto* file = menuBar()->findChild<QMenu*>("mnuFile");
    auto* exit = file->findChild<QAction*>("itmFileExit");
    mnuFileRecent_ =
        new RecentLevelsMenu([this](std::size_t index) { openRecentLevel(index); }, file);
    // Above the separator that sets Exit apart.
    const QList<QAction*> actions = file->actions();
    const qsizetype exitAt = actions.indexOf(exit);
    file->insertMenu(exitAt > 0 ? actions[exitAt - 1] : exit, mnuFileRecent_);
    showRecentLevels();
    setAutosaveTimer(std::make_unique<QtSingleShotTimer>());
}

void frmMain::setAutosaveTimer(std::unique_ptr<SingleShotTimer> timer) {
    autosave_ = std::make_unique<Autosave>(
        std::move(timer),
        Autosave::Actions{[this] { return opened_ && opened_->level.modified && !isReadOnly(); },
                          [this] { keepRecoveryCopy(); }});
}

bool frmMain::useConfig(const fs::path& levelFile, const QString& configuration, bool loadUnknown,
                        QString* failure) {
    // Work still unsaved here is work the user chose not to save.
    std::optional<fs::path> discarded;
    if (opened_ && opened_->level.modified && !opened_->level.fileName.empty()) {
        discarded = fs::path(opened_->level.fileName);
    }
    std::unique_ptr<LevelLock> fresh;
    if (!lockLevel(levelFile, fresh, failure)) {
        return false;
    }
    // Only the editor holding a level owns its recovery copy.
    const bool ownedDiscarded = !isReadOnly();
    if (!openWithConfig(levelFile, configuration, loadUnknown, failure)) {
        return false;
    }
    if (fresh) {
        levelLock_ = std::move(fresh);
        updateCommands();
    }
    autosave_->settled();
    if (discarded && ownedDiscarded && !removeRecoveryCopy(*discarded)) {
        statusBar()->showMessage("The recovery copy " + toQString(recoveryPath(*discarded)) +
                                 " could not be removed.");
    }
    offerRecovery();
    return true;
}

bool frmMain::isReadOnly() const noexcept {
    return levelLock_ && levelLock_->holder().has_value();
}

bool frmMain::lockLevel(const fs::path& levelFile, std::unique_ptr<LevelLock>& fresh,
                        QString* failure) {
    const fs::path file = levelFilePath(shared_.dataFolder(), levelFile);
    if (levelLock_ && levelLock_->isFor(file)) {
        return true;
    }
    fresh = std::make_unique<LevelLock>(file);
    const auto& holder = fresh->holder();
    if (!holder) {
        return true;
    }
    const QString name = toQString(file.filename());
    const QString who = QString("another editor (process %1%2)")
                            .arg(holder->process)
                            .arg(holder->host.isEmpty() ? QString() : " on " + holder->host);
    const QString question = name + " is open in " + who +
                             ".\n\nOpen it read-only? It can then be neither saved nor kept "
                             "in a recovery copy.";
    if (shared_.messages->show(this, question, messageStyle::yesNoQuestion) == messageAnswer::yes) {
        return true;
    }
    if (failure != nullptr) {
        *failure = name + " is open in " + who + ", so it was left to that editor.";
    }
    return false;
}

bool frmMain::refuseReadOnlySave() {
    if (!isReadOnly()) {
        return false;
    }
    shared_.messages->show(this,
                           "The level was not saved.\n\n" +
                               toQString(levelLock_->level().filename()) +
                               " is open read-only: another editor (process " +
                               QString::number(levelLock_->holder()->process) + ") holds it.",
                           messageStyle::exclamation);
    return true;
}

void frmMain::offerRecovery() {
    const fs::path levelFile = opened_->level.fileName;
    // A copy beside a level another editor holds is that editor's work.
    if (isReadOnly() || !hasNewerRecoveryCopy(levelFile)) {
        return;
    }
    const QFileInfo copy(toQString(recoveryPath(levelFile)));
    const QString question = "Marvek kept unsaved changes to " + toQString(levelFile.filename()) +
                             " from " + copy.lastModified().toString("yyyy-MM-dd HH:mm:ss") +
                             ". Open them?";
    // The saved level stands behind the question.
    showNewLevel();
    if (shared_.messages->show(this, question, messageStyle::yesNoQuestion) != messageAnswer::yes) {
        return;
    }
    try {
        restoreRecoveryCopy(*opened_, shared_.applicationFolder);
    } catch (const std::exception& error) {
        shared_.messages->show(this,
                               "The unsaved changes could not be opened; the saved level is "
                               "open.\n\n" +
                                   QString::fromStdString(error.what()),
                               messageStyle::exclamation);
        return;
    }
    history_.clear();
    resetEditState();
    updateCommands();
}

void frmMain::keepRecoveryCopy() {
    const QString copy = toQString(recoveryPath(opened_->level));
    try {
        writeRecoveryCopy(opened_->level, opened_->palette);
    } catch (const std::exception& error) {
        const QString reason = QString::fromStdString(error.what());
        statusBar()->showMessage("The recovery copy could not be written: " + reason);
        // Once, not at every retry: a box every few seconds would stop the work.
        if (recoveryHealth_.failed() == RecoveryCopyHealth::Change::nowFailing) {
            shared_.messages->show(this,
                                   "The recovery copy " + copy +
                                       " could not be written, so unsaved work would not "
                                       "survive a crash. Marvek keeps trying.\n\n" +
                                       reason,
                                   messageStyle::exclamation);
        }
        return;
    }
    if (recoveryHealth_.written() == RecoveryCopyHealth::Change::workingAgain) {
        shared_.messages->show(this, "The recovery copy " + copy + " is written again.",
                               messageStyle::information);
    }
}

void frmMain::dropRecoveryCopy() {
    autosave_->settled();
    if (opened_ && !isReadOnly() && !removeRecoveryCopy(opened_->level)) {
        statusBar()->showMessage("The recovery copy " + toQString(recoveryPath(opened_->level)) +
                                 " could not be removed.");
    }
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    if (droppedFile(event->mimeData())) {
        event->acceptProposedAction();
    }
}

void frmMain::dropEvent(QDropEvent* event) {
    const auto file = droppedFile(event->mimeData());
    if (!file) {
        return;
    }
    event->acceptProposedAction();
    openLevelFile(*file);
}

bool frmMain::openLevelFile(const fs::path& file) {
    releaseModifiers();
    bool cancelled = false;
    if (!saveIfModified(openQuestion, &cancelled) || cancelled) {
        return false;
    }
    return openChosenLevel(file);
}

bool frmMain::openRecentLevel(std::size_t index) {
    releaseModifiers();
    RecentLevels recent = RecentLevels::readFrom(shared_.settings);
    if (index >= recent.levels().size()) {
        return false;
    }
    const RecentLevel entry = recent.levels()[index];
    std::error_code error;
    if (!fs::is_regular_file(entry.file, error)) {
        recent.remove(entry.file);
        recent.writeTo(shared_.settings);
        saveRecentLevels();
        shared_.messages->show(this,
                               toQString(entry.file) +
                                   " no longer exists, so it was taken off the recent levels.",
                               messageStyle::exclamation);
        return false;
    }
    bool cancelled = false;
    if (!saveIfModified(openQuestion, &cancelled) || cancelled) {
        return false;
    }
    QString failure;
    const QString configuration = toQString(entry.configuration);
    if (!useConfig(entry.file, configuration, dialogs_.openLevel.loadUnknown(), &failure)) {
        shared_.messages->show(this, "The level could not be opened.\n\n" + failure,
                               messageStyle::exclamation);
        return false;
    }
    showNewLevel();
    rememberRecent(entry.file, configuration);
    return true;
}

void frmMain::rememberRecent(const fs::path& file, const QString& configuration) {
    std::error_code error;
    const fs::path absolute = fs::absolute(file, error);
    RecentLevels recent = RecentLevels::readFrom(shared_.settings);
    recent.add({error ? file : absolute, configuration.toStdString()});
    recent.writeTo(shared_.settings);
    saveRecentLevels();
}

void frmMain::saveRecentLevels() {
    showRecentLevels();
    try {
        shared_.settings.SaveConfiguration(shared_.settingsFile(), "\r\n", true);
    } catch (const std::exception& error) {
        statusBar()->showMessage("The recent levels could not be kept: " +
                                 QString::fromStdString(error.what()));
    }
}

void frmMain::showRecentLevels() {
    mnuFileRecent_->showLevels(RecentLevels::readFrom(shared_.settings));
}

} // namespace marvek
