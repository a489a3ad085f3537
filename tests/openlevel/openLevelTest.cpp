#include "data/openLevel.h"
#include "data/levelConfiguration.h"
#include "io/FileError.h"
#include "io/findFile.h"
#include "support/expect.h"
#include "support/world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <tuple>

namespace marvek::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class OpenLevel : public ::testing::Test {
protected:
    OpenLevelRequest request(std::string configuration = "world1", bool unknown = false) const {
        return {world.app(), world.data(), "L1MA1", std::move(configuration), unknown};
    }

    std::vector<std::string> tagsOf(const clsSpecialSet& set) const {
        std::vector<std::string> tags;
        for (std::int32_t i = 0; i < set.count(); ++i) {
            tags.push_back(set.getSpecial(i).Tag);
        }
        return tags;
    }

    TempDir scratch;
    TestWorld world;
};

TEST_F(OpenLevel, LoadsEveryPartInOrderAndReportsEachStage) {
    world.packLevel();
    ASSERT_TRUE(isFileIMP(world.levelPath()));
    std::vector<std::string> stages;
    const OpenedLevel opened =
        openLevel(request(), [&](std::string_view status) { stages.emplace_back(status); });

    EXPECT_THAT(stages, ElementsAre("Loading level...", "Loading tiles...", "Loading sprites...",
                                    "Loading specials..."));
    EXPECT_EQ(std::pair(opened.level.width, int{opened.level.cellAt(1, 0).special}),
              std::pair(TestWorld::width, 2));
    EXPECT_EQ(opened.level.fileName, world.levelPath().string());
    EXPECT_EQ(std::pair(opened.palette.Count(), opened.palette.Entry(21)),
              std::pair(32, gamePalette().Entry(21)));
    EXPECT_EQ(opened.tileSet.count(), 4);
    EXPECT_EQ(opened.tileFile, world.data() / "tiles"); // named "TILES" in the configuration
    EXPECT_EQ(opened.spriteFile, world.data() / "sprites");
    EXPECT_EQ(int{opened.spriteSheet.planarPixels()[16]}, 21);
    EXPECT_THAT(tagsOf(opened.specialSet), ElementsAre("enemy", "Enemy", "hazard"));
    EXPECT_TRUE(opened.specialSet.getSpecialLUT(2) && opened.specialSet.getSpecialLUT(2)->hasImage);
}

TEST_F(OpenLevel, NoCommonLeavesTheSharedSpecialsOutAndUnknownOnlyWhenAsked) {
    world.writeConfig("solo.cfg", "tileSet = \"tiles\"; spriteSet = \"sprites\"; noCommon = 1;" +
                                      TestWorld::ownSpecials());
    EXPECT_THAT(tagsOf(openLevel(request("solo")).specialSet), ElementsAre("Enemy", "hazard"));
    EXPECT_THAT(tagsOf(openLevel(request("solo", true)).specialSet),
                ElementsAre("Enemy", "hazard", "unknown"));
    EXPECT_THAT(tagsOf(openLevel(request("world1", true)).specialSet),
                ElementsAre("enemy", "Enemy", "hazard", "unknown"));
}

TEST_F(OpenLevel, FindsNamesWrittenInAnotherCase) {
    std::filesystem::rename(world.app() / "config" / "world1.cfg",
                            world.app() / "config" / "World1.CFG");
    std::filesystem::rename(world.levelPath(), world.data() / "l1ma1");
    EXPECT_EQ(openLevel(request()).level.fileName, (world.data() / "l1ma1").string());
    // A path outside the data folder is taken as it is; only its name may
    // differ in case.
    std::filesystem::copy_file(world.data() / "l1ma1", scratch / "L2ma4");
    OpenLevelRequest byPath = request();
    byPath.levelFile = scratch / "L2MA4";
    EXPECT_EQ(openLevel(byPath).level.fileName, (scratch / "L2ma4").string());
}

