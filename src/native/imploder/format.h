#pragma once

// What the packer and the unpacker of "IMP!" / "ATN!" files both need to know
// about the format: where things live, the classic modes and the code tables.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace marvek::imploder {

// ---- big-endian access -----------------------------------------------------

inline std::uint16_t readBigEndian16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>((bytes[0] << 8) | bytes[1]);
}

inline std::uint32_t readBigEndian32(const std::uint8_t* bytes) {
    return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) |
           (std::uint32_t{bytes[2]} << 8) | std::uint32_t{bytes[3]};
}

inline void writeBigEndian16(std::uint8_t* bytes, std::uint16_t value) {
    bytes[0] = static_cast<std::uint8_t>(value >> 8);
    bytes[1] = static_cast<std::uint8_t>(value);
}

inline void writeBigEndian32(std::uint8_t* bytes, std::uint32_t value) {
    bytes[0] = static_cast<std::uint8_t>(value >> 24);
    bytes[1] = static_cast<std::uint8_t>(value >> 16);
    bytes[2] = static_cast<std::uint8_t>(value >> 8);
    bytes[3] = static_cast<std::uint8_t>(value);
}

// ---- layout ----------------------------------------------------------------

inline constexpr std::array<std::uint8_t, 4> kMagicImp{'I', 'M', 'P', '!'};
inline constexpr std::array<std::uint8_t, 4> kMagicAtn{'A', 'T', 'N', '!'};

// Header, from the start of the file.
inline constexpr std::size_t kMagicOffset = 0;
inline constexpr std::size_t kUnpackedLengthOffset = 4;
inline constexpr std::size_t kStreamEndOffset = 8;
inline constexpr std::size_t kHeaderLength = 12;
inline constexpr std::size_t kMinimumStreamEnd = kHeaderLength;

// Trailer, from the stream end E. The stream's first 12 bytes, hidden under
// the header, are stored here as three groups of four in reversed order.
inline constexpr std::size_t kTrailerStreamBytes8To11 = 0;
inline constexpr std::size_t kTrailerStreamBytes4To7 = 4;
inline constexpr std::size_t kTrailerStreamBytes0To3 = 8;
inline constexpr std::size_t kTrailerFirstRunLength = 12;
inline constexpr std::size_t kTrailerFlag = 16;
inline constexpr std::size_t kTrailerBitByte = 17;
inline constexpr std::size_t kTrailerBases = 18;
inline constexpr std::size_t kTrailerExtraBits = 34;
inline constexpr std::size_t kTrailerChecksum = 46;
inline constexpr std::size_t kTrailerLength = 50;

// Flag bit 7 set: the stream ends at E; clear: byte E - 1 is padding.
inline constexpr std::uint8_t kFlagNoPadding = 0x80;
// The flag byte the packer writes when it did not pad.
inline constexpr std::uint8_t kFlagUnpadded = 0xFF;
// The bit byte for an accumulator holding no partial bits.
inline constexpr std::uint8_t kEmptyBitByte = 0x80;

inline constexpr std::size_t packedFileLength(std::size_t streamEnd) {
    return streamEnd + kTrailerLength;
}

// ---- distance tables -------------------------------------------------------

inline constexpr std::size_t kBaseCount = 8;
inline constexpr std::size_t kExtraBitCount = 12;
inline constexpr std::size_t kSelectorCount = 4;

using DistanceBases = std::array<std::uint16_t, kBaseCount>;
using DistanceExtraBits = std::array<std::uint8_t, kExtraBitCount>;

inline constexpr std::size_t kClassicModeCount = 12;

