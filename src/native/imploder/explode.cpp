// The unpacker. The output is produced from its end towards its start while
// the stream is read from its end towards its start; every read and write is
// bounds-checked, so a hostile file can only ever be refused.

#include "native/imploder/format.h"
#include "native/marvek.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace marvek::imploder {
namespace {

struct DecodeFailure {
    ImpStatus status;
};

[[noreturn]] void fail(ImpStatus status) {
    throw DecodeFailure{status};
}

// Copies up to this many bytes go byte by byte, without a call.
constexpr std::size_t kShortCopy = 16;

// What the header and trailer say, checked before any data is touched.
struct PackedLayout {
    std::size_t unpackedLength = 0;
    std::size_t streamEnd = 0;    // E
    std::size_t streamLength = 0; // E, or E - 1 when padded
    std::size_t firstRunLength = 0;
    std::uint8_t bitByte = 0;
    DistanceBases bases{};
    DistanceExtraBits extraBits{};
};

bool hasKnownMagic(const std::uint8_t* file) {
    return std::equal(kMagicImp.begin(), kMagicImp.end(), file) ||
           std::equal(kMagicAtn.begin(), kMagicAtn.end(), file);
}

// A stream of n bytes plus the first bit byte holds 8n + 7 bits; no match
// yields more than 255 bytes for 16 bits, so a larger length cannot be
// reached and is refused before anything is allocated.
bool isReachable(std::size_t unpackedLength, std::size_t streamLength) {
    const std::size_t bits = streamLength * 8 + 7;
    return unpackedLength / kLongestMatch <= bits / 16 + 1;
}

PackedLayout readLayout(const std::uint8_t* file, std::size_t length) {
    if (length < kMagicImp.size()) {
        fail(IMP_ERROR_TOO_SHORT);
    }
    if (!hasKnownMagic(file)) {
        fail(IMP_ERROR_MAGIC);
    }
    if (length < kHeaderLength) {
        fail(IMP_ERROR_TOO_SHORT);
    }
    PackedLayout layout;
    layout.unpackedLength = readBigEndian32(file + kUnpackedLengthOffset);
    layout.streamEnd = readBigEndian32(file + kStreamEndOffset);
    if (layout.streamEnd < kMinimumStreamEnd || (layout.streamEnd & 1) != 0) {
        fail(IMP_ERROR_STREAM_END);
    }
    if (layout.unpackedLength == 0) {
        fail(IMP_ERROR_EMPTY);
    }
    if (layout.streamEnd > length || length - layout.streamEnd < kTrailerLength) {
        fail(IMP_ERROR_TOO_SHORT);
    }
    const std::uint8_t* trailer = file + layout.streamEnd;
    const bool padded = (trailer[kTrailerFlag] & kFlagNoPadding) == 0;
    layout.streamLength = layout.streamEnd - (padded ? 1 : 0);
    layout.firstRunLength = readBigEndian32(trailer + kTrailerFirstRunLength);
    layout.bitByte = trailer[kTrailerBitByte];
    for (std::size_t i = 0; i < kBaseCount; ++i) {
        layout.bases[i] = readBigEndian16(trailer + kTrailerBases + 2 * i);
    }
    std::copy_n(trailer + kTrailerExtraBits, kExtraBitCount, layout.extraBits.begin());
    if (!isReachable(layout.unpackedLength, layout.streamLength)) {
        fail(IMP_ERROR_TRUNCATED);
    }
    return layout;
}

// Reads the stream backwards. Its first 12 bytes live in the trailer, so it is
// read in two pieces: the file from the stream end down to offset 12, then a
// copy of those first 12 bytes.
class BackwardStream {
public:
    BackwardStream(const std::uint8_t* file, const PackedLayout& layout)
        : cursor_(file + std::max(layout.streamLength, kHeaderLength)),
          floor_(file + kHeaderLength), headLength_(std::min(layout.streamLength, kHeaderLength)) {
        const std::uint8_t* trailer = file + layout.streamEnd;
        std::copy_n(trailer + kTrailerStreamBytes0To3, 4, head_.begin());
        std::copy_n(trailer + kTrailerStreamBytes4To7, 4, head_.begin() + 4);
        std::copy_n(trailer + kTrailerStreamBytes8To11, 4, head_.begin() + 8);
    }
    BackwardStream(const BackwardStream&) = delete;
    BackwardStream& operator=(const BackwardStream&) = delete;

    std::uint8_t takeByte() {
        if (cursor_ == floor_) [[unlikely]] {
            enterHead();
        }
        return *--cursor_;
    }

