#include "graphics/pictureFiles.h"
#include "graphics/clsBitmap.h"
#include "graphics/paletteChoices.h"
#include "graphics/pictureCodec.h"
#include "io/FileError.h"
#include "io/packedFile.h"
#include "support/bitmapFiles.h"
#include "support/expect.h"
#include "support/images.h"
#include "support/pictureFormats.h"
#include "support/sampleData.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <vector>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

class PictureFiles : public ::testing::Test {
protected:
    // What the browser exports of the bytes read with the format.
    void exportPicture(const Bytes& bytes, const PictureFormat& f, const std::string& name) {
        clsSurface picture = decodePicture(bytes, f);
        picture.setPalette(greyPalette(f.planes));
        writePictureBitmap(picture, folder / name);
    }

    TempDir folder;
};

TEST_F(PictureFiles, ExportThenImportGivesBackTheBytes) {
    for (PictureFormat f : {pictureFormat(16, 16, 1, 6, 4), pictureFormat(7, 3, 1, 5, 2)}) {
        for (f.planes = 1; f.planes <= 8; ++f.planes) {
            const auto length = static_cast<std::size_t>(pictureEnd(f));
            Bytes original = randomBytes(length, static_cast<std::uint32_t>(f.planes));
            original.back() = 0; // 7 x 3 sub-images leave bits of the last byte unused
            exportPicture(original, f, "out.bmp");
            std::filesystem::remove(folder / "IMPORTED");
            importPicture(folder / "out.bmp", folder / "IMPORTED", f, greyChoice());
            EXPECT_TRUE(isFileIMP(folder / "IMPORTED"));
            EXPECT_EQ(readPictureFile(folder / "IMPORTED"), original)
                << f.width << " x " << f.height << ", " << f.planes << " planes";
        }
    }
}

TEST_F(PictureFiles, ImportReplacesOnlyTheSubImagesAndCanStoreThePalette) {
    // Ten bytes before the sub-images, two 16 x 1 single-plane ones, a
    // 32-colour palette (64 bytes) and three bytes after it.
    const PictureFormat f = pictureFormat(16, 1, 1, 2, 2, 10);
    Bytes file = randomBytes(10 + 4 + 64 + 3, 5);
    writeBytes(folder / "PIC", file);
    writeBytes(folder / "in.bmp", encodeBitmap(32, 1, 8, false, std::vector<std::uint32_t>(32, 0)));

    importPicture(folder / "in.bmp", folder / "PIC", f, greyChoice());
    Bytes expected = file;
    std::fill_n(expected.begin() + 10, 4, 0);
    EXPECT_EQ(readPictureFile(folder / "PIC"), expected) << "all but the sub-images kept";

    // The BMP's table holds only black: its 32 colours replace the palette.
    importPicture(folder / "in.bmp", folder / "PIC", f, afterChoice());
    std::fill_n(expected.begin() + 14, 64, 0);
    EXPECT_EQ(readPictureFile(folder / "PIC"), expected);

    // A file that ends after the sub-images gets the palette appended.
    importPicture(folder / "in.bmp", folder / "NEW", pictureFormat(16, 1, 1, 2, 2), afterChoice());
    EXPECT_EQ(readPictureFile(folder / "NEW"), Bytes(4 + 64, 0));

    EXPECT_NE(whatOf<FileError>([&] {
                  importPicture(folder / "in.bmp", folder / "PIC",
                                pictureFormat(16, 1, 1, 1, 1, 82), greyChoice());
              }).find("the offset 82 lies past the end of the file (81 bytes)"),
              std::string::npos);
}

