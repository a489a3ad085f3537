// Palettes in both forms: the game's bit fields (with any plane count) and
// raw files. What loads must write back to the same colours.
#include "common/input.h"
#include "common/scratch.h"
#include "graphics/clsPalette.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void checkGameForm(marvek::fuzz::Input input) {
    const int planes = input.byte() % 10;
    auto stream = marvek::fuzz::streamOver(input.rest());
    marvek::clsPalette palette;
    palette.loadFrom(stream, planes);
    if (planes != marvek::clsPalette::gamePlanes) {
        return;
    }
    auto written = marvek::fuzz::growingStream();
    palette.writeTo(written);
    written.seekTo(0);
    marvek::clsPalette again;
    again.loadFrom(written, planes);
    for (std::int32_t i = 0; i < palette.Count(); ++i) {
        if (again.Entry(i) != palette.Entry(i)) {
            std::abort();
        }
    }
}

void checkRawForm(const marvek::fuzz::ScratchFolder& scratch, const std::uint8_t* data,
                  std::size_t size) {
    marvek::clsPalette palette;
    if (!palette.loadRawFrom(scratch.write("raw.pal", data, size))) {
        std::abort();
    }
    const auto copy = scratch / "copy.pal";
    std::filesystem::remove(copy);
    palette.writeRawTo(copy);
    marvek::clsPalette again;
    again.loadRawFrom(copy);
    for (std::int32_t i = 0; i <= palette.Count(); ++i) {
        if (again.Entry(i) != palette.Entry(i)) {
            std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const marvek::fuzz::ScratchFolder scratch;
    checkGameForm(marvek::fuzz::Input(data, size));
    checkRawForm(scratch, data, size);
    return 0;
}
