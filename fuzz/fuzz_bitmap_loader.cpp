#include "native/handles.h"
#include "native/marvek.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

// The loaders read from disk, so each input goes through one scratch file.
const std::string& scratchPath() {
    static const std::string path = (std::filesystem::temp_directory_path() /
                                     ("marvek-fuzz-bitmap-" + std::to_string(::getpid()) + ".bmp"))
                                        .string();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    {
        std::ofstream file(scratchPath(), std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const marvek::UniqueSurface surface(surfaceLoadFromBitmap(scratchPath().c_str()));
    if (surface) {
        // Touch the last pixel so a short pixel buffer shows up under ASan.
        const std::int32_t width = surfaceGetWidth(surface.get());
        const std::int32_t height = surfaceGetHeight(surface.get());
        volatile std::uint32_t last = surfaceGetDataPtr(surface.get())[width * height - 1];
        (void)last;
    }
    const marvek::UniqueFont font(fontLoadFromBitmap(scratchPath().c_str()));
    if (font) {
        const marvek::UniqueSurface target(surfaceCreate(64, 32));
        renderText(target.get(), font.get(), -3, 5, 0x7FFFFFFF, "Marvek \xff\x01");
    }
    return 0;
}
