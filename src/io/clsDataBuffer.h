#pragma once

#include "io/readFile.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace marvek {

// A byte array addressed 0..Size: Size data bytes followed by one spare byte,
// which is where a growing bit stream writes next. A new buffer has no storage
// until Create, Resize or readFromFile gives it some.
//
// Out-of-range indexes throw std::out_of_range; asking a buffer without
// storage for its Size throws std::logic_error.
class clsDataBuffer {
public:
    // Largest Size a buffer can have: Size + 1 must still be a 32-bit index.
    static constexpr std::int32_t maximumSize = INT32_MAX - 1;

    void putByte(std::int32_t index, std::uint8_t value);
    std::uint8_t getByte(std::int32_t index) const;

    // The highest index, which is the number of data bytes.
    std::int32_t Size() const;
    bool hasStorage() const noexcept { return hasStorage_; }

    // Discards the contents: indexes 0..n, all zero.
    void Create(std::int32_t n);
    // Indexes 0..n, keeping the bytes that still fit; new bytes are zero.
    void Resize(std::int32_t n);

    // Address of byte 0 (Size + 1 bytes); valid until the next Create, Resize
    // or readFromFile. Null without storage.
    std::uint8_t* ptrData() noexcept { return bytes_.data(); }
    const std::uint8_t* ptrData() const noexcept { return bytes_.data(); }

    // The Size data bytes, without the spare one. Empty without storage.
    std::span<std::uint8_t> data() noexcept;
    std::span<const std::uint8_t> data() const noexcept;

    // A file that exists replaces the contents: its bytes followed by one zero
    // byte, so Size is the file's length. A missing file changes nothing.
    // Throws FileError when the file exists but cannot be read, is no regular
    // file or is larger than maximumBytes.
    void readFromFile(const std::filesystem::path& path,
                      std::uintmax_t maximumBytes = maximumReadBytes);
    // Writes all Size + 1 bytes, the spare one included, replacing any file of
    // that name. Throws FileError.
    void writeToFile(const std::filesystem::path& path) const;

private:
    std::size_t checkedIndex(std::int32_t index) const;

    std::vector<std::uint8_t> bytes_;
    bool hasStorage_ = false;
};

} // namespace marvek
