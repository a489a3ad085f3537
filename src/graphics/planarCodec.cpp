#include "graphics/planarCodec.h"

#include "io/clsBitStream.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <stdexcept>

namespace marvek::planar {
namespace {

constexpr unsigned bitsPerByte = 8;
constexpr unsigned maximumPlanes = 8;

// Byte b spread over eight bytes in memory order: byte j is bit (7 - j) of b,
// so one XOR of spread[b] * mask handles eight pixels.
constexpr auto spread = [] {
    std::array<std::uint64_t, 256> table{};
    for (unsigned b = 0; b < table.size(); ++b) {
        std::array<std::uint8_t, bitsPerByte> bytes{};
        for (unsigned j = 0; j < bitsPerByte; ++j) {
            bytes[j] = static_cast<std::uint8_t>((b >> (7 - j)) & 1u);
        }
        table[b] = std::bit_cast<std::uint64_t>(bytes);
    }
    return table;
}();

std::uint8_t maskOf(std::uint64_t bit) {
    return static_cast<std::uint8_t>(0x80u >> (bit % bitsPerByte));
}

// One plane's stretch of the run: pixels [0, length) at run bit `firstBit`.
struct Stretch {
    std::uint64_t firstBit;
    std::size_t length;
};

// Calls each(stretch, plane) for every plane the first bitCount bits touch.
template <typename Each>
void forEachStretch(unsigned startBit, std::uint64_t bitCount, std::size_t pixelCount,
                    Each&& each) {
    if (pixelCount == 0) {
        return;
    }
    for (unsigned plane = 0; bitCount > std::uint64_t{plane} * pixelCount; ++plane) {
        const std::uint64_t first = std::uint64_t{plane} * pixelCount;
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(pixelCount, bitCount - first));
        each(Stretch{startBit + first, length}, plane);
    }
}

// Pixels of a stretch before its first whole byte.
std::size_t leadingPixels(const Stretch& stretch) {
    const auto offset = static_cast<std::size_t>(stretch.firstBit % bitsPerByte);
    return std::min(stretch.length, offset == 0 ? 0 : bitsPerByte - offset);
}

void xorStretch(std::span<const std::uint8_t> bytes, const Stretch& stretch, std::uint8_t mask,
                std::uint8_t* pixels) {
    const auto readBit = [&](std::size_t i) {
        const std::uint64_t bit = stretch.firstBit + i;
        if (bytes[static_cast<std::size_t>(bit / bitsPerByte)] & maskOf(bit)) {
            pixels[i] ^= mask;
        }
    };
    const std::size_t lead = leadingPixels(stretch);
    for (std::size_t i = 0; i < lead; ++i) {
        readBit(i);
    }
    const std::size_t wholeBytes = (stretch.length - lead) / bitsPerByte;
    const std::uint8_t* source = bytes.data() + (stretch.firstBit + lead) / bitsPerByte;
    std::uint8_t* target = pixels + lead;
    for (std::size_t n = 0; n < wholeBytes; ++n, target += bitsPerByte) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, target, sizeof eight);
        eight ^= spread[source[n]] * mask;
        std::memcpy(target, &eight, sizeof eight);
    }
    for (std::size_t i = lead + wholeBytes * bitsPerByte; i < stretch.length; ++i) {
        readBit(i);
    }
}

std::uint8_t bitOf(std::uint8_t pixel, unsigned plane) {
    return plane < maximumPlanes ? static_cast<std::uint8_t>((pixel >> plane) & 1u) : 0;
}

