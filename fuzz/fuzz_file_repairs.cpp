// The repairs noted while a level, tile set or sprite sheet loads, worked
// out from what the level reader took of arbitrary bytes and from sizes the
// input gives: each must be worked out without failing, and a repair is
// never an empty text.
#include "common/input.h"
#include "data/clsLevel.h"
#include "data/fileRepairs.h"
#include "graphics/clsPalette.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    marvek::fuzz::Input input(data, size);
    const auto fileSize = static_cast<std::int32_t>(input.word() << 16 | input.word());
    const auto width = static_cast<std::int32_t>(static_cast<std::int16_t>(input.word()));
    const auto height = static_cast<std::int32_t>(static_cast<std::int16_t>(input.word()));
    const int planes = input.byte() % 10;

    for (const auto& repair : {marvek::tileSetRepair(fileSize, planes),
                               marvek::pictureRepair(fileSize, width, height, planes)}) {
        if (repair && repair->empty()) {
            std::abort();
        }
    }

    if (input.rest().empty()) {
        return 0;
    }
    auto stream = marvek::fuzz::streamOver(input.rest());
    marvek::clsLevel level;
    marvek::clsPalette palette;
    std::vector<marvek::LevelChunk> chunks;
    level.loadFromBits(stream, palette, &chunks);
    for (const std::string& repair :
         marvek::levelRepairs(chunks, stream.Size(), level.width, level.height)) {
        if (repair.empty()) {
            std::abort();
        }
    }
    // Sizes the reader did not give, against the same chunks.
    for (const std::string& repair : marvek::levelRepairs(chunks, fileSize, width, height)) {
        if (repair.empty()) {
            std::abort();
        }
    }
    return 0;
}
