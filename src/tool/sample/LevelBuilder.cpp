#include "tool/sample/LevelBuilder.h"

#include "tool/sample/Random.h"
#include "tool/sample/SpecialIds.h"
#include "tool/sample/TileArt.h"

#include <algorithm>
#include <array>

namespace marvek::sample {
namespace {

constexpr std::int32_t W = LevelMap::width;
constexpr std::int32_t H = LevelMap::height;
constexpr std::int32_t noGround = -1;
constexpr std::int32_t baseGround = 72;
constexpr std::int32_t waterline = 74;
constexpr std::int32_t bedrockRow = 82;
constexpr std::int32_t deepRow = 79;
// The play area starts here; everything above is open sky.
constexpr std::int32_t horizonRow = 55;

class LevelBuilder {
public:
    LevelBuilder(const WorldTheme& theme, int levelIndex)
        : world_(theme.number),
          random_(static_cast<std::uint32_t>(theme.number * 7919 + levelIndex * 104729)),
          map_(sampleDefaultSpecials()), top_(W, baseGround) {}

    LevelMap build() {
        paintSky();
        placeClouds();
        shapeTerrain();
        paintTerrain();
        placeLandmarks();
        placeHills();
        placePlatforms();
        placePipes();
        placeBlockRows();
        placeSpikes();
        placePatrols();
        placeDecorations();
        placeCoinRows();
        placeSpecials();
        return map_;
    }

private:
    bool isSky(std::int32_t x, std::int32_t y) const {
        const std::int16_t tile = map_.tileAt(x, y);
        return tile == tile::sky3 && map_.specialAt(x, y) == 0;
    }
    bool isFreeColumn(std::int32_t x, std::int32_t y0, std::int32_t y1) const {
        for (std::int32_t y = y0; y <= y1; ++y) {
            if (!isSky(x, y)) {
                return false;
            }
        }
        return true;
    }
    bool isFreeBox(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) const {
        for (std::int32_t x = x0; x <= x1; ++x) {
            if (!isFreeColumn(x, y0, y1)) {
                return false;
            }
        }
        return true;
    }
    bool isFlat(std::int32_t x0, std::int32_t x1) const {
        if (x0 < 0 || x1 >= W) {
            return false;
        }
        for (std::int32_t x = x0; x <= x1; ++x) {
            if (top_[x] == noGround || top_[x] != top_[x0]) {
                return false;
            }
        }
        return true;
    }
    std::int32_t groundAt(std::int32_t x) const {
        return (x >= 0 && x < W) ? top_[static_cast<std::size_t>(x)] : noGround;
    }

    void paintSky() {
        for (std::int32_t y = 0; y < H; ++y) {
            const std::int16_t band = y < 30           ? tile::sky0
                                      : y < 45         ? tile::sky1
                                      : y < horizonRow ? tile::sky2
                                                       : tile::sky3;
            for (std::int32_t x = 0; x < W; ++x) {
                map_.setTile(x, y, band);
            }
        }
    }

    void placeClouds() {
        for (std::int32_t x = random_.between(0, 8); x < W - 3; x += random_.between(9, 22)) {
            const std::int32_t y = random_.between(45, horizonRow - 2);
            const std::array<std::int16_t, 6> parts{tile::cloudTopLeft,  tile::cloudTop,
                                                    tile::cloudTopRight, tile::cloudBottomLeft,
                                                    tile::cloudBottom,   tile::cloudBottomRight};
            for (std::int32_t i = 0; i < 6; ++i) {
                map_.setTile(x + i % 3, y + i / 3, parts[static_cast<std::size_t>(i)]);
            }
        }
    }

    // Ground heights column by column: flat runs, steps and liquid pits. The
    // first and last columns stay flat for the start and the exit.
    void shapeTerrain() {
        std::int32_t height = baseGround;
        std::int32_t x = 14;
        while (x < W - 18) {
            const bool pit = random_.oneIn(3);
            if (pit) {
                const std::int32_t length = random_.between(3, 6);
                for (std::int32_t i = 0; i < length; ++i) {
                    top_[static_cast<std::size_t>(x + i)] = noGround;
                }
                pits_.push_back({x, x + length - 1});
                x += length;
            } else {
                height = std::clamp(height + random_.between(-2, 2), 68, 75);
                const std::int32_t length = random_.between(6, 15);
                for (std::int32_t i = 0; i < length && x + i < W - 18; ++i) {
                    top_[static_cast<std::size_t>(x + i)] = height;
                }
                x += length;
            }
        }
        for (; x < W; ++x) {
            top_[static_cast<std::size_t>(x)] = height;
        }
    }

