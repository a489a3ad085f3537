#pragma once

// Packing through the library's C interface, unpacking with ours and with the
// independent libancient and `ancient` command, and packed files laid out by
// hand for streams the packer never writes.

#include "native/imploder/format.h"
#include "native/marvek.h"
#include "support/TempDir.h"

#include <ancient/ancient.hpp>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace marvek::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes pack(const Bytes& data, std::int32_t mode = IMP_MODE_BEST) {
    std::uint8_t* packed = nullptr;
    std::size_t length = 0;
    const std::int32_t status = impImplode(data.data(), data.size(), mode, &packed, &length);
    const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(packed, freeMemory);
    EXPECT_EQ(status, IMP_OK) << impStatusText(status);
    return packed == nullptr ? Bytes{} : Bytes(packed, packed + length);
}

struct Unpacked {
    std::int32_t status = IMP_OK;
    Bytes data;
};

inline Unpacked unpackWithOurs(const Bytes& file) {
    std::uint8_t* output = nullptr;
    std::size_t length = 0;
    Unpacked result;
    result.status = impExplode(file.data(), file.size(), &output, &length);
    const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(output, freeMemory);
    if (output != nullptr) {
        result.data.assign(output, output + length);
    }
    return result;
}

inline std::optional<Bytes> unpackWithAncient(const Bytes& file) {
    try {
        ancient::Decompressor decompressor(file, true, true);
        return decompressor.decompress(true);
    } catch (const ancient::Error&) {
        return std::nullopt;
    }
}

// Our unpacker, libancient and `ancient verify` all give the data back.
inline void expectRoundTrip(const Bytes& packed, const Bytes& data) {
    const Unpacked ours = unpackWithOurs(packed);
    EXPECT_EQ(ours.status, IMP_OK) << impStatusText(ours.status);
    EXPECT_TRUE(ours.data == data) << "our unpacker";
    EXPECT_TRUE(unpackWithAncient(packed) == data) << "libancient";
    const TempDir folder;
    writeBytes(folder / "packed", packed);
    writeBytes(folder / "original", data);
    const std::string command = std::string(MARVEK_ANCIENT_EXECUTABLE) + " verify '" +
                                (folder / "packed").string() + "' '" +
                                (folder / "original").string() + "' > /dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

// Bits and bytes of a stream in the order the packer produces them.
class StreamWriter {
public:
    void appendByte(std::uint8_t byte) { stream_.push_back(byte); }

    // A field of width bits, value's top bits being its prefix code.
    void appendField(std::uint32_t value, unsigned width) {
        for (unsigned i = 0; i < width; ++i) {
            accumulator_ =
                static_cast<std::uint8_t>((accumulator_ >> 1) | ((value >> i & 1u) << 7));
            if (++pending_ == 8) {
                stream_.push_back(accumulator_);
                accumulator_ = 0;
                pending_ = 0;
            }
        }
    }

    std::uint8_t bitByte() const {
        return static_cast<std::uint8_t>(accumulator_ | (0x80u >> pending_));
    }
    const Bytes& stream() const { return stream_; }

private:
    Bytes stream_;
    std::uint8_t accumulator_ = 0;
    unsigned pending_ = 0;
};

struct PackedParts {
    Bytes stream;
    std::uint32_t unpackedLength = 0;
    std::uint32_t firstRunLength = 0;
    std::uint8_t bitByte = imploder::kEmptyBitByte;
    imploder::DistanceExtraBits extraBits = imploder::kClassicExtraBits[0];
    imploder::DistanceBases bases = imploder::basesFromExtraBits(imploder::kClassicExtraBits[0]);
};

// Lays out a complete "IMP!" file from a stream, the way the format stores it.
inline Bytes assembleFile(PackedParts parts) {
    using namespace imploder;
    Bytes& stream = parts.stream;
    if (stream.size() < kHeaderLength) {
        stream.insert(stream.begin(), kHeaderLength - stream.size(), 0);
    }
    const bool padded = stream.size() % 2 != 0;
    if (padded) {
        stream.push_back(0);
    }
    const std::size_t end = stream.size();
    Bytes file(packedFileLength(end));
    std::copy(kMagicImp.begin(), kMagicImp.end(), file.begin());
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

inline void resealChecksum(Bytes& file) {
    const std::size_t end = imploder::readBigEndian32(&file[imploder::kStreamEndOffset]);
    imploder::writeBigEndian32(&file[end + imploder::kTrailerChecksum],
                               imploder::checksum(file, end));
}

// The file with another magic, its checksum kept right.
inline Bytes withMagic(Bytes file, std::span<const std::uint8_t, 4> magic) {
    std::copy(magic.begin(), magic.end(), file.begin());
    resealChecksum(file);
    return file;
}

} // namespace marvek::test
