#include "io/clsDataBuffer.h"

#include "io/FileError.h"
#include "io/atomicWrite.h"

#include <stdexcept>
#include <string>
#include <system_error>

namespace marvek {
namespace {

std::size_t slotsFor(std::int32_t highestIndex) {
    if (highestIndex < 0 || highestIndex > clsDataBuffer::maximumSize) {
        throw std::out_of_range("data buffer: highest index " + std::to_string(highestIndex) +
                                " out of range");
    }
    return static_cast<std::size_t>(highestIndex) + 1;
}

} // namespace

std::size_t clsDataBuffer::checkedIndex(std::int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= bytes_.size()) {
        throw std::out_of_range("data buffer: index " + std::to_string(index) + " out of range");
    }
    return static_cast<std::size_t>(index);
}

void clsDataBuffer::putByte(std::int32_t index, std::uint8_t value) {
    bytes_[checkedIndex(index)] = value;
}

std::uint8_t clsDataBuffer::getByte(std::int32_t index) const {
    return bytes_[checkedIndex(index)];
}

std::int32_t clsDataBuffer::Size() const {
    if (!hasStorage_) {
        throw std::logic_error("data buffer: no storage");
    }
    return static_cast<std::int32_t>(bytes_.size() - 1);
}

void clsDataBuffer::Create(std::int32_t n) {
    const auto slots = slotsFor(n);
    bytes_.assign(slots, 0);
    hasStorage_ = true;
}

void clsDataBuffer::Resize(std::int32_t n) {
    // std::vector grows its capacity geometrically, so growing one byte at a
    // time stays cheap while Size moves by exactly one.
    bytes_.resize(slotsFor(n), 0);
    hasStorage_ = true;
}

std::span<std::uint8_t> clsDataBuffer::data() noexcept {
    return hasStorage_ ? std::span(bytes_).first(bytes_.size() - 1) : std::span<std::uint8_t>();
}

std::span<const std::uint8_t> clsDataBuffer::data() const noexcept {
    return hasStorage_ ? std::span(bytes_).first(bytes_.size() - 1)
                       : std::span<const std::uint8_t>();
}

void clsDataBuffer::readFromFile(const std::filesystem::path& path, std::uintmax_t maximumBytes) {
    std::error_code error;
    if (std::filesystem::status(path, error).type() == std::filesystem::file_type::not_found) {
        return;
    }
    auto bytes = readWholeFile(path, maximumBytes);
    if (bytes.size() > static_cast<std::size_t>(maximumSize)) {
        throw FileError(path, "the file is too large");
    }
    bytes.push_back(0);
    bytes_ = std::move(bytes);
    hasStorage_ = true;
}

void clsDataBuffer::writeToFile(const std::filesystem::path& path) const {
    if (!hasStorage_) {
        throw std::logic_error("data buffer: no storage");
    }
    writeFileAtomically(path, bytes_);
}

} // namespace marvek
