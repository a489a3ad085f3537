#include "graphics/clsBitmap.h"
#include "graphics/clsBackBuffer.h"
#include "native/marvek.h"
#include "support/bitmapFiles.h"
#include "support/images.h"

#include <QImage>
#include <QString>
#include <gtest/gtest.h>

#include <tuple>
#include <utility>
#include <vector>

namespace marvek::test {
namespace {

// Entry i is blue i, green 2i, red 3i.
std::vector<std::uint32_t> rampTable(std::uint32_t colours) {
    std::vector<std::uint32_t> table;
    for (std::uint32_t i = 0; i < colours; ++i) {
        table.push_back(0x00030201u * i);
    }
    return table;
}

QImage qtRead(const std::filesystem::path& path) {
    QImage image;
    EXPECT_TRUE(image.load(QString::fromStdString(path.string()), "BMP")) << path;
    return image;
}

TEST(BitmapWrite, PlanarImageBecomesAStandardEightBitFile) {
    TempDir folder;
    // 5 x 2, top row 0..4, bottom row 5..9.
    auto image = planarImage(5, 2, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
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
    writeBytes(folder / "in.bmp", bitmapFile(5, 2, 8, rampTable(256),
                                             {5, 6, 7, 8, 40, 0, 0, 0, 0, 1, 2, 3, 4, 0, 0, 0}));
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.readFromFile(folder / "in.bmp"));
    EXPECT_EQ(bitmap.pixelBytes().size(), 17u) << "one byte more than the rows";

    const auto image = bitmap.createPlanar(5);
    ASSERT_TRUE(image.has_value());
    EXPECT_EQ(std::pair(image->planarWidth(), image->planarHeight()), std::pair(5, 2));
    EXPECT_EQ(planarOf(*image), (std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 40}))
        << "indices of 2^planes and above are kept";
    ASSERT_EQ(image->palette().Count(), 32);
    EXPECT_EQ(image->palette().Entry(31), 0x00001F3E5Du);

    const auto palette = bitmap.getPal(4);
    ASSERT_TRUE(palette.has_value());
    EXPECT_EQ(std::pair(palette->Count(), palette->Entry(2)), std::pair(16, 0x00020406u));
}

TEST(BitmapRead, OtherDepthsGivePaletteOrNothing) {
    TempDir folder;
    // 24 bits, 2 x 2: standard rows of 8 bytes; what is kept is
    // 3 * height * W4 + 1 bytes, the missing ones reading as zero.
    writeBytes(folder / "deep.bmp", bitmapFile(2, 2, 24, {}, std::vector<std::uint8_t>(16, 0xEE)));
    // 4 bits: a sixteen-entry table, but 1024 bytes of table are read.
    writeBytes(folder / "nibble.bmp", bitmapFile(3, 1, 4, rampTable(16), {0x12, 0x30, 0, 0}));

    clsBitmap deep;
    ASSERT_TRUE(deep.readFromFile(folder / "deep.bmp"));
    EXPECT_EQ(std::tuple(deep.pixelBytes().size(), deep.pixelBytes()[15], deep.pixelBytes()[16]),
              std::tuple(std::size_t{3 * 2 * 4 + 1}, 0xEE, 0));
    EXPECT_FALSE(deep.createPlanar(5) || deep.getPal(5));

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
    auto good = bitmapFile(4, 4, 8, rampTable(256), std::vector<std::uint8_t>(16, 3));
    writeBytes(folder / "good.bmp", good);
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.readFromFile(folder / "good.bmp"));

    const auto refused = [&](const std::string& name, std::vector<std::uint8_t> bytes) {
        writeBytes(folder / name, bytes);
        EXPECT_FALSE(bitmap.readFromFile(folder / name)) << name;
    };
    for (const std::size_t length : {0, 30, 54, 54 + 1024 + 15}) {
        refused("cut.bmp", {good.begin(), good.begin() + static_cast<long>(length)});
    }
    const auto patched = [&](const char* name, std::size_t at, std::uint8_t value) {
        auto file = good;
        file[at] = value;
        refused(name, file);
    };
    patched("type", 0, 'X');
    patched("width 2^30, more than the file holds", 21, 0x40);
    patched("negative height", 25, 0xFF);
    patched("pixel offset", 13, 0x7F);
    patched("compressed", 30, 4);
    EXPECT_FALSE(bitmap.readFromFile(folder / "missing.bmp"));
    EXPECT_FALSE(bitmap.readFromFile(folder.path()));

    EXPECT_EQ(bitmap.infoHeader().width, 4) << "a refused file leaves the bitmap";
    EXPECT_TRUE(bitmap.createPlanar(5).has_value());
}

} // namespace
} // namespace marvek::test