// Bit `plane` of eight pixels as one byte, the first pixel in the top bit.
std::uint8_t gather(const std::uint8_t* pixels, unsigned plane) {
    if (plane >= maximumPlanes) {
        return 0;
    }
    if constexpr (std::endian::native == std::endian::little) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, pixels, sizeof eight);
        eight = (eight >> plane) & 0x0101010101010101u;
        // Moves the bit of byte j to bit 63 - j; no two partial products
        // meet, so nothing carries.
        return static_cast<std::uint8_t>((eight * 0x8040201008040201u) >> 56);
    } else {
        unsigned byte = 0;
        for (unsigned j = 0; j < bitsPerByte; ++j) {
            byte = byte << 1 | bitOf(pixels[j], plane);
        }
        return static_cast<std::uint8_t>(byte);
    }
}

void writeStretch(std::span<std::uint8_t> bytes, const Stretch& stretch, unsigned plane,
                  const std::uint8_t* pixels) {
    const auto writeBit = [&](std::size_t i) {
        const std::uint64_t bit = stretch.firstBit + i;
        auto& byte = bytes[static_cast<std::size_t>(bit / bitsPerByte)];
        const std::uint8_t mask = maskOf(bit);
        byte = static_cast<std::uint8_t>(bitOf(pixels[i], plane) ? byte | mask : byte & ~mask);
    };
    const std::size_t lead = leadingPixels(stretch);
    for (std::size_t i = 0; i < lead; ++i) {
        writeBit(i);
    }
    const std::size_t wholeBytes = (stretch.length - lead) / bitsPerByte;
    std::uint8_t* target = bytes.data() + (stretch.firstBit + lead) / bitsPerByte;
    const std::uint8_t* source = pixels + lead;
    for (std::size_t n = 0; n < wholeBytes; ++n, source += bitsPerByte) {
        target[n] = gather(source, plane);
    }
    for (std::size_t i = lead + wholeBytes * bitsPerByte; i < stretch.length; ++i) {
        writeBit(i);
    }
}

void checkRun(std::size_t byteCount, unsigned startBit, std::uint64_t bitCount) {
    if (startBit >= bitsPerByte || bitCount > std::uint64_t{byteCount} * bitsPerByte - startBit) {
        throw std::out_of_range("bitplanes: run passes the end of its bytes");
    }
}

} // namespace

void xorPlanesFrom(std::span<const std::uint8_t> bytes, unsigned startBit, std::uint64_t bitCount,
                   std::span<std::uint8_t> pixels) {
    if (bitCount == 0) {
        return;
    }
    checkRun(bytes.size(), startBit, bitCount);
    if (bitCount > std::uint64_t{pixels.size()} * maximumPlanes) {
        throw std::invalid_argument("bitplanes: more than 8 planes");
    }
    forEachStretch(startBit, bitCount, pixels.size(), [&](const Stretch& stretch, unsigned plane) {
        xorStretch(bytes, stretch, static_cast<std::uint8_t>(1u << plane), pixels.data());
    });
}

void writePlanesTo(std::span<std::uint8_t> bytes, unsigned startBit, std::uint64_t bitCount,
                   std::span<const std::uint8_t> pixels) {
    if (bitCount == 0) {
        return;
    }
    checkRun(bytes.size(), startBit, bitCount);
    forEachStretch(startBit, bitCount, pixels.size(), [&](const Stretch& stretch, unsigned plane) {
        writeStretch(bytes, stretch, plane, pixels.data());
    });
}

} // namespace marvek::planar

