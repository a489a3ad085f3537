#include "tool/sample/SpriteArt.h"

#include <array>
#include <stdexcept>
#include <string>

namespace marvek::sample {
namespace {

constexpr std::array<SpriteRect, 18> rects{{
    {"player", 0, 0, 16, 32},
    {"flag", 16, 0, 16, 32},
    {"snowman", 32, 0, 16, 32},
    {"imp", 48, 0, 16, 32},
    {"coin", 0, 32, 16, 16},
    {"gem", 16, 32, 16, 16},
    {"heart", 32, 32, 16, 16},
    {"key", 48, 32, 16, 16},
    {"spring", 64, 32, 16, 16},
    {"slime", 80, 32, 16, 16},
    {"penguin", 96, 32, 16, 16},
    {"bubble", 112, 32, 16, 16},
    {"spikeball", 128, 32, 16, 16},
    {"beetle", 0, 48, 24, 16},
    {"bird", 24, 48, 24, 16},
    {"bat", 48, 48, 24, 16},
    {"lift", 72, 48, 48, 16},
    {"golem", 0, 64, 32, 32},
}};

void eye(Canvas& c, std::int32_t x, std::int32_t y) {
    c.fill(x, y, 2, 3, ink::white);
    c.set(x + 1, y + 1, ink::outline);
    c.set(x + 1, y + 2, ink::outline);
}

Canvas player() {
    Canvas c(16, 32);
    c.ellipse(3, 3, 10, 10, ink::skin); // head
    c.fill(2, 2, 12, 4, ink::red);      // cap
    c.fill(9, 5, 6, 2, ink::red);       // peak
    c.fill(3, 2, 4, 1, ink::pink);
    eye(c, 9, 7);
    c.fill(8, 11, 4, 1, ink::woodDark); // smile
    c.fill(3, 13, 10, 9, ink::blue);    // body
    c.fill(4, 14, 2, 6, ink::white);
    c.fill(1, 14, 2, 7, ink::skin); // arms
    c.fill(13, 14, 2, 7, ink::skin);
    c.fill(3, 21, 10, 2, ink::woodDark); // belt
    c.fill(7, 21, 2, 2, ink::gold);
    c.fill(3, 23, 4, 6, ink::blue); // legs
    c.fill(9, 23, 4, 6, ink::blue);
    c.fill(2, 29, 5, 2, ink::woodDark); // boots
    c.fill(9, 29, 6, 2, ink::woodDark);
    return c;
}

Canvas flag() {
    Canvas c(16, 32);
    c.fill(2, 2, 2, 29, ink::stoneLight);
    c.fill(3, 2, 1, 29, ink::stone);
    c.ellipse(1, 0, 4, 4, ink::gold);
    for (std::int32_t row = 0; row < 10; ++row) {
        c.fill(4, 4 + row, 11 - (row > 4 ? row - 4 : 4 - row), 1, ink::red);
    }
    c.fill(5, 6, 3, 1, ink::pink);
    c.fill(0, 29, 7, 3, ink::stoneDark);
    return c;
}

Canvas snowman() {
    Canvas c(16, 32);
    c.ellipse(1, 17, 14, 14, ink::white);
    c.ellipse(3, 7, 10, 11, ink::white);
    c.ellipse(4, 10, 2, 2, ink::stoneLight);
    c.fill(4, 0, 8, 6, ink::outline); // hat
    c.fill(2, 5, 12, 2, ink::outline);
    c.fill(4, 4, 8, 1, ink::red);
    c.set(5, 10, ink::outline);
    c.set(9, 10, ink::outline);
    c.fill(7, 12, 4, 1, ink::gold); // carrot
    c.fill(6, 20, 2, 2, ink::outline);
    c.fill(6, 25, 2, 2, ink::outline);
    c.line(0, 18, 3, 21, ink::woodDark);
    c.line(15, 18, 12, 21, ink::woodDark);
    return c;
}

Canvas imp() {
    Canvas c(16, 32);
    c.ellipse(2, 8, 12, 12, ink::red);
    c.line(3, 9, 1, 4, ink::red); // horns
    c.line(12, 9, 14, 4, ink::red);
    eye(c, 5, 12);
    eye(c, 10, 12);
    c.fill(6, 17, 5, 1, ink::white);
    c.fill(4, 19, 8, 7, ink::red);
    c.fill(5, 20, 6, 4, ink::gold);
    c.fill(4, 26, 3, 5, ink::red);
    c.fill(9, 26, 3, 5, ink::red);
    c.line(12, 22, 15, 27, ink::woodDark); // tail
    return c;
}

Canvas coin() {
    Canvas c(16, 16);
    c.ellipse(3, 1, 10, 14, ink::goldDark);
    c.ellipse(4, 2, 7, 12, ink::gold);
    c.fill(7, 4, 2, 8, ink::goldDark);
    c.set(5, 3, ink::white);
    c.set(5, 4, ink::white);
    return c;
}

Canvas gem() {
    Canvas c(16, 16);
    for (std::int32_t row = 0; row < 5; ++row) {
        c.fill(5 - row, 1 + row, 6 + 2 * row, 1, ink::pink);
    }
    for (std::int32_t row = 0; row < 8; ++row) {
        c.fill(1 + row, 6 + row, 14 - 2 * row, 1, ink::red);
    }
    c.line(5, 2, 3, 5, ink::white);
    c.set(8, 3, ink::white);
    return c;
}

Canvas heart() {
    Canvas c(16, 16);
    c.ellipse(1, 2, 8, 8, ink::red);
    c.ellipse(7, 2, 8, 8, ink::red);
    for (std::int32_t row = 0; row < 7; ++row) {
        c.fill(1 + row, 7 + row, 14 - 2 * row, 1, ink::red);
    }
    c.fill(3, 4, 2, 2, ink::pink);
    return c;
}

Canvas key() {
    Canvas c(16, 16);
    c.ellipse(1, 4, 8, 8, ink::gold);
    c.ellipse(3, 6, 4, 4, ink::clear);
    c.fill(8, 7, 7, 2, ink::gold);
    c.fill(12, 9, 2, 3, ink::gold);
    c.fill(9, 9, 2, 2, ink::goldDark);
    return c;
}

Canvas spring() {
    Canvas c(16, 16);
    c.fill(1, 2, 14, 3, ink::red);
    c.fill(1, 2, 14, 1, ink::pink);
    for (std::int32_t y = 5; y < 13; y += 2) {
        c.fill(4, y, 8, 1, ink::stoneLight);
        c.fill(3, y + 1, 10, 1, ink::stone);
    }
    c.fill(2, 13, 12, 3, ink::stoneDark);
    return c;
}

Canvas slime() {
    Canvas c(16, 16);
    c.ellipse(1, 4, 14, 14, ink::green);
    c.fill(1, 12, 14, 3, ink::green);
    c.ellipse(3, 6, 4, 3, ink::white);
    eye(c, 5, 8);
    eye(c, 10, 8);
    c.fill(6, 12, 4, 1, ink::outline);
    return c;
}

Canvas penguin() {
    Canvas c(16, 16);
    c.ellipse(2, 1, 12, 15, ink::outline);
    c.ellipse(4, 5, 8, 10, ink::white);
    eye(c, 5, 4);
    eye(c, 9, 4);
    c.fill(7, 7, 3, 2, ink::gold);
    c.fill(3, 14, 4, 2, ink::gold);
    c.fill(9, 14, 4, 2, ink::gold);
    return c;
}

Canvas bubble() {
    Canvas c(16, 16);
    c.ellipse(1, 1, 14, 14, ink::red);
    c.ellipse(3, 3, 10, 10, ink::gold);
    c.ellipse(4, 3, 4, 4, ink::white);
    eye(c, 5, 7);
    eye(c, 9, 7);
    return c;
}

Canvas spikeball() {
    Canvas c(16, 16);
    c.line(7, 0, 7, 15, ink::stoneLight);
    c.line(0, 7, 15, 7, ink::stoneLight);
    c.line(2, 2, 13, 13, ink::stoneLight);
    c.line(2, 13, 13, 2, ink::stoneLight);
    c.ellipse(3, 3, 10, 10, ink::stoneDark);
    c.ellipse(4, 4, 6, 6, ink::stone);
    c.set(5, 5, ink::white);
    return c;
}

Canvas beetle() {
    Canvas c(24, 16);
    c.ellipse(3, 2, 18, 12, ink::blue);
    c.line(12, 2, 12, 12, ink::outline);
    c.ellipse(6, 4, 4, 3, ink::white);
    c.ellipse(17, 6, 7, 7, ink::outline);
    eye(c, 20, 7);
    for (const std::int32_t x : {5, 10, 15}) {
        c.fill(x, 13, 2, 3, ink::outline);
    }
    c.line(22, 6, 23, 3, ink::outline);
    return c;
}

Canvas bird() {
    Canvas c(24, 16);
    c.ellipse(4, 5, 14, 9, ink::red);
    c.ellipse(14, 2, 8, 8, ink::red);
    eye(c, 17, 4);
    c.fill(21, 6, 3, 2, ink::gold);
    for (std::int32_t row = 0; row < 5; ++row) {
        c.fill(6 + row, 2 + row, 6 - row, 1, ink::pink);
    }
    c.fill(0, 7, 5, 2, ink::red);
    c.fill(9, 13, 1, 3, ink::gold);
    c.fill(12, 13, 1, 3, ink::gold);
    return c;
}

Canvas bat() {
    Canvas c(24, 16);
    c.ellipse(8, 4, 8, 9, ink::woodDark);
    for (std::int32_t row = 0; row < 6; ++row) {
        c.fill(1 + row, 3 + row, 8 - row, 1, ink::woodDark);
        c.fill(15, 3 + row, 8 - row, 1, ink::woodDark);
    }
    c.fill(8, 2, 2, 3, ink::woodDark);
    c.fill(14, 2, 2, 3, ink::woodDark);
    c.set(10, 7, ink::red);
    c.set(13, 7, ink::red);
    c.set(11, 11, ink::white);
    c.set(12, 11, ink::white);
    return c;
}

Canvas lift() {
    Canvas c(48, 16);
    c.fill(1, 2, 46, 10, ink::wood);
    c.fill(1, 2, 46, 2, ink::gold);
    c.fill(1, 10, 46, 2, ink::woodDark);
    for (std::int32_t x = 8; x < 46; x += 10) {
        c.fill(x, 4, 1, 6, ink::woodDark);
    }
    c.fill(6, 12, 4, 3, ink::stoneDark);
    c.fill(38, 12, 4, 3, ink::stoneDark);
    return c;
}

Canvas golem() {
    Canvas c(32, 32);
    c.fill(6, 8, 20, 18, ink::stone);
    c.fill(6, 8, 20, 3, ink::stoneLight);
    c.fill(9, 1, 14, 9, ink::stone);
    c.fill(9, 1, 14, 2, ink::stoneLight);
    c.fill(11, 4, 3, 3, ink::red);
    c.fill(18, 4, 3, 3, ink::red);
    c.fill(12, 8, 8, 1, ink::stoneDark);
    c.fill(1, 10, 5, 14, ink::stoneDark);
    c.fill(26, 10, 5, 14, ink::stoneDark);
    c.fill(8, 26, 6, 6, ink::stoneDark);
    c.fill(18, 26, 6, 6, ink::stoneDark);
    c.line(10, 14, 14, 20, ink::stoneDark);
    c.line(22, 13, 19, 21, ink::stoneDark);
    return c;
}

Canvas drawPicture(std::string_view name) {
    using Drawer = Canvas (*)();
    static const std::array<std::pair<std::string_view, Drawer>, 18> drawers{{
        {"player", player},
        {"flag", flag},
        {"snowman", snowman},
        {"imp", imp},
        {"coin", coin},
        {"gem", gem},
        {"heart", heart},
        {"key", key},
        {"spring", spring},
        {"slime", slime},
        {"penguin", penguin},
        {"bubble", bubble},
        {"spikeball", spikeball},
        {"beetle", beetle},
        {"bird", bird},
        {"bat", bat},
        {"lift", lift},
        {"golem", golem},
    }};
    for (const auto& [drawerName, drawer] : drawers) {
        if (drawerName == name) {
            return drawer();
        }
    }
    throw std::invalid_argument("no sprite named " + std::string(name));
}

} // namespace

std::span<const SpriteRect> spriteRects() {
    return rects;
}

Canvas drawSprite(std::string_view name) {
    Canvas picture = drawPicture(name);
    picture.outline(0, 0, picture.width(), picture.height(), ink::clear, ink::outline);
    return picture;
}

Canvas drawSpriteSheet() {
    Canvas sheet(spriteSheetSize, spriteSheetSize, ink::clear);
    for (const SpriteRect& rect : rects) {
        sheet.paste(drawSprite(rect.name), rect.x, rect.y);
    }
    return sheet;
}

} // namespace marvek::sample
