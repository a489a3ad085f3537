#include "specials/clsSpecial.h"

#include "io/FileError.h"
#include "native/marvek.h"
#include "specials/SpecialDefinitionError.h"
#include "specialsTestSupport.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace marvek {
namespace {

using test::specialFrom;
using ::testing::HasSubstr;

std::int32_t translucent(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return static_cast<std::int32_t>(createBGRA(r, g, b, 80));
}

TEST(SpecialKeys, AbsentKeysTakeTheirDefaults) {
    clsSpecial special = specialFrom(R"(Name = "bat"; Id = 7;)");
    EXPECT_EQ(special.Name, "BAT");
    EXPECT_EQ(special.Id, 7);
    EXPECT_EQ(special.Color, clsSpecial::noColor);
    EXPECT_EQ(special.Tag, "");
    EXPECT_EQ(special.Kind, SpecialKind::nothing);
    EXPECT_EQ(special.noExport, 0);
    EXPECT_EQ(special.imgSize.width, 0);
    special.Setup(clsSurface{}, clsPalette{}, {});
    EXPECT_EQ(special.imgSize.width, 16);
    EXPECT_EQ(special.imgSize.height, 16);
    ASSERT_TRUE(special.bounds);
    EXPECT_EQ(special.bounds->left, 0);
    EXPECT_EQ(special.bounds->top, 0);
    EXPECT_EQ(special.bounds->width, 16);
    EXPECT_EQ(special.bounds->height, 16);
    // Judged by the configured size of 0 x 0, as the editor always has.
    EXPECT_TRUE(special.isOversized);
    EXPECT_FALSE(special.hasImage);
}

TEST(SpecialKeys, EveryKeyIsReadWhetherNumberOrText) {
    const clsSpecial special = specialFrom(R"(
        Name = "Gem ring"; Id = "12"; Color = "1,2,3"; Tag = "Pickups"; Kind = "Box";
        noExport = 1; imgFile = "Gem.bmp"; imgOffset = "32, 48"; imgSize = "8,9"; Offset = "-4, 2";)");
    EXPECT_EQ(special.Name, "GEM RING");
    EXPECT_EQ(special.Id, 12);
    EXPECT_EQ(special.Color, translucent(1, 2, 3));
    EXPECT_EQ(special.Tag, "Pickups");
    EXPECT_EQ(special.Kind, SpecialKind::box);
    EXPECT_EQ(special.noExport, 1);
    EXPECT_EQ(special.imgFile, "Gem.bmp");
    EXPECT_EQ(special.imgOffset.x, 32);
    EXPECT_EQ(special.imgOffset.y, 48);
    EXPECT_EQ(special.imgSize.width, 8);
    EXPECT_EQ(special.imgSize.height, 9);
    EXPECT_EQ(special.Offset.x, -4);
    EXPECT_EQ(special.Offset.y, 2);
}

TEST(SpecialKeys, KindWordsIgnoreCaseAndUnknownWordsMeanNothing) {
    EXPECT_EQ(clsSpecial::kindFromWord("SPRITE"), SpecialKind::sprite);
    EXPECT_EQ(clsSpecial::kindFromWord("Sprite"), SpecialKind::sprite);
    EXPECT_EQ(clsSpecial::kindFromWord("image"), SpecialKind::image);
    EXPECT_EQ(clsSpecial::kindFromWord("NUMBER"), SpecialKind::number);
    EXPECT_EQ(clsSpecial::kindFromWord("bOx"), SpecialKind::box);
    EXPECT_EQ(clsSpecial::kindFromWord("sprites"), SpecialKind::nothing);
    EXPECT_EQ(clsSpecial::kindFromWord(""), SpecialKind::nothing);
}

TEST(SpecialValues, ColoursNeedExactlyThreeParts) {
    EXPECT_EQ(clsSpecial::stringToColor(std::string("10, 20")), clsSpecial::noColor);
    EXPECT_EQ(clsSpecial::stringToColor(std::string("1,2,3,4")), clsSpecial::noColor);
    EXPECT_EQ(clsSpecial::stringToColor(std::string("")), clsSpecial::noColor);
    EXPECT_EQ(clsSpecial::stringToColor(std::string(" 10 , 20 ,30 ")), translucent(10, 20, 30));
    EXPECT_EQ(clsSpecial::stringToColor(std::string("255,&H80,0")), translucent(255, 128, 0));
    EXPECT_THROW(clsSpecial::stringToColor(std::string("256,0,0")), std::out_of_range);
    EXPECT_THROW(clsSpecial::stringToColor(std::string("red,0,0")), std::invalid_argument);
}

TEST(SpecialValues, PairsSplitAtTheFirstComma) {
    std::int32_t first = 0;
    std::int32_t second = 0;
    clsSpecial::parsePair(" 12 ,  -7 ", first, second);
    EXPECT_EQ(first, 12);
    EXPECT_EQ(second, -7);
    clsSpecial::parsePair("99", first, second);
    EXPECT_EQ(first, 12) << "no comma leaves both";
    EXPECT_EQ(second, -7);
    clsSpecial::parsePair("2.5,3.5", first, second);
    EXPECT_EQ(first, 2) << "half way rounds to even";
    EXPECT_EQ(second, 4);
    EXPECT_THROW(clsSpecial::parsePair("1,x", first, second), std::invalid_argument);
    EXPECT_THROW(clsSpecial::parsePair(",", first, second), std::invalid_argument);
    EXPECT_EQ(first, 2) << "a failed pair changes nothing";
}

TEST(SpecialErrors, BadValuesNameTheFileTheSpecialAndTheKey) {
    try {
        specialFrom(R"(Name = "Orc"; Id = 5; imgSize = "4, four";)");
        FAIL() << "no error";
    } catch (const SpecialDefinitionError& error) {
        EXPECT_THAT(error.what(), HasSubstr("test.cfg"));
        EXPECT_THAT(error.what(), HasSubstr("\"ORC\""));
        EXPECT_THAT(error.what(), HasSubstr("imgSize"));
    }
    EXPECT_THROW(specialFrom(R"(Id = "5b";)"), SpecialDefinitionError);
    EXPECT_THROW(specialFrom(R"(noExport = 256;)"), SpecialDefinitionError);
    EXPECT_THROW(specialFrom(R"(Color = "1,2,-1";)"), SpecialDefinitionError);
    EXPECT_THROW(specialFrom(R"(Name { })"), SpecialDefinitionError);
}

TEST(SpecialErrors, IdsOutsideTheLevelFormatAreRejected) {
    EXPECT_EQ(specialFrom("Id = 63;").Id, 63);
    EXPECT_EQ(specialFrom("Id = 0;").Id, 0);
    EXPECT_EQ(specialFrom("Id = 4.5;").Id, 4);
    EXPECT_EQ(specialFrom(R"(Id = " &H3F ";)").Id, 63);
    EXPECT_THROW(specialFrom("Id = -1;"), SpecialDefinitionError);
    try {
        specialFrom(R"(Name = "x"; Id = 70;)");
        FAIL() << "no error";
    } catch (const SpecialDefinitionError& error) {
        EXPECT_STREQ(error.what(), "test.cfg: special \"X\": Id 70 is outside 0 to 63");
    }
}

TEST(SpecialBounds, OversizedFollowsTheEditorsRule) {
    const auto sprite = [](const std::string& offset) {
        clsSpecial special =
            specialFrom(R"(Kind = "sprite"; imgSize = "16,16"; Offset = ")" + offset + "\";");
        special.Setup(test::spriteSheet(), test::fourColourPalette(), {});
        return special;
    };
    EXPECT_FALSE(sprite("0,0").isOversized);
    EXPECT_TRUE(sprite("2,0").isOversized);
    EXPECT_FALSE(sprite("-8,-8").isOversized);
    EXPECT_TRUE(sprite("-16,0").isOversized);

