#include "support/tool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

const fs::path applicationFolder = fs::path(MARVEK_TOOL_EXECUTABLE).parent_path();
const fs::path sampleData = applicationFolder.parent_path() / "sample-data";

std::string overviewOf(const std::string& level, const fs::path& output,
                       const std::string& more = {}) {
    return "overview " + level + " " + shellQuoted(output) + " --data " + shellQuoted(sampleData) +
           " --config world1" + more;
}

// Width and height from a PNG's header.
std::pair<std::uint32_t, std::uint32_t> pngSize(const fs::path& file) {
    const auto bytes = readBytes(file);
    const auto word = [&bytes](std::size_t at) {
        return std::uint32_t{bytes.at(at)} << 24 | std::uint32_t{bytes.at(at + 1)} << 16 |
               std::uint32_t{bytes.at(at + 2)} << 8 | std::uint32_t{bytes.at(at + 3)};
    };
    return {word(16), word(20)};
}

TEST(OverviewTool, DrawsTheLevelAtTheChosenCellSize) {
    const TempDir folder;
    const ToolRun standard = runTool(overviewOf("L1MA1", folder / "small.png"));
    ASSERT_EQ(standard.exitCode, 0) << standard.errors;
    EXPECT_EQ(pngSize(folder / "small.png"), std::pair(600U, 168U)) << "two pixels a cell";
    const ToolRun large = runTool(overviewOf("L1MA1", folder / "large.PNG", " --cell 3"));
    ASSERT_EQ(large.exitCode, 0) << large.errors;
    EXPECT_EQ(pngSize(folder / "large.PNG"), std::pair(900U, 252U));
}

TEST(OverviewTool, BadArgumentsShowTheUsageAndBadFilesAreNamed) {
    const TempDir folder;
    for (const std::string& arguments :
         {std::string("overview L1MA1"), overviewOf("L1MA1", folder / "a.png", " --cell 0"),
          overviewOf("L1MA1", folder / "a.png", " --cell 2x"),
          overviewOf("L1MA1", folder / "a.png", " --zoom 2")}) {
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.exitCode, 2) << arguments;
        EXPECT_THAT(run.errors, HasSubstr("usage: marvek-tool overview LEVEL OUT.png"));
    }
    const ToolRun missing = runTool(overviewOf("L9XX9", folder / "a.png"));
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.errors, HasSubstr("L9XX9"));
    const ToolRun bitmap = runTool(overviewOf("L1MA1", folder / "a.bmp"));
    EXPECT_EQ(bitmap.exitCode, 1);
    EXPECT_THAT(bitmap.errors, HasSubstr("a.bmp: the output must end in .png"));
    EXPECT_FALSE(fs::exists(folder / "a.bmp"));
}

} // namespace
} // namespace marvek::test
