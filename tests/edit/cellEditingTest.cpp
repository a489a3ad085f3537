#include "data/CellBlock.h"
#include "data/cellClipboard.h"
#include "data/clsLevel.h"
#include "data/floodFill.h"
#include "data/lineWalk.h"
#include "data/specialChanges.h"
#include "graphics/clsRectangle.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace marvek::test {
namespace {

using Point = std::pair<std::int32_t, std::int32_t>;

std::vector<Point> line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    std::vector<Point> cells;
    walkLine(x0, y0, x1, y1, [&](std::int32_t x, std::int32_t y) { cells.emplace_back(x, y); });
    return cells;
}

TEST(LineWalk, VisitsEveryCellOnceFromStartToEnd) {
    const auto across = line(2, 5, 12, 5);
    ASSERT_EQ(across.size(), 11U);
    for (std::int32_t i = 0; i <= 10; ++i) {
        EXPECT_EQ(across[static_cast<std::size_t>(i)], Point(2 + i, 5));
    }
    // Backwards and steep: one cell per row, each a neighbour of the last.
    const auto steep = line(3, 9, 1, 0);
    ASSERT_EQ(steep.size(), 10U);
    EXPECT_EQ(steep.front(), Point(3, 9));
    EXPECT_EQ(steep.back(), Point(1, 0));
    for (std::size_t i = 1; i < steep.size(); ++i) {
        EXPECT_EQ(steep[i - 1].second - steep[i].second, 1);
        EXPECT_LE(std::abs(steep[i - 1].first - steep[i].first), 1);
    }
    EXPECT_EQ(line(-4, -4, -4, -4), std::vector<Point>{Point(-4, -4)});
    EXPECT_EQ(line(0, 0, 3, 3), (std::vector<Point>{{0, 0}, {1, 1}, {2, 2}, {3, 3}}));
}

// A level drawn from rows of characters: '.' tile 0, '#' tile 9, 'o' tile 0
// with special 5.
class CellEditing : public ::testing::Test {
protected:
    void draw(const std::vector<std::string>& rows) {
        level_.width = static_cast<std::int32_t>(rows.front().size());
        level_.height = static_cast<std::int32_t>(rows.size());
        level_.resizeCells();
        std::vector<std::uint8_t> defaults(64);
        defaults[3] = 33;
        defaults[4] = 44;
        level_.setDefaultSpecials(defaults);
        for (std::int32_t y = 0; y < level_.height; ++y) {
            for (std::int32_t x = 0; x < level_.width; ++x) {
                const char c = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
                level_.cellAt(x, y).tile = c == '#' ? 9 : 0;
                level_.cellAt(x, y).special = c == 'o' ? 5 : 0;
            }
        }
    }

    // The tiles as digits, one string per row.
    std::vector<std::string> tiles() const {
        std::vector<std::string> rows;
        for (std::int32_t y = 0; y < level_.height; ++y) {
            std::string row;
            for (std::int32_t x = 0; x < level_.width; ++x) {
                row += static_cast<char>('0' + level_.cellAt(x, y).tile);
            }
            rows.push_back(row);
        }
        return rows;
    }

    static clsRectangle area(std::int32_t left, std::int32_t top, std::int32_t width,
                             std::int32_t height) {
        clsRectangle rectangle;
        rectangle.left = left;
        rectangle.top = top;
        rectangle.width = width;
        rectangle.height = height;
        return rectangle;
    }

    clsLevel level_;
};

