// Tiled itself as the second opinion: its rasterizer draws the exported
// map, its editor saves it again in each of its formats.
#include "support/tool.h"
#include "tiled/tiledFixture.h"

#include <QImage>
#include <gmock/gmock.h>

namespace marvek::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Runs one of Tiled's programs headless, with its settings in a folder of
// its own.
int runTiled(const std::string& program, const std::string& arguments,
             const std::filesystem::path& home) {
    const std::string command = "env QT_QPA_PLATFORM=offscreen HOME=" + shellQuoted(home) +
                                " XDG_RUNTIME_DIR=" + shellQuoted(home) + " " + program + " " +
                                arguments + " >/dev/null 2>&1";
    return std::system(command.c_str());
}

class TiledProgram : public TiledMapTest {
protected:
    TiledProgram() {
        std::filesystem::permissions(home_.path(), std::filesystem::perms::owner_all);
    }

    // Tiled's own saving of the map as TARGET.
    std::filesystem::path resaved(const std::filesystem::path& map, const std::string& target,
                                  const std::string& options = {}) const {
        const auto path = folder_ / target;
        EXPECT_EQ(runTiled(MARVEK_TILED_EXECUTABLE,
                           options + " --export-map " + shellQuoted(map) + " " + shellQuoted(path),
                           home_.path()),
                  0)
            << target;
        return path;
    }

    TempDir home_;
};

TEST_F(TiledProgram, ResavedInEachLayerFormatTheMapImportsToTheSameBytes) {
    const std::pair<const char*, const char*> formats[] = {
        {"csv", "encoding=\"csv\""},      {"base64", "<data encoding=\"base64\">"},
        {"zlib", "compression=\"zlib\""}, {"gzip", "compression=\"gzip\""},
        {"zstd", "compression=\"zstd\""}, {"xml", "<tile gid=\"1\"/>"},
    };
    for (const auto& [format, written] : formats) {
        const auto map =
            exportAs(original_, std::string("ours-") + format + ".tmx", layerFormatNamed(format));
        const auto theirs = resaved(map, std::string("tiled-") + format + ".tmx");
        // Tiled keeps the format it read, so this is its own writing of it.
        EXPECT_THAT(fileText(theirs), HasSubstr(written)) << format;
        EXPECT_EQ(savedForm(importTiledMap(theirs, nullptr).file), savedForm(original_)) << format;
    }
}

TEST_F(TiledProgram, ResavedAsJsonAndWithEmbeddedTileSetsTheMapImportsToTheSameBytes) {
    const auto map = exportAs(original_, "ours.tmx", LayerFormat::zlib);
    const auto json = resaved(map, "tiled.tmj");
    EXPECT_THAT(fileText(json), HasSubstr("\"compression\":\"zlib\""));
    const auto embedded = resaved(map, "embedded.tmx", "--embed-tilesets");
    const auto embeddedJson =
        resaved(exportAs(original_, "ours.tmj"), "embedded.json", "--embed-tilesets");
    for (const auto& path : {json, embedded, embeddedJson}) {
        EXPECT_EQ(savedForm(importTiledMap(path, nullptr).file), savedForm(original_)) << path;
    }
    EXPECT_THAT(fileText(embedded), Not(HasSubstr("source=\"L1BM.tsx\"")));
    EXPECT_THAT(fileText(embeddedJson), HasSubstr("\"image\":\"L1BM.png\""));
}

// Tiles past the tile set's end included: the level's every tile number,
// drawn by tmxrasterizer as marvek-tool export draws the level without
// specials.
TEST_F(TiledProgram, TheRasterizerDrawsTheTilesLayerAsTheBitmapExportDoes) {
    std::filesystem::copy(sampleData, folder_ / "data");
    LevelFile file = original_;
    std::int32_t i = 0;
    for (Cell& cell : file.level.cells()) {
        cell.tile = static_cast<std::int16_t>((i++ * 37) % 1024);
    }
    writeLevelFile(file, folder_ / "data" / "L1MA1");
    const std::string common = " --data " + shellQuoted(folder_ / "data") +
                               " --config world1 --app " + shellQuoted(appFolder);
    const auto map = folder_ / "all.tmx";
    const auto ours = folder_ / "ours.png";
    const auto theirs = folder_ / "theirs.png";
    ASSERT_EQ(runTool("tmx export L1MA1 " + shellQuoted(map) + common).exitCode, 0);
    ASSERT_EQ(runTool("export L1MA1 " + shellQuoted(ours) + common + " --tags \"\"").exitCode, 0);
    ASSERT_EQ(runTiled(MARVEK_TMXRASTERIZER_EXECUTABLE,
                       "--show-layer Tiles " + shellQuoted(map) + " " + shellQuoted(theirs),
                       home_.path()),
              0);
    const QImage expected =
        QImage(QString::fromStdString(ours.string())).convertToFormat(QImage::Format_ARGB32);
    const QImage drawn =
        QImage(QString::fromStdString(theirs.string())).convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(drawn.size(), expected.size());
    int differing = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            differing += drawn.pixel(x, y) != expected.pixel(x, y) ? 1 : 0;
        }
    }
    EXPECT_EQ(differing, 0);
}

} // namespace
} // namespace marvek::test
