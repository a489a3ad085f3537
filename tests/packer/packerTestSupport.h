#pragma once

// Packing through the library's C interface and checking the result with
// three unpackers: ours, libancient and the `ancient` command.

#include "native/marvek.h"

#include <ancient/ancient.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace marvek::test {

using Bytes = std::vector<std::uint8_t>;

struct LibraryFree {
    void operator()(std::uint8_t* memory) const { freeMemory(memory); }
};
using LibraryBytes = std::unique_ptr<std::uint8_t, LibraryFree>;

inline Bytes pack(const Bytes& data, std::int32_t mode) {
    std::uint8_t* packed = nullptr;
    std::size_t length = 0;
    const std::int32_t status = impImplode(data.data(), data.size(), mode, &packed, &length);
    const LibraryBytes owner(packed);
    EXPECT_EQ(status, IMP_OK) << impStatusText(status);
    return packed == nullptr ? Bytes{} : Bytes(packed, packed + length);
}

inline Bytes unpackOurs(const Bytes& packed) {
    std::uint8_t* unpacked = nullptr;
    std::size_t length = 0;
    const std::int32_t status = impExplode(packed.data(), packed.size(), &unpacked, &length);
    const LibraryBytes owner(unpacked);
    EXPECT_EQ(status, IMP_OK) << impStatusText(status);
    return unpacked == nullptr ? Bytes{} : Bytes(unpacked, unpacked + length);
}

inline Bytes unpackLibancient(const Bytes& packed) {
    try {
        ancient::Decompressor decompressor(packed, true, true);
        return decompressor.decompress(true);
    } catch (const ancient::Error& error) {
        ADD_FAILURE() << "libancient refused the file: " << error.what();
        return {};
    }
}

class ScratchFile {
public:
    explicit ScratchFile(const Bytes& bytes) {
        static std::atomic<int> counter{0};
        path_ = std::filesystem::temp_directory_path() /
                ("marvek-packer-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
        std::ofstream(path_, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

inline void expectAncientVerifies(const Bytes& packed, const Bytes& data) {
    ASSERT_TRUE(std::filesystem::exists(MARVEK_ANCIENT_EXECUTABLE))
        << "the ancient command is missing: " << MARVEK_ANCIENT_EXECUTABLE;
    const ScratchFile packedFile(packed);
    const ScratchFile originalFile(data);
    const std::string command = std::string(MARVEK_ANCIENT_EXECUTABLE) + " verify '" +
                                packedFile.path().string() + "' '" + originalFile.path().string() +
                                "' > /dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

// Every unpacker gives the data back byte for byte.
inline void expectRoundTrip(const Bytes& packed, const Bytes& data) {
    EXPECT_TRUE(unpackOurs(packed) == data) << "our unpacker";
    EXPECT_TRUE(unpackLibancient(packed) == data) << "libancient";
    expectAncientVerifies(packed, data);
}

} // namespace marvek::test
