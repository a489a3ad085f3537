#include "tool/commandLine.h"
#include "support/tool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

TEST(ToolCommandLine, EveryCommandAnswersHelpWithItsUsageAndWritesNothing) {
    const TempDir folder;
    for (const tool::Command& command : tool::commands()) {
        for (const char* help : {" --help", " -h", " a b --help", " --mode 99 --count x -h"}) {
            const std::string arguments = command.name + std::string(help);
            const ToolRun run = runTool(arguments, folder.path());
            EXPECT_EQ(run.exitCode, 0) << arguments;
            EXPECT_THAT(run.output, StartsWith("usage: marvek-tool " + std::string(command.usage)))
                << arguments;
            EXPECT_THAT(run.output, HasSubstr(command.summary)) << arguments;
            EXPECT_THAT(run.errors, IsEmpty()) << arguments;
        }
    }
    EXPECT_TRUE(fs::is_empty(folder.path())) << "no command wrote anything";
}

TEST(ToolCommandLine, TheToolItselfTellsItsVersionAndCommands) {
    const ToolRun version = runTool("--version");
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_THAT(version.output, MatchesRegex("marvek-tool [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    for (const char* help : {"--help", "-h", "help"}) {
        const ToolRun run = runTool(help);
        EXPECT_EQ(run.exitCode, 0) << help;
        for (const tool::Command& command : tool::commands()) {
            EXPECT_THAT(run.output, HasSubstr(command.usage)) << help;
            EXPECT_THAT(run.output, HasSubstr(command.summary)) << help;
        }
    }
    for (const char* mistake : {"", "frobnicate", "--verbose"}) {
        const ToolRun run = runTool(mistake);
        EXPECT_EQ(run.exitCode, 2) << mistake;
        EXPECT_THAT(run.errors, HasSubstr("usage: marvek-tool COMMAND")) << mistake;
        EXPECT_THAT(run.output, IsEmpty()) << mistake;
    }
}

TEST(ToolCommandLine, AMistakeSaysWhatWasWrongAboveTheUsage) {
    const auto parsed = tool::parseToolCommandLine({"pack", "in", "out", "--mode", "12"}, "1");
    EXPECT_EQ(parsed.command, nullptr);
    EXPECT_EQ(parsed.exit.status, tool::exitBadArguments);
    EXPECT_TRUE(parsed.exit.toStandardError);
    EXPECT_THAT(parsed.exit.text, HasSubstr("marvek-tool pack: --mode"));
    EXPECT_THAT(parsed.exit.text, HasSubstr("\nusage: marvek-tool pack IN OUT [--mode 0-11]\n"));
}

TEST(ToolCommandLine, AFileNamedLikeAnOptionFollowsADoubleDash) {
    const TempDir folder;
    const ToolRun run = runTool("info -- --help", folder.path());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, HasSubstr("marvek-tool: --help: the file does not exist"));
    const auto parsed = tool::parseToolCommandLine({"sample-data", "--", "--help"}, "1");
    EXPECT_NE(parsed.command, nullptr) << "a folder to write, not a call for help";
}

// Each command is an entry of the manual page's list: a .TP line, then the
// entry's tag starting with the command's name, whole on that one line (an
// option's bracket left open there spills the rest into the description).
TEST(ToolCommandLine, TheManualPageListsEveryCommand) {
    std::ifstream page(fs::path(MARVEK_SOURCE_DIR) / "packaging" / "marvek-tool.1");
    std::vector<std::string> tags;
    std::string line;
    bool afterTP = false;
    while (std::getline(page, line)) {
        if (afterTP) {
            tags.push_back(line);
        }
        afterTP = line == ".TP";
    }
    for (const tool::Command& command : tool::commands()) {
        const std::regex tag("\\.B[IR]? \"?" + std::string(command.name) + "[ \"].*");
        const auto entry = std::find_if(tags.begin(), tags.end(), [&](const std::string& each) {
            return std::regex_match(each, tag);
        });
        if (entry == tags.end()) {
            ADD_FAILURE() << "no entry for " << command.name;
            continue;
        }
        EXPECT_EQ(std::count(entry->begin(), entry->end(), '['),
                  std::count(entry->begin(), entry->end(), ']'))
            << *entry;
    }
}

} // namespace
} // namespace marvek::test
