#include "data/levelExport.h"
#include "data/openLevel.h"
#include "graphics/pictureFiles.h"
#include "graphics/pngFile.h"
#include "io/FileError.h"
#include "support/expect.h"
#include "support/tool.h"
#include "support/world.h"

#include <QImage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <tuple>

namespace marvek::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

class Export : public ::testing::Test {
protected:
    std::string exportTo(const std::string& name, const std::string& extra = {}) const {
        return "export L1MA1 " + shellQuoted(world.root() / name) + " --data " +
               shellQuoted(world.data()) + " --config world1 --app " + shellQuoted(world.app()) +
               extra;
    }

    // Qt's reading of a file the export wrote, as palette colours (0x00BBGGRR).
    std::uint32_t colourAt(const std::string& name, std::int32_t x, std::int32_t y) const {
        const QImage image(QString::fromStdString((world.root() / name).string()));
        EXPECT_EQ(image.width(), TestWorld::width * 16) << name;
        EXPECT_EQ(image.height(), TestWorld::height * 16) << name;
        const QRgb pixel = image.pixel(x, y);
        return static_cast<std::uint32_t>(qRed(pixel) | qGreen(pixel) << 8 | qBlue(pixel) << 16);
    }

    std::uint32_t colour(std::int32_t index) const { return gamePalette().Entry(index); }

    TestWorld world;
};

TEST_F(Export, EachTagIsOfferedOnceWithTheUsualFiveChosen) {
    EXPECT_THAT(defaultTagChoice(
                    openLevel({world.app(), world.data(), "L1MA1", "world1", true}).specialSet),
                ElementsAre(Pair("enemy", true), Pair("Enemy", false), Pair("hazard", true),
                            Pair("unknown", false)));
    EXPECT_TRUE(defaultTagChoice(clsSpecialSet()).empty());
    for (const auto& [name, withExtension] : {std::pair{"map", "map.bmp"},
                                              {"MAP.BMP", "MAP.BMP"},
                                              {"map.Bmp", "map.Bmp"},
                                              {"map.bmp.png", "map.bmp.png.bmp"},
                                              {"bmp", "bmp.bmp"}}) {
        EXPECT_EQ(withBitmapExtension(name), withExtension);
    }
}

TEST_F(Export, PngNamesAreKeptAndEveryOtherNameFollowsTheBitmapRule) {
    for (const auto& [name, written, png] : {std::tuple{"map.png", "map.png", true},
                                             {"MAP.PNG", "MAP.PNG", true},
                                             {"map.pNg", "map.pNg", true},
                                             {"map.png.txt", "map.png.txt.bmp", false},
                                             {"png", "png.bmp", false},
                                             {"map.BMP", "map.BMP", false}}) {
        EXPECT_EQ(exportFileName(name), written);
        EXPECT_EQ(hasPngExtension(name), png) << name;
    }
}

TEST_F(Export, ALevelTooLargeForOnePictureIsRefusedNamingTheLargestThatFits) {
    clsLevel level;
    for (const auto& [width, height, fits] : {std::tuple{300, 84, true},
                                              {2048, 128, true},
                                              {512, 512, true},
                                              {2049, 1, false},
                                              {1, 2049, false},
                                              {1024, 300, false}}) {
        level.width = width;
        level.height = height;
        const std::string problem = exportSizeProblem(level);
        EXPECT_EQ(problem.empty(), fits) << width << " x " << height;
        if (!fits) {
            EXPECT_THAT(problem, HasSubstr(std::to_string(width) + " x " + std::to_string(height) +
                                           " cells make " + std::to_string(width * 16) + " x " +
                                           std::to_string(height * 16) + " pixels"));
            EXPECT_THAT(problem, HasSubstr("at most 2048 cells across and down and 262144 cells"));
            EXPECT_EQ(whatOf<std::runtime_error>(
                          [&] { renderLevelExport(level, clsTileSet(), clsSpecialSet(), {}); }),
                      problem);
        }
    }
}

TEST_F(Export, PngPicturesHoldTheSurfacesColoursOpaque) {
    const std::vector<std::uint32_t> pixels{createBGRA(255, 0, 0, 0),    createBGRA(0, 255, 0, 80),
                                            createBGRA(0, 0, 255, 255),  createBGRA(1, 2, 3, 0),
                                            createBGRA(200, 100, 50, 9), createBGRA(0, 0, 0, 0)};
    const auto bytes = encodePng(pixels, 3, 2);
    QImage image;
    ASSERT_TRUE(image.loadFromData(bytes.data(), static_cast<int>(bytes.size()), "PNG"));
    ASSERT_EQ(image.size(), QSize(3, 2));
    EXPECT_FALSE(image.hasAlphaChannel());
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(image.pixel(i % 3, i / 3),
                  0xFF000000U | (pixels[static_cast<std::size_t>(i)] & 0x00FFFFFFU))
            << i;
    }
    EXPECT_THROW(encodePng(pixels, 2, 2), std::invalid_argument);
}

