#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace marvek {

class clsConfiguration;

// A level opened lately and the level configuration it was opened with.
struct RecentLevel {
    std::filesystem::path file;
    std::string configuration;

    bool operator==(const RecentLevel&) const = default;
};

// The levels opened lately, the latest first, kept in the settings.
class RecentLevels {
public:
    static constexpr std::size_t limit = 10;
    // The settings' key; a section of entries "level1", "level2", ... each
    // holding "file" and "config".
    static constexpr const char* settingKey = "recentLevels";

    RecentLevels() = default;
    // Entries that are not sections of text are passed over.
    static RecentLevels readFrom(const clsConfiguration& settings);
    void writeTo(clsConfiguration& settings) const;

    // Puts the level first, dropping an older entry for the same file and
    // the oldest beyond the limit.
    void add(const RecentLevel& level);
    // False when the file was not in the list.
    bool remove(const std::filesystem::path& file);

    const std::vector<RecentLevel>& levels() const noexcept { return levels_; }

private:
    std::vector<RecentLevel> levels_;
};

} // namespace marvek
