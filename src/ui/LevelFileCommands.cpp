// The File menu's commands on the open levels.
#include "ui/LevelFileCommands.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "app/recentLevels.h"
#include "app/settings.h"
#include "ui/LevelDocument.h"
#include "ui/LevelTabs.h"
#include "ui/RecentLevelsMenu.h"
#include "ui/frmOpenLevel.h"

#include <QMainWindow>
#include <QStringList>

#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

const QString openQuestion = "The level has been modified since you last saved it. Do you want "
                             "to save it first before loading another?";

const QString closingQuestion = "The level has been modified since you last saved it. Do you "
                                "want to save it before quitting?";

const QString defaultLevelMessage =
    "The default level is invalid and cannot be loaded. Please reconfigure.";

} // namespace

LevelFileCommands::LevelFileCommands(SharedObjects& shared, Dialogs dialogs, LevelTabs& tabs,
                                     RecentLevelsMenu& recent, QMainWindow& window)
    : shared_(shared), dialogs_(dialogs), tabs_(tabs), recent_(recent), window_(window),
      opener_(shared, dialogs.status, tabs, window, [this] { emit levelOpened(); }),
      saver_(shared, dialogs.status, tabs, window) {}

bool LevelFileCommands::openStartupLevels() {
    return openStartupLevel() || openDefaultLevel();
}

bool LevelFileCommands::openStartupLevel() {
    if (!shared_.startupLevel) {
        return false;
    }
    const QString config =
        shared_.startupConfiguration
            ? toQString(*shared_.startupConfiguration)
            : toQString(settingText(shared_.settings, settingKey::defaultConfig, {}));
    if (opener_.openHere(*shared_.startupLevel, config, dialogs_.openLevel.loadUnknown())) {
        recent_.remember(*shared_.startupLevel, config);
        for (const fs::path& more : shared_.moreStartupLevels) {
            openInNewTab(more, config);
        }
        tabs_.switchTo(0);
        return true;
    }
    // The default level still opens, from the settings' data folder, so
    // the editor is there to try again.
    shared_.startupLevel.reset();
    shared_.startupConfiguration.reset();
    shared_.runDataFolder.reset();
    return false;
}

bool LevelFileCommands::openDefaultLevel() {
    const clsConfiguration& settings = shared_.settings;
    const fs::path level =
        shared_.dataFolder() / settingText(settings, settingKey::defaultLevel, {});
    QString failure;
    if (!opener_.useConfig(level, toQString(settingText(settings, settingKey::defaultConfig, {})),
                           dialogs_.openLevel.loadUnknown(), &failure)) {
        // The options come next; an empty editor behind them helps no one.
        window_.hide();
        shared_.messages->show(&window_, defaultLevelMessage + "\n\n" + failure,
                               messageStyle::exclamation);
        // The options can only change the settings' folder, so the next try
        // is in that one rather than in this run's again.
        shared_.runDataFolder.reset();
        return false;
    }
    emit levelOpened();
    return true;
}

bool LevelFileCommands::open() {
    tabs_.releaseModifiers();
    LevelDocument* document = tabs_.current();
    if (document != nullptr && !settled(*document, openQuestion)) {
        return false;
    }
    const auto file = chooseLevelFile();
    return file && openChosenLevel(*file);
}

bool LevelFileCommands::openInNewTab() {
    tabs_.releaseModifiers();
    const auto file = chooseLevelFile();
    return file && openChosenInNewTab(*file);
}

bool LevelFileCommands::openDropped(const fs::path& file) {
    tabs_.releaseModifiers();
    return openChosenInNewTab(file);
}

bool LevelFileCommands::openRecent(std::size_t index) {
    tabs_.releaseModifiers();
    const auto entry = recent_.entry(index);
    if (!entry) {
        return false;
    }
    std::error_code error;
    if (!fs::is_regular_file(entry->file, error)) {
        recent_.forget(entry->file);
        shared_.messages->show(&window_,
                               toQString(entry->file) +
                                   " no longer exists, so it was taken off the recent levels.",
                               messageStyle::exclamation);
        return false;
    }
    return openInNewTab(entry->file, toQString(entry->configuration));
}