TEST_F(Export, WritesBitmapsWithTheDefaultOrTheGivenTagsAndPngByTheExtension) {
    ASSERT_EQ(runTool(exportTo("map.bmp")).exitCode, 0);
    EXPECT_EQ(readBytes(world.root() / "map.bmp").at(28), 32) << "bits per pixel";
    EXPECT_EQ(colourAt("map.bmp", 8, 8), colour(20)); // "enemy"
    EXPECT_EQ(colourAt("map.bmp", 24, 8), colour(3)); // "Enemy" is not chosen
    EXPECT_EQ(colourAt("map.bmp", 40, 8), colour(3)); // noExport
    EXPECT_EQ(colourAt("map.bmp", 72, 8), colour(3)); // no definition
    ASSERT_EQ(runTool(exportTo("tagged.BMP", " --tags Enemy,nothing")).exitCode, 0);
    EXPECT_EQ(colourAt("tagged.BMP", 8, 8), colour(3));
    EXPECT_EQ(colourAt("tagged.BMP", 24, 8), colour(21));
    ASSERT_EQ(runTool(exportTo("map.png", " --all-specials")).exitCode, 0);
    EXPECT_EQ(readBytes(world.root() / "map.png").at(1), 'P');
    EXPECT_EQ(colourAt("map.png", 8, 8), colour(20));
    // Every special, whatever its tag and noExport.
    EXPECT_EQ(colourAt("map.png", 24, 8), colour(21));
    EXPECT_EQ(colourAt("map.png", 40, 8), colour(22));
    EXPECT_EQ(colourAt("map.png", 8, 100), colour(3));
}

TEST_F(Export, BadArgumentsShowTheUsageAndBadFilesAreNamed) {
    for (const char* arguments :
         {"export", "export L1MA1 out.bmp", "export L1MA1 out.bmp --data d",
          "export L1MA1 out.bmp --config c", "export L1MA1 --data d --config c",
          "export L1MA1 out.bmp --data d --config c --tags", "export a b c --data d --config c",
          "export L1MA1 out.bmp --data d --config c --colour red", "bench --data",
          "bench --fast"}) {
        const ToolRun result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_THAT(result.errors, HasSubstr("usage:")) << arguments;
    }
    const OpenedLevel opened = openLevel({world.app(), world.data(), "L1MA1", "world1", false});
    const auto unwritable = world.root() / "missing" / "out.bmp";
    const auto error = failureOf<FileError>([&] {
        writeExportBitmap(renderLevelExport(opened.level, opened.tileSet, opened.specialSet, {}),
                          unwritable);
    });
    EXPECT_TRUE(error && error->path() == unwritable);
    std::filesystem::remove(world.app() / "config" / "world1.cfg");
    const ToolRun missing = runTool(exportTo("map.bmp"));
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.errors, HasSubstr((world.app() / "config" / "world1.cfg").string()));
    EXPECT_FALSE(std::filesystem::exists(world.root() / "map.bmp"));
}

TEST_F(Export, BenchPrintsEveryFigureAsOursReferenceAndRatio) {
    for (const std::string& arguments :
         {std::string("bench"),
          "bench --data " + shellQuoted(world.data()) + " --app " + shellQuoted(world.app())}) {
        const ToolRun result = runTool(arguments);
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        std::istringstream lines(result.output);
        std::vector<std::string> names;
        const std::regex figure(R"(([a-z0-9-]+): [0-9.]+ [0-9.]+ [0-9.]+(\s.*)?)");
        for (std::string line; std::getline(lines, line);) {
            std::smatch match;
            ASSERT_TRUE(std::regex_match(line, match, figure)) << line;
            names.push_back(match[1]);
        }
        EXPECT_THAT(names, ElementsAre("blit-frame", "present-zoom1", "present-zoom2",
                                       "render-tiles", "render-specials", "render-all",
                                       "render-tiles-faint-specials", "overview-draw",
                                       "overview-cell", "pack-level", "unpack", "bucket-fill",
                                       "tmx-export", "tmx-import", "tmj-export", "tmj-import"));
    }
}

} // namespace
} // namespace marvek::test
