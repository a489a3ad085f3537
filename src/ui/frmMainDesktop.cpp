// The main window on the desktop: recent levels, level files dropped on it,
// and the recovery copy that keeps unsaved work through a crash or a kill.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/qtPaths.h"
#include "app/recentLevels.h"
#include "data/levelRecovery.h"
#include "data/openLevel.h"
#include "ui/LevelDocument.h"
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
}

void frmMain::setAutosaveTimer(std::unique_ptr<SingleShotTimer> timer) {
    if (LevelDocument* document = currentDocument()) {
        document->setAutosaveTimer(std::move(timer));
    }
}

void frmMain::setAutosaveTimers(std::function<std::unique_ptr<SingleShotTimer>()> make) {
    makeTimer_ = std::move(make);
}

void frmMain::offerRecovery(LevelDocument& document) {
    const fs::path levelFile = document.file();
    // A copy beside a level another editor holds is that editor's work.
    if (document.isReadOnly() || !hasNewerRecoveryCopy(levelFile)) {
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
        document.restoreRecoveryCopy();
    } catch (const std::exception& error) {
        shared_.messages->show(this,
                               "The unsaved changes could not be opened; the saved level is "
                               "open.\n\n" +
                                   QString::fromStdString(error.what()),
                               messageStyle::exclamation);
        return;
    }
    updateCommands();
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
    return openChosenInNewTab(file);
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
    return openInNewTab(entry.file, toQString(entry.configuration),
                        dialogs_.openLevel.loadUnknown());
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
