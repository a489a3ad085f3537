#include "graphics/clsBitmap.h"
#include "graphics/clsBackBuffer.h"
#include "native/marvek.h"
#include "support/TempDir.h"

#include <QImage>
#include <QString>
#include <gtest/gtest.h>

#include <vector>

namespace marvek {
namespace {

using test::readBytes;
using test::TempDir;
using test::writeBytes;

void putLittle(std::vector<std::uint8_t>& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

// Headers as a standard writer makes them, a colour table of `colours`
// entries (entry i is blue i, green 2i, red 3i) and the given pixel bytes.
std::vector<std::uint8_t> bitmapFile(std::int32_t width, std::int32_t height, std::uint16_t bits,
                                     std::uint32_t colours,
                                     const std::vector<std::uint8_t>& pixels) {
    const std::uint32_t offset = 54 + colours * 4;
    std::vector<std::uint8_t> file{'B', 'M'};
    putLittle(file, offset + static_cast<std::uint32_t>(pixels.size()), 4);
    putLittle(file, 0, 4);
    putLittle(file, offset, 4);
    putLittle(file, 40, 4);
    putLittle(file, static_cast<std::uint32_t>(width), 4);
    putLittle(file, static_cast<std::uint32_t>(height), 4);
    putLittle(file, 1, 2);
    putLittle(file, bits, 2);
    putLittle(file, 0, 4);
    putLittle(file, static_cast<std::uint32_t>(pixels.size()), 4);
    file.insert(file.end(), 16, 0); // resolutions and colour counts
    for (std::uint32_t i = 0; i < colours; ++i) {
        putLittle(file, i | (2 * i) << 8 | (3 * i) << 16, 4);
    }
    file.insert(file.end(), pixels.begin(), pixels.end());
    return file;
}

clsSurface imageOf(std::int32_t width, std::int32_t height,
                   const std::vector<std::uint8_t>& pixels) {
    clsSurface image;
    EXPECT_TRUE(image.planarCreateEmpty(width, height));
    std::copy(pixels.begin(), pixels.end(), image.ptrPlanar());
    return image;
}

QImage qtRead(const std::filesystem::path& path) {
    QImage image;
    EXPECT_TRUE(image.load(QString::fromStdString(path.string()), "BMP")) << path;
    return image;
}

TEST(BitmapWrite, PlanarImageBecomesAStandardEightBitFile) {
    TempDir folder;
    // 5 x 2, top row 0..4, bottom row 5..9.
    auto image = imageOf(5, 2, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    clsPalette palette;
    for (std::uint32_t i = 0; i < 10; ++i) {
        palette.addEntry(0x00010203u * i); // red 3i, green 2i, blue i
    }
    image.setPalette(palette);
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.createFromPlanarSurface(image));
    bitmap.writeToFile(folder / "out.bmp");

    const auto file = readBytes(folder / "out.bmp");
    const std::vector<std::uint8_t> headers{'B',  'M',  0x46, 0x04, 0,    0,    0, 0, 0,    0,
                                            0x36, 0x04, 0,    0, // size 1094, offset 1078
                                            40,   0,    0,    0,    5,    0,    0, 0, 2,    0,
                                            0,    0,    1,    0,    8,    0,    0, 0, 0,    0,
                                            16,   0,    0,    0,    0x13, 0x0B, 0, 0, 0x13, 0x0B,
                                            0,    0,    0,    1,    0,    0,    0, 0, 0,    0};
    ASSERT_EQ(file.size(), 1094u);
    EXPECT_EQ(std::vector<std::uint8_t>(file.begin(), file.begin() + 54), headers);
    EXPECT_EQ(std::vector<std::uint8_t>(file.begin() + 54 + 4 * 9, file.begin() + 54 + 4 * 11),
              (std::vector<std::uint8_t>{9, 18, 27, 0, 0, 0, 0, 0}))
        << "entries beyond the palette are black";
    EXPECT_EQ(std::vector<std::uint8_t>(file.begin() + 1078, file.end()),
              (std::vector<std::uint8_t>{5, 6, 7, 8, 9, 0, 0, 0, 0, 1, 2, 3, 4, 0, 0, 0}))
        << "rows bottom-up, padded to four bytes";

    const QImage qt = qtRead(folder / "out.bmp");
    ASSERT_EQ(qt.width(), 5);
    ASSERT_EQ(qt.height(), 2);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 5; ++x) {
            const int i = 5 * y + x;
            EXPECT_EQ(qt.pixel(x, y) & 0xFFFFFFu,
                      static_cast<QRgb>(qRgb(3 * i, 2 * i, i)) & 0xFFFFFFu)
                << x << "," << y;
        }
    }
}

TEST(BitmapWrite, BackBufferBecomesABottomUpThirtyTwoBitFile) {
    TempDir folder;
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(3, 2, 1));
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x) {
            surfaceSetPixel(buffer.surface(), x, y, createBGRA(40 * x, 100 * y, 7, 0));
        }
    }
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.createFromBackBuffer(buffer));
    bitmap.writeToFile(folder / "frame.bmp");

    const auto file = readBytes(folder / "frame.bmp");
    ASSERT_EQ(file.size(), 54u + 24u);
    EXPECT_EQ(file[10], 54) << "no colour table for 32 bits";
    EXPECT_EQ(file[28], 32);
    // First stored pixel: bottom-left, bytes blue, green, red, alpha.
    EXPECT_EQ(std::vector<std::uint8_t>(file.begin() + 54, file.begin() + 58),
              (std::vector<std::uint8_t>{7, 100, 0, 0}));

    const QImage qt = qtRead(folder / "frame.bmp");
    ASSERT_EQ(qt.size(), QSize(3, 2));
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(qt.pixel(x, y), qRgb(40 * x, 100 * y, 7)) << x << "," << y;
        }
    }

    EXPECT_FALSE(bitmap.createFromBackBuffer(clsBackBuffer{}));
    EXPECT_EQ(bitmap.infoHeader().width, 3);
}

