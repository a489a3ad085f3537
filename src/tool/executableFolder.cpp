#include "tool/executableFolder.h"

#include "io/programFolders.h"

#include <system_error>

namespace marvek::tool {

std::filesystem::path executableFolder() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        return std::filesystem::current_path(error);
    }
    return self.parent_path();
}

std::filesystem::path defaultApplicationFolder() {
    return findResourceFolder(executableFolder());
}

} // namespace marvek::tool
