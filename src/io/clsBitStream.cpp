#include "io/clsBitStream.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace marvek {
namespace {

constexpr int maximumBitCount = 31;

void checkBitCount(int count) {
    if (count > maximumBitCount) {
        throw std::out_of_range("bit stream: more than 31 bits at once");
    }
}

} // namespace

clsBitStream::clsBitStream() {
    resetStream();
}

void clsBitStream::resetStream() {
    buffer_ = std::make_shared<clsDataBuffer>();
    position_ = 0;
    bitPosition_ = 0;
}

void clsBitStream::Create() {
    resetStream();
    buffer_->Create(0);
}

void clsBitStream::loadFromBuffer(std::shared_ptr<clsDataBuffer> buffer) {
    if (!buffer) {
        throw std::invalid_argument("bit stream: no buffer");
    }
    resetStream();
    buffer_ = std::move(buffer);
}

void clsBitStream::loadFromFile(const std::filesystem::path& path, std::uintmax_t maximumBytes) {
    resetStream();
    buffer_->readFromFile(path, maximumBytes);
}

void clsBitStream::seekTo(std::int32_t p) noexcept {
    position_ = p;
    bitPosition_ = 0;
}

bool clsBitStream::nextByte() {
    bitPosition_ = 0;
    const auto size = Size();
    if (position_ < size) {
        ++position_;
        return true;
    }
    if (!autoExpand) {
        position_ = size;
        return false;
    }
    if (position_ == INT32_MAX) {
        throw std::out_of_range("bit stream: position beyond the largest index");
    }
    ++position_;
    buffer_->Resize(size + 1);
    return true;
}

bool clsBitStream::nextBit() {
    if (bitPosition_ < 7) {
        ++bitPosition_;
        return true;
    }
    return nextByte();
}

std::uint8_t clsBitStream::currentMask() const noexcept {
    return static_cast<std::uint8_t>(0x80u >> bitPosition_);
}

void clsBitStream::skipBytes(std::int32_t n) {
    for (std::int32_t i = 0; i < n; ++i) {
        nextByte();
    }
}

void clsBitStream::putByte(std::uint8_t value) {
    buffer_->putByte(position_, value);
    nextByte();
}

std::uint8_t clsBitStream::getByte() {
    const auto value = buffer_->getByte(position_);
    nextByte();
    return value;
}

void clsBitStream::putInteger(std::int16_t value) {
    const auto bits = static_cast<std::uint16_t>(value);
    putByte(static_cast<std::uint8_t>(bits >> 8));
    putByte(static_cast<std::uint8_t>(bits));
}

std::int16_t clsBitStream::getInteger() {
    const auto high = getByte();
    const auto low = getByte();
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(high << 8 | low));
}

void clsBitStream::putLong(std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    for (int shift = 24; shift >= 0; shift -= 8) {
        putByte(static_cast<std::uint8_t>(bits >> shift));
    }
}

std::int32_t clsBitStream::getLong() {
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i) {
        bits = bits << 8 | getByte();
    }
    return static_cast<std::int32_t>(bits);
}

void clsBitStream::putString(std::string_view text) {
    for (const char character : text) {
        putByte(static_cast<std::uint8_t>(character));
    }
}

std::string clsBitStream::getString(std::int32_t n) {
    std::string text;
    for (std::int32_t i = 0; i < n; ++i) {
        text.push_back(static_cast<char>(getByte()));
    }
    return text;
}

void clsBitStream::putData(std::span<const std::uint8_t> source) {
    if (source.empty()) {
        return;
    }
    if (std::uint8_t* target = bytesAt(static_cast<std::int64_t>(source.size()))) {
        std::ranges::copy(source, target);
        position_ += static_cast<std::int32_t>(source.size());
        return;
    }
    for (const auto byte : source) {
        putByte(byte);
    }
}

void clsBitStream::getData(std::span<std::uint8_t> destination) {
    if (!destination.empty() && withinData(static_cast<std::int64_t>(destination.size()))) {
        std::copy_n(buffer_->ptrData() + position_, destination.size(), destination.begin());
        position_ += static_cast<std::int32_t>(destination.size());
        bitPosition_ = 0;
        return;
    }
    for (auto& byte : destination) {
        byte = getByte();
    }
}

void clsBitStream::putZeroBytes(std::int32_t n) {
    if (std::uint8_t* target = n > 0 ? bytesAt(n) : nullptr) {
        std::fill_n(target, n, std::uint8_t{0});
        position_ += n;
        return;
    }
    for (std::int32_t i = 0; i < n; ++i) {
        putByte(0);
    }
}

