// clsBitmap on arbitrary file contents: reading must accept or refuse
// without touching memory it does not own or building a picture larger than
// any surface, and whatever it accepts must convert and write back.
#include "common/pictureSize.h"
#include "common/scratch.h"
#include "graphics/clsBitmap.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (marvek::fuzz::isCostlyPicture(data, size)) {
        return 0;
    }
    static const marvek::fuzz::ScratchFolder scratch;
    const auto input = scratch.write("in.bmp", data, size);

    marvek::clsBitmap bitmap;
    if (!bitmap.readFromFile(input)) {
        return 0;
    }
    const auto image = bitmap.createPlanar(5);
    const auto palette = bitmap.getPal(5);
    if ((image && bitmap.infoHeader().bitsPerPixel != 8) ||
        palette.has_value() != (bitmap.infoHeader().bitsPerPixel <= 8)) {
        std::abort();
    }
    if (image) {
        marvek::clsBitmap again;
        if (!again.createFromPlanarSurface(*image)) {
            std::abort();
        }
        again.writeToFile(scratch / "out.bmp");
    }
    return 0;
}
