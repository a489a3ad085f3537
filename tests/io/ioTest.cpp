#include "io/caseInsensitivePath.h"
#include "io/clsBitStream.h"
#include "io/clsDataBuffer.h"
#include "support/TempDir.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(clsBitStreamWrite, NumbersAreBigEndianWithASpareByte) {
    auto stream = growingStream();
    stream.putLong(53588);
    EXPECT_EQ(allBytes(stream), (Bytes{0x00, 0x00, 0xD1, 0x54, 0x00}));
    EXPECT_EQ(stream.byteOffset(), 4);
    auto words = growingStream();
    words.putInteger(-2);
    words.putLong(-1);
    words.putString("BOD\xE9");
    words.putZeroBytes(0);
    words.putZeroBytes(2);
    words.putData(std::array<std::uint8_t, 2>{0x12, 0x34});
    words.skipBytes(1);
    EXPECT_EQ(allBytes(words), (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 'B', 'O', 'D', 0xE9, 0, 0,
                                      0x12, 0x34, 0x00, 0x00}));
}

TEST(clsBitStreamWrite, BitsArePackedMostSignificantFirst) {
    auto stream = growingStream();
    stream.putBits(5, 6);
    stream.putBits(3, 10);
    EXPECT_EQ(allBytes(stream), (Bytes{0x14, 0x03, 0x00}));

    auto wide = growingStream();
    wide.putBits(0x40000001, 31);
    // The cursor is still inside the fourth byte, which is the spare one.
    EXPECT_EQ(allBytes(wide), (Bytes{0x80, 0x00, 0x00, 0x02}));
    EXPECT_EQ(wide.bitOffset(), 7);
    EXPECT_THROW(wide.putBits(1, 32), std::out_of_range);
    // A byte written inside a byte takes the whole byte.
    auto whole = growingStream();
    whole.putBits(1, 3);
    whole.putByte(0xAA);
    EXPECT_EQ(allBytes(whole), (Bytes{0xAA, 0x00}));
    EXPECT_EQ(whole.bitOffset(), 0);
}

TEST(clsBitStreamWrite, PutBitsTogglesWhilePutBitSetsAndClears) {
    auto zeros = streamOver({0xFF});
    zeros.putBits(0, 3);
    auto toggled = streamOver({0xFF});
    toggled.putBits(7, 3);
    auto bits = streamOver({0x0F});
    for (const std::int32_t bit : {1, 0, 0, 0, 0, 5}) {
        bits.putBit(bit);
    }
    EXPECT_EQ(dataOf(zeros), Bytes{0xFF});
    EXPECT_EQ(dataOf(toggled), Bytes{0x1F});
    EXPECT_EQ(dataOf(bits), Bytes{0x87});
}

// Runs of bits are handled a byte at a time; they must land exactly where
// single bits would, also where a stream grows or ends.
TEST(clsBitStreamBits, RunsMatchSingleBits) {
    std::uint32_t seed = 12345;
    const auto next = [&seed] {
        seed = seed * 1103515245u + 12345u;
        return seed >> 8;
    };
    auto runs = growingStream();
    auto singles = growingStream();
    std::vector<std::pair<std::int32_t, int>> written;
    for (int i = 0; i < 300; ++i) {
        const int count = static_cast<int>(next() % 32);
        const auto value = static_cast<std::int32_t>(next() & 0x7FFFFFFF);
        runs.putBits(value, count);
        for (int bit = count - 1; bit >= 0; --bit) {
            singles.putBit((value >> bit) & 1);
        }
        written.emplace_back(value, count);
    }
    ASSERT_EQ(allBytes(runs), allBytes(singles));
    ASSERT_EQ(runs.bitOffset(), singles.bitOffset());

    auto reader = streamOver(allBytes(runs), 0xA5);
    for (const auto& [value, count] : written) {
        const auto mask = static_cast<std::int32_t>((std::uint64_t{1} << count) - 1);
        ASSERT_EQ(reader.getBits(count), value & mask);
    }
    // Past the end, reading stops in the spare byte.
    auto ending = streamOver({0xFF}, 0xA5);
    EXPECT_EQ(ending.getBits(20), 0xFFA50);
    EXPECT_EQ(ending.byteOffset(), 1);
}