TEST_F(OpenLevel, AMissingOrBrokenFileIsAnErrorNamingIt) {
    struct Case {
        std::function<void(const TestWorld&)> breakIt;
        std::string file; // below the world's root
        std::string reason;
    };
    const auto remove = [](std::string file) {
        return [file](const TestWorld& w) { std::filesystem::remove(w.root() / file); };
    };
    const auto writeLevel = [](std::vector<std::uint8_t> bytes) {
        return [bytes](const TestWorld& w) { writeBytes(w.levelPath(), bytes); };
    };
    const auto writeConfig = [](std::string name, std::string text) {
        return [name, text](const TestWorld& w) { w.writeConfig(name, text); };
    };
    const Case cases[] = {
        {remove("data/L1MA1"), "data/L1MA1", "does not exist"},
        {writeLevel({'I', 'M', 'P', '!', 0, 0, 0, 9}), "data/L1MA1", "unpack"},
        {writeLevel({'F', 'O', 'R', 'M', 0, 0, 0, 0}), "data/L1MA1", "no map"},
        {writeLevel({'W', 'G', 'M', 'P', 0, 0, 0, 9}), "data/L1MA1", "not a level"},
        {remove("data/tiles"), "data/TILES", "tile set"},
        {remove("data/sprites"), "data/sprites", "sprite set"},
        {remove("app/config/world1.cfg"), "app/config/world1.cfg", ""},
        {writeConfig("world1.cfg", "tileSet = \"tiles\";"), "app/config/world1.cfg", "spriteSet"},
        {writeConfig("world1.cfg", "tileSet = \"tiles\";\nspriteSet = oops;"),
         "app/config/world1.cfg", "Invalid assignment on line 1."},
        {remove("app/config/common.cfg"), "app/config/common.cfg", ""},
        {writeConfig("common.cfg", "Specials { a { Id = 64; } }"), "app/config/common.cfg", "64"},
        {writeConfig("unknown.cfg", "Specials { a { Id = 5; Kind = \"sprite\"; imgOffset = "
                                    "\"310, 0\"; imgSize = \"16, 16\"; } }"),
         "app/config/unknown.cfg", "outside"},
    };
    for (const Case& broken : cases) {
        const TestWorld fresh;
        broken.breakIt(fresh);
        const std::filesystem::path file = fresh.root() / broken.file;
        const auto error = failureOf<FileError>([&] {
            openLevel({fresh.app(), fresh.data(), "L1MA1", "world1", true});
        });
        ASSERT_TRUE(error) << broken.file;
        EXPECT_EQ(error->path(), file) << error->what();
        EXPECT_THAT(error->what(), HasSubstr(broken.reason)) << broken.file;
    }
}

using ::testing::UnorderedElementsAre;

class FolderLists : public ::testing::Test {
protected:
    TempDir folder;
    const std::filesystem::path config = folder / "config";
};

TEST_F(FolderLists, ConfigurationsAreEveryFileButTheReservedOnesSortedAndFoundIgnoringCase) {
    for (const char* name : {"common.cfg", "unknown.cfg", "world1.cfg", "World2.CFG", "notes.txt",
                             "COMMON.bak", "Boss.cfg"}) {
        writeText(config / name, "");
    }
    std::filesystem::create_directories(config / "old");
    const NameList list = listConfigurations(folder.path(), "world1");
    EXPECT_THAT(list.names, ElementsAre("boss", "notes", "world1", "world2"));
    EXPECT_EQ(list.names.at(list.selected.value()), "world1");
    // A settings file edited by hand still selects its configuration.
    const NameList upper = listConfigurations(folder.path(), "WORLD2");
    EXPECT_EQ(upper.names.at(upper.selected.value()), "world2");
    EXPECT_FALSE(listConfigurations(folder.path(), "world").selected.has_value());
    EXPECT_TRUE(listConfigurations(folder.path() / "nowhere", "world1").names.empty());
}

TEST_F(FolderLists, LevelsAreNamedLxMAAndNamesAreFoundIgnoringCaseOrKeptAsGiven) {
    for (const char* name : {"L1MA1", "l2ma3", "L1MB1", "XLMA1", "LMA", "MPIC", "L9MAP.bak"}) {
        writeText(folder / name, "");
    }
    const NameList list = listLevels(folder.path(), "L2MA3");
    EXPECT_THAT(list.names, UnorderedElementsAre("L1MA1", "L2MA3", "L9MAP.BAK"));
    EXPECT_EQ(list.names.at(list.selected.value()), "L2MA3");
    EXPECT_EQ(listLevels(folder.path(), "l2ma3").selected, list.selected);
    writeText(config / "World2.CFG", "");
    EXPECT_EQ(configurationPath(folder.path(), "world2"), config / "World2.CFG");
    EXPECT_EQ(findFile(folder.path(), "L7MA7"), folder / "L7MA7");
}

TEST_F(FolderLists, ConfigurationKeysAreReadWithNoCommonOptional) {
    const auto path = config / "w.cfg";
    writeText(path, "tileSet = \"TILES1\"; spriteSet = \"SPRITES1\";");
    const LevelConfiguration plain = readLevelConfiguration(path);
    EXPECT_EQ(std::tuple(plain.tileSet, plain.spriteSet, plain.noCommon),
              std::tuple("TILES1", "SPRITES1", 0));
    for (const char* text : {"spriteSet = \"S\";", "tileSet = \"T\";",
                             "tileSet = \"T\"; spriteSet = \"S\"; noCommon = 256;",
                             "tileSet = \"T\"; spriteSet { }"}) {
        writeText(path, text);
        const auto error = failureOf<FileError>([&] { readLevelConfiguration(path); });
        EXPECT_TRUE(error && error->path() == path) << text;
    }
}

} // namespace
} // namespace marvek::test
