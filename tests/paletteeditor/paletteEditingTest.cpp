#include "graphics/paletteEditing.h"
#include "data/clsLevel.h"
#include "graphics/clsBitmap.h"
#include "io/packedFile.h"
#include "support/bitmapFiles.h"
#include "support/images.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>
#include <vector>

namespace marvek::test {
namespace {

TEST(PaletteEditing, ExportsASmallEightBitPictureAndImportsItsTable) {
    TempDir folder;
    exportPaletteBitmap(gamePalette(), folder / "palette.bmp");
    clsBitmap bitmap;
    ASSERT_TRUE(bitmap.readFromFile(folder / "palette.bmp"));
    EXPECT_EQ(std::tuple(bitmap.infoHeader().width, bitmap.infoHeader().height,
                         bitmap.infoHeader().bitsPerPixel),
              std::tuple(32, 32, 8));
    EXPECT_EQ(std::count(bitmap.pixelBytes().begin(), bitmap.pixelBytes().end(), 0), 32 * 32 + 1)
        << "every pixel colour 0";

    const PaletteImport imported = importPaletteBitmap(folder / "palette.bmp");
    ASSERT_TRUE(imported.palette.has_value()) << imported.failure;
    ASSERT_EQ(imported.palette->Count(), 32);
    for (std::int32_t i = 0; i < 32; ++i) {
        EXPECT_EQ(imported.palette->Entry(i), gamePalette().Entry(i)) << i;
    }
}

TEST(PaletteEditing, OnlyAnEightBitPictureGivesAPalette) {
    TempDir folder;
    writeBitmap24(folder / "deep.bmp", 4, 4, [](int, int) { return 0x808080u; });
    writeBytes(folder / "nibble.bmp", bitmapFile(2, 1, 4, {0xFF0000}, {0, 0, 0, 0}));
    writeBytes(folder / "text.bmp", {'h', 'e', 'l', 'l', 'o'});
    const std::vector<std::pair<const char*, const char*>> refusals{
        {"deep.bmp", "24-bit pictures have no palette"},
        {"nibble.bmp", "4-bit pictures are not read: save it with 8 bits per pixel"},
        {"text.bmp", "the file is too short for a BMP file"},
        {"missing.bmp", "the file does not exist"},
    };
    for (const auto& [name, reason] : refusals) {
        const PaletteImport imported = importPaletteBitmap(folder / name);
        EXPECT_FALSE(imported.palette.has_value()) << name;
        EXPECT_EQ(imported.failure, reason);
    }
    // A table shorter than 32 entries is padded from what follows it, as
    // the colour table is always read whole.
    writeBytes(folder / "short.bmp", bitmapFile(1, 1, 8, {0x0000FF, 0x00FF00}, {1, 0, 0, 0}));
    const PaletteImport imported = importPaletteBitmap(folder / "short.bmp");
    ASSERT_TRUE(imported.palette.has_value());
    EXPECT_EQ(std::pair(imported.palette->Entry(0), imported.palette->Entry(1)),
              std::pair(0xFF0000u, 0x00FF00u));
}

TEST(PaletteEditing, ColoursKeepTheGamesFourBitsAComponent) {
    EXPECT_EQ(quantiseColour(0x00123456), 0x00113355u);
    EXPECT_EQ(quantiseColour(0x00FFFFFF), 0x00FFFFFFu);
    EXPECT_EQ(quantiseColour(0x00080809), 0x00000011u) << "8 rounds down, 9 up";
    EXPECT_EQ(quantiseColour(0x0088FF00), 0x0088FF00u);
}

TEST(PaletteEditing, SixteenBoxesToARowOf528Pixels) {
    const clsRectangle last = PaletteGrid::box(15);
    const clsRectangle wrapped = PaletteGrid::box(16);
    EXPECT_EQ(std::tuple(last.left, last.top, last.width), std::tuple(495, 0, 32));
    EXPECT_EQ(std::tuple(wrapped.left, wrapped.top), std::tuple(0, 33));
    EXPECT_EQ(std::pair(PaletteGrid::width(), PaletteGrid::height()), std::pair(527, 65));

    EXPECT_EQ(PaletteGrid::indexAt(0, 0), 0);
    EXPECT_EQ(PaletteGrid::indexAt(526, 31), 15);
    EXPECT_EQ(PaletteGrid::indexAt(40, 40), 17);
    EXPECT_EQ(PaletteGrid::indexAt(32, 5), std::nullopt) << "the gap between boxes";
    EXPECT_EQ(PaletteGrid::indexAt(5, 65), std::nullopt);

    EXPECT_EQ(shownColour(paletteOf({0x123456}), 0), 0x123456u);
    EXPECT_EQ(shownColour(paletteOf({0x123456}), 1), 0u);
}

TEST(PaletteEditing, AnImportedPaletteIsSavedWithTheLevel) {
    TempDir folder;
    clsPalette edited = gamePalette();
    edited.setEntry(3, quantiseColour(0x00ABCDEF));
    EXPECT_THROW(edited.setEntry(32, 0), std::out_of_range);
    exportPaletteBitmap(edited, folder / "edited.bmp");
    const PaletteImport imported = importPaletteBitmap(folder / "edited.bmp");
    ASSERT_TRUE(imported.palette.has_value());

    clsLevel level = sampleLevel();
    level.fileName = (folder / "L1MA1").string();
    level.saveToFile(level.fileName, *imported.palette);
    clsBitStream stream = getFileBits(folder / "L1MA1");
    clsLevel loaded;
    clsPalette palette;
    ASSERT_TRUE(loaded.loadFromBits(stream, palette));
    ASSERT_EQ(palette.Count(), 32);
    EXPECT_EQ(palette.Entry(3), 0x00AACCEEu);
    EXPECT_EQ(palette.Entry(4), gamePalette().Entry(4));
}

} // namespace
} // namespace marvek::test
