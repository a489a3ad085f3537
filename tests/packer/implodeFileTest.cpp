#include "native/imploder/format.h"
#include "packer/packerTestSupport.h"
#include "packer/sampleData.h"

#include <algorithm>

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

TEST(ImplodeFile, HeaderDescribesTheStream) {
    const Bytes data = sample::englishText(5001, 11);
    for (const std::int32_t mode : {IMP_MODE_BEST, 3}) {
        const Bytes packed = pack(data, mode);
        ASSERT_GE(packed.size(), 62u);
        EXPECT_TRUE(std::equal(packed.begin(), packed.begin() + 4, "IMP!"));
        EXPECT_EQ(imploder::readBigEndian32(&packed[4]), data.size());
        const std::uint32_t streamEnd = imploder::readBigEndian32(&packed[8]);
        EXPECT_EQ(streamEnd % 2, 0u);
        EXPECT_EQ(packed.size(), streamEnd + 50u);
    }
}

// A classic mode on data its window more than covers behaves as the
// smallest mode that covers it, as the classic packer did.
TEST(ImplodeFile, SmallDataUsesTheSmallestCoveringMode) {
    const Bytes data = sample::englishText(500, 12);
    EXPECT_EQ(pack(data, 11), pack(data, 2));
    EXPECT_NE(pack(data, 1), pack(data, 2));
}

TEST(ImplodeFile, IncompressibleStretchesStayNearTheirOwnSize) {
    Bytes data = sample::randomBytes(40000, 13);
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
    for (const Bytes& data : {sample::levelLike(53588, 21), sample::bitplaneLike(128, 22)}) {
        const std::size_t best = pack(data, IMP_MODE_BEST).size();
        EXPECT_LE(best * 100, smallestClassic(data) * 95);
    }
    for (const Bytes& data : {sample::englishText(6000, 23), sample::byteRuns(6000, 24),
                              sample::randomBytes(3000, 25)}) {
        EXPECT_LE(pack(data, IMP_MODE_BEST).size(), smallestClassic(data));
    }
}

} // namespace
} // namespace marvek::test
