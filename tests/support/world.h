#pragma once

// Levels, tiles, special sets and a whole world on disk, made for the tests.

#include "configuration/clsConfiguration.h"
#include "data/clsLevel.h"
#include "data/clsTileSet.h"
#include "graphics/clsFont.h"
#include "io/packedFile.h"
#include "specials/clsSpecial.h"
#include "specials/clsSpecialSet.h"
#include "support/TempDir.h"
#include "support/bitmapFiles.h"
#include "support/images.h"
#include "support/streams.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marvek::test {

// A level whose tile in each cell is its column modulo `tiles`.
inline clsLevel columnLevel(std::int32_t width, std::int32_t height, std::int32_t tiles) {
    clsLevel level;
    level.width = width;
    level.height = height;
    level.resizeCells();
    for (std::size_t i = 0; i < level.cells().size(); ++i) {
        level.cells()[i].tile = static_cast<std::int16_t>(i % static_cast<std::size_t>(width) %
                                                          static_cast<std::size_t>(tiles));
    }
    return level;
}

// A level of the given size whose every field differs from a fresh one.
inline clsLevel sampleLevel(std::int32_t width = 300, std::int32_t height = 84) {
    clsLevel level = columnLevel(width, height, 1);
    std::int32_t i = 0;
    for (auto& cell : level.cells()) {
        cell.tile = static_cast<std::int16_t>((i * 37) % 1024);
        cell.special = static_cast<std::uint8_t>(i % 97 == 0 ? 5 : (i % 211 == 0 ? 63 : 0));
        ++i;
    }
    std::vector<std::uint8_t> defaults(clsLevel::fileDefaultSpecials);
    defaults[12] = 5;
    defaults[1023] = 63;
    level.setDefaultSpecials(defaults);
    std::array<std::uint8_t, clsLevel::ccclSize> cccl{};
    for (std::size_t b = 0; b < cccl.size(); ++b) {
        cccl[b] = static_cast<std::uint8_t>(b * 3 + 1);
    }
    level.setCcclData(cccl);
    level.setRemX(-7);
    level.setRemY(123456);
    return level;
}

// The level as its file holds it unpacked.
inline std::vector<std::uint8_t> levelBytes(const clsLevel& level, const clsPalette& palette) {
    clsBitStream stream = growingStream();
    level.writeTo(stream, palette);
    return dataOf(stream);
}

// Builds chunk files by hand, for layouts the writer never produces.
class ChunkBuilder {
public:
    ChunkBuilder& chunk(std::string_view id, const std::vector<std::uint8_t>& data) {
        return chunk(id, static_cast<std::uint32_t>(data.size()), data);
    }
    ChunkBuilder& chunk(std::string_view id, std::uint32_t statedLength,
                        const std::vector<std::uint8_t>& data) {
        bytes_.insert(bytes_.end(), id.begin(), id.end());
        const auto length = bigEndian(statedLength);
        bytes_.insert(bytes_.end(), length.begin(), length.end());
        bytes_.insert(bytes_.end(), data.begin(), data.end());
        return *this;
    }
    ChunkBuilder& longChunk(std::string_view id, std::uint32_t value) {
        return chunk(id, bigEndian(value));
    }
    static std::vector<std::uint8_t> bigEndian(std::uint32_t value) {
        return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
                static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
    }
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

// Tiles in the game's five planes, tile i one solid colour of index i % 31 + 1.
inline std::vector<std::uint8_t> solidTileBytes(std::int32_t count) {
    std::vector<std::uint8_t> bytes;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t index = i % 31 + 1;
        for (int plane = 0; plane < clsPalette::gamePlanes; ++plane) {
            bytes.insert(bytes.end(), 32, ((index >> plane) & 1) != 0 ? 0xFF : 0x00);
        }
    }
    return bytes;
}

inline clsTileSet solidTiles(std::int32_t count, const clsPalette& palette = gamePalette()) {
    clsBitStream stream = streamOver(solidTileBytes(count));
    clsTileSet tiles;
    tiles.loadFrom(stream, palette, clsPalette::gamePlanes);
    return tiles;
}

// A special read from the body of one section, as a configuration gives it.
inline clsSpecial specialFrom(const std::string& body) {
    clsConfiguration configuration;
    configuration.InputConfiguration("s {" + body + "}");
    clsSpecial special;
    special.loadFromDict(*std::get<SectionPtr>(configuration.ReadSetting("s", 0, true)), "test.cfg",
                         "s");
    return special;
}

// A set from one configuration's "Specials" body, set up over the sheet.
inline clsSpecialSet specialSet(const TempDir& folder, const std::string& specials,
                                const clsSurface& sheet) {
    writeText(folder / "level.cfg", "Specials {" + specials + "}");
    clsSpecialSet set;
    set.loadFrom(folder / "level.cfg");
    set.Init(sheet, gamePalette(), folder.path());
    return set;
}

// A font whose every glyph is a solid block of ink.
inline clsFont blockFont(const TempDir& folder, std::int32_t cellWidth, std::int32_t cellHeight) {
    writeBitmap24(folder / "block.bmp", 16 * cellWidth, 16 * cellHeight,
                  [](std::int32_t, std::int32_t) { return 0xFFFFFFu; });
    clsFont font;
    font.loadFromFile(folder / "block.bmp");
    return font;
}

// A small world on disk: an application folder (config/, pal/) and a data
// folder with one level, its tiles and its sprite sheet, in gamePalette().
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
        std::filesystem::create_directories(app() / "pal");
        std::filesystem::create_directories(data());
        gamePalette().writeRawTo(app() / "pal" / "world1.pal");
        for (Cell& cell : level_.cells()) {
            cell.tile = 2;
        }
        const std::uint8_t specials[] = {1, 2, 3, 4, 9};
        for (std::int32_t x = 0; x < 5; ++x) {
            level_.cellAt(x, 0).special = specials[x];
        }
        level_.fileName = levelPath().string();
        // Unpacked, which is quicker to make; packLevel packs it.
        writeBytes(levelPath(), levelBytes(level_, gamePalette()));
        writeBytes(data() / "tiles", solidTileBytes(4));
        clsBitStream sheet = growingStream();
        spriteSheet({{0, 0, 16, 20}, {16, 0, 16, 21}, {32, 0, 16, 22}, {48, 0, 16, 23}})
            .planarWriteTo(sheet, clsPalette::gamePlanes);
        writeBytes(data() / "sprites", dataOf(sheet));
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

    // Packs the level file as the game keeps it.
    void packLevel() { level_.saveToFile(level_.fileName, gamePalette()); }

    void writeConfig(const std::string& name, const std::string& text) const {
        writeText(app() / "config" / name, text);
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

private:
    TempDir folder_;
    clsLevel level_ = columnLevel(width, height, 1);
};

} // namespace marvek::test
