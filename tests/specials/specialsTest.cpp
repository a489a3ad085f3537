#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "io/FileError.h"
#include "native/marvek.h"
#include "specials/SpecialDefinitionError.h"
#include "specials/clsSpecial.h"
#include "specials/clsSpecialSet.h"
#include "support/expect.h"
#include "support/world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace marvek::test {
namespace {

using ::testing::HasSubstr;

// Index 0 black, 1 red, 2 green, 3 blue.
const clsPalette fourColours = paletteOf({0x000000u, 0x0000FFu, 0x00FF00u, 0xFF0000u});

std::int32_t translucent(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return static_cast<std::int32_t>(createBGRA(r, g, b, 80));
}

// Left, top, width and height; all -1 without bounds.
std::array<std::int32_t, 4> boundsOf(const clsSpecial& special) {
    const auto& b = special.bounds;
    return b ? std::array{b->left, b->top, b->width, b->height} : std::array{-1, -1, -1, -1};
}

using Box = std::array<std::int32_t, 4>;

TEST(SpecialKeys, AbsentKeysTakeTheirDefaultsAndEveryKeyIsReadWhetherNumberOrText) {
    clsSpecial special = specialFrom(R"(Name = "bat"; Id = 7;)");
    EXPECT_EQ(std::tuple(special.Name, special.Color, special.Kind),
              std::tuple("BAT", clsSpecial::noColor, SpecialKind::nothing));
    special.Setup(clsSurface{}, clsPalette{}, {});
    EXPECT_EQ(std::pair(special.imgSize.width, special.imgSize.height), std::pair(16, 16));
    EXPECT_EQ(boundsOf(special), (Box{0, 0, 16, 16}));
    // Judged by the configured size of 0 x 0, as the editor always has.
    EXPECT_TRUE(special.isOversized && !special.hasImage);

    const clsSpecial full = specialFrom(R"(
        Name = "Gem ring"; Id = "12"; Color = "1,2,3"; Tag = "Pickups"; Kind = "Box";
        noExport = 1; imgFile = "Gem.bmp"; imgOffset = "32, 48"; imgSize = "8,9"; Offset = "-4, 2";)");
    EXPECT_EQ(std::tuple(full.Name, full.Id, full.Color, full.Tag, full.Kind, full.noExport),
              std::tuple("GEM RING", 12, translucent(1, 2, 3), "Pickups", SpecialKind::box, 1));
    EXPECT_EQ(full.imgFile, "Gem.bmp");
    EXPECT_EQ(std::pair(full.imgOffset.x, full.imgOffset.y), std::pair(32, 48));
    EXPECT_EQ(std::pair(full.imgSize.width, full.imgSize.height), std::pair(8, 9));
    EXPECT_EQ(std::pair(full.Offset.x, full.Offset.y), std::pair(-4, 2));
    // Kind words ignore case; unknown words mean nothing.
    EXPECT_EQ(clsSpecial::kindFromWord("SPRITE"), SpecialKind::sprite);
    EXPECT_EQ(clsSpecial::kindFromWord("image"), SpecialKind::image);
    EXPECT_EQ(clsSpecial::kindFromWord("NUMBER"), SpecialKind::number);
    EXPECT_EQ(clsSpecial::kindFromWord("sprites"), SpecialKind::nothing);
    EXPECT_EQ(clsSpecial::kindFromWord(""), SpecialKind::nothing);
}

TEST(SpecialValues, ColoursNeedExactlyThreePartsAndPairsSplitAtTheFirstComma) {
    EXPECT_EQ(clsSpecial::stringToColor(std::string("10, 20")), clsSpecial::noColor);
    EXPECT_EQ(clsSpecial::stringToColor(std::string("1,2,3,4")), clsSpecial::noColor);
    EXPECT_EQ(clsSpecial::stringToColor(std::string("")), clsSpecial::noColor);
    EXPECT_EQ(clsSpecial::stringToColor(std::string(" 10 , 20 ,30 ")), translucent(10, 20, 30));
    EXPECT_EQ(clsSpecial::stringToColor(std::string("255,&H80,0")), translucent(255, 128, 0));
    EXPECT_THROW(clsSpecial::stringToColor(std::string("256,0,0")), std::out_of_range);
    EXPECT_THROW(clsSpecial::stringToColor(std::string("red,0,0")), std::invalid_argument);

    std::int32_t first = 0;
    std::int32_t second = 0;
    clsSpecial::parsePair(" 12 ,  -7 ", first, second);
    EXPECT_EQ(std::pair(first, second), std::pair(12, -7));
    clsSpecial::parsePair("99", first, second);
    EXPECT_EQ(std::pair(first, second), std::pair(12, -7)) << "no comma leaves both";
    clsSpecial::parsePair("2.5,3.5", first, second);
    EXPECT_EQ(std::pair(first, second), std::pair(2, 4)) << "half way rounds to even";
    EXPECT_THROW(clsSpecial::parsePair("1,x", first, second), std::invalid_argument);
    EXPECT_THROW(clsSpecial::parsePair(",", first, second), std::invalid_argument);
    EXPECT_EQ(std::pair(first, second), std::pair(2, 4)) << "a failed pair changes nothing";
}

TEST(SpecialErrors, BadValuesAndIdsOutsideTheLevelFormatNameTheFileTheSpecialAndTheKey) {
    const std::string error = whatOf<SpecialDefinitionError>(
        [] { specialFrom(R"(Name = "Orc"; Id = 5; imgSize = "4, four";)"); });
    EXPECT_THAT(error, HasSubstr("test.cfg: special \"ORC\""));
    EXPECT_THAT(error, HasSubstr("imgSize"));
    EXPECT_THROW(specialFrom(R"(Id = "5b";)"), SpecialDefinitionError);
    EXPECT_THROW(specialFrom(R"(noExport = 256;)"), SpecialDefinitionError);
    EXPECT_THROW(specialFrom(R"(Color = "1,2,-1";)"), SpecialDefinitionError);
    EXPECT_THROW(specialFrom(R"(Name { })"), SpecialDefinitionError);
    // IDs outside the level format are rejected.
    EXPECT_EQ(specialFrom("Id = 63;").Id, 63);
    EXPECT_EQ(specialFrom("Id = 0;").Id, 0);
    EXPECT_EQ(specialFrom("Id = 4.5;").Id, 4);
    EXPECT_EQ(specialFrom(R"(Id = " &H3F ";)").Id, 63);
    EXPECT_THROW(specialFrom("Id = -1;"), SpecialDefinitionError);
    EXPECT_EQ(whatOf<SpecialDefinitionError>([] { specialFrom(R"(Name = "x"; Id = 70;)"); }),
              "test.cfg: special \"X\": Id 70 is outside 0 to 63");
}

TEST(SpecialBounds, OversizedFollowsTheEditorsRule) {
    const auto sprite = [](const std::string& offset) {
        clsSpecial special =
            specialFrom(R"(Kind = "sprite"; imgSize = "16,16"; Offset = ")" + offset + "\";");
        special.Setup(spriteSheet(), fourColours, {});
        return special;
    };
    EXPECT_FALSE(sprite("0,0").isOversized);
    EXPECT_TRUE(sprite("2,0").isOversized);
    EXPECT_FALSE(sprite("-8,-8").isOversized);
    EXPECT_TRUE(sprite("-16,0").isOversized);
    // The rectangle's union is the editor's own arithmetic.
    EXPECT_EQ(boundsOf(sprite("-8,-8")), (Box{-8, -8, 24, 24}));
    // One-cell kinds are oversized by their configured size yet drawn as one cell.
    clsSpecial box = specialFrom(R"(Kind = "box"; imgSize = "40,40";)");
    box.Setup(clsSurface{}, clsPalette{}, {});
    EXPECT_TRUE(box.isOversized);
    EXPECT_EQ(boundsOf(box), (Box{0, 0, 16, 16}));
}

