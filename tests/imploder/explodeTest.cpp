#include "imploder/sampleData.h"
#include "imploder/testEncoder.h"
#include "imploder/unpackers.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

namespace marvek::testing {
namespace {

using imploder::kClassicExtraBits;

std::vector<std::uint8_t> bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

void expectBothUnpackTo(const std::vector<std::uint8_t>& file,
                        const std::vector<std::uint8_t>& expected) {
    const Unpacked ours = unpackWithOurs(file);
    ASSERT_EQ(ours.status, IMP_OK) << impStatusText(ours.status);
    EXPECT_EQ(ours.data, expected);
    EXPECT_EQ(unpackWithAncient(file), expected);
}

// A file from a stream written by hand, in the packer's order.
std::vector<std::uint8_t>
handFile(const std::function<void(StreamWriter&)>& write, std::uint32_t unpackedLength,
         std::uint32_t firstRun,
         const imploder::DistanceExtraBits& extraBits = kClassicExtraBits[0]) {
    StreamWriter writer;
    write(writer);
    PackedParts parts;
    parts.stream = writer.stream();
    parts.unpackedLength = unpackedLength;
    parts.firstRunLength = firstRun;
    parts.bitByte = writer.bitByte();
    parts.extraBits = extraBits;
    parts.bases = imploder::basesFromExtraBits(extraBits);
    return assembleFile(std::move(parts), imploder::kMagicImp);
}

// "a", then a match of 2 at distance d over a run of one literal, then "b".
std::vector<std::uint8_t> shortMatchFile(std::uint32_t distance) {
    return handFile(
        [distance](StreamWriter& w) {
            w.appendByte('a');
            w.appendField(distance - 1, kClassicExtraBits[0][0] + 1);
            w.appendField(1, 2);
            w.appendField(0, 1);
            w.appendByte('b');
        },
        4, 1);
}

TEST(ExplodeRoundTrip, EveryClassicModeAgreesWithAncient) {
    const std::vector<std::vector<std::uint8_t>> inputs{
        levelLikeBytes(2000, 1),     bitplaneLikeBytes(1500, 2),
        randomBytes(300, 3),         bytesOf("x"),
        bytesOf("abababababababab"), std::vector<std::uint8_t>(700, 'A')};
    for (std::size_t mode = 0; mode < imploder::kClassicModeCount; ++mode) {
        for (const auto& input : inputs) {
            SCOPED_TRACE("mode " + std::to_string(mode) + ", " + std::to_string(input.size()));
            expectBothUnpackTo(TestEncoder::classic(mode).pack(input), input);
        }
    }
}

TEST(ExplodeRoundTrip, AtnIsTheSameFormat) {
    const auto input = levelLikeBytes(1000, 4);
    const auto file = TestEncoder::classic(5).pack(input, imploder::kMagicAtn);
    ASSERT_EQ(file[0], 'A');
    expectBothUnpackTo(file, input);
}

TEST(ExplodeRoundTrip, LongMatchesRepeatOneByte) {
    auto input = bytesOf("x");
    input.insert(input.end(), 5000, 'y');
    const auto file = TestEncoder::classic(0).pack(input);
    EXPECT_LT(file.size(), 150u); // only long, overlapping matches make it this small
    expectBothUnpackTo(file, input);
}

TEST(ExplodeRoundTrip, TablesCarriedByTheFile) {
    const imploder::DistanceExtraBits unusual{0, 1, 2, 3, 2, 3, 4, 9, 6, 7, 10, 12};
    const auto input = levelLikeBytes(6000, 5);
    expectBothUnpackTo(TestEncoder(unusual, 6000).pack(input), input);
}

TEST(ExplodeStream, BasesNeedNotFollowFromTheExtraBits) {
    // Distance class "10" with B[0] = 40 and X[4] = 2: d = 41 + v.
    const std::vector<std::uint8_t> expected = [] {
        std::vector<std::uint8_t> data(44, '.');
        data[0] = data[42] = 'p';
        data[1] = data[43] = 'q';
        return data;
    }();
    StreamWriter w;
    w.appendField((2u << 2) | 1, 4); // d = 42
    w.appendField(0, 2);
    w.appendField(0, 1);
    for (std::size_t i = 2; i < expected.size(); ++i) {
        w.appendByte(expected[i]);
    }
    PackedParts parts;
    parts.stream = w.stream();
    parts.unpackedLength = 44;
    parts.firstRunLength = 42;
    parts.bitByte = w.bitByte();
    parts.extraBits = {5, 5, 5, 5, 2, 5, 5, 5, 6, 6, 6, 6};
    parts.bases = {40, 32, 32, 32, 64, 64, 64, 64};
    expectBothUnpackTo(assembleFile(parts, imploder::kMagicImp), expected);
}

TEST(ExplodeStream, UnreadLeadingBytesAreIgnored) {
    StreamWriter w;
    for (int i = 0; i < 20; ++i) {
        w.appendByte(0xEE);
    }
    const auto plain = bytesOf("literal only, twenty-six!");
    for (const auto byte : plain) {
        w.appendByte(byte);
    }
    PackedParts parts;
    parts.stream = w.stream();
    parts.unpackedLength = static_cast<std::uint32_t>(plain.size());
    parts.firstRunLength = parts.unpackedLength;
    expectBothUnpackTo(assembleFile(parts, imploder::kMagicImp), plain);
}

TEST(ExplodeStream, PaddingByteIsSkipped) {
    const auto plain = bytesOf("thirteen byte");
    PackedParts parts;
    parts.stream = plain;
    parts.unpackedLength = 13;
    parts.firstRunLength = 13;
    auto file = assembleFile(parts, imploder::kMagicImp);
    const std::size_t end = file.size() - imploder::kTrailerLength;
    ASSERT_EQ(end, 14u);
    file[end - 1] = 0xAA;
    file[end + imploder::kTrailerFlag] = 0x7F; // only bit 7 counts
    resealChecksum(file);
    expectBothUnpackTo(file, plain);
}

TEST(ExplodeStream, FirstBitByteCarriesContentAboveItsMarker) {
    // Three bits "0 00" (length 2, run 0) wait in the bit byte; the
    // distance bits come from the stream.
    auto file = shortMatchFile(1);
    expectBothUnpackTo(file, bytesOf("abbb"));
    const std::size_t end = file.size() - imploder::kTrailerLength;
    EXPECT_NE(file[end + imploder::kTrailerBitByte], imploder::kEmptyBitByte);
}

TEST(ExplodeStream, MatchMayReachTheLastOutputByte) {
    expectBothUnpackTo(shortMatchFile(1), bytesOf("abbb"));
    EXPECT_EQ(unpackWithOurs(shortMatchFile(2)).status, IMP_ERROR_DISTANCE);
}

struct Refusal {
    const char* name;
    std::vector<std::uint8_t> file;
    int32_t status;
};

std::vector<Refusal> refusals() {
    const auto valid = TestEncoder::classic(1).pack(levelLikeBytes(600, 6));
    const std::size_t end = valid.size() - imploder::kTrailerLength;
    std::vector<Refusal> cases;
    const auto edited = [&](const char* name, int32_t status, auto edit, bool reseal = true) {
        auto file = valid;
        edit(file);
        if (reseal && file.size() == valid.size()) {
            resealChecksum(file);
        }
        cases.push_back({name, std::move(file), status});
    };
    edited("three bytes", IMP_ERROR_TOO_SHORT, [](auto& f) { f.resize(3); });
    edited("header only", IMP_ERROR_TOO_SHORT, [](auto& f) { f.resize(12); });
    edited("trailer cut", IMP_ERROR_TOO_SHORT, [](auto& f) { f.pop_back(); });
    edited(
        "stream end past the file", IMP_ERROR_TOO_SHORT,
        [](auto& f) { imploder::writeBigEndian32(&f[8], 0xFFFFFFFE); }, false);
    edited("magic", IMP_ERROR_MAGIC, [](auto& f) { f[3] = '?'; });
    edited(
        "odd stream end", IMP_ERROR_STREAM_END,
        [end](auto& f) { imploder::writeBigEndian32(&f[8], static_cast<std::uint32_t>(end - 1)); },
        false);
    edited(
        "stream end 10", IMP_ERROR_STREAM_END,
        [](auto& f) { imploder::writeBigEndian32(&f[8], 10); }, false);
    edited("unpacked length 0", IMP_ERROR_EMPTY,
           [](auto& f) { imploder::writeBigEndian32(&f[4], 0); });
    edited("unpacked length out of reach", IMP_ERROR_TRUNCATED,
           [](auto& f) { imploder::writeBigEndian32(&f[4], 0xFFFFFFFF); });
    edited("first run too long", IMP_ERROR_RUN_OVERFLOW, [end](auto& f) {
        imploder::writeBigEndian32(&f[end + imploder::kTrailerFirstRunLength], 601);
    });
    edited(
        "checksum", IMP_ERROR_CHECKSUM, [end](auto& f) { f[end + 49] ^= 1; }, false);
    edited(
        "stream byte", IMP_ERROR_CHECKSUM, [end](auto& f) { f[end - 1] ^= 0x10; }, false);

    cases.push_back({"match longer than what is left",
                     handFile(
                         [](StreamWriter& w) {
                             w.appendField(0, 6);
                             w.appendField(0, 2);
                             w.appendField(0, 1);
                             w.appendByte('a');
                             w.appendByte('b');
                         },
                         3, 2),
                     IMP_ERROR_MATCH_OVERFLOW});
    cases.push_back({"length byte 0",
                     handFile(
                         [](StreamWriter& w) {
                             w.appendByte('a');
                             w.appendField(0, 6);
                             w.appendField(1, 2);
                             w.appendByte(0);
                             w.appendField(0x1F, 5);
                             w.appendByte('b');
                         },
                         10, 1),
                     IMP_ERROR_LENGTH_BYTE});
    cases.push_back({"stream runs out",
                     handFile([](StreamWriter& w) { w.appendByte('a'); }, 100, 1),
                     IMP_ERROR_TRUNCATED});
    return cases;
}

TEST(ExplodeRefusal, EachMalformedFileNamesItsFault) {
    for (const Refusal& refusal : refusals()) {
        SCOPED_TRACE(refusal.name);
        const Unpacked result = unpackWithOurs(refusal.file);
        EXPECT_EQ(result.status, refusal.status) << impStatusText(result.status);
        EXPECT_TRUE(result.data.empty());
    }
}

TEST(ExplodeRefusal, NullArgumentsAreRefused) {
    const auto file = TestEncoder::classic(0).pack(bytesOf("abc"));
    uint8_t* output = reinterpret_cast<uint8_t*>(1);
    size_t length = 7;
    EXPECT_EQ(impExplode(nullptr, file.size(), &output, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(output, nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(impExplode(file.data(), file.size(), nullptr, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(impExplode(file.data(), file.size(), &output, nullptr), IMP_ERROR_ARGUMENT);
}

TEST(ExplodeRefusal, EveryStatusHasItsOwnText) {
    std::set<std::string> texts;
    for (int32_t status = IMP_OK; status <= IMP_ERROR_ARGUMENT; ++status) {
        texts.insert(impStatusText(status));
    }
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(IMP_ERROR_ARGUMENT + 1));
    EXPECT_NE(impStatusText(-5), nullptr);
}

TEST(ExplodeRefusal, EveryTruncationIsRefused) {
    const auto file = TestEncoder::classic(2).pack(bitplaneLikeBytes(400, 7));
    for (std::size_t length = 0; length < file.size(); ++length) {
        const std::vector<std::uint8_t> cut(file.begin(), file.begin() + static_cast<long>(length));
        EXPECT_NE(unpackWithOurs(cut).status, IMP_OK) << length;
    }
}

// With the checksum kept right, a damaged byte must be refused exactly when
// the independent unpacker refuses it, and otherwise decode the same.
TEST(ExplodeRefusal, DamagedStreamsAgreeWithAncient) {
    const auto valid = TestEncoder::classic(3).pack(levelLikeBytes(300, 8));
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
} // namespace marvek::testing
