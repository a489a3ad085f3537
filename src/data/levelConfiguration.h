#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// What a level configuration says about its world besides its specials.
struct LevelConfiguration {
    std::string tileSet;
    std::string spriteSet;
    std::uint8_t noCommon = 0;
};

// Names to offer in a drop-down list and the entry to select (none when
// nothing matched; the comparison ignores case).
struct NameList {
    std::vector<std::string> names;
    std::optional<std::size_t> selected;
};

inline constexpr std::string_view defaultConfigurationName = "world1";

// Reads "tileSet", "spriteSet" (both required) and "noCommon" (default 0).
// Throws FileError naming the file for a missing key or a value that does not
// fit, and lets the store's FileError and ConfigurationError through.
LevelConfiguration readLevelConfiguration(const std::filesystem::path& path);

// The configuration names of the application folder's config/: every file's
// lower-cased base name but "common" and "unknown", sorted. A missing folder
// lists nothing.
NameList listConfigurations(const std::filesystem::path& applicationFolder,
                            std::string_view select);

// The editor fonts of the application folder's fonts/, lower-cased, in the
// order the folder lists them.
NameList listFonts(const std::filesystem::path& applicationFolder, std::string_view select);

// The level files of a data folder under their upper-cased names, in the
// order the folder lists them.
NameList listLevels(const std::filesystem::path& dataFolder, std::string_view select);

// "L" first and "MA" third and fourth, as in "L1MA1"; expects upper case.
bool isLevelFileName(std::string_view upperCaseName);

// config/<name>.cfg of the application folder, found ignoring case; the exact
// path when nothing matches, so that errors name what was looked for.
std::filesystem::path configurationPath(const std::filesystem::path& applicationFolder,
                                        std::string_view name);

} // namespace marvek
