#include "specials/clsSpecialSet.h"

#include "native/marvek.h"
#include "specials/SpecialDefinitionError.h"
#include "specialsTestSupport.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marvek {
namespace {

using ::testing::HasSubstr;

class SpecialSet : public ::testing::Test {
protected:
    std::filesystem::path config(const std::string& name, const std::string& text) const {
        const auto path = folder_ / name;
        test::writeText(path, text);
        return path;
    }

    void init() { set_.Init(test::spriteSheet(), test::fourColourPalette(), folder_.path()); }

    test::TempDir folder_;
    clsSpecialSet set_;
};

TEST_F(SpecialSet, AnEmptySetHasNoRowsAndNoAnswers) {
    set_.loadFrom(config("empty.cfg", "Specials { }"));
    init();
    EXPECT_EQ(set_.count(), 0);
    EXPECT_EQ(set_.paletteHeight(), 0);
    EXPECT_EQ(set_.getSelected(0), nullptr);
    EXPECT_EQ(set_.getSpecialLUT(1), nullptr);
    EXPECT_FALSE(set_.specialExists(1));
}

TEST_F(SpecialSet, AFileWithoutSpecialsIsAnErrorNamingIt) {
    const auto path = config("level.cfg", R"(tileFile = "x";)");
    try {
        set_.loadFrom(path);
        FAIL() << "no error";
    } catch (const SpecialDefinitionError& error) {
        EXPECT_THAT(error.what(), HasSubstr(path.string()));
    }
    EXPECT_THROW(set_.loadFrom(config("flat.cfg", "Specials = 3;")), SpecialDefinitionError);
}

TEST_F(SpecialSet, AFailedFileAddsNothing) {
    set_.loadFrom(config("common.cfg", R"(Specials { a { Id = 1; } })"));
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
    ASSERT_NE(set_.getSpecialLUT(5), nullptr);
    EXPECT_EQ(set_.getSpecialLUT(5)->Name, "NEW");
    EXPECT_EQ(set_.getSpecialLUT(5), &set_.getSpecial(2));
    EXPECT_EQ(set_.getSpecial(0).Name, "OLD");
    EXPECT_TRUE(set_.specialExists(6));
    EXPECT_FALSE(set_.specialExists(7));
    EXPECT_FALSE(set_.specialExists(64));
    EXPECT_EQ(set_.getSpecialLUT(-1), nullptr);
}

TEST_F(SpecialSet, IdZeroKeepsItsRowButStaysOutOfTableAndMaxima) {
    set_.loadFrom(config("c.cfg", R"(Specials {
        wide { Name = "marker"; Kind = "sprite"; imgSize = "64,20"; }
        one { Id = 3; Kind = "box"; }
    })"));
    init();
    EXPECT_FALSE(set_.specialExists(0));
    EXPECT_EQ(set_.getSpecialLUT(0), nullptr);
    EXPECT_EQ(set_.maxWidth(), 16);
    EXPECT_EQ(set_.maxHeight(), 16);
    EXPECT_EQ(set_.rowBottoms(), (std::vector<std::int32_t>{32, 60}));
    EXPECT_EQ(set_.paletteHeight(), 60);
    EXPECT_EQ(set_.getSelected(0)->Name, "MARKER");
}

TEST_F(SpecialSet, HitTestUsesHalfOpenRows) {
    set_.loadFrom(config("c.cfg", R"(Specials { a { Id = 1; } b { Id = 2; } })"));
    init();
    EXPECT_EQ(set_.getSelected(-1), nullptr);
    EXPECT_EQ(set_.getSelected(0)->Id, 1);
    EXPECT_EQ(set_.getSelected(27)->Id, 1);
    EXPECT_EQ(set_.getSelected(28)->Id, 2);
    EXPECT_EQ(set_.getSelected(55)->Id, 2);
    EXPECT_EQ(set_.getSelected(56), nullptr);
}

class PaletteStrip : public SpecialSet {
protected:
    void SetUp() override {
        // Glyphs 4 x 7 pixels, all ink, so a name is a solid block.
        test::writeBitmap24(folder_ / "font.bmp", 64, 112, [](auto, auto) { return 0xFFFFFFu; });
        ASSERT_TRUE(font_.loadFromFile(folder_ / "font.bmp"));
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
    EXPECT_EQ(pixel(0, 0), 0x1F1F1Fu);
    EXPECT_EQ(pixel(99, 25), 0x1F1F1Fu);
    EXPECT_EQ(pixel(100, 0), 0u) << "rows are the camera's width";
    EXPECT_EQ(pixel(0, 26), 0u) << "gap";
    EXPECT_EQ(pixel(0, 27), 0u) << "gap";
    EXPECT_EQ(pixel(0, 28), 0x7F0000u) << "selected";
    EXPECT_EQ(pixel(0, 56), 0x1F1F1Fu) << "third row is even again";
}

TEST_F(PaletteStrip, PicturesAndNamesSitInTheirRows) {
    set_.renderTo(buffer_, camera_, nullptr, font_, false);
    // Without blending, a translucent box is every other pixel of its colour.
    EXPECT_EQ(pixel(10, 6), 0xFF0000u);
    EXPECT_EQ(pixel(11, 6), 0x1F1F1Fu);
    EXPECT_EQ(pixel(24, 20), 0xFF0000u);
    EXPECT_EQ(pixel(26, 20), 0x1F1F1Fu) << "16 pixels wide";
    EXPECT_EQ(pixel(24, 22), 0x1F1F1Fu) << "16 pixels high";
    // The number "2" is one glyph at x 10, centred: 28 + 13 - 3.5 rounds to 38.
    EXPECT_EQ(pixel(10, 38), 0xBFBFBFu);
    EXPECT_EQ(pixel(10, 37), 0x0F0F0Fu);
    EXPECT_EQ(pixel(14, 38), 0x0F0F0Fu);
    // Names start at maxWidth + 26.
    EXPECT_EQ(set_.maxWidth(), 16);
    EXPECT_EQ(pixel(42, 10), 0xFFFFFFu);
    EXPECT_EQ(pixel(41, 10), 0x1F1F1Fu);
}

TEST_F(PaletteStrip, BlendingMixesTheBoxAndCentringRoundsHalfToEven) {
    camera_.y = 1;
    set_.renderTo(buffer_, camera_, nullptr, font_, true);
    const std::uint32_t mixed = pixel(11, 5);
    EXPECT_NE(mixed, 0xFF0000u);
    EXPECT_NE(mixed, 0x1F1F1Fu);
    EXPECT_EQ(mixed, pixel(10, 5));
    // Row top -1: -1 + 13 - 3.5 = 8.5 rounds to 8.
    EXPECT_EQ(pixel(42, 8), 0xFFFFFFu);
    EXPECT_EQ(pixel(42, 7), 0x1F1F1Fu);
    EXPECT_EQ(pixel(42, 14), 0xFFFFFFu);
    EXPECT_EQ(pixel(42, 15), 0x1F1F1Fu);
}

TEST_F(PaletteStrip, AnEmptySetOnlyClears) {
    surfaceFill(buffer_.surface(), 0x123456u);
    clsSpecialSet empty;
    empty.renderTo(buffer_, camera_, nullptr, font_, true);
    EXPECT_EQ(pixel(0, 0), 0u);
    EXPECT_EQ(pixel(119, 79), 0u);
}

} // namespace
} // namespace marvek
