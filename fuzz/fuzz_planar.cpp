// Planar images of a size and plane count the input chooses, read from the
// rest of the input: what loads must write back to the same bitplanes' worth
// of indices, and build, shift, cut and paste without leaving its memory.
#include "common/input.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "native/marvek.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

marvek::clsPalette paletteOf(int entries) {
    marvek::clsPalette palette;
    for (int i = 0; i < entries; ++i) {
        palette.addEntry(static_cast<std::uint32_t>(i) * 0x010203u);
    }
    return palette;
}

void checkRoundTrip(const marvek::clsSurface& image, int planes) {
    auto written = marvek::fuzz::growingStream();
    if (!image.planarWriteTo(written, planes)) {
        std::abort();
    }
    written.seekTo(0);
    marvek::clsSurface again;
    if (!again.planarLoadFromBits(written, image.planarWidth(), image.planarHeight(), planes)) {
        std::abort();
    }
    const int keep = (1 << planes) - 1;
    const auto before = image.planarPixels();
    const auto after = again.planarPixels();
    for (std::size_t i = 0; i < before.size(); ++i) {
        if ((before[i] & keep) != after[i]) {
            std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool initialised = (renderInit(), true);
    (void)initialised;
    marvek::fuzz::Input input(data, size);
    // Signed, so that negative sizes are tried too; 10 planes covers the
    // refused 9. Eight words a row reach every path of the codec, and a run
    // costs what its area does.
    constexpr int sizes = 128;
    const auto width = static_cast<std::int16_t>(input.word()) % sizes;
    const auto height = static_cast<std::int16_t>(input.word()) % sizes;
    const int planes = input.byte() % 10;
    const int shift = static_cast<std::int8_t>(input.byte());
    auto stream = marvek::fuzz::streamOver(input.rest());
    marvek::clsSurface image;
    if (!image.planarLoadFromBits(stream, width, height, planes)) {
        return 0;
    }
    checkRoundTrip(image, planes);
    image.planarToSurface(paletteOf(1 << (planes % 6)), planes);
    marvek::clsSurface part;
    if (part.planarCopyFrom(image, width / 3, height / 4, width / 2, height / 2)) {
        part.planarShiftColors(shift);
        image.planarBlit(part, width - 5, -3);
        part.planarToSurface(paletteOf(32), -1);
    }
    return 0;
}
