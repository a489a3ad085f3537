#include "support/tool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

const fs::path applicationFolder = fs::path(MARVEK_TOOL_EXECUTABLE).parent_path();
const fs::path sampleData = applicationFolder.parent_path() / "sample-data";

TEST(ToolMessages, AFolderOrAnEmptyFileIsNamedAsSuch) {
    const TempDir folder;
    writeBytes(folder / "empty", {});
    for (const auto& [arguments, message] :
         {std::pair{"info " + shellQuoted(folder.path()), folder.path().string() + ": is a folder"},
          {"info " + shellQuoted(folder / "empty"),
           (folder / "empty").string() + ": the file is empty"},
          {"bench --data " + shellQuoted(folder / "none"),
           (folder / "none").string() + ": the folder does not exist"},
          {"bench --data " + shellQuoted(folder / "empty"),
           (folder / "empty").string() + ": is a file, not a folder"}}) {
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.exitCode, 1) << arguments;
        EXPECT_THAT(run.errors, HasSubstr(message)) << arguments;
    }
}

TEST(ToolMessages, ALoopOfSymbolicLinksIsNamedAsSuch) {
    const TempDir folder;
    fs::create_symlink("loop", folder / "loop");
    fs::create_directories(folder / "data");
    fs::create_symlink("L1MA1", folder / "data" / "L1MA1");
    const std::string loop = shellQuoted(folder / "loop");
    const std::string level = shellQuoted(sampleData / "L1MA1");
    for (const std::string& arguments :
         {"unpack " + loop + " out", "unpack " + level + " " + loop, "pack " + loop + " out",
          "pack " + level + " " + loop, "info " + loop,
          "export L1MA1 out.bmp --config world1 --data " + shellQuoted(folder / "data"),
          "graphics export " + loop + " out.bmp --width 16 --height 16 --planes 5"}) {
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.exitCode, 1) << arguments;
        EXPECT_THAT(run.errors, HasSubstr(": too many levels of symbolic links")) << arguments;
    }
}

TEST(ToolMessages, FilesWithNothingToShowAreRefused) {
    const TempDir folder;
    writeBytes(folder / "empty", {});
    writeBytes(folder / "short", {'F', 'O', 'R', 'M'});
    const std::string picture = " --width 16 --height 16 --planes 5";
    for (const auto& [arguments, message] :
         {std::pair{"info " + shellQuoted(sampleData / "L1BM"), "L1BM: the file holds no map"},
          {"info " + shellQuoted(folder / "short"), "short: the file holds no map"},
          {"graphics export " + shellQuoted(folder / "empty") + " " +
               shellQuoted(folder / "empty.bmp") + picture,
           "empty: the file is empty"},
          {"graphics export " + shellQuoted(folder / "short") + " " +
               shellQuoted(folder / "short.bmp") + picture + " --offset 4",
           "short: the offset 4 lies past the end of the file (4 bytes)"}}) {
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.exitCode, 1) << arguments;
        EXPECT_THAT(run.errors, HasSubstr(message)) << arguments;
        EXPECT_EQ(run.output, "") << arguments;
    }
    EXPECT_FALSE(fs::exists(folder / "empty.bmp"));
    EXPECT_FALSE(fs::exists(folder / "short.bmp"));
}

TEST(ToolMessages, OutputThatCannotBeWrittenIsAFailure) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full";
    }
    for (const std::string& arguments :
         {std::string("--help"), "info " + shellQuoted(sampleData / "L1MA1")}) {
        const std::string command =
            shellQuoted(MARVEK_TOOL_EXECUTABLE) + " " + arguments + " >/dev/full 2>/dev/null";
        const int status = std::system(command.c_str());
        ASSERT_TRUE(WIFEXITED(status)) << arguments;
        EXPECT_EQ(WEXITSTATUS(status), 1) << arguments;
    }
}

TEST(ToolMessages, AnExportWithoutAFontSaysTheNumbersWillBeMissing) {
    const TempDir folder;
    // Everything the application folder holds but its fonts.
    fs::create_directories(folder / "app");
    for (const char* name : {"config", "bitmaps", "pal"}) {
        fs::copy(applicationFolder / name, folder / "app" / name, fs::copy_options::recursive);
    }
    const auto output = folder / "level.bmp";
    const ToolRun run =
        runTool("export L1MA1 " + shellQuoted(output) + " --data " + shellQuoted(sampleData) +
                " --config world1 --app " + shellQuoted(folder / "app"));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("game.bmp: no usable font, so the numbers of the specials "
                                      "will be missing from the picture"));
    EXPECT_TRUE(fs::exists(output));
}

} // namespace
} // namespace marvek::test
