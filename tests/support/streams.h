#pragma once

#include "io/clsBitStream.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace marvek::test {

// A stream reading a copy of the bytes; the buffer's spare byte after them is
// `spare`.
inline clsBitStream streamOver(std::span<const std::uint8_t> bytes, std::uint8_t spare = 0) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer->data().begin());
    buffer->putByte(buffer->Size(), spare);
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    return stream;
}
inline clsBitStream streamOver(const std::vector<std::uint8_t>& bytes, std::uint8_t spare = 0) {
    return streamOver(std::span<const std::uint8_t>(bytes), spare);
}

// An empty stream that grows as it is written.
inline clsBitStream growingStream() {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    return stream;
}

// The stream's data bytes, without the buffer's spare byte.
inline std::vector<std::uint8_t> dataOf(const clsBitStream& stream) {
    const auto data = stream.bufferGet()->data();
    return {data.begin(), data.end()};
}

// The data bytes and the spare byte after them.
inline std::vector<std::uint8_t> allBytes(const clsBitStream& stream) {
    const auto* first = stream.bufferGet()->ptrData();
    return {first, first + stream.Size() + 1};
}

} // namespace marvek::test
