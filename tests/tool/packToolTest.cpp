#include "imploder/sampleData.h"
#include "imploder/unpackers.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/wait.h>

namespace marvek {
namespace {

using test::readBytes;
using test::TempDir;
using test::writeBytes;

struct ToolRun {
    int exitCode;
    std::string errors;
};

class PackTool : public ::testing::Test {
protected:
    ToolRun run(const std::string& arguments) const {
        const auto errors = folder / "stderr.txt";
        const std::string command = std::string("\"") + MARVEK_TOOL_EXECUTABLE + "\" " + arguments +
                                    " 2>\"" + errors.string() + "\"";
        const int status = std::system(command.c_str());
        const auto text = readBytes(errors);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, {text.begin(), text.end()}};
    }

    std::string at(const std::string& name) const { return "\"" + (folder / name).string() + "\""; }

    TempDir folder;
    const std::vector<std::uint8_t> data = testing::bitplaneLikeBytes(20000, 21);
};

TEST_F(PackTool, PacksAndUnpacksInEveryWay) {
    writeBytes(folder / "in", data);
    ASSERT_EQ(run("pack " + at("in") + " " + at("best")).exitCode, 0);
    ASSERT_EQ(run("pack " + at("in") + " " + at("mode5") + " --mode 5").exitCode, 0);
    for (const char* name : {"best", "mode5"}) {
        EXPECT_EQ(testing::unpackWithAncient(readBytes(folder / name)), data) << name;
        ASSERT_EQ(run(std::string("unpack ") + at(name) + " " + at("out")).exitCode, 0);
        EXPECT_EQ(readBytes(folder / "out"), data) << name;
    }
}

TEST_F(PackTool, BadArgumentsPrintTheUsage) {
    for (const char* arguments :
         {"pack", "pack a", "pack a b --mode", "pack a b --mode 12", "pack a b --mode -1",
          "pack a b --mode 3x", "pack a b --level 3", "unpack a", "unpack a b c"}) {
        const ToolRun result = run(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_NE(result.errors.find("usage:"), std::string::npos) << arguments;
    }
}

TEST_F(PackTool, BadInputNamesTheFile) {
    writeBytes(folder / "plain", data);
    writeBytes(folder / "empty", {});
    ASSERT_EQ(run("pack " + at("plain") + " " + at("packed")).exitCode, 0);
    auto truncated = readBytes(folder / "packed");
    truncated.resize(truncated.size() - 10);
    writeBytes(folder / "truncated", truncated);
    auto corrupt = readBytes(folder / "packed");
    corrupt[corrupt.size() / 2] ^= 0x21;
    writeBytes(folder / "corrupt", corrupt);

    const std::vector<std::pair<std::string, std::string>> failures{
        {"unpack", "missing"}, {"unpack", "plain"}, {"unpack", "truncated"}, {"unpack", "corrupt"},
        {"unpack", "empty"},   {"pack", "missing"}, {"pack", "empty"}};
    for (const auto& [command, name] : failures) {
        const ToolRun result = run(command + " " + at(name) + " " + at("out"));
        EXPECT_EQ(result.exitCode, 1) << command << " " << name;
        EXPECT_NE(result.errors.find((folder / name).string()), std::string::npos)
            << command << " " << name << ": " << result.errors;
        EXPECT_FALSE(std::filesystem::exists(folder / "out")) << command << " " << name;
    }
}

} // namespace
} // namespace marvek