// n whole bytes from the cursor end no further than the spare byte, so byte
// by byte the cursor would never meet the end of the stream.
bool clsBitStream::withinData(std::int64_t n) const {
    return position_ >= 0 && std::int64_t{position_} + n <= Size();
}

// Where n bytes written byte by byte would go, when they can go there in one
// step: inside the data, or in a growing stream made long enough first.
// Null when they cannot.
std::uint8_t* clsBitStream::bytesAt(std::int64_t n) {
    if (!withinData(n)) {
        const std::int64_t end = std::int64_t{position_} + n;
        if (!autoExpand || position_ < 0 || position_ > Size() ||
            end > clsDataBuffer::maximumSize) {
            return nullptr;
        }
        buffer_->Resize(static_cast<std::int32_t>(end));
    }
    bitPosition_ = 0;
    return buffer_->ptrData() + position_;
}

void clsBitStream::putBits(std::int32_t value, int count) {
    checkBitCount(count);
    if (count > 0 && withinBuffer(count)) {
        xorBitsInPlace(static_cast<std::uint32_t>(value), count);
        return;
    }
    const auto bits = static_cast<std::uint32_t>(value);
    for (int i = count - 1; i >= 0; --i) {
        if ((bits >> i) & 1u) {
            // XOR, not OR: the file formats write into cleared bits only, and
            // this is the behaviour their writers were made with.
            const auto byte = buffer_->getByte(position_);
            buffer_->putByte(position_, static_cast<std::uint8_t>(byte ^ currentMask()));
        }
        nextBit();
    }
}

std::int32_t clsBitStream::getBits(int count) {
    checkBitCount(count);
    if (count > 0 && withinBuffer(count)) {
        return static_cast<std::int32_t>(readBitsInPlace(count));
    }
    std::uint32_t result = 0;
    for (int i = count - 1; i >= 0; --i) {
        if (buffer_->getByte(position_) & currentMask()) {
            result ^= 1u << i;
        }
        if (!nextBit()) {
            break;
        }
    }
    return static_cast<std::int32_t>(result);
}

// Where the cursor ends after count bits. When that is no further than the
// spare byte, stepping bit by bit never meets the end of the stream, so the
// bits can be taken a byte at a time; a growing stream grows first.
bool clsBitStream::withinBuffer(int count) {
    const std::int64_t end = std::int64_t{position_} + (bitPosition_ + count) / 8;
    if (position_ < 0 || end > Size()) {
        if (!autoExpand || position_ < 0 || position_ > Size() ||
            end > clsDataBuffer::maximumSize) {
            return false;
        }
        buffer_->Resize(static_cast<std::int32_t>(end));
    }
    return true;
}

void clsBitStream::xorBitsInPlace(std::uint32_t value, int count) {
    const int end = bitPosition_ + count;
    const int bytes = (end + 7) / 8;
    const std::uint64_t mask = (std::uint64_t{1} << count) - 1;
    const std::uint64_t bits = (value & mask) << (bytes * 8 - end);
    std::uint8_t* data = buffer_->ptrData() + position_;
    for (int i = 0; i < bytes; ++i) {
        data[i] ^= static_cast<std::uint8_t>(bits >> ((bytes - 1 - i) * 8));
    }
    position_ += end / 8;
    bitPosition_ = static_cast<std::uint8_t>(end % 8);
}

std::uint32_t clsBitStream::readBitsInPlace(int count) {
    const int end = bitPosition_ + count;
    const int bytes = (end + 7) / 8;
    const std::uint8_t* data = buffer_->ptrData() + position_;
    std::uint64_t bits = 0;
    for (int i = 0; i < bytes; ++i) {
        bits = bits << 8 | data[i];
    }
    position_ += end / 8;
    bitPosition_ = static_cast<std::uint8_t>(end % 8);
    const std::uint64_t mask = (std::uint64_t{1} << count) - 1;
    return static_cast<std::uint32_t>((bits >> (bytes * 8 - end)) & mask);
}

void clsBitStream::putBit(std::int32_t value) {
    const auto byte = buffer_->getByte(position_);
    const auto mask = currentMask();
    buffer_->putByte(position_, static_cast<std::uint8_t>(value != 0 ? byte | mask : byte & ~mask));
    nextBit();
}

std::int32_t clsBitStream::getBit() {
    const auto set = (buffer_->getByte(position_) & currentMask()) != 0;
    nextBit();
    return set ? 1 : 0;
}

} // namespace marvek
