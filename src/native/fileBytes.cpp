#include "native/fileBytes.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace marvek {

namespace {

std::filesystem::path pathFromUtf8(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

} // namespace

std::optional<std::vector<std::uint8_t>> readFileBytes(const char* path,
                                                       std::size_t maxBytes) noexcept {
    if (path == nullptr) {
        return std::nullopt;
    }
    try {
        std::ifstream stream(pathFromUtf8(path), std::ios::binary | std::ios::ate);
        if (!stream) {
            return std::nullopt;
        }
        const std::streamoff size = stream.tellg();
        if (size < 0 || static_cast<std::uint64_t>(size) > maxBytes) {
            return std::nullopt;
        }
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
        stream.seekg(0);
        if (!stream.read(reinterpret_cast<char*>(bytes.data()), size)) {
            return std::nullopt;
        }
        return bytes;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace marvek
