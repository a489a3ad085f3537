#include "graphics/clsPalette.h"
#include "support/TempDir.h"
#include "support/images.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>
#include <vector>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(PaletteGameFormat, ReadsThirtyTwoWordsScaledBySeventeenForFivePlanesAndWritesThemRounded) {
    Bytes bytes(64, 0);
    bytes[0] = 0xFF;  // the ignored nibble must not leak into red
    bytes[1] = 0x80;  // word 0: F F 8 0 -> red 15, green 8, blue 0
    bytes[63] = 0x0F; // last word: blue 15
    auto stream = streamOver(bytes);
    clsPalette palette = paletteOf({0x123456});
    ASSERT_TRUE(palette.loadFrom(stream, 5));
    EXPECT_EQ(palette.Count(), 32);
    EXPECT_EQ(palette.Entry(0), 0x000088FFu);
    EXPECT_EQ(palette.Entry(31), 0x00FF0000u);
    EXPECT_EQ(stream.byteOffset(), 64);
    EXPECT_THROW(palette.Entry(32), std::out_of_range);

    auto other = streamOver(Bytes(64, 0x11));
    clsPalette none;
    EXPECT_TRUE(none.loadFrom(other, 4));
    EXPECT_EQ(none.Count(), 0);
    EXPECT_EQ(other.byteOffset(), 0);
    // Writing rounds every entry to nibbles.
    // 0F80; red 8 rounds down to 0; 9 -> 1, 25 -> 1, 26 -> 2.
    clsBitStream written = growingStream();
    paletteOf({0x000088FF, 8u, 9u | (25u << 8) | (26u << 16)}).writeTo(written);
    EXPECT_EQ(dataOf(written), (Bytes{0x0F, 0x80, 0x00, 0x00, 0x01, 0x12}));
}

TEST(PaletteRawFormat, CountIsLengthOverThreeRoundedAndReadsOneWordMore) {
    TempDir dir;
    Bytes bytes(96);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i + 1);
    }
    writeBytes(dir / "a.pal", bytes);
    writeBytes(dir / "b.pal", Bytes(128, 0x7F));
    writeBytes(dir / "c.pal", {1, 2, 3, 4, 5});
    clsPalette palette;
    ASSERT_TRUE(palette.loadRawFrom(dir / "a.pal"));
    EXPECT_EQ(std::tuple(palette.Count(), palette.Entry(0), palette.Entry(23), palette.Entry(24),
                         palette.Entry(32)),
              std::tuple(32, 0x04030201u, 0x605F5E5Du, 0u, 0u));
    EXPECT_THROW(palette.Entry(33), std::out_of_range);

    ASSERT_TRUE(palette.loadRawFrom(dir / "b.pal"));
    EXPECT_EQ(std::tuple(palette.Count(), palette.Entry(31), palette.Entry(43)),
              std::tuple(43, 0x7F7F7F7Fu, 0u));
    ASSERT_TRUE(palette.loadRawFrom(dir / "c.pal"));
    EXPECT_EQ(std::pair(palette.Count(), palette.Entry(1)), std::pair(2, 5u));

    EXPECT_FALSE(palette.loadRawFrom(dir / "missing.pal"));
    EXPECT_EQ(palette.Count(), 2) << "a missing file leaves the palette";
}

TEST(PaletteRawFormat, WriteOverlaysTheStartOfALongerFileAndAddEntryReusesTheSpareSlot) {
    TempDir dir;
    writeBytes(dir / "d.pal", Bytes(12, 0xEE));
    const clsPalette palette = paletteOf({0x00332211});
    ASSERT_TRUE(palette.writeRawTo(dir / "d.pal"));
    ASSERT_TRUE(palette.writeRawTo(dir / "new.pal"));
    EXPECT_EQ(readBytes(dir / "d.pal"),
              (Bytes{0x11, 0x22, 0x33, 0, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE}));
    EXPECT_EQ(readBytes(dir / "new.pal"), (Bytes{0x11, 0x22, 0x33, 0}));
    // Adding an entry after a raw load reuses the spare slot.
    writeBytes(dir / "e.pal", {10, 20, 30, 0, 40, 50, 60, 0});
    clsPalette loaded;
    ASSERT_TRUE(loaded.loadRawFrom(dir / "e.pal")); // count 3, four slots
    loaded.addEntry(0xABCDEF);
    EXPECT_EQ(loaded.Count(), 4);
    EXPECT_EQ(loaded.Entry(3), 0xABCDEFu);
    EXPECT_EQ(loaded.Entry(4), 0u);
}

} // namespace
} // namespace marvek::test
