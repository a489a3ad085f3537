#include "io/pathProblem.h"

#include <cctype>
#include <system_error>

namespace marvek {

namespace fs = std::filesystem;

std::optional<std::string> brokenPathReason(const fs::path& path) {
    std::error_code error;
    static_cast<void>(fs::status(path, error));
    if (!error || error == std::errc::no_such_file_or_directory) {
        return std::nullopt;
    }
    std::string reason = error.message();
    if (!reason.empty()) {
        reason.front() =
            static_cast<char>(std::tolower(static_cast<unsigned char>(reason.front())));
    }
    return reason;
}

std::string unopenedFileReason(const fs::path& path) {
    if (auto broken = brokenPathReason(path)) {
        return *broken;
    }
    std::error_code error;
    return fs::exists(path, error) ? "cannot open the file" : "the file does not exist";
}

} // namespace marvek
