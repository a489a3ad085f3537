#include "data/levelConfiguration.h"

#include "configuration/clsConfiguration.h"
#include "io/FileError.h"
#include "io/findFile.h"
#include "io/textHelpers.h"
#include "specials/specialValues.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

std::string upperAscii(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

// The folder's files (not sub-folders) in the order the file system gives.
std::vector<fs::path> filesOf(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        std::error_code ignored;
        if (!it->is_directory(ignored)) {
            files.push_back(it->path());
        }
    }
    return files;
}

// Adds name, selecting it when it equals select ignoring case (a settings file
// edited by hand may say "WORLD2" for world2.cfg); a later match wins.
void addName(NameList& list, std::string name, std::string_view select) {
    if (lowerAscii(name) == lowerAscii(select)) {
        list.selected = list.names.size();
    }
    list.names.push_back(std::move(name));
}

std::string requiredText(const Section& root, const std::string& key, const fs::path& path) {
    const Value* value = root.find(key);
    if (value == nullptr) {
        throw FileError(path, "the level configuration has no \"" + key + "\"");
    }
    if (std::holds_alternative<SectionPtr>(*value)) {
        throw FileError(path, "\"" + key + "\" is a section, not a file name");
    }
    return toText(*value);
}

std::uint8_t byteSetting(const Section& root, const std::string& key, const fs::path& path) {
    const Value* value = root.find(key);
    if (value == nullptr) {
        return 0;
    }
    std::int32_t number = 0;
    try {
        number = toWholeNumber(*value);
    } catch (const std::exception&) {
        throw FileError(path, "\"" + key + "\" is not a whole number");
    }
    if (number < 0 || number > 255) {
        throw FileError(path, "\"" + key + "\" is outside 0 to 255");
    }
    return static_cast<std::uint8_t>(number);
}

} // namespace

LevelConfiguration readLevelConfiguration(const fs::path& path) {
    clsConfiguration configuration;
    configuration.LoadConfiguration(path);
    const SectionPtr root = configuration.Root(true);
    LevelConfiguration result;
    result.tileSet = requiredText(*root, "tileSet", path);
    result.spriteSet = requiredText(*root, "spriteSet", path);
    result.noCommon = byteSetting(*root, "noCommon", path);
    return result;
}

NameList listConfigurations(const fs::path& applicationFolder, std::string_view select) {
    std::vector<std::string> names;
    for (const fs::path& file : filesOf(applicationFolder / "config")) {
        std::string name = lowerAscii(file.stem().string());
        if (name != "common" && name != "unknown") {
            names.push_back(std::move(name));
        }
    }
    // The names are lower case already, so this order ignores case.
    std::sort(names.begin(), names.end());
    NameList list;
    for (std::string& name : names) {
        addName(list, std::move(name), select);
    }
    return list;
}

NameList listFonts(const fs::path& applicationFolder, std::string_view select) {
    NameList list;
    for (const fs::path& file : filesOf(applicationFolder / "fonts")) {
        addName(list, lowerAscii(file.stem().string()), select);
    }
    return list;
}

NameList listLevels(const fs::path& dataFolder, std::string_view select) {
    NameList list;
    for (const fs::path& file : filesOf(dataFolder)) {
        std::string name = upperAscii(file.filename().string());
        if (isLevelFileName(name)) {
            addName(list, std::move(name), select);
        }
    }
    return list;
}

bool isLevelFileName(std::string_view upperCaseName) {
    return upperCaseName.size() >= 4 && upperCaseName.front() == 'L' &&
           upperCaseName.substr(2, 2) == "MA";
}

fs::path configurationPath(const fs::path& applicationFolder, std::string_view name) {
    return findFile(applicationFolder / "config", std::string(name) + ".cfg");
}

} // namespace marvek