namespace marvek::planar {
namespace {

std::uint64_t runLength(std::span<const std::uint8_t> pixels, int planes) {
    if (planes < 0 || planes > static_cast<int>(maximumPlanes)) {
        throw std::invalid_argument("bitplanes: planes outside 0..8");
    }
    return std::uint64_t{pixels.size()} * static_cast<unsigned>(planes);
}

// Bits from the cursor to the end of the last data byte; 0 when the cursor
// is not inside the data.
std::uint64_t bitsInsideData(const clsBitStream& stream) {
    const std::int64_t position = stream.byteOffset();
    const std::int64_t size = stream.Size();
    if (position < 0 || position >= size) {
        return 0;
    }
    return static_cast<std::uint64_t>(size - position) * bitsPerByte - stream.bitOffset();
}

// Moves the cursor on by `bits`, which end inside or at the end of the data.
void advance(clsBitStream& stream, std::uint64_t bits) {
    const std::uint64_t total = stream.bitOffset() + bits;
    stream.seekTo(static_cast<std::int32_t>(stream.byteOffset() + total / bitsPerByte));
    for (std::uint64_t i = 0; i < total % bitsPerByte; ++i) {
        stream.getBit();
    }
}

std::span<std::uint8_t> bytesFromCursor(clsBitStream& stream) {
    const auto data = stream.bufferGet()->data();
    return data.subspan(static_cast<std::size_t>(stream.byteOffset()));
}

// Grows an expanding stream's buffer as far as writing `bits` bits one at a
// time would, so that all but a final partial byte can be written directly.
void growFor(clsBitStream& stream, std::uint64_t bits) {
    const std::int64_t position = stream.byteOffset();
    const std::int64_t size = stream.Size();
    if (!stream.autoExpand || position < 0 || position > size) {
        return;
    }
    const std::uint64_t end = position + (stream.bitOffset() + bits) / bitsPerByte;
    if (end > static_cast<std::uint64_t>(size)) {
        if (end >= static_cast<std::uint64_t>(INT32_MAX)) {
            throw std::out_of_range("bit stream: position beyond the largest index");
        }
        stream.bufferGet()->Resize(static_cast<std::int32_t>(end));
    }
}

// At the spare byte's first bit, where a stream without autoExpand stays.
bool stuckAtEnd(const clsBitStream& stream) {
    return !stream.autoExpand && stream.byteOffset() == stream.Size() && stream.bitOffset() == 0;
}

} // namespace

void readPlanes(clsBitStream& stream, std::span<std::uint8_t> pixels, int planes) {
    const std::uint64_t total = runLength(pixels, planes);
    const std::uint64_t direct = std::min(total, bitsInsideData(stream));
    if (direct > 0) {
        xorPlanesFrom(bytesFromCursor(stream), stream.bitOffset(), direct, pixels);
        advance(stream, direct);
    }
    const auto flip = [&pixels](std::uint64_t bit) {
        pixels[static_cast<std::size_t>(bit % pixels.size())] ^=
            static_cast<std::uint8_t>(1u << (bit / pixels.size()));
    };
    std::uint64_t bit = direct;
    for (; bit < total && !stuckAtEnd(stream); ++bit) {
        if (stream.getBit() != 0) {
            flip(bit);
        }
    }
    if (bit == total) {
        return;
    }
    // From here on getBit would read the spare byte's bits over and over, for
    // as many bits as the image claims; a spare byte of zeros flips nothing.
    const std::uint8_t spare = stream.bufferGet()->getByte(stream.Size());
    const std::uint64_t left = total - bit;
    for (std::uint64_t k = 0; spare != 0 && k < left; ++k) {
        if (((spare >> (7 - k % 8)) & 1) != 0) {
            flip(bit + k);
        }
    }
    // The cursor ends where reading bit by bit leaves it.
    for (std::uint64_t k = 0; k < left % 8; ++k) {
        stream.getBit();
    }
}

void writePlanes(clsBitStream& stream, std::span<const std::uint8_t> pixels, int planes) {
    const std::uint64_t total = runLength(pixels, planes);
    growFor(stream, total);
    const std::uint64_t direct = std::min(total, bitsInsideData(stream));
    if (direct > 0) {
        writePlanesTo(bytesFromCursor(stream), stream.bitOffset(), direct, pixels);
        advance(stream, direct);
    }
    for (std::uint64_t bit = direct; bit < total; ++bit) {
        const auto plane = static_cast<unsigned>(bit / pixels.size());
        stream.putBit(bitOf(pixels[static_cast<std::size_t>(bit % pixels.size())], plane));
    }
}

} // namespace marvek::planar
