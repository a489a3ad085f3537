#pragma once

// A deliberately plain packer for tests: a greedy parse with a brute-force
// match search, written straight from the format's packing rules. It gives
// the unpacker real packed files without depending on the production packer.

#include "native/imploder/format.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace marvek::testing {

// Bits and bytes in the order the packer produces them.
class StreamWriter {
public:
    void appendByte(std::uint8_t byte) { stream_.push_back(byte); }

    // A field of width bits, value's top bits being its prefix code.
    void appendField(std::uint32_t value, unsigned width) {
        for (unsigned i = 0; i < width; ++i) {
            appendBit((value >> i) & 1u);
        }
    }

    void appendBit(unsigned bit) {
        accumulator_ = static_cast<std::uint8_t>((accumulator_ >> 1) | (bit << 7));
        if (++pending_ == 8) {
            stream_.push_back(accumulator_);
            accumulator_ = 0;
            pending_ = 0;
        }
    }

    std::uint8_t bitByte() const {
        return static_cast<std::uint8_t>(accumulator_ | (0x80u >> pending_));
    }
    const std::vector<std::uint8_t>& stream() const { return stream_; }

private:
    std::vector<std::uint8_t> stream_;
    std::uint8_t accumulator_ = 0;
    unsigned pending_ = 0;
};

struct PackedParts {
    std::vector<std::uint8_t> stream;
    std::uint32_t unpackedLength = 0;
    std::uint32_t firstRunLength = 0;
    std::uint8_t bitByte = imploder::kEmptyBitByte;
    imploder::DistanceExtraBits extraBits{};
    imploder::DistanceBases bases{};
};

// Lays out a complete file from a stream, the way the format stores it.
inline std::vector<std::uint8_t> assembleFile(PackedParts parts,
                                              std::span<const std::uint8_t, 4> magic) {
    using namespace imploder;
    std::vector<std::uint8_t>& stream = parts.stream;
    if (stream.size() < kHeaderLength) {
        stream.insert(stream.begin(), kHeaderLength - stream.size(), 0);
    }
    const bool padded = stream.size() % 2 != 0;
    if (padded) {
        stream.push_back(0);
    }
    const std::size_t end = stream.size();
    std::vector<std::uint8_t> file(packedFileLength(end));
    std::copy(magic.begin(), magic.end(), file.begin());
    writeBigEndian32(&file[kUnpackedLengthOffset], parts.unpackedLength);
    writeBigEndian32(&file[kStreamEndOffset], static_cast<std::uint32_t>(end));
    std::copy(stream.begin() + kHeaderLength, stream.end(), file.begin() + kHeaderLength);
    std::uint8_t* trailer = &file[end];
    std::copy_n(stream.begin() + 8, 4, trailer + kTrailerStreamBytes8To11);
    std::copy_n(stream.begin() + 4, 4, trailer + kTrailerStreamBytes4To7);
    std::copy_n(stream.begin(), 4, trailer + kTrailerStreamBytes0To3);
    writeBigEndian32(trailer + kTrailerFirstRunLength, parts.firstRunLength);
    trailer[kTrailerFlag] = padded ? 0x00 : kFlagUnpadded;
    trailer[kTrailerBitByte] = parts.bitByte;
    for (std::size_t i = 0; i < kBaseCount; ++i) {
        writeBigEndian16(trailer + kTrailerBases + 2 * i, parts.bases[i]);
    }
    std::copy(parts.extraBits.begin(), parts.extraBits.end(), trailer + kTrailerExtraBits);
    writeBigEndian32(trailer + kTrailerChecksum, checksum(file, end));
    return file;
}

inline void resealChecksum(std::vector<std::uint8_t>& file) {
    const std::size_t end = imploder::readBigEndian32(&file[imploder::kStreamEndOffset]);
    imploder::writeBigEndian32(&file[end + imploder::kTrailerChecksum],
                               imploder::checksum(file, end));
}

class TestEncoder {
public:
    explicit TestEncoder(const imploder::DistanceExtraBits& extraBits,
                         std::size_t searchWindow = 4096)
        : extraBits_(extraBits), bases_(imploder::basesFromExtraBits(extraBits)),
          searchWindow_(searchWindow) {}

    static TestEncoder classic(std::size_t mode) {
        return TestEncoder(imploder::kClassicExtraBits.at(mode),
                           imploder::kClassicWindows.at(mode));
    }

