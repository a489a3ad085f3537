#include "native/bmpLoad.h"
#include "native/fileBytes.h"
#include "native/marvek.h"
#include "native/surface.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace marvek {

std::unique_ptr<Surface> Surface::create(std::int32_t width, std::int32_t height) noexcept {
    if (width <= 0 || height <= 0 || width > maxSurfaceSide || height > maxSurfaceSide ||
        std::int64_t{width} * height > maxSurfacePixels) {
        return nullptr;
    }
    try {
        auto surface = std::make_unique<Surface>();
        surface->width = width;
        surface->height = height;
        surface->pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                               0);
        return surface;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::int32_t registerSurface(std::unique_ptr<Surface> surface) noexcept {
    if (surface == nullptr) {
        return 0;
    }
    try {
        return surfaceTable().add(std::move(surface));
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

namespace {

bool contains(const Surface& surface, std::int32_t x, std::int32_t y) noexcept {
    return x >= 0 && y >= 0 && x < surface.width && y < surface.height;
}

// Writes one source row doubled horizontally, as far as `columns` reaches.
void doubleRow(const std::uint32_t* source, std::uint32_t* target, std::int32_t columns) noexcept {
    const std::int32_t pairs = columns / 2;
    for (std::int32_t x = 0; x < pairs; ++x) {
        const std::uint64_t pixel = source[x];
        const std::uint64_t pair = pixel | (pixel << 32);
        std::memcpy(target + 2 * static_cast<std::ptrdiff_t>(x), &pair, sizeof pair);
    }
    if (columns % 2 != 0) {
        target[columns - 1] = source[pairs];
    }
}

} // namespace

} // namespace marvek

using namespace marvek;

extern "C" {

int32_t surfaceCreate(int32_t width, int32_t height) {
    return registerSurface(Surface::create(width, height));
}

int32_t surfaceLoadFromBitmap(const char* path) {
    const auto bytes = readFileBytes(path, maxBitmapFileBytes);
    if (!bytes) {
        return 0;
    }
    return registerSurface(loadBitmapSurface(*bytes));
}

int32_t surfaceGetWidth(int32_t surface) {
    const Surface* found = findSurface(surface);
    return found == nullptr ? 0 : found->width;
}

int32_t surfaceGetHeight(int32_t surface) {
    const Surface* found = findSurface(surface);
    return found == nullptr ? 0 : found->height;
}

uint32_t surfaceGetPixel(int32_t surface, int32_t x, int32_t y) {
    const Surface* found = findSurface(surface);
    if (found == nullptr || !contains(*found, x, y)) {
        return 0;
    }
    return found->row(y)[x];
}

void surfaceSetPixel(int32_t surface, int32_t x, int32_t y, uint32_t colour) {
    Surface* found = findSurface(surface);
    if (found != nullptr && contains(*found, x, y)) {
        found->row(y)[x] = colour;
    }
}

uint32_t* surfaceGetDataPtr(int32_t surface) {
    Surface* found = findSurface(surface);
    return found == nullptr ? nullptr : found->pixels.data();
}

void surfaceFill(int32_t surface, uint32_t colour) {
    Surface* found = findSurface(surface);
    if (found != nullptr) {
        std::fill(found->pixels.begin(), found->pixels.end(), colour);
    }
}

void surfaceClear(int32_t surface) {
    surfaceFill(surface, 0);
}

void surfaceDestroy(int32_t surface) {
    // The surface dies here, as the returned owner goes out of scope.
    surfaceTable().remove(surface);
}

void surfaceCopyToBitmap(int32_t surface, uint32_t* bits) {
    const Surface* found = findSurface(surface);
    if (found != nullptr && bits != nullptr) {
        std::memcpy(bits, found->pixels.data(), found->pixels.size() * sizeof(uint32_t));
    }
}

void surfaceCopyToBitmapDouble(int32_t surface, uint32_t* bits, int32_t bitmapWidth,
                               int32_t bitmapHeight) {
    const Surface* found = findSurface(surface);
    if (found == nullptr || bits == nullptr || bitmapWidth <= 0 || bitmapHeight <= 0) {
        return;
    }
    const auto stride = static_cast<std::size_t>(bitmapWidth);
    const std::int32_t columns = static_cast<std::int32_t>(
        std::min<std::int64_t>(std::int64_t{found->width} * 2, bitmapWidth));
    const std::int32_t rows = static_cast<std::int32_t>(
        std::min<std::int64_t>(std::int64_t{found->height} * 2, bitmapHeight));
    for (std::int32_t y = 0; y < rows; y += 2) {
        std::uint32_t* target = bits + static_cast<std::size_t>(y) * stride;
        doubleRow(found->row(y / 2), target, columns);
        if (y + 1 < rows) {
            std::memcpy(target + stride, target, static_cast<std::size_t>(columns) * 4);
        }
    }
}

} // extern "C"
