#pragma once

// Splitting one fuzz input into the parameters a reader takes and the bytes
// it reads.

#include "support/streams.h"

#include <cstddef>
#include <cstdint>
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

// Streams over the input and growing ones, as the tests make them.
using test::growingStream;
using test::streamOver;

} // namespace marvek::fuzz
