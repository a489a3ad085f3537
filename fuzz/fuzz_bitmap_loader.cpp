// The native library's BMP loaders (surfaces and fonts) on arbitrary files:
// they must refuse or load without touching memory they do not own.
#include "common/pictureSize.h"
#include "common/scratch.h"
#include "native/handles.h"
#include "native/marvek.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (marvek::fuzz::isCostlyPicture(data, size)) {
        return 0;
    }
    static const marvek::fuzz::ScratchFolder scratch;
    const auto path = scratch.write("input.bmp", data, size);
    const marvek::UniqueSurface surface(surfaceLoadFromBitmap(path.c_str()));
    if (surface) {
        // Touch the last pixel so a short pixel buffer shows up under ASan.
        const std::int32_t width = surfaceGetWidth(surface.get());
        const std::int32_t height = surfaceGetHeight(surface.get());
        volatile std::uint32_t last = surfaceGetDataPtr(surface.get())[width * height - 1];
        (void)last;
    }
    const marvek::UniqueFont font(fontLoadFromBitmap(path.c_str()));
    if (font) {
        const marvek::UniqueSurface target(surfaceCreate(64, 32));
        renderText(target.get(), font.get(), -3, 5, 0x7FFFFFFF, "Marvek \xff\x01");
    }
    return 0;
}
