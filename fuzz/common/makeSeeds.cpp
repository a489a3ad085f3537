// marvek-fuzz-seeds FOLDER: writes the seed inputs of the fuzz targets that
// read configurations, fonts, palettes, planar images and tile sets into
// FOLDER/NAME, made with the project's own writers. Run once and commit.
#include "common/input.h"
#include "configuration/clsConfiguration.h"
#include "graphics/clsBitmap.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/atomicWrite.h"
#include "io/clsBitStream.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;
using marvek::Section;
using marvek::SectionPtr;
using marvek::Value;

void save(const fs::path& folder, const std::string& name, const Bytes& bytes) {
    fs::create_directories(folder);
    marvek::writeFileAtomically(folder / name, bytes);
}

Bytes textOf(const marvek::clsConfiguration& configuration) {
    const std::string text = configuration.OutputConfiguration("\n", true);
    return {text.begin(), text.end()};
}

Bytes written(marvek::clsBitStream& stream) {
    const auto data = stream.bufferGet()->data();
    return {data.begin(), data.end()};
}

SectionPtr sectionOf(std::initializer_list<std::pair<const char*, Value>> entries) {
    auto section = std::make_shared<Section>();
    for (const auto& [key, value] : entries) {
        section->add(key, value);
    }
    return section;
}

marvek::clsPalette rampPalette(int entries) {
    marvek::clsPalette palette;
    for (int i = 0; i < entries; ++i) {
        palette.addEntry(static_cast<std::uint32_t>(i) * 0x080402u);
    }
    return palette;
}

// Diagonal stripes of every index the planes can hold.
marvek::clsSurface stripes(std::int32_t width, std::int32_t height, int planes) {
    marvek::clsSurface image;
    image.planarCreateEmpty(width, height);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            image.ptrPlanar()[y * width + x] = static_cast<std::uint8_t>((x + y) % (1 << planes));
        }
    }
    image.setPalette(rampPalette(1 << planes));
    return image;
}

Bytes planarBytes(const marvek::clsSurface& image, int planes) {
    auto stream = marvek::fuzz::growingStream();
    image.planarWriteTo(stream, planes);
    return written(stream);
}

void levelConfigurations(const fs::path& folder) {
    marvek::clsConfiguration world;
    world.WriteSetting("tileSet", std::string("L1BM"), false);
    world.WriteSetting("spriteSet", std::string("L1ET"), false);
    save(folder, "world.cfg", textOf(world));
    world.WriteSetting("noCommon", 1, false);
    world.WriteSetting("Specials", sectionOf({{"Coin", sectionOf({{"Id", 10}})}}), false);
    save(folder, "no-common.cfg", textOf(world));
}

void specialSets(const fs::path& folder) {
    marvek::clsConfiguration set;
    auto specials = sectionOf({
        {"Crate", sectionOf({{"Name", std::string("Crate")},
                             {"Id", 1},
                             {"Kind", std::string("box")},
                             {"Color", std::string("200,40,40")},
                             {"Tag", std::string("hazard")}})},
        {"Walker", sectionOf({{"Name", std::string("Walker")},
                              {"Id", 2},
                              {"Kind", std::string("sprite")},
                              {"imgOffset", std::string("16,0")},
                              {"imgSize", std::string("32,24")},
                              {"Offset", std::string("-8,-8")}})},
        {"Door", sectionOf({{"Name", std::string("Door")},
                            {"Id", 3},
                            {"Kind", std::string("image")},
                            {"imgFile", std::string("door.bmp")},
                            {"noExport", 1}})},
        {"Counter", sectionOf({{"Id", 63}, {"Kind", std::string("number")}})},
        {"Marker", sectionOf({{"Id", 0}})},
    });
    set.WriteSetting("Specials", specials, false);
    save(folder, "kinds.cfg", textOf(set));
}

void fonts(const fs::path& folder) {
    for (const auto& [name, size] : {std::pair{"cells-4.bmp", 64}, {"cells-2.bmp", 32}}) {
        marvek::clsBitmap bitmap;
        bitmap.createFromPlanarSurface(stripes(size, size, 1));
        const auto path = folder / name;
        fs::create_directories(folder);
        bitmap.writeToFile(path);
    }
}

void palettes(const fs::path& folder) {
    auto game = marvek::fuzz::growingStream();
    game.putByte(marvek::clsPalette::gamePlanes);
    rampPalette(marvek::clsPalette::gameEntries).writeTo(game);
    save(folder, "game", written(game));
    const auto raw = folder / "raw";
    fs::remove(raw);
    rampPalette(16).writeRawTo(raw);
}

// The target's header (width, height, planes, shift) and the image's planes.
void planarImages(const fs::path& folder) {
    for (const auto& [width, height, planes] :
         {std::tuple{16, 16, 5}, {33, 7, 8}, {7, 3, 1}, {320, 2, 5}}) {
        const auto image = stripes(width, height, planes);
        Bytes bytes{static_cast<std::uint8_t>(width >> 8),  static_cast<std::uint8_t>(width),
                    static_cast<std::uint8_t>(height >> 8), static_cast<std::uint8_t>(height),
                    static_cast<std::uint8_t>(planes),      3};
        const Bytes planesBytes = planarBytes(image, planes);
        bytes.insert(bytes.end(), planesBytes.begin(), planesBytes.end());
        save(folder,
             std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(planes),
             bytes);
    }
}

// The target's header (planes, scroll) and tiles one after the other.
void tileSets(const fs::path& folder) {
    for (const auto& [count, planes] : {std::pair{3, 5}, {2, 8}}) {
        Bytes bytes{static_cast<std::uint8_t>(planes), 0};
        for (int tile = 0; tile < count; ++tile) {
            auto image = stripes(16, 16, planes);
            image.planarShiftColors(tile * 3);
            const Bytes tileBytes = planarBytes(image, planes);
            bytes.insert(bytes.end(), tileBytes.begin(), tileBytes.end());
        }
        save(folder, std::to_string(count) + "-tiles-" + std::to_string(planes) + "-planes", bytes);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: marvek-fuzz-seeds FOLDER\n");
        return 2;
    }
    const fs::path folder = argv[1];
    try {
        levelConfigurations(folder / "level_configuration");
        specialSets(folder / "special_set");
        fonts(folder / "font");
        palettes(folder / "palette");
        planarImages(folder / "planar");
        tileSets(folder / "tile_set");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-fuzz-seeds: %s\n", error.what());
        return 1;
    }
    return 0;
}
