#include "tool/sample/SampleData.h"

#include "data/clsLevel.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/clsBitStream.h"
#include "io/packedFile.h"
#include "tool/sample/FontArt.h"
#include "tool/sample/ImageFiles.h"
#include "tool/sample/LevelBuilder.h"
#include "tool/sample/SpriteArt.h"
#include "tool/sample/TileArt.h"
#include "tool/sample/TitlePicture.h"

#include <system_error>

namespace marvek::sample {
namespace {

constexpr int gamePlanes = clsPalette::gamePlanes;

void makeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw FileError(folder, "the folder cannot be created (" + error.message() + ")");
    }
}

void writeTileSet(const WorldTheme& theme, const std::filesystem::path& folder) {
    std::vector<std::uint8_t> bytes;
    for (const Canvas& tile : drawTileSet(theme)) {
        const auto planar = planarBytes(tile, gamePlanes);
        bytes.insert(bytes.end(), planar.begin(), planar.end());
    }
    writeFileAtomically(folder / theme.tileFile(), bytes);
}

void writeSpriteSheet(const WorldTheme& theme, const std::filesystem::path& folder) {
    writeFileAtomically(folder / theme.spriteFile(), planarBytes(drawSpriteSheet(), gamePlanes));
}

void writeLevel(const WorldTheme& theme, int index, const std::filesystem::path& folder) {
    const LevelMap map = buildLevel(theme, index);
    clsLevel level;
    level.width = LevelMap::width;
    level.height = LevelMap::height;
    level.resizeCells();
    for (std::int32_t y = 0; y < LevelMap::height; ++y) {
        for (std::int32_t x = 0; x < LevelMap::width; ++x) {
            Cell& cell = level.cellAt(x, y);
            cell.tile = map.tileAt(x, y);
            cell.special = map.specialAt(x, y);
        }
    }
    level.setDefaultSpecials(map.defaultSpecials());
    level.fileName = (folder / theme.levelFile(index)).string();
    level.saveToFile(level.fileName, theme.palette());
}

// The title picture's bitplanes followed by its palette, packed.
void writeTitlePicture(const std::filesystem::path& folder) {
    const WorldTheme& theme = worldThemes().front();
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    const auto planar = planarBytes(drawTitlePicture(theme), gamePlanes);
    stream.putData(planar);
    theme.palette().writeTo(stream);
    implodeToFile(*stream.bufferGet(), folder / "MPIC");
}

} // namespace

void writeSampleData(const std::filesystem::path& folder) {
    makeFolder(folder);
    writeTitlePicture(folder);
    for (const WorldTheme& theme : worldThemes()) {
        writeTileSet(theme, folder);
        writeSpriteSheet(theme, folder);
        for (int index = 1; index <= levelsPerWorld; ++index) {
            writeLevel(theme, index, folder);
        }
    }
}

void writeFirstWorld(const std::filesystem::path& folder) {
    makeFolder(folder);
    const WorldTheme& theme = worldThemes().front();
    writeTileSet(theme, folder);
    writeSpriteSheet(theme, folder);
    writeLevel(theme, 1, folder);
}

void writeResources(const std::filesystem::path& folder) {
    makeFolder(folder / "fonts");
    makeFolder(folder / "pal");
    makeFolder(folder / "bitmaps");
    clsPalette twoColours;
    twoColours.addEntry(0x000000);
    twoColours.addEntry(0xFFFFFF);
    writeBitmap(drawGameFont(), twoColours, folder / "fonts" / "game.bmp");
    writeBitmap(drawBoldFont(), twoColours, folder / "fonts" / "bold.bmp");
    for (const WorldTheme& theme : worldThemes()) {
        const auto path = folder / "pal" / theme.paletteFile();
        // The raw writer keeps the tail of a longer old file; start afresh.
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        theme.palette().writeRawTo(path);
    }
    const clsPalette colours = worldThemes().front().palette();
    writeBitmap(drawSignpost(), colours, folder / "bitmaps" / "signpost.bmp");
    writeBitmap(drawExitDoor(), colours, folder / "bitmaps" / "exitdoor.bmp");
}

} // namespace marvek::sample
