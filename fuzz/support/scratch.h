#pragma once

// Scratch files for targets whose readers take a path. Each process gets its
// own folder, on a memory file system where there is one (the writers sync to
// disk), removed with everything in it when the process ends.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <unistd.h>

namespace marvek::fuzz {

class ScratchFolder {
public:
    explicit ScratchFolder(const std::string& name) {
        std::error_code error;
        const std::filesystem::path memory = "/dev/shm";
        const auto base = std::filesystem::is_directory(memory, error)
                              ? memory
                              : std::filesystem::temp_directory_path();
        path_ = base / ("marvek-fuzz-" + name + "-" + std::to_string(::getpid()));
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& path() const noexcept { return path_; }

    // Replaces the file with the bytes; a plain write, as the input is
    // thrown away after one run.
    std::filesystem::path write(const std::string& name, const std::uint8_t* data,
                                std::size_t size) const {
        const auto file = path_ / name;
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        return file;
    }

private:
    std::filesystem::path path_;
};

} // namespace marvek::fuzz