TEST(BitmapRead, EightBitFileGivesPlanarImageTopRowFirst) {
    TempDir folder;
    // 5 wide: rows of 8 bytes; the file's first row is the image's bottom row.
    writeBytes(folder / "in.bmp",
               bitmapFile(5, 2, 8, 256, {5, 6, 7, 8, 40, 0, 0, 0, 0, 1, 2, 3, 4, 0, 0, 0}));
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.readFromFile(folder / "in.bmp"));
    EXPECT_EQ(bitmap.pixelBytes().size(), 17u) << "one byte more than the rows";

    const auto image = bitmap.createPlanar(5);
    ASSERT_TRUE(image.has_value());
    EXPECT_EQ(image->planarWidth(), 5);
    EXPECT_EQ(image->planarHeight(), 2);
    EXPECT_EQ(std::vector<std::uint8_t>(image->planarPixels().begin(), image->planarPixels().end()),
              (std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 40}))
        << "indices of 2^planes and above are kept";
    ASSERT_EQ(image->palette().Count(), 32);
    EXPECT_EQ(image->palette().Entry(31), 0x00001F3E5Du);

    const auto palette = bitmap.getPal(4);
    ASSERT_TRUE(palette.has_value());
    EXPECT_EQ(palette->Count(), 16);
    EXPECT_EQ(palette->Entry(2), 0x00020406u);
}

