#include "io/atomicWrite.h"
#include "maps/mapFiles.h"
#include "support/world.h"
#include "ui/EditorFixture.h"

#include <QAction>
#include <gmock/gmock.h>

namespace marvek::test {
namespace {

using ::testing::HasSubstr;

std::string textOf(const fs::path& path) {
    const auto bytes = readWholeFile(path);
    return {bytes.begin(), bytes.end()};
}

class TiledMapCommandsTest : public EditorFixture {
protected:
    void SetUp() override { window_ = &startEditor(); }

    void run(const char* name, const fs::path& answer) {
        dialogs_->fileAnswers.push_back({toQString(answer)});
        child<QAction>(*window_, name).trigger();
    }

    const OpenedLevel& opened() const { return *window_->openedLevel(); }

    // The map exported from the editor, changed and saved under another name.
    fs::path changedExport(const std::function<void(TiledMap&)>& change) {
        const fs::path exported = root_ / "level.tmx";
        run("itmFileExportTiledMap", exported);
        TiledMap map = readTmx(textOf(exported), [this](const std::string& source) {
            return readTsx(textOf(root_ / source));
        });
        change(map);
        const fs::path changed = root_ / "changed.tmx";
        writeText(changed, writeTmx(map, LayerFormat::zlib));
        return changed;
    }

    frmMain* window_ = nullptr;
};

TEST_F(TiledMapCommandsTest, ExportWritesTheMapWithItsTileSetsBesideIt) {
    run("itmFileExportTiledMap", root_ / "out.tmj");
    EXPECT_THAT(dialogs_->fileRequests.back().filters.front().toStdString(), HasSubstr("*.tmx"));
    for (const char* name :
         {"out.tmj", "L1BM.tsx", "L1BM.png", "world1-specials.tsx", "world1-specials.png"}) {
        EXPECT_TRUE(fs::exists(root_ / name)) << name;
    }
    EXPECT_TRUE(messages_->shown.empty());
}

TEST_F(TiledMapCommandsTest, ImportReplacesCellsPaletteAndFieldsAsOneHistoryStep) {
    const std::int16_t before = opened().level.cellAt(4, 2).tile;
    const std::int32_t remXBefore = opened().level.remX();
    const std::uint32_t colourBefore = opened().palette.Entry(1);
    const std::size_t stepsBefore = window_->history().steps().size();
    const auto map = changedExport([](TiledMap& map) {
        map.layers[0].gids[2 * 300 + 4] = 1 + 150;
        for (TiledProperty& property : map.properties) {
            if (property.name == "palette") {
                property.value.replace(8, 7, "#ff0000");
            } else if (property.name == "remx") {
                property.value = "77";
            }
        }
    });
    run("itmFileImportTiledMap", map);
    EXPECT_TRUE(messages_->shown.empty());
    EXPECT_EQ(opened().level.cellAt(4, 2).tile, 150);
    EXPECT_EQ(opened().level.remX(), 77);
    EXPECT_EQ(opened().palette.Entry(1), 0x0000FFu);
    EXPECT_TRUE(opened().level.modified);
    EXPECT_EQ(window_->history().nextUndo(), "Import Tiled Map");
    EXPECT_EQ(window_->history().steps().size(), stepsBefore + 1);
    window_->editUndo();
    EXPECT_EQ(opened().level.cellAt(4, 2).tile, before);
    EXPECT_EQ(opened().level.remX(), remXBefore);
    EXPECT_EQ(opened().palette.Entry(1), colourBefore);
    EXPECT_FALSE(opened().level.modified);
    window_->editRedo();
    EXPECT_EQ(opened().level.remX(), 77);
    EXPECT_EQ(opened().palette.Entry(1), 0x0000FFu);
}

TEST_F(TiledMapCommandsTest, ARefusedMapChangesNothingAndSaysWhy) {
    const auto map =
        changedExport([](TiledMap& map) { map.layers[1].gids[5] = 1025 + 3 + 0x80000000u; });
    const std::vector<Cell> cells(opened().level.cells().begin(), opened().level.cells().end());
    run("itmFileImportTiledMap", map);
    ASSERT_EQ(messages_->shown.size(), 1u);
    EXPECT_THAT(messages_->shown[0].text.toStdString(),
                HasSubstr("layer \"Specials\", cell (5, 0): the tile is flipped or rotated"));
    EXPECT_TRUE(std::ranges::equal(opened().level.cells(), cells));
    EXPECT_TRUE(window_->history().nextUndo().empty());
    EXPECT_FALSE(opened().level.modified);
}

} // namespace
} // namespace marvek::test
