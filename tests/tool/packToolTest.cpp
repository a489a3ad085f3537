#include "support/packing.h"
#include "support/sampleData.h"
#include "support/tool.h"

#include <gtest/gtest.h>

namespace marvek::test {
namespace {

class PackTool : public ::testing::Test {
protected:
    ToolRun run(const std::string& command, const std::string& from, const std::string& to,
                const std::string& extra = {}) const {
        return runTool(command + " " + shellQuoted(folder / from) + " " + shellQuoted(folder / to) +
                       extra);
    }

    TempDir folder;
    const Bytes data = bitplaneLike(100, 21);
};

TEST_F(PackTool, PacksAndUnpacksInEveryWay) {
    writeBytes(folder / "in", data);
    ASSERT_EQ(run("pack", "in", "best").exitCode, 0);
    ASSERT_EQ(run("pack", "in", "mode5", " --mode 5").exitCode, 0);
    for (const char* name : {"best", "mode5"}) {
        EXPECT_EQ(unpackWithAncient(readBytes(folder / name)), data) << name;
        ASSERT_EQ(run("unpack", name, "out").exitCode, 0);
        EXPECT_EQ(readBytes(folder / "out"), data) << name;
    }
}

TEST_F(PackTool, BadArgumentsPrintTheUsage) {
    for (const char* arguments :
         {"pack", "pack a", "pack a b --mode", "pack a b --mode 12", "pack a b --mode -1",
          "pack a b --mode 3x", "pack a b --level 3", "unpack a", "unpack a b c"}) {
        const ToolRun result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_NE(result.errors.find("usage:"), std::string::npos) << arguments;
    }
}

TEST_F(PackTool, BadInputNamesTheFile) {
    writeBytes(folder / "plain", data);
    writeBytes(folder / "empty", {});
    auto packed = pack(data);
    writeBytes(folder / "truncated", Bytes(packed.begin(), packed.end() - 10));
    packed[packed.size() / 2] ^= 0x21;
    writeBytes(folder / "corrupt", packed);

    const std::vector<std::pair<std::string, std::string>> failures{
        {"unpack", "missing"}, {"unpack", "plain"}, {"unpack", "truncated"}, {"unpack", "corrupt"},
        {"unpack", "empty"},   {"pack", "missing"}, {"pack", "empty"}};
    for (const auto& [command, name] : failures) {
        const ToolRun result = run(command, name, "out");
        EXPECT_EQ(result.exitCode, 1) << command << " " << name;
        EXPECT_NE(result.errors.find((folder / name).string()), std::string::npos)
            << command << " " << name << ": " << result.errors;
        EXPECT_FALSE(std::filesystem::exists(folder / "out")) << command << " " << name;
    }
}

} // namespace
} // namespace marvek::test
