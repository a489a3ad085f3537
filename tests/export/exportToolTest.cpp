#include "exportTestSupport.h"
#include "openlevel/testWorld.h"

#include <QImage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <sstream>
#include <sys/wait.h>

namespace marvek {
namespace {

using ::testing::HasSubstr;

struct ToolRun {
    int exitCode;
    std::string output;
    std::string errors;
};

class ExportTool : public ::testing::Test {
protected:
    ToolRun run(const std::string& arguments) const {
        const auto output = world.root() / "stdout.txt";
        const auto errors = world.root() / "stderr.txt";
        const std::string command = std::string("\"") + MARVEK_TOOL_EXECUTABLE + "\" " + arguments +
                                    " >\"" + output.string() + "\" 2>\"" + errors.string() + "\"";
        const int status = std::system(command.c_str());
        const auto out = test::readBytes(output);
        const auto err = test::readBytes(errors);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                {out.begin(), out.end()},
                {err.begin(), err.end()}};
    }

    std::string exportTo(const std::string& name, const std::string& extra = {}) const {
        return "export L1MA1 \"" + (world.root() / name).string() + "\" --data \"" +
               world.data().string() + "\" --config world1 --app \"" + world.app().string() + "\"" +
               extra;
    }

    std::uint32_t colour(std::int32_t index) const {
        return test::TestWorld::palette().Entry(index);
    }

    test::TestWorld world;
};

TEST_F(ExportTool, WritesBitmapsWithTheDefaultOrTheGivenTags) {
    ASSERT_EQ(run(exportTo("map.bmp")).exitCode, 0);
    const test::BitmapPixels byDefault(world.root() / "map.bmp");
    ASSERT_TRUE(byDefault.isBitmap32());
    EXPECT_EQ(byDefault.colourAt(8, 8), colour(20));
    EXPECT_EQ(byDefault.colourAt(24, 8), colour(3));

    ASSERT_EQ(run(exportTo("tagged.BMP", " --tags Enemy,nothing")).exitCode, 0);
    const test::BitmapPixels tagged(world.root() / "tagged.BMP");
    EXPECT_EQ(tagged.colourAt(8, 8), colour(3));
    EXPECT_EQ(tagged.colourAt(24, 8), colour(21));
}

TEST_F(ExportTool, WritesPngByTheOutputsExtension) {
    ASSERT_EQ(run(exportTo("map.png", " --all-specials")).exitCode, 0);
    const QImage image(QString::fromStdString((world.root() / "map.png").string()));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.width(), test::TestWorld::width * 16);
    const auto rgb = [](std::uint32_t windowsColour) {
        return qRgb(windowsColour & 0xFF, windowsColour >> 8 & 0xFF, windowsColour >> 16 & 0xFF);
    };
    EXPECT_EQ(image.pixel(8, 8), rgb(colour(20)));
    EXPECT_EQ(image.pixel(40, 8), rgb(colour(22))); // noExport, drawn with --all-specials
    EXPECT_EQ(image.pixel(8, 100), rgb(colour(3)));
}

TEST_F(ExportTool, BadArgumentsShowTheUsageAndBadFilesAreNamed) {
    for (const char* arguments :
         {"export", "export L1MA1 out.bmp", "export L1MA1 out.bmp --data d",
          "export L1MA1 out.bmp --config c", "export L1MA1 --data d --config c",
          "export L1MA1 out.bmp --data d --config c --tags", "export a b c --data d --config c",
          "export L1MA1 out.bmp --data d --config c --colour red", "bench --data",
          "bench --fast"}) {
        const ToolRun result = run(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_THAT(result.errors, HasSubstr("usage:")) << arguments;
    }
    std::filesystem::remove(world.app() / "config" / "world1.cfg");
    const ToolRun missing = run(exportTo("map.bmp"));
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.errors, HasSubstr((world.app() / "config" / "world1.cfg").string()));
    EXPECT_FALSE(std::filesystem::exists(world.root() / "map.bmp"));
}

TEST_F(ExportTool, BenchPrintsEveryFigureAsOursReferenceAndRatio) {
    for (const std::string& arguments :
         {std::string("bench"), "bench --data \"" + world.data().string() + "\" --app \"" +
                                    world.app().string() + "\""}) {
        const ToolRun result = run(arguments);
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        std::istringstream lines(result.output);
        std::vector<std::string> names;
        const std::regex figure(R"(([a-z0-9-]+): [0-9.]+ [0-9.]+ [0-9.]+(\s.*)?)");
        for (std::string line; std::getline(lines, line);) {
            std::smatch match;
            ASSERT_TRUE(std::regex_match(line, match, figure)) << line;
            names.push_back(match[1]);
        }
        EXPECT_THAT(names, ::testing::ElementsAre("blit-frame", "present-zoom1", "present-zoom2",
                                                  "render-tiles", "render-specials", "render-all",
                                                  "pack-level", "unpack"));
    }
}

} // namespace
} // namespace marvek