TEST(SpecialSprite, IsCutFromTheSheetWithColourZeroTransparentAndMustLieOnIt) {
    clsSpecial special =
        specialFrom(R"(Kind = "sprite"; imgOffset = "300, 304"; imgSize = "20,16";)");
    special.Setup(spriteSheet({{301, 305, 1, 1}}), fourColours, {});
    ASSERT_TRUE(special.hasImage && special.isOversized);
    EXPECT_EQ(special.surface.width(), 20);
    EXPECT_EQ(surfaceGetPixel(special.surface.surface(), 1, 1), createBGRA(255, 0, 0, 0));
    EXPECT_EQ(surfaceGetPixel(special.surface.surface(), 0, 0) >> 24, 255u) << "transparent";
    // Without a palette there is no picture and no bounds.
    clsSpecial dark = specialFrom(R"(Kind = "sprite"; imgSize = "16,16";)");
    dark.Setup(spriteSheet(), clsPalette{}, {});
    EXPECT_FALSE(dark.hasImage);
    EXPECT_EQ(boundsOf(dark), (Box{-1, -1, -1, -1}));
    clsSpecial outside =
        specialFrom(R"(Name = "Big"; Kind = "sprite"; imgOffset = "310,0"; imgSize = "16,16";)");
    const std::string error =
        whatOf<SpecialDefinitionError>([&] { outside.Setup(spriteSheet(), fourColours, {}); });
    EXPECT_THAT(error, HasSubstr("test.cfg: special \"BIG\""));
    EXPECT_THAT(error, HasSubstr("outside the 320 x 320 sprite sheet"));
}

