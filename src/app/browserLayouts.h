#pragma once

#include "graphics/pictureFormat.h"

#include <filesystem>
#include <map>
#include <string>

namespace marvek {

class clsConfiguration;
struct OpenedLevel;

// How the graphics browser shows one file.
struct BrowserLayout {
    PictureFormat format;
    // The palette choice by name; empty keeps the one chosen.
    std::string palette;

    bool operator==(const BrowserLayout&) const = default;
};

// Layouts by file name (without its folder).
using BrowserLayouts = std::map<std::string, BrowserLayout>;

// The layouts kept in the settings; entries that do not read are left out.
BrowserLayouts readBrowserLayouts(const clsConfiguration& settings);
void writeBrowserLayouts(clsConfiguration& settings, const BrowserLayouts& layouts);

// The layouts the open level's tile set and sprite sheet are read with, by
// their file names, when they lie in the data folder.
BrowserLayouts knownLayouts(const OpenedLevel& opened, const std::filesystem::path& dataFolder);

} // namespace marvek
