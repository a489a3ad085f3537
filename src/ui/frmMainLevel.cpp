// The main window's levels: loading them, a tab for each, and the tab in front.
#include "ui/frmMain.h"

#include "app/LevelLock.h"
#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/openLevel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/PictureBox.h"
#include "ui/frmOpenLevel.h"
#include "ui/frmStatus.h"

#include <QAction>
#include <QFileInfo>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>

#include <exception>
#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

// The first line before the loader names its stages.
const QString loadingStatus = "Loading level data";

const QString defaultLevelMessage =
    "The default level is invalid and cannot be loaded. Please reconfigure.";

} // namespace

bool frmMain::initialLoad() {
    loadOptions();
    restorePanels();
    const clsConfiguration& settings = shared_.settings;
    const QString defaultConfig = toQString(settingText(settings, settingKey::defaultConfig, {}));
    QString failure;
    if (shared_.startupLevel) {
        const QString config =
            shared_.startupConfiguration ? toQString(*shared_.startupConfiguration) : defaultConfig;
        if (useConfig(*shared_.startupLevel, config, dialogs_.openLevel.loadUnknown(), &failure)) {
            showNewLevel();
            rememberRecent(*shared_.startupLevel, config);
            for (const fs::path& more : shared_.moreStartupLevels) {
                openInNewTab(more, config, dialogs_.openLevel.loadUnknown());
            }
            switchToTab(0);
            activateWindow();
            return true;
        }
        // The default level still opens, from the settings' data folder, so
        // the editor is there to try again.
        shared_.messages->show(this, "The level could not be opened.\n\n" + failure,
                               messageStyle::exclamation);
        shared_.startupLevel.reset();
        shared_.startupConfiguration.reset();
        shared_.runDataFolder.reset();
    }
    const fs::path level =
        shared_.dataFolder() / settingText(settings, settingKey::defaultLevel, {});
    if (!useConfig(level, defaultConfig, dialogs_.openLevel.loadUnknown(), &failure)) {
        // The options come next; an empty editor behind them helps no one.
        hide();
        shared_.messages->show(this, defaultLevelMessage + "\n\n" + failure,
                               messageStyle::exclamation);
        // The options can only change the settings' folder, so the next try
        // is in that one rather than in this run's again.
        shared_.runDataFolder.reset();
        return false;
    }
    showNewLevel();
    // Without a window manager nobody hands the window the keyboard, and
    // menu shortcuts only work in the active window.
    activateWindow();
    return true;
}

std::unique_ptr<OpenedLevel> frmMain::loadLevel(const fs::path& levelFile,
                                                const QString& configuration, bool loadUnknown,
                                                QString* failure) {
    dialogs_.status.setStatus(loadingStatus);
    setEnabled(false);
    // The window comes back and the notice goes on every path.
    struct Restore {
        frmMain& window;
        ~Restore() {
            window.setEnabled(true);
            window.dialogs_.status.hideStatus();
        }
    } restore{*this};

    OpenLevelRequest request;
    request.applicationFolder = shared_.applicationFolder;
    request.dataFolder = shared_.dataFolder();
    request.levelFile = levelFile;
    request.configuration = configuration.toStdString();
    request.loadUnknownSpecials = loadUnknown;
    try {
        return std::make_unique<OpenedLevel>(openLevel(request, [this](std::string_view text) {
            dialogs_.status.setStatus(QString::fromUtf8(text.data(), qsizetype(text.size())));
        }));
    } catch (const std::exception& error) {
        if (failure != nullptr) {
            *failure = QString::fromStdString(error.what());
        }
        return nullptr;
    }
}

bool frmMain::useConfig(const fs::path& levelFile, const QString& configuration, bool loadUnknown,
                        QString* failure) {
    LevelDocument* document = currentDocument();
    std::unique_ptr<LevelLock> fresh;
    if (!lockLevel(levelFile, document != nullptr ? document->lock() : nullptr, fresh, failure)) {
        return false;
    }
    auto opened = loadLevel(levelFile, configuration, loadUnknown, failure);
    if (!opened) {
        return false;
    }
    if (!opened->repairs.empty()) {
        warnOfRepairs(*opened);
    }
    if (document == nullptr) {
        document = &addDocument(std::move(opened), configuration);
    } else {
        document->replace(std::move(opened), configuration);
    }
    if (fresh) {
        document->setLock(std::move(fresh));
        updateCommands();
    }
    offerRecovery(*document);
    return true;
}

bool frmMain::lockLevel(const fs::path& levelFile, const LevelLock* held,
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
    if (shared_.messages->show(this, question, messageStyle::yesNoQuestion) == messageAnswer::yes) {
        return true;
    }
    if (failure != nullptr) {
        *failure = name + " is open in " + who + ", so it was left to that editor.";
    }
    return false;
}

bool frmMain::openInNewTab(const fs::path& file, const QString& configuration, bool loadUnknown) {
    if (const auto open = tabOf(file)) {
        switchToTab(*open);
        return true;
    }
    QString failure;
    std::unique_ptr<LevelLock> fresh;
    auto opened = lockLevel(file, nullptr, fresh, &failure)
                      ? loadLevel(file, configuration, loadUnknown, &failure)
                      : nullptr;
    if (!opened) {
        shared_.messages->show(this, "The level could not be opened.\n\n" + failure,
                               messageStyle::exclamation);
        return false;
    }
    if (!opened->repairs.empty()) {
        warnOfRepairs(*opened);
    }
    releaseModifiers();
    LevelDocument& document = addDocument(std::move(opened), configuration);
    document.setLock(std::move(fresh));
    offerRecovery(document);
    showNewLevel();
    rememberRecent(file, configuration);
    return true;
}

