#include "graphics/pictureFiles.h"
#include "io/packedFile.h"
#include "support/bitmapFiles.h"
#include "support/tool.h"

#include <QImage>
#include <QString>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace marvek::test {
namespace {

class GraphicsTool : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        data = new TempDir;
        ASSERT_EQ(runTool("sample-data " + shellQuoted(data->path())).exitCode, 0);
    }
    static void TearDownTestSuite() {
        delete data;
        data = nullptr;
    }

    ToolRun run(const std::string& action, const std::filesystem::path& in,
                const std::filesystem::path& out, const std::string& options) const {
        return runTool("graphics " + action + " " + shellQuoted(in) + " " + shellQuoted(out) + " " +
                       options);
    }

    static TempDir* data;
    TempDir folder;
};

TempDir* GraphicsTool::data = nullptr;

TEST_F(GraphicsTool, EveryPlanarSampleFileComesBackTheSame) {
    std::vector<std::pair<std::string, std::string>> pictures{
        {"MPIC", "--width 320 --height 256 --planes 5 --palette After"}};
    for (const std::string world : {"1", "2", "3"}) {
        const auto tiles = std::filesystem::file_size(data->path() / ("L" + world + "BM")) / 160;
        pictures.emplace_back("L" + world + "BM",
                              "--width 16 --height 16 --planes 5 --across 20 --count " +
                                  std::to_string(tiles) + " --palette \"World " + world + "\"");
        pictures.emplace_back("L" + world + "ET", "--width 320 --height 320 --planes 5");
    }
    for (const auto& [name, options] : pictures) {
        const auto original = data->path() / name;
        ASSERT_EQ(run("export", original, folder / "picture.bmp", options).exitCode, 0) << name;
        ASSERT_EQ(run("import", folder / "picture.bmp", folder / name, options).exitCode, 0)
            << name;
        EXPECT_TRUE(isFileIMP(folder / name));
        EXPECT_EQ(readPictureFile(folder / name), readPictureFile(original)) << name;
    }
}

TEST_F(GraphicsTool, ImportTakesAnIndexedPngAndKeepsTheFirstOriginal) {
    const std::string options = "--width 320 --height 320 --planes 5 --palette \"World 2\"";
    const auto target = folder / "L2ET";
    std::filesystem::copy_file(data->path() / "L2ET", target);
    const auto before = readBytes(target);
    ASSERT_EQ(run("export", target, folder / "sprites.png", options).exitCode, 0);
    ASSERT_EQ(run("import", folder / "sprites.png", target, options).exitCode, 0);
    EXPECT_EQ(readPictureFile(target), readPictureFile(data->path() / "L2ET"));
    EXPECT_EQ(readBytes(folder / "L2ET.orig"), before);
    ASSERT_EQ(run("import", folder / "sprites.png", target, options + " --offset 8").exitCode, 0);
    EXPECT_EQ(readBytes(folder / "L2ET.orig"), before) << "the first original stays";
}

TEST_F(GraphicsTool, PngExportIsIndexedWithThePalette) {
    const auto tiles = data->path() / "L1BM";
    const std::string options = "--width 16 --height 16 --planes 5 --count 3 --across 3";
    ASSERT_EQ(
        run("export", tiles, folder / "tiles.PNG", options + " --palette \"World 1\"").exitCode, 0);
    ASSERT_EQ(
        run("export", tiles, folder / "tiles.bmp", options + " --palette \"World 1\"").exitCode, 0);
    QImage png;
    ASSERT_TRUE(png.load(QString::fromStdString((folder / "tiles.PNG").string()), "PNG"));
    QImage bmp;
    ASSERT_TRUE(bmp.load(QString::fromStdString((folder / "tiles.bmp").string()), "BMP"));
    EXPECT_EQ(png.format(), QImage::Format_Indexed8);
    ASSERT_EQ(png.size(), QSize(48, 16));
    EXPECT_EQ(png.convertToFormat(QImage::Format_RGB32), bmp.convertToFormat(QImage::Format_RGB32));

    // Shifted, index 0 is drawn with entry 16 of a palette file given by path.
    writeBytes(folder / "two.bmp",
               bitmapFile(1, 1, 8, std::vector<std::uint32_t>(17, 0x00FF0000), {0, 0, 0, 0}));
    writeBytes(folder / "zero", std::vector<std::uint8_t>(2, 0));
    ASSERT_EQ(run("export", folder / "zero", folder / "red.png",
                  "--width 1 --height 1 --planes 5 --shift-colours --palette " +
                      shellQuoted(folder / "two.bmp"))
                  .exitCode,
              0);
    ASSERT_TRUE(png.load(QString::fromStdString((folder / "red.png").string()), "PNG"));
    EXPECT_EQ(png.pixel(0, 0), qRgb(255, 0, 0));
}

TEST_F(GraphicsTool, BadArgumentsPrintTheUsageAndBadFilesAreNamed) {
    for (const char* arguments :
         {"graphics", "graphics export a b --width 16 --height 16",
          "graphics export a b --width 16 --height 16 --planes 9",
          "graphics import a b --width 0 --height 16 --planes 5",
          "graphics export a b --width 16 --height 16 --planes 5 --across 641",
          "graphics export a b --width 16 --height 16 --planes 5 --count 2x",
          "graphics show a b --width 16 --height 16 --planes 5",
          "graphics export a --width 16 --height 16 --planes 5"}) {
        const ToolRun result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_NE(result.errors.find("usage:"), std::string::npos) << arguments;
    }

    const std::string options = "--width 8 --height 8 --planes 5";
    writeBitmap24(folder / "deep.bmp", 8, 8, [](int, int) { return 0xFFFFFFu; });
    writeBytes(folder / "raw", std::vector<std::uint8_t>(40, 1));
    const std::vector<std::tuple<std::string, std::string, std::string, std::string>> failures{
        {"export", "missing", "out.bmp", "missing"},
        {"export", "raw", "out.gif", "out.gif: the output must end in .bmp or .png"},
        {"export", "raw", "out.bmp --palette Nowhere", "Nowhere: no palette of that name"},
        {"import", "deep.bmp", "out", "deep.bmp: 24-bit pictures have no palette"},
    };
    for (const auto& [action, in, out, message] : failures) {
        const ToolRun result = runTool("graphics " + action + " " + shellQuoted(folder / in) + " " +
                                       shellQuoted(folder.path()) + "/" + out + " " + options);
        EXPECT_EQ(result.exitCode, 1) << action << " " << in;
        EXPECT_NE(result.errors.find(message), std::string::npos) << result.errors;
    }
    for (const char* name : {"out", "out.bmp", "out.gif"}) {
        EXPECT_FALSE(std::filesystem::exists(folder / name)) << name;
    }
}

} // namespace
} // namespace marvek::test
