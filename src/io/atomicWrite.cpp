#include "io/atomicWrite.h"

#include "io/FileError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <system_error>

namespace marvek {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

std::filesystem::path temporaryBeside(const std::filesystem::path& path) {
    std::random_device random;
    auto name = path.filename().string();
    name = "." + name + ".tmp" + std::to_string(random() % 1000000);
    return path.parent_path() / name;
}

std::string lastErrorText() { return std::strerror(errno); }

void writeAll(const std::filesystem::path& temporary, std::span<const std::uint8_t> bytes,
              const std::filesystem::path& target) {
    UniqueFile file(std::fopen(temporary.c_str(), "wb"));
    if (!file) {
        throw FileError(target, "cannot create a temporary file: " + lastErrorText());
    }
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
        throw FileError(target, "cannot write: " + lastErrorText());
    }
    if (std::fflush(file.get()) != 0) {
        throw FileError(target, "cannot write: " + lastErrorText());
    }
    if (std::fclose(file.release()) != 0) {
        throw FileError(target, "cannot write: " + lastErrorText());
    }
}

} // namespace

void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const auto temporary = temporaryBeside(path);
    try {
        writeAll(temporary, bytes, path);
        std::error_code error;
        std::filesystem::rename(temporary, path, error);
        if (error) {
            throw FileError(path, "cannot replace the file: " + error.message());
        }
    } catch (...) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        throw;
    }
}

std::vector<std::uint8_t> readWholeFile(const std::filesystem::path& path) {
    std::error_code status;
    if (std::filesystem::is_directory(path, status)) {
        throw FileError(path, "is a folder, not a file");
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw FileError(path, std::filesystem::exists(path) ? "cannot open the file"
                                                            : "the file does not exist");
    }
    std::vector<std::uint8_t> bytes;
    in.seekg(0, std::ios::end);
    const auto size = in.tellg();
    if (size < 0) {
        throw FileError(path, "cannot read the file");
    }
    in.seekg(0, std::ios::beg);
    bytes.resize(static_cast<std::size_t>(size));
    if (size > 0 && !in.read(reinterpret_cast<char*>(bytes.data()), size)) {
        throw FileError(path, "cannot read the file");
    }
    return bytes;
}

} // namespace marvek
