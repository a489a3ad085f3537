#include "tool/sample/LevelBuilder.h"

#include "tool/sample/Random.h"
#include "tool/sample/SpecialIds.h"
#include "tool/sample/TileArt.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

namespace marvek::sample {
namespace {

constexpr std::int32_t W = LevelMap::width;
constexpr std::int32_t H = LevelMap::height;
constexpr std::int32_t noGround = -1;
constexpr std::int32_t baseGround = 72;
constexpr std::int32_t waterline = 74;
constexpr std::int32_t bedrockRow = 82;
constexpr std::int32_t deepRow = 79;
// The sky gradient: the first row of bands 1, 2 and 3 (the horizon).
constexpr std::int32_t skyBand1Row = 30;
constexpr std::int32_t skyBand2Row = 45;
constexpr std::int32_t horizonRow = 55;
// Ground heights: rolling ground, and plateaus that rise well above it.
constexpr std::int32_t highestGround = 61;
constexpr std::int32_t lowestGround = 73;
constexpr std::int32_t highestPlateau = 50;
constexpr std::int32_t lowestPlateau = 56;
// Height differences the player climbs by ladder rather than jumps.
constexpr std::int32_t ladderStep = 4;
// Two tiers of floating islands: halfway up and in the upper third.
constexpr std::int32_t middleTierTop = 32;
constexpr std::int32_t middleTierBottom = 42;
constexpr std::int32_t upperTierTop = 11;
constexpr std::int32_t upperTierBottom = 22;
// A platform this close above something to stand on is reachable by a jump.
constexpr std::int32_t jumpHeight = 5;
constexpr std::int32_t longestLadder = 16;

std::int32_t skyBandAt(std::int32_t y) {
    return y < skyBand1Row ? 0 : y < skyBand2Row ? 1 : y < horizonRow ? 2 : 3;
}

class LevelBuilder {
public:
    LevelBuilder(const WorldTheme& theme, int levelIndex)
        : world_(theme.number),
          random_(static_cast<std::uint32_t>(theme.number * 7919 + levelIndex * 104729)),
          map_(sampleDefaultSpecials()), top_(W, baseGround) {}

    LevelMap build() {
        paintSky();
        shapeTerrain();
        paintTerrain();
        placeCliffLadders();
        placeLandmarks();
        placeHills();
        placeTowers();
        placeIslandTier(middleTierTop, middleTierBottom, 2);
        placeIslandTier(upperTierTop, upperTierBottom, 3);
        placePlatforms();
        placePipes();
        placeBlockRows();
        placeSpikes();
        placePatrols();
        placeDecorations();
        placeCoinRows();
        placeSpecials();
        placeClouds();
        return map_;
    }

private:
    struct Pit {
        std::int32_t x0;
        std::int32_t x1;
    };
    struct Platform {
        std::int32_t x0;
        std::int32_t x1;
        std::int32_t y;
    };

    // Puts a tile, drawn over the sky band of its row.
    void put(std::int32_t x, std::int32_t y, std::int16_t tile) {
        map_.setTile(x, y, overSky(tile, skyBandAt(y)));
    }
    bool isSkyTile(std::int32_t x, std::int32_t y) const {
        const std::int16_t tile = map_.tileAt(x, y);
        return tile >= tile::sky0 && tile <= tile::sky3;
    }
    bool isSky(std::int32_t x, std::int32_t y) const {
        return isSkyTile(x, y) && map_.specialAt(x, y) == 0;
    }
    // Something to stand on: neither sky nor liquid.
    bool isStandable(std::int32_t x, std::int32_t y) const {
        const std::int16_t tile = map_.tileAt(x, y);
        return map_.contains(x, y) && !isSkyTile(x, y) && tile != tile::liquid &&
               tile != tile::liquidSurface;
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
        constexpr std::array<std::int16_t, 4> bands{tile::sky0, tile::sky1, tile::sky2, tile::sky3};
        for (std::int32_t y = 0; y < H; ++y) {
            const std::int16_t band = bands[static_cast<std::size_t>(skyBandAt(y))];
            for (std::int32_t x = 0; x < W; ++x) {
                map_.setTile(x, y, band);
            }
        }
    }