    // Copies the next n stream bytes to destinationEnd - n ... destinationEnd - 1;
    // stream and output both run backwards, so the order is kept.
    void takeBytes(std::uint8_t* destinationEnd, std::size_t n) {
        if (n <= kShortCopy && n <= static_cast<std::size_t>(cursor_ - floor_)) {
            // Locals: byte stores may alias the members.
            const std::uint8_t* source = cursor_ - n;
            std::uint8_t* destination = destinationEnd - n;
            for (std::size_t i = n; i-- > 0;) {
                destination[i] = source[i];
            }
            cursor_ = source;
            return;
        }
        while (n > 0) {
            if (cursor_ == floor_) {
                enterHead();
            }
            const std::size_t chunk = std::min(n, static_cast<std::size_t>(cursor_ - floor_));
            cursor_ -= chunk;
            destinationEnd -= chunk;
            std::memcpy(destinationEnd, cursor_, chunk);
            n -= chunk;
        }
    }

private:
    void enterHead() {
        if (inHead_ || headLength_ == 0) {
            fail(IMP_ERROR_TRUNCATED);
        }
        inHead_ = true;
        floor_ = head_.data();
        cursor_ = head_.data() + headLength_;
    }

    const std::uint8_t* cursor_;
    const std::uint8_t* floor_;
    std::array<std::uint8_t, kHeaderLength> head_{};
    std::size_t headLength_;
    bool inHead_ = false;
};

// Bits come most significant first from bytes taken off the stream only when
// the buffer runs dry: literal bytes are interleaved with the bit bytes, so
// the buffer must never read ahead.
class BitReader {
public:
    BitReader(BackwardStream& stream, std::uint8_t firstByte) : stream_(stream) {
        // The lowest set bit marks the end of the bits that are still unread.
        if (firstByte != 0) {
            const unsigned markerPosition = static_cast<unsigned>(std::countr_zero(firstByte));
            count_ = 7 - markerPosition;
            bits_ = firstByte >> (markerPosition + 1);
        }
    }

    unsigned bit() {
        if (count_ == 0) {
            bits_ = stream_.takeByte();
            count_ = 8;
        }
        --count_;
        return static_cast<unsigned>(bits_ >> count_) & 1u;
    }

    // Up to 24 bits.
    std::uint32_t bits(unsigned n) {
        while (count_ < n) {
            bits_ = (bits_ << 8) | stream_.takeByte();
            count_ += 8;
        }
        count_ -= n;
        return static_cast<std::uint32_t>(bits_ >> count_) & ((std::uint32_t{1} << n) - 1);
    }

    // Any width a file's table asks for; values too large for any output
    // saturate instead of overflowing.
    std::uint64_t wideBits(unsigned n) {
        if (n <= kFastWidth) [[likely]] {
            return bits(n);
        }
        constexpr std::uint64_t kSaturated = std::uint64_t{1} << 48;
        std::uint64_t value = 0;
        while (n > 0) {
            const unsigned chunk = std::min(n, kFastWidth);
            value = std::min((value << chunk) | bits(chunk), kSaturated);
            n -= chunk;
        }
        return value;
    }

private:
    static constexpr unsigned kFastWidth = 24;

    BackwardStream& stream_;
    std::uint64_t bits_ = 0;
    unsigned count_ = 0;
};

struct Match {
    std::size_t length;
    std::size_t selector;
};

class Exploder {
public:
    Exploder(const std::uint8_t* file, const PackedLayout& layout, std::uint8_t* output)
        : layout_(layout), stream_(file, layout), reader_(stream_, layout.bitByte), output_(output),
          written_(layout.unpackedLength) {}

    void run() {
        std::size_t runLength = layout_.firstRunLength;
        for (;;) {
            copyLiterals(runLength);
            if (written_ == 0) {
                return;
            }
            const Match match = readMatch();
            runLength = readRunLength(match.selector);
            const std::uint64_t distance = readDistance(match.selector);
            copyMatch(match.length, distance);
        }
    }

private:
    void copyLiterals(std::size_t n) {
        if (n > written_) {
            fail(IMP_ERROR_RUN_OVERFLOW);
        }
        stream_.takeBytes(output_ + written_, n);
        written_ -= n;
    }

    Match readMatch() {
        if (reader_.bit() == 0) {
            return {2, 0};
        }
        if (reader_.bit() == 0) {
            return {3, 1};
        }
        if (reader_.bit() == 0) {
            return {4, 2};
        }
        if (reader_.bit() == 0) {
            return {5, 3};
        }
        if (reader_.bit() == 0) {
            return {kShortMatchBase + reader_.bits(kShortMatchExtraBits), 3};
        }
        const std::uint8_t length = stream_.takeByte();
        if (length == 0) {
            fail(IMP_ERROR_LENGTH_BYTE);
        }
        return {length, 3};
    }

    std::size_t readRunLength(std::size_t selector) {
        if (reader_.bit() == 0) {
            return reader_.bits(kRunBitsShort[selector]);
        }
        if (reader_.bit() == 0) {
            return kRunBaseMiddle + reader_.bits(kRunBitsMiddle[selector]);
        }
        return kRunBaseLong[selector] + reader_.bits(kRunBitsLong[selector]);
    }

