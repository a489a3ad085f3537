#include "app/settings.h"

#include "configuration/clsConfiguration.h"
#include "io/caseInsensitivePath.h"
#include "specials/specialValues.h"

#include <exception>
#include <system_error>

namespace marvek {

bool hasSetting(const clsConfiguration& settings, const std::string& key) {
    return settings.Root(true)->exists(key);
}

std::string settingText(const clsConfiguration& settings, const std::string& key,
                        const std::string& fallback) {
    const Value* value = settings.Root(true)->find(key);
    return value == nullptr ? fallback : toText(*value);
}

std::int32_t settingNumber(const clsConfiguration& settings, const std::string& key,
                           std::int32_t fallback) {
    const Value* value = settings.Root(true)->find(key);
    if (value == nullptr) {
        return fallback;
    }
    try {
        return toWholeNumber(*value);
    } catch (const std::exception&) {
        return fallback;
    }
}

bool isDataFolder(const std::filesystem::path& folder) {
    const auto marker = findIgnoringCase(folder, dataFolderMarker);
    std::error_code error;
    return marker && std::filesystem::is_regular_file(*marker, error);
}

std::optional<std::filesystem::path>
bundledSampleData(const std::filesystem::path& applicationFolder) {
    std::filesystem::path application = applicationFolder.lexically_normal();
    if (!application.has_filename()) {
        application = application.parent_path();
    }
    const std::filesystem::path folder = application.parent_path() / "sample-data";
    if (isDataFolder(folder)) {
        return folder;
    }
    return std::nullopt;
}

} // namespace marvek
