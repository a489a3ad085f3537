// clsFont on arbitrary files, then every character drawn with it, clipped at
// each edge of the target.
#include "common/pictureSize.h"
#include "common/scratch.h"
#include "graphics/clsFont.h"
#include "native/handles.h"
#include "native/marvek.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (marvek::fuzz::isCostlyPicture(data, size)) {
        return 0;
    }
    static const marvek::fuzz::ScratchFolder scratch;
    const auto path = scratch.write("font.bmp", data, size);
    marvek::clsFont font;
    if (!font.loadFromFile(path)) {
        if (font.handle() != 0 || font.getSurface() != 0) {
            std::abort();
        }
        return 0;
    }
    std::array<char, 256> every{};
    for (std::size_t i = 1; i < every.size(); ++i) {
        every[i - 1] = static_cast<char>(i);
    }
    const marvek::UniqueSurface target(surfaceCreate(40, 24));
    for (const auto& [x, y] : {std::pair{-5, -3}, {0, 0}, {30, 20}, {-1000, 10}}) {
        renderText(target.get(), font.handle(), x, y, 0x00FF8040u, every.data());
    }
    return 0;
}
