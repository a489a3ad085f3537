#include "app/recentLevels.h"

#include "configuration/clsConfiguration.h"

#include <algorithm>
#include <memory>
#include <string>
#include <variant>

namespace marvek {
namespace {

namespace fs = std::filesystem;

const std::string* textAt(const Section& section, const std::string& key) {
    const Value* value = section.find(key);
    return value == nullptr ? nullptr : std::get_if<std::string>(value);
}

bool sameFile(const fs::path& one, const fs::path& other) {
    return one.lexically_normal() == other.lexically_normal();
}

} // namespace

RecentLevels RecentLevels::readFrom(const clsConfiguration& settings) {
    RecentLevels recent;
    const Value* stored = settings.Root(true)->find(settingKey);
    const SectionPtr* list = stored == nullptr ? nullptr : std::get_if<SectionPtr>(stored);
    if (list == nullptr || !*list) {
        return recent;
    }
    for (const auto& [key, value] : **list) {
        const SectionPtr* entry = std::get_if<SectionPtr>(&value);
        if (entry == nullptr || !*entry) {
            continue;
        }
        const std::string* file = textAt(**entry, "file");
        const std::string* configuration = textAt(**entry, "config");
        if (file != nullptr && !file->empty() && configuration != nullptr &&
            recent.levels_.size() < limit) {
            recent.levels_.push_back({*file, *configuration});
        }
    }
    return recent;
}

void RecentLevels::writeTo(clsConfiguration& settings) const {
    auto list = std::make_shared<Section>();
    for (std::size_t i = 0; i < levels_.size(); ++i) {
        auto entry = std::make_shared<Section>();
        entry->set("file", levels_[i].file.string());
        entry->set("config", levels_[i].configuration);
        list->set("level" + std::to_string(i + 1), entry);
    }
    settings.Root(true)->set(settingKey, list);
}

void RecentLevels::add(const RecentLevel& level) {
    remove(level.file);
    levels_.insert(levels_.begin(), level);
    if (levels_.size() > limit) {
        levels_.resize(limit);
    }
}

bool RecentLevels::remove(const fs::path& file) {
    return std::erase_if(levels_,
                         [&](const RecentLevel& entry) { return sameFile(entry.file, file); }) > 0;
}

} // namespace marvek