std::optional<fs::path> LevelFileCommands::chooseLevelFile() {
    const auto chosen =
        shared_.dialogs->openFile(&window_, "Open Thornwick Level", "All files (*.*)|*.*",
                                  QString(), clsCommonDialog::openFlags, 1);
    if (chosen.empty()) {
        return std::nullopt;
    }
    return toPath(chosen.begin()->second);
}

bool LevelFileCommands::openChosenLevel(const fs::path& file) {
    // No file is held by two tabs.
    if (const auto open = tabs_.indexOf(file); open && *open != tabs_.currentIndex()) {
        tabs_.switchTo(*open);
        return true;
    }
    if (!dialogs_.openLevel.showModal()) {
        return false;
    }
    const QString configuration = dialogs_.openLevel.configuration();
    if (!opener_.openHere(file, configuration, dialogs_.openLevel.loadUnknown())) {
        return false;
    }
    recent_.remember(file, configuration);
    return true;
}

bool LevelFileCommands::openChosenInNewTab(const fs::path& file) {
    if (const auto open = tabs_.indexOf(file)) {
        tabs_.switchTo(*open);
        return true;
    }
    if (!dialogs_.openLevel.showModal()) {
        return false;
    }
    return openInNewTab(file, dialogs_.openLevel.configuration());
}

bool LevelFileCommands::openInNewTab(const fs::path& file, const QString& configuration) {
    if (const auto open = tabs_.indexOf(file)) {
        tabs_.switchTo(*open);
        return true;
    }
    if (!opener_.openInNewTab(file, configuration, dialogs_.openLevel.loadUnknown())) {
        return false;
    }
    recent_.remember(file, configuration);
    return true;
}

bool LevelFileCommands::reload() {
    tabs_.releaseModifiers();
    LevelDocument* document = tabs_.current();
    if (document == nullptr) {
        return false;
    }
    if (document->modified() &&
        shared_.messages->show(&window_,
                               toQString(document->file().filename()) +
                                   " has unsaved changes. Read it again from its file and let "
                                   "them go?",
                               messageStyle::yesNoQuestion) != messageAnswer::yes) {
        return false;
    }
    return opener_.openHere(document->file(), document->configuration(),
                            dialogs_.openLevel.loadUnknown());
}

bool LevelFileCommands::save() {
    tabs_.releaseModifiers();
    LevelDocument* document = tabs_.current();
    return document != nullptr && saver_.save(*document);
}

bool LevelFileCommands::saveAs() {
    LevelDocument* document = tabs_.current();
    return document != nullptr && saver_.saveAs(*document);
}

bool LevelFileCommands::settled(LevelDocument& document, const QString& question) {
    bool cancelled = false;
    return saver_.saveIfModified(document, question, &cancelled) && !cancelled;
}

bool LevelFileCommands::closeTab(int index) {
    if (index < 0 || index >= tabs_.count() || tabs_.count() == 1) {
        return false;
    }
    LevelDocument& document = tabs_.document(index);
    if (!settled(document, closingQuestion)) {
        return false;
    }
    if (document.modified()) {
        document.dropRecoveryCopy();
    }
    tabs_.remove(index);
    return true;
}

bool LevelFileCommands::mayClose() {
    for (int i = 0; i < tabs_.count(); ++i) {
        LevelDocument& document = tabs_.document(i);
        if (!document.modified()) {
            continue;
        }
        // The question is about the level the user sees.
        tabs_.switchTo(i);
        if (!settled(document, closingQuestion)) {
            return false;
        }
    }
    // Still modified: the user chose to close without saving.
    for (int i = 0; i < tabs_.count(); ++i) {
        if (tabs_.document(i).modified()) {
            tabs_.document(i).dropRecoveryCopy();
        }
    }
    return true;
}

QString LevelFileCommands::keepUnsavedWork() {
    QStringList kept;
    for (int i = 0; i < tabs_.count(); ++i) {
        if (const QString text = tabs_.document(i).keepUnsavedWork(); !text.isEmpty()) {
            kept << text;
        }
    }
    return kept.join('\n');
}

} // namespace marvek
