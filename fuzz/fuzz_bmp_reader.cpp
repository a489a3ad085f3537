// clsBitmap on arbitrary file contents: reading must accept or refuse
// without touching memory it does not own or allocating far beyond the
// file's size, and whatever it accepts must convert and write back.
#include "graphics/clsBitmap.h"
#include "io/atomicWrite.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

// Two files of this process, removed when it ends.
struct ScratchFiles {
    std::filesystem::path input = named("in.bmp");
    std::filesystem::path output = named("out.bmp");

    ~ScratchFiles() {
        std::error_code ignored;
        std::filesystem::remove(input, ignored);
        std::filesystem::remove(output, ignored);
    }

    static std::filesystem::path named(const char* name) {
        return std::filesystem::temp_directory_path() /
               ("marvek-fuzz-bmp-" + std::to_string(getpid()) + "-" + name);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const ScratchFiles files;
    marvek::writeFileAtomically(files.input, std::span<const uint8_t>(data, size));

    marvek::clsBitmap bitmap;
    if (!bitmap.readFromFile(files.input)) {
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
        again.writeToFile(files.output);
    }
    return 0;
}
