#include "tool/sample/TileArt.h"

#include "tool/sample/Random.h"

#include <algorithm>

namespace marvek::sample {
namespace {

constexpr std::int32_t S = tileSize;

Canvas plain(std::uint8_t colour) {
    return Canvas(S, S, colour);
}

// Scatters single pixels of a colour; the seed keeps each tile's pattern fixed.
void speckle(Canvas& canvas, std::uint32_t seed, std::uint8_t colour, int count,
             std::int32_t top = 0) {
    Random random(seed);
    for (int i = 0; i < count; ++i) {
        // Two draws in one call would come in an order each compiler picks.
        const std::int32_t y = random.between(top, S - 1);
        const std::int32_t x = random.between(0, S - 1);
        canvas.set(x, y, colour);
    }
}

// Light on the top and left, dark on the bottom and right: a raised block.
void bevel(Canvas& canvas, std::uint8_t light, std::uint8_t dark) {
    canvas.fill(0, 0, S, 1, light);
    canvas.fill(0, 0, 1, S, light);
    canvas.fill(0, S - 1, S, 1, dark);
    canvas.fill(S - 1, 0, 1, S, dark);
}

Canvas cloudPart(bool top, int column) {
    Canvas canvas = plain(ink::sky2);
    // The cloud is drawn as one 48 x 32 shape and cut into six tiles.
    Canvas whole(3 * S, 2 * S, ink::sky2);
    whole.ellipse(2, 12, 20, 18, ink::cloudShade);
    whole.ellipse(12, 3, 24, 26, ink::cloudShade);
    whole.ellipse(28, 10, 18, 20, ink::cloudShade);
    whole.ellipse(3, 12, 18, 15, ink::cloud);
    whole.ellipse(13, 4, 22, 22, ink::cloud);
    whole.ellipse(29, 11, 16, 16, ink::cloud);
    whole.fill(6, 26, 36, 3, ink::cloudShade);
    whole.outline(0, 0, 3 * S, 2 * S, ink::sky2, ink::sky1);
    for (std::int32_t y = 0; y < S; ++y) {
        for (std::int32_t x = 0; x < S; ++x) {
            canvas.set(x, y, whole.at(column * S + x, (top ? 0 : S) + y));
        }
    }
    return canvas;
}

Canvas hill(std::int16_t which, int world) {
    Canvas canvas = plain(ink::sky3);
    for (std::int32_t y = 0; y < S; ++y) {
        for (std::int32_t x = 0; x < S; ++x) {
            const bool inside = which == tile::hillLeft    ? x >= S - 1 - y
                                : which == tile::hillRight ? x <= y
                                : which == tile::hillTop   ? y >= 3 + (x % 8 == 0 ? 1 : 0)
                                                           : true;
            if (inside) {
                canvas.set(x, y, (x / 2 + y / 3) % 5 == 0 ? ink::hillLight : ink::hillDark);
            }
        }
    }
    canvas.outline(0, 0, S, S, ink::sky3, ink::hillLight);
    if (world == 2 && which != tile::hillFill) {
        canvas.recolour(0, 0, S, 5, ink::hillLight, ink::white);
    }
    return canvas;
}

Canvas grass(bool leftEdge, bool rightEdge, std::uint32_t seed) {
    Canvas canvas = plain(ink::earth);
    speckle(canvas, seed, ink::earthDark, 10, 6);
    speckle(canvas, seed + 1, ink::earthLight, 6, 6);
    canvas.fill(0, 0, S, 5, ink::grass);
    canvas.fill(0, 0, S, 1, ink::grassLight);
    Random random(seed + 2);
    for (std::int32_t x = 0; x < S; ++x) {
        const std::int32_t length = random.between(5, 8);
        canvas.fill(x, 5, 1, length - 5, ink::grass);
        canvas.set(x, length, ink::grassDark);
        if (x % 3 == 1) {
            canvas.set(x, 1, ink::grassLight);
        }
    }
    if (leftEdge) {
        canvas.fill(0, 0, 1, S, ink::outline);
        canvas.fill(1, 1, 1, 7, ink::grassDark);
        canvas.set(0, 0, ink::sky3);
    }
    if (rightEdge) {
        canvas.fill(S - 1, 0, 1, S, ink::outline);
        canvas.fill(S - 2, 1, 1, 7, ink::grassDark);
        canvas.set(S - 1, 0, ink::sky3);
    }
    return canvas;
}

Canvas earth(std::int16_t which, std::uint32_t seed) {
    Canvas canvas = plain(which == tile::earthDeep ? ink::earthDark : ink::earth);
    speckle(canvas, seed, which == tile::earthDeep ? ink::earth : ink::earthDark, 14);
    speckle(canvas, seed + 7, ink::earthLight, 5);
    if (which == tile::earthStones) {
        canvas.ellipse(2, 3, 6, 5, ink::stone);
        canvas.ellipse(9, 9, 5, 4, ink::stoneLight);
        canvas.outline(0, 0, S, S, ink::earth, ink::stoneDark);
    }
    if (which == tile::earthBone) {
        canvas.fill(4, 7, 8, 2, ink::white);
        canvas.ellipse(2, 6, 3, 4, ink::white);
        canvas.ellipse(11, 6, 3, 4, ink::white);
    }
    if (which == tile::earthLeft) {
        canvas.fill(0, 0, 1, S, ink::outline);
        canvas.fill(1, 0, 1, S, ink::earthDark);
    }
    if (which == tile::earthRight) {
        canvas.fill(S - 1, 0, 1, S, ink::outline);
        canvas.fill(S - 2, 0, 1, S, ink::earthDark);
    }
    return canvas;
}

Canvas bedrock(std::uint32_t seed) {
    Canvas canvas = plain(ink::stoneDark);
    canvas.fill(0, 7, S, 1, ink::outline);
    canvas.fill(5, 0, 1, 7, ink::outline);
    canvas.fill(12, 8, 1, 8, ink::outline);
    canvas.fill(0, 0, S, 1, ink::stone);
    canvas.fill(0, 8, S, 1, ink::stone);
    speckle(canvas, seed, ink::stone, 6);
    return canvas;
}

Canvas platform(std::int16_t which) {
    Canvas canvas = plain(ink::sky3);
    canvas.fill(0, 1, S, 11, ink::stone);
    canvas.fill(0, 1, S, 2, ink::stoneLight);
    canvas.fill(0, 10, S, 2, ink::stoneDark);
    canvas.fill(0, 0, S, 1, ink::outline);
    canvas.fill(0, 12, S, 1, ink::outline);
    canvas.fill(7, 3, 1, 7, ink::stoneDark);
    if (which == tile::platformLeft) {
        canvas.fill(0, 0, 1, 13, ink::outline);
        canvas.set(0, 0, ink::sky3);
        canvas.set(0, 12, ink::sky3);
    }
    if (which == tile::platformRight) {
        canvas.fill(S - 1, 0, 1, 13, ink::outline);
        canvas.set(S - 1, 0, ink::sky3);
        canvas.set(S - 1, 12, ink::sky3);
    }
    return canvas;
}

Canvas brick() {
    Canvas canvas = plain(ink::red);
    canvas.fill(0, 0, S, 1, ink::pink);
    for (std::int32_t row = 0; row < 4; ++row) {
        canvas.fill(0, row * 4 + 3, S, 1, ink::outline);
        const std::int32_t shift = row % 2 == 0 ? 3 : 11;
        canvas.fill(shift, row * 4, 1, 3, ink::outline);
    }
    return canvas;
}

Canvas bonusBlock() {
    Canvas canvas = plain(ink::gold);
    bevel(canvas, ink::white, ink::goldDark);
    canvas.frame(0, 0, S, S, ink::outline);
    // A question mark.
    canvas.fill(5, 3, 6, 2, ink::woodDark);
    canvas.fill(9, 4, 2, 4, ink::woodDark);
    canvas.fill(7, 7, 3, 2, ink::woodDark);
    canvas.fill(7, 9, 2, 1, ink::woodDark);
    canvas.fill(7, 11, 2, 2, ink::woodDark);
    canvas.set(2, 2, ink::goldDark);
    canvas.set(13, 2, ink::goldDark);
    canvas.set(2, 13, ink::goldDark);
    canvas.set(13, 13, ink::goldDark);
    return canvas;
}

Canvas stoneBlock(std::uint32_t seed) {
    Canvas canvas = plain(ink::stone);
    speckle(canvas, seed, ink::stoneDark, 8);
    bevel(canvas, ink::stoneLight, ink::stoneDark);
    canvas.frame(0, 0, S, S, ink::outline);
    return canvas;
}

Canvas ladder() {
    Canvas canvas = plain(ink::sky3);
    canvas.fill(2, 0, 2, S, ink::wood);
    canvas.fill(12, 0, 2, S, ink::wood);
    canvas.fill(1, 0, 1, S, ink::woodDark);
    canvas.fill(14, 0, 1, S, ink::woodDark);
    for (const std::int32_t y : {3, 11}) {
        canvas.fill(2, y, 12, 2, ink::wood);
        canvas.fill(2, y + 2, 12, 1, ink::woodDark);
    }
    return canvas;
}

Canvas pipe(std::int16_t which) {
    Canvas canvas = plain(ink::sky3);
    const bool top = which == tile::pipeTopLeft || which == tile::pipeTopRight;
    const bool left = which == tile::pipeTopLeft || which == tile::pipeLeft;
    // Left and right halves of a 32-pixel pipe with a wider rim on top.
    Canvas whole(2 * S, S, ink::sky3);
    if (top) {
        whole.fill(0, 0, 2 * S, S, ink::green);
        whole.fill(2, 0, 4, S, ink::white);
        whole.fill(24, 0, 6, S, ink::grassDark);
        whole.frame(0, 0, 2 * S, S, ink::outline);
    } else {
        whole.fill(2, 0, 28, S, ink::green);
        whole.fill(5, 0, 3, S, ink::white);
        whole.fill(23, 0, 5, S, ink::grassDark);
        whole.fill(2, 0, 1, S, ink::outline);
        whole.fill(29, 0, 1, S, ink::outline);
    }
    canvas.paste(whole, left ? 0 : -S, 0);
    return canvas;
}

Canvas bridge() {
    Canvas canvas = plain(ink::sky3);
    canvas.fill(0, 0, S, 1, ink::woodDark);
    canvas.fill(0, 1, S, 5, ink::wood);
    canvas.fill(0, 6, S, 1, ink::outline);
    canvas.fill(7, 1, 1, 5, ink::woodDark);
    canvas.fill(15, 1, 1, 5, ink::woodDark);
    canvas.line(0, 7, 7, 12, ink::woodDark);
    canvas.line(8, 12, 15, 7, ink::woodDark);
    return canvas;
}

Canvas liquid(bool surface, std::uint32_t seed) {
    Canvas canvas = plain(ink::liquid);
    speckle(canvas, seed, ink::liquidDark, 12, surface ? 5 : 0);
    speckle(canvas, seed + 3, ink::liquidLight, 4, surface ? 6 : 0);
    if (surface) {
        canvas.fill(0, 0, S, 3, ink::sky3);
        for (std::int32_t x = 0; x < S; ++x) {
            const std::int32_t crest = (x % 8 < 4) ? 2 : 3;
            canvas.fill(x, crest, 1, 3 - crest + 1, ink::liquidLight);
        }
        canvas.fill(0, 4, S, 1, ink::liquidLight);
    }
    return canvas;
}

Canvas spikes(bool up) {
    Canvas canvas = plain(ink::sky3);
    for (std::int32_t spike = 0; spike < 4; ++spike) {
        const std::int32_t x0 = spike * 4;
        for (std::int32_t row = 0; row < 10; ++row) {
            const std::int32_t half = row / 5;
            const std::int32_t y = up ? S - 10 + row : 9 - row;
            canvas.fill(x0 + 1 - half, y, 2 + 2 * half, 1, row < 2 ? ink::white : ink::stoneLight);
            canvas.set(x0 + 2 + half, y, ink::stoneDark);
        }
    }
    canvas.fill(0, up ? S - 3 : 0, S, 3, ink::stoneDark);
    canvas.fill(0, up ? S - 1 : 0, S, 1, ink::outline);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas coin() {
    Canvas canvas = plain(ink::sky3);
    canvas.ellipse(3, 2, 10, 12, ink::goldDark);
    canvas.ellipse(4, 3, 7, 10, ink::gold);
    canvas.fill(7, 5, 2, 6, ink::goldDark);
    canvas.set(5, 4, ink::white);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas gem() {
    Canvas canvas = plain(ink::sky3);
    for (std::int32_t row = 0; row < 4; ++row) {
        canvas.fill(6 - row, 3 + row, 4 + 2 * row, 1, ink::pink);
    }
    for (std::int32_t row = 0; row < 6; ++row) {
        canvas.fill(3 + row, 7 + row, 10 - 2 * row, 1, ink::red);
    }
    canvas.set(6, 4, ink::white);
    canvas.set(5, 5, ink::white);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas bush(int world) {
    Canvas canvas = plain(ink::sky3);
    const std::uint8_t dark = world == 3 ? ink::stoneDark : ink::grassDark;
    const std::uint8_t mid = world == 3 ? ink::stone : ink::green;
    canvas.ellipse(0, 6, 9, 10, dark);
    canvas.ellipse(5, 3, 10, 13, dark);
    canvas.ellipse(1, 7, 7, 7, mid);
    canvas.ellipse(6, 4, 8, 9, mid);
    canvas.set(8, 6, ink::white);
    canvas.fill(0, 15, S, 1, dark);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas flower(int world) {
    Canvas canvas = plain(ink::sky3);
    canvas.fill(7, 8, 2, 8, ink::grassDark);
    canvas.fill(4, 12, 3, 2, ink::green);
    const std::uint8_t petal = world == 2 ? ink::blue : (world == 3 ? ink::gold : ink::pink);
    canvas.ellipse(4, 2, 8, 8, petal);
    canvas.ellipse(6, 4, 4, 4, ink::gold);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas fence() {
    Canvas canvas = plain(ink::sky3);
    canvas.fill(0, 5, S, 2, ink::wood);
    canvas.fill(0, 11, S, 2, ink::wood);
    for (const std::int32_t x : {2, 10}) {
        canvas.fill(x, 2, 4, 14, ink::wood);
        canvas.fill(x + 3, 2, 1, 14, ink::woodDark);
        canvas.set(x, 2, ink::sky3);
        canvas.set(x + 3, 2, ink::sky3);
    }
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

// A tree of 2 x 3 tiles: two crown rows and a trunk row, cut from one shape.
Canvas tree(std::int16_t which, int world) {
    Canvas whole(2 * S, 3 * S, ink::sky3);
    whole.fill(12, 24, 8, 24, ink::woodDark);
    whole.fill(13, 24, 4, 24, ink::wood);
    if (world == 3) {
        whole.line(15, 30, 5, 14, ink::woodDark);
        whole.line(16, 28, 27, 12, ink::woodDark);
        whole.line(16, 20, 12, 4, ink::woodDark);
        whole.line(10, 22, 3, 20, ink::woodDark);
        whole.line(17, 24, 24, 22, ink::woodDark);
    } else if (world == 2) {
        for (std::int32_t layer = 0; layer < 3; ++layer) {
            const std::int32_t top = 2 + layer * 9;
            for (std::int32_t row = 0; row < 12; ++row) {
                whole.fill(16 - row - layer * 2, top + row, 2 * (row + layer * 2), 1, ink::green);
            }
            whole.fill(16 - 3 - layer * 2, top + 1, 6 + layer * 4, 2, ink::white);
        }
    } else {
        whole.ellipse(1, 8, 16, 18, ink::grassDark);
        whole.ellipse(14, 6, 17, 20, ink::grassDark);
        whole.ellipse(6, 0, 20, 20, ink::grassDark);
        whole.ellipse(3, 9, 12, 13, ink::grass);
        whole.ellipse(16, 8, 12, 14, ink::grass);
        whole.ellipse(8, 2, 15, 14, ink::grass);
        whole.ellipse(11, 4, 6, 5, ink::grassLight);
        whole.set(7, 14, ink::red);
        whole.set(22, 11, ink::red);
    }
    whole.outline(0, 0, 2 * S, 3 * S, ink::sky3, ink::outline);
    const bool left =
        which == tile::trunkLeft || which == tile::crownTopLeft || which == tile::crownBottomLeft;
    const std::int32_t row = (which == tile::crownTopLeft || which == tile::crownTopRight) ? 0
                             : (which == tile::trunkLeft || which == tile::trunkRight)     ? 2
                                                                                           : 1;
    Canvas canvas = plain(ink::sky3);
    canvas.paste(whole, left ? 0 : -S, -row * S);
    return canvas;
}

Canvas rock() {
    Canvas canvas = plain(ink::sky3);
    canvas.ellipse(1, 6, 14, 12, ink::stoneDark);
    canvas.ellipse(2, 6, 11, 9, ink::stone);
    canvas.ellipse(4, 7, 4, 3, ink::stoneLight);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas torch() {
    Canvas canvas = plain(ink::sky3);
    canvas.fill(7, 7, 3, 9, ink::wood);
    canvas.fill(9, 7, 1, 9, ink::woodDark);
    canvas.ellipse(5, 1, 7, 8, ink::red);
    canvas.ellipse(6, 3, 5, 5, ink::gold);
    canvas.ellipse(7, 5, 3, 3, ink::white);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas mushroom() {
    Canvas canvas = plain(ink::sky3);
    canvas.fill(6, 9, 4, 7, ink::white);
    canvas.ellipse(2, 2, 12, 10, ink::red);
    canvas.fill(2, 8, 12, 2, ink::sky3);
    canvas.ellipse(4, 3, 3, 3, ink::white);
    canvas.ellipse(9, 4, 2, 2, ink::white);
    canvas.outline(0, 0, S, S, ink::sky3, ink::outline);
    return canvas;
}

Canvas crate() {
    Canvas canvas = plain(ink::wood);
    canvas.frame(1, 1, S - 2, S - 2, ink::woodDark);
    canvas.line(2, 2, 13, 13, ink::woodDark);
    canvas.line(2, 13, 13, 2, ink::woodDark);
    canvas.frame(0, 0, S, S, ink::outline);
    return canvas;
}

Canvas drawTile(std::int32_t number, int world) {
    const auto seed = static_cast<std::uint32_t>(world * 1000 + number * 7 + 1);
    switch (number) {
    case tile::sky0:
        return plain(ink::sky0);
    case tile::sky1:
        return plain(ink::sky1);
    case tile::sky2:
        return plain(ink::sky2);
    case tile::sky3:
        return plain(ink::sky3);
    case tile::cloudTopLeft:
        return cloudPart(true, 0);
    case tile::cloudTop:
        return cloudPart(true, 1);
    case tile::cloudTopRight:
        return cloudPart(true, 2);
    case tile::cloudBottomLeft:
        return cloudPart(false, 0);
    case tile::cloudBottom:
        return cloudPart(false, 1);
    case tile::cloudBottomRight:
        return cloudPart(false, 2);
    case tile::hillLeft:
    case tile::hillTop:
    case tile::hillRight:
    case tile::hillFill:
        return hill(static_cast<std::int16_t>(number), world);
    case tile::grassTop:
        return grass(false, false, seed);
    case tile::grassLeft:
        return grass(true, false, seed);
    case tile::grassRight:
        return grass(false, true, seed);
    case tile::grassSingle:
        return grass(true, true, seed);
    case tile::earth:
    case tile::earthStones:
    case tile::earthLeft:
    case tile::earthRight:
    case tile::earthDeep:
    case tile::earthBone:
        return earth(static_cast<std::int16_t>(number), seed);
    case tile::bedrock:
        return bedrock(seed);
    case tile::platformLeft:
    case tile::platform:
    case tile::platformRight:
        return platform(static_cast<std::int16_t>(number));
    case tile::brick:
        return brick();
    case tile::bonusBlock:
        return bonusBlock();
    case tile::stoneBlock:
        return stoneBlock(seed);
    case tile::ladder:
        return ladder();
    case tile::pipeTopLeft:
    case tile::pipeTopRight:
    case tile::pipeLeft:
    case tile::pipeRight:
        return pipe(static_cast<std::int16_t>(number));
    case tile::bridge:
        return bridge();
    case tile::liquidSurface:
        return liquid(true, seed);
    case tile::liquid:
        return liquid(false, seed);
    case tile::spikesUp:
        return spikes(true);
    case tile::spikesDown:
        return spikes(false);
    case tile::coin:
        return coin();
    case tile::gem:
        return gem();
    case tile::bush:
        return bush(world);
    case tile::flower:
        return flower(world);
    case tile::fence:
        return fence();
    case tile::trunkLeft:
    case tile::trunkRight:
    case tile::crownTopLeft:
    case tile::crownTopRight:
    case tile::crownBottomLeft:
    case tile::crownBottomRight:
        return tree(static_cast<std::int16_t>(number), world);
    case tile::rock:
        return rock();
    case tile::torch:
        return torch();
    case tile::mushroom:
        return mushroom();
    case tile::crate:
        return crate();
    default:
        return plain(ink::sky3);
    }
}

constexpr std::array<std::uint8_t, tile::skyBands> skyInks{ink::sky0, ink::sky1, ink::sky2,
                                                           ink::sky3};

std::int32_t seeThroughIndex(std::int16_t which) {
    const auto* found = std::find(tile::seeThrough.begin(), tile::seeThrough.end(), which);
    return found == tile::seeThrough.end()
               ? -1
               : static_cast<std::int32_t>(found - tile::seeThrough.begin());
}

// The copy of a see-through tile over another band: its picture with the
// home band's colour swapped for the band's.
Canvas drawOverSky(std::int16_t which, std::int32_t band, int world) {
    Canvas canvas = drawTile(which, world);
    const auto home = static_cast<std::size_t>(homeSkyBand(which));
    canvas.recolour(0, 0, S, S, skyInks[home], skyInks[static_cast<std::size_t>(band)]);
    return canvas;
}

} // namespace

std::int32_t homeSkyBand(std::int16_t which) {
    return which >= tile::cloudTopLeft && which <= tile::cloudBottomRight ? 2 : 3;
}

std::int16_t overSky(std::int16_t which, std::int32_t band) {
    const std::int32_t index = seeThroughIndex(which);
    const std::int32_t home = homeSkyBand(which);
    if (index < 0 || band == home || band < 0 || band >= tile::skyBands) {
        return which;
    }
    const std::int32_t slot = band < home ? band : band - 1;
    const auto seeThroughCount = static_cast<std::int32_t>(tile::seeThrough.size());
    return static_cast<std::int16_t>(tile::pictureCount + slot * seeThroughCount + index);
}

std::vector<Canvas> drawTileSet(const WorldTheme& theme) {
    std::vector<Canvas> tiles;
    tiles.reserve(tile::count);
    for (std::int32_t number = 0; number < tile::pictureCount; ++number) {
        tiles.push_back(drawTile(number, theme.number));
    }
    // In the order overSky numbers them: by slot, then by see-through index.
    for (std::int32_t slot = 0; slot < tile::skyBands - 1; ++slot) {
        for (const std::int16_t which : tile::seeThrough) {
            const std::int32_t band = slot < homeSkyBand(which) ? slot : slot + 1;
            tiles.push_back(drawOverSky(which, band, theme.number));
        }
    }
    return tiles;
}

} // namespace marvek::sample
