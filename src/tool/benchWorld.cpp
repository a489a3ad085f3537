#include "tool/benchWorld.h"

#include "data/levelConfiguration.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/clsBitStream.h"
#include "io/clsDataBuffer.h"

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <string_view>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t levelWidth = 300;
constexpr std::int32_t levelHeight = 84;
constexpr std::int32_t tileCount = 256;
constexpr std::int32_t specialKinds = 5;

constexpr std::string_view specialDefinitions = R"(Specials {
    crate { Name = "Crate"; Id = 1; Kind = "box"; Color = "200, 120, 40"; Tag = "pickup"; }
    imp { Name = "Imp"; Id = 2; Kind = "sprite"; imgOffset = "0, 0"; imgSize = "16, 16";
          Tag = "enemy"; }
    bat { Name = "Bat"; Id = 3; Kind = "sprite"; imgOffset = "32, 0"; imgSize = "32, 32";
          Offset = "-8, -16"; Tag = "enemy"; }
    door { Name = "Door"; Id = 4; Kind = "number"; Tag = "graphic"; }
    spikes { Name = "Spikes"; Id = 5; Kind = "sprite"; imgOffset = "64, 64"; imgSize = "64, 48";
             Offset = "-24, -32"; Tag = "hazard"; }
})";

// A configuration file that exists only while the set reads it.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string_view text) {
        std::random_device random;
        path_ = fs::temp_directory_path() / ("marvek-bench-" + std::to_string(random()) + ".cfg");
        writeFileAtomically(
            path_, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    }
    ~TemporaryFile() {
        std::error_code ignored;
        fs::remove(path_, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const fs::path& path() const noexcept { return path_; }

private:
    fs::path path_;
};

clsPalette benchPalette() {
    clsPalette palette;
    for (std::uint32_t i = 0; i < clsPalette::gameEntries; ++i) {
        palette.addEntry((i * 8) | (255 - i * 8) << 8 | ((i * 53) % 256) << 16);
    }
    return palette;
}

void fillLevel(clsLevel& level, std::minstd_rand& random) {
    level.width = levelWidth;
    level.height = levelHeight;
    level.resizeCells();
    for (Cell& cell : level.cells()) {
        cell.tile = static_cast<std::int16_t>(random() % tileCount);
        cell.special = random() % 6 == 0 ? static_cast<std::uint8_t>(1 + random() % specialKinds)
                                         : std::uint8_t{0};
    }
}

void fillTiles(clsTileSet& tileSet, const clsPalette& palette, std::minstd_rand& random) {
    constexpr std::int32_t tileBytes = 16 * 16 * OpenedLevel::graphicsPlanes / 8;
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(tileCount * tileBytes);
    for (std::uint8_t& byte : buffer->data()) {
        byte = static_cast<std::uint8_t>(random());
    }
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    tileSet.loadFrom(stream, palette, OpenedLevel::graphicsPlanes);
}

void fillSprites(clsSurface& sheet, const clsPalette& palette, std::minstd_rand& random) {
    constexpr std::int32_t size = OpenedLevel::spriteSheetSize;
    sheet.planarCreateEmpty(size, size);
    for (std::int32_t i = 0; i < size * size; ++i) {
        sheet.ptrPlanar()[i] = static_cast<std::uint8_t>(random() % clsPalette::gameEntries);
    }
    sheet.setPalette(palette);
}

} // namespace

OpenedLevel makeBenchWorld(const fs::path& applicationFolder) {
    std::minstd_rand random(1992);
    OpenedLevel world;
    world.palette = benchPalette();
    fillLevel(world.level, random);
    fillTiles(world.tileSet, world.palette, random);
    fillSprites(world.spriteSheet, world.palette, random);
    const TemporaryFile definitions(specialDefinitions);
    world.specialSet.loadFrom(definitions.path());
    world.specialSet.Init(world.spriteSheet, world.palette, applicationFolder);
    return world;
}

OpenedLevel loadBenchWorld(const fs::path& applicationFolder, const fs::path& dataFolder) {
    const NameList levels = listLevels(dataFolder, "");
    if (levels.names.empty()) {
        throw FileError(dataFolder, "the folder holds no level files");
    }
    // The listing order is the file system's; the smallest name is stable.
    return openLevel({applicationFolder, dataFolder, std::ranges::min(levels.names),
                      std::string(defaultConfigurationName), false});
}

} // namespace marvek::tool