TEST_F(CellEditing, FloodStaysInsideWallsAndDoesNotCrossDiagonals) {
    draw({
        "..#.....",
        "..#.###.",
        "##..#.#.",
        "...##.#.",
        "....###.",
    });
    // The top-left room touches the open cell (2,2) only at a corner.
    const CellRegion room = floodRegion(level_, 0, 0, RegionKey::tile);
    EXPECT_EQ(room.count(), 4);
    EXPECT_TRUE(room.contains(1, 1));
    EXPECT_FALSE(room.contains(2, 2));
    // The hole inside the ring of walls is neither reached from outside nor
    // leaked out of.
    const CellRegion outside = floodRegion(level_, 7, 0, RegionKey::tile);
    EXPECT_EQ(outside.count(), 19);
    EXPECT_FALSE(outside.contains(5, 2));
    EXPECT_TRUE(outside.contains(2, 2));
    EXPECT_TRUE(outside.contains(0, 4));
    EXPECT_FALSE(outside.contains(0, 0));
    EXPECT_EQ(floodRegion(level_, 5, 3, RegionKey::tile).count(), 2);
    // Walls meeting at a corner are two regions.
    const CellRegion wall = floodRegion(level_, 2, 0, RegionKey::tile);
    EXPECT_EQ(wall.count(), 2);
    EXPECT_FALSE(wall.contains(1, 2));
    EXPECT_EQ(floodRegion(level_, 4, 1, RegionKey::tile).count(), 11);
    EXPECT_TRUE(floodRegion(level_, 8, 0, RegionKey::tile).empty()) << "outside the map";
    EXPECT_TRUE(floodRegion(level_, 0, -1, RegionKey::tile).empty());
}

TEST_F(CellEditing, FloodAgreesWithACellByCellSearchOnMazes) {
    // Widths around the sixteen-cell strides the fill takes at once.
    std::mt19937 random(18);
    for (const std::int32_t width : {1, 7, 16, 17, 33, 64, 70}) {
        for (int round = 0; round < 6; ++round) {
            const std::int32_t height = 1 + static_cast<std::int32_t>(random() % 40);
            std::vector<std::string> rows(static_cast<std::size_t>(height));
            for (auto& row : rows) {
                for (std::int32_t x = 0; x < width; ++x) {
                    // Mostly open, so that regions are large and ragged.
                    row += random() % 4 == 0 ? '#' : '.';
                }
            }
            draw(rows);
            const std::int32_t x0 = static_cast<std::int32_t>(random() % width);
            const std::int32_t y0 = static_cast<std::int32_t>(random() % height);
            std::vector<bool> expected(static_cast<std::size_t>(width * height));
            std::vector<Point> queue{{x0, y0}};
            expected[static_cast<std::size_t>(y0 * width + x0)] = true;
            while (!queue.empty()) {
                const auto [x, y] = queue.back();
                queue.pop_back();
                for (const auto& [nx, ny] :
                     {Point(x - 1, y), Point(x + 1, y), Point(x, y - 1), Point(x, y + 1)}) {
                    const auto at = static_cast<std::size_t>(ny * width + nx);
                    if (level_.contains(nx, ny) && !expected[at] &&
                        level_.cellAt(nx, ny).tile == level_.cellAt(x0, y0).tile) {
                        expected[at] = true;
                        queue.emplace_back(nx, ny);
                    }
                }
            }
            const CellRegion region = floodRegion(level_, x0, y0, RegionKey::tile);
            std::int64_t count = 0;
            for (std::int32_t y = 0; y < height; ++y) {
                for (std::int32_t x = 0; x < width; ++x) {
                    const bool inside = expected[static_cast<std::size_t>(y * width + x)];
                    count += inside ? 1 : 0;
                    ASSERT_EQ(region.contains(x, y), inside)
                        << width << " x " << height << " from " << x0 << "," << y0 << " at " << x
                        << "," << y;
                }
            }
            EXPECT_EQ(region.count(), count);
        }
    }
}

