#include "graphics/pictureCodec.h"

#include "graphics/clsBackBuffer.h"
#include "graphics/planarCodec.h"
#include "native/marvek.h"

#include <stdexcept>

namespace marvek {
namespace {

constexpr std::int32_t shownShift = 16;
constexpr unsigned bitsPerByte = 8;

std::uint64_t firstBit(const PictureFormat& format, std::int32_t index) {
    return static_cast<std::uint64_t>(format.offset) * bitsPerByte +
           static_cast<std::uint64_t>(index) * subImageBits(format);
}

std::int32_t cellX(const PictureFormat& format, std::int32_t index) {
    return index % format.across * format.width;
}

std::int32_t cellY(const PictureFormat& format, std::int32_t index) {
    return index / format.across * format.height;
}

void checkFormat(const PictureFormat& format) {
    if (!isValidFormat(format)) {
        throw std::invalid_argument("picture format outside its limits");
    }
}

// XORs whatever of the sub-image's bits the bytes hold into its pixels.
void readSubImage(std::span<const std::uint8_t> bytes, std::uint64_t bit, int planes,
                  clsSurface& image) {
    const std::uint64_t available = std::uint64_t{bytes.size()} * bitsPerByte;
    if (bit >= available) {
        return;
    }
    const std::uint64_t wanted = image.planarPixels().size() * static_cast<std::uint64_t>(planes);
    const std::span<std::uint8_t> pixels(image.ptrPlanar(), image.planarPixels().size());
    planar::xorPlanesFrom(bytes.subspan(static_cast<std::size_t>(bit / bitsPerByte)),
                          static_cast<unsigned>(bit % bitsPerByte),
                          std::min(wanted, available - bit), pixels);
}

} // namespace

std::string pictureSizeRefusal(const PictureFormat& format) {
    const PictureGrid grid = pictureGrid(format);
    if (grid.width <= maximumPictureSide && grid.height <= maximumPictureSide &&
        grid.width * grid.height <= clsSurface::maximumPlanarPixels) {
        return {};
    }
    return "the picture would be " + std::to_string(grid.width) + " x " +
           std::to_string(grid.height) + " pixels; at most " + std::to_string(maximumPictureSide) +
           " a side and " + std::to_string(clsSurface::maximumPlanarPixels) + " in all";
}

clsSurface decodePicture(std::span<const std::uint8_t> bytes, const PictureFormat& format) {
    checkFormat(format);
    if (std::string why = pictureSizeRefusal(format); !why.empty()) {
        throw std::length_error(why);
    }
    const PictureGrid grid = pictureGrid(format);
    clsSurface picture;
    picture.planarCreateEmpty(static_cast<std::int32_t>(grid.width),
                              static_cast<std::int32_t>(grid.height));
    clsSurface image;
    for (std::int32_t index = 0; index < format.count; ++index) {
        image.planarCreateEmpty(format.width, format.height);
        readSubImage(bytes, firstBit(format, index), format.planes, image);
        picture.planarBlit(image, cellX(format, index), cellY(format, index));
    }
    if (format.shiftColours) {
        picture.planarShiftColors(shownShift);
    }
    return picture;
}

std::int32_t firstShownIndex(const PictureFormat& format) noexcept {
    return format.shiftColours ? shownShift : 0;
}

bool holdsGrid(const clsSurface& picture, const PictureFormat& format) {
    const PictureGrid grid = pictureGrid(format);
    return grid.width <= picture.planarWidth() && grid.height <= picture.planarHeight();
}

void encodePicture(const clsSurface& picture, const PictureFormat& format,
                   std::vector<std::uint8_t>& bytes) {
    checkFormat(format);
    if (!holdsGrid(picture, format)) {
        throw std::invalid_argument("the picture does not hold the sub-images");
    }
    const std::uint64_t end = pictureEnd(format);
    if (bytes.size() < end) {
        bytes.resize(static_cast<std::size_t>(end), 0);
    }
    const std::span<std::uint8_t> target(bytes);
    clsSurface image;
    for (std::int32_t index = 0; index < format.count; ++index) {
        image.planarCopyFrom(picture, cellX(format, index), cellY(format, index), format.width,
                             format.height);
        if (format.shiftColours) {
            image.planarShiftColors(-shownShift);
        }
        const std::uint64_t bit = firstBit(format, index);
        planar::writePlanesTo(target.subspan(static_cast<std::size_t>(bit / bitsPerByte)),
                              static_cast<unsigned>(bit % bitsPerByte), subImageBits(format),
                              image.planarPixels());
    }
}

bool drawPicture(clsSurface& picture, const clsPalette& palette, clsBackBuffer& backBuffer) {
    if (!picture.planarToSurface(palette, -1)) {
        return false;
    }
    if (!backBuffer.Resize(picture.width(), picture.height())) {
        return false;
    }
    backBuffer.Clear();
    renderBlit(backBuffer.surface(), picture.surface(), 0, 0, picture.width(), picture.height());
    return true;
}

} // namespace marvek