TEST(SpecialImage, TakesItsSizeFromTheBitmapFoundIgnoringCaseAndNeedsOne) {
    TempDir app;
    writeBitmap24(app / "bitmaps" / "Chest.BMP", 24, 10, [](auto, auto) { return 0xFF8000u; });
    clsSpecial special =
        specialFrom(R"(Kind = "image"; imgFile = "chest.bmp"; imgSize = "16,16";)");
    special.Setup(clsSurface{}, clsPalette{}, app.path());
    ASSERT_TRUE(special.hasImage);
    EXPECT_EQ(std::pair(special.imgSize.width, special.imgSize.height), std::pair(24, 10));
    EXPECT_TRUE(special.isOversized);
    EXPECT_EQ(surfaceGetPixel(special.surface.surface(), 3, 3) & 0xFFFFFFu, 0xFF8000u);

    writeText(app / "bitmaps" / "broken.bmp", "not a bitmap");
    for (const std::string file : {"missing.bmp", "broken.bmp"}) {
        clsSpecial broken =
            specialFrom(R"(Name = "Chest"; Kind = "image"; imgFile = ")" + file + "\";");
        const std::string error =
            whatOf<FileError>([&] { broken.Setup(clsSurface{}, clsPalette{}, app.path()); });
        EXPECT_THAT(error, HasSubstr(file));
        EXPECT_THAT(error, HasSubstr("\"CHEST\""));
    }
}

class SpecialSet : public ::testing::Test {
protected:
    std::filesystem::path config(const std::string& name, const std::string& text) const {
        const auto path = folder_ / name;
        writeText(path, text);
        return path;
    }

    void init() { set_.Init(spriteSheet(), gamePalette(), folder_.path()); }

    TempDir folder_;
    clsSpecialSet set_;
};

TEST_F(SpecialSet, AFileWithoutSpecialsIsAnErrorNamingItAndAFailedFileAddsNothing) {
    set_.loadFrom(config("common.cfg", R"(Specials { a { Id = 1; } })"));
    const auto path = config("level.cfg", R"(tileFile = "x";)");
    EXPECT_THAT(whatOf<SpecialDefinitionError>([&] { set_.loadFrom(path); }),
                HasSubstr(path.string()));
    EXPECT_THROW(set_.loadFrom(config("flat.cfg", "Specials = 3;")), SpecialDefinitionError);
    EXPECT_THROW(set_.loadFrom(config("bad.cfg", R"(Specials { a { Id = 2; } b { Id = 64; } })")),
                 SpecialDefinitionError);
    EXPECT_EQ(set_.count(), 1);
}

TEST_F(SpecialSet, TheDefinitionLoadedLastWinsAndEveryRowStays) {
    set_.loadFrom(
        config("common.cfg", R"(Specials { a { Name = "old"; Id = 5; } b { Id = 6; } })"));
    set_.loadFrom(config("unknown.cfg", R"(Specials { a { Name = "new"; Id = 5; } })"));
    init();
    EXPECT_EQ(set_.count(), 3);
    EXPECT_EQ(set_.getSpecialLUT(5), &set_.getSpecial(2));
    EXPECT_EQ(std::tuple(set_.getSpecial(2).Name, set_.getSpecial(0).Name),
              std::tuple("NEW", "OLD"));
    EXPECT_TRUE(set_.specialExists(6));
    EXPECT_FALSE(set_.specialExists(7) || set_.specialExists(64) || set_.getSpecialLUT(-1));
}