TEST_F(CellEditing, BrushPatternIsAnchoredAtTheClickedCell) {
    draw({
        "......",
        "......",
        "......",
        "####..",
    });
    CellBlock brush(2, 2);
    brush.at(0, 0).tile = 1;
    brush.at(1, 0).tile = 2;
    brush.at(0, 1).tile = 3;
    brush.at(1, 1).tile = 4;
    // Clicked at (3, 1): that cell takes the brush's corner, and cells left
    // of and above it wrap around without a negative index.
    const CellRegion region = floodRegion(level_, 3, 1, RegionKey::tile);
    fillRegion(level_, region, brush, 3, 1, PatternSpecials::tileDefaults);
    EXPECT_EQ(tiles(), (std::vector<std::string>{
                           "434343",
                           "212121",
                           "434343",
                           "999921",
                       }));
    EXPECT_EQ(level_.cellAt(0, 0).special, 44) << "tile 4's default special";
    EXPECT_EQ(level_.cellAt(0, 1).special, 0) << "tile 2 has none";
    EXPECT_EQ(level_.cellAt(0, 3).special, 0) << "walls untouched";
    EXPECT_TRUE(level_.modified);
    // A brush taller than the level still repeats from the clicked row.
    draw({"...", "...", "..."});
    CellBlock tall(1, 5);
    for (std::int16_t row = 0; row < 5; ++row) {
        tall.at(0, row).tile = static_cast<std::int16_t>(row + 1);
    }
    fillRegion(level_, floodRegion(level_, 0, 1, RegionKey::tile), tall, 0, 1,
               PatternSpecials::keep);
    EXPECT_EQ(tiles(), (std::vector<std::string>{"555", "111", "222"}));
}

TEST_F(CellEditing, FillsKeepOrCarrySpecialsAsAsked) {
    draw({
        "o...",
        "..#.",
    });
    CellBlock carried(1, 1);
    carried.at(0, 0) = Cell{3, 17, 0};
    fillRegion(level_, floodRegion(level_, 0, 0, RegionKey::tile), carried, 0, 0,
               PatternSpecials::carried);
    EXPECT_EQ(level_.cellAt(0, 0).special, 17) << "the pasted cell's own special, not 33";
    EXPECT_EQ(level_.cellAt(3, 1).special, 17);
    EXPECT_EQ(level_.cellAt(2, 1).tile, 9);

    draw({
        "o...",
        "..#.",
    });
    fillRegion(level_, floodRegion(level_, 1, 0, RegionKey::tile), carried, 0, 0,
               PatternSpecials::keep);
    EXPECT_EQ(level_.cellAt(0, 0).special, 5);
    EXPECT_EQ(level_.cellAt(1, 0).special, 0);
}

TEST_F(CellEditing, SpecialsModeFloodsBySpecialWhateverTheTiles) {
    draw({
        "oo#o",
        ".o#o",
        "oooo",
    });
    // Specials join across walls of another tile; the lone corner cell at
    // (0,1) has none and stays out.
    const CellRegion region = floodRegion(level_, 0, 0, RegionKey::special);
    EXPECT_EQ(region.count(), 9);
    EXPECT_FALSE(region.contains(0, 1));
    EXPECT_FALSE(region.contains(2, 0));
    fillRegionSpecial(level_, region, 12);
    EXPECT_EQ(level_.cellAt(3, 0).special, 12);
    EXPECT_EQ(level_.cellAt(0, 1).special, 0);
    EXPECT_EQ(level_.cellAt(2, 0).tile, 9) << "tiles stay";
}

TEST_F(CellEditing, ARectangleFillOfCellsRepeatsThemOverWhatTheTileFillCovers) {
    draw({
        "....",
        "....",
        "....",
    });
    CellBlock pattern(2, 1);
    pattern.at(0, 0) = Cell{3, 7, 0};
    pattern.at(1, 0) = Cell{4, 0, 0};
    // Past the right and bottom edges: the part on the map, from the corner.
    fillCellRectangle(level_, pattern, area(1, 1, 5, 5));
    EXPECT_EQ(tiles(), (std::vector<std::string>{"0000", "0343", "0343"}));
    EXPECT_EQ(level_.cellAt(1, 2).special, 7) << "the block's own special";
    EXPECT_EQ(level_.cellAt(2, 2).special, 0) << "not the tile's default";

    // A left edge off the map fills nothing, as the tile fill does.
    draw({"....", "...."});
    fillCellRectangle(level_, pattern, area(-1, 0, 3, 1));
    level_.fillTileRectangle(pattern.tiles(), area(-1, 0, 3, 1), false);
    EXPECT_EQ(tiles(), (std::vector<std::string>{"0000", "0000"}));
}

