// What image editors write besides the plain bottom-up file.
#include "graphics/clsBitmap.h"
#include "native/bmpRunLength.h"
#include "support/bitmapFiles.h"
#include "support/images.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A file with the given compression code patched into its header.
Bytes compressed(std::int32_t width, std::int32_t height, std::uint16_t bits, std::uint32_t code,
                 std::uint32_t colours, const Bytes& data) {
    std::vector<std::uint32_t> table(colours);
    for (std::uint32_t i = 0; i < colours; ++i) {
        table[i] = 0x00010101u * i;
    }
    Bytes file = bitmapFile(width, height, bits, table, data);
    file[30] = static_cast<std::uint8_t>(code);
    return file;
}

class EditorFiles : public ::testing::Test {
protected:
    // The planar image of the file, top row first; empty when refused.
    Bytes planarOfFile(const Bytes& file) {
        writeBytes(folder / "in.bmp", file);
        if (!bitmap.readFromFile(folder / "in.bmp")) {
            return {};
        }
        const auto image = bitmap.createPlanar(8);
        return image ? planarOf(*image) : Bytes{};
    }
    std::string refusalOf(const Bytes& file) {
        writeBytes(folder / "in.bmp", file);
        EXPECT_FALSE(bitmap.readFromFile(folder / "in.bmp"));
        return bitmap.refusal();
    }

    TempDir folder;
    clsBitmap bitmap;
};

TEST_F(EditorFiles, RunLengthEightBitDecodesRunsLiteralsAndSkips) {
    // 5 x 3, bottom row first: a run of 3 sevens and a literal 1 2 9 (padded
    // to a word), its 9 cut off at the row's end; end of line; a skip of 2
    // right and 1 up; a run of two 5s and one of nine 4s, cut off after the
    // first; no end-of-bitmap mark after the last row.
    const Bytes data{3, 7, 0, 3, 1, 2, 9, 0, 0, 0, 0, 2, 2, 1, 2, 5, 9, 4, 0, 0};
    const Bytes expected{0, 0, 5, 5, 4, //
                         0, 0, 0, 0, 0, //
                         7, 7, 7, 1, 2};
    EXPECT_EQ(planarOfFile(compressed(5, 3, 8, 1, 256, data)), expected);
    EXPECT_EQ(bitmap.infoHeader().compression, 0u) << "kept uncompressed";
    EXPECT_EQ(bitmap.infoHeader().imageSize, 24u);

    const Bytes withEnd{2, 4, 0, 1};
    EXPECT_EQ(planarOfFile(compressed(2, 1, 8, 1, 256, withEnd)), (Bytes{4, 4}));
    EXPECT_EQ(refusalOf(compressed(2, 2, 8, 1, 256, {2, 4, 0, 0})),
              "the compressed pixel data is cut short");
    EXPECT_EQ(refusalOf(compressed(4, 1, 8, 1, 256, {0, 4, 1, 2})),
              "the compressed pixel data is cut short")
        << "a literal longer than the data";
}

TEST(RunLength, FourBitRunsAlternateNibblesAndLiteralsArePaddedToWords) {
    // 7 x 1: a run of 3 from 0x12 gives 1 2 1; a literal of 3 nibbles (2
    // bytes, already a word) gives 3 4 5; a run of 1 gives 6.
    const RunLengthResult decoded =
        decodeRunLength(Bytes{3, 0x12, 0, 3, 0x34, 0x50, 1, 0x6F, 0, 1}, {7, 1, 4});
    ASSERT_EQ(decoded.failure, "");
    EXPECT_EQ(decoded.rows, (Bytes{0x12, 0x13, 0x45, 0x60}));
    // A literal of 5 nibbles takes three bytes and one of padding.
    EXPECT_EQ(decodeRunLength(Bytes{0, 5, 0xAB, 0xCD, 0xE0, 0xFF, 1, 0xF0, 0, 1}, {6, 1, 4}).rows,
              (Bytes{0xAB, 0xCD, 0xEF, 0}));
}

