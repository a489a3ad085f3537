// clsLevel::loadFromBits on arbitrary unpacked bytes: it must refuse or load
// without touching memory it does not own, and whatever it loads must write
// out and load again with the same cells.
#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "io/clsBitStream.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

marvek::clsBitStream streamOver(const uint8_t* data, size_t size) {
    auto buffer = std::make_shared<marvek::clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(size));
    std::copy(data, data + size, buffer->data().begin());
    marvek::clsBitStream stream;
    stream.loadFromBuffer(std::move(buffer));
    return stream;
}

bool sameCells(const marvek::clsLevel& a, const marvek::clsLevel& b) {
    return std::ranges::equal(a.cells(), b.cells(), [](marvek::Cell x, marvek::Cell y) {
        return (x.tile & 0x3FF) == y.tile && (x.special & 0x3F) == y.special;
    });
}

// The writer always states a standard level's length; make it true so that
// a level of any size can be read back.
void stateTrueLength(marvek::clsBitStream& stream) {
    const auto size = static_cast<std::uint32_t>(stream.Size());
    stream.seekTo(8);
    stream.putLong(static_cast<std::int32_t>(size));
    stream.seekTo(0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto stream = streamOver(data, size);
    marvek::clsLevel level;
    marvek::clsPalette palette;
    if (!level.loadFromBits(stream, palette) || !level.hasSensibleSize()) {
        return 0;
    }
    const auto cellCount = static_cast<std::size_t>(level.width) * level.height;
    // Without BODY, or with the size changed after it, there is nothing to
    // compare; large maps only slow the search down.
    constexpr std::size_t largestRoundTrip = 30000;
    if (level.cells().size() != cellCount || cellCount > largestRoundTrip) {
        return 0;
    }
    marvek::clsBitStream written;
    written.Create();
    written.autoExpand = true;
    level.writeTo(written, palette);
    written.autoExpand = false;
    stateTrueLength(written);
    marvek::clsLevel again;
    marvek::clsPalette againPalette;
    if (!again.loadFromBits(written, againPalette) || !sameCells(level, again)) {
        std::abort();
    }
    return 0;
}
