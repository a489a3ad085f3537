#include "graphics/clsSurface.h"

#include "graphics/planarCodec.h"
#include "io/clsBitStream.h"

#include <algorithm>
#include <array>

namespace marvek {
namespace {

constexpr std::size_t indexCount = 256;

bool isPlanarSize(std::int32_t width, std::int32_t height) {
    return width >= 0 && height >= 0 &&
           std::int64_t{width} * height <= clsSurface::maximumPlanarPixels;
}

bool isPlaneCount(int planes) {
    return planes >= 0 && planes <= clsSurface::maximumPlanes;
}

std::size_t pixelCount(std::int32_t width, std::int32_t height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

// The surface pixel of every index; indices the palette lacks stay transparent.
std::array<std::uint32_t, indexCount> surfaceColours(const clsPalette& palette,
                                                     std::int32_t transparentIndex) {
    const std::uint32_t transparent = createBGRA(0, 0, 0, 255);
    std::array<std::uint32_t, indexCount> colours{};
    colours.fill(transparent);
    const auto known = std::min<std::int32_t>(palette.Count(), indexCount);
    for (std::int32_t index = 0; index < known; ++index) {
        if (index != transparentIndex) {
            const auto entry = palette.Entry(index);
            colours[static_cast<std::size_t>(index)] =
                createBGRA(getRed(entry), getGreen(entry), getBlue(entry), 0);
        }
    }
    return colours;
}

// The overlap of a source span [0, sourceLength) placed at `at` with a target
// span [0, targetLength): first source index, first target index, length.
struct Overlap {
    std::int64_t source;
    std::int64_t target;
    std::int64_t length;
};

Overlap overlap(std::int64_t at, std::int64_t sourceLength, std::int64_t targetLength) {
    const std::int64_t first = std::max<std::int64_t>(0, -at);
    const std::int64_t last = std::min(sourceLength, targetLength - at);
    return {first, at + first, std::max<std::int64_t>(0, last - first)};
}

} // namespace

bool clsSurface::planarCreateEmpty(std::int32_t width, std::int32_t height) {
    if (!isPlanarSize(width, height)) {
        return false;
    }
    adoptPlanar(width, height, std::vector<std::uint8_t>(pixelCount(width, height), 0));
    return true;
}

bool clsSurface::createEmpty(std::int32_t width, std::int32_t height) {
    UniqueSurface created(surfaceCreate(width, height));
    if (!created) {
        return false;
    }
    adoptSurface(std::move(created));
    return true;
}

bool clsSurface::planarLoadFromBits(clsBitStream& stream, std::int32_t width, std::int32_t height,
                                    int planes) {
    if (!isPlanarSize(width, height) || !isPlaneCount(planes)) {
        return false;
    }
    std::vector<std::uint8_t> pixels(pixelCount(width, height), 0);
    planar::readPlanes(stream, pixels, planes);
    adoptPlanar(width, height, std::move(pixels));
    return true;
}

bool clsSurface::planarWriteTo(clsBitStream& stream, int planes) const {
    if (!isPlaneCount(planes)) {
        return false;
    }
    planar::writePlanes(stream, planar_, planes);
    return true;
}

bool clsSurface::planarToSurface(const clsPalette& palette, std::int32_t transparentIndex) {
    if (palette.Count() <= 0) {
        return false;
    }
    UniqueSurface created(surfaceCreate(planarWidth_, planarHeight_));
    if (!created) {
        return false;
    }
    const auto colours = surfaceColours(palette, transparentIndex);
    std::uint32_t* target = surfaceGetDataPtr(created.get());
    std::transform(planar_.begin(), planar_.end(), target,
                   [&colours](std::uint8_t index) { return colours[index]; });
    adoptSurface(std::move(created));
    palette_ = palette;
    return true;
}

void clsSurface::planarShiftColors(std::int32_t delta) {
    for (auto& index : planar_) {
        const std::int64_t shifted = std::int64_t{index} + delta;
        index = shifted < 0 ? 0 : static_cast<std::uint8_t>(shifted % indexCount);
    }
}

bool clsSurface::planarCopyFrom(const clsSurface& source, std::int32_t x, std::int32_t y,
                                std::int32_t width, std::int32_t height) {
    const bool inside = x >= 0 && y >= 0 && width >= 0 && height >= 0 &&
                        std::int64_t{x} + width <= source.planarWidth_ &&
                        std::int64_t{y} + height <= source.planarHeight_;
    if (!inside) {
        return false;
    }
    std::vector<std::uint8_t> pixels(pixelCount(width, height));
    for (std::int32_t row = 0; row < height; ++row) {
        const auto from = source.planar_.begin() +
                          static_cast<std::ptrdiff_t>(pixelCount(source.planarWidth_, y + row) +
                                                      static_cast<std::size_t>(x));
        std::copy_n(from, width,
                    pixels.begin() + static_cast<std::ptrdiff_t>(pixelCount(width, row)));
    }
    adoptPlanar(width, height, std::move(pixels));
    return true;
}

void clsSurface::planarBlit(const clsSurface& source, std::int32_t x, std::int32_t y) {
    if (&source == this) {
        const std::vector<std::uint8_t> copy = planar_;
        pastePlanar(copy, planarWidth_, planarHeight_, x, y);
    } else {
        pastePlanar(source.planar_, source.planarWidth_, source.planarHeight_, x, y);
    }
}

void clsSurface::pastePlanar(std::span<const std::uint8_t> pixels, std::int32_t width,
                             std::int32_t height, std::int32_t x, std::int32_t y) {
    const Overlap columns = overlap(x, width, planarWidth_);
    const Overlap rows = overlap(y, height, planarHeight_);
    if (columns.length <= 0) {
        return;
    }
    for (std::int64_t r = 0; r < rows.length; ++r) {
        const auto from =
            pixels.subspan(static_cast<std::size_t>((rows.source + r) * width + columns.source),
                           static_cast<std::size_t>(columns.length));
        const auto to = (rows.target + r) * planarWidth_ + columns.target;
        std::copy(from.begin(), from.end(), planar_.begin() + static_cast<std::ptrdiff_t>(to));
    }
}

bool clsSurface::loadFromFile(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    UniqueSurface loaded(surfaceLoadFromBitmap(reinterpret_cast<const char*>(name.c_str())));
    if (!loaded) {
        return false;
    }
    adoptSurface(std::move(loaded));
    return true;
}

void clsSurface::adoptSurface(UniqueSurface surface) {
    width_ = surfaceGetWidth(surface.get());
    height_ = surfaceGetHeight(surface.get());
    surface_ = std::move(surface);
}

void clsSurface::adoptPlanar(std::int32_t width, std::int32_t height,
                             std::vector<std::uint8_t> pixels) {
    planarWidth_ = width;
    planarHeight_ = height;
    planar_ = std::move(pixels);
}

} // namespace marvek
