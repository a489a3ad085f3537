#include "app/modMain.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "configuration/ConfigurationError.h"
#include "io/FileError.h"
#include "io/findFile.h"
#include "native/marvek.h"

#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

void requireSetting(const SharedObjects& shared, const std::string& key) {
    if (!hasSetting(shared.settings, key)) {
        throw FileError(shared.settingsFile(), "the setting \"" + key + "\" is missing");
    }
}

// Loads marvek.cfg, or on a first run leads the user through the options.
// False when the user cancelled.
bool loadSettings(SharedObjects& shared, StartupWindows& windows) {
    std::error_code error;
    if (fs::exists(shared.settingsFile(), error)) {
        shared.settings.LoadConfiguration(shared.settingsFile());
        requireSetting(shared, settingKey::thornwickData);
        return true;
    }
    shared.messages->show(nullptr, firstRunMessage, messageStyle::information);
    shared.settings.NewConfiguration();
    return windows.showOptions();
}

bool dataFolderExists(const SharedObjects& shared) {
    const std::filesystem::path folder = shared.dataFolder();
    std::error_code error;
    return !folder.empty() && fs::is_directory(folder, error);
}

// A folder named for this run cannot be fixed in the options, so asking
// again would never end: it gives way to the settings' folder.
void dropMissingRunDataFolder(SharedObjects& shared) {
    std::error_code error;
    if (shared.runDataFolder && !fs::is_directory(*shared.runDataFolder, error)) {
        shared.messages->show(nullptr,
                              toQString(*shared.runDataFolder) +
                                  ": this folder does not exist, so the data folder in the "
                                  "options is used.",
                              messageStyle::exclamation);
        shared.runDataFolder.reset();
    }
}

// Asks for a data folder until one exists; false when the user cancelled.
bool ensureDataFolder(SharedObjects& shared, StartupWindows& windows) {
    dropMissingRunDataFolder(shared);
    while (!dataFolderExists(shared)) {
        shared.messages->show(nullptr, dataPathMessage, messageStyle::information);
        if (!windows.showOptions()) {
            return false;
        }
    }
    return true;
}

// File dialogs open in the data folder until the user chooses another.
void seedLastFolder(SharedObjects& shared) {
    shared.dialogs->setLastFolder(toQString(shared.dataFolder()));
}

void loadEditorFont(SharedObjects& shared) {
    requireSetting(shared, settingKey::editorFont);
    const fs::path path = editorFontPath(shared);
    if (!shared.editorFont.loadFromFile(path)) {
        throw FileError(path, "the editor font does not load (a missing file, or not a font "
                              "image of 16 x 16 glyphs)");
    }
}

} // namespace

fs::path editorFontPath(const SharedObjects& shared) {
    const std::string name = settingText(shared.settings, settingKey::editorFont, {});
    const fs::path folder = shared.applicationFolder / "fonts";
    const fs::path bitmap = findFile(folder, name + ".bmp");
    // A font may be an indexed PNG instead.
    const fs::path png = findFile(folder, name + ".png");
    std::error_code error;
    return !fs::exists(bitmap, error) && fs::exists(png, error) ? png : bitmap;
}

int exitProgram(SharedObjects& shared, StartupWindows& windows, int status) {
    windows.unloadWindows();
    shared.editorFont = clsFont();
    return status;
}

std::optional<int> startProgram(SharedObjects& shared, StartupWindows& windows) {
    shared.utils.initCommonControls();
    renderInit();
    undoInit();
    try {
        if (!loadSettings(shared, windows) || !ensureDataFolder(shared, windows)) {
            return exitProgram(shared, windows, exitCancelled);
        }
        seedLastFolder(shared);
        loadEditorFont(shared);
    } catch (const ConfigurationError& error) {
        shared.messages->showFatal(nullptr, toQString(error.messageFor(shared.settingsFile())));
        return exitProgram(shared, windows, exitFailed);
    } catch (const FileError& error) {
        shared.messages->showFatal(nullptr, QString::fromStdString(error.what()));
        return exitProgram(shared, windows, exitFailed);
    }
    windows.loadWindows();
    shared.utils.applyDefaultSystemFont();
    // A default level that does not load leads to the options, as a missing
    // data folder does, so that the user is never locked out.
    while (!windows.initialLoad()) {
        if (!windows.showOptions() || !ensureDataFolder(shared, windows)) {
            return exitProgram(shared, windows, exitCancelled);
        }
        seedLastFolder(shared);
    }
    // A level named on the command line that did not open gave its folder
    // back to the settings' one.
    seedLastFolder(shared);
    return std::nullopt;
}

} // namespace marvek
