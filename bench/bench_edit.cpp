#include "data/CellBlock.h"
#include "data/clsLevel.h"
#include "data/floodFill.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace marvek {
namespace {

// The game's standard level size, every cell one tile.
clsLevel oneTileLevel() {
    clsLevel level;
    level.width = 300;
    level.height = 84;
    level.resizeCells();
    for (Cell& cell : level.cells()) {
        cell.tile = 1;
    }
    return level;
}

// A bucket fill of the whole level next to one memcpy of its grid.

void BM_WholeLevel_bucketFill(benchmark::State& state) {
    clsLevel level = oneTileLevel();
    CellBlock brush(1, 1);
    for (auto _ : state) {
        brush.at(0, 0).tile = static_cast<std::int16_t>(3 - level.cells()[0].tile);
        const CellRegion region = floodRegion(level, 150, 42, RegionKey::tile);
        fillRegion(level, region, brush, 150, 42, PatternSpecials::keep);
        benchmark::DoNotOptimize(level.cells().data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * level.cellBytes()));
}
BENCHMARK(BM_WholeLevel_bucketFill);

void BM_WholeLevel_memcpy(benchmark::State& state) {
    const clsLevel level = oneTileLevel();
    std::vector<Cell> target(level.cells().size());
    for (auto _ : state) {
        std::memcpy(target.data(), level.cells().data(), level.cellBytes());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * level.cellBytes()));
}
BENCHMARK(BM_WholeLevel_memcpy);

} // namespace
} // namespace marvek
