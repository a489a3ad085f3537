#include "EditorFixture.h"

#include "graphics/pictureFiles.h"

#include <QAction>

namespace marvek::test {
namespace {

using RepairWarnings = EditorFixture;
using Bytes = std::vector<std::uint8_t>;

// The file unpacked and cut to length bytes, written back unpacked.
Bytes cutFile(const fs::path& file, std::size_t length) {
    Bytes bytes = readPictureFile(file);
    bytes.resize(length);
    writeBytes(file, bytes);
    return bytes;
}

TEST_F(RepairWarnings, FilesCutShortOpenWithOneWarningNamingEachFile) {
    Bytes level = cutFile(dataFolder() / "L1MA1", 3300);
    // WGMP states the data's length, which the reader checks.
    for (int i = 0; i < 4; ++i) {
        level[8 + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(3300 >> (24 - 8 * i));
    }
    writeBytes(dataFolder() / "L1MA1", level);
    const std::size_t tiles = readPictureFile(dataFolder() / "L1BM").size();
    cutFile(dataFolder() / "L1BM", tiles - 40);
    cutFile(dataFolder() / "L1ET", 60000);

    frmMain& window = startEditor();
    ASSERT_NE(window.openedLevel(), nullptr) << "the level opens";
    ASSERT_EQ(messages_->shown.size(), 1U) << "one warning for all of them";
    const ShownMessage& warning = messages_->shown[0];
    EXPECT_EQ(warning.style, messageStyle::exclamation);
    const QString text = warning.text;
    EXPECT_TRUE(text.contains(toQString(dataFolder() / "L1MA1") + ": the BODY chunk holds"))
        << text.toStdString();
    EXPECT_TRUE(text.contains(toQString(dataFolder() / "L1BM") + ": the tile set's last tile"));
    EXPECT_TRUE(text.contains(toQString(dataFolder() / "L1ET") + ": the sprite set is short"));
    EXPECT_EQ(window.openedLevel()->level.cells().size(), 300U * 84U);
}

} // namespace
} // namespace marvek::test
