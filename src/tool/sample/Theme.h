#pragma once

#include "graphics/clsPalette.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace marvek::sample {

// What each of the 32 colour indices is used for. Tiles and sprites are drawn
// with these roles; each world gives them its own colours.
namespace ink {
inline constexpr std::uint8_t clear = 0; // black; transparent in sprites
inline constexpr std::uint8_t outline = 1;
inline constexpr std::uint8_t white = 2;
inline constexpr std::uint8_t sky0 = 3; // top of the sky, darkest
inline constexpr std::uint8_t sky1 = 4;
inline constexpr std::uint8_t sky2 = 5;
inline constexpr std::uint8_t sky3 = 6; // horizon, lightest
inline constexpr std::uint8_t cloud = 7;
inline constexpr std::uint8_t cloudShade = 8;
inline constexpr std::uint8_t hillDark = 9;
inline constexpr std::uint8_t hillLight = 10;
inline constexpr std::uint8_t grassDark = 11;
inline constexpr std::uint8_t grass = 12;
inline constexpr std::uint8_t grassLight = 13;
inline constexpr std::uint8_t earthDark = 14;
inline constexpr std::uint8_t earth = 15;
inline constexpr std::uint8_t earthLight = 16;
inline constexpr std::uint8_t stoneDark = 17;
inline constexpr std::uint8_t stone = 18;
inline constexpr std::uint8_t stoneLight = 19;
inline constexpr std::uint8_t liquidDark = 20;
inline constexpr std::uint8_t liquid = 21;
inline constexpr std::uint8_t liquidLight = 22;
inline constexpr std::uint8_t woodDark = 23;
inline constexpr std::uint8_t wood = 24;
inline constexpr std::uint8_t goldDark = 25;
inline constexpr std::uint8_t gold = 26;
inline constexpr std::uint8_t red = 27;
inline constexpr std::uint8_t skin = 28;
inline constexpr std::uint8_t blue = 29;
inline constexpr std::uint8_t green = 30;
inline constexpr std::uint8_t pink = 31;
} // namespace ink

// One world of the sample data: its number, its files and its colours.
struct WorldTheme {
    int number = 1;
    // 12-bit Amiga colours as 0xRGB, so the level palettes (4 bits a
    // component) hold them exactly.
    std::array<std::uint16_t, 32> amigaColours{};

    std::string tileFile() const;           // "L1BM"
    std::string spriteFile() const;         // "L1ET"
    std::string levelFile(int index) const; // "L1MA1"
    std::string paletteFile() const;        // "world1.pal"

    clsPalette palette() const;

private:
    std::string worldFile(const char* kind) const;
};

std::span<const WorldTheme> worldThemes();

} // namespace marvek::sample
