#pragma once

#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "io/clsBitStream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace marvek::test {

inline constexpr std::int32_t standardWidth = 300;
inline constexpr std::int32_t standardHeight = 84;

inline clsPalette gamePalette() {
    clsPalette palette;
    for (std::uint32_t i = 0; i < clsPalette::gameEntries; ++i) {
        // 4-bit components scaled by 17, as the game format stores them.
        palette.addEntry((i % 16) * 17 | ((15 - i % 16) * 17) << 8 | ((i * 7) % 16 * 17) << 16);
    }
    return palette;
}

// A level of the given size whose every field differs from a fresh one.
inline clsLevel sampleLevel(std::int32_t width = standardWidth,
                            std::int32_t height = standardHeight) {
    clsLevel level;
    level.width = width;
    level.height = height;
    level.resizeCells();
    std::int32_t i = 0;
    for (auto& cell : level.cells()) {
        cell.tile = static_cast<std::int16_t>((i * 37) % 1024);
        cell.special = static_cast<std::uint8_t>(i % 97 == 0 ? 5 : (i % 211 == 0 ? 63 : 0));
        ++i;
    }
    std::vector<std::uint8_t> defaults(clsLevel::fileDefaultSpecials);
    defaults[12] = 5;
    defaults[1023] = 63;
    level.setDefaultSpecials(defaults);
    std::array<std::uint8_t, clsLevel::ccclSize> cccl{};
    for (std::size_t b = 0; b < cccl.size(); ++b) {
        cccl[b] = static_cast<std::uint8_t>(b * 3 + 1);
    }
    level.setCcclData(cccl);
    level.setRemX(-7);
    level.setRemY(123456);
    return level;
}

inline std::vector<std::uint8_t> unpackedBytes(const clsLevel& level, const clsPalette& palette) {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    level.writeTo(stream, palette);
    const auto data = stream.bufferGet()->data();
    return {data.begin(), data.end()};
}

inline clsBitStream streamOver(const std::vector<std::uint8_t>& bytes) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer->data().begin());
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    return stream;
}

// Builds chunk files by hand, for layouts the writer never produces.
class ChunkBuilder {
public:
    ChunkBuilder& chunk(std::string_view id, const std::vector<std::uint8_t>& data) {
        return chunk(id, static_cast<std::uint32_t>(data.size()), data);
    }
    ChunkBuilder& chunk(std::string_view id, std::uint32_t statedLength,
                        const std::vector<std::uint8_t>& data) {
        bytes_.insert(bytes_.end(), id.begin(), id.end());
        appendLong(statedLength);
        bytes_.insert(bytes_.end(), data.begin(), data.end());
        return *this;
    }
    ChunkBuilder& longChunk(std::string_view id, std::uint32_t value) {
        return chunk(id, bigEndian(value));
    }
    static std::vector<std::uint8_t> bigEndian(std::uint32_t value) {
        return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
                static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
    }
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

private:
    void appendLong(std::uint32_t value) {
        const auto word = bigEndian(value);
        bytes_.insert(bytes_.end(), word.begin(), word.end());
    }

    std::vector<std::uint8_t> bytes_;
};

} // namespace marvek::test