inline constexpr std::array<DistanceExtraBits, kClassicModeCount> kClassicExtraBits{{
    {5, 5, 5, 5, 5, 5, 5, 5, 6, 6, 6, 6},
    {5, 6, 7, 7, 6, 6, 6, 6, 7, 7, 6, 6},
    {5, 6, 7, 7, 7, 7, 7, 7, 8, 8, 8, 8},
    {5, 6, 7, 8, 7, 7, 8, 8, 8, 8, 9, 9},
    {6, 7, 7, 8, 7, 8, 9, 9, 8, 9, 10, 10},
    {6, 7, 7, 8, 7, 9, 9, 10, 8, 10, 11, 11},
    {6, 7, 8, 8, 7, 9, 9, 10, 8, 10, 11, 12},
    {6, 7, 8, 8, 7, 9, 9, 10, 9, 10, 12, 13},
    {6, 7, 7, 8, 7, 9, 9, 12, 9, 10, 12, 14},
    {6, 7, 8, 9, 7, 9, 10, 12, 9, 11, 13, 15},
    {6, 7, 8, 8, 7, 10, 11, 11, 9, 12, 13, 16},
    {6, 8, 8, 9, 7, 11, 12, 12, 9, 13, 14, 17},
}};

// The longest distance each classic mode searched.
inline constexpr std::array<std::uint32_t, kClassicModeCount> kClassicWindows{
    128, 256, 512, 1024, 1792, 3328, 5376, 9472, 20736, 37376, 67840, 67840};

// B[i] = 2^X[i], B[4 + i] = 2^X[4 + i] + B[i]. Callers keep X[0..7] small
// enough for 16 bits (every classic mode does).
inline constexpr DistanceBases basesFromExtraBits(const DistanceExtraBits& extraBits) {
    DistanceBases bases{};
    for (std::size_t i = 0; i < kSelectorCount; ++i) {
        bases[i] = static_cast<std::uint16_t>(1u << extraBits[i]);
        bases[4 + i] = static_cast<std::uint16_t>((1u << extraBits[4 + i]) + bases[i]);
    }
    return bases;
}

// The longest distance selector s reaches with tables derived from X.
inline constexpr std::uint32_t maximumDistance(const DistanceExtraBits& extraBits,
                                               std::size_t selector) {
    return (1u << extraBits[selector]) + (1u << extraBits[4 + selector]) +
           (1u << extraBits[8 + selector]);
}

// ---- match length ----------------------------------------------------------
// Codes: 0 -> 2, 10 -> 3, 110 -> 4, 1110 -> 5, 11110 + 3 bits -> 6..13,
// 11111 + stream byte -> 1..255. The selector is min(length - 2, 3).

inline constexpr unsigned kMinimumMatchLength = 2;
inline constexpr unsigned kShortMatchBase = 6;      // after 11110
inline constexpr unsigned kShortMatchExtraBits = 3; // after 11110
inline constexpr unsigned kLongestShortMatch = 13;
inline constexpr unsigned kLongestMatch = 255; // via the length byte

inline constexpr std::size_t matchSelector(unsigned matchLength) {
    return matchLength >= 5 ? 3 : matchLength - kMinimumMatchLength;
}

// ---- literal run length, by selector -----------------------------------------
// Codes: 0 + kRunBitsShort[s] bits -> v; 10 + kRunBitsMiddle[s] bits -> 2 + v;
// 11 + kRunBitsLong[s] bits -> kRunBaseLong[s] + v.

inline constexpr std::array<unsigned, kSelectorCount> kRunBitsShort{1, 1, 1, 1};
inline constexpr std::array<unsigned, kSelectorCount> kRunBitsMiddle{2, 3, 3, 4};
inline constexpr std::array<unsigned, kSelectorCount> kRunBitsLong{4, 5, 7, 14};
inline constexpr unsigned kRunBaseMiddle = 2;
inline constexpr std::array<unsigned, kSelectorCount> kRunBaseLong{6, 10, 10, 18};

// The longest literal run that can precede a match of selector s.
inline constexpr unsigned maximumRunBeforeMatch(std::size_t selector) {
    return kRunBaseLong[selector] + (1u << kRunBitsLong[selector]) - 1;
}

// ---- checksum --------------------------------------------------------------

// 7 plus the sum of the big-endian 16-bit words of file[0, E + 46). The
// caller makes sure the file holds at least E + 46 bytes and E is even.
inline std::uint32_t checksum(std::span<const std::uint8_t> file, std::size_t streamEnd) {
    std::uint32_t sum = 7;
    const std::size_t end = streamEnd + kTrailerChecksum;
    for (std::size_t i = 0; i < end; i += 2) {
        sum += readBigEndian16(file.data() + i);
    }
    return sum;
}

} // namespace marvek::imploder
