#include "graphics/clsPalette.h"
#include "io/clsBitStream.h"
#include "native/marvek.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace marvek {
namespace {

using test::readBytes;
using test::TempDir;
using test::writeBytes;

clsBitStream streamOver(const std::vector<std::uint8_t>& bytes) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer->data().begin());
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    return stream;
}

TEST(PaletteGameFormat, ReadsThirtyTwoWordsScaledBySeventeen) {
    std::vector<std::uint8_t> bytes(64, 0);
    bytes[0] = 0xFF; // the ignored nibble must not leak into red
    bytes[1] = 0x80; // word 0: F F 8 0 -> red 15, green 8, blue 0
    bytes[62] = 0x00;
    bytes[63] = 0x0F; // last word: blue 15
    auto stream = streamOver(bytes);
    clsPalette palette;
    palette.addEntry(0x123456);

    ASSERT_TRUE(palette.loadFrom(stream, 5));

    EXPECT_EQ(palette.Count(), 32);
    EXPECT_EQ(palette.Entry(0), 0x000088FFu);
    EXPECT_EQ(palette.Entry(31), 0x00FF0000u);
    EXPECT_EQ(stream.byteOffset(), 64);
    EXPECT_THROW(palette.Entry(32), std::out_of_range);
}

TEST(PaletteGameFormat, OtherPlaneCountsReadNothing) {
    auto stream = streamOver(std::vector<std::uint8_t>(64, 0x11));
    clsPalette palette;
    EXPECT_TRUE(palette.loadFrom(stream, 4));
    EXPECT_EQ(palette.Count(), 0);
    EXPECT_EQ(stream.byteOffset(), 0);
}

TEST(PaletteGameFormat, WritesRoundedNibblesOfEveryEntry) {
    clsPalette palette;
    palette.addEntry(0x000088FF);                    // 0F80
    palette.addEntry(8u);                            // red 8 rounds down to 0
    palette.addEntry(9u | (25u << 8) | (26u << 16)); // 9 -> 1, 25 -> 1, 26 -> 2
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;

    palette.writeTo(stream);

    const auto data = stream.bufferGet()->data();
    EXPECT_EQ(std::vector<std::uint8_t>(data.begin(), data.end()),
              (std::vector<std::uint8_t>{0x0F, 0x80, 0x00, 0x00, 0x01, 0x12}));
}

TEST(PaletteRawFormat, CountIsLengthOverThreeAndReadsOneWordMore) {
    TempDir dir;
    std::vector<std::uint8_t> bytes(96);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i + 1);
    }
    writeBytes(dir / "a.pal", bytes);
    clsPalette palette;

    ASSERT_TRUE(palette.loadRawFrom(dir / "a.pal"));

    EXPECT_EQ(palette.Count(), 32);
    EXPECT_EQ(palette.Entry(0), 0x04030201u);
    EXPECT_EQ(palette.Entry(23), 0x605F5E5Du);
    EXPECT_EQ(palette.Entry(24), 0u);
    EXPECT_EQ(palette.Entry(32), 0u);
    EXPECT_THROW(palette.Entry(33), std::out_of_range);
}

TEST(PaletteRawFormat, RoundsCountAndToleratesPartialWords) {
    TempDir dir;
    writeBytes(dir / "b.pal", std::vector<std::uint8_t>(128, 0x7F));
    writeBytes(dir / "c.pal", {1, 2, 3, 4, 5});
    clsPalette thirtyTwo;
    clsPalette five;

    ASSERT_TRUE(thirtyTwo.loadRawFrom(dir / "b.pal"));
    ASSERT_TRUE(five.loadRawFrom(dir / "c.pal"));

    EXPECT_EQ(thirtyTwo.Count(), 43);
    EXPECT_EQ(thirtyTwo.Entry(31), 0x7F7F7F7Fu);
    EXPECT_EQ(thirtyTwo.Entry(43), 0u);
    EXPECT_EQ(five.Count(), 2);
    EXPECT_EQ(five.Entry(1), 5u);
}

TEST(PaletteRawFormat, MissingFileLeavesPaletteAlone) {
    TempDir dir;
    clsPalette palette;
    palette.addEntry(7);
    EXPECT_FALSE(palette.loadRawFrom(dir / "missing.pal"));
    EXPECT_EQ(palette.Count(), 1);
    EXPECT_EQ(palette.Entry(0), 7u);
}

TEST(PaletteRawFormat, WriteOverlaysTheStartOfALongerFile) {
    TempDir dir;
    writeBytes(dir / "d.pal", std::vector<std::uint8_t>(12, 0xEE));
    clsPalette palette;
    palette.addEntry(0x00332211);

    ASSERT_TRUE(palette.writeRawTo(dir / "d.pal"));
    ASSERT_TRUE(palette.writeRawTo(dir / "new.pal"));

    EXPECT_EQ(readBytes(dir / "d.pal"),
              (std::vector<std::uint8_t>{0x11, 0x22, 0x33, 0, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE,
                                         0xEE, 0xEE}));
    EXPECT_EQ(readBytes(dir / "new.pal"), (std::vector<std::uint8_t>{0x11, 0x22, 0x33, 0}));
}

TEST(PaletteRawFormat, AddEntryAfterRawLoadReusesTheSpareSlot) {
    TempDir dir;
    writeBytes(dir / "e.pal", {10, 20, 30, 0, 40, 50, 60, 0});
    clsPalette palette;
    ASSERT_TRUE(palette.loadRawFrom(dir / "e.pal")); // count 3, four slots

    palette.addEntry(0xABCDEF);

    EXPECT_EQ(palette.Count(), 4);
    EXPECT_EQ(palette.Entry(3), 0xABCDEFu);
    EXPECT_EQ(palette.Entry(4), 0u);
}

} // namespace
} // namespace marvek