    std::uint64_t readDistance(std::size_t selector) {
        const DistanceExtraBits& extraBits = layout_.extraBits;
        if (reader_.bit() == 0) {
            return 1 + reader_.wideBits(extraBits[selector]);
        }
        if (reader_.bit() == 0) {
            return 1 + layout_.bases[selector] + reader_.wideBits(extraBits[4 + selector]);
        }
        return 1 + layout_.bases[4 + selector] + reader_.wideBits(extraBits[8 + selector]);
    }

    void copyMatch(std::size_t length, std::uint64_t distance) {
        if (length > written_) {
            fail(IMP_ERROR_MATCH_OVERFLOW);
        }
        if (distance > layout_.unpackedLength - written_) {
            fail(IMP_ERROR_DISTANCE);
        }
        const std::size_t d = static_cast<std::size_t>(distance);
        std::uint8_t* target = output_ + written_ - length;
        if (length <= kShortCopy) {
            // Highest byte first, so an overlapping source has been written
            // by the time it is read; cheaper than a call for short matches.
            for (std::size_t i = length; i-- > 0;) {
                target[i] = target[i + d];
            }
        } else if (d >= length) {
            std::memcpy(target, target + d, length);
        } else if (d == 1) {
            std::memset(target, target[length], length);
        } else {
            for (std::size_t i = length; i-- > 0;) {
                target[i] = target[i + d];
            }
        }
        written_ -= length;
    }

    const PackedLayout& layout_;
    BackwardStream stream_;
    BitReader reader_;
    std::uint8_t* output_;
    std::size_t written_;
};

struct FreeDeleter {
    void operator()(std::uint8_t* memory) const { std::free(memory); }
};
using LibraryMemory = std::unique_ptr<std::uint8_t, FreeDeleter>;

// A checksum mismatch is only reported once decoding succeeded, so that a
// damaged stream is reported by the fault decoding ran into. Either way the
// data is refused: a file that fails its checksum is not trusted.
ImpStatus explode(const std::uint8_t* file, std::size_t length, LibraryMemory& output,
                  std::size_t& outputLength) {
    try {
        const PackedLayout layout = readLayout(file, length);
        LibraryMemory memory(static_cast<std::uint8_t*>(std::malloc(layout.unpackedLength)));
        if (!memory) {
            return IMP_ERROR_NO_MEMORY;
        }
        Exploder(file, layout, memory.get()).run();
        const std::uint32_t stored = readBigEndian32(file + layout.streamEnd + kTrailerChecksum);
        if (stored != checksum({file, length}, layout.streamEnd)) {
            return IMP_ERROR_CHECKSUM;
        }
        output = std::move(memory);
        outputLength = layout.unpackedLength;
        return IMP_OK;
    } catch (const DecodeFailure& failure) {
        return failure.status;
    }
}

} // namespace
} // namespace marvek::imploder

extern "C" int32_t impExplode(const uint8_t* packed, size_t packedLength, uint8_t** unpacked,
                              size_t* unpackedLength) {
    if (unpacked == nullptr || unpackedLength == nullptr) {
        return IMP_ERROR_ARGUMENT;
    }
    *unpacked = nullptr;
    *unpackedLength = 0;
    if (packed == nullptr || packedLength == 0) {
        return IMP_ERROR_ARGUMENT;
    }
    marvek::imploder::LibraryMemory output;
    std::size_t length = 0;
    const ImpStatus status = marvek::imploder::explode(packed, packedLength, output, length);
    if (status == IMP_OK) {
        *unpacked = output.release();
        *unpackedLength = length;
    }
    return status;
}

extern "C" const char* impStatusText(int32_t status) {
    switch (status) {
    case IMP_OK:
        return "no error";
    case IMP_ERROR_TOO_SHORT:
        return "the packed file is truncated";
    case IMP_ERROR_MAGIC:
        return "not a packed file (no \"IMP!\" or \"ATN!\" magic)";
    case IMP_ERROR_STREAM_END:
        return "the packed file's stream end is invalid";
    case IMP_ERROR_EMPTY:
        return "the packed file's unpacked length is 0";
    case IMP_ERROR_RUN_OVERFLOW:
        return "the packed data is corrupt (a literal run overruns the output)";
    case IMP_ERROR_MATCH_OVERFLOW:
        return "the packed data is corrupt (a match overruns the output)";
    case IMP_ERROR_DISTANCE:
        return "the packed data is corrupt (a match reaches beyond the output)";
    case IMP_ERROR_LENGTH_BYTE:
        return "the packed data is corrupt (a match length byte of 0)";
    case IMP_ERROR_TRUNCATED:
        return "the packed data ends before the output is complete";
    case IMP_ERROR_CHECKSUM:
        return "the packed file's checksum does not match";
    case IMP_ERROR_NO_MEMORY:
        return "out of memory";
    case IMP_ERROR_ARGUMENT:
        return "invalid argument";
    default:
        return "unknown error";
    }
}