    // Clouds at every height of the sky, in the room the level leaves free.
    void placeClouds() {
        for (std::int32_t x = random_.between(0, 6); x < W - 3; x += random_.between(6, 14)) {
            const std::int32_t y = random_.between(1, horizonRow - 4);
            if (!isFreeBox(x - 1, y - 1, x + 3, y + 2)) {
                continue;
            }
            const std::array<std::int16_t, 6> parts{tile::cloudTopLeft,  tile::cloudTop,
                                                    tile::cloudTopRight, tile::cloudBottomLeft,
                                                    tile::cloudBottom,   tile::cloudBottomRight};
            for (std::int32_t i = 0; i < 6; ++i) {
                put(x + i % 3, y + i / 3, parts[static_cast<std::size_t>(i)]);
            }
        }
    }

    // Ground heights column by column: rolling runs, tall plateaus and
    // liquid pits. A plateau never borders a pit, so a ladder can always
    // lead up to it. The first and last columns stay flat for the start and
    // the exit.
    void shapeTerrain() {
        std::int32_t height = baseGround;
        std::int32_t x = 14;
        enum class Last { ground, pit, plateau } last = Last::ground;
        while (x < W - 18) {
            if (last == Last::ground && x > 30 && x < W - 40 && random_.oneIn(5)) {
                // One draw at a time: the order of a call's arguments is the
                // compiler's choice.
                const std::int32_t plateau = random_.between(highestPlateau, lowestPlateau);
                x = raiseGround(x, random_.between(10, 18), plateau);
                last = Last::plateau;
            } else if (last != Last::plateau && random_.oneIn(3)) {
                x = digPit(x, random_.between(3, 6));
                last = Last::pit;
            } else {
                height = std::clamp(height + random_.between(-3, 3), highestGround, lowestGround);
                x = raiseGround(x, random_.between(6, 15), height);
                last = Last::ground;
            }
        }
        for (; x < W; ++x) {
            top_[static_cast<std::size_t>(x)] = height;
        }
    }

    // Ground at one height from x on; returns the column after it.
    std::int32_t raiseGround(std::int32_t x, std::int32_t length, std::int32_t height) {
        for (std::int32_t i = 0; i < length && x + i < W - 18; ++i) {
            top_[static_cast<std::size_t>(x + i)] = height;
        }
        return std::min(x + length, W - 18);
    }

    std::int32_t digPit(std::int32_t x, std::int32_t length) {
        for (std::int32_t i = 0; i < length; ++i) {
            top_[static_cast<std::size_t>(x + i)] = noGround;
        }
        pits_.push_back({x, x + length - 1});
        return x + length;
    }

    void placeLadder(std::int32_t x, std::int32_t y0, std::int32_t y1) {
        for (std::int32_t y = y0; y <= y1; ++y) {
            put(x, y, tile::ladder);
        }
    }

    // A ladder up every step of the ground too high to jump.
    void placeCliffLadders() {
        for (std::int32_t x = 0; x + 1 < W; ++x) {
            const std::int32_t left = groundAt(x);
            const std::int32_t right = groundAt(x + 1);
            if (left == noGround || right == noGround || std::abs(left - right) < ladderStep) {
                continue;
            }
            const std::int32_t foot = left > right ? x : x + 1;
            const std::int32_t high = std::min(left, right);
            const std::int32_t low = std::max(left, right);
            if (isFreeColumn(foot, high, low - 1)) {
                placeLadder(foot, high, low - 1);
            }
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
                put(x, y, terrainTile(x, y, ground, left, right));
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
            put(x, y, y == waterline ? tile::liquidSurface : tile::liquid);
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
                put(left, y, tile::hillLeft);
                put(right, y, tile::hillRight);
                for (std::int32_t i = left + 1; i < right; ++i) {
                    put(i, y, r == 0 ? tile::hillTop : tile::hillFill);
                }
            }
        }
    }