TEST_F(PictureFiles, TheStoredPaletteIsTheBitmapsTableInTheGamesFormat) {
    const PictureFormat f = pictureFormat(2, 1, 5);
    clsSurface picture = planarImage(2, 1, {3, 31});
    picture.setPalette(gamePalette());
    writePictureBitmap(picture, folder / "in.bmp");
    importPicture(folder / "in.bmp", folder / "PIC", f, afterChoice());
    const Bytes bytes = readPictureFile(folder / "PIC");
    ASSERT_EQ(bytes.size(), 2u + 64u);
    const auto after = paletteAfter(bytes, f);
    ASSERT_TRUE(after.has_value());
    for (std::int32_t i = 0; i < 32; ++i) {
        EXPECT_EQ(after->Entry(i), gamePalette().Entry(i)) << i;
    }
    EXPECT_EQ(planarOf(decodePicture(bytes, f)), (Bytes{3, 31}));
}

TEST_F(PictureFiles, ARefusedImportWritesNothing) {
    const Bytes old = randomBytes(200, 9);
    writeBytes(folder / "PIC", old);
    writeBitmap24(folder / "deep.bmp", 32, 32, [](int, int) { return 0x123456u; });
    writeBytes(folder / "narrow.bmp",
               encodeBitmap(30, 16, 8, false, std::vector<std::uint32_t>(480, 0)));
    writeBytes(folder / "fits.bmp",
               encodeBitmap(32, 16, 8, false, std::vector<std::uint32_t>(512, 0)));
    writeBytes(folder / "damaged.pack", {'I', 'M', 'P', '!', 0, 0, 1, 0, 1, 2, 3});

    const std::vector<std::tuple<std::string, std::string, std::string>> refusals{
        {"deep.bmp", "PIC", "deep.bmp: 24-bit pictures have no palette"},
        {"deep.bmp", "NEW", "deep.bmp: 24-bit pictures have no palette"},
        {"narrow.bmp", "PIC",
         "narrow.bmp: the picture is 30 x 16 pixels; 2 sub-images of 16 x 16, 2 across, need 32 x "
         "16"},
        {"missing.bmp", "PIC", "missing.bmp: the file does not exist"},
        {"fits.bmp", "damaged.pack", "damaged.pack: the packed file does not unpack"},
    };
    for (const auto& [bitmap, target, message] : refusals) {
        const std::string what = whatOf<FileError>([&] {
            importPicture(folder / bitmap, folder / target, pictureFormat(16, 16, 5, 2, 2),
                          greyChoice());
        });
        EXPECT_NE(what.find(message), std::string::npos) << what;
    }
    EXPECT_EQ(readBytes(folder / "PIC"), old);
    EXPECT_FALSE(std::filesystem::exists(folder / "NEW"));
}

TEST_F(PictureFiles, ListsReadsAndNamesFiles) {
    writeBytes(folder / "b", {1});
    writeBytes(folder / "A", {2});
    writeBytes(folder / "a", {3});
    std::filesystem::create_directory(folder / "sub");
    implodeToFile(*streamOver(Bytes(100, 7)).bufferGet(), folder / "packed");
    EXPECT_EQ(listDataFiles(folder.path()), (std::vector<std::string>{"A", "a", "b", "packed"}));
    EXPECT_EQ(readPictureFile(folder / "packed"), Bytes(100, 7));
    EXPECT_EQ(readPictureFile(folder / "a"), Bytes{3});
    EXPECT_THROW(readPictureFile(folder / "missing"), FileError);
    EXPECT_THROW(listDataFiles(folder / "missing"), FileError);

    EXPECT_EQ(withBmpSuffix("pal"), "pal.bmp");
    EXPECT_EQ(withBmpSuffix("pal.bmp"), "pal.bmp");
    EXPECT_EQ(withBmpSuffix("PAL.BMP"), "PAL.BMP.bmp") << "compared case-sensitively";
    EXPECT_EQ(pictureExportName("tiles.PNG"), "tiles.PNG");
    EXPECT_EQ(pictureExportName("tiles.png.x"), "tiles.png.x.bmp");
    EXPECT_EQ(pictureExportName("L1BM"), "L1BM.bmp");
}

