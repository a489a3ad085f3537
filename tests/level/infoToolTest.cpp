#include "levelTestSupport.h"

#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <sys/wait.h>

namespace marvek::test {
namespace {

using ::testing::HasSubstr;

struct ToolRun {
    int status = -1;
    std::string output;
};

ToolRun runTool(const std::string& arguments) {
    const std::string command = std::string(MARVEK_TOOL_EXECUTABLE) + " " + arguments + " 2>&1";
    ToolRun run;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return run;
    }
    std::array<char, 4096> chunk{};
    std::size_t read = 0;
    while ((read = std::fread(chunk.data(), 1, chunk.size(), pipe)) > 0) {
        run.output.append(chunk.data(), read);
    }
    const int waited = pclose(pipe);
    run.status = WIFEXITED(waited) ? WEXITSTATUS(waited) : -1;
    return run;
}

TEST(InfoTool, DescribesASavedLevel) {
    TempDir folder;
    clsLevel level = sampleLevel();
    level.fileName = (folder / "L1MA1").string();
    level.saveToFile(level.fileName, gamePalette());

    const auto run = runTool("info " + level.fileName);
    ASSERT_EQ(run.status, 0) << run.output;
    EXPECT_THAT(run.output, HasSubstr("packed: yes"));
    EXPECT_THAT(run.output, HasSubstr("size: 300 x 84"));
    EXPECT_THAT(run.output, HasSubstr("WGMP      4 bytes at 0\n"));
    EXPECT_THAT(run.output, HasSubstr("PALA    192 bytes at 240\n"));
    EXPECT_THAT(run.output, HasSubstr("BODY  50400 bytes at 3180\n"));
    EXPECT_LT(run.output.find("PALD"), run.output.find("COLS"));
    // Cells with i % 97 == 0 hold 5, the other multiples of 211 hold 63.
    EXPECT_THAT(run.output, HasSubstr("special 0: 24822\n"));
    EXPECT_THAT(run.output, HasSubstr("special 5: 260\n"));
    EXPECT_THAT(run.output, HasSubstr("special 63: 118\n"));
    EXPECT_THAT(run.output, HasSubstr("tile 12 -> special 5\n"));
    EXPECT_THAT(run.output, HasSubstr("tile 1023 -> special 63\n"));
}

TEST(InfoTool, FailsClearlyOnBadInput) {
    TempDir folder;
    const auto missing = (folder / "nothing").string();
    auto run = runTool("info " + missing);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr(missing));

    // A chunk that claims more bytes than the file has.
    ChunkBuilder broken;
    broken.longChunk("XBLK", 300).chunk("BODY", 1000, {1, 2});
    writeBytes(folder / "broken", broken.bytes());
    run = runTool("info " + (folder / "broken").string());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("broken"));
    EXPECT_THAT(run.output, HasSubstr("BODY"));

    writeBytes(folder / "packed", {'I', 'M', 'P', '!', 0, 0, 1, 0, 9, 9, 9});
    run = runTool("info " + (folder / "packed").string());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("packed"));

    run = runTool("info");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.output, HasSubstr("usage"));
    EXPECT_EQ(runTool("info a b").status, 2);
}

} // namespace
} // namespace marvek::test
