// marvek-tool bench [--data DIR] [--app DIR]: every speed figure, each against
// a reference, as "NAME: OURS REF RATIO" (microseconds, ratio ours / ref).
#include "data/CellBlock.h"
#include "data/floodFill.h"
#include "data/levelExport.h"
#include "data/levelOverview.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsFont.h"
#include "io/clsBitStream.h"
#include "io/findFile.h"
#include "native/handles.h"
#include "native/marvek.h"
#include "tool/benchTiledMap.h"
#include "tool/benchTiming.h"
#include "tool/benchWorld.h"
#include "tool/commands.h"
#include "tool/executableFolder.h"

#include <CLI/CLI.hpp>
#include <ancient/ancient.hpp>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t frameWidth = 1920;
constexpr std::int32_t frameHeight = 1080;

struct BenchArguments {
    std::optional<fs::path> dataFolder;
    fs::path applicationFolder = defaultApplicationFolder();
};

void printFigure(const char* name, double ours, double reference, const std::string& note = {}) {
    std::printf("%s: %.1f %.1f %.3f%s\n", name, ours, reference, ours / reference, note.c_str());
    std::fflush(stdout);
}

// Copying a whole frame of pixels: the least any drawing of it can cost.
class FrameCopy {
public:
    explicit FrameCopy(std::size_t words) : from_(words, 0x00336699u), to_(words) {}
    void operator()() {
        std::memcpy(to_.data(), from_.data(), from_.size() * sizeof(std::uint32_t));
        keep(to_.back());
    }

private:
    std::vector<std::uint32_t> from_;
    std::vector<std::uint32_t> to_;
};

void benchBlitFrame() {
    const UniqueSurface frame(surfaceCreate(frameWidth, frameHeight));
    const UniqueSurface tile(surfaceCreate(16, 16));
    surfaceFill(tile.get(), createBGRA(200, 100, 50, 0));
    const double ours = medianMicros([&] {
        for (std::int32_t y = 0; y < frameHeight; y += 16) {
            for (std::int32_t x = 0; x < frameWidth; x += 16) {
                renderBlitFast(frame.get(), tile.get(), x, y);
            }
        }
    });
    printFigure("blit-frame", ours, medianMicros(FrameCopy(std::size_t{frameWidth} * frameHeight)));
}

class DiscardingTarget : public clsPresentTarget {
public:
    void present(const std::uint32_t* pixels, std::int32_t, std::int32_t) override {
        keep(pixels[0]);
    }
};

void benchPresent(const char* name, std::int32_t zoom) {
    clsBackBuffer backBuffer;
    if (!backBuffer.Create(frameWidth / zoom, frameHeight / zoom, zoom)) {
        throw std::runtime_error("cannot make a back buffer for the benchmark");
    }
    DiscardingTarget target;
    const double ours = medianMicros([&] { backBuffer.Present(target); });
    const auto outputWords =
        static_cast<std::size_t>(backBuffer.bitmapWidth()) * backBuffer.bitmapHeight();
    printFigure(name, ours, medianMicros(FrameCopy(outputWords)));
}

void benchRender(const OpenedLevel& world, const clsRenderOptions& options) {
    clsBackBuffer backBuffer;
    if (!backBuffer.Create(frameWidth, frameHeight, 1)) {
        throw std::runtime_error("cannot make a back buffer for the benchmark");
    }
    clsCamera camera;
    camera.viewWidth = frameWidth;
    camera.viewHeight = frameHeight;
    camera.levelWidth = world.level.width * world.level.tileSpacing;
    camera.levelHeight = world.level.height * world.level.tileSpacing;
    // The bottom of a level is where its ground, platforms and objects are.
    camera.Move(0, camera.levelHeight);
    const double reference = medianMicros(FrameCopy(std::size_t{frameWidth} * frameHeight));
    const std::pair<const char*, std::int32_t> runs[] = {
        {"render-tiles", 1},
        {"render-specials", 14},
        {"render-all", 15},
        {"render-tiles-faint-specials", 1 | 2 | 64}};
    for (const auto& run : runs) {
        // A copy, not a structured binding: clang 14 cannot capture those.
        const std::int32_t flags = run.second;
        const char* const name = run.first;
        const double ours = medianMicros([&] {
            world.level.renderTo(backBuffer, camera, world.tileSet, world.specialSet, flags,
                                 options);
        });
        printFigure(name, ours, reference);
    }
}

