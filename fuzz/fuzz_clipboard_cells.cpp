// The clipboard's cells, both as the editor's own bytes and as a text grid
// of tile numbers: either form must be refused with a reason or read, and
// what is read must give back the same cells when written out again.
#include "common/input.h"
#include "data/cellClipboard.h"
#include "data/clsLevel.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

bool sameTiles(const marvek::CellBlock& a, const marvek::CellBlock& b) {
    if (a.width() != b.width() || a.height() != b.height()) {
        return false;
    }
    for (std::int32_t y = 0; y < a.height(); ++y) {
        for (std::int32_t x = 0; x < a.width(); ++x) {
            if (a.at(x, y).tile != b.at(x, y).tile) {
                return false;
            }
        }
    }
    return true;
}

void readBytes(std::span<const std::uint8_t> bytes) {
    try {
        const marvek::CellBlock block = marvek::decodeCells(bytes);
        if (marvek::decodeCells(marvek::encodeCells(block)) != block) {
            std::abort();
        }
    } catch (const marvek::CellClipboardError&) {
    }
}

void readText(const std::string& text, std::int32_t tileCount) {
    try {
        const marvek::CellBlock block = marvek::cellsFromText(text, tileCount);
        for (std::int32_t y = 0; y < block.height(); ++y) {
            for (std::int32_t x = 0; x < block.width(); ++x) {
                const std::int32_t tile = block.at(x, y).tile;
                if (tile < 0 || tile >= tileCount || tile > marvek::clsLevel::largestFileTile) {
                    std::abort();
                }
            }
        }
        if (!sameTiles(marvek::cellsFromText(marvek::cellsAsText(block), tileCount), block)) {
            std::abort();
        }
    } catch (const marvek::CellClipboardError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    marvek::fuzz::Input input(data, size);
    const bool asText = (input.byte() & 1) != 0;
    // 0 to 1100 tiles: sets with none, a few, all a level keeps and more.
    const std::int32_t tileCount = input.word() % 1101;
    const auto rest = input.rest();
    if (asText) {
        readText(std::string(rest.begin(), rest.end()), tileCount);
    } else {
        readBytes(rest);
    }
    return 0;
}