    const clsSpecial shifted = sprite("-8,-8");
    ASSERT_TRUE(shifted.bounds);
    // The rectangle's union is the editor's own arithmetic.
    EXPECT_EQ(shifted.bounds->left, -8);
    EXPECT_EQ(shifted.bounds->top, -8);
    EXPECT_EQ(shifted.bounds->width, 24);
    EXPECT_EQ(shifted.bounds->height, 24);
}

TEST(SpecialBounds, OneCellKindsAreOversizedFromTheirConfiguredSizeYetDrawnAsOneCell) {
    clsSpecial box = specialFrom(R"(Kind = "box"; imgSize = "40,40";)");
    box.Setup(clsSurface{}, clsPalette{}, {});
    EXPECT_TRUE(box.isOversized);
    EXPECT_EQ(box.imgSize.width, 16);
    EXPECT_EQ(box.imgSize.height, 16);
    EXPECT_EQ(box.bounds->width, 16);
}

TEST(SpecialSprite, IsCutFromTheSheetWithColourZeroTransparent) {
    clsSpecial special =
        specialFrom(R"(Kind = "sprite"; imgOffset = "300, 304"; imgSize = "20,16";)");
    special.Setup(test::spriteSheet(301, 305, 1), test::fourColourPalette(), {});
    ASSERT_TRUE(special.hasImage);
    EXPECT_EQ(special.surface.width(), 20);
    EXPECT_EQ(surfaceGetPixel(special.surface.surface(), 1, 1), createBGRA(255, 0, 0, 0));
    EXPECT_EQ(surfaceGetPixel(special.surface.surface(), 0, 0) >> 24, 255u);
    EXPECT_TRUE(special.isOversized);
}