// Blocks of bytes are copied in one step where they fit; across the end of a
// fixed stream they behave byte by byte.
TEST(clsBitStreamBits, BlocksMatchSingleBytes) {
    auto fixed = streamOver({1, 2, 3}, 9);
    fixed.getBits(3);
    std::array<std::uint8_t, 2> inside{};
    fixed.getData(inside);
    EXPECT_EQ(inside, (std::array<std::uint8_t, 2>{1, 2}));
    std::array<std::uint8_t, 3> across{};
    fixed.getData(across);
    EXPECT_EQ(across, (std::array<std::uint8_t, 3>{3, 9, 9}));
    fixed.seekTo(1);
    fixed.putData(std::array<std::uint8_t, 4>{7, 8, 5, 6});
    EXPECT_EQ(allBytes(fixed), (Bytes{1, 7, 8, 6}));

    auto growing = growingStream();
    growing.putBits(1, 1);
    growing.putData(std::array<std::uint8_t, 2>{4, 5});
    growing.putZeroBytes(2);
    EXPECT_EQ(allBytes(growing), (Bytes{4, 5, 0, 0, 0}));
}

TEST(clsBitStreamRead, NumbersStringsDataAndBits) {
    auto stream =
        streamOver({0x80, 0x00, 0x42, 0x4F, 0x44, 0xE9, 0xDE, 0xAD, 0xBE, 0xEF, 1, 2, 0x16, 0x03});
    EXPECT_EQ(stream.getInteger(), -32768);
    EXPECT_EQ(stream.getString(4), "BOD\xE9");
    EXPECT_EQ(stream.getString(0), "");
    EXPECT_EQ(static_cast<std::uint32_t>(stream.getLong()), 0xDEADBEEFu);
    std::array<std::uint8_t, 2> raw{};
    stream.getData(raw);
    EXPECT_EQ(raw, (std::array<std::uint8_t, 2>{1, 2}));
    EXPECT_EQ(stream.getBits(6), 5);
    EXPECT_EQ(stream.getBit(), 1);
    EXPECT_EQ(stream.getBit(), 0);
    EXPECT_EQ(stream.getBits(8), 3);
    EXPECT_TRUE(stream.endOfStream());
}

TEST(clsBitStreamEnd, ReadsPastTheEndKeepReturningTheSpareByte) {
    auto stream = streamOver({1, 2, 3});
    for (std::int32_t position = 0; position < 3; ++position) {
        EXPECT_FALSE(stream.endOfStream()) << position;
        EXPECT_EQ(stream.getByte(), position + 1);
    }
    EXPECT_TRUE(stream.endOfStream());
    EXPECT_EQ(stream.getByte(), 0);
    EXPECT_EQ(stream.getLong(), 0);
    EXPECT_EQ(stream.byteOffset(), 3);

    auto bits = streamOver({0x11, 0xC5});
    bits.seekTo(1);
    EXPECT_EQ(bits.getBits(16), 0xC500);
    auto atSpare = streamOver({0x11}, 0xFF);
    atSpare.seekTo(1);
    // Eight bits of the spare byte, then the cursor cannot move on.
    EXPECT_EQ(atSpare.getBits(12), 0xFF0);
    EXPECT_EQ(atSpare.byteOffset(), 1);
}

TEST(clsBitStreamEnd, AccessOutsideTheBufferIsAnError) {
    auto stream = streamOver({1, 2});
    stream.seekTo(5);
    EXPECT_THROW((void)stream.getByte(), std::out_of_range);
    stream.seekTo(-1);
    EXPECT_THROW(stream.putBits(1, 1), std::out_of_range);
    clsBitStream empty;
    EXPECT_THROW((void)empty.Size(), std::logic_error);
    EXPECT_THROW((void)empty.getByte(), std::logic_error);
}