    void paintTerrain() {
        for (std::int32_t x = 0; x < W; ++x) {
            const std::int32_t ground = top_[static_cast<std::size_t>(x)];
            if (ground == noGround) {
                paintPitColumn(x);
                continue;
            }
            const auto exposed = [&](std::int32_t neighbour, std::int32_t y) {
                const std::int32_t other = groundAt(neighbour);
                return neighbour >= 0 && neighbour < W && (other == noGround || other > y);
            };
            for (std::int32_t y = ground; y < H; ++y) {
                const bool left = exposed(x - 1, y);
                const bool right = exposed(x + 1, y);
                map_.setTile(x, y, terrainTile(x, y, ground, left, right));
            }
        }
    }

    std::int16_t terrainTile(std::int32_t x, std::int32_t y, std::int32_t ground, bool left,
                             bool right) {
        if (y >= bedrockRow) {
            return tile::bedrock;
        }
        if (y == ground) {
            return left && right ? tile::grassSingle
                   : left        ? tile::grassLeft
                   : right       ? tile::grassRight
                                 : tile::grassTop;
        }
        if (left) {
            return tile::earthLeft;
        }
        if (right) {
            return tile::earthRight;
        }
        if (y >= deepRow) {
            return tile::earthDeep;
        }
        if (random_.oneIn(9)) {
            return tile::earthStones;
        }
        if (random_.oneIn(400) && x > 0) {
            return tile::earthBone;
        }
        return tile::earth;
    }

    void paintPitColumn(std::int32_t x) {
        for (std::int32_t y = waterline; y < H; ++y) {
            map_.setTile(x, y, y == waterline ? tile::liquidSurface : tile::liquid);
        }
    }

    // Low background hills behind flat ground; later objects keep out of them.
    void placeHills() {
        for (std::int32_t x = random_.between(16, 30); x < W - 20; x += random_.between(12, 26)) {
            const std::int32_t rows = random_.between(2, 3);
            const std::int32_t crest = random_.between(1, 3);
            const std::int32_t x0 = x;
            const std::int32_t x1 = x + crest + 2 * rows - 1;
            if (!isFlat(x0, x1)) {
                continue;
            }
            const std::int32_t ground = top_[static_cast<std::size_t>(x0)];
            if (!isFreeBox(x0, ground - rows, x1, ground - 1)) {
                continue;
            }
            for (std::int32_t r = 0; r < rows; ++r) {
                const std::int32_t y = ground - rows + r;
                const std::int32_t left = x0 + rows - 1 - r;
                const std::int32_t right = x1 - (rows - 1 - r);
                map_.setTile(left, y, tile::hillLeft);
                map_.setTile(right, y, tile::hillRight);
                for (std::int32_t i = left + 1; i < right; ++i) {
                    map_.setTile(i, y, r == 0 ? tile::hillTop : tile::hillFill);
                }
            }
        }
    }

    void placePlatform(std::int32_t x0, std::int32_t length, std::int32_t y) {
        for (std::int32_t i = 0; i < length; ++i) {
            const std::int16_t part = i == 0            ? tile::platformLeft
                                      : i == length - 1 ? tile::platformRight
                                                        : tile::platform;
            map_.setTile(x0 + i, y, part);
        }
        platforms_.push_back({x0, x0 + length - 1, y});
    }

    // Floating platforms, some over pits, some reached by a ladder.
    void placePlatforms() {
        for (std::int32_t x = random_.between(18, 26); x < W - 24; x += random_.between(10, 20)) {
            const std::int32_t length = random_.between(3, 6);
            std::int32_t lowest = H;
            for (std::int32_t i = -1; i <= length; ++i) {
                const std::int32_t g = groundAt(x + i);
                lowest = std::min(lowest, g == noGround ? waterline : g);
            }
            const std::int32_t y = lowest - random_.between(4, 6);
            if (y < horizonRow + 3 || !isFreeBox(x - 1, y - 3, x + length, y + 1)) {
                continue;
            }
            placePlatform(x, length, y);
            const std::int32_t ladderX = x + 1;
            const std::int32_t below = groundAt(ladderX);
            if (below != noGround && random_.oneIn(2) && isFreeColumn(ladderX, y + 1, below - 1)) {
                for (std::int32_t row = y; row < below; ++row) {
                    map_.setTile(ladderX, row, tile::ladder);
                }
            }
        }
    }