TEST(BitmapRead, OtherDepthsGivePaletteOrNothing) {
    TempDir folder;
    // 24 bits, 2 x 2: standard rows of 8 bytes; what is kept is
    // 3 * height * W4 + 1 bytes, the missing ones reading as zero.
    writeBytes(folder / "deep.bmp", bitmapFile(2, 2, 24, 0, std::vector<std::uint8_t>(16, 0xEE)));
    // 4 bits: a sixteen-entry table, but 1024 bytes of table are read.
    writeBytes(folder / "nibble.bmp", bitmapFile(3, 1, 4, 16, {0x12, 0x30, 0, 0}));

    clsBitmap deep;
    ASSERT_TRUE(deep.readFromFile(folder / "deep.bmp"));
    EXPECT_EQ(deep.pixelBytes().size(), 3u * 2 * 4 + 1);
    EXPECT_EQ(deep.pixelBytes()[15], 0xEE);
    EXPECT_EQ(deep.pixelBytes()[16], 0);
    EXPECT_FALSE(deep.createPlanar(5).has_value());
    EXPECT_FALSE(deep.getPal(5).has_value());

    clsBitmap nibble;
    ASSERT_TRUE(nibble.readFromFile(folder / "nibble.bmp"));
    EXPECT_FALSE(nibble.createPlanar(5).has_value());
    const auto palette = nibble.getPal(5);
    ASSERT_TRUE(palette.has_value());
    EXPECT_EQ(palette->Entry(15), 0x000F1E2Du);
    EXPECT_EQ(palette->Entry(16), 0x00123000u) << "the pixel bytes read as table entry 16";
}

TEST(BitmapRead, RefusesMissingMalformedAndTruncatedFiles) {
    TempDir folder;
    auto good = bitmapFile(4, 4, 8, 256, std::vector<std::uint8_t>(16, 3));
    clsBitmap bitmap;
    writeBytes(folder / "good.bmp", good);
    ASSERT_TRUE(bitmap.readFromFile(folder / "good.bmp"));

    const auto refused = [&](const std::string& name, std::vector<std::uint8_t> bytes) {
        writeBytes(folder / name, bytes);
        EXPECT_FALSE(bitmap.readFromFile(folder / name)) << name;
    };
    refused("short-pixels.bmp", std::vector<std::uint8_t>(good.begin(), good.end() - 1));
    refused("headers-only.bmp", std::vector<std::uint8_t>(good.begin(), good.begin() + 54));
    refused("half-header.bmp", std::vector<std::uint8_t>(good.begin(), good.begin() + 30));
    refused("empty.bmp", {});
    auto wrongType = good;
    wrongType[0] = 'X';
    refused("type.bmp", wrongType);
    auto huge = good;
    huge[18 + 3] = 0x40; // width 2^30: far more pixels than the file holds
    refused("huge.bmp", huge);
    auto topDown = good;
    topDown[22 + 3] = 0xFF; // negative height
    refused("top-down.bmp", topDown);
    auto farOffset = good;
    farOffset[10 + 3] = 0x7F;
    refused("offset.bmp", farOffset);
    auto compressed = good;
    compressed[30] = 1;
    refused("rle.bmp", compressed);
    EXPECT_FALSE(bitmap.readFromFile(folder / "missing.bmp"));
    EXPECT_FALSE(bitmap.readFromFile(folder.path()));

    EXPECT_EQ(bitmap.infoHeader().width, 4) << "a refused file leaves the bitmap";
    EXPECT_TRUE(bitmap.createPlanar(5).has_value());
}

TEST(BitmapRoundTrip, PlanarImageSurvivesWriteAndRead) {
    TempDir folder;
    std::vector<std::uint8_t> pixels(7 * 3);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<std::uint8_t>(i * 11);
    }
    auto image = imageOf(7, 3, pixels);
    clsPalette palette;
    palette.addEntry(0x00ABCDEF);
    image.setPalette(palette);
    clsBitmap written;
    ASSERT_TRUE(written.createFromPlanarSurface(image));
    written.writeToFile(folder / "round.bmp");

    clsBitmap read;
    ASSERT_TRUE(read.readFromFile(folder / "round.bmp"));
    const auto back = read.createPlanar(8);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(std::vector<std::uint8_t>(back->planarPixels().begin(), back->planarPixels().end()),
              pixels);
    EXPECT_EQ(back->palette().Count(), 256);
    EXPECT_EQ(back->palette().Entry(0), 0x00ABCDEFu);
}

} // namespace
} // namespace marvek
