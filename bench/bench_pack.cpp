// The packer: the default search against the best classic mode's greedy
// parse, in time and in size.

#include "native/marvek.h"

#include "../tests/support/sampleData.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

std::size_t packedSize(const Bytes& data, std::int32_t mode) {
    std::uint8_t* packed = nullptr;
    std::size_t length = 0;
    if (impImplode(data.data(), data.size(), mode, &packed, &length) != IMP_OK) {
        return 0;
    }
    freeMemory(packed);
    return length;
}

std::int32_t bestClassicMode(const Bytes& data) {
    std::int32_t best = 0;
    for (std::int32_t mode = 1; mode < 12; ++mode) {
        if (packedSize(data, mode) < packedSize(data, best)) {
            best = mode;
        }
    }
    return best;
}

void reportSizes(benchmark::State& state, const Bytes& data, std::int32_t classicMode) {
    const auto best = static_cast<double>(packedSize(data, IMP_MODE_BEST));
    const auto classic = static_cast<double>(packedSize(data, classicMode));
    state.counters["input"] = static_cast<double>(data.size());
    state.counters["default"] = best;
    state.counters["classicGreedy"] = classic;
    state.counters["classicMode"] = classicMode;
    state.counters["ratio"] = best / classic;
}

void packRepeatedly(benchmark::State& state, const Bytes& data, std::int32_t mode) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(packedSize(data, mode));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * data.size()));
}

const Bytes& levelFile() {
    static const Bytes data = marvek::test::levelLike(53588, 4);
    return data;
}

const Bytes& bitplaneFile() {
    static const Bytes data = marvek::test::bitplaneLike(256, 5);
    return data;
}

void BM_PackLevelDefault(benchmark::State& state) {
    packRepeatedly(state, levelFile(), IMP_MODE_BEST);
    reportSizes(state, levelFile(), bestClassicMode(levelFile()));
}

void BM_PackLevelBestClassicGreedy(benchmark::State& state) {
    const std::int32_t mode = bestClassicMode(levelFile());
    packRepeatedly(state, levelFile(), mode);
    reportSizes(state, levelFile(), mode);
}

void BM_PackBitplaneDefault(benchmark::State& state) {
    packRepeatedly(state, bitplaneFile(), IMP_MODE_BEST);
    reportSizes(state, bitplaneFile(), bestClassicMode(bitplaneFile()));
}

} // namespace

BENCHMARK(BM_PackLevelDefault)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PackLevelBestClassicGreedy)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PackBitplaneDefault)->Unit(benchmark::kMillisecond);
