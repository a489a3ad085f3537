#pragma once

// A sample world's level exported as a Tiled map into a fresh folder, and
// the means to compare what comes back.

#include "data/openLevel.h"
#include "graphics/clsFont.h"
#include "io/atomicWrite.h"
#include "io/findFile.h"
#include "maps/tiledMapFiles.h"
#include "native/marvek.h"
#include "support/TempDir.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace marvek::test {

inline const std::filesystem::path sampleData = MARVEK_SAMPLE_DATA;
inline const std::filesystem::path appFolder = MARVEK_APP_DIR;

// The level's file as it would be saved: its unpacked bytes and its magic.
inline std::string savedForm(const LevelFile& file) {
    const auto bytes = levelBytes(file.level, file.palette);
    return file.magic + std::string(bytes.begin(), bytes.end());
}

inline std::string fileText(const std::filesystem::path& path) {
    const auto bytes = readWholeFile(path);
    return {bytes.begin(), bytes.end()};
}

inline void writeFileText(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

class TiledMapTest : public ::testing::Test {
protected:
    TiledMapTest()
        : opened_(openLevel({appFolder, sampleData, "L1MA1", "world1", false})),
          original_(readLevelFile(sampleData / "L1MA1")) {
        renderInit();
        font_.loadFromFile(findFile(appFolder, "fonts/game.bmp"));
    }

    // Exports the file beside the sample world's tile sets as NAME.
    std::filesystem::path exportAs(const LevelFile& file, const std::string& name,
                                   LayerFormat format = LayerFormat::csv) const {
        TiledExport request{folder_ / name, format, "L1BM", "world1"};
        exportTiledMap(file, opened_.tileSet, opened_.specialSet, clsRenderOptions(font_), request);
        return request.mapFile;
    }

    TempDir folder_;
    OpenedLevel opened_;
    LevelFile original_;
    clsFont font_;
};

} // namespace marvek::test