class PaletteList : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(app / "pal");
        writeBytes(app / "pal/world1.pal", {0x10, 0x20, 0x30, 0, 0xFF, 0xFF, 0xFF, 0});
        writeBytes(app / "pal/title.bmp", bitmapFile(1, 1, 8, {0x0000FF, 0xFF0000}, {1, 0, 0, 0}));
        writeBytes(app / "pal/Eight.BMP", bitmapFile(1, 1, 4, {0x00FF00}, {0, 0, 0, 0}));
        writeBitmap24(app / "pal/deep.bmp", 1, 1, [](int, int) { return 0u; });
        writeBytes(app / "pal/notes.txt", {'x'});
    }

    std::vector<std::string> names() const {
        std::vector<std::string> listed;
        for (const PaletteChoice& choice : listPaletteChoices(app.path())) {
            listed.push_back(choice.name);
        }
        return listed;
    }

    TempDir app;
};

TEST_F(PaletteList, FixedChoicesThenTheBitmapsThatHaveATable) {
    EXPECT_EQ(names(), (std::vector<std::string>{"Grey", "After", "World 1", "World 2", "World 3",
                                                 "World 4", "World 5", "World 6", "Project Q",
                                                 "Boss", "Eight.BMP", "title.bmp"}));
    const auto choices = listPaletteChoices(app.path());
    EXPECT_EQ(restoredPaletteChoice(choices, "title.bmp"), 11u);
    EXPECT_EQ(restoredPaletteChoice(choices, "gone.bmp"), 0u);
    EXPECT_TRUE(choices[1].storesPalette());
    EXPECT_FALSE(choices[2].storesPalette());
}

TEST_F(PaletteList, EachChoiceGivesItsPalette) {
    const auto choices = listPaletteChoices(app.path());
    const auto palette = [&](const std::string& name, const Bytes& bytes, const PictureFormat& f) {
        return choosePalette(choices[*findPaletteChoice(choices, name)], bytes, f);
    };
    const clsPalette grey = palette("Grey", {}, pictureFormat(8, 1, 5));
    EXPECT_EQ(std::tuple(grey.Count(), grey.Entry(0), grey.Entry(1), grey.Entry(31)),
              std::tuple(32, 0u, 0x080808u, 0xFFFFFFu));
    EXPECT_EQ(palette("Grey", {}, pictureFormat(8, 1, 1)).Entry(1), 0xFFFFFFu);

    // One 8 x 1 single-plane sub-image, then the game's words 0x0F80, 0x0123.
    Bytes bytes{0xFF, 0x0F, 0x80, 0x01, 0x23};
    bytes.resize(1 + 64, 0);
    const clsPalette after = palette("After", bytes, pictureFormat(8, 1, 1));
    EXPECT_EQ(std::tuple(after.Count(), after.Entry(0), after.Entry(1)),
              std::tuple(32, 0x0088FFu, 0x332211u));
    bytes.pop_back();
    EXPECT_EQ(palette("After", bytes, pictureFormat(8, 1, 1)).Entry(1), 0xFFFFFFu)
        << "no whole palette after the sub-images: grey";

    EXPECT_EQ(palette("World 1", {}, pictureFormat(8, 1, 5)).Entry(0), 0x302010u);
    EXPECT_EQ(palette("title.bmp", {}, pictureFormat(8, 1, 1)).Entry(1), 0x0000FFu);
    EXPECT_NE(whatOf<FileError>([&] {
                  palette("World 2", {}, pictureFormat(8, 1, 5));
              }).find("world2.pal"),
              std::string::npos);
    std::filesystem::remove(app / "pal/title.bmp");
    EXPECT_NE(whatOf<FileError>([&] {
                  palette("title.bmp", {}, pictureFormat(8, 1, 5));
              }).find("title.bmp: the file does not exist"),
              std::string::npos);
}

} // namespace
} // namespace marvek::test
