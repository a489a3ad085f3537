#include "data/levelConfiguration.h"
#include "io/FileError.h"
#include "io/findFile.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace marvek {
namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

class FolderLists : public ::testing::Test {
protected:
    void touch(const std::filesystem::path& path, const std::string& text = {}) const {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }

    std::filesystem::path config() const { return folder.path() / "config"; }

    test::TempDir folder;
};

TEST_F(FolderLists, ConfigurationsAreEveryFileButTheReservedOnes) {
    for (const char* name :
         {"common.cfg", "unknown.cfg", "world1.cfg", "World2.CFG", "notes.txt", "COMMON.bak"}) {
        touch(config() / name);
    }
    std::filesystem::create_directories(config() / "old");

    const NameList list = listConfigurations(folder.path(), "world1");
    EXPECT_THAT(list.names, UnorderedElementsAre("world1", "world2", "notes"));
    ASSERT_TRUE(list.selected.has_value());
    EXPECT_EQ(list.names[*list.selected], "world1");

    EXPECT_FALSE(listConfigurations(folder.path(), "World2").selected.has_value());
    EXPECT_TRUE(listConfigurations(folder.path() / "nowhere", "world1").names.empty());
}

TEST_F(FolderLists, LevelsAreNamedLxMA) {
    for (const char* name : {"L1MA1", "l2ma3", "L1MB1", "XLMA1", "LMA", "MPIC", "L9MAP.bak"}) {
        touch(folder / name);
    }
    const NameList list = listLevels(folder.path(), "L2MA3");
    EXPECT_THAT(list.names, UnorderedElementsAre("L1MA1", "L2MA3", "L9MAP.BAK"));
    ASSERT_TRUE(list.selected.has_value());
    EXPECT_EQ(list.names[*list.selected], "L2MA3");
    EXPECT_FALSE(listLevels(folder.path(), "l2ma3").selected.has_value());
}

TEST_F(FolderLists, NamesAreFoundIgnoringCaseButTheExactNameWins) {
    touch(folder / "l1ma1");
    touch(config() / "World2.CFG");
    EXPECT_EQ(findFile(folder.path(), "L1MA1"), folder / "l1ma1");
    EXPECT_EQ(configurationPath(folder.path(), "world2"), config() / "World2.CFG");
    EXPECT_EQ(findFile(folder.path(), "L7MA7"), folder / "L7MA7");

    touch(folder / "L1MA1");
    EXPECT_EQ(findFile(folder.path(), "L1MA1"), folder / "L1MA1");
}

TEST_F(FolderLists, ConfigurationKeysAreReadWithNoCommonOptional) {
    const auto path = config() / "w.cfg";
    touch(path, "tileSet = \"TILES1\"; spriteSet = \"SPRITES1\";");
    const LevelConfiguration plain = readLevelConfiguration(path);
    EXPECT_EQ(plain.tileSet, "TILES1");
    EXPECT_EQ(plain.spriteSet, "SPRITES1");
    EXPECT_EQ(plain.noCommon, 0);

    touch(path, "tileSet = \"T\"; spriteSet = \"S\"; noCommon = 1;");
    EXPECT_EQ(readLevelConfiguration(path).noCommon, 1);

    for (const char* text : {"spriteSet = \"S\";", "tileSet = \"T\";",
                             "tileSet = \"T\"; spriteSet = \"S\"; noCommon = 256;",
                             "tileSet = \"T\"; spriteSet { }"}) {
        touch(path, text);
        try {
            readLevelConfiguration(path);
            ADD_FAILURE() << text;
        } catch (const FileError& error) {
            EXPECT_EQ(error.path(), path) << text;
        }
    }
}

} // namespace
} // namespace marvek
