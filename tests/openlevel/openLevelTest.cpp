#include "openlevel/testWorld.h"

#include "data/openLevel.h"
#include "io/FileError.h"
#include "io/packedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace marvek {
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

    // The FileError the request fails with.
    FileError failure(const OpenLevelRequest& request) const {
        try {
            openLevel(request);
        } catch (const FileError& error) {
            return error;
        }
        ADD_FAILURE() << "the level opened";
        return FileError("", "");
    }

    test::TempDir scratch;
    test::TestWorld world;
};

TEST_F(OpenLevel, LoadsEveryPartInOrderAndReportsEachStage) {
    world.packLevel();
    ASSERT_TRUE(isFileIMP(world.levelPath()));
    std::vector<std::string> stages;
    const OpenedLevel opened =
        openLevel(request(), [&](std::string_view status) { stages.emplace_back(status); });

    EXPECT_THAT(stages, ElementsAre("Loading level...", "Loading tiles...", "Loading sprites...",
                                    "Loading specials..."));
    EXPECT_EQ(opened.level.width, test::TestWorld::width);
    EXPECT_EQ(opened.level.cellAt(1, 0).special, 2);
    EXPECT_EQ(opened.level.fileName, world.levelPath().string());
    EXPECT_EQ(opened.palette.Count(), clsPalette::gameEntries);
    EXPECT_EQ(opened.palette.Entry(21), test::TestWorld::palette().Entry(21));
    EXPECT_EQ(opened.tileSet.count(), 4);
    EXPECT_EQ(opened.tileFile, world.data() / "tiles"); // named "TILES" in the configuration
    EXPECT_EQ(opened.spriteFile, world.data() / "sprites");
    EXPECT_EQ(opened.spriteSheet.planarWidth(), 320);
    EXPECT_EQ(opened.spriteSheet.planarPixels()[16], 21);
    EXPECT_THAT(tagsOf(opened.specialSet), ElementsAre("enemy", "Enemy", "hazard"));
    ASSERT_NE(opened.specialSet.getSpecialLUT(2), nullptr);
    EXPECT_TRUE(opened.specialSet.getSpecialLUT(2)->hasImage);
}

TEST_F(OpenLevel, NoCommonLeavesTheSharedSpecialsOutAndUnknownOnlyWhenAsked) {
    world.writeConfig("solo.cfg", "tileSet = \"tiles\"; spriteSet = \"sprites\"; noCommon = 1;" +
                                      test::TestWorld::ownSpecials());
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
    using World = test::TestWorld;
    struct Case {
        std::function<void(const World&)> breakIt;
        std::string file; // below the world's root
        std::string reason;
    };
    const auto remove = [](std::string file) {
        return [file](const World& w) { std::filesystem::remove(w.root() / file); };
    };
    const auto writeLevel = [](std::vector<std::uint8_t> bytes) {
        return [bytes](const World& w) { test::writeBytes(w.levelPath(), bytes); };
    };
    const auto writeConfig = [](std::string name, std::string text) {
        return [name, text](const World& w) { w.writeConfig(name, text); };
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
         "app/config/world1.cfg", "line 2"},
        {remove("app/config/common.cfg"), "app/config/common.cfg", ""},
        {writeConfig("common.cfg", "Specials { a { Id = 64; } }"), "app/config/common.cfg", "64"},
        {writeConfig("unknown.cfg", "Specials { a { Id = 5; Kind = \"sprite\"; imgOffset = "
                                    "\"310, 0\"; imgSize = \"16, 16\"; } }"),
         "app/config/unknown.cfg", "outside"},
    };
    for (const Case& broken : cases) {
        const World fresh;
        broken.breakIt(fresh);
        const std::filesystem::path file = fresh.root() / broken.file;
        const FileError error = failure({fresh.app(), fresh.data(), "L1MA1", "world1", true});
        EXPECT_EQ(error.path(), file) << error.what();
        EXPECT_THAT(error.what(), HasSubstr(broken.reason)) << broken.file;
    }
}

} // namespace
} // namespace marvek
