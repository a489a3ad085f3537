#include "native/imploder/format.h"
#include "support/packing.h"
#include "support/sampleData.h"

#include <algorithm>
#include <string>

namespace marvek::test {
namespace {

TEST(ImplodeArguments, RefusesWhatCannotBePacked) {
    const std::uint8_t byte = 1;
    std::uint8_t* packed = reinterpret_cast<std::uint8_t*>(&packed);
    std::size_t length = 99;
    EXPECT_EQ(impImplode(nullptr, 1, IMP_MODE_BEST, &packed, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(packed, nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(impImplode(&byte, 0, IMP_MODE_BEST, &packed, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(impImplode(&byte, 1, 12, &packed, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(impImplode(&byte, 1, -2, &packed, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(impImplode(&byte, 1, 0, nullptr, &length), IMP_ERROR_ARGUMENT);
    EXPECT_EQ(impImplode(&byte, 1, 0, &packed, nullptr), IMP_ERROR_ARGUMENT);
}

// One literal: a stream of zeros ending in the byte, all of it in the
// trailer, and mode 0's tables.
TEST(ImplodeFile, OneByteGivesTheExpectedFile) {
    const Bytes expected = {'I',  'M',  'P',  '!',  0, 0,    0, 1,    0, 0, 0, 12, // header
                            0,    0,    0,    0x41, 0, 0,    0, 0,    0, 0, 0, 0,  // stream 0..11
                            0,    0,    0,    1,                                   // first run
                            0xFF, 0x80,                                            // flag, bits
                            0,    0x20, 0,    0x20, 0, 0x20, 0, 0x20,              // bases
                            0,    0x40, 0,    0x40, 0, 0x40, 0, 0x40,              //
                            5,    5,    5,    5,    5, 5,    5, 5,    6, 6, 6, 6,  // extra bits
                            0,    1,    0xBA, 0xE4};                               // checksum
    EXPECT_EQ(pack({0x41}, 0), expected);
}

// A classic mode on data its window more than covers behaves as the
// smallest mode that covers it, as the classic packer did.
TEST(ImplodeFile, SmallDataUsesTheSmallestCoveringMode) {
    const Bytes data = englishText(500, 12);
    EXPECT_EQ(pack(data, 11), pack(data, 2));
    EXPECT_NE(pack(data, 1), pack(data, 2));
}

TEST(ImplodeFile, IncompressibleStretchesStayNearTheirOwnSize) {
    Bytes data = randomBytes(40000, 13);
    data.insert(data.end(), 20000, 0);
    for (const std::int32_t mode : {IMP_MODE_BEST, 0, 5, 11}) {
        EXPECT_LT(pack(data, mode).size(), 41000u) << "mode " << mode;
    }
}

std::size_t smallestClassic(const Bytes& data) {
    std::size_t smallest = SIZE_MAX;
    for (std::int32_t mode = 0; mode < 12; ++mode) {
        smallest = std::min(smallest, pack(data, mode).size());
    }
    return smallest;
}

TEST(ImplodeSize, DefaultBeatsEveryClassicModeClearly) {
    for (const Bytes& data : {levelLike(53588, 21), bitplaneLike(128, 22)}) {
        const std::size_t best = pack(data, IMP_MODE_BEST).size();
        EXPECT_LE(best * 100, smallestClassic(data) * 95);
    }
    for (const Bytes& data : {englishText(6000, 23), byteRuns(6000, 24), randomBytes(3000, 25)}) {
        EXPECT_LE(pack(data, IMP_MODE_BEST).size(), smallestClassic(data));
    }
}

Bytes incompressibleThenRepeats() {
    // Longer than any run a match can carry, then data worth matching.
    Bytes data = randomBytes(20000, 7);
    for (int i = 0; i < 20000; ++i) {
        data.push_back(static_cast<std::uint8_t>(i)); // period 256
    }
    data.insert(data.end(), 3000, 0);
    const Bytes text = englishText(4000, 8);
    data.insert(data.end(), text.begin(), text.end());
    return data;
}

class ImplodeRoundTrip : public ::testing::TestWithParam<std::int32_t> {};

TEST_P(ImplodeRoundTrip, EveryKindOfDataComesBack) {
    const Bytes dataSets[] = {{0x41},
                              {7, 7},
                              {1, 2},
                              {0, 0, 0},
                              Bytes(70000, 0xAA),
                              byteRuns(20000, 1),
                              englishText(12000, 2),
                              randomBytes(12000, 3),
                              levelLike(16000, 4),
                              bitplaneLike(64, 5),
                              incompressibleThenRepeats()};
    for (std::size_t set = 0; set < std::size(dataSets); ++set) {
        SCOPED_TRACE("data set " + std::to_string(set));
        expectRoundTrip(pack(dataSets[set], GetParam()), dataSets[set]);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryMode, ImplodeRoundTrip,
                         ::testing::Values(IMP_MODE_BEST, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11),
                         [](const auto& info) {
                             return info.param == IMP_MODE_BEST
                                        ? std::string("Best")
                                        : "Mode" + std::to_string(info.param);
                         });

// Hundreds of KiB mixing every kind of data, far beyond the longest window.
TEST(ImplodeLargeInput, RoundTripsByDefaultAndInTheNarrowestMode) {
    Bytes data;
    for (std::uint32_t seed = 0; data.size() < 512 * 1024; ++seed) {
        for (const Bytes& part : {levelLike(53588, seed), randomBytes(30000, seed),
                                  bitplaneLike(100, seed), englishText(20000, seed)}) {
            data.insert(data.end(), part.begin(), part.end());
        }
    }
    for (const std::int32_t mode : {IMP_MODE_BEST, 0}) {
        const Bytes packed = pack(data, mode);
        EXPECT_LT(packed.size(), data.size());
        expectRoundTrip(packed, data);
    }
}

} // namespace
} // namespace marvek::test
