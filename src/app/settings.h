#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace marvek {

class clsConfiguration;

// The keys of the settings file, all at its root.
namespace settingKey {
inline const std::string thornwickData = "thornwickData";
inline const std::string defaultLevel = "defaultLevel";
inline const std::string defaultConfig = "defaultConfig";
inline const std::string editorFont = "editorFont";
inline const std::string moveSensitivity = "moveSensitivity";
inline const std::string alphaBlending = "alphaBlending";
inline const std::string undoLevels = "undoLevels";
inline const std::string autoPlaceSpecials = "autoPlaceSpecials";
// Specials drawn faintly over the tiles in Tiles mode; on unless 0.
inline const std::string specialsInTilesMode = "specialsInTilesMode";
// The editor's open panels, by name, separated by commas.
inline const std::string openPanels = "openPanels";
// How the graphics browser last showed each file (see browserLayouts.h).
inline const std::string graphicsLayouts = "graphicsLayouts";
} // namespace settingKey

inline constexpr const char* settingsFileName = "marvek.cfg";

bool hasSetting(const clsConfiguration& settings, const std::string& key);
// The value as text (a number in its written form); fallback when absent.
std::string settingText(const clsConfiguration& settings, const std::string& key,
                        const std::string& fallback);
// The value as a whole number; fallback when absent or not a number.
std::int32_t settingNumber(const clsConfiguration& settings, const std::string& key,
                           std::int32_t fallback);

// A data folder holds this file.
inline constexpr const char* dataFolderMarker = "MPIC";

// True when folder holds the marker file (its name matched ignoring case).
bool isDataFolder(const std::filesystem::path& folder);

// The sample data the build writes beside the application folder, when it
// is there: offered as the data folder until the user sets one.
std::optional<std::filesystem::path>
bundledSampleData(const std::filesystem::path& applicationFolder);

} // namespace marvek