TEST_F(EditorFiles, FourBitRunLengthFilesGiveTheirPalette) {
    writeBytes(folder / "rle4.bmp", compressed(3, 1, 4, 2, 16, {3, 0x21, 0, 1}));
    ASSERT_TRUE(bitmap.readFromFile(folder / "rle4.bmp")) << bitmap.refusal();
    const auto palette = bitmap.getPal(4);
    ASSERT_TRUE(palette.has_value());
    EXPECT_EQ(palette->Entry(15), 0x000F0F0Fu);
    EXPECT_FALSE(bitmap.createPlanar(4).has_value());
    EXPECT_EQ(bitmap.planarRefusal(), "4-bit pictures are not read: save it with 8 bits per pixel");
}

TEST_F(EditorFiles, TopDownRowsAndAnUnpaddedLastRowAreRead) {
    const Bytes topDown = encodeBitmap(3, 2, 8, true, {5, 6, 7, 8, 9, 10});
    const Bytes bottomUp = encodeBitmap(3, 2, 8, false, {5, 6, 7, 8, 9, 10});
    const Bytes image = planarOfFile(bottomUp);
    ASSERT_EQ(image.size(), 6u);
    EXPECT_EQ(planarOfFile(topDown), image);
    EXPECT_EQ(bitmap.infoHeader().height, 2) << "kept bottom-up";

    Bytes unpadded = bottomUp;
    unpadded.pop_back(); // the last row: 3 pixels and one byte of padding
    EXPECT_EQ(planarOfFile(unpadded), image);
    unpadded.pop_back();
    EXPECT_EQ(refusalOf(unpadded), "the pixel data is cut short");
}

TEST_F(EditorFiles, RefusalsNameTheReason) {
    const Bytes good = bitmapFile(2, 2, 8, {0, 0xFFFFFF}, Bytes(8, 1));
    const auto patched = [&](std::size_t at, std::uint8_t value) {
        Bytes file = good;
        file[at] = value;
        return file;
    };
    EXPECT_EQ(refusalOf(patched(0, 'X')), "not a BMP file");
    EXPECT_EQ(refusalOf(patched(30, 4)),
              "compressed with JPEG at 8 bits per pixel, which is not read");
    EXPECT_EQ(refusalOf(patched(30, 2)),
              "compressed with RLE4 at 8 bits per pixel, which is not read");
    EXPECT_EQ(refusalOf(patched(28, 2)), "2 bits per pixel are not read");
    EXPECT_EQ(refusalOf(patched(14, 12)), "an old kind of BMP header that is not read");
    // 16384 x 8192 from four bytes of RLE8 ("end of picture"): too many
    // pixels for any surface, though each side is in range.
    Bytes huge = compressed(16384, 8192, 8, 1, 2, {0, 1});
    EXPECT_EQ(refusalOf(huge), "the picture has more than 67108864 pixels");
    huge[23] = 0x10; // 16384 x 4096 is the largest
    writeBytes(folder / "in.bmp", huge);
    EXPECT_TRUE(bitmap.readFromFile(folder / "in.bmp")) << bitmap.refusal();
    EXPECT_EQ(refusalOf(Bytes(good.begin(), good.begin() + 40)),
              "the file is too short for a BMP file");
    EXPECT_FALSE(bitmap.readFromFile(folder / "missing.bmp"));
    EXPECT_EQ(bitmap.refusal(), "the file does not exist");

    writeBytes(folder / "deep.bmp", encodeBitmap(2, 2, 24, false, {1, 2, 3, 4}));
    ASSERT_TRUE(bitmap.readFromFile(folder / "deep.bmp"));
    EXPECT_EQ(bitmap.refusal(), "");
    EXPECT_EQ(bitmap.planarRefusal(), "24-bit pictures have no palette");
}

} // namespace
} // namespace marvek::test
