#pragma once

#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/clsBitStream.h"
#include "io/packedFile.h"
#include "support/TempDir.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace marvek::test {

// A small world on disk: an application folder (config/, pal/) and a data
// folder with one packed level, its tiles and its sprite sheet.
//
// Tile t is filled with colour index t + 1. The sheet's top row holds four
// 16 x 16 sprites of index 20 + s at x = 16 s. The level's top row holds
// specials 1 (common "enemy"), 2 ("Enemy"), 3 ("hazard", noExport),
// 4 (unknown.cfg's "unknown") and 9 (undefined); every other cell is tile 2.
class TestWorld {
public:
    static constexpr std::int32_t width = 300; // loading insists on the game's size
    static constexpr std::int32_t height = 84;

    TestWorld() {
        std::filesystem::create_directories(app() / "config");
        std::filesystem::create_directories(app() / "pal");
        std::filesystem::create_directories(data());
        palette().writeRawTo(app() / "pal" / "world1.pal");
        writeLevel();
        writePlanar(data() / "tiles", tiles());
        const clsSurface sheet = spriteSheet();
        writePlanar(data() / "sprites", std::span(&sheet, 1));
        writeConfig("common.cfg", "Specials { gem { Name = \"Gem\"; Id = 1; " + sprite(0) +
                                      " Tag = \"enemy\"; } }");
        writeConfig("world1.cfg", "tileSet = \"TILES\"; spriteSet = \"sprites\";" + ownSpecials());
        writeConfig("unknown.cfg",
                    "Specials { odd { Id = 4; " + sprite(3) + " Tag = \"unknown\"; } }");
    }

    const std::filesystem::path& root() const { return folder_.path(); }
    std::filesystem::path app() const { return folder_ / "app"; }
    std::filesystem::path data() const { return folder_ / "data"; }
    std::filesystem::path levelPath() const { return data() / "L1MA1"; }

    // Packs the level file as the game keeps it (it starts out unpacked, which
    // is quicker to make).
    void packLevel() const {
        clsLevel level;
        clsPalette ignored;
        clsBitStream stream = getFileBits(levelPath());
        level.loadFromBits(stream, ignored);
        level.fileName = levelPath().string();
        level.saveToFile(level.fileName, palette());
    }

    void writeConfig(const std::string& name, const std::string& text) const {
        std::ofstream(app() / "config" / name, std::ios::binary) << text;
    }

    static std::string ownSpecials() {
        return " Specials { key { Id = 2; " + sprite(1) +
               " Tag = \"Enemy\"; }"
               " trap { Id = 3; " +
               sprite(2) + " Tag = \"hazard\"; noExport = 1; } }";
    }

    // Sprite s of the sheet as the keys of a definition.
    static std::string sprite(int s) {
        return "Kind = \"sprite\"; imgOffset = \"" + std::to_string(16 * s) +
               ", 0\"; imgSize = \"16, 16\";";
    }

    // 4-bit components, as a level's PALA keeps them, all 32 different.
    static clsPalette palette() {
        clsPalette result;
        for (std::uint32_t i = 0; i < clsPalette::gameEntries; ++i) {
            result.addEntry((i % 16) * 17 | (i / 16) * 0xFF00u | 0x880000u);
        }
        return result;
    }

private:
    void writeLevel() const {
        clsLevel level;
        level.width = width;
        level.height = height;
        level.resizeCells();
        for (Cell& cell : level.cells()) {
            cell.tile = 2;
        }
        const std::uint8_t specials[] = {1, 2, 3, 4, 9};
        for (std::int32_t x = 0; x < 5; ++x) {
            level.cellAt(x, 0).special = specials[x];
        }
        level.fileName = levelPath().string();
        clsBitStream stream;
        stream.Create();
        stream.autoExpand = true;
        level.writeTo(stream, palette());
        const auto bytes = stream.bufferGet()->data();
        writeBytes(level.fileName, {bytes.begin(), bytes.end()});
    }

    static std::vector<clsSurface> tiles() {
        std::vector<clsSurface> result(4);
        for (std::size_t t = 0; t < result.size(); ++t) {
            result[t].planarCreateEmpty(16, 16);
            std::fill_n(result[t].ptrPlanar(), 256, static_cast<std::uint8_t>(t + 1));
        }
        return result;
    }

    static clsSurface spriteSheet() {
        clsSurface sheet;
        sheet.planarCreateEmpty(320, 320);
        for (std::int32_t s = 0; s < 4; ++s) {
            for (std::int32_t y = 0; y < 16; ++y) {
                std::fill_n(sheet.ptrPlanar() + y * 320 + s * 16, 16,
                            static_cast<std::uint8_t>(20 + s));
            }
        }
        return sheet;
    }

    static void writePlanar(const std::filesystem::path& path, std::span<const clsSurface> images) {
        clsBitStream stream;
        stream.Create();
        stream.autoExpand = true;
        for (const clsSurface& image : images) {
            image.planarWriteTo(stream, clsPalette::gamePlanes);
        }
        const auto bytes = stream.bufferGet()->data();
        writeBytes(path, {bytes.begin(), bytes.end()});
    }

    TempDir folder_;
};

} // namespace marvek::test