TEST(clsDataBuffer, WithoutStorageAccessIsAnErrorAndTheSpareByteIsAddressable) {
    clsDataBuffer buffer;
    EXPECT_FALSE(buffer.hasStorage());
    EXPECT_THROW((void)buffer.Size(), std::logic_error);
    EXPECT_THROW((void)buffer.getByte(0), std::out_of_range);
    EXPECT_TRUE(buffer.data().empty());
    EXPECT_THROW(buffer.writeToFile("unused"), std::logic_error);
    // The spare byte is addressable; resizing keeps what fits.
    buffer.Create(2);
    EXPECT_EQ(buffer.data().size(), 2u);
    for (std::int32_t i = 0; i <= 2; ++i) {
        buffer.putByte(i, static_cast<std::uint8_t>(i + 1));
    }
    EXPECT_THROW(buffer.putByte(3, 1), std::out_of_range);
    EXPECT_THROW(buffer.putByte(-1, 1), std::out_of_range);
    EXPECT_THROW(buffer.Create(-1), std::out_of_range);
    buffer.Resize(1);
    EXPECT_EQ(std::pair(buffer.Size(), int{buffer.getByte(1)}), std::pair(1, 2));
    buffer.Resize(4);
    EXPECT_EQ(std::tuple(buffer.getByte(0), buffer.getByte(2), buffer.getByte(4)),
              std::tuple(1, 0, 0));
    buffer.Create(1);
    EXPECT_EQ(buffer.getByte(0), 0);
}

TEST(clsDataBuffer, ReadsFilesWithATrailingZeroAndWritesTheSpareBack) {
    TempDir folder;
    writeBytes(folder / "in", {0x42, 0x4F, 0x44});
    writeBytes(folder / "empty", {});
    writeBytes(folder / "out", Bytes(100, 0xEE));

    clsDataBuffer buffer;
    buffer.readFromFile(folder / "in");
    ASSERT_EQ(buffer.Size(), 3);
    EXPECT_EQ(Bytes(buffer.data().begin(), buffer.data().end()), (Bytes{0x42, 0x4F, 0x44}));
    EXPECT_EQ(buffer.getByte(3), 0);
    buffer.writeToFile(folder / "out");
    EXPECT_EQ(readBytes(folder / "out"), (Bytes{0x42, 0x4F, 0x44, 0x00}));

    buffer.readFromFile(folder / "missing");
    EXPECT_EQ(buffer.Size(), 3) << "a missing file leaves the buffer";
    clsDataBuffer fresh;
    fresh.readFromFile(folder / "missing");
    EXPECT_FALSE(fresh.hasStorage());
    fresh.readFromFile(folder / "empty");
    EXPECT_EQ(std::pair(fresh.Size(), int{fresh.getByte(0)}), std::pair(0, 0));
}

TEST(FindIgnoringCase, PrefersTheExactNameThenMatchesEachPartIgnoringCase) {
    TempDir folder;
    std::filesystem::create_directories(folder / "Sub");
    writeBytes(folder / "Sub" / "World2.CFG", {1});
    writeBytes(folder / "l1ma1", {1});
    writeBytes(folder / "L1MA1", {2});
    EXPECT_EQ(findIgnoringCase(folder.path(), "L1MA1"), folder / "L1MA1");
    EXPECT_EQ(findIgnoringCase(folder.path(), "l1MA1"), folder / "L1MA1") << "smallest name wins";
    EXPECT_EQ(findIgnoringCase(folder.path(), "sub\\world2.cfg"),
              folder.path() / "Sub" / "World2.CFG");
    EXPECT_EQ(findIgnoringCase(folder.path(), "missing"), std::nullopt);
    EXPECT_EQ(findIgnoringCase(folder.path(), ""), std::nullopt);
    EXPECT_EQ(findIgnoringCase(folder / "nowhere", "x"), std::nullopt);
}

} // namespace
} // namespace marvek::test