TEST_F(CellEditing, CopyClearStampAndReplace) {
    draw({
        ".o#.",
        "##o.",
        "....",
    });
    const CellBlock block = copyCells(level_, area(1, 0, 1, 1));
    ASSERT_EQ(block.width(), 2);
    EXPECT_EQ(block.at(0, 0).special, 5);
    EXPECT_EQ(block.at(1, 0).tile, 9);
    EXPECT_EQ(block.at(1, 1).special, 5);
    // Beyond the map the copy reads empty cells.
    EXPECT_EQ(copyCells(level_, area(3, 2, 1, 1)).at(1, 1), Cell{});

    clearCells(level_, area(1, 0, 1, 1));
    EXPECT_EQ(level_.cellAt(2, 0), Cell{});
    EXPECT_EQ(level_.cellAt(1, 1), Cell{});
    EXPECT_EQ(level_.cellAt(0, 1).tile, 9) << "outside the area";

    // Stamped hanging over the right edge: what falls on the map lands.
    stampCells(level_, block, 3, 1);
    EXPECT_EQ(level_.cellAt(3, 1).special, 5);
    EXPECT_EQ(level_.cellAt(3, 2).tile, 9);

    EXPECT_EQ(countTile(level_, 9, nullptr), 2);
    const clsRectangle top = area(0, 0, 3, 1);
    EXPECT_EQ(replaceTile(level_, 9, 4, &top), 1);
    EXPECT_EQ(level_.cellAt(0, 1).tile, 4);
    EXPECT_EQ(level_.cellAt(3, 2).tile, 9) << "below the area";
    EXPECT_EQ(level_.cellAt(3, 1).special, 5) << "replacing keeps specials";
    EXPECT_EQ(replaceTile(level_, 0, 1, nullptr), 10);
    EXPECT_EQ(countTile(level_, 0, nullptr), 0);
}

TEST_F(CellEditing, SpecialsAloneAreClearedAndStampedAndAStepNamesWhatItTook) {
    draw({
        ".o#.",
        "##o.",
        "....",
    });
    const SpecialsWatch watch(level_, "Fill");
    const CellBlock block = copyCells(level_, area(1, 0, 1, 1));
    clearSpecials(level_, area(0, 0, 3, 0));
    EXPECT_EQ(level_.cellAt(1, 0).special, 0);
    EXPECT_EQ(level_.cellAt(2, 0).tile, 9) << "tiles stay";
    EXPECT_EQ(level_.cellAt(2, 1).special, 5) << "below the area";
    EXPECT_EQ(watch.stepName(level_), "Fill, 1 special removed");

    // Only the cells the block gives a special change, and never a tile.
    level_.setSpecial(0, 2, 7);
    level_.setSpecial(1, 2, 7);
    stampSpecials(level_, block, 0, 1);
    EXPECT_EQ(level_.cellAt(0, 1).special, 5);
    EXPECT_EQ(level_.cellAt(0, 1).tile, 9);
    EXPECT_EQ(level_.cellAt(0, 2).special, 7) << "an empty cell of the block leaves it";
    EXPECT_EQ(level_.cellAt(1, 2).special, 5);
    EXPECT_TRUE(holdsSpecials(block));
    EXPECT_FALSE(holdsSpecials(CellBlock(2, 2)));
    const SpecialsWatch later(level_, "Paint");
    level_.setSpecial(1, 2, 9);
    level_.setSpecial(2, 1, 0);
    level_.setSpecial(0, 1, 0);
    EXPECT_EQ(later.stepName(level_), "Paint, 2 specials removed, 1 replaced");
    EXPECT_EQ(nameWithChanges("Bucket Fill", {0, 19}), "Bucket Fill, 19 specials replaced");
    EXPECT_EQ(nameWithChanges("Paint", {}), "Paint") << "placed on empty cells: nothing lost";
}

