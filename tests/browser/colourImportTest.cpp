#include "graphics/colourMatch.h"
#include "graphics/paletteChoices.h"
#include "graphics/pictureCodec.h"
#include "graphics/pictureFiles.h"
#include "io/FileError.h"
#include "support/TempDir.h"
#include "support/expect.h"
#include "support/images.h"
#include "support/pictureFormats.h"
#include "support/sampleData.h"

#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;
using ::testing::HasSubstr;

QString qtPath(const fs::path& path) {
    return QString::fromStdString(path.string());
}

// Exported as the browser and the tool export, then changed as other
// editors save pictures; imported back, each must give the same bytes.
class ColourImport : public ::testing::Test {
protected:
    void SetUp() override {
        gamePalette().writeRawTo(folder / "world1.pal");
        writeBytes(folder / "L1BM", original);
        clsSurface picture = decodePicture(original, format);
        picture.setPalette(choosePalette(world1, original, format));
        writePictureFile(picture, folder / "L1BM.png");
        ASSERT_TRUE(exported.load(qtPath(folder / "L1BM.png")));
        ASSERT_EQ(exported.format(), QImage::Format_Indexed8);
    }

    // The import over a fresh copy of the level's file.
    Bytes imported(const fs::path& picture) {
        const fs::path target = folder / ("into-" + picture.filename().string());
        writeBytes(target, original);
        importPicture(picture, target, format, world1);
        return readPictureFile(target);
    }

    fs::path saved(const QImage& image, const std::string& name) {
        const fs::path path = folder / name;
        EXPECT_TRUE(image.save(qtPath(path), "PNG"));
        return path;
    }

    // The same picture with its palette in reverse order.
    QImage reordered() const {
        QImage image = exported.copy();
        const QVector<QRgb> table = exported.colorTable();
        QVector<QRgb> reversed(table.rbegin(), table.rend());
        image.setColorTable(reversed);
        const int last = static_cast<int>(table.size()) - 1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                image.setPixel(x, y, static_cast<unsigned>(last - exported.pixelIndex(x, y)));
            }
        }
        return image;
    }

    TempDir folder;
    const PictureFormat format = pictureFormat(16, 16, 5, 2, 2);
    const Bytes original = randomBytes(2 * 160, 22);
    const PaletteChoice world1{"World 1", PaletteChoice::Kind::rawFile, folder / "world1.pal"};
    QImage exported;
};

TEST_F(ColourImport, TheSamePictureImportsToTheSameBytesWhateverItsPalette) {
    EXPECT_EQ(imported(folder / "L1BM.png"), original) << "our own export";
    const QImage changed = reordered();
    ASSERT_NE(changed.colorTable(), exported.colorTable());
    EXPECT_EQ(imported(saved(changed, "reordered.png")), original);
    EXPECT_EQ(imported(saved(exported.convertToFormat(QImage::Format_RGB32), "rgb.png")), original);

    // Fully transparent pixels are colour 0, whatever colour they carry.
    QImage alpha = exported.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < alpha.height(); ++y) {
        for (int x = 0; x < alpha.width(); ++x) {
            if (exported.pixelIndex(x, y) == 0) {
                alpha.setPixel(x, y, qRgba(1, 2, 3, 0));
            }
        }
    }
    EXPECT_EQ(imported(saved(alpha, "rgba.png")), original);
}

TEST_F(ColourImport, AColourThePaletteLacksIsRefusedNamingThePixel) {
    QImage edited = exported.convertToFormat(QImage::Format_RGB32);
    edited.setPixel(5, 3, qRgb(0x12, 0x34, 0x57));
    edited.setPixel(9, 7, qRgb(0x12, 0x34, 0x57));
    const fs::path path = saved(edited, "edited.png");
    const std::string what =
        whatOf<FileError>([&] { importPicture(path, folder / "L1BM", format, world1); });
    EXPECT_THAT(what, HasSubstr("edited.png: the pixel at (5, 3) has the colour #123457, which "
                                "the palette \"World 1\" lacks"));
    EXPECT_EQ(readBytes(folder / "L1BM"), original) << "nothing written";
    EXPECT_FALSE(fs::exists(originalCopyPath(folder / "L1BM")));

    // An indexed picture with that colour in its palette, unused, still imports.
    QImage spare = reordered();
    QVector<QRgb> table = spare.colorTable();
    table.push_back(qRgb(0x12, 0x34, 0x57));
    spare.setColorTable(table);
    EXPECT_EQ(imported(saved(spare, "spare.png")), original);
}

TEST(ColourMatch, OwnIndexFirstThenTheLowestUsableOne) {
    // Colour 0x20 twice in the target; 0x50 only past the usable indices.
    const TargetPalette target{paletteOf({0x10, 0x20, 0x30, 0x20, 0x50}), "T", 0, 4};
    clsSurface picture = planarImage(4, 1, {3, 1, 0, 2});
    picture.setPalette(paletteOf({0x30, 0x20, 0x10, 0x20}));
    EXPECT_EQ(planarOf(matchIndexedPicture(picture, target, 4, 1)), (Bytes{3, 1, 2, 0}))
        << "index 3 keeps its place, which shows the same colour";

    const ColourPicture colours{5, 1, {0x20, 0x30, ColourPicture::transparent, 0x10, 0x50}};
    EXPECT_EQ(planarOf(matchColourPicture(colours, target, 4, 1)), (Bytes{1, 2, 0, 0, 0}))
        << "only the area is looked at";
    try {
        matchColourPicture(colours, target, 5, 1);
        ADD_FAILURE() << "a colour found only past the usable indices was taken";
    } catch (const MissingColourError& error) {
        EXPECT_EQ(error.x(), 4);
        EXPECT_EQ(error.colour(), 0x50u);
    }

    // Shifted pictures use indices 16 on; transparent is the first of them.
    TargetPalette shifted{gamePalette(), "G", 16, 32};
    const ColourPicture high{2, 1, {gamePalette().Entry(3), ColourPicture::transparent}};
    EXPECT_THROW(matchColourPicture(high, shifted, 2, 1), MissingColourError);
    shifted.palette.setEntry(19, gamePalette().Entry(3));
    EXPECT_EQ(planarOf(matchColourPicture(high, shifted, 2, 1)), (Bytes{19, 16}));
}

} // namespace
} // namespace marvek::test