TEST_F(SpecialSet, IdZeroKeepsItsRowButStaysOutOfTableAndMaximaAndRowsAreHalfOpen) {
    set_.loadFrom(config("c.cfg", R"(Specials {
        wide { Name = "marker"; Kind = "sprite"; imgSize = "64,20"; }
        one { Id = 3; Kind = "box"; }
    })"));
    init();
    EXPECT_FALSE(set_.specialExists(0));
    EXPECT_EQ(set_.getSpecialLUT(0), nullptr);
    EXPECT_EQ(std::pair(set_.maxWidth(), set_.maxHeight()), std::pair(16, 16));
    EXPECT_EQ(set_.rowBottoms(), (std::vector<std::int32_t>{32, 60}));
    EXPECT_EQ(set_.paletteHeight(), 60);
    EXPECT_EQ(set_.getSelected(0)->Name, "MARKER");
    // Hit tests use half-open rows.
    EXPECT_FALSE(set_.getSelected(-1) || set_.getSelected(60));
    EXPECT_EQ(std::pair(set_.getSelected(31)->Id, set_.getSelected(32)->Id), std::pair(0, 3));
    EXPECT_EQ(set_.getSelected(59)->Id, 3);
}

class PaletteStrip : public SpecialSet {
protected:
    void SetUp() override {
        // Glyphs 4 x 7 pixels, all ink, so a name is a solid block.
        font_ = blockFont(folder_, 4, 7);
        ASSERT_TRUE(buffer_.Create(120, 80, 1));
        camera_.viewWidth = 100;
        set_.loadFrom(config("c.cfg", R"(Specials {
            a { Name = "A"; Id = 1; Kind = "box"; Color = "255,0,0"; }
            b { Name = "B"; Id = 2; Kind = "number"; }
            c { Name = "C"; Id = 3; }
        })"));
        init();
    }

    std::uint32_t pixel(std::int32_t x, std::int32_t y) const {
        return surfaceGetPixel(buffer_.surface(), x, y);
    }

    clsFont font_;
    clsBackBuffer buffer_;
    clsCamera camera_;
};

TEST_F(PaletteStrip, RowsAreStripedWithGapsAndTheSelectedIdIsRed) {
    set_.renderTo(buffer_, camera_, &set_.getSpecial(1), font_, true);
    // Rows are the camera's width and 26 high with a gap of 2; the third is even again.
    const Pixel striped[] = {{0, 0, 0x1F1F1F}, {99, 25, 0x1F1F1F}, {100, 0, 0},      {0, 26, 0},
                             {0, 27, 0},       {0, 28, 0x7F0000},  {0, 56, 0x1F1F1F}};
    expectPixels(buffer_.surface(), striped);
}

TEST_F(PaletteStrip, PicturesAndNamesSitInTheirRows) {
    set_.renderTo(buffer_, camera_, nullptr, font_, false);
    // Without blending, a translucent box is every other pixel of its colour,
    // 16 x 16. The number "2" is one glyph at x 10, centred: 28 + 13 - 3.5
    // rounds to 38. Names start at maxWidth (16) + 26.
    const Pixel drawn[] = {{10, 6, 0xFF0000},  {11, 6, 0x1F1F1F},  {24, 20, 0xFF0000},
                           {26, 20, 0x1F1F1F}, {24, 22, 0x1F1F1F}, {10, 38, 0xBFBFBF},
                           {10, 37, 0x0F0F0F}, {14, 38, 0x0F0F0F}, {42, 10, 0xFFFFFF},
                           {41, 10, 0x1F1F1F}};
    expectPixels(buffer_.surface(), drawn);
    // Blending mixes the box; with the row top at -1, -1 + 13 - 3.5 = 8.5 rounds to 8.
    camera_.y = 1;
    set_.renderTo(buffer_, camera_, nullptr, font_, true);
    const std::uint32_t mixed = pixel(11, 5);
    EXPECT_NE(mixed, 0xFF0000u);
    EXPECT_NE(mixed, 0x1F1F1Fu);
    EXPECT_EQ(mixed, pixel(10, 5));
    expectPixels(buffer_.surface(),
                 {{42, 8, 0xFFFFFF}, {42, 7, 0x1F1F1F}, {42, 14, 0xFFFFFF}, {42, 15, 0x1F1F1F}});
}

TEST_F(PaletteStrip, AnEmptySetHasNoRowsAndNoAnswersAndOnlyClears) {
    set_ = clsSpecialSet();
    set_.loadFrom(config("empty.cfg", "Specials { }"));
    init();
    EXPECT_EQ(std::pair(set_.count(), set_.paletteHeight()), std::pair(0, 0));
    EXPECT_FALSE(set_.getSelected(0) || set_.getSpecialLUT(1));
    surfaceFill(buffer_.surface(), 0x123456u);
    set_.renderTo(buffer_, camera_, nullptr, font_, true);
    expectPixels(buffer_.surface(), {{0, 0, 0}, {119, 79, 0}});
}

} // namespace
} // namespace marvek::test
