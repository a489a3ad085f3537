// Unpacking the same packed files with our unpacker and with ancient.
#include "../tests/support/sampleData.h"
#include "native/marvek.h"

#include <ancient/ancient.hpp>
#include <benchmark/benchmark.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes packBest(const Bytes& data) {
    std::uint8_t* packed = nullptr;
    std::size_t length = 0;
    if (impImplode(data.data(), data.size(), IMP_MODE_BEST, &packed, &length) != IMP_OK) {
        throw std::runtime_error("cannot pack the benchmark input");
    }
    const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(packed, freeMemory);
    return {packed, packed + length};
}

// 300 x 84 cells of 16 bits plus the level's other chunks.
const Bytes& packedLevel() {
    static const Bytes file = packBest(marvek::test::levelLike(53588, 1));
    return file;
}

const Bytes& packedBitplanes() {
    static const Bytes file = packBest(marvek::test::bitplaneLike(1638, 2));
    return file;
}

void unpackOurs(benchmark::State& state, const Bytes& file) {
    std::size_t unpackedLength = 0;
    for (auto _ : state) {
        std::uint8_t* unpacked = nullptr;
        if (impExplode(file.data(), file.size(), &unpacked, &unpackedLength) != IMP_OK) {
            state.SkipWithError("unpacking failed");
            break;
        }
        benchmark::DoNotOptimize(unpacked);
        freeMemory(unpacked);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * unpackedLength));
}

void unpackAncient(benchmark::State& state, const Bytes& file) {
    std::size_t unpackedLength = 0;
    for (auto _ : state) {
        ancient::Decompressor decompressor(file, true, false);
        const Bytes unpacked = decompressor.decompress(false);
        benchmark::DoNotOptimize(unpacked.data());
        unpackedLength = unpacked.size();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * unpackedLength));
}

void BM_UnpackLevelOurs(benchmark::State& state) {
    unpackOurs(state, packedLevel());
}
void BM_UnpackLevelAncient(benchmark::State& state) {
    unpackAncient(state, packedLevel());
}
void BM_UnpackBitplanesOurs(benchmark::State& state) {
    unpackOurs(state, packedBitplanes());
}
void BM_UnpackBitplanesAncient(benchmark::State& state) {
    unpackAncient(state, packedBitplanes());
}

BENCHMARK(BM_UnpackLevelOurs);
BENCHMARK(BM_UnpackLevelAncient);
BENCHMARK(BM_UnpackBitplanesOurs);
BENCHMARK(BM_UnpackBitplanesAncient);

} // namespace
