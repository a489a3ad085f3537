#include "native/handles.h"
#include "native/marvek.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace marvek {
namespace {

constexpr std::int32_t frameWidth = 1920;
constexpr std::int32_t frameHeight = 1080;
constexpr std::int32_t tileSize = 16;
constexpr std::size_t frameBytes = std::size_t{frameWidth} * frameHeight * 4;

std::vector<UniqueSurface> makeTiles(int count) {
    std::vector<UniqueSurface> tiles;
    for (int i = 0; i < count; ++i) {
        tiles.emplace_back(surfaceCreate(tileSize, tileSize));
        surfaceFill(tiles.back().get(), 0x00010101u * static_cast<std::uint32_t>(i));
    }
    return tiles;
}

// Each pair below measures one call next to a plain memcpy of the same bytes.

void BM_TileFrame_renderBlitFast(benchmark::State& state) {
    const UniqueSurface frame(surfaceCreate(frameWidth, frameHeight));
    const std::vector<UniqueSurface> tiles = makeTiles(64);
    for (auto _ : state) {
        std::size_t next = 0;
        for (std::int32_t y = 0; y < frameHeight; y += tileSize) {
            for (std::int32_t x = 0; x < frameWidth; x += tileSize) {
                renderBlitFast(frame.get(), tiles[next++ % tiles.size()].get(), x, y);
            }
        }
        benchmark::DoNotOptimize(surfaceGetDataPtr(frame.get()));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * frameBytes));
}
BENCHMARK(BM_TileFrame_renderBlitFast);

void BM_FrameCopy_memcpy(benchmark::State& state) {
    const std::vector<std::uint32_t> source(frameBytes / 4, 1);
    std::vector<std::uint32_t> target(frameBytes / 4);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), frameBytes);
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * frameBytes));
}
BENCHMARK(BM_FrameCopy_memcpy);

void BM_FrameCopy_surfaceCopyToBitmap(benchmark::State& state) {
    const UniqueSurface frame(surfaceCreate(frameWidth, frameHeight));
    surfaceFill(frame.get(), 1);
    std::vector<std::uint32_t> bits(frameBytes / 4);
    for (auto _ : state) {
        surfaceCopyToBitmap(frame.get(), bits.data());
        benchmark::DoNotOptimize(bits.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * frameBytes));
}
BENCHMARK(BM_FrameCopy_surfaceCopyToBitmap);

void BM_FrameCopy_surfaceCopyToBitmapDouble(benchmark::State& state) {
    const UniqueSurface half(surfaceCreate(frameWidth / 2, frameHeight / 2));
    surfaceFill(half.get(), 1);
    std::vector<std::uint32_t> bits(frameBytes / 4);
    for (auto _ : state) {
        surfaceCopyToBitmapDouble(half.get(), bits.data(), frameWidth, frameHeight);
        benchmark::DoNotOptimize(bits.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * frameBytes));
}
BENCHMARK(BM_FrameCopy_surfaceCopyToBitmapDouble);

} // namespace
} // namespace marvek
