#pragma once

#include "app/clsCommonDialog.h"
#include "app/clsMessageBox.h"
#include "app/clsScreenCursor.h"
#include "app/clsUtils.h"
#include "app/settings.h"
#include "configuration/clsConfiguration.h"
#include "graphics/clsFont.h"

#include <filesystem>
#include <memory>
#include <utility>

namespace marvek {

// What every window shares, made at start-up and kept until the program ends.
struct SharedObjects {
    SharedObjects(std::filesystem::path folder, std::unique_ptr<clsCommonDialog> commonDialog,
                  std::unique_ptr<clsMessageBox> messageBox)
        : applicationFolder(std::move(folder)), utils(applicationFolder),
          dialogs(std::move(commonDialog)), messages(std::move(messageBox)) {}

    std::filesystem::path settingsFile() const { return applicationFolder / settingsFileName; }

    // The executable's folder: configurations, fonts, palettes, help.
    std::filesystem::path applicationFolder;
    clsConfiguration settings;
    clsUtils utils;
    std::unique_ptr<clsCommonDialog> dialogs;
    std::unique_ptr<clsMessageBox> messages;
    // Tests put a scripted one in its place.
    std::unique_ptr<clsScreenCursor> cursor = std::make_unique<QtScreenCursor>();
    clsFont editorFont;
};

} // namespace marvek
