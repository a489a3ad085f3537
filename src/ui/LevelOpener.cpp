// A level file into a tab, with the questions opening it may ask.
#include "ui/LevelOpener.h"

#include "app/LevelLock.h"
#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/levelRecovery.h"
#include "data/openLevel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelTabs.h"
#include "ui/frmStatus.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMainWindow>

#include <exception>

namespace marvek {
namespace {

namespace fs = std::filesystem;

// The first line before the loader names its stages.
const QString loadingStatus = "Loading level data";

} // namespace

LevelOpener::LevelOpener(SharedObjects& shared, frmStatus& status, LevelTabs& tabs,
                         QMainWindow& window, std::function<void()> levelShown)
    : shared_(shared), status_(status), tabs_(tabs), window_(window),
      levelShown_(std::move(levelShown)) {}

bool LevelOpener::useConfig(const fs::path& levelFile, const QString& configuration,
                            bool loadUnknown, QString* failure) {
    LevelDocument* document = tabs_.current();
    std::unique_ptr<LevelLock> fresh;
    if (!lock(levelFile, document != nullptr ? document->lock() : nullptr, fresh, failure)) {
        return false;
    }
    auto opened = load(levelFile, configuration, loadUnknown, failure);
    if (!opened) {
        return false;
    }
    if (!opened->repairs.empty()) {
        warnOfRepairs(*opened);
    }
    if (document == nullptr) {
        document = &addTab(std::move(opened), configuration);
    } else {
        document->replace(std::move(opened), configuration);
    }
    if (fresh) {
        document->setLock(std::move(fresh));
        tabs_.fileStateChanged(*document);
    }
    offerRecovery(*document);
    return true;
}

bool LevelOpener::openHere(const fs::path& levelFile, const QString& configuration,
                           bool loadUnknown) {
    QString failure;
    if (!useConfig(levelFile, configuration, loadUnknown, &failure)) {
        tellNotOpened(failure);
        return false;
    }
    levelShown_();
    return true;
}

bool LevelOpener::openInNewTab(const fs::path& levelFile, const QString& configuration,
                               bool loadUnknown) {
    QString failure;
    std::unique_ptr<LevelLock> fresh;
    auto opened = lock(levelFile, nullptr, fresh, &failure)
                      ? load(levelFile, configuration, loadUnknown, &failure)
                      : nullptr;
    if (!opened) {
        tellNotOpened(failure);
        return false;
    }
    if (!opened->repairs.empty()) {
        warnOfRepairs(*opened);
    }
    tabs_.releaseModifiers();
    LevelDocument& document = addTab(std::move(opened), configuration);
    document.setLock(std::move(fresh));
    offerRecovery(document);
    levelShown_();
    return true;
}

void LevelOpener::tellNotOpened(const QString& failure) {
    shared_.messages->show(&window_, "The level could not be opened.\n\n" + failure,
                           messageStyle::exclamation);
}

bool LevelOpener::lock(const fs::path& levelFile, const LevelLock* held,
                       std::unique_ptr<LevelLock>& fresh, QString* failure) {
    const fs::path file = levelFilePath(shared_.dataFolder(), levelFile);
    if (held != nullptr && held->isFor(file)) {
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
    if (shared_.messages->show(&window_, question, messageStyle::yesNoQuestion) ==
        messageAnswer::yes) {
        return true;
    }
    if (failure != nullptr) {
        *failure = name + " is open in " + who + ", so it was left to that editor.";
    }
    return false;
}

std::unique_ptr<OpenedLevel> LevelOpener::load(const fs::path& levelFile,
                                               const QString& configuration, bool loadUnknown,
                                               QString* failure) {
    status_.setStatus(loadingStatus);
    window_.setEnabled(false);
    // The window comes back and the notice goes on every path.
    struct Restore {
        QWidget& window;
        frmStatus& status;
        ~Restore() {
            window.setEnabled(true);
            status.hideStatus();
        }
    } restore{window_, status_};

    OpenLevelRequest request;
    request.applicationFolder = shared_.applicationFolder;
    request.dataFolder = shared_.dataFolder();
    request.levelFile = levelFile;
    request.configuration = configuration.toStdString();
    request.loadUnknownSpecials = loadUnknown;
    try {
        return std::make_unique<OpenedLevel>(openLevel(request, [this](std::string_view text) {
            status_.setStatus(QString::fromUtf8(text.data(), qsizetype(text.size())));
        }));
    } catch (const std::exception& error) {
        if (failure != nullptr) {
            *failure = QString::fromStdString(error.what());
        }
        return nullptr;
    }
}

void LevelOpener::warnOfRepairs(const OpenedLevel& opened) {
    QString text = "Parts of these files were missing and were filled in while reading them; "
                   "saving writes the level as it is shown now:";
    for (const std::string& repair : opened.repairs) {
        text += "\n\n" + toQString(repair);
    }
    shared_.messages->show(&window_, text, messageStyle::exclamation);
}

LevelDocument& LevelOpener::addTab(std::unique_ptr<OpenedLevel> opened,
                                   const QString& configuration) {
    auto document =
        std::make_unique<LevelDocument>(std::move(opened), configuration, shared_.applicationFolder,
                                        std::make_unique<QtSingleShotTimer>());
    document->setUndoMaximum(settingNumber(shared_.settings, settingKey::undoLevels, 64));
    if (shared_.editRangeFault) {
        document->setRangeFault(shared_.editRangeFault);
    }
    QObject::connect(document.get(), &LevelDocument::recoveryTrouble, &window_,
                     [&shared = shared_, &window = window_](const QString& text, bool failing) {
                         shared.messages->show(&window, text,
                                               failing ? messageStyle::exclamation
                                                       : messageStyle::information);
                     });
    return tabs_.add(std::move(document));
}

void LevelOpener::offerRecovery(LevelDocument& document) {
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
    levelShown_();
    if (shared_.messages->show(&window_, question, messageStyle::yesNoQuestion) !=
        messageAnswer::yes) {
        return;
    }
    try {
        document.restoreRecoveryCopy();
    } catch (const std::exception& error) {
        shared_.messages->show(&window_,
                               "The unsaved changes could not be opened; the saved level is "
                               "open.\n\n" +
                                   QString::fromStdString(error.what()),
                               messageStyle::exclamation);
        return;
    }
    tabs_.fileStateChanged(document);
}

} // namespace marvek
