#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace marvek {

// A file that could not be read or written; what() names the file and why.
class FileError : public std::runtime_error {
public:
    FileError(const std::filesystem::path& path, const std::string& reason)
        : std::runtime_error(path.string() + ": " + reason), path_(path), reason_(reason) {}

    const std::filesystem::path& path() const noexcept { return path_; }
    const std::string& reason() const noexcept { return reason_; }

private:
    std::filesystem::path path_;
    std::string reason_;
};

} // namespace marvek
