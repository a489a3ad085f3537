#include "tool/benchWorld.h"

#include "data/levelConfiguration.h"
#include "io/FileError.h"
#include "tool/sample/SampleData.h"

#include <algorithm>
#include <random>
#include <string>
#include <system_error>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

// A folder that exists only while the benchmark reads it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        path_ = fs::temp_directory_path() / ("marvek-bench-" + std::to_string(random()));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const fs::path& path() const noexcept { return path_; }

private:
    fs::path path_;
};

} // namespace

OpenedLevel makeBenchWorld(const fs::path& applicationFolder) {
    const TemporaryFolder data;
    sample::writeFirstWorld(data.path());
    return loadBenchWorld(applicationFolder, data.path());
}

OpenedLevel loadBenchWorld(const fs::path& applicationFolder, const fs::path& dataFolder) {
    std::error_code error;
    if (!fs::exists(dataFolder, error)) {
        throw FileError(dataFolder, "the folder does not exist");
    }
    if (!fs::is_directory(dataFolder, error)) {
        throw FileError(dataFolder, "is a file, not a folder");
    }
    const NameList levels = listLevels(dataFolder, "");
    if (levels.names.empty()) {
        throw FileError(dataFolder, "the folder holds no level files");
    }
    // The listing order is the file system's; the smallest name is stable.
    return openLevel({applicationFolder, dataFolder, std::ranges::min(levels.names),
                      std::string(defaultConfigurationName), false});
}

} // namespace marvek::tool