    void placePlatform(std::int32_t x0, std::int32_t length, std::int32_t y) {
        for (std::int32_t i = 0; i < length; ++i) {
            const std::int16_t part = i == 0            ? tile::platformLeft
                                      : i == length - 1 ? tile::platformRight
                                                        : tile::platform;
            put(x0 + i, y, part);
        }
    }

    // Stone towers with a ladder up the side, standing on flat ground.
    void placeTowers() {
        for (std::int32_t x = random_.between(35, 55); x < W - 30; x += random_.between(40, 70)) {
            if (!isFlat(x - 1, x + 3)) {
                continue;
            }
            const std::int32_t ground = top_[static_cast<std::size_t>(x)];
            const std::int32_t y = ground - random_.between(7, 12);
            if (!isFreeBox(x - 1, y - 3, x + 3, ground - 1)) {
                continue;
            }
            for (std::int32_t row = y; row < ground; ++row) {
                put(x, row, tile::stoneBlock);
                put(x + 1, row, tile::stoneBlock);
            }
            placeLadder(x + 2, y, ground - 1);
        }
    }

    // A floating island: a grass top over a body of earth that narrows.
    void placeIsland(const Platform& island) {
        for (std::int32_t x = island.x0; x <= island.x1; ++x) {
            put(x, island.y,
                x == island.x0   ? tile::grassLeft
                : x == island.x1 ? tile::grassRight
                                 : tile::grassTop);
        }
        for (std::int32_t row = 1; row <= islandDepth(island); ++row) {
            const std::int32_t x0 = island.x0 + row;
            const std::int32_t x1 = island.x1 - row;
            for (std::int32_t x = x0; x <= x1; ++x) {
                put(x, island.y + row,
                    x == x0   ? tile::earthLeft
                    : x == x1 ? tile::earthRight
                              : tile::earth);
            }
        }
        islands_.push_back(island);
    }
    static std::int32_t islandDepth(const Platform& island) {
        return island.x1 - island.x0 >= 6 ? 2 : 1;
    }
    bool hasRoomFor(const Platform& island) const {
        return island.x0 > 2 && island.x1 < W - 3 &&
               isFreeBox(island.x0 - 2, island.y - 4, island.x1 + 2,
                         island.y + islandDepth(island) + 2);
    }

    // Groups of islands between two rows, joined by bridges, each group with
    // a way down to the ground.
    void placeIslandTier(std::int32_t top, std::int32_t bottom, std::int32_t mostInGroup) {
        for (std::int32_t x = random_.between(20, 40); x < W - 30; x += random_.between(26, 48)) {
            const std::int32_t y = random_.between(top, bottom);
            x = placeIslandGroup(x, y, random_.between(1, mostInGroup));
        }
    }

    // Returns the column after the group.
    std::int32_t placeIslandGroup(std::int32_t x, std::int32_t y, std::int32_t count) {
        Platform island{x, x + random_.between(5, 9) - 1, y};
        if (!hasRoomFor(island)) {
            return island.x1;
        }
        placeIsland(island);
        linkDown(island);
        for (std::int32_t i = 1; i < count; ++i) {
            const std::int32_t gap = random_.between(3, 6);
            const std::int32_t x0 = island.x1 + gap + 1;
            const Platform next{x0, x0 + random_.between(5, 9) - 1, y};
            if (!hasRoomFor(next)) {
                break;
            }
            for (std::int32_t bx = island.x1 + 1; bx < next.x0; ++bx) {
                put(bx, y, tile::bridge);
            }
            placeIsland(next);
            island = next;
        }
        return island.x1;
    }

    // Rows from a ledge down to the first thing to stand on under it (the
    // height of the map when there is none).
    std::int32_t dropBelow(std::int32_t x, std::int32_t y) const {
        for (std::int32_t row = y + 1; row < H; ++row) {
            if (!isSkyTile(x, row)) {
                return isStandable(x, row) ? row - y : H;
            }
        }
        return H;
    }
    // From either end of a ledge: an island's body hangs under its middle.
    std::int32_t dropBelow(const Platform& ledge) const {
        return std::min(dropBelow(ledge.x0, ledge.y), dropBelow(ledge.x1, ledge.y));
    }

