#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace marvek {
namespace {

clsCamera cameraOver(std::int32_t levelWidth, std::int32_t levelHeight, std::int32_t viewWidth,
                     std::int32_t viewHeight) {
    clsCamera camera;
    camera.levelWidth = levelWidth;
    camera.levelHeight = levelHeight;
    camera.viewWidth = viewWidth;
    camera.viewHeight = viewHeight;
    return camera;
}

TEST(clsCamera, StaysInsideTheLevel) {
    auto camera = cameraOver(4800, 1344, 640, 480);
    camera.Move(1000, 500);
    EXPECT_EQ(camera.x, 1000);
    EXPECT_EQ(camera.y, 500);
    camera.Move(-5, 2000);
    EXPECT_EQ(camera.x, 0);
    EXPECT_EQ(camera.y, 1344 - 480);
    camera.Move(4160, 864);
    EXPECT_EQ(camera.x, 4160);
    EXPECT_EQ(camera.y, 864);
}

TEST(clsCamera, AViewLargerThanTheLevelEndsNegative) {
    auto camera = cameraOver(320, 200, 640, 480);
    camera.Move(100, -7);
    EXPECT_EQ(camera.x, -320);
    EXPECT_EQ(camera.y, -280);
}

TEST(clsCamera, MoveRelativeAddsThenChecks) {
    auto camera = cameraOver(4800, 1344, 640, 480);
    camera.Move(10, 20);
    camera.moveRelative(-50, 0);
    EXPECT_EQ(camera.x, 0);
    EXPECT_EQ(camera.y, 20);
    camera.moveRelative(5000, 16);
    EXPECT_EQ(camera.x, 4160);
    EXPECT_EQ(camera.y, 36);
    EXPECT_THROW(camera.moveRelative(std::numeric_limits<std::int32_t>::max(), 0),
                 std::overflow_error);
}

clsRectangle rectangle(std::int32_t left, std::int32_t top, std::int32_t width,
                       std::int32_t height) {
    clsRectangle result;
    result.left = left;
    result.top = top;
    result.width = width;
    result.height = height;
    return result;
}

TEST(clsRectangle, NormalizeFlipsNegativeExtents) {
    auto flipped = rectangle(10, 20, -4, -5);
    flipped.Normalize();
    EXPECT_EQ(flipped.left, 6);
    EXPECT_EQ(flipped.width, 4);
    EXPECT_EQ(flipped.top, 15);
    EXPECT_EQ(flipped.height, 5);

    auto flat = rectangle(10, 20, 0, 3);
    flat.Normalize();
    EXPECT_EQ(flat.left, 10);
    EXPECT_EQ(flat.width, 0);
    EXPECT_EQ(flat.height, 3);
}

TEST(clsRectangle, AddAreaKeepsItsHistoricalFormulas) {
    auto grown = rectangle(0, 0, 3, 20);
    grown.addArea(5, 5, 10, 10);
    EXPECT_EQ(grown.left, 0);
    EXPECT_EQ(grown.top, 0);
    EXPECT_EQ(grown.width, 15);
    EXPECT_EQ(grown.height, 15);

    // The absolute new left is added to the right edge: 4 + max(3, 12).
    auto offset = rectangle(10, 10, 2, 2);
    offset.addArea(-4, 1, 7, 1);
    EXPECT_EQ(offset.left, -4);
    EXPECT_EQ(offset.top, 1);
    EXPECT_EQ(offset.width, 16);
    EXPECT_EQ(offset.height, 13);
}

} // namespace
} // namespace marvek
