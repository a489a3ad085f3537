#include "data/cellArea.h"
#include "data/clsLevel.h"

#include <gtest/gtest.h>

namespace marvek::test {
namespace {

clsRectangle anchoredAt(std::int32_t left, std::int32_t top) {
    clsRectangle area;
    area.left = left;
    area.top = top;
    area.colour = 1234;
    return area;
}

TEST(CellArea, AStretchedAreaStopsAtTheStandardSizeOnTheHighSideOnly) {
    const clsRectangle start = anchoredAt(5, 3);
    const clsRectangle far = stretchArea(start, 1000, 6);
    EXPECT_EQ(far.left, 5);
    EXPECT_EQ(far.width, areaLastColumn - 5);
    EXPECT_EQ(far.height, 3);
    EXPECT_EQ(far.colour, 1234) << "the outline keeps its colour";
    EXPECT_EQ(stretchArea(start, 5, 500).height, areaLastRow - 3);

    // Up and left past the level's edge: negative, and not stopped.
    const clsRectangle back = stretchArea(start, -4, -9);
    EXPECT_EQ(back.width, -9);
    EXPECT_EQ(back.height, -12);
    // Each stretch starts from the anchor, not from the last far corner.
    EXPECT_EQ(stretchArea(back, 7, 3).width, 2);
    EXPECT_EQ(stretchArea(back, 7, 3).height, 0);
}

TEST(CellArea, AnAreaOnTheMapIsNormalisedAndClampedWhicheverCornerComesFirst) {
    clsLevel level;
    level.width = 10;
    level.height = 6;
    level.resizeCells();
    const clsRectangle area = areaOnMap(level, 7, 1, -3, 40);
    EXPECT_EQ(area.left, 0);
    EXPECT_EQ(area.top, 1);
    EXPECT_EQ(area.width, 7);
    EXPECT_EQ(area.height, 4);
    const clsRectangle swapped = areaOnMap(level, -3, 40, 7, 1);
    EXPECT_EQ(rangeOf(swapped), rangeOf(area));
    EXPECT_EQ(rangeOf(areaOnMap(level, 4, 4, 4, 4)), (CellRange{4, 4, 4, 4}));

    EXPECT_EQ(rangeOf(levelArea(level)), wholeLevel(level));
}

} // namespace
} // namespace marvek::test
