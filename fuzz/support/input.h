#pragma once

// Splitting one fuzz input into the parameters a reader takes and the bytes
// it reads.

#include "io/clsBitStream.h"
#include "io/clsDataBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace marvek::fuzz {

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

    // The next byte, or 0 once the input is used up.
    std::uint8_t byte() {
        if (bytes_.empty()) {
            return 0;
        }
        const std::uint8_t value = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return value;
    }
    // Two bytes, big-endian.
    std::uint16_t word() {
        const auto high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }
    std::span<const std::uint8_t> rest() const noexcept { return bytes_; }

private:
    std::span<const std::uint8_t> bytes_;
};

// A stream reading a copy of the bytes, as a file loaded into a buffer is.
inline clsBitStream streamOver(std::span<const std::uint8_t> bytes) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    std::ranges::copy(bytes, buffer->data().begin());
    clsBitStream stream;
    stream.loadFromBuffer(std::move(buffer));
    return stream;
}

// An empty stream that grows as it is written.
inline clsBitStream growingStream() {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    return stream;
}

} // namespace marvek::fuzz