// The overview as the editor's panel draws it (two pixels a cell for a
// standard level), whole and after a one-cell edit, against copying its
// pixels.
void benchOverview(const OpenedLevel& world) {
    constexpr std::int32_t cellPixels = 2;
    const OverviewColours colours = overviewColours(world.tileSet, world.specialSet);
    clsLevelOverview overview;
    overview.drawAll(world.level, colours, cellPixels);
    const double whole = medianMicros([&] { overview.drawAll(world.level, colours, cellPixels); });
    printFigure("overview-draw", whole, medianMicros(FrameCopy(overview.pixels().size())));
    const CellRange middle{world.level.width / 2, world.level.height / 2, world.level.width / 2,
                           world.level.height / 2};
    // One cell is too quick for the clock alone: the figure is the mean of
    // a thousand redraws.
    constexpr int repeats = 1000;
    const double cell = medianMicros([&] {
                            for (int i = 0; i < repeats; ++i) {
                                overview.drawCells(world.level, colours, middle);
                            }
                            keep(overview.pixels()[0]);
                        }) /
                        repeats;
    std::printf("overview-cell: %.3f %.1f %.4f (one-cell redraw against the whole draw)\n", cell,
                whole, cell / whole);
    std::fflush(stdout);
}

std::vector<std::uint8_t> levelBytes(const OpenedLevel& world) {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    world.level.writeTo(stream, world.palette);
    const auto data = stream.bufferGet()->data();
    return {data.begin(), data.end()};
}

void benchUnpack(const std::vector<std::uint8_t>& packed) {
    const double ours = medianMicros([&] {
        std::uint8_t* unpacked = nullptr;
        std::size_t length = 0;
        if (impExplode(packed.data(), packed.size(), &unpacked, &length) != IMP_OK) {
            throw std::runtime_error("our unpacker refused the benchmark file");
        }
        const NativeMemory owner(unpacked);
        keep(owner[0]);
    });
    const double reference = medianMicros([&] {
        ancient::Decompressor decompressor(packed, true, false);
        keep(decompressor.decompress(false).size());
    });
    printFigure("unpack", ours, reference);
}

void benchPackAndUnpack(const std::vector<std::uint8_t>& data) {
    // The reference is the best classic mode, each of which parses greedily.
    std::int32_t bestMode = 0;
    std::size_t bestSize = SIZE_MAX;
    for (std::int32_t mode = 0; mode < classicModes; ++mode) {
        const std::size_t size = packOnce(data, mode).size();
        if (size < bestSize) {
            bestMode = mode;
            bestSize = size;
        }
    }
    const PackResult ours = timePack(data, IMP_MODE_BEST);
    const PackResult reference = timePack(data, bestMode);
    std::printf("pack-level: %zu %zu %.3f bytes of %zu (mode %d); time %.1f %.1f us\n",
                ours.bytes.size(), reference.bytes.size(),
                static_cast<double>(ours.bytes.size()) /
                    static_cast<double>(reference.bytes.size()),
                data.size(), bestMode, ours.micros, reference.micros);
    std::fflush(stdout);
    benchUnpack(ours.bytes);
}

// A bucket fill of a whole standard level of one tile, region and fill,
// against one copy of the level's grid.
void benchBucketFill() {
    clsLevel level;
    level.width = 300;
    level.height = 84;
    level.resizeCells();
    for (Cell& cell : level.cells()) {
        cell.tile = 1;
    }
    CellBlock brush(1, 1);
    const double ours = medianMicros([&] {
        // Each run fills with the other tile, so each floods the whole map.
        brush.at(0, 0).tile = static_cast<std::int16_t>(3 - level.cells()[0].tile);
        const CellRegion region = floodRegion(level, 150, 42, RegionKey::tile);
        fillRegion(level, region, brush, 150, 42, PatternSpecials::keep);
        keep(region.count());
    });
    if (level.cells().back().tile == level.cells().front().tile) {
        printFigure("bucket-fill", ours, medianMicros(FrameCopy(level.cells().size())));
    } else {
        throw std::runtime_error("the benchmark's bucket fill missed cells");
    }
}

void runAll(const BenchArguments& parsed) {
    renderInit();
    const OpenedLevel world = parsed.dataFolder
                                  ? loadBenchWorld(parsed.applicationFolder, *parsed.dataFolder)
                                  : makeBenchWorld(parsed.applicationFolder);
    clsFont font;
    font.loadFromFile(findFile(parsed.applicationFolder, "fonts/game.bmp"));
    const clsRenderOptions options =
        font.handle() != 0 ? clsRenderOptions(font) : clsRenderOptions();
    benchBlitFrame();
    benchPresent("present-zoom1", 1);
    benchPresent("present-zoom2", 2);
    benchRender(world, options);
    benchOverview(world);
    benchPackAndUnpack(levelBytes(world));
    benchBucketFill();
    benchTiledMaps(world);
}

class Bench : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser.add_option_function<std::string>(
            "--data", [this](const std::string& folder) { parsed_.dataFolder = folder; },
            "A data folder whose first level is measured (default: a sample level).");
        parser.add_option("--app", parsed_.applicationFolder,
                          "The folder holding config/, fonts/, pal/ and bitmaps/.");
    }

    int run() override {
        return reportFailure([this] { runAll(parsed_); });
    }

private:
    BenchArguments parsed_;
};

} // namespace

std::unique_ptr<ToolCommand> makeBench() {
    return std::make_unique<Bench>();
}

} // namespace marvek::tool