std::optional<int> frmMain::tabOf(const fs::path& file) const {
    // A bare name is the data folder's, found whatever its case.
    const fs::path wanted = levelFilePath(shared_.dataFolder(), file);
    std::error_code error;
    for (std::size_t i = 0; i < documents_.size(); ++i) {
        const fs::path open = documents_[i]->file();
        if (open == wanted || fs::equivalent(open, wanted, error)) {
            return static_cast<int>(i);
        }
    }
    return std::nullopt;
}

LevelDocument& frmMain::addDocument(std::unique_ptr<OpenedLevel> opened,
                                    const QString& configuration) {
    auto document = std::make_unique<LevelDocument>(std::move(opened), configuration,
                                                    shared_.applicationFolder, makeTimer_(), this);
    document->setUndoMaximum(settingNumber(shared_.settings, settingKey::undoLevels, 64));
    if (shared_.editRangeFault) {
        document->setRangeFault(shared_.editRangeFault);
    }
    LevelDocument& added = *document;
    connectDocument(added);
    auto* view = new LevelView(added, ViewServices{shared_, editing_, *tools_}, views_);
    connect(view, &LevelView::viewMoved, this, [this, view] {
        if (view == currentView()) {
            refreshNavigation();
        }
    });
    connect(view, &LevelView::cellStatus, this, [this](const QString& text) {
        if (text.isEmpty()) {
            statusBar()->clearMessage();
        } else {
            statusBar()->showMessage(text);
        }
    });
    connect(view, &LevelView::brushChanged, palette_, &PaletteStrip::redraw);
    documents_.push_back(std::move(document));
    views_->addWidget(view);
    const int index = tabLevels_->addTab(QString());
    updateTabTitle(added);
    tabLevels_->setCurrentIndex(index);
    documentShown();
    return added;
}

void frmMain::connectDocument(LevelDocument& document) {
    LevelDocument* changed = &document;
    const auto ifCurrent = [this, changed](auto action) {
        return [this, changed, action] {
            if (changed == currentDocument()) {
                action();
            }
        };
    };
    connect(changed, &LevelDocument::historyChanged, this, ifCurrent([this] { updateCommands(); }));
    connect(changed, &LevelDocument::selectionChanged, this,
            ifCurrent([this] { updateSelectionCommands(); }));
    connect(changed, &LevelDocument::cellsChanged, this, [this, changed](const CellRange& range) {
        if (changed == currentDocument()) {
            refreshPanels(range);
        }
    });
    connect(changed, &LevelDocument::levelReplaced, this, ifCurrent([this] { documentShown(); }));
    connect(changed, &LevelDocument::graphicsChanged, this, ifCurrent([this] {
                palette_->refresh();
                showLevelInPanels();
            }));
    connect(changed, &LevelDocument::modifiedChanged, this, [this, changed] {
        updateTabTitle(*changed);
        if (changed == currentDocument()) {
            updateCommands();
        }
    });
    connect(changed, &LevelDocument::fileChangedOnDisk, this, [this, changed] {
        updateTabTitle(*changed);
        if (changed == currentDocument()) {
            updateCommands();
            statusBar()->showMessage(QFileInfo(toQString(changed->file())).fileName() +
                                     " was changed by another program: File > Reload reads it "
                                     "again.");
        }
    });
    connect(changed, &LevelDocument::notice, this,
            [this](const QString& text) { statusBar()->showMessage(text); });
    connect(changed, &LevelDocument::recoveryTrouble, this,
            [this](const QString& text, bool failing) {
                shared_.messages->show(
                    this, text, failing ? messageStyle::exclamation : messageStyle::information);
            });
}

void frmMain::updateTabTitle(LevelDocument& document) {
    for (std::size_t i = 0; i < documents_.size(); ++i) {
        if (documents_[i].get() != &document) {
            continue;
        }
        const QString file = toQString(document.file());
        QString title = QFileInfo(file).completeBaseName().toUpper();
        if (document.modified()) {
            title += " *";
        }
        if (document.changedOnDisk()) {
            title += " (changed on disk)";
        }
        tabLevels_->setTabText(static_cast<int>(i), title);
        tabLevels_->setTabToolTip(static_cast<int>(i), file);
    }
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
    if (LevelDocument* document = currentDocument()) {
        updateTabTitle(*document);
    }
    documentShown();
}

void frmMain::warnOfRepairs(const OpenedLevel& opened) {
    QString text = "Parts of these files were missing and were filled in while reading them; "
                   "saving writes the level as it is shown now:";
    for (const std::string& repair : opened.repairs) {
        text += "\n\n" + toQString(repair);
    }
    shared_.messages->show(this, text, messageStyle::exclamation);
}

void frmMain::loadOptions() {
    const clsConfiguration& settings = shared_.settings;
    editing_.alphaBlending = settingNumber(settings, settingKey::alphaBlending, 1) != 0;
    editing_.autoPlaceSpecials = settingNumber(settings, settingKey::autoPlaceSpecials, 1) != 0;
    editing_.specialsInTilesMode = settingNumber(settings, settingKey::specialsInTilesMode, 1) != 0;
    for (const auto& document : documents_) {
        document->setUndoMaximum(settingNumber(settings, settingKey::undoLevels, 64));
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
