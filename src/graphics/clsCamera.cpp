#include "graphics/clsCamera.h"

#include "graphics/checkedInt32.h"

#include <algorithm>

namespace marvek {
namespace {

std::int32_t pulledBack(std::int32_t position, std::int32_t view, std::int32_t level) {
    if (std::int64_t{level} < std::int64_t{position} + view) {
        return checkedInt32(std::int64_t{level} - view);
    }
    return position;
}

std::int32_t repitched(std::int32_t position, std::int32_t oldPitch, std::int32_t newPitch) {
    const std::int32_t offset = std::min(position % oldPitch, newPitch - 1);
    return checkedInt32(std::int64_t{position / oldPitch} * newPitch + offset);
}

} // namespace

void clsCamera::changePitch(std::int32_t oldPitch, std::int32_t newPitch) {
    if (oldPitch <= 0 || newPitch <= 0) {
        return;
    }
    x = repitched(x, oldPitch, newPitch);
    y = repitched(y, oldPitch, newPitch);
}

void clsCamera::Move(std::int32_t newX, std::int32_t newY) {
    x = newX;
    y = newY;
    checkPosition();
}

void clsCamera::moveRelative(std::int32_t dx, std::int32_t dy) {
    x = checkedInt32(std::int64_t{x} + dx);
    y = checkedInt32(std::int64_t{y} + dy);
    checkPosition();
}

void clsCamera::checkPosition() {
    x = std::max(x, 0);
    y = std::max(y, 0);
    x = pulledBack(x, viewWidth, levelWidth);
    y = pulledBack(y, viewHeight, levelHeight);
}

} // namespace marvek