TEST(SpecialSprite, ARectangleOutsideTheSheetIsAnError) {
    clsSpecial special =
        specialFrom(R"(Name = "Big"; Kind = "sprite"; imgOffset = "310,0"; imgSize = "16,16";)");
    try {
        special.Setup(test::spriteSheet(), test::fourColourPalette(), {});
        FAIL() << "no error";
    } catch (const SpecialDefinitionError& error) {
        EXPECT_THAT(error.what(), HasSubstr("test.cfg: special \"BIG\""));
        EXPECT_THAT(error.what(), HasSubstr("outside the 320 x 320 sprite sheet"));
    }
}

TEST(SpecialSprite, WithoutPaletteHasNoPictureAndNoBounds) {
    clsSpecial special = specialFrom(R"(Kind = "sprite"; imgSize = "16,16";)");
    special.Setup(test::spriteSheet(), clsPalette{}, {});
    EXPECT_FALSE(special.hasImage);
    EXPECT_FALSE(special.bounds);
}

TEST(SpecialImage, TakesItsSizeFromTheBitmapFoundIgnoringCase) {
    test::TempDir app;
    test::writeBitmap24(app / "bitmaps" / "Chest.BMP", 24, 10,
                        [](auto, auto) { return 0xFF8000u; });
    clsSpecial special =
        specialFrom(R"(Kind = "image"; imgFile = "chest.bmp"; imgSize = "16,16";)");
    special.Setup(clsSurface{}, clsPalette{}, app.path());
    ASSERT_TRUE(special.hasImage);
    EXPECT_EQ(special.imgSize.width, 24);
    EXPECT_EQ(special.imgSize.height, 10);
    EXPECT_TRUE(special.isOversized);
    EXPECT_EQ(surfaceGetPixel(special.surface.surface(), 3, 3) & 0xFFFFFFu, 0xFF8000u);
}

TEST(SpecialImage, AMissingOrBrokenBitmapIsAFileError) {
    test::TempDir app;
    test::writeText(app / "bitmaps" / "broken.bmp", "not a bitmap");
    for (const std::string file : {"missing.bmp", "broken.bmp"}) {
        clsSpecial special =
            specialFrom(R"(Name = "Chest"; Kind = "image"; imgFile = ")" + file + "\";");
        try {
            special.Setup(clsSurface{}, clsPalette{}, app.path());
            FAIL() << "no error for " << file;
        } catch (const FileError& error) {
            EXPECT_THAT(error.what(), HasSubstr(file));
            EXPECT_THAT(error.what(), HasSubstr("\"CHEST\""));
        }
    }
}

} // namespace
} // namespace marvek
