#pragma once

// Scratch files for targets whose readers take a path. Each process gets its
// own folder, on a memory file system where there is one (the writers sync to
// disk), removed with everything in it when the process ends.

#include "support/TempDir.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace marvek::fuzz {

class ScratchFolder : public test::TempDir {
public:
    ScratchFolder() : TempDir(memoryOrTemporary()) {}

    // Replaces the file with the bytes; a plain write, as the input is
    // thrown away after one run.
    std::filesystem::path write(const std::string& name, const std::uint8_t* data,
                                std::size_t size) const {
        const auto file = path() / name;
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        return file;
    }

private:
    static std::filesystem::path memoryOrTemporary() {
        std::error_code error;
        const std::filesystem::path memory = "/dev/shm";
        return std::filesystem::is_directory(memory, error)
                   ? memory
                   : std::filesystem::temp_directory_path();
    }
};

} // namespace marvek::fuzz
