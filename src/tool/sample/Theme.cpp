#include "tool/sample/Theme.h"

namespace marvek::sample {
namespace {

// Colours every world shares: characters and pick-ups keep their look.
constexpr std::uint16_t black = 0x000, outline = 0x112, white = 0xFFF, woodDark = 0x631,
                        wood = 0xA62, goldDark = 0xC80, gold = 0xFE3, red = 0xD22, skin = 0xFCA,
                        blue = 0x36E, green = 0x3B3, pink = 0xF8A;

const std::array<WorldTheme, 3> themes{{
    // Grassland.
    {1, {black, outline,  white, 0x38D,    0x4AE, 0x6BF, 0x9DF, 0xFFF, 0xBCE, 0x5A6, 0x7C8,
         0x270, 0x4A1,    0x8D3, 0x421,    0x743, 0x965, 0x445, 0x778, 0xAAB, 0x137, 0x26C,
         0x8CF, woodDark, wood,  goldDark, gold,  red,   skin,  blue,  green, pink}},
    // Ice caves: snow for grass, icy rock for earth.
    {2, {black, outline,  white, 0x113,    0x225, 0x338, 0x55A, 0xCDF, 0x89C, 0x336, 0x558,
         0x9BD, 0xCDF,    0xFFF, 0x234,    0x457, 0x679, 0x345, 0x68A, 0x9BD, 0x148, 0x38C,
         0xAEF, woodDark, wood,  goldDark, gold,  red,   skin,  blue,  green, pink}},
    // Volcano: ash for grass, lava for water.
    {3, {black, outline,  white, 0x200,    0x511, 0x832, 0xC64, 0xA98, 0x765, 0x311, 0x522,
         0x433, 0x655,    0x877, 0x211,    0x322, 0x544, 0x332, 0x554, 0x776, 0xB20, 0xF60,
         0xFD4, woodDark, wood,  goldDark, gold,  red,   skin,  blue,  green, pink}},
}};

} // namespace

// Built by appending: gcc 12 warns falsely on "literal" + std::string here.
std::string WorldTheme::worldFile(const char* kind) const {
    std::string name = "L";
    name += std::to_string(number);
    name += kind;
    return name;
}
std::string WorldTheme::tileFile() const {
    return worldFile("BM");
}
std::string WorldTheme::spriteFile() const {
    return worldFile("ET");
}
std::string WorldTheme::levelFile(int index) const {
    return worldFile("MA") + std::to_string(index);
}
std::string WorldTheme::paletteFile() const {
    return "world" + std::to_string(number) + ".pal";
}

clsPalette WorldTheme::palette() const {
    clsPalette palette;
    for (const std::uint16_t rgb : amigaColours) {
        const std::uint32_t red = ((rgb >> 8) & 0xF) * 17u;
        const std::uint32_t green = ((rgb >> 4) & 0xF) * 17u;
        const std::uint32_t blue = (rgb & 0xF) * 17u;
        palette.addEntry(red | green << 8 | blue << 16);
    }
    return palette;
}

std::span<const WorldTheme> worldThemes() {
    return themes;
}

} // namespace marvek::sample
