#include "data/clsLevel.h"
#include "data/clsTileSet.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsBitmap.h"
#include "graphics/clsCamera.h"
#include "graphics/clsFont.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/clsBitStream.h"
#include "io/clsDataBuffer.h"
#include "native/marvek.h"
#include "specials/clsSpecialSet.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <vector>

namespace marvek {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t frameWidth = 1920;
constexpr std::int32_t frameHeight = 1080;
constexpr std::size_t frameBytes = std::size_t{frameWidth} * frameHeight * 4;
constexpr std::int32_t tileCount = 1000;
constexpr int planes = 5;

clsPalette benchPalette() {
    clsPalette palette;
    for (std::uint32_t i = 0; i < 32; ++i) {
        palette.addEntry(i * 8 | (255 - i * 8) << 8 | (i * 5) << 16);
    }
    return palette;
}

clsTileSet randomTiles(std::mt19937& random, const clsPalette& palette) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(tileCount * planes * 32);
    for (std::uint8_t& byte : buffer->data()) {
        byte = static_cast<std::uint8_t>(random());
    }
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    clsTileSet tiles;
    tiles.loadFrom(stream, palette, planes);
    return tiles;
}

// Everything the specials need on disk: a configuration and a font image.
class SpecialFiles {
public:
    SpecialFiles() : folder_(fs::temp_directory_path() / "marvek-bench-render") {
        fs::create_directories(folder_);
        std::ofstream(folder_ / "bench.cfg") << R"(Specials {
            b1 { Id = 1; Kind = "box"; Color = "255,0,0"; }
            b2 { Id = 2; Kind = "box"; Color = "0,255,0"; }
            s1 { Id = 3; Kind = "sprite"; imgOffset = "0,0"; imgSize = "16,16"; }
            s2 { Id = 4; Kind = "sprite"; imgOffset = "16,0"; imgSize = "16,16"; Offset = "-8,-8"; }
            s3 { Id = 5; Kind = "sprite"; imgOffset = "32,0"; imgSize = "32,32"; }
            s4 { Id = 6; Kind = "sprite"; imgOffset = "64,0"; imgSize = "48,24"; Offset = "-16,-8"; }
            n1 { Id = 7; Kind = "number"; }
            n2 { Id = 8; Kind = "number"; }
        })";
        writeFont();
    }
    ~SpecialFiles() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    SpecialFiles(const SpecialFiles&) = delete;
    SpecialFiles& operator=(const SpecialFiles&) = delete;

    const fs::path& folder() const { return folder_; }

private:
    // 16 x 16 cells of 6 x 8 pixels, each glyph a box outline.
    void writeFont() const {
        clsBackBuffer glyphs;
        glyphs.Create(96, 128, 1);
        for (std::int32_t y = 0; y < 128; y += 8) {
            for (std::int32_t x = 0; x < 96; x += 6) {
                renderBox(glyphs.surface(), x, y, 5, 7, 0x00FFFFFF);
            }
        }
        clsBitmap bitmap;
        bitmap.createFromBackBuffer(glyphs);
        bitmap.writeToFile(folder_ / "font.bmp");
    }

    fs::path folder_;
};

struct RenderScene {
    RenderScene() {
        std::mt19937 random(7);
        tiles = randomTiles(random, palette);
        clsSurface sheet;
        sheet.planarCreateEmpty(320, 320);
        for (std::int32_t i = 0; i < 320 * 320; ++i) {
            sheet.ptrPlanar()[i] = static_cast<std::uint8_t>(random() % 32);
        }
        specials.loadFrom(files.folder() / "bench.cfg");
        specials.Init(sheet, palette, files.folder());
        font.loadFromFile(files.folder() / "font.bmp");
        fillLevel(random);
        buffer.Create(frameWidth, frameHeight, 1);
        camera.x = 1000;
        camera.y = 100;
    }

    void fillLevel(std::mt19937& random) {
        level.width = 300;
        level.height = 84;
        level.resizeCells();
        for (Cell& cell : level.cells()) {
            cell.tile = static_cast<std::int16_t>(random() % tileCount);
            // About one cell in eighteen holds a special (busier than the
            // game's levels), one in nine of them undefined.
            const auto roll = random() % 160;
            cell.special = static_cast<std::uint8_t>(roll < 8 ? roll + 1 : (roll == 9 ? 30 : 0));
        }
    }

    SpecialFiles files;
    clsPalette palette = benchPalette();
    clsTileSet tiles;
    clsSpecialSet specials;
    clsFont font;
    clsLevel level;
    clsBackBuffer buffer;
    clsCamera camera;
};

RenderScene& scene() {
    static RenderScene instance;
    return instance;
}

void renderWith(benchmark::State& state, std::int32_t flags) {
    RenderScene& s = scene();
    const clsRenderOptions options(s.font);
    for (auto _ : state) {
        s.level.renderTo(s.buffer, s.camera, s.tiles, s.specials, flags, options);
        benchmark::DoNotOptimize(surfaceGetDataPtr(s.buffer.surface()));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * frameBytes));
}

void BM_Render_tiles(benchmark::State& state) {
    renderWith(state, renderFlags::tiles);
}
BENCHMARK(BM_Render_tiles);

void BM_Render_specials(benchmark::State& state) {
    renderWith(state, renderFlags::specials | renderFlags::oversizeMarks | renderFlags::outlines);
}
BENCHMARK(BM_Render_specials);

void BM_Render_all(benchmark::State& state) {
    renderWith(state, renderFlags::all);
}
BENCHMARK(BM_Render_all);

} // namespace
} // namespace marvek
