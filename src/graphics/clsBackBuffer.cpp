#include "graphics/clsBackBuffer.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

namespace marvek {
namespace {

bool fitsInt32(std::int64_t value) {
    return value <= std::numeric_limits<std::int32_t>::max();
}

} // namespace

void clsBackBuffer::release() noexcept {
    surface_.reset();
    pixels_ = {};
    width_ = 0;
    height_ = 0;
    bitmapWidth_ = 0;
    bitmapHeight_ = 0;
}

bool clsBackBuffer::Create(std::int32_t width, std::int32_t height, std::int32_t zoom) {
    release();
    zoom_ = zoom;
    const std::int64_t zoomedWidth = std::int64_t{width} * zoom;
    const std::int64_t zoomedHeight = std::int64_t{height} * zoom;
    if (width < 1 || height < 1 || zoom < 1 || !fitsInt32(zoomedWidth) ||
        !fitsInt32(zoomedHeight)) {
        return false;
    }
    UniqueSurface surface(surfaceCreate(width, height));
    if (!surface) {
        return false;
    }
    try {
        // At zoom 1 the surface's own pixels are shown; only a zoomed picture
        // needs memory of its own.
        if (zoom > 1) {
            pixels_.assign(
                static_cast<std::size_t>(zoomedWidth) * static_cast<std::size_t>(zoomedHeight), 0);
        }
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    surface_ = std::move(surface);
    width_ = width;
    height_ = height;
    bitmapWidth_ = static_cast<std::int32_t>(zoomedWidth);
    bitmapHeight_ = static_cast<std::int32_t>(zoomedHeight);
    return true;
}

bool clsBackBuffer::Resize(std::int32_t width, std::int32_t height) {
    return Create(width, height, zoom_);
}

void clsBackBuffer::Clear() {
    surfaceClear(surface_.get());
}

void clsBackBuffer::Present(clsPresentTarget& target) {
    if (!surface_) {
        return;
    }
    switch (zoom_) {
    case 1:
        // The surface already has the shown layout: nothing to copy.
        target.present(surfaceGetDataPtr(surface_.get()), bitmapWidth_, bitmapHeight_);
        break;
    case 2:
        surfaceCopyToBitmapDouble(surface_.get(), pixels_.data(), bitmapWidth_, bitmapHeight_);
        target.present(pixels_.data(), bitmapWidth_, bitmapHeight_);
        break;
    default:
        presentScaled(target);
        break;
    }
}

void clsBackBuffer::presentScaled(clsPresentTarget& target) {
    const std::uint32_t* source = surfaceGetDataPtr(surface_.get());
    const auto zoom = static_cast<std::size_t>(zoom_);
    const auto bitmapWidth = static_cast<std::size_t>(bitmapWidth_);
    for (std::int32_t y = 0; y < height_; ++y) {
        std::uint32_t* row = pixels_.data() + std::size_t(y) * zoom * bitmapWidth;
        const std::uint32_t* from = source + std::size_t(y) * std::size_t(width_);
        for (std::int32_t x = 0; x < width_; ++x) {
            std::fill_n(row + std::size_t(x) * zoom, zoom, from[x]);
        }
        for (std::size_t copy = 1; copy < zoom; ++copy) {
            std::copy_n(row, bitmapWidth, row + copy * bitmapWidth);
        }
    }
    target.present(pixels_.data(), bitmapWidth_, bitmapHeight_);
}

const std::vector<std::uint32_t>& clsBackBuffer::keepPixels() {
    const std::uint32_t* pixels = surfaceGetDataPtr(surface_.get());
    if (pixels == nullptr) {
        kept_.clear();
        return kept_;
    }
    kept_.assign(pixels,
                 pixels + static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    return kept_;
}

} // namespace marvek
