#include "io/clsBitStream.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <vector>

namespace marvek {
namespace {

std::vector<std::uint8_t> allBytes(const clsBitStream& stream) {
    const auto& buffer = *stream.bufferGet();
    std::vector<std::uint8_t> bytes;
    for (std::int32_t i = 0; i <= buffer.Size(); ++i) {
        bytes.push_back(buffer.getByte(i));
    }
    return bytes;
}

clsBitStream writer() {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    return stream;
}

clsBitStream readerOf(const std::vector<std::uint8_t>& bytes) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        buffer->putByte(static_cast<std::int32_t>(i), bytes[i]);
    }
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    return stream;
}

using Bytes = std::vector<std::uint8_t>;

TEST(clsBitStreamWrite, NumbersAreBigEndianWithASpareByte) {
    auto stream = writer();
    stream.putLong(53588);
    EXPECT_EQ(allBytes(stream), (Bytes{0x00, 0x00, 0xD1, 0x54, 0x00}));
    EXPECT_EQ(stream.Size(), 4);
    EXPECT_EQ(stream.byteOffset(), 4);

    auto words = writer();
    words.putInteger(-2);
    words.putLong(-1);
    words.putString("BODY");
    words.putZeroBytes(0);
    words.putZeroBytes(2);
    const std::array<std::uint8_t, 2> raw{0x12, 0x34};
    words.putData(raw);
    EXPECT_EQ(allBytes(words), (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 'B', 'O', 'D', 'Y', 0, 0,
                                      0x12, 0x34, 0x00}));
}

TEST(clsBitStreamWrite, BitsArePackedMostSignificantFirst) {
    auto stream = writer();
    stream.putBits(5, 6);
    stream.putBits(3, 10);
    EXPECT_EQ(allBytes(stream), (Bytes{0x14, 0x03, 0x00}));
    EXPECT_EQ(stream.Size(), 2);

    auto wide = writer();
    wide.putBits(0x40000001, 31);
    // The cursor is still inside the fourth byte, which is the spare one.
    EXPECT_EQ(allBytes(wide), (Bytes{0x80, 0x00, 0x00, 0x02}));
    EXPECT_EQ(wide.bitOffset(), 7);
    EXPECT_THROW(wide.putBits(1, 32), std::out_of_range);
}

TEST(clsBitStreamWrite, PutBitsTogglesWhilePutBitSetsAndClears) {
    auto zeros = readerOf({0xFF});
    zeros.putBits(0, 3);
    zeros.seekTo(0);
    EXPECT_EQ(zeros.getByte(), 0xFF);

    auto toggled = readerOf({0xFF});
    toggled.putBits(7, 3);
    EXPECT_EQ(toggled.bufferGet()->getByte(0), 0x1F);

    auto bits = readerOf({0x0F});
    bits.putBit(1);
    bits.putBit(0);
    bits.putBit(0);
    bits.putBit(0);
    bits.putBit(0);
    bits.putBit(5);
    EXPECT_EQ(bits.bufferGet()->getByte(0), 0x87);
}

TEST(clsBitStreamWrite, ByteOperationsInsideAByteTakeTheWholeByte) {
    auto stream = writer();
    stream.putBits(1, 3);
    stream.putByte(0xAA);
    EXPECT_EQ(allBytes(stream), (Bytes{0xAA, 0x00}));
    EXPECT_EQ(stream.bitOffset(), 0);
}

TEST(clsBitStreamWrite, SkipGrowsWithoutWriting) {
    auto stream = writer();
    stream.skipBytes(3);
    EXPECT_EQ(stream.Size(), 3);
    EXPECT_EQ(allBytes(stream), (Bytes{0, 0, 0, 0}));
}

TEST(clsBitStreamRead, NumbersStringsAndData) {
    auto stream = readerOf({0x80, 0x00, 0x42, 0x4F, 0x44, 0x59, 0xDE, 0xAD, 0xBE, 0xEF, 1, 2});
    EXPECT_EQ(stream.getInteger(), -32768);
    EXPECT_EQ(stream.getString(4), "BODY");
    EXPECT_EQ(static_cast<std::uint32_t>(stream.getLong()), 0xDEADBEEFu);
    std::array<std::uint8_t, 2> raw{};
    stream.getData(raw);
    EXPECT_EQ(raw, (std::array<std::uint8_t, 2>{1, 2}));
    EXPECT_TRUE(stream.endOfStream());
}

TEST(clsBitStreamRead, HighLatin1CharactersSurviveARoundTrip) {
    auto stream = writer();
    const std::string text{"\xE9\xFF\x01", 3};
    stream.putString(text);
    stream.seekTo(0);
    EXPECT_EQ(stream.getString(3), text);
    EXPECT_EQ(stream.getString(0), "");
}

TEST(clsBitStreamRead, BitsAcrossByteBoundaries) {
    auto stream = readerOf({0x14, 0x03});
    EXPECT_EQ(stream.getBits(6), 5);
    EXPECT_EQ(stream.getBits(10), 3);

    auto single = readerOf({0xA0});
    EXPECT_EQ(single.getBit(), 1);
    EXPECT_EQ(single.getBit(), 0);
    EXPECT_EQ(single.getBit(), 1);
    EXPECT_EQ(single.bitOffset(), 3);
}

TEST(clsBitStreamEnd, ReadsPastTheEndKeepReturningTheSpareByte) {
    auto stream = readerOf({1, 2, 3});
    for (std::int32_t position = 0; position < 3; ++position) {
        EXPECT_FALSE(stream.endOfStream()) << position;
        EXPECT_EQ(stream.getByte(), position + 1);
    }
    EXPECT_TRUE(stream.endOfStream());
    EXPECT_EQ(stream.getByte(), 0);
    EXPECT_EQ(stream.byteOffset(), 3);
    EXPECT_EQ(stream.getLong(), 0);
    EXPECT_EQ(stream.byteOffset(), 3);
    EXPECT_EQ(stream.Size(), 3);
}

TEST(clsBitStreamEnd, GetBitsStopsAtTheEnd) {
    auto stream = readerOf({0x11, 0xC5});
    stream.seekTo(1);
    EXPECT_EQ(stream.getBits(16), 0xC500);

    auto atSpare = readerOf({0x11});
    atSpare.bufferGet()->putByte(1, 0xFF);
    atSpare.seekTo(1);
    // Eight bits of the spare byte, then the cursor cannot move on.
    EXPECT_EQ(atSpare.getBits(12), 0xFF0);
    EXPECT_EQ(atSpare.byteOffset(), 1);
}

TEST(clsBitStreamEnd, AccessOutsideTheBufferIsAnError) {
    auto stream = readerOf({1, 2});
    stream.seekTo(5);
    EXPECT_THROW((void)stream.getByte(), std::out_of_range);
    stream.seekTo(-1);
    EXPECT_THROW(stream.putBits(1, 1), std::out_of_range);

    clsBitStream empty;
    EXPECT_THROW((void)empty.Size(), std::logic_error);
    EXPECT_THROW((void)empty.getByte(), std::logic_error);
}

TEST(clsBitStreamSharing, StreamAndCallerShareOneBuffer) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(1);
    clsBitStream stream;
    stream.loadFromBuffer(buffer);
    stream.putByte(9);
    EXPECT_EQ(buffer->getByte(0), 9);
    EXPECT_EQ(stream.bufferGet(), buffer);

    stream.Create();
    EXPECT_NE(stream.bufferGet(), buffer);
    EXPECT_EQ(stream.Size(), 0);
}

} // namespace
} // namespace marvek
