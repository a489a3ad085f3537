#pragma once

#include <cstdint>
#include <span>

namespace marvek {
class clsBitStream;
}

namespace marvek::planar {

// The game's bitplane layout: planes one after another, plane 0 first, each
// one bit per pixel in row-major order with no padding. Bit g of the run
// (g = plane * pixels.size() + pixel) lies at bit (startBit + g) of `bytes`,
// most significant bit of a byte first.

// XORs the first bitCount bits of the run into the pixels: a set bit of
// plane k toggles bit k of its pixel. bytes must hold startBit + bitCount
// bits; bitCount must not pass the end of plane 7.
void xorPlanesFrom(std::span<const std::uint8_t> bytes, unsigned startBit, std::uint64_t bitCount,
                   std::span<std::uint8_t> pixels);

// Writes the first bitCount bits of the run: bit k of each pixel into plane
// k. Bits of `bytes` outside the run keep their values.
void writePlanesTo(std::span<std::uint8_t> bytes, unsigned startBit, std::uint64_t bitCount,
                   std::span<const std::uint8_t> pixels);

// The same through a bit stream, from its cursor, for `planes` planes of the
// pixels: the cursor and the buffer end up exactly as with the stream's own
// single-bit calls (getBit, putBit), which are used near the end of the
// buffer, where reading or writing on wraps around the spare byte.
void readPlanes(clsBitStream& stream, std::span<std::uint8_t> pixels, int planes);
void writePlanes(clsBitStream& stream, std::span<const std::uint8_t> pixels, int planes);

} // namespace marvek::planar
