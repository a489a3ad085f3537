#include "graphics/clsBitmap.h"
#include "graphics/pictureFiles.h"
#include "graphics/pngFile.h"
#include "graphics/pngRead.h"
#include "support/TempDir.h"
#include "support/images.h"
#include "support/pictureFormats.h"
#include "support/sampleData.h"

#include <QImage>

#include <gtest/gtest.h>

#include <vector>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

class PngImport : public ::testing::Test {
protected:
    // A 32 x 16 picture of 32 colours, every index used.
    static clsSurface picture() {
        Bytes indices(32 * 16);
        for (std::size_t i = 0; i < indices.size(); ++i) {
            indices[i] = static_cast<std::uint8_t>((i * 7 + i / 32) % 32);
        }
        clsSurface image = planarImage(32, 16, indices);
        image.setPalette(gamePalette());
        return image;
    }

    Bytes imported(const std::filesystem::path& from, const std::string& name) {
        importPicture(from, folder / name, pictureFormat(16, 16, 5, 2, 2), afterChoice());
        return readPictureFile(folder / name);
    }

    std::string refusal(const std::filesystem::path& path) {
        clsBitmap bitmap;
        EXPECT_FALSE(bitmap.readFromFile(path));
        return bitmap.refusal();
    }

    TempDir folder;
};

TEST_F(PngImport, AnIndexedPngImportsToTheSameBytesAsTheSameBitmap) {
    const clsSurface image = picture();
    writePictureBitmap(image, folder / "in.bmp");
    writePngFile(image, folder / "in.png");
    const Bytes fromBitmap = imported(folder / "in.bmp", "FROMBMP");
    EXPECT_EQ(imported(folder / "in.png", "FROMPNG"), fromBitmap);
    EXPECT_EQ(fromBitmap.size(), 2 * 160 + 64U) << "the palette stored after the sub-images";
}

TEST_F(PngImport, PalettesOfFewerBitsAPixelReadAsAByteAnIndex) {
    // Qt writes a two-colour picture with one bit a pixel.
    QImage mono(19, 5, QImage::Format_Mono);
    mono.setColorTable({qRgb(200, 10, 10), qRgb(10, 10, 200)});
    for (int y = 0; y < mono.height(); ++y) {
        for (int x = 0; x < mono.width(); ++x) {
            mono.setPixel(x, y, (x + 2 * y) % 3 == 0 ? 1 : 0);
        }
    }
    const auto path = folder / "mono.png";
    ASSERT_TRUE(mono.save(QString::fromStdString(path.string()), "PNG"));
    const clsSurface read = decodeIndexedPng(readBytes(path));
    ASSERT_EQ(read.planarPixels().size(), 19U * 5U);
    for (std::size_t i = 0; i < read.planarPixels().size(); ++i) {
        EXPECT_EQ(read.planarPixels()[i], mono.pixelIndex(int(i % 19), int(i / 19))) << i;
    }
    EXPECT_EQ(read.palette().Count(), 2);
    EXPECT_EQ(read.palette().Entry(1), 0xC80A0Au) << "blue in the high byte";
}

TEST_F(PngImport, OtherPngsAreRefusedWithTheReason) {
    const std::vector<std::uint32_t> pixels(6, 0x00336699);
    writeBytes(folder / "rgb.png", encodePng(pixels, 3, 2));
    EXPECT_NE(refusal(folder / "rgb.png").find("true-colour"), std::string::npos);

    QImage grey(4, 4, QImage::Format_Grayscale8);
    grey.fill(100);
    ASSERT_TRUE(grey.save(QString::fromStdString((folder / "grey.png").string()), "PNG"));
    EXPECT_NE(refusal(folder / "grey.png").find("grey"), std::string::npos);

    Bytes cut = encodeIndexedPng(planarOf(picture()), 32, 16, gamePalette());
    cut.resize(cut.size() - 30);
    writeBytes(folder / "cut.png", cut);
    EXPECT_NE(refusal(folder / "cut.png").find("the PNG does not read"), std::string::npos);
}

} // namespace
} // namespace marvek::test
