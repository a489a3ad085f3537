// clsLevel::loadFromBits on arbitrary unpacked bytes: it must refuse or load
// without touching memory it does not own, and whatever it loads must write
// out and load again with the same cells.
#include "common/input.h"
#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "io/clsBitStream.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

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

// The reader's account of what it read: one chunk after the other, each
// starting where the one before it stopped, none past the data.
bool chunksFollowEachOther(const std::vector<marvek::LevelChunk>& chunks, std::size_t size) {
    constexpr std::int32_t headerSize = 8;
    std::int32_t next = 0;
    for (const auto& chunk : chunks) {
        if (chunk.offset != next || chunk.id.size() != 4 || chunk.bytesRead < 0) {
            return false;
        }
        next =
            std::min(chunk.offset + headerSize, static_cast<std::int32_t>(size)) + chunk.bytesRead;
    }
    return !chunks.empty() && next <= static_cast<std::int32_t>(size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto stream = marvek::fuzz::streamOver(std::span<const std::uint8_t>(data, size));
    marvek::clsLevel level;
    marvek::clsPalette palette;
    std::vector<marvek::LevelChunk> chunks;
    const bool loaded = level.loadFromBits(stream, palette, &chunks);
    if (size > 0 && !chunksFollowEachOther(chunks, size)) {
        std::abort();
    }
    if (!loaded || !level.hasSensibleSize()) {
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
