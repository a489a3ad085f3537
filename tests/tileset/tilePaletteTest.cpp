#include "data/tilePalette.h"

#include <gtest/gtest.h>

#include <tuple>

namespace marvek::test {
namespace {

clsRectangle dragged(int left, int top, int right, int bottom) {
    clsRectangle area;
    area.left = left;
    area.top = top;
    area.width = right - left;
    area.height = bottom - top;
    return area;
}

// The far corner after limiting, as (right, bottom).
std::tuple<int, int> farCorner(const clsRectangle& area, int count) {
    const clsRectangle limited = limitTileSelection(area, count);
    EXPECT_EQ(std::tuple(limited.left, limited.top), std::tuple(area.left, area.top));
    return {limited.left + limited.width, limited.top + limited.height};
}

TEST(TilePalette, ASelectionNeverNamesATilePastTheLast) {
    // 197 tiles: the last row holds columns 0 to 16.
    EXPECT_EQ(farCorner(dragged(2, 3, 25, 4), 197), std::tuple(19, 4)) << "column 19 at most";
    EXPECT_EQ(farCorner(dragged(2, 3, 5, 30), 197), std::tuple(5, 9)) << "into the last row";
    EXPECT_EQ(farCorner(dragged(2, 3, 18, 9), 197), std::tuple(18, 8)) << "a row above instead";
    EXPECT_EQ(farCorner(dragged(4, 9, 19, 9), 197), std::tuple(16, 9)) << "along the last row";
    EXPECT_EQ(farCorner(dragged(4, 9, 19, 2), 197), std::tuple(16, 2)) << "upwards from it too";
    EXPECT_EQ(farCorner(dragged(18, 8, 10, 9), 197), std::tuple(10, 8)) << "column 18 is past";
    EXPECT_EQ(farCorner(dragged(0, 0, 19, 40), 200), std::tuple(19, 9)) << "whole rows only";
}

} // namespace
} // namespace marvek::test
