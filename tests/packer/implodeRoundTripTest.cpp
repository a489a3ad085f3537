#include "packer/packerTestSupport.h"
#include "packer/sampleData.h"

#include <string>

namespace marvek::test {
namespace {

struct DataSet {
    std::string name;
    Bytes (*make)();
};

Bytes incompressibleThenRepeats() {
    // Longer than any run a match can carry, then data worth matching.
    Bytes data = sample::randomBytes(20000, 7);
    for (int i = 0; i < 20000; ++i) {
        data.push_back(static_cast<std::uint8_t>(i)); // period 256
    }
    data.insert(data.end(), 3000, 0);
    const Bytes text = sample::englishText(4000, 8);
    data.insert(data.end(), text.begin(), text.end());
    return data;
}

const DataSet kDataSets[] = {
    {"OneByte", [] { return Bytes{0x41}; }},
    {"TwoEqualBytes",
     [] {
         return Bytes{7, 7};
     }},
    {"TwoBytes",
     [] {
         return Bytes{1, 2};
     }},
    {"ThreeEqualBytes",
     [] {
         return Bytes{0, 0, 0};
     }},
    {"LongRunOfOneByte", [] { return Bytes(70000, 0xAA); }},
    {"Runs", [] { return sample::byteRuns(20000, 1); }},
    {"Text", [] { return sample::englishText(12000, 2); }},
    {"Random", [] { return sample::randomBytes(12000, 3); }},
    {"LevelLike", [] { return sample::levelLike(16000, 4); }},
    {"BitplaneLike", [] { return sample::bitplaneLike(64, 5); }},
    {"IncompressibleThenRepeats", incompressibleThenRepeats},
};

constexpr std::int32_t kModes[] = {IMP_MODE_BEST, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};

class ImplodeRoundTrip : public ::testing::TestWithParam<std::tuple<std::size_t, std::int32_t>> {};

TEST_P(ImplodeRoundTrip, EveryUnpackerGivesTheDataBack) {
    const auto [set, mode] = GetParam();
    const Bytes data = kDataSets[set].make();
    const Bytes packed = pack(data, mode);
    ASSERT_FALSE(packed.empty());
    expectRoundTrip(packed, data);
}

INSTANTIATE_TEST_SUITE_P(DataAndModes, ImplodeRoundTrip,
                         ::testing::Combine(::testing::Range<std::size_t>(0, std::size(kDataSets)),
                                            ::testing::ValuesIn(kModes)),
                         [](const auto& info) {
                             const std::int32_t mode = std::get<1>(info.param);
                             return kDataSets[std::get<0>(info.param)].name +
                                    (mode == IMP_MODE_BEST ? std::string("Best")
                                                           : "Mode" + std::to_string(mode));
                         });

// MiBs mixing every kind of data, far beyond the longest window.
TEST(ImplodeLargeInput, RoundTripsByDefaultAndInTheNarrowestMode) {
    Bytes data;
    for (std::uint32_t seed = 0; data.size() < 3 * 1024 * 1024 / 2; ++seed) {
        for (const Bytes& part :
             {sample::levelLike(53588, seed), sample::randomBytes(30000, seed),
              sample::bitplaneLike(100, seed), sample::englishText(20000, seed)}) {
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
