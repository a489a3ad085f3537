// The graphics browser's decoder with the offsets, counts and sizes a user
// types: any format inside the limits must decode the bytes or be refused
// for its size, and what decodes must encode back to the same bits.
#include "common/input.h"
#include "graphics/pictureCodec.h"
#include "graphics/pictureFormat.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace {

// Pictures above this many pixels take the same paths, only slower.
constexpr std::int64_t largestTried = std::int64_t{1} << 20;

marvek::PictureFormat formatFrom(marvek::fuzz::Input& input) {
    marvek::PictureFormat format;
    format.width = static_cast<std::int16_t>(input.word());
    format.height = static_cast<std::int16_t>(input.word());
    format.planes = input.byte() % 10;
    format.offset = static_cast<std::int32_t>(input.word() << 8 | input.byte());
    format.count = static_cast<std::int16_t>(input.word());
    format.across = static_cast<std::int16_t>(input.word());
    format.shiftColours = (input.byte() & 1) != 0;
    return format;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    marvek::fuzz::Input input(data, size);
    const marvek::PictureFormat format = formatFrom(input);
    if (!marvek::isValidFormat(format)) {
        return 0;
    }
    const marvek::PictureGrid grid = marvek::pictureGrid(format);
    if (grid.width * grid.height > largestTried) {
        return 0;
    }
    const std::vector<std::uint8_t> bytes(input.rest().begin(), input.rest().end());
    marvek::clsSurface picture;
    try {
        picture = marvek::decodePicture(bytes, format);
    } catch (const std::length_error&) {
        return 0;
    }
    if (!marvek::holdsGrid(picture, format)) {
        std::abort();
    }
    if (format.shiftColours) {
        return 0;
    }
    std::vector<std::uint8_t> again = bytes;
    marvek::encodePicture(picture, format, again);
    // Bits outside the sub-images keep their values, so the bytes come back
    // whole, grown with zeros to the end of the last sub-image.
    std::vector<std::uint8_t> expected = bytes;
    expected.resize(std::max<std::size_t>(expected.size(), again.size()), 0);
    if (again != expected) {
        std::abort();
    }
    return 0;
}
