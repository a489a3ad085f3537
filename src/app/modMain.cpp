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
        shared.dialogs->setLastFolder(toQString(shared.dataFolder()));
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

// Asks for a data folder until one exists; false when the user cancelled.
bool ensureDataFolder(SharedObjects& shared, StartupWindows& windows) {
    while (!dataFolderExists(shared)) {
        shared.messages->show(nullptr, dataPathMessage, messageStyle::information);
        if (!windows.showOptions()) {
            return false;
        }
    }
    return true;
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
    return findFile(shared.applicationFolder / "fonts", name + ".bmp");
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
    if (!windows.initialLoad()) {
        return exitProgram(shared, windows, exitFailed);
    }
    return std::nullopt;
}

} // namespace marvek