    void placePipes() {
        for (std::int32_t x = random_.between(20, 40); x < W - 20; x += random_.between(25, 45)) {
            const std::int32_t rows = random_.between(2, 4);
            if (!isFlat(x, x + 1)) {
                continue;
            }
            const std::int32_t ground = top_[static_cast<std::size_t>(x)];
            if (!isFreeBox(x, ground - rows - 1, x + 1, ground - 1)) {
                continue;
            }
            for (std::int32_t r = 0; r < rows; ++r) {
                const std::int32_t y = ground - rows + r;
                map_.setTile(x, y, r == 0 ? tile::pipeTopLeft : tile::pipeLeft);
                map_.setTile(x + 1, y, r == 0 ? tile::pipeTopRight : tile::pipeRight);
            }
        }
    }

    // Rows of bricks with a bonus block, hanging above flat ground.
    void placeBlockRows() {
        for (std::int32_t x = random_.between(24, 34); x < W - 20; x += random_.between(30, 50)) {
            const std::int32_t length = random_.between(3, 5);
            if (!isFlat(x - 1, x + length)) {
                continue;
            }
            const std::int32_t y = top_[static_cast<std::size_t>(x)] - 4;
            if (!isFreeBox(x - 1, y - 1, x + length, top_[static_cast<std::size_t>(x)] - 1)) {
                continue;
            }
            for (std::int32_t i = 0; i < length; ++i) {
                map_.setTile(x + i, y, i == length / 2 ? tile::bonusBlock : tile::brick);
            }
        }
    }

    void placeSpikes() {
        for (std::int32_t x = random_.between(30, 45); x < W - 24; x += random_.between(20, 40)) {
            const std::int32_t length = random_.between(2, 3);
            if (!isFlat(x - 2, x + length + 1)) {
                continue;
            }
            const std::int32_t y = top_[static_cast<std::size_t>(x)] - 1;
            if (!isFreeBox(x, y, x + length - 1, y)) {
                continue;
            }
            for (std::int32_t i = 0; i < length; ++i) {
                map_.setTile(x + i, y, tile::spikesUp);
            }
        }
    }

    void placeTree(std::int32_t x, std::int32_t ground) {
        map_.setTile(x, ground - 3, tile::crownTopLeft);
        map_.setTile(x + 1, ground - 3, tile::crownTopRight);
        map_.setTile(x, ground - 2, tile::crownBottomLeft);
        map_.setTile(x + 1, ground - 2, tile::crownBottomRight);
        map_.setTile(x, ground - 1, tile::trunkLeft);
        map_.setTile(x + 1, ground - 1, tile::trunkRight);
    }

    void placeDecorations() {
        const std::array<std::int16_t, 5> smallOnes{tile::bush, tile::flower,
                                                    world_ == 3 ? tile::torch : tile::mushroom,
                                                    tile::rock, tile::fence};
        for (std::int32_t x = 1; x < W - 2; ++x) {
            const std::int32_t ground = groundAt(x);
            if (ground == noGround || !random_.oneIn(4)) {
                continue;
            }
            if (random_.oneIn(3) && isFlat(x, x + 1) &&
                isFreeBox(x, ground - 4, x + 1, ground - 1)) {
                placeTree(x, ground);
                x += 2;
            } else if (isFreeColumn(x, ground - 1, ground - 1)) {
                map_.setTile(x, ground - 1,
                             smallOnes[static_cast<std::size_t>(random_.between(0, 4))]);
            }
        }
    }

    void placeCoinRow(std::int32_t x0, std::int32_t x1, std::int32_t y) {
        for (std::int32_t x = x0; x <= x1; ++x) {
            if (isSky(x, y)) {
                map_.setTile(x, y, tile::coin);
            }
        }
    }

    // Coins above platforms and arcs of coins over pits.
    void placeCoinRows() {
        for (const Platform& platform : platforms_) {
            if (random_.oneIn(3)) {
                map_.setTile(platform.x0 + 1, platform.y - 1, tile::gem);
            } else {
                placeCoinRow(platform.x0, platform.x1, platform.y - 2);
            }
        }
        for (const Pit& pit : pits_) {
            const std::int32_t edge = std::min(groundAt(pit.x0 - 1), groundAt(pit.x1 + 1));
            placeCoinRow(pit.x0, pit.x1, edge - 3);
        }
    }

    // A special on the first free cell just above the ground near x.
    bool placeOnGround(std::int32_t x, std::uint8_t special) {
        const std::int32_t ground = groundAt(x);
        return ground != noGround && isSky(x, ground - 1) &&
               map_.placeSpecial(x, ground - 1, special);
    }

    // The start, the exit and the checkpoint come first so that nothing
    // else takes their cells.
    void placeLandmarks() {
        placeOnGround(3, special::playerStart);
        placeOnGround(7, special::signpost);
        placeOnGround(W - 5, special::levelExit);
        for (std::int32_t x = W / 2; x < W - 20; ++x) {
            if (placeOnGround(x, special::checkpoint)) {
                break;
            }
        }
    }

