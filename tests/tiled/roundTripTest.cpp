#include "support/tool.h"
#include "tiled/tiledFixture.h"

#include <gmock/gmock.h>

namespace marvek::test {
namespace {

using ::testing::HasSubstr;

// Every tile number, every special ID and every kept field set.
LevelFile everyFieldLevel() {
    LevelFile file{sampleLevel(), gamePalette(), "ATN!"};
    std::int32_t i = 0;
    for (Cell& cell : file.level.cells()) {
        cell.special = static_cast<std::uint8_t>(i++ % 64);
    }
    std::vector<std::uint8_t> defaults(clsLevel::fileDefaultSpecials);
    for (std::size_t d = 0; d < defaults.size(); ++d) {
        defaults[d] = static_cast<std::uint8_t>((d * 7) % 64);
    }
    file.level.setDefaultSpecials(defaults);
    return file;
}

TEST_F(TiledMapTest, ALevelWithEveryFieldComesBackFromEachFormat) {
    const LevelFile file = everyFieldLevel();
    for (const char* format : {"csv", "base64", "zlib", "gzip", "zstd", "xml"}) {
        for (const char* extension : {".tmx", ".tmj"}) {
            const auto map =
                exportAs(file, std::string(format) + extension, layerFormatNamed(format));
            const TiledImport imported = importTiledMap(map, nullptr);
            EXPECT_EQ(savedForm(imported.file), savedForm(file)) << format << extension;
            EXPECT_EQ(imported.warning, "") << format << extension;
        }
    }
}

TEST_F(TiledMapTest, TheExportedMapNamesTheWorldsTileSetsAndKeepsTheFileAsProperties) {
    const std::string text = fileText(exportAs(original_, "L1MA1.tmx"));
    EXPECT_THAT(text, HasSubstr("<tileset firstgid=\"1\" source=\"L1BM.tsx\""));
    EXPECT_THAT(text, HasSubstr("<tileset firstgid=\"1025\" source=\"world1-specials.tsx\""));
    EXPECT_THAT(text, HasSubstr("<property name=\"magic\" value=\"IMP!\""));
    const std::string tiles = fileText(folder_ / "L1BM.tsx");
    EXPECT_THAT(tiles, HasSubstr("tilecount=\"1024\" columns=\"32\""));
    EXPECT_THAT(tiles, HasSubstr("<image source=\"L1BM.png\" width=\"512\" height=\"512\""));
    // Each defined special's tile carries its name and tag.
    EXPECT_THAT(fileText(folder_ / "world1-specials.tsx"),
                HasSubstr("<tile id=\"10\">\n  <properties>\n   <property name=\"name\" "
                          "value=\"COIN\" />\n   <property name=\"tag\" value=\"pickup\" />"));
}

// Through marvek-tool, each sample level's packed file comes back as it was.
TEST(TiledMapTool, EverySampleLevelComesBackByteForByte) {
    const TempDir folder;
    int levels = 0;
    for (const auto& entry : std::filesystem::directory_iterator(sampleData)) {
        const std::string name = entry.path().filename().string();
        if (name.size() != 5 || name.substr(2, 2) != "MA") {
            continue;
        }
        const std::string world = "world" + name.substr(1, 1);
        const auto map = folder / (name + ".tmx");
        ASSERT_EQ(runTool("tmx export " + name + " " + shellQuoted(map) + " --data " +
                          shellQuoted(sampleData) + " --config " + world + " --app " +
                          shellQuoted(appFolder))
                      .exitCode,
                  0)
            << name;
        const ToolRun imported =
            runTool("tmx import " + shellQuoted(map) + " " + shellQuoted(folder / name));
        ASSERT_EQ(imported.exitCode, 0) << imported.errors;
        EXPECT_EQ(readWholeFile(folder / name), readWholeFile(entry.path())) << name;
        ++levels;
    }
    EXPECT_GE(levels, 6);
}

} // namespace
} // namespace marvek::test
