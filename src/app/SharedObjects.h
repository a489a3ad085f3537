#pragma once

#include "app/clsCommonDialog.h"
#include "app/clsMessageBox.h"
#include "app/clsScreenCursor.h"
#include "app/clsUtils.h"
#include "app/settings.h"
#include "configuration/clsConfiguration.h"
#include "graphics/clsFont.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace marvek {

// What every window shares, made at start-up and kept until the program ends.
struct SharedObjects {
    SharedObjects(std::filesystem::path folder, std::unique_ptr<clsCommonDialog> commonDialog,
                  std::unique_ptr<clsMessageBox> messageBox)
        : applicationFolder(std::move(folder)), utils(applicationFolder),
          dialogs(std::move(commonDialog)), messages(std::move(messageBox)) {}

    std::filesystem::path settingsFile() const {
        return settingsLocation.empty() ? applicationFolder / settingsFileName : settingsLocation;
    }
    // The game's data folder: this run's from the command line, else the
    // settings' one.
    std::filesystem::path dataFolder() const {
        return runDataFolder
                   ? *runDataFolder
                   : std::filesystem::path(settingText(settings, settingKey::thornwickData, {}));
    }
    // The sample data the options offer while no data folder is set.
    std::optional<std::filesystem::path> offeredSampleData() const {
        return sampleData ? sampleData : bundledSampleData(applicationFolder);
    }

    // The executable's folder: configurations, fonts, palettes, help.
    std::filesystem::path applicationFolder;
    clsConfiguration settings;
    clsUtils utils;
    std::unique_ptr<clsCommonDialog> dialogs;
    std::unique_ptr<clsMessageBox> messages;
    // Tests put a scripted one in its place.
    std::unique_ptr<clsScreenCursor> cursor = std::make_unique<QtScreenCursor>();
    clsFont editorFont;

    // An installed copy keeps its settings and sample data in the user's
    // folders; empty and unset, both lie beside the program.
    std::filesystem::path settingsLocation;
    std::optional<std::filesystem::path> sampleData;
    // From the command line: the data folder for this run (never written to
    // the settings), and a level to open at start-up instead of the default,
    // with its configuration when one was named.
    std::optional<std::filesystem::path> runDataFolder;
    std::optional<std::filesystem::path> startupLevel;
    std::optional<std::string> startupConfiguration;
    // The command line's levels after the first, each opened in a tab.
    std::vector<std::filesystem::path> moreStartupLevels;
    // Told, when set, of an edit that changed cells outside the range it
    // named: the test suite's check, which compares whole grids.
    std::function<void(const std::string& step)> editRangeFault;
};

} // namespace marvek
