#include "graphics/pictureCodec.h"
#include "graphics/clsBackBuffer.h"
#include "native/marvek.h"
#include "support/expect.h"
#include "support/images.h"
#include "support/pictureFormats.h"
#include "support/sampleData.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>
#include <vector>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(PictureFormat, LimitsAndTheOffsetStep) {
    const std::vector<std::tuple<PictureParameter, std::int32_t, std::int32_t>> ranges{
        {PictureParameter::width, 1, 1024}, {PictureParameter::height, 1, 1024},
        {PictureParameter::planes, 1, 8},   {PictureParameter::count, 1, 1024},
        {PictureParameter::across, 1, 640}, {PictureParameter::offset, 0, INT32_MAX}};
    for (const auto& [parameter, minimum, maximum] : ranges) {
        EXPECT_EQ(clampParameter(parameter, std::int64_t{minimum} - 5), minimum);
        EXPECT_EQ(clampParameter(parameter, std::int64_t{maximum} + 1), maximum);
        EXPECT_EQ(clampParameter(parameter, minimum + 1), minimum + 1);
    }
    EXPECT_FALSE(isValidFormat(pictureFormat(16, 16, 9)));
    EXPECT_TRUE(isValidFormat(clampedFormat(pictureFormat(0, 2000, 9, 0, 641, -1))));

    // Width / 8 rounded half to even, at least 1.
    for (const auto& [width, step] :
         std::vector<std::pair<int, int>>{{320, 40}, {12, 2}, {20, 2}, {28, 4}, {4, 1}, {1, 1}}) {
        EXPECT_EQ(offsetStep(width), step) << width;
    }
}

TEST(PictureFormat, GridAndEnd) {
    const PictureGrid grid = pictureGrid(pictureFormat(16, 8, 5, 45, 20));
    EXPECT_EQ(std::tuple(grid.columns, grid.rows, grid.width, grid.height),
              std::tuple(20, 3, 320, 24));
    EXPECT_EQ(pictureGrid(pictureFormat(16, 8, 5, 3, 20)).width, 48) << "no empty columns";
    EXPECT_EQ(pictureEnd(pictureFormat(3, 3, 1, 1, 1, 10)), 12u) << "9 bits take two bytes";
}

TEST(DecodePicture, PlacesSubImagesAcrossThenDown) {
    // 2 x 1 sub-images of 2 planes, 3 of them, 2 across: each takes 4 bits.
    // Sub-image 0: pixels 1, 2; sub-image 1: 3, 0; sub-image 2: 2, 2.
    const Bytes bytes{0b1001'1010, 0b0011'0000};
    const clsSurface picture = decodePicture(bytes, pictureFormat(2, 1, 2, 3, 2));
    ASSERT_EQ(std::pair(picture.planarWidth(), picture.planarHeight()), std::pair(4, 2));
    EXPECT_EQ(planarOf(picture), (Bytes{1, 2, 3, 0, 2, 2, 0, 0}));
}

TEST(DecodePicture, OffsetShiftAndBitsPastTheEnd) {
    const Bytes bytes{0xEE, 0xFF, 0x80};
    PictureFormat f = pictureFormat(8, 1, 2, 1, 1, 1);
    EXPECT_EQ(planarOf(decodePicture(bytes, f)), (Bytes{3, 1, 1, 1, 1, 1, 1, 1}))
        << "plane 1 is the third byte";
    f.offset = 2;
    EXPECT_EQ(planarOf(decodePicture(bytes, f)), (Bytes{1, 0, 0, 0, 0, 0, 0, 0}));
    f.offset = 100;
    f.shiftColours = true;
    EXPECT_EQ(planarOf(decodePicture(bytes, f)), Bytes(8, 16));
}

TEST(DecodePicture, RefusesAPictureTooLargeToDraw) {
    EXPECT_NE(whatOf<std::length_error>([] {
                  decodePicture({}, pictureFormat(1024, 1, 1, 640, 640));
              }).find("655360 x 1 pixels"),
              std::string::npos);
    EXPECT_NO_THROW(decodePicture({}, pictureFormat(1024, 8, 8, 32, 32)));
    EXPECT_THROW(decodePicture({}, pictureFormat(1024, 1024, 8, 1024, 32)), std::length_error);
}

// Random bytes exactly as long as the sub-images, the unused bits of the
// last byte clear, so that decoding and encoding must give them back.
Bytes exactBytes(const PictureFormat& f, std::uint32_t seed) {
    Bytes bytes = randomBytes(static_cast<std::size_t>(pictureEnd(f)), seed);
    const auto spare = (8 - subImageBits(f) * static_cast<std::uint64_t>(f.count) % 8) % 8;
    bytes.back() = static_cast<std::uint8_t>(bytes.back() >> spare << spare);
    return bytes;
}

TEST(EncodePicture, GivesBackTheBytesForEveryPlaneCountAndLayout) {
    const std::vector<PictureFormat> layouts{
        pictureFormat(16, 16, 1, 20, 20), pictureFormat(3, 3, 1, 7, 3), pictureFormat(320, 4, 1),
        pictureFormat(5, 7, 1, 11, 4), pictureFormat(8, 2, 1, 9, 2)};
    for (PictureFormat f : layouts) {
        for (f.planes = 1; f.planes <= 8; ++f.planes) {
            const Bytes original =
                exactBytes(f, static_cast<std::uint32_t>(f.planes * 97 + f.width));
            const clsSurface picture = decodePicture(original, f);
            Bytes encoded;
            encodePicture(picture, f, encoded);
            EXPECT_EQ(encoded, original) << f.width << "x" << f.height << "x" << f.planes;
        }
    }
}

TEST(EncodePicture, ShiftsBackAndKeepsEveryBitAroundTheSubImages) {
    PictureFormat f = pictureFormat(3, 1, 2, 1, 1, 1);
    f.shiftColours = true;
    // 6 bits at byte 1: the two bits after them and the bytes around stay.
    const Bytes original{0xAA, 0b1011'0111, 0x55};
    const clsSurface picture = decodePicture(original, f);
    EXPECT_EQ(planarOf(picture), (Bytes{19, 16, 19}));
    Bytes encoded = original;
    encodePicture(picture, f, encoded);
    EXPECT_EQ(encoded, original);

    const auto wide = planarImage(4, 1, {16, 16, 16, 16});
    encodePicture(wide, f, encoded);
    EXPECT_EQ(encoded, (Bytes{0xAA, 0b0000'0011, 0x55}));
    EXPECT_THROW(encodePicture(planarImage(2, 1, {0, 0}), f, encoded), std::invalid_argument);
}

TEST(DrawPicture, FillsTheBackBufferWithThePalettesColours) {
    renderInit();
    clsSurface picture = planarImage(3, 1, {0, 1, 7});
    clsBackBuffer backBuffer;
    ASSERT_TRUE(drawPicture(picture, paletteOf({0x0000FF, 0x00FF00}), backBuffer));
    EXPECT_EQ(std::pair(backBuffer.width(), backBuffer.height()), std::pair(3, 1));
    // An index the palette lacks leaves the cleared buffer.
    expectPixels(backBuffer.surface(), {{0, 0, createBGRA(255, 0, 0, 0)},
                                        {1, 0, createBGRA(0, 255, 0, 0)},
                                        {2, 0, createBGRA(0, 0, 0, 0)}});
    EXPECT_FALSE(drawPicture(picture, clsPalette{}, backBuffer));
}

} // namespace
} // namespace marvek::test