TEST(CellClipboard, BytesRoundTripAndDamageIsNamed) {
    CellBlock block(3, 2);
    block.at(0, 0) = Cell{1023, 63, 0};
    block.at(2, 1) = Cell{512, 255, 0};
    const std::vector<std::uint8_t> bytes = encodeCells(block);
    ASSERT_EQ(bytes.size(), 10U + 6 * 3);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "MVKC");
    // Width, then the first cell: tile 1023 big-endian, special 63.
    EXPECT_EQ(bytes[7], 3);
    EXPECT_EQ(bytes[10], 0x03);
    EXPECT_EQ(bytes[11], 0xFF);
    EXPECT_EQ(bytes[12], 63);
    EXPECT_EQ(decodeCells(bytes), block);

    const std::vector<std::uint8_t> truncated(bytes.begin(), bytes.end() - 1);
    auto badMagic = bytes;
    badMagic[0] = 'X';
    auto newer = bytes;
    newer[5] = 2;
    auto empty = bytes;
    empty[7] = 0;
    // 65535 x 65535 cells, whatever bytes follow, are refused before any
    // block is made.
    // Tile 1024 would lose its top bit when the level is saved.
    auto bigTile = bytes;
    bigTile[10] = 0x04;
    bigTile[11] = 0x00;
    auto huge = bytes;
    std::fill(huge.begin() + 6, huge.begin() + 10, 0xFF);
    for (const auto& [damaged, words] :
         std::vector<std::pair<std::vector<std::uint8_t>, std::string>>{{truncated, "damaged"},
                                                                        {badMagic, "mark"},
                                                                        {newer, "version 2"},
                                                                        {empty, "empty"},
                                                                        {bigTile, "tile 1024"},
                                                                        {huge, "more than a brush"},
                                                                        {{}, "mark"}}) {
        try {
            decodeCells(damaged);
            ADD_FAILURE() << "accepted bytes that should say " << words;
        } catch (const CellClipboardError& error) {
            EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
        }
    }
}

TEST(CellClipboard, TextIsTheGridOfTileNumbers) {
    CellBlock block(3, 2);
    block.at(0, 0).tile = 12;
    block.at(1, 0) = Cell{7, 40, 0};
    block.at(2, 1).tile = 1023;
    EXPECT_EQ(cellsAsText(block), "12\t7\t0\n0\t0\t1023\n");

    const CellBlock read = cellsFromText("12 7\t0\r\n\n  0 0 1023  \n", 1024);
    ASSERT_EQ(read.width(), 3);
    ASSERT_EQ(read.height(), 2);
    EXPECT_EQ(read.at(2, 1).tile, 1023);
    EXPECT_EQ(read.at(1, 0).special, 0) << "text carries tiles only";

    for (const auto& [text, words] : std::vector<std::pair<std::string, std::string>>{
             {"1 2\n3\n", "line 2 of the clipboard's text has 1 tile where the first row has 2 "
                          "tiles"},
             {"1 2\nfish 3\n", "line 2"},
             {"1 -2\n", "line 1"},
             {"1 2x\n", "line 1"},
             {"0\n1024\n", "line 2"},
             {"\n \n", "no tile"},
             // Past the last tile of a 197-tile set: drawn as nothing, so refused.
             {"196 0\n0 197\n", "line 2 of the clipboard's text holds tile 197, past the tile "
                                "set's last tile, 196"},
             {"1023\n", "line 1"}}) {
        try {
            cellsFromText(text, 197);
            ADD_FAILURE() << "accepted " << text;
        } catch (const CellClipboardError& error) {
            EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
        }
    }
}

} // namespace
} // namespace marvek::test