    // A chain of small platforms stepping down from a high ledge until a
    // jump reaches it from below; a ladder where the next step does not fit.
    void linkDown(const Platform& from) {
        Platform current = from;
        std::int32_t side = random_.oneIn(2) ? -1 : 1;
        for (std::int32_t step = 0; step < 16; ++step) {
            const std::int32_t drop = dropBelow(current);
            if (drop <= jumpHeight) {
                return;
            }
            if (drop <= longestLadder && !random_.oneIn(3) && hangLadder(current)) {
                return;
            }
            if (random_.oneIn(4)) {
                side = -side;
            }
            const std::optional<Platform> next = stepBelow(current, side);
            if (!next) {
                hangLadder(current);
                return;
            }
            placePlatform(next->x0, next->x1 - next->x0 + 1, next->y);
            steps_.push_back(*next);
            current = *next;
        }
    }

    // The next platform of a chain, beside and below the current one: on
    // the given side or else the other.
    std::optional<Platform> stepBelow(const Platform& current, std::int32_t side) {
        const std::int32_t length = random_.between(3, 4);
        const std::int32_t y = current.y + random_.between(3, 4);
        const std::int32_t gap = random_.between(1, 2);
        for (const std::int32_t direction : {side, -side}) {
            const std::int32_t x0 =
                direction < 0 ? current.x0 - gap - length : current.x1 + gap + 1;
            const Platform next{x0, x0 + length - 1, y};
            if (x0 > 1 && next.x1 < W - 2 && isFreeBox(x0 - 1, y - 2, next.x1 + 1, y + 1)) {
                return next;
            }
        }
        return std::nullopt;
    }

    // A ladder from one end of a ledge down to the ground under it.
    bool hangLadder(const Platform& ledge) {
        for (const std::int32_t x : {ledge.x0, ledge.x1}) {
            const std::int32_t drop = dropBelow(x, ledge.y);
            if (drop <= longestLadder && isFreeColumn(x, ledge.y + 1, ledge.y + drop - 1)) {
                placeLadder(x, ledge.y, ledge.y + drop - 1);
                return true;
            }
        }
        return false;
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
            platforms_.push_back({x, x + length - 1, y});
            const std::int32_t ladderX = x + 1;
            const std::int32_t below = groundAt(ladderX);
            if (below != noGround && random_.oneIn(2) && isFreeColumn(ladderX, y + 1, below - 1)) {
                for (std::int32_t row = y; row < below; ++row) {
                    put(ladderX, row, tile::ladder);
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
                put(x, y, r == 0 ? tile::pipeTopLeft : tile::pipeLeft);
                put(x + 1, y, r == 0 ? tile::pipeTopRight : tile::pipeRight);
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
                put(x + i, y, i == length / 2 ? tile::bonusBlock : tile::brick);
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
                put(x + i, y, tile::spikesUp);
            }
        }
    }

    void placeTree(std::int32_t x, std::int32_t ground) {
        put(x, ground - 3, tile::crownTopLeft);
        put(x + 1, ground - 3, tile::crownTopRight);
        put(x, ground - 2, tile::crownBottomLeft);
        put(x + 1, ground - 2, tile::crownBottomRight);
        put(x, ground - 1, tile::trunkLeft);
        put(x + 1, ground - 1, tile::trunkRight);
    }

    // A tree or a bush on some islands.
    void decorateIslands() {
        for (const Platform& island : islands_) {
            const std::int32_t x = random_.between(island.x0 + 1, island.x1 - 2);
            if (random_.oneIn(2) && isFreeBox(x, island.y - 4, x + 1, island.y - 1)) {
                placeTree(x, island.y);
            } else if (random_.oneIn(2) && isSky(x, island.y - 1)) {
                put(x, island.y - 1, random_.oneIn(2) ? tile::bush : tile::flower);
            }
        }
    }