    std::vector<std::uint8_t> pack(const std::vector<std::uint8_t>& data,
                                   std::span<const std::uint8_t, 4> magic = imploder::kMagicImp) {
        StreamWriter writer;
        std::size_t run = 0;
        for (std::size_t p = 0; p < data.size();) {
            const std::optional<Found> match = findMatch(data, p, run);
            if (!match) {
                writer.appendByte(data[p++]);
                ++run;
                continue;
            }
            writeMatch(writer, *match, run);
            p += match->length;
            run = 0;
        }
        PackedParts parts;
        parts.stream = writer.stream();
        parts.unpackedLength = static_cast<std::uint32_t>(data.size());
        parts.firstRunLength = static_cast<std::uint32_t>(run);
        parts.bitByte = writer.bitByte();
        parts.extraBits = extraBits_;
        parts.bases = bases_;
        return assembleFile(std::move(parts), magic);
    }

private:
    struct Found {
        std::size_t length;
        std::size_t distance;
    };
    struct DistanceField {
        std::uint32_t value;
        unsigned width;
    };

    std::optional<Found> findMatch(std::span<const std::uint8_t> data, std::size_t p,
                                   std::size_t run) const {
        std::optional<Found> best;
        const std::size_t limit = std::min<std::size_t>(imploder::kLongestMatch, data.size() - p);
        for (std::size_t d = 1; p + d < data.size() && d <= searchWindow_; ++d) {
            std::size_t length = 0;
            while (length < limit && p + d + length < data.size() &&
                   data[p + length] == data[p + d + length]) {
                ++length;
            }
            for (; length >= 2 && !fits(length, d, run); --length) {
            }
            if (length >= 2 && (!best || length > best->length)) {
                best = Found{length, d};
                if (length == limit) {
                    break;
                }
            }
        }
        return best;
    }

    bool fits(std::size_t length, std::size_t distance, std::size_t run) const {
        const std::size_t s = imploder::matchSelector(static_cast<unsigned>(length));
        return run <= imploder::maximumRunBeforeMatch(s) && distanceField(distance, s).has_value();
    }

    std::optional<DistanceField> distanceField(std::size_t distance, std::size_t s) const {
        const std::size_t v = distance - 1;
        if (v < (std::size_t{1} << extraBits_[s])) {
            return DistanceField{static_cast<std::uint32_t>(v), extraBits_[s] + 1u};
        }
        const unsigned middle = extraBits_[4 + s];
        if (v >= bases_[s] && v - bases_[s] < (std::size_t{1} << middle)) {
            return DistanceField{static_cast<std::uint32_t>((2u << middle) | (v - bases_[s])),
                                 middle + 2};
        }
        const unsigned far = extraBits_[8 + s];
        if (v >= bases_[4 + s] && v - bases_[4 + s] < (std::size_t{1} << far)) {
            return DistanceField{static_cast<std::uint32_t>((3u << far) | (v - bases_[4 + s])),
                                 far + 2};
        }
        return std::nullopt;
    }

    void writeMatch(StreamWriter& writer, const Found& match, std::size_t run) const {
        const std::size_t s = imploder::matchSelector(static_cast<unsigned>(match.length));
        const DistanceField distance = *distanceField(match.distance, s);
        writer.appendField(distance.value, distance.width);
        writeRun(writer, static_cast<std::uint32_t>(run), s);
        writeLength(writer, static_cast<std::uint32_t>(match.length));
    }

    static void writeRun(StreamWriter& writer, std::uint32_t run, std::size_t s) {
        using namespace imploder;
        if (run < 2) {
            writer.appendField(run, kRunBitsShort[s] + 1);
        } else if (run - kRunBaseMiddle < (1u << kRunBitsMiddle[s])) {
            writer.appendField((2u << kRunBitsMiddle[s]) | (run - kRunBaseMiddle),
                               kRunBitsMiddle[s] + 2);
        } else {
            writer.appendField((3u << kRunBitsLong[s]) | (run - kRunBaseLong[s]),
                               kRunBitsLong[s] + 2);
        }
    }

    static void writeLength(StreamWriter& writer, std::uint32_t length) {
        if (length <= 5) {
            // 0, 10, 110, 1110: length - 2 ones then a zero, ones read first.
            const unsigned ones = length - 2;
            writer.appendField(((1u << ones) - 1) << 1, ones + 1);
        } else if (length <= imploder::kLongestShortMatch) {
            writer.appendField((0x1Eu << 3) | (length - imploder::kShortMatchBase), 8);
        } else {
            writer.appendByte(static_cast<std::uint8_t>(length));
            writer.appendField(0x1F, 5);
        }
    }

    imploder::DistanceExtraBits extraBits_;
    imploder::DistanceBases bases_;
    std::size_t searchWindow_;
};

} // namespace marvek::testing
