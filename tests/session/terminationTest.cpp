// The real editor, on a virtual display, ended by a signal with a level it
// has just painted.
#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "io/packedFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;

clsLevel levelIn(const fs::path& file) {
    clsLevel level;
    clsPalette palette;
    auto stream = getFileBits(file);
    EXPECT_TRUE(level.loadFromBits(stream, palette)) << file;
    return level;
}

// A copy of the built editor with its resources and the sample data, so
// that the build's own settings and levels stay untouched.
class RunningEditor : public ::testing::Test {
protected:
    RunningEditor() {
        fs::create_directories(bin());
        fs::copy_file(MARVEK_EDITOR_EXECUTABLE, bin() / "marvek");
        for (const char* folder : {"config", "fonts", "pal", "bitmaps", "faq"}) {
            fs::copy(fs::path(MARVEK_APP_DIR) / folder, bin() / folder,
                     fs::copy_options::recursive);
        }
        fs::copy(MARVEK_SAMPLE_DATA, data(), fs::copy_options::recursive);
        writeText(bin() / "marvek.cfg", "thornwickData = \"" + data().string() +
                                            "\";\r\nmoveSensitivity = 10;\r\n"
                                            "defaultLevel = \"L1MA1\";\r\n"
                                            "defaultConfig = \"world1\";\r\n"
                                            "editorFont = \"game\";\r\nalphaBlending = 1;\r\n"
                                            "undoLevels = 64;\r\nautoPlaceSpecials = 1;\r\n");
    }

    fs::path bin() const { return root_.path() / "bin"; }
    fs::path data() const { return root_.path() / "data"; }

    // The editor's exit status after the script's click and the signal.
    int paintThenSignal(const std::string& signal, const std::vector<fs::path>& levels = {}) {
        const fs::path status = root_.path() / "status";
        std::string command = std::string("'") + MARVEK_SOURCE_DIR +
                              "/tests/session/paintThenTerminate.sh' '" +
                              (bin() / "marvek").string() + "' '" + status.string() + "' " + signal;
        for (const fs::path& level : levels) {
            command += " '" + level.string() + "'";
        }
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        int code = -1;
        std::ifstream(status) >> code;
        return code;
    }

    TempDir root_;
};

TEST_F(RunningEditor, ATerminationSignalKeepsThePaintedLevelAsRecovered) {
    const fs::path level = data() / "L1MA1";
    const auto original = readBytes(level);
    EXPECT_EQ(paintThenSignal("TERM"), 128 + SIGTERM);

    const fs::path kept = data() / "L1MA1.recovered";
    ASSERT_TRUE(fs::exists(kept));
    EXPECT_EQ(readBytes(level), original) << "the level itself is left as it was";
    const clsLevel before = levelIn(level);
    const clsLevel after = levelIn(kept);
    ASSERT_EQ(after.width, before.width);
    ASSERT_EQ(after.height, before.height);
    int changed = 0;
    for (std::int32_t y = 0; y < before.height; ++y) {
        for (std::int32_t x = 0; x < before.width; ++x) {
            if (after.cellAt(x, y).tile != before.cellAt(x, y).tile) {
                ++changed;
                EXPECT_EQ(after.cellAt(x, y).tile, 1) << "the brush's tile, at " << x << "," << y;
            }
        }
    }
    EXPECT_EQ(changed, 1) << "one click paints one cell";
}

TEST_F(RunningEditor, ATerminationSignalKeepsEveryModifiedTab) {
    EXPECT_EQ(paintThenSignal("TERM", {data() / "L1MA1", data() / "L1MA2"}), 128 + SIGTERM);
    for (const char* name : {"L1MA1", "L1MA2"}) {
        const clsLevel kept = levelIn(data() / (std::string(name) + ".recovered"));
        const clsLevel saved = levelIn(data() / name);
        EXPECT_NE(kept.cells().size(), 0U);
        EXPECT_FALSE(std::equal(kept.cells().begin(), kept.cells().end(), saved.cells().begin(),
                                [](const Cell& a, const Cell& b) { return a.tile == b.tile; }))
            << name << " keeps its painted cell";
    }
}

} // namespace
} // namespace marvek::test
