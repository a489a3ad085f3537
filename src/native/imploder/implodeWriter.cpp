#include "native/imploder/implodeWriter.h"

#include <algorithm>

namespace marvek::imploder {
namespace {

// The stream as the packer appends to it: literal bytes go straight in, code
// bits gather in an accumulator that is appended whenever it fills up.
class StreamWriter {
public:
    explicit StreamWriter(std::size_t expectedLength) { bytes_.reserve(expectedLength); }

    void appendByte(std::uint8_t byte) { bytes_.push_back(byte); }

    void appendBytes(std::span<const std::uint8_t> bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    }

    // Least significant bit first, each new bit entering at the top, so the
    // unpacker reading backwards meets the field most significant bit first.
    void appendBits(std::uint32_t value, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            accumulator_ =
                static_cast<std::uint8_t>((accumulator_ >> 1) | (((value >> i) & 1) << 7));
            if (++pending_ == 8) {
                bytes_.push_back(accumulator_);
                accumulator_ = 0;
                pending_ = 0;
            }
        }
    }

    // The partial bits with the end marker just below them.
    std::uint8_t bitByte() const {
        return static_cast<std::uint8_t>(accumulator_ | (0x80u >> pending_));
    }

    std::vector<std::uint8_t>& bytes() { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
    std::uint8_t accumulator_ = 0;
    std::uint32_t pending_ = 0;
};

void appendDistance(StreamWriter& out, const ParsedMatch& match, const DistanceTable& table) {
    const std::size_t s = match.selector;
    const DistanceExtraBits& x = table.extraBits();
    const DistanceBases& b = table.bases();
    const std::uint32_t v = match.distance - 1;
    if (v < b[s]) {
        out.appendBits(v, 1 + x[s]);
    } else if (v < b[4 + s]) {
        out.appendBits((2u << x[4 + s]) | (v - b[s]), 2 + x[4 + s]);
    } else {
        out.appendBits((3u << x[8 + s]) | (v - b[4 + s]), 2 + x[8 + s]);
    }
}

void appendRun(StreamWriter& out, std::uint32_t run, std::size_t s) {
    if (run < kRunBaseMiddle) {
        out.appendBits(run, 1 + kRunBitsShort[s]);
    } else if (run < kRunBaseLong[s]) {
        out.appendBits((2u << kRunBitsMiddle[s]) | (run - kRunBaseMiddle), 2 + kRunBitsMiddle[s]);
    } else {
        out.appendBits((3u << kRunBitsLong[s]) | (run - kRunBaseLong[s]), 2 + kRunBitsLong[s]);
    }
}

void appendLength(StreamWriter& out, const ParsedMatch& match) {
    const std::uint32_t length = match.length;
    const bool byteForm = match.selector == kByteFormSelector && (length < 5 || length > 13);
    if (byteForm) {
        out.appendByte(static_cast<std::uint8_t>(length));
        out.appendBits(0b11111, 5);
    } else if (length <= 5) {
        // 0, 10, 110, 1110: length - 2 ones above a zero.
        const std::uint32_t count = length - 1;
        out.appendBits(((1u << count) - 1) & ~1u, count);
    } else {
        out.appendBits((0b11110u << kShortMatchExtraBits) | (length - kShortMatchBase),
                       5 + kShortMatchExtraBits);
    }
}

struct Stream {
    std::vector<std::uint8_t> bytes;
    std::uint32_t firstRunLength = 0;
    std::uint8_t bitByte = 0;
};

Stream encode(std::span<const std::uint8_t> data, const Parse& parse, const DistanceTable& table) {
    StreamWriter out(data.size() / 2 + 16);
    std::size_t runStart = 0;
    for (const ParsedMatch& match : parse) {
        const auto run = static_cast<std::uint32_t>(match.position - runStart);
        out.appendBytes(data.subspan(runStart, run));
        appendDistance(out, match, table);
        appendRun(out, run, match.selector);
        appendLength(out, match);
        runStart = match.position + match.length;
    }
    out.appendBytes(data.subspan(runStart));
    return {std::move(out.bytes()), static_cast<std::uint32_t>(data.size() - runStart),
            out.bitByte()};
}

} // namespace

std::vector<std::uint8_t> writePackedFile(std::span<const std::uint8_t> data, const Parse& parse,
                                          const DistanceTable& table) {
    Stream stream = encode(data, parse, table);
    std::vector<std::uint8_t>& bytes = stream.bytes;
    if (bytes.size() < kMinimumStreamEnd) {
        // The unpacker never reaches these.
        bytes.insert(bytes.begin(), kMinimumStreamEnd - bytes.size(), 0);
    }
    const bool padded = bytes.size() % 2 != 0;
    if (padded) {
        bytes.push_back(0);
    }
    const std::size_t streamEnd = bytes.size();
    std::vector<std::uint8_t> file(packedFileLength(streamEnd));
    std::copy(kMagicImp.begin(), kMagicImp.end(), file.begin() + kMagicOffset);
    writeBigEndian32(&file[kUnpackedLengthOffset], static_cast<std::uint32_t>(data.size()));
    writeBigEndian32(&file[kStreamEndOffset], static_cast<std::uint32_t>(streamEnd));
    std::copy(bytes.begin() + kHeaderLength, bytes.end(), file.begin() + kHeaderLength);
    std::uint8_t* trailer = &file[streamEnd];
    std::copy_n(bytes.begin() + 8, 4, trailer + kTrailerStreamBytes8To11);
    std::copy_n(bytes.begin() + 4, 4, trailer + kTrailerStreamBytes4To7);
    std::copy_n(bytes.begin(), 4, trailer + kTrailerStreamBytes0To3);
    writeBigEndian32(trailer + kTrailerFirstRunLength, stream.firstRunLength);
    trailer[kTrailerFlag] = padded ? 0 : kFlagUnpadded;
    trailer[kTrailerBitByte] = stream.bitByte;
    for (std::size_t i = 0; i < kBaseCount; ++i) {
        writeBigEndian16(trailer + kTrailerBases + 2 * i, table.bases()[i]);
    }
    std::copy(table.extraBits().begin(), table.extraBits().end(), trailer + kTrailerExtraBits);
    writeBigEndian32(trailer + kTrailerChecksum, checksum(file, streamEnd));
    return file;
}

} // namespace marvek::imploder