    void placeDecorations() {
        decorateIslands();
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
                put(x, ground - 1, smallOnes[static_cast<std::size_t>(random_.between(0, 4))]);
            }
        }
    }

    void placeCoinRow(std::int32_t x0, std::int32_t x1, std::int32_t y) {
        for (std::int32_t x = x0; x <= x1; ++x) {
            if (isSky(x, y)) {
                put(x, y, tile::coin);
            }
        }
    }

    // Coins above platforms and arcs of coins over pits.
    void placeCoinRows() {
        for (const Platform& platform : platforms_) {
            if (random_.oneIn(3)) {
                put(platform.x0 + 1, platform.y - 1, tile::gem);
            } else {
                placeCoinRow(platform.x0, platform.x1, platform.y - 2);
            }
        }
        for (const Pit& pit : pits_) {
            const std::int32_t edge = std::min(groundAt(pit.x0 - 1), groundAt(pit.x1 + 1));
            placeCoinRow(pit.x0, pit.x1, edge - 3);
        }
        for (const Platform& step : steps_) {
            if (random_.oneIn(3)) {
                placeCoinRow(step.x0, step.x1, step.y - 2);
            }
        }
        for (const Platform& island : islands_) {
            if (random_.oneIn(3)) {
                put(island.x1 - 1, island.y - 1, tile::gem);
            } else {
                placeCoinRow(island.x0 + 1, island.x1 - 1, island.y - 2);
            }
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
        placeOnIslands();
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

    // Enemies patrol the wider islands; the highest one hides an extra life
    // and a secret.
    void placeOnIslands() {
        for (const Platform& island : islands_) {
            if (island.x1 - island.x0 >= 5 && random_.oneIn(2)) {
                const std::int32_t y = island.y - 1;
                map_.placeSpecial((island.x0 + island.x1 + 1) / 2, y,
                                  random_.oneIn(2) ? special::guard : special::walker);
                map_.placeSpecial(island.x0, y, special::patrolLimit);
                map_.placeSpecial(island.x1, y, special::patrolLimit);
            }
        }
        const auto highest =
            std::min_element(islands_.begin(), islands_.end(),
                             [](const Platform& a, const Platform& b) { return a.y < b.y; });
        if (highest != islands_.end()) {
            map_.placeSpecial(highest->x0 + 1, highest->y - 1, special::extraLife);
            map_.placeSpecial(highest->x0, highest->y - 4, special::secretArea);
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
                    put(x, edge, tile::bridge);
                }
            }
        }
    }

    // Flyers at every height, from just over the ground to the upper sky.
    void placeFlyers() {
        for (std::int32_t x = 30; x < W - 20; x += random_.between(18, 32)) {
            const std::int32_t ground = groundAt(x) == noGround ? waterline : groundAt(x);
            const std::int32_t y = random_.between(upperTierTop - 4, ground - 6);
            if (isFreeBox(x - 1, y - 1, x + 1, y + 1)) {
                map_.placeSpecial(x, y, special::flyer);
            }
        }
    }

    int world_;
    Random random_;
    LevelMap map_;
    std::vector<std::int32_t> top_;
    std::vector<Pit> pits_;
    std::vector<Platform> platforms_;
    std::vector<Platform> islands_;
    std::vector<Platform> steps_;
};

} // namespace

std::vector<std::uint8_t> sampleDefaultSpecials() {
    std::vector<std::uint8_t> table(1024, 0);
    // Every copy of a tile over the sky bands brings the same special.
    const auto bring = [&table](std::int16_t which, std::uint8_t special) {
        for (std::int32_t band = 0; band < tile::skyBands; ++band) {
            table[static_cast<std::size_t>(overSky(which, band))] = special;
        }
    };
    bring(tile::coin, special::coin);
    bring(tile::gem, special::gem);
    bring(tile::spikesUp, special::spikes);
    bring(tile::spikesDown, special::spikes);
    bring(tile::liquidSurface, special::liquid);
    bring(tile::bonusBlock, special::bonusBlock);
    return table;
}

LevelMap buildLevel(const WorldTheme& theme, int levelIndex) {
    return LevelBuilder(theme, levelIndex).build();
}

} // namespace marvek::sample
