#include "tool/sample/TitlePicture.h"

#include "tool/sample/FontArt.h"
#include "tool/sample/SpriteArt.h"
#include "tool/sample/TileArt.h"

#include <array>
#include <string_view>

namespace marvek::sample {
namespace {

constexpr std::int32_t columns = titleWidth / tileSize;
constexpr std::int32_t rows = titleHeight / tileSize;

std::int16_t landscapeTile(std::int32_t column, std::int32_t row) {
    constexpr std::int32_t ground = 13;
    if (row >= ground) {
        return row == ground ? tile::grassTop : tile::earth;
    }
    if (row >= 2 && row <= 3 && column >= 13 && column <= 15) {
        return static_cast<std::int16_t>(tile::cloudTopLeft + (row - 2) * 3 + (column - 13));
    }
    if (row == ground - 1) {
        constexpr std::array<std::int16_t, columns> decorations{
            tile::sky3, tile::bush,     tile::sky3,  tile::sky3,  tile::flower,
            tile::sky3, tile::sky3,     tile::sky3,  tile::sky3,  tile::rock,
            tile::sky3, tile::sky3,     tile::fence, tile::fence, tile::sky3,
            tile::sky3, tile::mushroom, tile::sky3,  tile::bush,  tile::sky3};
        return decorations[static_cast<std::size_t>(column)];
    }
    if (row == ground - 2 && column >= 5 && column <= 9) {
        return column == 5 ? tile::hillLeft : column == 9 ? tile::hillRight : tile::hillTop;
    }
    return row < 4 ? tile::sky2 : tile::sky3;
}

// Text with a one-pixel dark rim and a drop shadow.
void drawTitleText(Canvas& canvas, std::int32_t x, std::int32_t y, std::string_view text,
                   std::uint8_t colour, std::int32_t scale) {
    Canvas layer(canvas.width(), canvas.height(), 0);
    drawText(layer, x + scale, y + scale, text, ink::outline, scale);
    drawText(layer, x, y, text, colour, scale);
    layer.outline(0, 0, layer.width(), layer.height(), 0, ink::outline);
    canvas.paste(layer, 0, 0, 0);
}

} // namespace

Canvas drawTitlePicture(const WorldTheme& theme) {
    Canvas picture(titleWidth, titleHeight, ink::sky3);
    const auto tiles = drawTileSet(theme);
    for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t column = 0; column < columns; ++column) {
            const auto number = static_cast<std::size_t>(landscapeTile(column, row));
            picture.paste(tiles[number], column * tileSize, row * tileSize);
        }
    }
    drawTitleText(picture, 27, 64, "THORNWICK", ink::gold, 5);
    drawTitleText(picture, 94, 118, "A Marvek sample world", ink::white, 1);
    drawTitleText(picture, 112, 134, "Press fire to play", ink::cloud, 1);
    picture.paste(drawSprite("player"), 40, 12 * tileSize - 16, ink::clear);
    picture.paste(drawSprite("slime"), 230, 12 * tileSize, ink::clear);
    picture.paste(drawSprite("coin"), 120, 9 * tileSize, ink::clear);
    picture.paste(drawSprite("coin"), 140, 9 * tileSize, ink::clear);
    picture.paste(drawSprite("coin"), 160, 9 * tileSize, ink::clear);
    return picture;
}

Canvas drawSignpost() {
    Canvas sign(32, 24, ink::wood);
    sign.frame(0, 0, 32, 24, ink::outline);
    sign.frame(1, 1, 30, 22, ink::woodDark);
    sign.fill(2, 2, 28, 1, ink::gold);
    drawText(sign, 4, 4, "GO", ink::white, 1);
    // An arrow pointing right, the way to the exit.
    sign.fill(5, 15, 14, 3, ink::white);
    for (std::int32_t i = 0; i < 5; ++i) {
        sign.fill(19 + i, 12 + i, 1, 9 - 2 * i, ink::white);
    }
    sign.set(8, 20, ink::woodDark);
    sign.set(24, 6, ink::woodDark);
    return sign;
}

Canvas drawExitDoor() {
    Canvas door(32, 48, ink::stone);
    for (std::int32_t y = 0; y < 48; y += 8) {
        door.fill(0, y, 32, 1, ink::stoneDark);
        const std::int32_t shift = (y / 8) % 2 == 0 ? 7 : 15;
        door.fill(shift, y, 1, 8, ink::stoneDark);
        door.fill(shift + 16, y, 1, 8, ink::stoneDark);
    }
    door.ellipse(5, 6, 22, 22, ink::outline);
    door.fill(5, 17, 22, 31, ink::outline);
    door.ellipse(7, 8, 18, 18, ink::woodDark);
    door.fill(7, 17, 18, 31, ink::woodDark);
    for (const std::int32_t x : {10, 15, 20}) {
        door.fill(x, 10, 2, 38, ink::wood);
    }
    door.fill(20, 28, 3, 3, ink::gold);
    drawText(door, 4, 0, "EXIT", ink::gold, 1);
    door.frame(0, 0, 32, 48, ink::outline);
    return door;
}

} // namespace marvek::sample
