#pragma once

#include "configuration/clsConfiguration.h"
#include "support/TempDir.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <sys/wait.h>

namespace marvek::test {

inline const std::filesystem::path resourceFolder =
    std::filesystem::path(MARVEK_SOURCE_DIR) / "resources";
inline const std::filesystem::path configFolder = resourceFolder / "config";

inline constexpr int sampleWorlds = 3;
inline constexpr int levelsPerWorld = 2;

inline std::string quoted(const std::filesystem::path& path) {
    return "\"" + path.string() + "\"";
}

// Exit status of marvek-tool with the arguments; its output goes nowhere.
inline int runTool(const std::string& arguments) {
    const std::string command =
        quoted(MARVEK_TOOL_EXECUTABLE) + " " + arguments + " >/dev/null 2>&1";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline std::string worldName(int world) {
    return "world" + std::to_string(world);
}
inline std::string levelName(int world, int index) {
    return "L" + std::to_string(world) + "MA" + std::to_string(index);
}

inline SectionPtr sectionOf(const Value* value) {
    const auto* section = value ? std::get_if<SectionPtr>(value) : nullptr;
    return section ? *section : nullptr;
}

// The Id of every special a configuration file defines.
inline std::set<std::int32_t> definedIds(const std::filesystem::path& path) {
    clsConfiguration configuration;
    configuration.LoadConfiguration(path);
    std::set<std::int32_t> ids;
    const SectionPtr specials = sectionOf(configuration.Root(true)->find("Specials"));
    if (!specials) {
        return ids;
    }
    for (const auto& [key, value] : *specials) {
        const SectionPtr special = sectionOf(&value);
        const Value* id = special ? special->find("Id") : nullptr;
        if (id && std::holds_alternative<std::int32_t>(*id)) {
            ids.insert(std::get<std::int32_t>(*id));
        }
    }
    return ids;
}

// One generated data folder shared by the tests of a program run.
inline const std::filesystem::path& sampleFolder() {
    static const TempDir folder;
    static const bool written = runTool("sample-data " + quoted(folder.path() / "data")) == 0;
    (void)written;
    return folder.path();
}

} // namespace marvek::test
