#include "support/packing.h"
#include "support/sampleData.h"

#include <gtest/gtest.h>

#include <string>

namespace marvek::test {
namespace {

using imploder::kClassicExtraBits;

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

// A file from a stream written by hand, with mode 0's tables unless told.
Bytes handFile(const StreamWriter& writer, std::uint32_t unpackedLength, std::uint32_t firstRun,
               const PackedParts& tables = {}) {
    PackedParts parts = tables;
    parts.stream = writer.stream();
    parts.unpackedLength = unpackedLength;
    parts.firstRunLength = firstRun;
    parts.bitByte = writer.bitByte();
    return assembleFile(std::move(parts));
}

// "a", then a match of 2 at distance d over a run of one literal, then "b".
Bytes shortMatchFile(std::uint32_t distance) {
    StreamWriter w;
    w.appendByte('a');
    w.appendField(distance - 1, kClassicExtraBits[0][0] + 1);
    w.appendField(1, 2);
    w.appendField(0, 1);
    w.appendByte('b');
    return handFile(w, 4, 1);
}

TEST(ExplodeStream, BasesNeedNotFollowFromTheExtraBits) {
    // Distance class "10" with B[0] = 40 and X[4] = 2: d = 41 + v.
    Bytes expected(44, '.');
    expected[0] = expected[42] = 'p';
    expected[1] = expected[43] = 'q';
    StreamWriter w;
    w.appendField((2u << 2) | 1, 4); // d = 42
    w.appendField(0, 2);
    w.appendField(0, 1);
    for (std::size_t i = 2; i < expected.size(); ++i) {
        w.appendByte(expected[i]);
    }
    PackedParts tables;
    tables.extraBits = {5, 5, 5, 5, 2, 5, 5, 5, 6, 6, 6, 6};
    tables.bases = {40, 32, 32, 32, 64, 64, 64, 64};
    expectRoundTrip(handFile(w, 44, 42, tables), expected);
}

TEST(ExplodeStream, UnreadLeadingBytesAndThePaddingByteAreSkipped) {
    const auto plain = bytesOf("literal only, twenty-six!");
    PackedParts parts;
    parts.stream = Bytes(20, 0xEE);
    parts.stream.insert(parts.stream.end(), plain.begin(), plain.end());
    parts.unpackedLength = parts.firstRunLength = static_cast<std::uint32_t>(plain.size());
    expectRoundTrip(assembleFile(parts), plain);

    const auto odd = bytesOf("thirteen byte");
    parts.stream = odd;
    parts.unpackedLength = parts.firstRunLength = 13;
    auto file = assembleFile(parts);
    const std::size_t end = file.size() - imploder::kTrailerLength;
    ASSERT_EQ(end, 14u);
    file[end - 1] = 0xAA;
    file[end + imploder::kTrailerFlag] = 0x7F; // only bit 7 counts
    resealChecksum(file);
    expectRoundTrip(file, odd);
}

TEST(ExplodeStream, AMatchFromTheBitByteMayReachTheLastOutputByte) {
    // Three bits "0 00" (length 2, run 0) wait in the bit byte; the
    // distance bits come from the stream.
    const auto file = shortMatchFile(1);
    expectRoundTrip(file, bytesOf("abbb"));
    EXPECT_NE(file[file.size() - imploder::kTrailerLength + imploder::kTrailerBitByte],
              imploder::kEmptyBitByte);
    EXPECT_EQ(unpackWithOurs(shortMatchFile(2)).status, IMP_ERROR_DISTANCE);
}

void expectRefused(const Bytes& file, std::int32_t status, const char* fault) {
    const Unpacked result = unpackWithOurs(file);
    EXPECT_EQ(result.status, status) << fault << ": " << impStatusText(result.status);
    EXPECT_TRUE(result.data.empty()) << fault;
}

TEST(ExplodeRefusal, EachMalformedFileNamesItsFault) {
    const auto valid = pack(levelLike(600, 6), 1);
    const std::size_t end = valid.size() - imploder::kTrailerLength;
    const auto edited = [&](const char* fault, std::int32_t status, auto edit, bool reseal = true) {
        auto file = valid;
        edit(file);
        if (reseal && file.size() == valid.size()) {
            resealChecksum(file);
        }
        expectRefused(file, status, fault);
    };
    const auto setLong = [](std::size_t at, std::uint32_t value) {
        return [at, value](Bytes& f) { imploder::writeBigEndian32(&f[at], value); };
    };
    edited("three bytes", IMP_ERROR_TOO_SHORT, [](auto& f) { f.resize(3); });
    edited("header only", IMP_ERROR_TOO_SHORT, [](auto& f) { f.resize(12); });
    edited("trailer cut", IMP_ERROR_TOO_SHORT, [](auto& f) { f.pop_back(); });
    edited("stream end past the file", IMP_ERROR_TOO_SHORT, setLong(8, 0xFFFFFFFE), false);
    edited("magic", IMP_ERROR_MAGIC, [](auto& f) { f[3] = '?'; });
    edited("odd stream end", IMP_ERROR_STREAM_END, setLong(8, static_cast<std::uint32_t>(end - 1)),
           false);
    edited("stream end 10", IMP_ERROR_STREAM_END, setLong(8, 10), false);
    edited("unpacked length 0", IMP_ERROR_EMPTY, setLong(4, 0));
    edited("unpacked length out of reach", IMP_ERROR_TRUNCATED, setLong(4, 0xFFFFFFFF));
    edited("first run too long", IMP_ERROR_RUN_OVERFLOW,
           setLong(end + imploder::kTrailerFirstRunLength, 601));
    edited(
        "checksum", IMP_ERROR_CHECKSUM, [end](auto& f) { f[end + 49] ^= 1; }, false);
    edited(
        "stream byte", IMP_ERROR_CHECKSUM, [end](auto& f) { f[end - 1] ^= 0x10; }, false);

    StreamWriter overlong; // distance 1, run 0, length 2 over what is left
    overlong.appendField(0, 9);
    overlong.appendByte('a');
    overlong.appendByte('b');
    expectRefused(handFile(overlong, 3, 2), IMP_ERROR_MATCH_OVERFLOW, "match past the end");
    StreamWriter zeroLength;
    zeroLength.appendByte('a');
    zeroLength.appendField(0, 6);
    zeroLength.appendField(1, 2);
    zeroLength.appendByte(0);
    zeroLength.appendField(0x1F, 5);
    zeroLength.appendByte('b');
    expectRefused(handFile(zeroLength, 10, 1), IMP_ERROR_LENGTH_BYTE, "length byte 0");
    StreamWriter shortStream;
    shortStream.appendByte('a');
    expectRefused(handFile(shortStream, 100, 1), IMP_ERROR_TRUNCATED, "stream runs out");
}

TEST(ExplodeRefusal, NullArgumentsAndEveryTruncationAreRefused) {
    const auto file = pack(bitplaneLike(2, 7), 2);
    std::uint8_t* output = reinterpret_cast<std::uint8_t*>(1);
    std::size_t length = 7;
    EXPECT_EQ(impExplode(nullptr, file.size(), &output, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(output, nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(impExplode(file.data(), file.size(), nullptr, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(impExplode(file.data(), file.size(), &output, nullptr), IMP_ERROR_ARGUMENT);
    for (std::size_t cut = 0; cut < file.size(); ++cut) {
        EXPECT_NE(unpackWithOurs(Bytes(file.begin(), file.begin() + static_cast<long>(cut))).status,
                  IMP_OK)
            << cut;
    }
}

// With the checksum kept right, a damaged byte must be refused exactly when
// the independent unpacker refuses it, and otherwise decode the same.
TEST(ExplodeRefusal, DamagedStreamsAgreeWithAncient) {
    const auto valid = pack(levelLike(300, 8), 3);
    const std::size_t end = valid.size() - imploder::kTrailerLength;
    for (std::size_t i = imploder::kHeaderLength; i < end + imploder::kTrailerChecksum; ++i) {
        for (const std::uint8_t flip : {0x01, 0x10, 0x80, 0xFF}) {
            auto file = valid;
            file[i] ^= flip;
            resealChecksum(file);
            const Unpacked ours = unpackWithOurs(file);
            const auto theirs = unpackWithAncient(file);
            ASSERT_EQ(ours.status == IMP_OK, theirs.has_value())
                << "byte " << i << " ^ " << int{flip};
            if (theirs) {
                EXPECT_EQ(*theirs, ours.data) << "byte " << i << " ^ " << int{flip};
            }
        }
    }
}

} // namespace
} // namespace marvek::test