    void placeSpecials() {
        map_.placeSpecial(0, horizonRow + 2, special::cameraStop);
        map_.placeSpecial(W - 1, horizonRow + 2, special::cameraStop);
        placeOnPlatforms();
        placeOverPits();
        placeFlyers();
        if (world_ == 3) {
            for (std::int32_t x = W - 30; x < W - 10; ++x) {
                if (isFlat(x - 1, x + 1) && placeOnGround(x, special::boss)) {
                    break;
                }
            }
        }
    }

    // Ground enemies walk between two patrol limits.
    void placePatrols() {
        for (std::int32_t x = 20; x < W - 20; x += random_.between(12, 24)) {
            if (!isFlat(x - 3, x + 3)) {
                continue;
            }
            const std::int32_t y = top_[static_cast<std::size_t>(x)] - 1;
            if (!isSky(x - 3, y) || !isSky(x, y) || !isSky(x + 3, y)) {
                continue;
            }
            const std::uint8_t enemy = random_.oneIn(3)   ? special::spikeBall
                                       : random_.oneIn(2) ? special::guard
                                                          : special::walker;
            map_.placeSpecial(x, y, enemy);
            map_.placeSpecial(x - 3, y, special::patrolLimit);
            map_.placeSpecial(x + 3, y, special::patrolLimit);
        }
    }

    void placeOnPlatforms() {
        bool lifeGiven = false;
        bool keyGiven = false;
        for (const Platform& platform : platforms_) {
            const std::int32_t middle = (platform.x0 + platform.x1 + 1) / 2;
            if (platform.x1 - platform.x0 >= 3 && random_.oneIn(2)) {
                map_.placeSpecial(middle, platform.y - 1, special::walker);
            } else if (!lifeGiven) {
                lifeGiven = map_.placeSpecial(middle, platform.y - 1, special::extraLife);
            } else if (!keyGiven && random_.oneIn(2)) {
                keyGiven = map_.placeSpecial(platform.x1, platform.y - 1, special::key);
            } else if (random_.oneIn(3)) {
                map_.placeSpecial(platform.x0, platform.y - 4, special::secretArea);
            }
        }
    }

    void placeOverPits() {
        for (const Pit& pit : pits_) {
            const std::int32_t width = pit.x1 - pit.x0 + 1;
            const std::int32_t edge = std::min(groundAt(pit.x0 - 1), groundAt(pit.x1 + 1));
            if (width >= 5) {
                map_.placeSpecial(pit.x0 + width / 2, edge - 1, special::lift);
                placeOnGround(pit.x0 - 2, special::spring);
            } else if (width == 4 && isFreeBox(pit.x0, edge, pit.x1, edge)) {
                for (std::int32_t x = pit.x0; x <= pit.x1; ++x) {
                    map_.setTile(x, edge, tile::bridge);
                }
            }
        }
    }

    void placeFlyers() {
        for (std::int32_t x = 30; x < W - 20; x += random_.between(25, 40)) {
            const std::int32_t ground = groundAt(x) == noGround ? waterline : groundAt(x);
            const std::int32_t y = ground - random_.between(6, 9);
            if (isFreeBox(x - 1, y - 1, x + 1, y + 1)) {
                map_.placeSpecial(x, y, special::flyer);
            }
        }
    }

    struct Pit {
        std::int32_t x0;
        std::int32_t x1;
    };
    struct Platform {
        std::int32_t x0;
        std::int32_t x1;
        std::int32_t y;
    };

    int world_;
    Random random_;
    LevelMap map_;
    std::vector<std::int32_t> top_;
    std::vector<Pit> pits_;
    std::vector<Platform> platforms_;
};

} // namespace

std::vector<std::uint8_t> sampleDefaultSpecials() {
    std::vector<std::uint8_t> table(1024, 0);
    table[static_cast<std::size_t>(tile::coin)] = special::coin;
    table[static_cast<std::size_t>(tile::gem)] = special::gem;
    table[static_cast<std::size_t>(tile::spikesUp)] = special::spikes;
    table[static_cast<std::size_t>(tile::spikesDown)] = special::spikes;
    table[static_cast<std::size_t>(tile::liquidSurface)] = special::liquid;
    table[static_cast<std::size_t>(tile::bonusBlock)] = special::bonusBlock;
    return table;
}

LevelMap buildLevel(const WorldTheme& theme, int levelIndex) {
    return LevelBuilder(theme, levelIndex).build();
}

} // namespace marvek::sample
